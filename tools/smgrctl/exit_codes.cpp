// Result code -> exit status and symbol, from the symbol table generated out
// of the public results header at build time (result_symbols.inc).
#include "exit_codes.h"

#include <algorithm>
#include <iterator>

namespace smgrctl {
namespace {

struct ResultName {
  SMGR_RESULT code;
  const char* symbol;
};

constexpr ResultName kResultNames[] = {
#include "result_symbols.inc"
};

const ResultName* Find(SMGR_RESULT code) {
  auto it = std::find_if(std::begin(kResultNames), std::end(kResultNames),
                         [code](const ResultName& name) { return name.code == code; });
  return it == std::end(kResultNames) ? nullptr : it;
}

bool Contains(const char* text, const char* part) {
  return std::string(text).find(part) != std::string::npos;
}

}  // namespace

std::string ResultSymbol(SMGR_RESULT code) {
  const ResultName* name = Find(code);
  return name ? name->symbol : "";
}

ExitStatus ExitStatusOf(SMGR_RESULT code) {
  switch (code) {
    case SMGR_ERROR_SUCCESS:
      return kExitSuccess;
    case SMGR_ERROR_IPC_RESPONSE_TIMEOUT_ERROR:
      return kExitTimeout;
    case SMGR_ERROR_DAEMON_GONE:
    case SMGR_ERROR_LIB_TO_DAEMON_IPC_ERROR:
      return kExitUnreachable;
    default:
      break;
  }
  if (SMGR_RESULT_IS_WARNING(code)) return kExitSuccess;
  const ResultName* name = Find(code);
  if (name && (Contains(name->symbol, "_NO_MATCHING_") || Contains(name->symbol, "_NO_SUCH_")))
    return kExitNotFound;
  return kExitRefused;
}

}  // namespace smgrctl
