// The calling thread's last error: a record per thread behind a thread-specific
// data key, made on first need and freed when the thread ends. Works before
// SessMgrLib_Init and never takes the API mutex.
#include <errno.h>
#include <stdlib.h>
#include <string.h>

#include <atomic>

#include "last_error.h"
#include "lib_trace.h"
#include "util_string.h"

pthread_key_t g_pThreadLocalData;

namespace {

// Set (release) once g_pThreadLocalData holds a made key; read (acquire) before using it.
std::atomic<bool> _g_bThreadLocalDataAllocated{false};
pthread_mutex_t _g_KeyCreateMutex = PTHREAD_MUTEX_INITIALIZER;

// Every thread's record. Threads link and unlink concurrently, so the list has a lock of
// its own (the API mutex is not involved); the library never walks it.
FLIST_D _g_ThreadDataList = FLIST_STATIC_INITIALIZER;
pthread_mutex_t _g_ThreadDataListMutex = PTHREAD_MUTEX_INITIALIZER;

void _FreeThreadData(void* pvData) {
  auto* pData = static_cast<SM_THREAD_DATA*>(pvData);
  if (pData == nullptr) return;
  pthread_mutex_lock(&_g_ThreadDataListMutex);
  if (pData->DNode.pList != nullptr) FastUnlinkD(&pData->DNode);
  pthread_mutex_unlock(&_g_ThreadDataListMutex);
  free(pData);
}

// Picks the text from either strerror_r variant: GNU returns the text (maybe not in the
// buffer), XSI returns 0 and fills the buffer.
[[maybe_unused]] const char* _ErrnoTextFrom(char* szResult, char*) { return szResult; }
[[maybe_unused]] const char* _ErrnoTextFrom(int rc, char* szBuffer) {
  return rc == 0 ? szBuffer : "Unknown error";
}

bool _ThreadDataKeyIsMade() { return _g_bThreadLocalDataAllocated.load(std::memory_order_acquire); }

// Traces of the set operations: a cleared error is a detail, a real one is worth level 5.
int _SetTraceLevel(SMGR_RESULT ErrorCode, int iErrNo) { return (ErrorCode == 0 && iErrNo == 0) ? 6 : 5; }

// Gets or makes the calling thread's record.
SM_THREAD_DATA* _GetOrMakeThreadData() {
  if (SM_THREAD_DATA* pData = FindThreadDataForCallingThread()) return pData;

  auto* pData = static_cast<SM_THREAD_DATA*>(malloc(sizeof(SM_THREAD_DATA)));
  if (pData == nullptr) {
    SMGR_TRACE(2, "Failed to allocate new thread data.\n");
    return nullptr;
  }
  FastInitNode(&pData->DNode);
  pData->LastAPIErrorCode = SMGR_ERROR_SUCCESS;
  pData->iLastErrno = 0;
  pData->szErrorText[0] = '\0';

  // A key that was never made reads as EINVAL (as pthread_setspecific would report it),
  // without handing a stale key value to pthreads: make the key now and store again.
  int rc = _ThreadDataKeyIsMade() ? pthread_setspecific(g_pThreadLocalData, pData) : EINVAL;
  if (rc == EINVAL && EnsureThreadDataKey(nullptr)) rc = pthread_setspecific(g_pThreadLocalData, pData);
  if (rc != 0) {
    free(pData);
    SMGR_TRACE(2, "pthread_setspecific failed.\n");
    return nullptr;
  }

  pthread_mutex_lock(&_g_ThreadDataListMutex);
  FastLinkD(&pData->DNode, pData, &_g_ThreadDataList);
  pthread_mutex_unlock(&_g_ThreadDataListMutex);
  return pData;
}

}  // namespace

void LockThreadDataListForFork() { pthread_mutex_lock(&_g_ThreadDataListMutex); }
void UnlockThreadDataListAfterFork() { pthread_mutex_unlock(&_g_ThreadDataListMutex); }
void ResetThreadDataListAfterForkInChild() { pthread_mutex_init(&_g_ThreadDataListMutex, nullptr); }

