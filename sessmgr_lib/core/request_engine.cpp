// The standard request sequence, implemented once: every family operation
// that sends a request runs through Transact() with its RequestTraits. The
// transport itself (queues, wait) lives in sessmgr_api.cpp.
#include "request_engine.h"

#include <errno.h>
#include <mqueue.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <mutex>

#include "lib_state.h"
#include "lib_trace.h"
#include "util_string.h"

namespace smgr {
namespace {

constexpr size_t kResultOffset = sizeof(SMGRPROT_HEADER);                   // 16
constexpr size_t kDescriptionOffset = kResultOffset + sizeof(SMGR_RESULT);  // 20
constexpr size_t kDescriptionSize = 160;
constexpr size_t kHeadWithoutDescription = kDescriptionOffset;                  // 20
constexpr size_t kHeadWithDescription = kDescriptionOffset + kDescriptionSize;  // 180

bool PassesSuccessTest(SuccessTest test, SMGR_RESULT result) {
  if (result == SMGR_ERROR_SUCCESS) return true;
  return test == SuccessTest::ZeroOrWarning && (result & SMGR_IS_SUCCESS_WITH_WARNING) != 0;
}

BOOL Done(const RequestTraits& traits, BOOL bResult) {
  SMGR_TRACE_AS(traits.szOperation, traits.nExitTraceLevel, "Done (returning %s).\n",
                SMGR_BOOL_TEXT(bResult));
  return bResult;
}

void FillHeader(void* pvRequest, WORD wType, WORD wSequence, size_t nSize) {
  SMGRPROT_HEADER header{};
  header.wMsgType = wType;
  header.wMsgSequence = wSequence;
  header.wMsgSize = static_cast<WORD>(nSize);
  header.wReserved = 0;
  header.dwSrcPID = static_cast<DWORD>(CurrentPid());
  header.dwSrcUID = static_cast<DWORD>(g_ClientUID.load(std::memory_order_relaxed));
  std::memcpy(pvRequest, &header, sizeof(header));
}

void TraceSendFailure(const RequestTraits& traits, int nErrno) {
  if (!SMGR_TRACE_ENABLED(3)) return;
  char szErrno[80];
  const char* szText = strerror_r(nErrno, szErrno, sizeof(szErrno));
  SMGR_TRACE_AS(traits.szOperation, 3, traits.szSendFailureTrace, nErrno, szText);
}

// Sets the last error for a daemon result that failed the success test.
void SetDaemonFailure(const RequestTraits& traits, const ResponseView& response, SMGR_RESULT result) {
  switch (traits.failureLastError) {
    case FailureLastError::ResultWithDescription: {
      char szDescription[kDescriptionSize + 1];
      response.description(szDescription, sizeof(szDescription), traits.nDescriptionOffset);
      SessMgr_SetLastErrorEx(result, 0, szDescription);
      break;
    }
    case FailureLastError::Result:
      SessMgr_SetLastError(result);
      break;
    case FailureLastError::ResultWithErrno: {
      int nErrno = 0;
      response.read(traits.nFailureErrnoOffset, &nErrno);
      SessMgr_SetLastErrorEx(result, nErrno, nullptr);
      break;
    }
    case FailureLastError::Untouched:
      break;
  }
}

// g_APIMutex as a BasicLockable, so that Transact holds it through a
// std::unique_lock and no return path can leave it locked.
struct ApiMutex {
  void lock() { pthread_mutex_lock(&g_APIMutex); }
  void unlock() { pthread_mutex_unlock(&g_APIMutex); }
};

}  // namespace

WORD ResponseView::reportedSize() const {
  SMGRPROT_HEADER header{};
  std::memcpy(&header, pb_, std::min(n_, sizeof(header)));
  return header.wMsgSize;
}

SMGR_RESULT ResponseView::result() const {
  SMGR_RESULT result = SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR;
  read(kResultOffset, &result);
  return result;
}

void ResponseView::description(char* szBuffer, size_t nSize, size_t nOffset) const {
  if (szBuffer == nullptr || nSize == 0) return;
  szBuffer[0] = '\0';
  if (nOffset == 0) nOffset = kDescriptionOffset;
  if (n_ <= nOffset) return;
  // The daemon's text may lack its terminator: take at most the field, at most
  // what arrived, and stop at the first NUL.
  size_t nAvailable = std::min(n_ - nOffset, kDescriptionSize);
  const char* szText = reinterpret_cast<const char*>(pb_ + nOffset);
  size_t nLength = strnlen(szText, nAvailable);
  nLength = std::min(nLength, nSize - 1);
  std::memcpy(szBuffer, szText, nLength);
  szBuffer[nLength] = '\0';
}

size_t ResponseView::copyOut(size_t nOffset, size_t nLength, void* pDest, size_t nDestSize) const {
  if (pDest == nullptr || nOffset >= n_) return 0;
  size_t nCopy = std::min({nLength, nDestSize, n_ - nOffset});
  std::memcpy(pDest, pb_ + nOffset, nCopy);
  return nCopy;
}

size_t CopyRecordBack(const ResponseView& response, size_t nOffset, size_t nReturnedSize, void* pvCaller,
                      size_t nCallerSize) {
  return response.copyOut(nOffset, std::min(nCallerSize, nReturnedSize), pvCaller, nCallerSize);
}

bool IsLibraryInitialised() { return g_nLibInitCount.load() > 0; }

ApiLock::ApiLock() { pthread_mutex_lock(&g_APIMutex); }
ApiLock::~ApiLock() { pthread_mutex_unlock(&g_APIMutex); }

void CheckPidChange(const RequestTraits& traits) {
  if (!IsLibraryInitialised() || CurrentPid() == g_ClientPID.load()) return;
  if (AdaptToPIDChange()) return;
  if (traits.adaptFailure == AdaptFailure::Assert) {
    SMGR_ASSERT_TEXT(false, "AdaptToPIDChange()");
  } else {
    SMGR_TRACE_AS(traits.szOperation, 3, "Failed to adapt to PID change.\n");
  }
}

BOOL Transact(const RequestTraits& traits, void* pvRequest, size_t nRequestSize, bool bArgumentsValid,
              BuildStep build, CopyBackStep copyBack, BuildStep checkBeforeLock) {
  SMGR_ASSERT(pvRequest != nullptr && nRequestSize >= sizeof(SMGRPROT_HEADER) && nRequestSize <= 0xFFFF);
  if (pvRequest == nullptr || nRequestSize < sizeof(SMGRPROT_HEADER) || nRequestSize > 0xFFFF) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return Done(traits, FALSE);
  }
  const bool bCheckInit = traits.initCheck == InitCheck::Standard;
  if (bCheckInit && g_nLibInitCount.load() < 1) {
    SessMgr_SetLastError(traits.notInitialisedResult);
    return Done(traits, FALSE);
  }
  if (traits.pidCheck == PidCheck::BeforeLock) CheckPidChange(traits);

