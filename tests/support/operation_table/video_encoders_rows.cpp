// Operation-table rows of the video encoder family: handle operations, the
// sized records, control and parameter sets, enumeration, value names and
// the VIDEO_FORMAT texts. Not initialised, this family reports 2 (and its
// enumerations fail to send with last error 0).
#include "row_kit.h"

namespace smgr::test {
namespace {

constexpr int32_t kCannedEncoderId = 3;

Bytes OpenAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_VIDENC_OPEN_RSP));
  Put(&message, 20, kCannedEncoderId);
  return message;
}

Bytes InfoAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_VIDENC_GETINFO_RSP));
  Put(&message, 20, kCannedEncoderId);
  std::memset(message.data() + 24, 0x5A, sizeof(SMGR_VIDEO_ENCODER_INFO));
  Put(&message, 24, static_cast<uint32_t>(sizeof(SMGR_VIDEO_ENCODER_INFO)));
  return message;
}

Bytes StatsAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_VIDENC_GETSTATS_RSP));
  Put(&message, 20, kCannedEncoderId);
  std::memset(message.data() + 24, 0x5B, sizeof(SMGR_VIDEO_ENCODER_STATS));
  Put(&message, 24, static_cast<uint32_t>(sizeof(SMGR_VIDEO_ENCODER_STATS)));
  return message;
}

// Echoes the command data (the reply never exceeds what the caller sent).
Bytes ControlAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_VIDENC_CONTROL_RSP));
  const uint32_t nDataSize = std::min<uint32_t>(Field<uint32_t>(request, 24), 256);
  Put(&message, 20, nDataSize);
  for (uint32_t i = 0; i < nDataSize; ++i) message[24 + i] = static_cast<uint8_t>(~request[28 + i]);
  return message;
}

Bytes SpropAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_VIDENC_GETSPSPPS_RSP));
  Put(&message, 24, uint64_t{10});
  std::memset(message.data() + 32, 0x67, 10);
  Put(&message, 288, uint64_t{4});
  std::memset(message.data() + 296, 0x68, 4);
  return message;
}

Bytes EncodersAnswer(const Bytes& request) { return PageAnswer(request, sizeof(SMGR_VIDEO_ENCODER_INFO), 1); }

void OpenCannedEncoder(CallContext& ctx) {
  HVIDENC hEncoder = nullptr;
  if (SessMgr_OpenVideoEncoder("venc1", &hEncoder)) ctx.hOpen = hEncoder;
}

void CloseEncoders(CallContext& ctx) {
  for (HSMGR* ph : {&ctx.hCreated, &ctx.hOpen}) {
    HVIDENC hEncoder = static_cast<HVIDENC>(*ph);
    if (hEncoder != nullptr) SessMgr_CloseVideoEncoder(&hEncoder);
    *ph = nullptr;
  }
}

HVIDENC Opened(CallContext& ctx) { return static_cast<HVIDENC>(ctx.hOpen); }

// The handles every handle operation refuses: NULL, after its last close,
// a video input's and a stream's.
struct BadHandle {
  const char* szWhat;
  HVIDENC (*make)();
};
const BadHandle kBadHandles[] = {
    {"NULL handle", [] { return HVIDENC{}; }},
    {"wiped handle", [] { return static_cast<HVIDENC>(wipedHandle()); }},
    {"HVIDIN", [] { return static_cast<HVIDENC>(foreignHandle(SMGR_VIDEO_INPUT_HANDLE_SIGNATURE)); }},
    {"stream handle", [] { return static_cast<HVIDENC>(foreignHandle(SMGR_STREAM_HANDLE_SIGNATURE)); }},
};

template <BOOL (*Call)(CallContext&, HVIDENC)>
std::vector<BadInput> BadHandleInputs() {
  return {{kBadHandles[0].szWhat, [](CallContext& ctx) { return Call(ctx, kBadHandles[0].make()); },
           invalidNoSend},
          {kBadHandles[1].szWhat, [](CallContext& ctx) { return Call(ctx, kBadHandles[1].make()); },
           invalidNoSend},
          {kBadHandles[2].szWhat, [](CallContext& ctx) { return Call(ctx, kBadHandles[2].make()); },
           invalidNoSend},
          {kBadHandles[3].szWhat, [](CallContext& ctx) { return Call(ctx, kBadHandles[3].make()); },
           invalidNoSend}};
}