bool EnsureThreadDataKey(int* pnRc) {
  if (pnRc != nullptr) *pnRc = 0;
  if (_ThreadDataKeyIsMade()) return true;

  pthread_mutex_lock(&_g_KeyCreateMutex);
  int rc = 0;
  if (!_g_bThreadLocalDataAllocated.load(std::memory_order_relaxed)) {
    rc = pthread_key_create(&g_pThreadLocalData, _FreeThreadData);
    if (rc == 0) _g_bThreadLocalDataAllocated.store(true, std::memory_order_release);
  }
  pthread_mutex_unlock(&_g_KeyCreateMutex);

  if (pnRc != nullptr) *pnRc = rc;
  return rc == 0;
}

bool MakeThreadDataForCallingThread() { return _GetOrMakeThreadData() != nullptr; }

SM_THREAD_DATA* FindThreadDataForCallingThread() {
  if (!_ThreadDataKeyIsMade()) return nullptr;
  return static_cast<SM_THREAD_DATA*>(pthread_getspecific(g_pThreadLocalData));
}

uint64_t CountThreadDataRecords() {
  pthread_mutex_lock(&_g_ThreadDataListMutex);
  const uint64_t nCount = _g_ThreadDataList.nNumOfEntries;
  pthread_mutex_unlock(&_g_ThreadDataListMutex);
  return nCount;
}

void CopyErrnoText(int iErrno, char* szBuffer, size_t nSize) {
  if (szBuffer == nullptr || nSize == 0) return;
  szBuffer[0] = '\0';
  const char* szText = _ErrnoTextFrom(strerror_r(iErrno, szBuffer, nSize), szBuffer);
  if (szText != szBuffer) CopyString(szBuffer, szText, nSize);
}

extern "C" SMGR_API BOOL SessMgr_SetLastError(SMGR_RESULT ErrorCode) {
  const int nLevel = _SetTraceLevel(ErrorCode, 0);
  SMGR_TRACE(nLevel, "Called (ErrCode=%u, 0x%X).\n", ErrorCode, ErrorCode);
  BOOL bResult = FALSE;
  if (SM_THREAD_DATA* pData = _GetOrMakeThreadData()) {
    pData->LastAPIErrorCode = ErrorCode;
    pData->iLastErrno = 0;
    pData->szErrorText[0] = '\0';
    bResult = TRUE;
  }
  SMGR_TRACE(nLevel, "Done (returning %s).\n", SMGR_BOOL_TEXT(bResult));
  return bResult;
}

extern "C" SMGR_API BOOL SessMgr_SetLastErrorEx(SMGR_RESULT ErrorCode, int iErrNo, const char* szErrorText) {
  const int nLevel = _SetTraceLevel(ErrorCode, iErrNo);
  SMGR_TRACE(nLevel, "Called (ErrCode=%u, 0x%X, iErrNo=%d).\n", ErrorCode, ErrorCode, iErrNo);
  BOOL bResult = FALSE;
  if (SM_THREAD_DATA* pData = _GetOrMakeThreadData()) {
    pData->LastAPIErrorCode = ErrorCode;
    pData->iLastErrno = iErrNo;
    if (szErrorText != nullptr)
      CopyString(pData->szErrorText, szErrorText, sizeof(pData->szErrorText));
    else
      pData->szErrorText[0] = '\0';
    bResult = TRUE;
  }
  SMGR_TRACE(nLevel, "Done (returning %s).\n", SMGR_BOOL_TEXT(bResult));
  return bResult;
}

extern "C" SMGR_API SMGR_RESULT SessMgr_GetLastError(void) {
  const SM_THREAD_DATA* pData = FindThreadDataForCallingThread();
  return pData != nullptr ? pData->LastAPIErrorCode : SMGR_ERROR_SUCCESS;
}

extern "C" SMGR_API int SessMgr_GetLastErrno(void) {
  const SM_THREAD_DATA* pData = FindThreadDataForCallingThread();
  return pData != nullptr ? pData->iLastErrno : 0;
}
