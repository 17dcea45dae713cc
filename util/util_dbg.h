/* Debug channels, trace lines and assertions of the companion services.
 * A channel's level and sink are read when the channel is created: the level from
 * SESSMGR_DEBUG_LEVEL (integer, default 0 = silent), the sink from SESSMGR_DEBUG_FILE
 * (a path opened for appending; default standard error). Each trace is one line,
 *   "YYYY-MM-DD HH:MM:SS.uuuuuu [CHANNEL] L<level> <pid>/<tid> <function> (<file>:<line>): <text>"
 * written with a single write() (one trailing newline of the text is dropped).
 * Callers test the level themselves (UTIL_DBG_PRINT does) so a disabled trace
 * costs one comparison; the print functions test it again. */
#ifndef SESSMGR_UTIL_DBG_H
#define SESSMGR_UTIL_DBG_H

#include "sessmgr/sm_types.h"

SMGR_EXTERN_C_BEGIN

typedef struct tagDBG_CHANNEL {
  DWORD dwReserved;
  int nMaxLevel; /* current level: traces of level <= nMaxLevel are written */
} DBG_CHANNEL;
typedef DBG_CHANNEL* HDBG;

/* Creates or attaches the named channel (reference counted: every attach needs one
 * _DoDbgUninitEx) and stores its handle in *phDbg. */
BOOL _DoDbgInit(const char* szChannelName, HDBG* phDbg);
/* Writes one trace line: level, function, file:line and the formatted text. */
void _DoDbgPrintEx(HDBG hDbg, int nLevel, const char* szFunction, const char* szFile, int nLine,
                   const char* szFormat, ...) __attribute__((format(printf, 6, 7)));
/* Writes a byte buffer as a hex dump: a head line, then 16 bytes per line. */
void _DoDbgPrintBuffer(HDBG hDbg, int nLevel, const char* szFunction, const char* szFile, int nLine,
                       const void* pvBuffer, size_t nSize);
/* Releases one attachment of the channel; the last release frees it (the handle is
 * then dangling and must not be used). */
void _DoDbgUninitEx(HDBG hDbg, const char* szFunction, const char* szFile, int nLine);

/* Reports a failed precondition as a level 1 trace "Assertion failed: <expression>" on
 * the channel "ASSERT" (with the caller's function, file and line); aborts only in
 * builds made with SESSMGR_ABORT_ON_ASSERT (and only while aborting is enabled, see
 * SetAssertAbortEnabled). Otherwise the caller goes on. */
void _DoAssert(const char* szExpression, const char* szFunction, const char* szFile, int nLine);
void _DoTextAssert(const char* szFunction, const char* szFile, int nLine, const char* szFormat, ...)
    __attribute__((format(printf, 4, 5)));

/* Runs pfnFunction once per process, thread-safely, then sets *pbFlag to 1.
 * Callers test *pbFlag == 1 first and skip the call. */
BOOL DoExecuteOnceOnlyFunction(BOOL (*pfnFunction)(void), BOOL* pbFlag);

SMGR_EXTERN_C_END

#define UTIL_DBG_ENABLED(hDbg, nLevel) ((hDbg) != NULL && (hDbg)->nMaxLevel >= (nLevel))
#define UTIL_DBG_PRINT(hDbg, nLevel, ...)                                         \
  do {                                                                            \
    if (UTIL_DBG_ENABLED(hDbg, nLevel))                                           \
      _DoDbgPrintEx((hDbg), (nLevel), __func__, __FILE__, __LINE__, __VA_ARGS__); \
  } while (0)
#define UTIL_ASSERT(expr)                                        \
  do {                                                           \
    if (!(expr)) _DoAssert(#expr, __func__, __FILE__, __LINE__); \
  } while (0)

#ifdef __cplusplus
#include <functional>
#include <string>
namespace smgr::util {
/* Test-only: receives every trace that passes its channel's level, of every channel
 * (the assertion channel "ASSERT" included) while installed, whatever the sink; pass
 * nullptr to remove. `text` is the formatted text exactly as the format produced it
 * (a trailing newline is kept); szFile is the base name of the source file. The hook
 * runs on the tracing thread, outside the channel registry's lock. */
using TraceSink = std::function<void(const char* szChannel, int nLevel, const char* szFunction,
                                     const char* szFile, int nLine, const std::string& text)>;
void SetTraceCaptureHook(TraceSink sink);
/* Test-only: forces the level of every channel (existing and future); -1 restores
 * the environment's level. */
void SetDebugLevelOverride(int nLevel);
/* Test-only: lets tests exercise failed preconditions in aborting builds. */
void SetAssertAbortEnabled(bool bEnabled);
}  // namespace smgr::util
#endif

#endif /* SESSMGR_UTIL_DBG_H */