template <BOOL (*Fn)(HVIDENC)>
BOOL CallPlain(CallContext&, HVIDENC hEncoder) {
  return Fn(hEncoder);
}

using Kept = OperationRow::KeptLastError;

template <BOOL (*Fn)(HVIDENC)>
OperationRow HandleRow(const char* szName, WORD wRequest, Kept kept = Kept::Never) {
  OperationRow row{szName,
                   wRequest,
                   SuccessCodes::ZeroOnly,
                   ResultOnly,
                   OpenCannedEncoder,
                   [](CallContext& ctx) { return Fn(Opened(ctx)); },
                   CloseEncoders,
                   BadHandleInputs<CallPlain<Fn>>()};
  row.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  row.keptLastError = kept;
  return row;
}

// Info and statistics: min(caller's nSize, record size) bytes, written back.
template <typename Record, BOOL (*Fn)(HVIDENC, Record*)>
BOOL CallRecord(CallContext& ctx, HVIDENC hEncoder) {
  return Fn(hEncoder, SizedRecord<Record>(ctx, 0));
}

template <typename Record, BOOL (*Fn)(HVIDENC, Record*)>
OperationRow RecordRow(const char* szName, WORD wRequest, Bytes (*answer)(const Bytes&)) {
  std::vector<BadInput> bad = BadHandleInputs<CallRecord<Record, Fn>>();
  bad.insert(bad.end(),
             {{"NULL record", [](CallContext& ctx) { return Fn(Opened(ctx), nullptr); }, invalidNoSend},
              {"nSize 0 copies nothing",
               [](CallContext& ctx) {
                 Record* pRecord = ctx.buffer(4).as<Record>();
                 return static_cast<BOOL>(Fn(Opened(ctx), pRecord) && pRecord->nSize == 0);
               },
               acceptedAndSent},
              {"nSize 4 GiB takes the record size",
               [](CallContext& ctx) {
                 Record* pRecord = SizedRecord<Record>(ctx, 0);
                 pRecord->nSize = 0xFFFFFFFFu;
                 return static_cast<BOOL>(Fn(Opened(ctx), pRecord) && pRecord->nSize == sizeof(Record));
               },
               acceptedAndSent}});
  OperationRow row{
      szName,
      wRequest,
      SuccessCodes::ZeroOnly,
      answer,
      OpenCannedEncoder,
      [](CallContext& ctx) { return Fn(Opened(ctx), SizedRecord<Record>(ctx, ctx.params.byte())); },
      CloseEncoders,
      std::move(bad)};
  row.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  row.keptLastError = Kept::OnDaemonOrSendFailure;
  return row;
}

BOOL Configure(CallContext& ctx, HVIDENC hEncoder) {
  SMGR_VIDEO_ENCODER_CFG cfg{};
  cfg.nSize = sizeof(cfg);
  cfg.SetFieldsFlag = SMGR_VIDENC_SET_BITRATE;
  cfg.nBitRateInKbps = 2000;
  const uint8_t bShape = ctx.params.byte();
  if (bShape & 1) cfg.nSize = 16;
  if (bShape & 2) cfg.nSize = 0xFFFFFFFFu;
  if (bShape & 4) cfg.SetFieldsFlag = ~0ull;
  return SessMgr_ConfigureVideoEncoder(hEncoder, &cfg);
}

BOOL Control(CallContext& ctx, HVIDENC hEncoder) {
  const uint8_t bSize = ctx.params.byte();
  if (bSize == 0xFF) return SessMgr_ControlVideoEncoder(hEncoder, 1, nullptr, nullptr);
  size_t* pnSize = ctx.buffer(sizeof(size_t)).as<size_t>();
  *pnSize = bSize;
  return SessMgr_ControlVideoEncoder(hEncoder, static_cast<int>(ctx.params.u32()),
                                     ctx.buffer(bSize, 0x66).data(), pnSize);
}

BOOL Sprop(CallContext& ctx, HVIDENC hEncoder) {
  const size_t nSize = ctx.params.byte() % 64 + 1;
  size_t* pnSize = ctx.buffer(sizeof(size_t)).as<size_t>();
  *pnSize = nSize;
  return SessMgr_GetVideoEncoderSPROP(hEncoder, ctx.buffer(nSize, 'x').as<char>(), pnSize);
}

