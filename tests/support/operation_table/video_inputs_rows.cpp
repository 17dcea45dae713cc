// Operation-table rows of the video input family (encoder conventions: local
// failures and "not initialised" are 2, handles carry numeric IDs).
#include "row_kit.h"

namespace smgr::test {
namespace {

constexpr int kCannedInputId = 3;

Bytes OpenAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_VIDIN_OPEN_RSP));
  Put(&message, 20, kCannedInputId);
  return message;
}

Bytes InfoAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_VIDIN_GETINFO_RSP));
  Put(&message, 20, kCannedInputId);
  std::memset(message.data() + 24, 'i', sizeof(SMGR_VIDEO_INPUT_INFO));  // an unterminated name too
  Put(&message, 24, static_cast<uint32_t>(sizeof(SMGR_VIDEO_INPUT_INFO)));
  return message;
}

Bytes InputsAnswer(const Bytes& request) { return PageAnswer(request, sizeof(SMGR_VIDEO_INPUT_INFO), 1); }

void OpenCannedInput(CallContext& ctx) {
  HVIDIN hInput = nullptr;
  if (SessMgr_OpenVideoInput("sdi1", &hInput)) ctx.hOpen = hInput;
}

void CloseInputs(CallContext& ctx) {
  for (HSMGR* ph : {&ctx.hCreated, &ctx.hOpen}) {
    HVIDIN hInput = static_cast<HVIDIN>(*ph);
    if (hInput != nullptr) SessMgr_CloseVideoInput(&hInput);
    *ph = nullptr;
  }
}

HVIDIN Open(CallContext& ctx) { return static_cast<HVIDIN>(ctx.hOpen); }
HVIDIN WipedInput() { return static_cast<HVIDIN>(wipedHandle()); }
// An HVIDENC passed where an HVIDIN belongs.
HVIDIN EncoderHandle() { return static_cast<HVIDIN>(foreignHandle(SMGR_VIDEO_ENCODER_HANDLE_SIGNATURE)); }

// The handles every handle operation refuses locally with 2.
template <BOOL (*Call)(HVIDIN hInput, CallContext& ctx)>
std::vector<BadInput> BadHandles() {
  return {{"NULL handle", [](CallContext& ctx) { return Call(nullptr, ctx); }, invalidNoSend},
          {"handle after its last close", [](CallContext& ctx) { return Call(WipedInput(), ctx); },
           invalidNoSend},
          {"an HVIDENC", [](CallContext& ctx) { return Call(EncoderHandle(), ctx); }, invalidNoSend}};
}

BOOL ConfigureWith(HVIDIN hInput, CallContext& ctx) {
  SMGR_VIDEO_INPUT_CFG* pCfg = SizedRecord<SMGR_VIDEO_INPUT_CFG>(ctx, 0);
  pCfg->SetFieldsFlag = 0x1;
  pCfg->enInterfaceType = SMGR_VIF_TYPE_SDI;
  return SessMgr_ConfigureVideoInput(hInput, pCfg);
}
BOOL InfoWith(HVIDIN hInput, CallContext& ctx) {
  return SessMgr_GetVideoInputInfo(hInput, SizedRecord<SMGR_VIDEO_INPUT_INFO>(ctx, 0));
}
BOOL ResetWith(HVIDIN hInput, CallContext&) { return SessMgr_ResetVideoInputStats(hInput); }

// A configuration or information record whose nSize says nSize.
template <typename Record>
Record* RecordClaiming(CallContext& ctx, uint32_t nSize) {
  // A claim above 4 KiB gets the record alone: the valid answers never fill more.
  const size_t nBytes = std::max<size_t>(std::min<size_t>(nSize, 4096), sizeof(Record));
  Record* pRecord = ctx.buffer(nBytes, 0x11).as<Record>();
  pRecord->nSize = nSize;
  return pRecord;
}

