// Daemon diagnostics: debug state and information, thread and mutex
// enumeration, free-form debug requests. Each operation is its traits plus the
// request it fills; the sequence itself is the request engine's.
#include <cstring>

#include "lib_trace.h"
#include "paged_enumeration.h"
#include "request_engine.h"
#include "util.h"

namespace {

using smgr::AdaptFailure;
using smgr::FailureLastError;
using smgr::RequestTraits;
using smgr::ResponseView;
using smgr::SuccessTest;

// The diagnostics departures: only 0 succeeds (last error 0), Result carries no
// description and fails with SessMgr_SetLastError, a failed re-connect after
// fork is an assertion.
constexpr RequestTraits DiagnosticsTraits(const char* szOperation, WORD wRequestType,
                                          const char* szSendFailureTrace, size_t nMinResponseSize) {
  return RequestTraits{
      .szOperation = szOperation,
      .wRequestType = wRequestType,
      .success = SuccessTest::ExactlyZero,
      .bResponseHasDescription = false,
      .failureLastError = FailureLastError::Result,
      .adaptFailure = AdaptFailure::Assert,
      .szSendFailureTrace = szSendFailureTrace,
      .nMinResponseSize = nMinResponseSize,
  };
}

constexpr const char* kDebugMgmtSendFailure =
    "Failed to send debug mgmt request to sessmgrd, errno (%d):%s.\n";

constexpr RequestTraits kSetDebugState =
    DiagnosticsTraits("SessMgr_SetDebugState", SMGRPROT_DEBUG_SETCFG_REQ, kDebugMgmtSendFailure,
                      sizeof(SMGRPROT_MSG_DEBUG_SETCFG_RSP));
constexpr RequestTraits kGetDebugInfo =
    DiagnosticsTraits("SessMgr_GetDebugInfo", SMGRPROT_DEBUG_GETINFO_REQ,
                      "Failed to send debug info request to sessmgrd, errno (%d):%s.\n",
                      sizeof(SMGRPROT_MSG_DEBUG_GETINFO_RSP));
// The thread enumeration reuses the stream enumeration's text on purpose.
constexpr RequestTraits kEnumerateThreads =
    DiagnosticsTraits("SessMgr_EnumerateThreads", SMGRPROT_THREAD_ENUMERATE_REQ,
                      "Failed to send create stream enumeration request to sessmgrd, errno (%d):%s.\n",
                      SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET);
constexpr RequestTraits kEnumerateMutexes =
    DiagnosticsTraits("SessMgr_EnumerateMutexes", SMGRPROT_MUTEX_ENUMERATE_REQ,
                      "Failed to send mutex enumeration request to sessmgrd, errno (%d):%s.\n",
                      SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET);
constexpr RequestTraits kDebugRequest = DiagnosticsTraits(
    "SessMgr_DebugRequest", SMGRPROT_DEBUG_REQ, kDebugMgmtSendFailure, sizeof(SMGRPROT_MSG_DEBUG_RSP));

// One page of threads or mutexes: both requests are count + start offset.
template <typename RequestRecord>
BOOL _EnumeratePage(const RequestTraits& traits, void* pvBuffer, size_t nBuffSize, UINT nOffset,
                    UINT* pnTotal, UINT* pnReturned, size_t* pnElementSize, size_t nElementSize) {
  static_assert(sizeof(RequestRecord) == 24);
  RequestRecord request;
  std::memset(&request, 0, sizeof(request));
  int32_t nCount = smgr::PagedRequestCount(nBuffSize, nElementSize);
  int32_t nStart = static_cast<int32_t>(nOffset);
  std::memcpy(reinterpret_cast<BYTE*>(&request) + 16, &nCount, sizeof(nCount));
  std::memcpy(reinterpret_cast<BYTE*>(&request) + 20, &nStart, sizeof(nStart));
  const smgr::PagedOutputs outputs{pvBuffer, nBuffSize, pnTotal, pnReturned, pnElementSize};
  return smgr::Transact(traits, &request, sizeof(request), true, nullptr,
                        [&](const ResponseView& response, SMGR_RESULT* pLastError) {
                          return smgr::CopyPagedEnumeration(response, smgr::kStandardPagedLayout, outputs,
                                                            pLastError);
                        });
}

}  // namespace

