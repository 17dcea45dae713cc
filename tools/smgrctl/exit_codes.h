// smgrctl's contract with scripts: every command exits with one of these
// classes, mapped from the result code in one place, and with --json a
// failure is one JSON object on standard output.
#pragma once

#include <string>

#include "sessmgr_api.h"

namespace smgrctl {

enum ExitStatus : int {
  kExitSuccess = 0,
  kExitRefused = 1,      // the daemon (or the library) refused: any other result code
  kExitUsage = 2,        // bad arguments, every parse error
  kExitTimeout = 3,      // no answer in time (result code 3)
  kExitUnreachable = 4,  // no daemon to talk to (start-up failures, result codes 4 and 10)
  kExitNotFound = 5,     // unknown ID or name (the NO_MATCHING_... and NO_SUCH_... codes)
};

// The class of a failed operation's result code.
ExitStatus ExitStatusOf(SMGR_RESULT code);
// "SMGR_ERROR_..." for a code the public header defines, empty otherwise.
std::string ResultSymbol(SMGR_RESULT code);

}  // namespace smgrctl
