// Operation-table rows of the audio encoder family: numeric IDs, size floors,
// 2 for every local failure (not initialised included), and the operations
// that leave the last error as it was.
#include "row_kit.h"

namespace smgr::test {
namespace {

constexpr int kCannedEncoderId = 7;
constexpr char kName63[] = "aaa-12345678901234567890123456789012345678901234567890123456789";
constexpr char kName64[] = "aaa-123456789012345678901234567890123456789012345678901234567890";
static_assert(sizeof(kName63) - 1 == 63 && sizeof(kName64) - 1 == 64);

Bytes OpenAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_AUDENC_OPEN_RSP));
  Put(&message, 20, kCannedEncoderId);
  return message;
}

Bytes InfoAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_AUDENC_GETINFO_RSP));
  Put(&message, 20, kCannedEncoderId);
  std::memset(message.data() + 24, 'i', sizeof(SMGR_AUDIO_ENCODER_INFO));  // no terminator anywhere
  return message;
}

Bytes StatsAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_AUDENC_GETSTATS_RSP));
  Put(&message, 20, kCannedEncoderId);
  std::memset(message.data() + 24, 0x5A, sizeof(SMGR_AUDIO_ENCODER_STATS));
  return message;
}

Bytes EncodersAnswer(const Bytes& request) { return PageAnswer(request, sizeof(SMGR_AUDIO_ENCODER_INFO), 2); }

void OpenCannedEncoder(CallContext& ctx) {
  HAUDENC hEncoder = nullptr;
  if (SessMgr_OpenAudioEncoder("aenc1", &hEncoder)) ctx.hOpen = hEncoder;
}

void CloseEncoders(CallContext& ctx) {
  for (HSMGR* ph : {&ctx.hCreated, &ctx.hOpen}) {
    HAUDENC hEncoder = static_cast<HAUDENC>(*ph);
    if (hEncoder != nullptr) SessMgr_CloseAudioEncoder(&hEncoder);
    *ph = nullptr;
  }
}

HAUDENC Open(CallContext& ctx) { return static_cast<HAUDENC>(ctx.hOpen); }
HAUDENC Wiped() { return static_cast<HAUDENC>(wipedHandle()); }
HAUDENC Foreign() { return static_cast<HAUDENC>(foreignHandle(SMGR_VIDEO_ENCODER_HANDLE_SIGNATURE)); }

template <typename Record>
Record* RecordOfSize(CallContext& ctx, size_t nBytes, uint32_t nClaimed) {
  Record* pRecord = ctx.buffer(nBytes, 0x11).as<Record>();
  pRecord->nSize = nClaimed;
  return pRecord;
}

// The calls of the operations on an open encoder; bad handles give 2 and send nothing.
using HandleFn = BOOL (*)(CallContext& ctx, HAUDENC hEncoder);

template <HandleFn Call>
std::vector<BadInput> BadHandles() {
  return {{"NULL handle", [](CallContext& ctx) { return Call(ctx, nullptr); }, invalidNoSend},
          {"handle after its last close", [](CallContext& ctx) { return Call(ctx, Wiped()); }, invalidNoSend},
          {"video encoder handle", [](CallContext& ctx) { return Call(ctx, Foreign()); }, invalidNoSend}};
}

template <HandleFn Call>
OperationRow HandleRow(const char* szName, WORD wRequest, Bytes (*answer)(const Bytes&),
                       std::vector<BadInput> extra = {}) {
  std::vector<BadInput> bad = BadHandles<Call>();
  bad.insert(bad.end(), extra.begin(), extra.end());
  OperationRow row{szName,        wRequest,          SuccessCodes::ZeroOnly,
                   answer,        OpenCannedEncoder, [](CallContext& ctx) { return Call(ctx, Open(ctx)); },
                   CloseEncoders, std::move(bad)};
  row.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  return row;
}

BOOL OpenInto(CallContext& ctx, const char* szName) {
  HAUDENC* phEncoder = ctx.buffer(sizeof(HAUDENC)).as<HAUDENC>();
  BOOL bResult = SessMgr_OpenAudioEncoder(szName, phEncoder);
  if (bResult) ctx.hCreated = *phEncoder;
  return bResult;
}

