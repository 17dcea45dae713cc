// Internal interface of the per-thread last error: the thread record, the
// thread-specific-data key that finds it, and the helpers that initialisation
// and the result texts share. Exported operations are in sm_results.h.
#pragma once

#include <pthread.h>

#include "sessmgr/sm_results.h"
#include "util_list.h"

// One per thread that ever set a last error; freed by the key's destructor at thread end.
typedef struct tagSM_THREAD_DATA {
  FNODE_D DNode;  // links the record into _g_ThreadDataList
  SMGR_RESULT LastAPIErrorCode;
  int iLastErrno;
  char szErrorText[SMGR_LAST_ERROR_TEXT_SIZE];
} SM_THREAD_DATA;

// Key of the per-thread record; valid only once EnsureThreadDataKey() returned true.
extern pthread_key_t g_pThreadLocalData;

// Makes the thread-specific-data key exactly once per process (racing callers wait for
// the winner). On failure returns false and, when pnRc is given, the pthread_key_create
// result; a later call tries again. The key is never deleted.
bool EnsureThreadDataKey(int* pnRc = nullptr);

// Gets or makes the calling thread's record (initialisation makes the initialising
// thread's record up front). False when it cannot be allocated or stored.
bool MakeThreadDataForCallingThread();

// The calling thread's record, or nullptr when it has none (never makes one).
SM_THREAD_DATA* FindThreadDataForCallingThread();

// Fork handling: the record list's lock is taken before fork and released on both
// sides after it (made anew in the child), so a child never inherits it held by a thread that is gone.
void LockThreadDataListForFork();
void UnlockThreadDataListAfterFork();
void ResetThreadDataListAfterForkInChild();

// Number of live thread records (for tests: a finished thread must leave none behind).
uint64_t CountThreadDataRecords();

// Room for any system errno text.
#define SMGR_ERRNO_TEXT_SIZE 128

// The system's text for iErrno, copied bounded and terminated into szBuffer.
void CopyErrnoText(int iErrno, char* szBuffer, size_t nSize);
