// Attaches the library's debug channel "SESSMGRLIB" for in-process tests that
// check traces without initialising the library (the channel is otherwise
// attached by SessMgrLib_Init).
#pragma once

#include "lib_trace.h"

namespace smgr::test {

inline void AttachLibraryChannel() {
  if (g_hSMGRApiDbg == nullptr) _DoDbgInit("SESSMGRLIB", &g_hSMGRApiDbg);
}

}  // namespace smgr::test
