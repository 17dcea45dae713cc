/* Library lifecycle: start-up and connection to sessmgrd, shutdown, the wait
 * for a response, fork handling, impersonation and the system shutdown
 * request. C99 and C++ clean. */
#ifndef SESSMGR_SM_LIFECYCLE_H
#define SESSMGR_SM_LIFECYCLE_H

#include <sys/types.h>

#include "sessmgr/sm_types.h"

/* The only client API version the library accepts (major in the upper 16
 * bits, minor in the lower 16). */
#define SMGR_API_VERSION_1_0 ((DWORD)0x00010000u)

SMGR_EXTERN_C_BEGIN

/**
 * Initialises the library, or counts one more user of it.
 *
 * The first call connects to sessmgrd (opens the daemon's request queue,
 * creates this process's receive queue and exchanges the connect handshake);
 * later calls only count. Each successful call must be matched by
 * SessMgrLib_Shutdown().
 *
 * @param dwClientAPIVersion must be SMGR_API_VERSION_1_0, else the last error
 *        is SMGR_ERROR_UNSUPPORTED_CLIENT_API_VERSION (63).
 * @param pdwActualAPIVersion may be NULL; receives SMGR_API_VERSION_1_0.
 * @return TRUE when initialised. On FALSE the last error says why: 4 (the
 *         daemon is not running), 9 (receive queue), 10 (send), 11 (daemon
 *         queue missing, or a connect response too short to read), 3 (no
 *         connect response), 5 (memory); unchanged when the daemon refused.
 */
SMGR_API BOOL SessMgrLib_Init(DWORD dwClientAPIVersion, DWORD* pdwActualAPIVersion);

/**
 * Releases one initialisation. The last one sends the disconnect indication,
 * frees every open handle and removes the receive queue. In a forked child that
 * never made a request it does nothing at all.
 */
SMGR_API void SessMgrLib_Shutdown(void);

/** Unload destructor of the library; releases the debug channel only. */
SMGR_API void __SmgrAPILIB_AutoShutdown(void);

/**
 * Waits for the response of the given type and sequence (call with the API
 * mutex held; every operation does). Other messages are discarded (last error
 * 12 or 13 in passing), progress indications skipped.
 *
 * @param pnSize receives the response header's wMsgSize.
 * @return TRUE with the response in the receive buffer; FALSE with last error
 *         3 (time-out), 4 (daemon gone) or 11 (select failed).
 */
SMGR_API BOOL SessMgrLib_WaitForResponse(WORD wRespType, WORD wSequence, size_t* pnSize);

/**
 * Asks sessmgrd to shut the system down (no response is awaited).
 * @return TRUE when sent (last error untouched); FALSE with 14 or 10.
 */
SMGR_API BOOL SessMgr_Shutdown(void);

/**
 * Makes later requests carry UID instead of the process's own user ID.
 * Root processes only; the last error is not set.
 * @return FALSE when the caller is not root or UID is unknown.
 */
SMGR_API BOOL SessMgrLib_SetUID(uid_t UID);

/**
 * Re-establishes the connection in a forked child (new receive queue, new
 * connect). Operations call it themselves on their first request after fork.
 * fork() itself waits while another thread of the process has a request in
 * flight (at most the response time-out), so the child starts with the
 * library free.
 */
SMGR_API BOOL AdaptToPIDChange(void);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_LIFECYCLE_H */
