// Talkback operations: configure, information and statistics (local failures
// give 2 without locking, success leaves the last error alone), and the five
// control requests (start, stop, reset statistics, enable, disable). Each is
// its RequestTraits; the sequence itself is the request engine's.
#include <algorithm>
#include <cstring>

#include "lib_trace.h"
#include "request_engine.h"
#include "smgr_protocol.h"
#include "value_names.h"

namespace {

using smgr::FailureLastError;
using smgr::RequestTraits;
using smgr::ResponseView;
using smgr::SendFailure;
using smgr::SequenceOrder;
using smgr::SuccessLastError;
using smgr::SuccessTest;

// Configure, information, statistics: a success keeps the last error, a failed
// send is only traced.
constexpr RequestTraits RecordTraits(const char* szOperation, WORD wRequest, const char* szSendFailure,
                                     size_t nMinResponse, FailureLastError onFailure) {
  RequestTraits traits{szOperation, wRequest};
  traits.success = SuccessTest::ExactlyZero;
  traits.bResponseHasDescription = false;
  traits.successLastError = SuccessLastError::Untouched;
  traits.failureLastError = onFailure;
  traits.sendFailure = SendFailure::TraceOnly;
  traits.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  traits.szSendFailureTrace = szSendFailure;
  traits.nMinResponseSize = nMinResponse;
  return traits;
}

// Start, stop, reset statistics, enable, disable: the standard sequence with
// Result alone and only 0 succeeding.
constexpr RequestTraits ControlTraits(const char* szOperation, WORD wRequest, const char* szSendFailure) {
  RequestTraits traits{szOperation, wRequest};
  traits.success = SuccessTest::ExactlyZero;
  traits.bResponseHasDescription = false;
  traits.failureLastError = FailureLastError::Result;
  traits.szSendFailureTrace = szSendFailure;
  traits.nMinResponseSize = sizeof(SMGRPROT_MSG_TALKBACK_RESULT_RSP);
  return traits;
}

constexpr RequestTraits kConfigureTraits = [] {
  RequestTraits traits = RecordTraits("SessMgr_ConfigureTalkBack", SMGRPROT_TALKBACK_SETCFG_REQ,
                                      "Failed to send talkback config request to sessmgrd, errno (%d):%s.\n",
                                      sizeof(SMGRPROT_MSG_TALKBACK_RESULT_RSP), FailureLastError::Result);
  traits.sequenceOrder = SequenceOrder::BeforeLock;
  return traits;
}();
// Unlike configure, a refusal of information or statistics leaves the last error as it was.
constexpr RequestTraits kGetInfoTraits =
    RecordTraits("SessMgr_GetTalkBackInfo", SMGRPROT_TALKBACK_GETINFO_REQ,
                 "Failed to send talkback get config request to sessmgrd, errno (%d):%s.\n",
                 sizeof(SMGRPROT_MSG_TALKBACK_GETINFO_RSP), FailureLastError::Untouched);
constexpr RequestTraits kGetStatsTraits =
    RecordTraits("SessMgr_GetTalkBackStats", SMGRPROT_TALKBACK_GETSTATS_REQ,
                 "Failed to send talkback get stats request to sessmgrd, errno (%d):%s.\n",
                 sizeof(SMGRPROT_MSG_TALKBACK_GETSTATS_RSP), FailureLastError::Untouched);

// Start, stop and enable share one send-failure text, kept as the daemon's
// logs have always shown it.
constexpr const char* kSharedSendFailure =
    "Failed to send start metadata request to sessmgrd, errno (%d):%s.\n";
constexpr RequestTraits kStartTraits =
    ControlTraits("SessMgr_StartTalkBack", SMGRPROT_TALKBACK_START_REQ, kSharedSendFailure);
constexpr RequestTraits kStopTraits =
    ControlTraits("SessMgr_StopTalkBack", SMGRPROT_TALKBACK_STOP_REQ, kSharedSendFailure);
constexpr RequestTraits kEnableTraits =
    ControlTraits("SessMgr_EnableTalkBack", SMGRPROT_TALKBACK_ENABLE_REQ, kSharedSendFailure);
constexpr RequestTraits kDisableTraits =
    ControlTraits("SessMgr_DisableTalkBack", SMGRPROT_TALKBACK_DISABLE_REQ,
                  "Failed to send disable talkback request to sessmgrd, errno (%d):%s.\n");
constexpr RequestTraits kResetStatsTraits =
    ControlTraits("SessMgr_ResetTalkBackStats", SMGRPROT_TALKBACK_RESETSTATS_REQ,
                  "Failed to send start talkback clear stats request to sessmgrd, errno (%d):%s.\n");

constexpr smgr::ValueName kStateTexts[] = {
    {0, "STOPPED"}, {1, "RECEIVING"}, {2, "LISTENING"}, {3, "DISABLED"}};
constexpr smgr::ValueNameTable kStateNames =
    smgr::MakeValueNameTable("SessMgr_GetTalkBackStateString", kStateTexts, smgr::NameGeneration::Checked,
                             smgr::UnknownValueForm::WithValue);

BOOL Refuse(const char* szOperation) {
  SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
  SMGR_TRACE_AS(szOperation, 5, "Done (returning FALSE).\n");
  return FALSE;
}

BOOL Control(const RequestTraits& traits) {
  SMGR_TRACE_AS(traits.szOperation, 5, "Called ().\n");
  SMGRPROT_MSG_TALKBACK_CONTROL_REQ request{};
  return smgr::Transact(traits, &request, sizeof(request), true);
}

// Information and statistics: at most the current record, nSize rewritten.
template <typename Record>
BOOL ReadRecord(const RequestTraits& traits, Record* pRecord, size_t nRecordOffset) {
  SMGR_TRACE_AS(traits.szOperation, 5, "Called (p=%p).\n", static_cast<void*>(pRecord));
  if (!smgr::IsLibraryInitialised() || pRecord == nullptr || pRecord->nSize < sizeof(Record))
    return Refuse(traits.szOperation);
  SMGRPROT_MSG_TALKBACK_EMPTY_REQ request{};
  return smgr::Transact(
      traits, &request, sizeof(request), true, nullptr, [&](const ResponseView& response, SMGR_RESULT*) {
        const size_t nCopied = response.copyOut(nRecordOffset, sizeof(Record), pRecord, sizeof(Record));
        pRecord->nSize = static_cast<DWORD>(nCopied);
        return true;
      });
}

}  // namespace