OperationRow OpenRow() {
  OperationRow row{
      "SessMgr_OpenAudioEncoder",
      SMGRPROT_AUDENC_OPEN_REQ,
      SuccessCodes::ZeroOnly,
      OpenAnswer,
      nullptr,
      [](CallContext& ctx) { return OpenInto(ctx, (ctx.params.byte() & 1) ? kName63 : "aenc2"); },
      CloseEncoders,
      {{"NULL name", [](CallContext& ctx) { return OpenInto(ctx, nullptr); }, invalidNoSend},
       {"empty name", [](CallContext& ctx) { return OpenInto(ctx, ""); }, invalidNoSend},
       {"64-character name", [](CallContext& ctx) { return OpenInto(ctx, kName64); }, invalidNoSend},
       {"NULL handle output", [](CallContext&) { return SessMgr_OpenAudioEncoder("aenc1", nullptr); },
        invalidNoSend},
       {"63-character name", [](CallContext& ctx) { return OpenInto(ctx, kName63); }, acceptedAndSent}}};
  row.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  return row;
}

BOOL CloseThrough(CallContext& ctx, HAUDENC hEncoder) {
  HAUDENC* phEncoder = ctx.buffer(sizeof(HAUDENC)).as<HAUDENC>();
  *phEncoder = hEncoder;
  const BOOL bResult = SessMgr_CloseAudioEncoder(phEncoder);
  return *phEncoder == hEncoder ? bResult : 2;  // the caller's variable is never cleared
}

OperationRow CloseRow() {
  return {
      "SessMgr_CloseAudioEncoder",
      0,
      SuccessCodes::ZeroOnly,
      nullptr,
      OpenCannedEncoder,
      nullptr,
      CloseEncoders,
      {{"NULL handle pointer", [](CallContext&) { return SessMgr_CloseAudioEncoder(nullptr); },
        invalidNoSend},
       {"NULL handle", [](CallContext& ctx) { return CloseThrough(ctx, nullptr); }, invalidNoSend},
       {"handle after its last close", [](CallContext& ctx) { return CloseThrough(ctx, Wiped()); },
        invalidNoSend},
       {"video encoder handle", [](CallContext& ctx) { return CloseThrough(ctx, Foreign()); }, invalidNoSend},
       {"open handle: nothing sent, variable kept",
        [](CallContext& ctx) {
          HAUDENC hEncoder = Open(ctx);
          ctx.hOpen = nullptr;
          return CloseThrough(ctx, hEncoder);
        },
        {TRUE, LE::Unchanged, 0, false}}}};
}

BOOL StartCall(CallContext&, HAUDENC h) { return SessMgr_StartAudioEncoder(h); }
BOOL StopCall(CallContext&, HAUDENC h) { return SessMgr_StopAudioEncoder(h); }
BOOL ResetCall(CallContext&, HAUDENC h) { return SessMgr_ResetAudioEncoderStats(h); }
BOOL MuteCall(CallContext& ctx, HAUDENC h) {
  return SessMgr_MuteAudioEncoder(h, static_cast<BOOL>(ctx.params.u32()));
}
BOOL ConfigureCall(CallContext& ctx, HAUDENC h) {
  SMGR_AUDIO_ENCODER_CFG* pCfg =
      RecordOfSize<SMGR_AUDIO_ENCODER_CFG>(ctx, sizeof(SMGR_AUDIO_ENCODER_CFG), 64);
  pCfg->SetFieldsFlag = ctx.params.u32();
  return SessMgr_ConfigureAudioEncoder(h, pCfg);
}
BOOL InfoCall(CallContext& ctx, HAUDENC h) {
  return SessMgr_GetAudioEncoderInfo(h, RecordOfSize<SMGR_AUDIO_ENCODER_INFO>(ctx, 204, 204));
}
BOOL StatsCall(CallContext& ctx, HAUDENC h) {
  return SessMgr_GetAudioEncoderStats(h, RecordOfSize<SMGR_AUDIO_ENCODER_STATS>(ctx, 68, 68));
}