// Value names whose value is not an int (colour code points, format codes).
template <typename T, char* (*Fn)(T, char*, size_t)>
OperationRow TypedNameRow(const char* szName) {
  const Expectation local{TRUE, LE::Unchanged};
  return {
      szName,
      0,
      SuccessCodes::ZeroOnly,
      nullptr,
      nullptr,
      nullptr,
      nullptr,
      {{"unknown value into 2 bytes",
        [](CallContext& ctx) -> BOOL {
          char* sz = ctx.buffer(2, 'x').as<char>();
          return Fn(static_cast<T>(-77), sz, 2) == sz && std::strlen(sz) <= 1;
        },
        local},
       {"NULL buffer",
        [](CallContext&) -> BOOL { return std::strcmp(Fn(T{}, nullptr, 16), "Invalid input buffer") == 0; },
        local},
       {"size 0",
        [](CallContext& ctx) -> BOOL {
          char* sz = ctx.buffer(1, 'x').as<char>();
          return std::strcmp(Fn(T{}, sz, 0), "Invalid input buffer") == 0 && sz[0] == 'x';
        },
        local}}};
}

char* InputFormatWithAbbreviation(long enFormat, char* szBuffer, size_t nSize) {
  return SessMgr_GetVideoEncoderInputFormatString(enFormat, TRUE, szBuffer, nSize);
}