std::vector<OperationRow> VideoInputRows() {
  std::vector<OperationRow> rows;
  rows.push_back(
      {"SessMgr_OpenVideoInput",
       SMGRPROT_VIDIN_OPEN_REQ,
       SuccessCodes::ZeroOnly,
       OpenAnswer,
       nullptr,
       [](CallContext& ctx) {
         static const char* const kNames[] = {"sdi1", "sdi2", "x"};
         HVIDIN* phInput = ctx.buffer(sizeof(HVIDIN)).as<HVIDIN>();
         BOOL bResult = SessMgr_OpenVideoInput(kNames[ctx.params.byte() % 3], phInput);
         if (bResult) ctx.hCreated = *phInput;
         return bResult;
       },
       CloseInputs,
       {{"NULL name",
         [](CallContext& ctx) {
           return SessMgr_OpenVideoInput(nullptr, ctx.buffer(sizeof(HVIDIN)).as<HVIDIN>());
         },
         invalidNoSend},
        {"empty name",
         [](CallContext& ctx) { return SessMgr_OpenVideoInput("", ctx.buffer(sizeof(HVIDIN)).as<HVIDIN>()); },
         invalidNoSend},
        {"64-character name",
         [](CallContext& ctx) {
           char* sz = ctx.buffer(65, 'n').as<char>();
           sz[64] = '\0';
           return SessMgr_OpenVideoInput(sz, ctx.buffer(sizeof(HVIDIN)).as<HVIDIN>());
         },
         invalidNoSend},
        {"NULL handle output", [](CallContext&) { return SessMgr_OpenVideoInput("sdi1", nullptr); },
         invalidNoSend}},
       SMGR_ERROR_INVALID_PARAMETERS});
  rows.push_back(
      {"SessMgr_CloseVideoInput",
       0,
       SuccessCodes::ZeroOnly,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       {{"NULL handle pointer", [](CallContext&) { return SessMgr_CloseVideoInput(nullptr); }, invalidNoSend},
        {"NULL handle",
         [](CallContext& ctx) { return SessMgr_CloseVideoInput(ctx.buffer(sizeof(HVIDIN)).as<HVIDIN>()); },
         invalidNoSend},
        {"an HVIDENC",
         [](CallContext& ctx) {
           HVIDIN* phInput = ctx.buffer(sizeof(HVIDIN)).as<HVIDIN>();
           *phInput = EncoderHandle();
           return SessMgr_CloseVideoInput(phInput);
         },
         invalidNoSend}}});

  std::vector<BadInput> configureBad = BadHandles<ConfigureWith>();
  configureBad.insert(
      configureBad.end(),
      {{"NULL configuration",
        [](CallContext& ctx) { return SessMgr_ConfigureVideoInput(Open(ctx), nullptr); }, invalidNoSend},
       {"nSize 20",
        [](CallContext& ctx) {
          return SessMgr_ConfigureVideoInput(Open(ctx), RecordClaiming<SMGR_VIDEO_INPUT_CFG>(ctx, 20));
        },
        invalidNoSend},
       {"nSize 4 GiB: 24 bytes taken",
        [](CallContext& ctx) {
          return SessMgr_ConfigureVideoInput(Open(ctx),
                                             RecordClaiming<SMGR_VIDEO_INPUT_CFG>(ctx, 0xFFFFFFFFu));
        },
        acceptedAndSent}});
  rows.push_back({"SessMgr_ConfigureVideoInput", SMGRPROT_VIDIN_SETCFG_REQ, SuccessCodes::ZeroOnly,
                  ResultOnly, OpenCannedInput, [](CallContext& ctx) { return ConfigureWith(Open(ctx), ctx); },
                  CloseInputs, std::move(configureBad), SMGR_ERROR_INVALID_PARAMETERS,
                  OperationRow::KeptLastError::OnSendFailure});  // a refusal is the last error

  std::vector<BadInput> infoBad = BadHandles<InfoWith>();
  infoBad.insert(
      infoBad.end(),
      {{"NULL record", [](CallContext& ctx) { return SessMgr_GetVideoInputInfo(Open(ctx), nullptr); },
        invalidNoSend},
       {"nSize 143",
        [](CallContext& ctx) {
          return SessMgr_GetVideoInputInfo(Open(ctx), RecordClaiming<SMGR_VIDEO_INPUT_INFO>(ctx, 143));
        },
        invalidNoSend},
       {"nSize 200: 144 copied and written back",
        [](CallContext& ctx) {
          SMGR_VIDEO_INPUT_INFO* pInfo = RecordClaiming<SMGR_VIDEO_INPUT_INFO>(ctx, 200);
          return static_cast<BOOL>(SessMgr_GetVideoInputInfo(Open(ctx), pInfo) && pInfo->nSize == 144);
        },
        acceptedAndSent}});
  rows.push_back({"SessMgr_GetVideoInputInfo", SMGRPROT_VIDIN_GETINFO_REQ, SuccessCodes::ZeroOnly, InfoAnswer,
                  OpenCannedInput, [](CallContext& ctx) { return InfoWith(Open(ctx), ctx); }, CloseInputs,
                  std::move(infoBad), SMGR_ERROR_INVALID_PARAMETERS,
                  OperationRow::KeptLastError::OnDaemonOrSendFailure});
  rows.push_back({"SessMgr_ResetVideoInputStats", SMGRPROT_VIDIN_RESETSTATS_REQ, SuccessCodes::ZeroOnly,
                  ResultOnly, OpenCannedInput, [](CallContext& ctx) { return ResetWith(Open(ctx), ctx); },
                  CloseInputs, BadHandles<ResetWith>(), SMGR_ERROR_INVALID_PARAMETERS,
                  OperationRow::KeptLastError::OnDaemonOrSendFailure});

  OperationRow page = PagedRow<SMGR_VIDEO_INPUT_INFO, SessMgr_EnumerateVideoInputs>(
      "SessMgr_EnumerateVideoInputs", SMGRPROT_VIDIN_ENUMERATE_REQ, InputsAnswer);
  page.notInitialisedResult =
      SMGR_ERROR_SUCCESS;  // no initialisation check: the send fails, the cleared error stays
  // A refusal is the last error (and errno); a failed send leaves the cleared error.
  page.keptLastError = OperationRow::KeptLastError::OnSendFailure;
  rows.push_back(std::move(page));
  rows.push_back({"SessMgr_GetVideoInputNameAtIndex",
                  SMGRPROT_VIDIN_ENUMERATE_REQ,
                  SuccessCodes::ZeroOnly,
                  InputsAnswer,
                  nullptr,
                  [](CallContext& ctx) {
                    const size_t nSize = ctx.params.byte() % 80 + 1;
                    return SessMgr_GetVideoInputNameAtIndex(0, ctx.buffer(nSize).as<char>(), nSize);
                  },
                  nullptr,
                  {{"one-byte buffer",
                    [](CallContext& ctx) {
                      char* sz = ctx.buffer(1, 'x').as<char>();
                      return static_cast<BOOL>(SessMgr_GetVideoInputNameAtIndex(0, sz, 1) && sz[0] == '\0');
                    },
                    acceptedAndSent}},
                  SMGR_ERROR_SUCCESS,
                  OperationRow::KeptLastError::OnSendFailure});  // the enumeration's refusal stays
  rows.push_back(NameRow<SessMgr_GetVideoInterfaceTypeString, true>("SessMgr_GetVideoInterfaceTypeString"));
  rows.push_back(NameRow<SessMgr_GetVideoInputStateString, true>("SessMgr_GetVideoInputStateString"));
  rows.push_back({"CleanupSessMgrVideoInputs",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"with no handle open",
                    [](CallContext&) -> BOOL {
                      CleanupSessMgrVideoInputs();
                      return TRUE;
                    },
                    {TRUE, LE::Unchanged}}}});
  return rows;
}

const RowRegistration kVideoInputRows{"video_inputs", VideoInputRows};

}  // namespace
}  // namespace smgr::test
