/* Result codes (SMGR_RESULT) and the per-thread last error. */
#ifndef SESSMGR_SM_RESULTS_H
#define SESSMGR_SM_RESULTS_H

#include "sm_types.h"

typedef uint32_t SMGR_RESULT;

/* Code ranges. */
#define SMGR_IS_TEXT_DESCRIBED_ERROR 0x10000000u /* the daemon's description is the preferred text */
#define SMGR_IS_ERRNO_ERROR 0x20000000u          /* low bits carry an errno value */
#define SMGR_IS_SUCCESS_WITH_WARNING 0x80000000u /* success with a warning: operations return TRUE */

/* Codes the library itself sets (the complete table follows below). */
#define SMGR_ERROR_SUCCESS 0u
#define SMGR_ERROR_GENERIC_FAILURE 1u
#define SMGR_ERROR_INVALID_PARAMETERS 2u
#define SMGR_ERROR_IPC_RESPONSE_TIMEOUT_ERROR 3u
#define SMGR_ERROR_DAEMON_GONE 4u
#define SMGR_ERROR_OUT_OF_MEMORY 5u
#define SMGR_ERROR_NAME_IN_USE 6u
#define SMGR_ERROR_ID_IN_USE 7u
#define SMGR_ERROR_LIB_LOCAL_IPC_INIT_ERROR 9u
#define SMGR_ERROR_LIB_TO_DAEMON_IPC_ERROR 10u
#define SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR 11u
#define SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_TYPE_ERROR 12u
#define SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_SEQU_ERROR 13u
#define SMGR_ERROR_LIB_NOT_INITIALIZED 14u
#define SMGR_ERROR_UNSUPPORTED_CLIENT_API_VERSION 63u
#define SMGR_ERROR_INSUFFICIENT_RIGHTS 73u
#define SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE 0x80000002u
#define SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME 0x80000003u
#define SMGR_WARNING_TOO_MANY_ESSENCES_TO_START 0x80000004u

SMGR_EXTERN_C_BEGIN

/** Sets the calling thread's last error: code, errno 0, empty text. */
SMGR_API BOOL SessMgr_SetLastError(SMGR_RESULT ErrorCode);
/** Sets code, errno and text (NULL = empty; cut to 169 characters). */
SMGR_API BOOL SessMgr_SetLastErrorEx(SMGR_RESULT ErrorCode, int iErrNo, const char* szErrorText);
/** The calling thread's last result code; 0 when the thread never had one. */
SMGR_API SMGR_RESULT SessMgr_GetLastError(void);
/** The errno that went with the last error; 0 when none. */
SMGR_API int SessMgr_GetLastErrno(void);
/** Full text of the calling thread's last error into szBuffer (truncated to nSize). */
SMGR_API char* SessMgr_GetLastErrorString(char* szBuffer, size_t nSize);
/** Text of a result code into szBuffer (truncated to nSize). */
SMGR_API char* SessMgr_GetErrorString(SMGR_RESULT ErrorCode, char* szBuffer, size_t nSize);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_RESULTS_H */
