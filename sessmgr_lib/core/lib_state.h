// Library-wide state of the client core (one instance per process) and the
// hooks other families use at shutdown. Defined in sessmgr_api.cpp; only the
// core changes it, always under g_APIMutex unless noted.
#pragma once

#include <mqueue.h>
#include <pthread.h>
#include <sys/types.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "sessmgr_api.h"
#include "util_dbg.h"

extern HDBG g_hSMGRApiDbg;               // debug channel "SESSMGRLIB"
extern mqd_t g_OutMsgQID;                // the daemon's request queue (write-only), -1 when closed
extern mqd_t g_InMsgQID;                 // this process's receive queue, -1 when closed
extern std::atomic<WORD> g_wTxSequence;  // sequence of the last request sent (some families take it unlocked)
extern int64_t g_nMaxMsgSize;            // message size of the receive queue = receive buffer size
extern BYTE* g_pInputBuffer;             // the receive buffer; holds the response after a wait
extern char g_szLocalQueueName[32];      // name of the receive queue
extern std::atomic<int> g_nLibInitCount;  // successful inits not yet shut down (read unlocked)
extern pthread_mutex_t g_APIMutex;        // the API mutex (recursive, see ApiLock)
extern std::atomic<pid_t> g_ClientPID;    // process the queues and connection were made for
extern std::atomic<uid_t> g_ClientUID;    // user ID put into every request header (set unlocked)
extern pid_t g_SessMgrDaemonPID;          // the daemon's process ID from the connect response
extern DWORD g_dwClientAPIVersion;        // API version the client asked for
extern int g_enCardType;                  // card type from the connect response
extern int g_nIPCRespTimeoutInMS;         // response time-out in ms
extern int g_enPersonality;               // system personality

// Value-name operations trace their calls while on; record dumps switch it off
// meanwhile, from any thread.
extern std::atomic<BOOL> g_bDoStringAPITrace;

namespace smgr {

// One handle family's table as the lifecycle sees it: the cleanup that frees it
// at the last shutdown and the count of its live handles. Families register
// theirs from a static initialiser (SMGR_REGISTER_HANDLE_FAMILY); cleanups run
// under g_APIMutex, in registration order.
using HandleCleanupFn = void (*)();
using HandleCountFn = size_t (*)();
void RegisterHandleFamily(HandleCleanupFn cleanup, HandleCountFn count);
// Runs every registered cleanup (the shutdown path; exposed for tests).
void RunHandleCleanups();
// Handles of every family alive in this process (the tests' leak check).
size_t LiveHandleCount();

// getpid() without a system call on the request path: cached, and refreshed
// in the child by a fork handler (processes that bypass fork(), e.g. raw
// clone, are not supported by the library anyway).
pid_t CurrentPid();

// Like SessMgrLib_WaitForResponse, but with the time-out of this wait (the
// configured g_nIPCRespTimeoutInMS is only read by the callers, never changed)
// and also reporting how many bytes the queue actually delivered (the only
// trustworthy bound for reading the response).
BOOL WaitForResponse(WORD wRespType, WORD wSequence, int nTimeoutMs, size_t* pnReportedSize,
                     size_t* pnReceived);

}  // namespace smgr

// Registers a HandleFamily instance and its exported cleanup when the library is loaded.
#define SMGR_REGISTER_HANDLE_FAMILY(Family, cleanup)                \
  namespace {                                                       \
  [[maybe_unused]] const bool s_bHandleFamilyRegistered_##cleanup = \
      (smgr::RegisterHandleFamily(cleanup, &Family::Count), true);  \
  }