std::vector<OperationRow> AudioEncoderRows() {
  const Expectation keptAndSent{TRUE, LE::Unchanged, 0, true};
  std::vector<OperationRow> rows;
  rows.push_back(OpenRow());
  rows.push_back(CloseRow());
  rows.push_back(HandleRow<StartCall>("SessMgr_StartAudioEncoder", SMGRPROT_AUDENC_START_REQ, ResultOnly));
  rows.push_back(HandleRow<StopCall>("SessMgr_StopAudioEncoder", SMGRPROT_AUDENC_STOP_REQ, ResultOnly));
  rows.push_back(HandleRow<MuteCall>(
      "SessMgr_MuteAudioEncoder", SMGRPROT_AUDENC_MUTE_REQ, ResultOnly,
      {{"bMute 2 is sent as given", [](CallContext& ctx) { return SessMgr_MuteAudioEncoder(Open(ctx), 2); },
        acceptedAndSent}}));

  OperationRow reset =
      HandleRow<ResetCall>("SessMgr_ResetAudioEncoderStats", SMGRPROT_AUDENC_RESETSTATS_REQ, ResultOnly);
  reset.keptLastError = OperationRow::KeptLastError::OnDaemonOrSendFailure;
  rows.push_back(std::move(reset));

  OperationRow configure = HandleRow<ConfigureCall>(
      "SessMgr_ConfigureAudioEncoder", SMGRPROT_AUDENC_SETCFG_REQ, ResultOnly,
      {{"NULL configuration",
        [](CallContext& ctx) { return SessMgr_ConfigureAudioEncoder(Open(ctx), nullptr); }, invalidNoSend},
       {"nSize 63",
        [](CallContext& ctx) {
          return SessMgr_ConfigureAudioEncoder(Open(ctx), RecordOfSize<SMGR_AUDIO_ENCODER_CFG>(ctx, 64, 63));
        },
        invalidNoSend},
       {"nSize 4 GiB in a 64-byte record: 64 bytes taken",
        [](CallContext& ctx) {
          return SessMgr_ConfigureAudioEncoder(Open(ctx), RecordOfSize<SMGR_AUDIO_ENCODER_CFG>(ctx, 64, ~0u));
        },
        acceptedAndSent}});
  configure.keptLastError = OperationRow::KeptLastError::OnSendFailure;  // a refusal is the last error
  rows.push_back(std::move(configure));

  OperationRow info = HandleRow<InfoCall>(
      "SessMgr_GetAudioEncoderInfo", SMGRPROT_AUDENC_GETINFO_REQ, InfoAnswer,
      {{"NULL record", [](CallContext& ctx) { return SessMgr_GetAudioEncoderInfo(Open(ctx), nullptr); },
        invalidNoSend},
       {"nSize 203",
        [](CallContext& ctx) {
          return SessMgr_GetAudioEncoderInfo(Open(ctx), RecordOfSize<SMGR_AUDIO_ENCODER_INFO>(ctx, 204, 203));
        },
        invalidNoSend},
       {"nSize 4 GiB in a 204-byte record: 204 copied",
        [](CallContext& ctx) {
          auto* pInfo = RecordOfSize<SMGR_AUDIO_ENCODER_INFO>(ctx, 204, ~0u);
          return static_cast<BOOL>(SessMgr_GetAudioEncoderInfo(Open(ctx), pInfo) && pInfo->nSize == 204);
        },
        acceptedAndSent}});
  info.keptLastError = OperationRow::KeptLastError::OnDaemonOrSendFailure;
  rows.push_back(std::move(info));

  OperationRow stats = HandleRow<StatsCall>(
      "SessMgr_GetAudioEncoderStats", SMGRPROT_AUDENC_GETSTATS_REQ, StatsAnswer,
      {{"NULL record", [](CallContext& ctx) { return SessMgr_GetAudioEncoderStats(Open(ctx), nullptr); },
        invalidNoSend},
       {"nSize 67",
        [](CallContext& ctx) {
          return SessMgr_GetAudioEncoderStats(Open(ctx), RecordOfSize<SMGR_AUDIO_ENCODER_STATS>(ctx, 68, 67));
        },
        invalidNoSend},
       {"nSize 4 GiB in a 68-byte record: 68 copied",
        [](CallContext& ctx) {
          auto* pStats = RecordOfSize<SMGR_AUDIO_ENCODER_STATS>(ctx, 68, ~0u);
          return static_cast<BOOL>(SessMgr_GetAudioEncoderStats(Open(ctx), pStats) && pStats->nSize == 68);
        },
        acceptedAndSent}});
  stats.keptLastError = OperationRow::KeptLastError::OnDaemonOrSendFailure;
  rows.push_back(std::move(stats));

  // Enumerate and name at index never set the last error themselves.
  OperationRow page = PagedRow<SMGR_AUDIO_ENCODER_INFO, SessMgr_EnumerateAudioEncoders>(
      "SessMgr_EnumerateAudioEncoders", SMGRPROT_AUDENC_ENUMERATE_REQ, EncodersAnswer);
  for (BadInput& bad : page.badInputs) bad.expect = keptAndSent;
  page.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  page.success = page.success == SuccessCodes::ZeroOrWarning ? SuccessCodes::UntouchedOrWarning
                                                             : SuccessCodes::Untouched;
  page.keptLastError = OperationRow::KeptLastError::OnDaemonOrSendFailure;
  rows.push_back(std::move(page));
  OperationRow name{
      "SessMgr_GetAudioEncoderNameAtIndex",
      SMGRPROT_AUDENC_ENUMERATE_REQ,
      SuccessCodes::ZeroOnly,
      EncodersAnswer,
      nullptr,
      [](CallContext& ctx) {
        const size_t nSize = ctx.params.byte() % 70;
        return SessMgr_GetAudioEncoderNameAtIndex(ctx.params.byte(), ctx.buffer(nSize).as<char>(), nSize);
      },
      nullptr,
      {{"NULL buffer", [](CallContext&) { return SessMgr_GetAudioEncoderNameAtIndex(0, nullptr, 64); },
        keptAndSent},
       {"1-byte buffer, unterminated name",
        [](CallContext& ctx) {
          char* sz = ctx.buffer(1, 'x').as<char>();
          return static_cast<BOOL>(SessMgr_GetAudioEncoderNameAtIndex(0, sz, 1) && sz[0] == '\0');
        },
        keptAndSent}}};
  name.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  name.success = name.success == SuccessCodes::ZeroOrWarning ? SuccessCodes::UntouchedOrWarning
                                                             : SuccessCodes::Untouched;
  name.keptLastError = OperationRow::KeptLastError::OnDaemonOrSendFailure;
  rows.push_back(std::move(name));

  rows.push_back(NameRow<SessMgr_GetAudioEncoderStateString, true>("SessMgr_GetAudioEncoderStateString"));
  rows.push_back(NameRow<SessMgr_GetAudioEncoderModeString, true>("SessMgr_GetAudioEncoderModeString"));
  rows.push_back(
      NameRow<SessMgr_GetAudioEncoderShortModeString, true>("SessMgr_GetAudioEncoderShortModeString"));
  rows.push_back(
      NameRow<SessMgr_GetAudioEncoderAlgorithmString, true>("SessMgr_GetAudioEncoderAlgorithmString"));
  rows.push_back(
      NameRow<SessMgr_GetAudioEncoderCaptureStateString, true>("SessMgr_GetAudioEncoderCaptureStateString"));
  rows.push_back(NameRow<SessMgr_GetAudioEncoderSTCSourceInterfaceString, true>(
      "SessMgr_GetAudioEncoderSTCSourceInterfaceString"));
  rows.push_back(
      NameRow<SessMgr_GetAudioEncoderInputTypeString, true>("SessMgr_GetAudioEncoderInputTypeString"));

  const Expectation local{TRUE, LE::Unchanged};
  rows.push_back({"SessMgr_GetAudioEncoderLanguageString",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"NULL tag writes (None) and returns NULL",
                    [](CallContext& ctx) -> BOOL {
                      char* sz = ctx.buffer(4, 'x').as<char>();
                      return SessMgr_GetAudioEncoderLanguageString(nullptr, sz, 4) == nullptr &&
                             std::strcmp(sz, "(No") == 0;
                    },
                    local},
                   {"unknown tag leaves the buffer",
                    [](CallContext& ctx) -> BOOL {
                      char* sz = ctx.buffer(8, 'x').as<char>();
                      return SessMgr_GetAudioEncoderLanguageString("xq", sz, 8) == nullptr && sz[0] == 'x' &&
                             sz[7] == 'x';
                    },
                    local},
                   {"known tag into 3 bytes",
                    [](CallContext& ctx) -> BOOL {
                      char* sz = ctx.buffer(3, 'x').as<char>();
                      return SessMgr_GetAudioEncoderLanguageString("eng", sz, 3) == sz &&
                             std::strcmp(sz, "En") == 0;
                    },
                    local},
                   {"known tag into a NULL buffer",
                    [](CallContext&) -> BOOL {
                      return SessMgr_GetAudioEncoderLanguageString("eng", nullptr, 16) == nullptr;
                    },
                    local}}});
  return rows;
}

const RowRegistration kAudioEncoderRows{"audio_encoders", AudioEncoderRows};

}  // namespace
}  // namespace smgr::test