  WORD wSequence = 0;
  if (traits.sequenceOrder != SequenceOrder::UnderLock) {
    wSequence = ++g_wTxSequence;
    FillHeader(pvRequest, traits.wRequestType, wSequence, nRequestSize);
    if (checkBeforeLock && !checkBeforeLock(pvRequest)) return Done(traits, FALSE);
  }

  ApiMutex mutex;
  std::unique_lock<ApiMutex> lock(mutex);
  // A last SessMgrLib_Shutdown may have run while this thread waited for the
  // mutex: the queues are closed and the handle tables drained by now.
  if (bCheckInit && g_nLibInitCount.load() < 1) {
    SessMgr_SetLastError(traits.notInitialisedResult);
    return Done(traits, FALSE);
  }
  if (!bArgumentsValid) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    return Done(traits, FALSE);
  }
  if (traits.pidCheck == PidCheck::AfterLock) CheckPidChange(traits);

  if (traits.sequenceOrder == SequenceOrder::UnderLock) {
    wSequence = ++g_wTxSequence;
    FillHeader(pvRequest, traits.wRequestType, wSequence, nRequestSize);
  }
  if (build && !build(pvRequest)) return Done(traits, FALSE);

  if (Transport().send(g_OutMsgQID, static_cast<const char*>(pvRequest), nRequestSize, 0) != 0) {
    int nErrno = errno;
    if (traits.sendFailure == SendFailure::SetLastError)
      SessMgr_SetLastErrorEx(SMGR_ERROR_LIB_TO_DAEMON_IPC_ERROR, nErrno, nullptr);
    TraceSendFailure(traits, nErrno);
    return Done(traits, FALSE);
  }

  if (traits.sequenceOrder == SequenceOrder::BeforeLockWaitCurrent) wSequence = g_wTxSequence.load();
  const int nTimeoutMs = traits.nResponseTimeoutMs > 0 ? traits.nResponseTimeoutMs : g_nIPCRespTimeoutInMS;
  size_t nReported = 0;
  size_t nReceived = 0;
  if (!WaitForResponse(static_cast<WORD>(traits.wRequestType + 1), wSequence, nTimeoutMs, &nReported,
                       &nReceived))
    return Done(traits, FALSE);

  const ResponseView response(g_pInputBuffer, nReceived);
  size_t nMinimum = traits.nMinResponseSize;
  if (nMinimum == 0)
    nMinimum = !traits.bResponseHasDescription  ? kHeadWithoutDescription
               : traits.nDescriptionOffset != 0 ? traits.nDescriptionOffset + kDescriptionSize
                                                : kHeadWithDescription;
  if (nReceived < nMinimum) {
    SMGR_TRACE_AS(traits.szOperation, 3, "Response of %zu bytes is shorter than the %zu expected.\n",
                  nReceived, nMinimum);
    SessMgr_SetLastError(SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR);
    return Done(traits, FALSE);
  }

  SMGR_RESULT result = response.result();
  if (!PassesSuccessTest(traits.success, result)) {
    if (traits.bCopyBackOnFailure && copyBack) {
      SMGR_RESULT ignored = result;  // the outcome stays this failure
      copyBack(response, &ignored);
    }
    SetDaemonFailure(traits, response, result);
    return Done(traits, FALSE);
  }

  SMGR_RESULT lastError = result;
  if (copyBack && !copyBack(response, &lastError)) {
    SessMgr_SetLastError(lastError);
    return Done(traits, FALSE);
  }
  const bool bSetLastError =
      traits.successLastError == SuccessLastError::Result ||
      (traits.successLastError == SuccessLastError::WarningOnly && lastError != SMGR_ERROR_SUCCESS);
  if (bSetLastError && traits.successErrorOrder == SuccessErrorOrder::BeforeUnlock)
    SessMgr_SetLastError(lastError);
  lock.unlock();
  if (bSetLastError && traits.successErrorOrder == SuccessErrorOrder::AfterUnlock)
    SessMgr_SetLastError(lastError);
  return Done(traits, TRUE);
}

}  // namespace smgr
