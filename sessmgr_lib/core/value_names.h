// The one value-name mechanism: every SessMgr_Get...String operation of every
// family is a constant table of {value, text} plus a ValueNameTable saying
// which generation it belongs to (plain or checked), how an unknown value
// reads and when its calls are traced.
#pragma once

#include <atomic>
#include <cstddef>

#include "request_engine.h"
#include "sessmgr_api.h"

// Whether the value-name operations trace their calls (library-wide switch;
// record dumps turn it off meanwhile).
extern std::atomic<BOOL> g_bDoStringAPITrace;

namespace smgr {

struct ValueName {
  int nValue;
  const char* szText;
};

enum class NameGeneration {
  Plain,    // no buffer check: a NULL buffer or a zero size writes nothing and returns the buffer
  Checked,  // NULL buffer or zero size: debug preconditions, returns the constant "Invalid input buffer"
};

enum class UnknownValueForm {
  Bare,       // "(Invalid)"
  WithValue,  // "(Invalid:%d)"
  Described,  // "Invalid (%d)" (the library-internal enumerator-name tables)
};

enum class NameCallTrace {
  WhileSwitchOn,  // level 6 entry/exit traces only while g_bDoStringAPITrace is on
  AtLevel6,       // level 6 entry/exit traces whenever level 6 is enabled
  Never,          // library-internal tables
};

struct ValueNameTable {
  const char* szOperation;  // the exported name, used as the function of the traces
  const ValueName* pEntries;
  size_t nEntries;
  NameGeneration generation;
  UnknownValueForm unknownForm;
  NameCallTrace callTrace = NameCallTrace::WhileSwitchOn;
};

template <size_t N>
constexpr ValueNameTable MakeValueNameTable(const char* szOperation, const ValueName (&entries)[N],
                                            NameGeneration generation, UnknownValueForm unknownForm,
                                            NameCallTrace callTrace = NameCallTrace::WhileSwitchOn) {
  return ValueNameTable{szOperation, entries, N, generation, unknownForm, callTrace};
}

// The shared read-only text the checked generation returns for a bad buffer.
extern const char kInvalidInputBuffer[];

// Writes the text of nValue (truncated to nSize - 1 characters) and returns szBuffer.
char* NameOfValue(const ValueNameTable& table, int nValue, char* szBuffer, size_t nSize);

// Same contract (buffer checks, traces) for operations that format rather than
// look up: write(nValue, szBuffer, nSize) is called with a usable buffer.
char* FormatValueText(const ValueNameTable& contract, int nValue, char* szBuffer, size_t nSize,
                      FunctionRef<void(int nValue, char* szBuffer, size_t nSize)> write);

}  // namespace smgr
