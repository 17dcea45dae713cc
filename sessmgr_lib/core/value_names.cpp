// Value-name lookups and their call contract (see value_names.h). No lock and
// no shared state besides the trace switch.
#include "value_names.h"

#include <cstdint>

#include "lib_trace.h"
#include "util_string.h"

namespace smgr {

const char kInvalidInputBuffer[] = "Invalid input buffer";

namespace {

bool CallTraced(const ValueNameTable& table) {
  if (table.callTrace == NameCallTrace::Never || !SMGR_TRACE_ENABLED(6)) return false;
  return table.callTrace == NameCallTrace::AtLevel6 || g_bDoStringAPITrace;
}

// Runs the checks and traces shared by lookups and formatters.
char* RunContract(const ValueNameTable& table, int nValue, char* szBuffer, size_t nSize,
                  FunctionRef<void(char* szBuffer, size_t nSize)> write) {
  const bool bTraced = CallTraced(table);
  if (bTraced)
    SMGR_TRACE_AS(table.szOperation, 6, "Called (value=%d, szBuffer=%p, nSize=%zu).\n", nValue,
                  static_cast<void*>(szBuffer), nSize);
  char* szResult = szBuffer;
  if (table.generation == NameGeneration::Checked) {
    if (szBuffer == nullptr) _DoAssert("szBuffer != NULL", table.szOperation, __FILE__, __LINE__);
    if (nSize == 0) _DoAssert("nSize > 0", table.szOperation, __FILE__, __LINE__);
    if (szBuffer == nullptr || nSize == 0) szResult = const_cast<char*>(kInvalidInputBuffer);
  }
  if (szBuffer != nullptr && nSize > 0) write(szBuffer, nSize);
  if (bTraced)
    SMGR_TRACE_AS(table.szOperation, 6, "Done (returning 0x%x).\n",
                  static_cast<unsigned>(reinterpret_cast<uintptr_t>(szResult)));
  return szResult;
}

}  // namespace

char* NameOfValue(const ValueNameTable& table, int nValue, char* szBuffer, size_t nSize) {
  return RunContract(table, nValue, szBuffer, nSize, [&](char* szOut, size_t nOut) {
    for (size_t i = 0; i < table.nEntries; ++i) {
      if (table.pEntries[i].nValue == nValue) {
        CopyString(szOut, table.pEntries[i].szText, nOut);
        return;
      }
    }
    switch (table.unknownForm) {
      case UnknownValueForm::Bare:
        CopyString(szOut, "(Invalid)", nOut);
        break;
      case UnknownValueForm::WithValue:
        PrintToString(szOut, nOut, "(Invalid:%d)", nValue);
        break;
      case UnknownValueForm::Described:
        PrintToString(szOut, nOut, "Invalid (%d)", nValue);
        break;
    }
  });
}

char* FormatValueText(const ValueNameTable& contract, int nValue, char* szBuffer, size_t nSize,
                      FunctionRef<void(int nValue, char* szBuffer, size_t nSize)> write) {
  return RunContract(contract, nValue, szBuffer, nSize,
                     [&](char* szOut, size_t nOut) { write(nValue, szOut, nOut); });
}

}  // namespace smgr