extern "C" {

SMGR_API BOOL SessMgr_ConfigureTalkBack(const SMGR_TALKBACK_CFG* pCfg) {
  SMGR_TRACE(5, "Called (pCfg=%p).\n", static_cast<const void*>(pCfg));
  if (!smgr::IsLibraryInitialised() || pCfg == nullptr || pCfg->nSize < sizeof(SMGR_TALKBACK_CFG))
    return Refuse(kConfigureTraits.szOperation);
  SMGRPROT_MSG_TALKBACK_SETCFG_REQ request{};
  std::memcpy(&request.Config, pCfg, std::min<size_t>(pCfg->nSize, sizeof(request.Config)));
  return smgr::Transact(kConfigureTraits, &request, sizeof(request), true);
}

SMGR_API BOOL SessMgr_GetTalkBackInfo(SMGR_TALKBACK_INFO* pInfo) {
  return ReadRecord(kGetInfoTraits, pInfo, offsetof(SMGRPROT_MSG_TALKBACK_GETINFO_RSP, TalkBackInfo));
}

SMGR_API BOOL SessMgr_GetTalkBackStats(SMGR_TALKBACK_STATS* pStats) {
  return ReadRecord(kGetStatsTraits, pStats, offsetof(SMGRPROT_MSG_TALKBACK_GETSTATS_RSP, TalkBackStats));
}

SMGR_API BOOL SessMgr_StartTalkBack(void) { return Control(kStartTraits); }
SMGR_API BOOL SessMgr_StopTalkBack(void) { return Control(kStopTraits); }
SMGR_API BOOL SessMgr_ResetTalkBackStats(void) { return Control(kResetStatsTraits); }
SMGR_API BOOL SessMgr_EnableTalkBack(void) { return Control(kEnableTraits); }
SMGR_API BOOL SessMgr_DisableTalkBack(void) { return Control(kDisableTraits); }

SMGR_API char* SessMgr_GetTalkBackStateString(int enState, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kStateNames, enState, szBuffer, nSize);
}

}  // extern "C"
