// Operation-table rows of talkback: no selector or handle; configure,
// information and statistics have size floors, give 2 when the library is not
// initialised and leave the last error alone on success.
#include <type_traits>

#include "row_kit.h"

namespace smgr::test {
namespace {

Bytes InfoAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_TALKBACK_GETINFO_RSP));
  std::memset(message.data() + 20, 't', sizeof(SMGR_TALKBACK_INFO));
  return message;
}

Bytes StatsAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_TALKBACK_GETSTATS_RSP));
  std::memset(message.data() + 20, 0x5A, sizeof(SMGR_TALKBACK_STATS));
  return message;
}

template <typename Record>
Record* RecordOfSize(CallContext& ctx, size_t nBytes, uint32_t nClaimed) {
  Record* pRecord = ctx.buffer(nBytes, 0x11).as<Record>();
  pRecord->nSize = nClaimed;
  return pRecord;
}

// A record operation: floor nFloor, at most nFloor bytes copied back.
template <typename Record, BOOL (*Fn)(Record*)>
OperationRow RecordRow(const char* szName, WORD wRequest, Bytes (*answer)(const Bytes&)) {
  constexpr uint32_t nFloor = sizeof(Record);
  OperationRow row{
      szName,
      wRequest,
      SuccessCodes::ZeroOnly,
      answer,
      nullptr,
      [](CallContext& ctx) { return Fn(RecordOfSize<Record>(ctx, nFloor, nFloor)); },
      nullptr,
      {{"NULL record", [](CallContext&) { return Fn(nullptr); }, invalidNoSend},
       {"nSize one below the record",
        [](CallContext& ctx) { return Fn(RecordOfSize<Record>(ctx, nFloor, nFloor - 1)); }, invalidNoSend},
       {"nSize 4 GiB in an exact record: the record sent or copied",
        [](CallContext& ctx) {
          Record* pRecord = RecordOfSize<Record>(ctx, nFloor, ~0u);
          const bool bCopiesBack = !std::is_same_v<Record, SMGR_TALKBACK_CFG>;  // configure sends 92 bytes
          return static_cast<BOOL>(Fn(pRecord) && pRecord->nSize == (bCopiesBack ? nFloor : ~0u));
        },
        {TRUE, LE::Unchanged, 0, true}}}};
  row.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  row.success =
      row.success == SuccessCodes::ZeroOrWarning ? SuccessCodes::UntouchedOrWarning : SuccessCodes::Untouched;
  // Configure stores a refusal as the last error; information and statistics keep it.
  row.keptLastError = std::is_same_v<Record, SMGR_TALKBACK_CFG>
                          ? OperationRow::KeptLastError::OnSendFailure
                          : OperationRow::KeptLastError::OnDaemonOrSendFailure;
  return row;
}

template <BOOL (*Fn)()>
OperationRow ControlRow(const char* szName, WORD wRequest) {
  return {szName,  wRequest, SuccessCodes::ZeroOnly, ResultOnly, nullptr, [](CallContext&) { return Fn(); },
          nullptr, {}};
}

BOOL ConfigureTalkBack(SMGR_TALKBACK_CFG* pCfg) { return SessMgr_ConfigureTalkBack(pCfg); }

std::vector<OperationRow> TalkBackRows() {
  std::vector<OperationRow> rows;
  rows.push_back(RecordRow<SMGR_TALKBACK_CFG, ConfigureTalkBack>("SessMgr_ConfigureTalkBack",
                                                                 SMGRPROT_TALKBACK_SETCFG_REQ, ResultOnly));
  rows.push_back(RecordRow<SMGR_TALKBACK_INFO, SessMgr_GetTalkBackInfo>(
      "SessMgr_GetTalkBackInfo", SMGRPROT_TALKBACK_GETINFO_REQ, InfoAnswer));
  rows.push_back(RecordRow<SMGR_TALKBACK_STATS, SessMgr_GetTalkBackStats>(
      "SessMgr_GetTalkBackStats", SMGRPROT_TALKBACK_GETSTATS_REQ, StatsAnswer));
  rows.push_back(ControlRow<SessMgr_StartTalkBack>("SessMgr_StartTalkBack", SMGRPROT_TALKBACK_START_REQ));
  rows.push_back(ControlRow<SessMgr_StopTalkBack>("SessMgr_StopTalkBack", SMGRPROT_TALKBACK_STOP_REQ));
  rows.push_back(
      ControlRow<SessMgr_ResetTalkBackStats>("SessMgr_ResetTalkBackStats", SMGRPROT_TALKBACK_RESETSTATS_REQ));
  rows.push_back(ControlRow<SessMgr_EnableTalkBack>("SessMgr_EnableTalkBack", SMGRPROT_TALKBACK_ENABLE_REQ));
  rows.push_back(
      ControlRow<SessMgr_DisableTalkBack>("SessMgr_DisableTalkBack", SMGRPROT_TALKBACK_DISABLE_REQ));
  rows.push_back(NameRow<SessMgr_GetTalkBackStateString, true>("SessMgr_GetTalkBackStateString"));
  return rows;
}

const RowRegistration kTalkBackRows{"talkback", TalkBackRows};

}  // namespace
}  // namespace smgr::test
