// Trace and precondition macros of the library: every line goes to the
// "SESSMGRLIB" debug channel. The level test is inline so a disabled trace
// costs one comparison.
#pragma once

#include "util_dbg.h"

extern HDBG g_hSMGRApiDbg;

// Trace from the current function.
#define SMGR_TRACE(nLevel, ...) UTIL_DBG_PRINT(g_hSMGRApiDbg, nLevel, __VA_ARGS__)

// Trace on behalf of an exported operation (the request engine traces with the
// name of the operation it runs, not its own).
#define SMGR_TRACE_AS(szFunction, nLevel, ...)                                               \
  do {                                                                                       \
    if (UTIL_DBG_ENABLED(g_hSMGRApiDbg, nLevel))                                             \
      _DoDbgPrintEx(g_hSMGRApiDbg, (nLevel), (szFunction), __FILE__, __LINE__, __VA_ARGS__); \
  } while (0)

#define SMGR_TRACE_ENABLED(nLevel) UTIL_DBG_ENABLED(g_hSMGRApiDbg, nLevel)

// Debug precondition: reports the expression text, as written (stringized here so
// that macros in it, e.g. NULL, are not expanded), when it does not hold.
#define SMGR_ASSERT(expr) SMGR_ASSERT_TEXT(expr, #expr)
// Same, with the exact expression text the traces must show.
#define SMGR_ASSERT_TEXT(expr, szText)                              \
  do {                                                              \
    if (!(expr)) _DoAssert((szText), __func__, __FILE__, __LINE__); \
  } while (0)

#define SMGR_BOOL_TEXT(b) ((b) ? "TRUE" : "FALSE")
