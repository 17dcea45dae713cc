/* Daemon diagnostics: debug state and information, thread and mutex health
 * lists, free-form debug requests. For maintenance tools. C99 and C++ clean. */
#ifndef SESSMGR_SM_DIAGNOSTICS_H
#define SESSMGR_SM_DIAGNOSTICS_H

#include "sessmgr/sm_types.h"

#pragma pack(push, 4)

/* The daemon's debug information (16 bytes). */
typedef struct tagSMGR_DEBUG_INFO {
  DWORD nSize;           /* 0 */
  int32_t iPID;          /* 4: the daemon's process ID */
  BOOL bWatchdogEnabled; /* 8 */
  int32_t enState;       /* 12: the daemon's debug state */
} SMGR_DEBUG_INFO;

/* One daemon thread (196 bytes). */
typedef struct tagSMGR_THREAD_INFO {
  int32_t iThreadID;            /* 0 */
  int32_t iScheduler;           /* 4 */
  int32_t iPriority;            /* 8 */
  char szName[40];              /* 12 */
  char szFileName[40];          /* 52 */
  char szFunctionName[40];      /* 92 */
  int32_t enState;              /* 132 */
  uint64_t nIterations;         /* 136 */
  uint64_t nIterationsDelta;    /* 144 */
  uint64_t nStateChanges;       /* 152 */
  uint64_t nStateChangesDelta;  /* 160 */
  uint64_t nLineNumber;         /* 168 */
  int64_t tLastChange;          /* 176 */
  uint64_t nStuckCount;         /* 184 */
  DWORD nLastStuckUPTimeInSecs; /* 192 */
} SMGR_THREAD_INFO;

/* One daemon mutex (204 bytes). */
typedef struct tagSMGR_MUTEX_INFO {
  DWORD nSize;                 /* 0 */
  char szCreationFileName[40]; /* 4 */
  int32_t nCreationLineNumber; /* 44 */
  int32_t nInLockCount;        /* 48 */
  uint64_t nAquiredCount;      /* 52 */
  uint64_t nReleasedCount;     /* 60 */
  uint64_t nAquiredDelta;      /* 68 */
  int32_t iOwnerThreadID;      /* 76 */
  char szOwningThreadName[40]; /* 80 */
  char szFunction[40];         /* 120 */
  char szFile[40];             /* 160 */
  int32_t nLineNumber;         /* 200 */
} SMGR_MUTEX_INFO;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGR_DEBUG_INFO) == 16, debug_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_DEBUG_INFO, iPID) == 4, debug_info_pid);
SMGR_STATIC_ASSERT(offsetof(SMGR_DEBUG_INFO, bWatchdogEnabled) == 8, debug_info_watchdog);
SMGR_STATIC_ASSERT(offsetof(SMGR_DEBUG_INFO, enState) == 12, debug_info_state);
SMGR_STATIC_ASSERT(sizeof(SMGR_THREAD_INFO) == 196, thread_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, iScheduler) == 4, thread_info_scheduler);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, iPriority) == 8, thread_info_priority);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, szName) == 12, thread_info_name);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, szFileName) == 52, thread_info_file);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, szFunctionName) == 92, thread_info_function);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, enState) == 132, thread_info_state);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, nIterations) == 136, thread_info_iterations);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, nIterationsDelta) == 144, thread_info_iterations_delta);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, nStateChanges) == 152, thread_info_state_changes);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, nStateChangesDelta) == 160, thread_info_state_changes_delta);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, nLineNumber) == 168, thread_info_line);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, tLastChange) == 176, thread_info_last_change);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, nStuckCount) == 184, thread_info_stuck);
SMGR_STATIC_ASSERT(offsetof(SMGR_THREAD_INFO, nLastStuckUPTimeInSecs) == 192, thread_info_last_stuck);
SMGR_STATIC_ASSERT(sizeof(SMGR_MUTEX_INFO) == 204, mutex_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_MUTEX_INFO, szCreationFileName) == 4, mutex_info_creation_file);
SMGR_STATIC_ASSERT(offsetof(SMGR_MUTEX_INFO, nCreationLineNumber) == 44, mutex_info_creation_line);
SMGR_STATIC_ASSERT(offsetof(SMGR_MUTEX_INFO, nInLockCount) == 48, mutex_info_in_lock);
SMGR_STATIC_ASSERT(offsetof(SMGR_MUTEX_INFO, nAquiredCount) == 52, mutex_info_acquired);
SMGR_STATIC_ASSERT(offsetof(SMGR_MUTEX_INFO, nReleasedCount) == 60, mutex_info_released);
SMGR_STATIC_ASSERT(offsetof(SMGR_MUTEX_INFO, nAquiredDelta) == 68, mutex_info_acquired_delta);
SMGR_STATIC_ASSERT(offsetof(SMGR_MUTEX_INFO, iOwnerThreadID) == 76, mutex_info_owner);
SMGR_STATIC_ASSERT(offsetof(SMGR_MUTEX_INFO, szOwningThreadName) == 80, mutex_info_owner_name);
SMGR_STATIC_ASSERT(offsetof(SMGR_MUTEX_INFO, szFunction) == 120, mutex_info_function);
SMGR_STATIC_ASSERT(offsetof(SMGR_MUTEX_INFO, szFile) == 160, mutex_info_file);
SMGR_STATIC_ASSERT(offsetof(SMGR_MUTEX_INFO, nLineNumber) == 200, mutex_info_line);

SMGR_EXTERN_C_BEGIN

/**
 * Sets the daemon's debug state (a value the daemon defines).
 * @return TRUE when the daemon answered 0 (last error 0); FALSE with the
 *         daemon's code (warnings included, no text), or 14, 10, 3, 4, 11.
 */
SMGR_API BOOL SessMgr_SetDebugState(int enState);

/**
 * Reads the daemon's debug information into *pInfo (all four fields).
 * @return TRUE with last error 0; FALSE with 2 (pInfo NULL), the daemon's code,
 *         or a transport code (11 also when the response is too short to hold
 *         the record; nothing is copied then).
 */
SMGR_API BOOL SessMgr_GetDebugInfo(SMGR_DEBUG_INFO* pInfo);

/**
 * Lists the daemon's threads, one page at a time.
 *
 * Asks for nBuffSize / sizeof(SMGR_THREAD_INFO) records starting at index
 * nOffset. The records are copied into pvBuffer only when it is non-NULL and
 * the returned count times the daemon's record size fits nBuffSize; the counts
 * and the record size are returned in any case (each output pointer may be
 * NULL). Read the records with a stride of *pnElementSize.
 * @return TRUE with last error 0; FALSE with the daemon's code, a transport
 *         code, or 11 when the response is shorter than its count says.
 */
SMGR_API BOOL SessMgr_EnumerateThreads(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                       UINT* pnTotalThreadCount, UINT* pnReturnedThreads,
                                       size_t* pnElementSize);

/** Lists the daemon's mutexes; same paging contract as SessMgr_EnumerateThreads(). */
SMGR_API BOOL SessMgr_EnumerateMutexes(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                       UINT* pnTotalMutexesCount, UINT* pnReturnedMutexes,
                                       size_t* pnElementSize);

/**
 * Passes a free-form debug request (up to 512 bytes of data) to the daemon.
 * Root only.
 * @return TRUE with last error 0; FALSE with 73 (not root), 2 (pvData given
 *         with more than 512 bytes), the daemon's code or a transport code.
 */
SMGR_API BOOL SessMgr_DebugRequest(int enRequest, void* pvData, size_t nDataSize);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_DIAGNOSTICS_H */