std::vector<OperationRow> VideoEncoderRows() {
  const Expectation local{TRUE, LE::Unchanged};
  const Expectation invalidLocal{FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS};
  std::vector<OperationRow> rows;
  OperationRow open{"SessMgr_OpenVideoEncoder",
                    SMGRPROT_VIDENC_OPEN_REQ,
                    SuccessCodes::ZeroOnly,
                    OpenAnswer,
                    nullptr,
                    [](CallContext& ctx) {
                      HVIDENC* phEncoder = ctx.buffer(sizeof(HVIDENC)).as<HVIDENC>();
                      const BOOL bResult =
                          SessMgr_OpenVideoEncoder(ctx.params.byte() & 1 ? "venc2" : "venc1", phEncoder);
                      if (bResult) ctx.hCreated = *phEncoder;
                      return bResult;
                    },
                    CloseEncoders,
                    {{"NULL name",
                      [](CallContext& ctx) {
                        return SessMgr_OpenVideoEncoder(nullptr, ctx.buffer(sizeof(HVIDENC)).as<HVIDENC>());
                      },
                      invalidNoSend},
                     {"empty name",
                      [](CallContext& ctx) {
                        return SessMgr_OpenVideoEncoder("", ctx.buffer(sizeof(HVIDENC)).as<HVIDENC>());
                      },
                      invalidNoSend},
                     {"64-character name",
                      [](CallContext& ctx) {
                        char* sz = ctx.buffer(65, 'n').as<char>();
                        sz[64] = '\0';
                        return SessMgr_OpenVideoEncoder(sz, ctx.buffer(sizeof(HVIDENC)).as<HVIDENC>());
                      },
                      invalidNoSend},
                     {"NULL handle output",
                      [](CallContext&) { return SessMgr_OpenVideoEncoder("venc1", nullptr); }, invalidNoSend},
                     {"63-character name is sent",
                      [](CallContext& ctx) {
                        char* sz = ctx.buffer(64, 'n').as<char>();
                        sz[63] = '\0';
                        HVIDENC* phEncoder = ctx.buffer(sizeof(HVIDENC)).as<HVIDENC>();
                        const BOOL bResult = SessMgr_OpenVideoEncoder(sz, phEncoder);
                        if (bResult) ctx.hCreated = *phEncoder;
                        return bResult;
                      },
                      acceptedAndSent}}};
  open.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  rows.push_back(std::move(open));
  rows.push_back({"SessMgr_CloseVideoEncoder",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  OpenCannedEncoder,
                  nullptr,
                  CloseEncoders,
                  {{"NULL handle pointer", [](CallContext&) { return SessMgr_CloseVideoEncoder(nullptr); },
                    invalidLocal},
                   {"NULL handle",
                    [](CallContext& ctx) {
                      return SessMgr_CloseVideoEncoder(ctx.buffer(sizeof(HVIDENC)).as<HVIDENC>());
                    },
                    invalidLocal},
                   {"wiped handle; the variable is kept",
                    [](CallContext& ctx) {
                      HVIDENC* phEncoder = ctx.buffer(sizeof(HVIDENC)).as<HVIDENC>();
                      *phEncoder = kBadHandles[1].make();
                      const BOOL bResult = SessMgr_CloseVideoEncoder(phEncoder);
                      return *phEncoder == kBadHandles[1].make() ? bResult : 2;
                    },
                    invalidLocal},
                   {"HVIDIN",
                    [](CallContext& ctx) {
                      HVIDENC* phEncoder = ctx.buffer(sizeof(HVIDENC)).as<HVIDENC>();
                      *phEncoder = kBadHandles[2].make();
                      return SessMgr_CloseVideoEncoder(phEncoder);
                    },
                    invalidLocal},
                   {"the open handle; the variable is kept",
                    [](CallContext& ctx) {
                      HVIDENC* phEncoder = ctx.buffer(sizeof(HVIDENC)).as<HVIDENC>();
                      *phEncoder = Opened(ctx);
                      ctx.hOpen = nullptr;
                      const BOOL bResult = SessMgr_CloseVideoEncoder(phEncoder);
                      return *phEncoder != nullptr ? bResult : 2;
                    },
                    local}}});
  rows.push_back(
      HandleRow<SessMgr_StartVideoEncoder>("SessMgr_StartVideoEncoder", SMGRPROT_VIDENC_START_REQ));
  rows.push_back(HandleRow<SessMgr_StopVideoEncoder>("SessMgr_StopVideoEncoder", SMGRPROT_VIDENC_STOP_REQ));
  rows.push_back(
      HandleRow<SessMgr_ResetVideoEncoder>("SessMgr_ResetVideoEncoder", SMGRPROT_VIDENC_RESET_REQ));
  rows.push_back(HandleRow<SessMgr_ResetVideoEncoderStats>(
      "SessMgr_ResetVideoEncoderStats", SMGRPROT_VIDENC_RESETSTATS_REQ, Kept::OnDaemonOrSendFailure));

  OperationRow configure{"SessMgr_ConfigureVideoEncoder",
                         SMGRPROT_VIDENC_SETCFG_REQ,
                         SuccessCodes::ZeroOnly,
                         ResultOnly,
                         OpenCannedEncoder,
                         [](CallContext& ctx) { return Configure(ctx, Opened(ctx)); },
                         CloseEncoders,
                         BadHandleInputs<Configure>()};
  configure.badInputs.push_back(
      {"NULL configuration",
       [](CallContext& ctx) { return SessMgr_ConfigureVideoEncoder(Opened(ctx), nullptr); }, invalidNoSend});
  configure.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  configure.keptLastError = Kept::OnSendFailure;
  rows.push_back(std::move(configure));

  rows.push_back(RecordRow<SMGR_VIDEO_ENCODER_INFO, SessMgr_GetVideoEncoderInfo>(
      "SessMgr_GetVideoEncoderInfo", SMGRPROT_VIDENC_GETINFO_REQ, InfoAnswer));
  rows.push_back(RecordRow<SMGR_VIDEO_ENCODER_STATS, SessMgr_GetVideoEncoderStats>(
      "SessMgr_GetVideoEncoderStats", SMGRPROT_VIDENC_GETSTATS_REQ, StatsAnswer));

  OperationRow control{"SessMgr_ControlVideoEncoder",
                       SMGRPROT_VIDENC_CONTROL_REQ,
                       SuccessCodes::ZeroOnly,
                       ControlAnswer,
                       OpenCannedEncoder,
                       [](CallContext& ctx) { return Control(ctx, Opened(ctx)); },
                       CloseEncoders,
                       BadHandleInputs<Control>()};
  control.badInputs.insert(
      control.badInputs.end(),
      {{"257 bytes of data",
        [](CallContext& ctx) {
          size_t nSize = 257;
          return SessMgr_ControlVideoEncoder(Opened(ctx), 1, ctx.buffer(257).data(), &nSize);
        },
        invalidNoSend},
       {"NULL data with a size",
        [](CallContext& ctx) {
          size_t nSize = 4;
          return SessMgr_ControlVideoEncoder(Opened(ctx), 1, nullptr, &nSize);
        },
        invalidNoSend},
       {"NULL size sends no data",
        [](CallContext& ctx) { return SessMgr_ControlVideoEncoder(Opened(ctx), 1, nullptr, nullptr); },
        acceptedAndSent}});
  control.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  control.keptLastError = Kept::OnDaemonOrSendFailure;
  rows.push_back(std::move(control));

  OperationRow sprop{"SessMgr_GetVideoEncoderSPROP",
                     SMGRPROT_VIDENC_GETSPSPPS_REQ,
                     SuccessCodes::ZeroOnly,
                     SpropAnswer,
                     OpenCannedEncoder,
                     [](CallContext& ctx) { return Sprop(ctx, Opened(ctx)); },
                     CloseEncoders,
                     BadHandleInputs<Sprop>()};
  sprop.badInputs.insert(
      sprop.badInputs.end(),
      {{"NULL size",
        [](CallContext& ctx) {
          return SessMgr_GetVideoEncoderSPROP(Opened(ctx), ctx.buffer(8).as<char>(), nullptr);
        },
        invalidNoSend},
       {"size 0",
        [](CallContext& ctx) {
          size_t nSize = 0;
          return SessMgr_GetVideoEncoderSPROP(Opened(ctx), ctx.buffer(8).as<char>(), &nSize);
        },
        invalidNoSend},
       {"NULL buffer",
        [](CallContext& ctx) {
          size_t nSize = 8;
          return SessMgr_GetVideoEncoderSPROP(Opened(ctx), nullptr, &nSize);
        },
        invalidNoSend},
       {"size 10: a 9-character prefix, the full length back",
        [](CallContext& ctx) {
          size_t* pnSize = ctx.buffer(sizeof(size_t)).as<size_t>();
          *pnSize = 10;
          char* sz = ctx.buffer(10, 'x').as<char>();
          const BOOL bResult = SessMgr_GetVideoEncoderSPROP(Opened(ctx), sz, pnSize);
          return static_cast<BOOL>(bResult && std::strlen(sz) == 9 && *pnSize == 16 + 1 + 8);
        },
        acceptedAndSent}});
  sprop.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  sprop.keptLastError = Kept::OnDaemonOrSendFailure;
  rows.push_back(std::move(sprop));

  OperationRow enumerate = PagedRow<SMGR_VIDEO_ENCODER_INFO, SessMgr_EnumerateVideoEncoders>(
      "SessMgr_EnumerateVideoEncoders", SMGRPROT_VIDENC_ENUMERATE_REQ, EncodersAnswer);
  enumerate.notInitialisedResult = SMGR_ERROR_SUCCESS;
  enumerate.keptLastError = Kept::OnSendFailure;
  rows.push_back(std::move(enumerate));
  OperationRow nameAt{
      "SessMgr_GetVideoEncoderNameAtIndex",
      SMGRPROT_VIDENC_ENUMERATE_REQ,
      SuccessCodes::ZeroOnly,
      EncodersAnswer,
      nullptr,
      [](CallContext& ctx) {
        const size_t nSize = ctx.params.byte() % 80 + 1;
        return SessMgr_GetVideoEncoderNameAtIndex(0, ctx.buffer(nSize).as<char>(), nSize);
      },
      nullptr,
      {{"unterminated name into 64 bytes",
        [](CallContext& ctx) {
          char* sz = ctx.buffer(64).as<char>();
          return static_cast<BOOL>(SessMgr_GetVideoEncoderNameAtIndex(0, sz, 64) && std::strlen(sz) == 63);
        },
        acceptedAndSent},
       {"NULL buffer", [](CallContext&) { return SessMgr_GetVideoEncoderNameAtIndex(0, nullptr, 0); },
        acceptedAndSent}}};
  nameAt.notInitialisedResult = SMGR_ERROR_SUCCESS;
  nameAt.keptLastError = Kept::OnSendFailure;
  rows.push_back(std::move(nameAt));

  rows.push_back(NameRow<SessMgr_GetVideoEncoderStateString, true>("SessMgr_GetVideoEncoderStateString"));
  rows.push_back(
      NameRow<SessMgr_GetVideoEncoderInputTypeString, true>("SessMgr_GetVideoEncoderInputTypeString"));
  rows.push_back(
      NameRow<SessMgr_GetVideoEncoderAspectRatioString, true>("SessMgr_GetVideoEncoderAspectRatioString"));
  rows.push_back(
      NameRow<SessMgr_GetVideoEncoderTimeCodeString, true>("SessMgr_GetVideoEncoderTimeCodeString"));
  rows.push_back(NameRow<SessMgr_GetVideoEncoderTimeCodeSourceString, true>(
      "SessMgr_GetVideoEncoderTimeCodeSourceString"));
  rows.push_back(
      NameRow<SessMgr_GetVideoEncoderSystemTCModeString, true>("SessMgr_GetVideoEncoderSystemTCModeString"));
  rows.push_back(
      NameRow<SessMgr_GetVideoEncoderGOPStructureString, true>("SessMgr_GetVideoEncoderGOPStructureString"));
  rows.push_back(NameRow<SessMgr_GetVideoEncoderGOPModeString, true>("SessMgr_GetVideoEncoderGOPModeString"));
  rows.push_back(NameRow<SessMgr_GetVideoResizeModeString, true>("SessMgr_GetVideoResizeModeString"));
  rows.push_back(NameRow<SessMgr_GetVideoEncoderChromaSubSamplingString, true>(
      "SessMgr_GetVideoEncoderChromaSubSamplingString"));
  rows.push_back(NameRow<SessMgr_GetVideoEncoderEncodingProfileString, true>(
      "SessMgr_GetVideoEncoderEncodingProfileString"));
  rows.push_back(NameRow<SessMgr_GetVideoEncoderCodecAlgorithmString, true>(
      "SessMgr_GetVideoEncoderCodecAlgorithmString"));
  rows.push_back(NameRow<SessMgr_GetVideoEncoderEntropyCodingString, true>(
      "SessMgr_GetVideoEncoderEntropyCodingString"));
  rows.push_back(NameRow<SessMgr_GetVideoEncoderRateControlModeString, true>(
      "SessMgr_GetVideoEncoderRateControlModeString"));
  rows.push_back(NameRow<SessMgr_GetVideoEncoderScalingMatrixString, true>(
      "SessMgr_GetVideoEncoderScalingMatrixString"));
  rows.push_back(
      NameRow<SessMgr_GetVideoEncoderHEVCTierString, true>("SessMgr_GetVideoEncoderHEVCTierString"));
  rows.push_back(NameRow<SessMgr_GetVideoEncoderDynamicRangeModeString, true>(
      "SessMgr_GetVideoEncoderDynamicRangeModeString"));
  rows.push_back(
      NameRow<SessMgr_GetVideoEncoderH264LevelString, true>("SessMgr_GetVideoEncoderH264LevelString"));
  rows.push_back(
      NameRow<SessMgr_GetVideoEncoderH265LevelString, true>("SessMgr_GetVideoEncoderH265LevelString"));
  rows.push_back(TypedNameRow<UINT, SessMgr_GetVideoEncoderInputColorPrimariesString>(
      "SessMgr_GetVideoEncoderInputColorPrimariesString"));
  rows.push_back(TypedNameRow<UINT, SessMgr_GetVideoEncoderInputTransferCharacteristicsString>(
      "SessMgr_GetVideoEncoderInputTransferCharacteristicsString"));
  rows.push_back(TypedNameRow<UINT, SessMgr_GetVideoEncoderInputMatrixCoefficientsString>(
      "SessMgr_GetVideoEncoderInputMatrixCoefficientsString"));
  rows.push_back(TypedNameRow<long, SessMgr_GetVideoFormatString>("SessMgr_GetVideoFormatString"));
  OperationRow inputFormat =
      TypedNameRow<long, InputFormatWithAbbreviation>("SessMgr_GetVideoEncoderInputFormatString");
  rows.push_back(std::move(inputFormat));
  rows.push_back(TypedNameRow<long, SessMgr_GetVideoEncoderOutputResolutionString>(
      "SessMgr_GetVideoEncoderOutputResolutionString"));
  return rows;
}

const RowRegistration kVideoEncoderRows{"video_encoders", VideoEncoderRows};

}  // namespace
}  // namespace smgr::test
