// ST 2110 synchronisation: the clock's state and the choice of clock mode.
// Both follow the standard request sequence with bare results.
#include <cstring>

#include "lib_trace.h"
#include "request_engine.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"

namespace {

using smgr::FailureLastError;
using smgr::RequestTraits;

constexpr size_t kSyncInfoOffset = offsetof(SMGRPROT_MSG_2110_SYNC_GETINFO_RSP, Data.SyncInfo);

constexpr RequestTraits SyncTraits(const char* szOperation, WORD wRequest, const char* szSendFailure,
                                   size_t nMinResponse) {
  RequestTraits traits{szOperation, wRequest};
  traits.bResponseHasDescription = false;
  traits.failureLastError = FailureLastError::Result;
  traits.szSendFailureTrace = szSendFailure;
  traits.nMinResponseSize = nMinResponse;
  return traits;
}

constexpr RequestTraits kGetInfoTraits =
    SyncTraits("SessMgr_Get2110SyncInfo", SMGRPROT_2110_SYNC_GETINFO_REQ,
               "Failed to send 2110 sync getinfo request to sessmgrd, errno (%d):%s.\n",
               kSyncInfoOffset + sizeof(uint32_t));
constexpr RequestTraits kSetModeTraits =
    SyncTraits("SessMgr_Set2110ClockMode", SMGRPROT_2110_SYNC_SETMODE_REQ,
               "Failed to send 2110 sync setmode request to sessmgrd, errno (%d):%s.\n", 0);

}  // namespace

extern "C" {

SMGR_API BOOL SessMgr_Get2110SyncInfo(SMGR_2110_SYNC_INFO* pInfo) {
  SMGR_TRACE(5, "Called (pInfo=%p).\n", static_cast<void*>(pInfo));
  SMGR_ASSERT(pInfo != NULL);
  SMGRPROT_MSG_2110_SYNC_GETINFO_REQ request{};
  return smgr::Transact(kGetInfoTraits, &request, sizeof(request), pInfo != nullptr, nullptr,
                        [&](const smgr::ResponseView& response, SMGR_RESULT* pLastError) {
                          uint32_t nReturned = 0;
                          if (!response.read(kSyncInfoOffset, &nReturned)) {
                            *pLastError = SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR;
                            return false;
                          }
                          const auto nCopied = static_cast<uint32_t>(smgr::CopyRecordBack(
                              response, kSyncInfoOffset, nReturned, pInfo, pInfo->nSize));
                          if (pInfo->nSize >= sizeof(nCopied)) pInfo->nSize = nCopied;
                          *pLastError = SMGR_ERROR_SUCCESS;
                          return true;
                        });
}

SMGR_API BOOL SessMgr_Set2110ClockMode(int enMode) {
  SMGR_TRACE(5, "Called (enMode=%d).\n", enMode);
  SMGRPROT_MSG_2110_SYNC_SETMODE_REQ request{};
  request.Data.enMode = enMode;  // the selector stays all zero
  return smgr::Transact(kSetModeTraits, &request, sizeof(request), true);
}

}  // extern "C"