BOOL SessMgr_SetDebugState(int enState) {
  SMGR_TRACE(5, "Called (enState=%d).\n", enState);
  SMGRPROT_MSG_DEBUG_SETCFG_REQ request;
  std::memset(&request, 0, sizeof(request));
  request.Data.iDebugState = enState;
  return smgr::Transact(kSetDebugState, &request, sizeof(request), true);
}

BOOL SessMgr_GetDebugInfo(SMGR_DEBUG_INFO* pInfo) {
  SMGR_ASSERT(pInfo != NULL);
  SMGR_TRACE(5, "Called (pInfo=%p).\n", static_cast<void*>(pInfo));
  SMGRPROT_MSG_DEBUG_GETINFO_REQ request;
  std::memset(&request, 0, sizeof(request));
  return smgr::Transact(kGetDebugInfo, &request, sizeof(request), pInfo != nullptr, nullptr,
                        [&](const ResponseView& response, SMGR_RESULT*) {
                          response.copyOut(offsetof(SMGRPROT_MSG_DEBUG_GETINFO_RSP, Data.DebugInfo),
                                           sizeof(SMGR_DEBUG_INFO), pInfo, sizeof(*pInfo));
                          return true;
                        });
}

BOOL SessMgr_EnumerateThreads(void* pvBuffer, size_t nBuffSize, UINT nOffset, UINT* pnTotalThreadCount,
                              UINT* pnReturnedThreads, size_t* pnElementSize) {
  SMGR_ASSERT_TEXT(nBuffSize >= sizeof(SMGR_THREAD_INFO), "nBuffSize >= sizeof(SMGR_THREAD_INFO)");
  SMGR_TRACE(
      5, "Called (pvBuffer=%p, nBuffSize=%zu, nOffset=%u, pnTotalThreadCount=%p, pnReturnedThreads=%p).\n",
      pvBuffer, nBuffSize, nOffset, static_cast<void*>(pnTotalThreadCount),
      static_cast<void*>(pnReturnedThreads));
  return _EnumeratePage<SMGRPROT_MSG_THREAD_ENUMERATE_REQ>(kEnumerateThreads, pvBuffer, nBuffSize, nOffset,
                                                           pnTotalThreadCount, pnReturnedThreads,
                                                           pnElementSize, sizeof(SMGR_THREAD_INFO));
}

BOOL SessMgr_EnumerateMutexes(void* pvBuffer, size_t nBuffSize, UINT nOffset, UINT* pnTotalMutexesCount,
                              UINT* pnReturnedMutexes, size_t* pnElementSize) {
  SMGR_ASSERT_TEXT(nBuffSize >= sizeof(SMGR_MUTEX_INFO), "nBuffSize >= sizeof(SMGR_MUTEX_INFO)");
  SMGR_TRACE(
      5, "Called (pvBuffer=%p, nBuffSize=%zu, nOffset=%u, pnTotalMutexesCount=%p, pnReturnedMutexes=%p).\n",
      pvBuffer, nBuffSize, nOffset, static_cast<void*>(pnTotalMutexesCount),
      static_cast<void*>(pnReturnedMutexes));
  return _EnumeratePage<SMGRPROT_MSG_MUTEX_ENUMERATE_REQ>(kEnumerateMutexes, pvBuffer, nBuffSize, nOffset,
                                                          pnTotalMutexesCount, pnReturnedMutexes,
                                                          pnElementSize, sizeof(SMGR_MUTEX_INFO));
}

BOOL SessMgr_DebugRequest(int enRequest, void* pvData, size_t nDataSize) {
  SMGR_TRACE(5, "Called (enRequest=%d, pvData=%p, nDataSize=%zu).\n", enRequest, pvData, nDataSize);
  // Both checks come before anything is built or locked.
  if (!IsRootUser()) {
    SessMgr_SetLastError(SMGR_ERROR_INSUFFICIENT_RIGHTS);
    SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  if (pvData != nullptr && nDataSize > SMGRPROT_DEBUG_REQ_MAX_DATA) {
    SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
    SMGR_TRACE(5, "Done (returning FALSE).\n");
    return FALSE;
  }
  SMGRPROT_MSG_DEBUG_REQ request;
  std::memset(&request, 0, sizeof(request));
  request.Data.enRequest = enRequest;
  // nReqDataSize stays 0: the daemon does not rely on it.
  if (pvData != nullptr) std::memcpy(request.Data.abReqData, pvData, nDataSize);
  return smgr::Transact(kDebugRequest, &request, sizeof(request), true);
}
