// Operation-table rows of the stream family (streams, still images, value names).
#include "row_kit.h"

namespace smgr::test {
namespace {

Bytes StreamsAnswer(const Bytes& request) { return PageAnswer(request, sizeof(SMGR_STREAM_INFO), 1); }

constexpr int kCannedStreamId = 42;

Bytes StreamIdAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_STREAM_CREATE_RSP));
  Put(&message, 20, kCannedStreamId);
  const char szName[] = "canned-stream";
  std::memcpy(message.data() + 24, szName, sizeof(szName));
  return message;
}

Bytes StreamInfoAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_STREAM_GETINFO_RSP));
  Put(&message, 20, static_cast<uint32_t>(sizeof(SMGR_STREAM_INFO)));
  Put(&message, 24, kCannedStreamId);
  std::memset(message.data() + 28, 'n', SMGR_OBJECT_NAME_SIZE - 1);
  return message;
}

Bytes StreamStatsAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_STREAM_GETSTATS_RSP));
  Put(&message, 20, static_cast<uint32_t>(sizeof(SMGR_STREAM_STATS)));
  std::memset(message.data() + 24, 0x5A, message.size() - 24);
  return message;
}

Bytes StillDeleteAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_STILL_DELETE_RSP));
  Put(&message, 20, uint32_t{3});
  Put(&message, 24, uint32_t{1});
  Put(&message, 28, int32_t{13});
  return message;
}

void OpenCannedStream(CallContext& ctx) {
  SMGR_OBJECT_SELECTOR selector = ById(kCannedStreamId);
  HSTREAM hStream = nullptr;
  if (SessMgr_OpenStream(&selector, &hStream)) ctx.hOpen = hStream;
}

void CloseStreams(CallContext& ctx) {
  for (HSMGR* ph : {&ctx.hCreated, &ctx.hOpen}) {
    HSTREAM hStream = static_cast<HSTREAM>(*ph);
    if (hStream != nullptr) SessMgr_CloseStream(&hStream);
    *ph = nullptr;
  }
}

// ---- Stream configurations ----------------------------------------------------------------

SMGR_STREAM_CFG ValidStreamCfg() {
  SMGR_STREAM_CFG cfg{};
  cfg.nSize = sizeof(cfg);
  std::strcpy(cfg.szName, "fuzzed");
  cfg.enType = SMGR_STREAM_TYPE_TX;
  cfg.enContents = SMGR_STREAM_CONTENTS_VIDEO;
  cfg.Address.enType = SMGR_IPV4_ADDRESS;
  const uint8_t abAddress[4] = {239, 1, 2, 3};
  std::memcpy(cfg.Address.acAddress, abAddress, sizeof(abAddress));
  cfg.usPort = 5004;
  cfg.enEncapsulation = SMGR_STREAM_ENCAPS_TS_UDP;
  cfg.nNumOfSources = 1;
  cfg.ContentSources[0].enType = SMGR_CONTENT_SRC_VIDEO;
  cfg.ContentSources[0].Selector = ById(1);
  return cfg;
}

BOOL CreateWith(CallContext& ctx, SMGR_STREAM_CFG cfg) {
  HSTREAM* phStream = ctx.buffer(sizeof(HSTREAM), 0).as<HSTREAM>();
  BOOL bResult = SessMgr_CreateStream(&cfg, phStream);
  if (bResult) ctx.hCreated = *phStream;
  return bResult;
}

// Creates a valid configuration with one change.
BOOL CreateChanged(CallContext& ctx, void (*change)(SMGR_STREAM_CFG&)) {
  SMGR_STREAM_CFG cfg = ValidStreamCfg();
  change(cfg);
  return CreateWith(ctx, cfg);
}

BOOL OpenWith(CallContext& ctx, SMGR_OBJECT_SELECTOR selector) {
  HSTREAM* phStream = ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>();
  BOOL bResult = SessMgr_OpenStream(&selector, phStream);
  if (bResult) ctx.hCreated = *phStream;
  return bResult;
}

constexpr HandleKit kStreamKit{OpenCannedStream, CloseStreams, SMGR_SESSION_HANDLE_SIGNATURE};

HSTREAM WipedStream() { return static_cast<HSTREAM>(wipedHandle()); }
HSTREAM ForeignStream() { return static_cast<HSTREAM>(foreignHandle(kStreamKit.dwForeignSignature)); }

std::vector<OperationRow> StreamRows() {
  const Expectation badContents{FALSE, LE::Equals, SMGR_ERROR_INVALID_STREAM_CONTENTS, false};
  const Expectation badAddress{FALSE, LE::Equals, SMGR_ERROR_INVALID_STREAM_ADDRESS, false};
  std::vector<OperationRow> rows;
  // -- Streams.
  rows.push_back(
      {"SessMgr_CreateStream",
       SMGRPROT_STREAM_CREATE_REQ,
       SuccessCodes::ZeroOrWarning,
       StreamIdAnswer,
       nullptr,
       [](CallContext& ctx) {
         SMGR_STREAM_CFG cfg = ValidStreamCfg();
         const uint8_t bShape = ctx.params.byte();
         if (bShape & 1) cfg.nSize = 1024;  // an older, shorter caller record
         if (bShape & 2) cfg.nSize = 0xFFFFFFFFu;
         if (bShape & 4) cfg.nIndex = static_cast<int32_t>(ctx.params.u32() & 0xFFFF) + 100;
         if (bShape & 8) cfg.szName[0] = '\0';
         return CreateWith(ctx, cfg);
       },
       CloseStreams,
       {{"NULL configuration",
         [](CallContext& ctx) {
           return SessMgr_CreateStream(nullptr, ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>());
         },
         invalidNoSend},
        {"NULL handle output",
         [](CallContext&) {
           SMGR_STREAM_CFG cfg = ValidStreamCfg();
           return SessMgr_CreateStream(&cfg, nullptr);
         },
         invalidNoSend},
        {"nSize 0: a zero configuration, the sources still read",
         [](CallContext& ctx) { return CreateChanged(ctx, [](SMGR_STREAM_CFG& c) { c.nSize = 0; }); },
         acceptedAndSent},
        {"nSize 4 (record cut before every field), sent",
         [](CallContext& ctx) { return CreateChanged(ctx, [](SMGR_STREAM_CFG& c) { c.nSize = 4; }); },
         acceptedAndSent},
        {"25 content sources",
         [](CallContext& ctx) {
           return CreateChanged(
               ctx, [](SMGR_STREAM_CFG& c) { c.nNumOfSources = SMGR_MAX_STREAM_CONTENT_SOURCES + 1; });
         },
         invalidNoSend},
        {"4 billion content sources",
         [](CallContext& ctx) {
           return CreateChanged(ctx, [](SMGR_STREAM_CFG& c) { c.nNumOfSources = 0xFFFFFFFFu; });
         },
         invalidNoSend},
        {"unknown content source kind",
         [](CallContext& ctx) {
           return CreateChanged(ctx, [](SMGR_STREAM_CFG& c) { c.ContentSources[0].enType = 77; });
         },
         invalidNoSend},
        {"content source by NULL name",
         [](CallContext& ctx) {
           return CreateChanged(ctx,
                                [](SMGR_STREAM_CFG& c) { c.ContentSources[0].Selector = ByName(nullptr); });
         },
         invalidNoSend},
        {"contents without a source",
         [](CallContext& ctx) {
           return CreateChanged(ctx, [](SMGR_STREAM_CFG& c) { c.enContents |= SMGR_STREAM_CONTENTS_AUDIO; });
         },
         badContents},
        {"empty host name",
         [](CallContext& ctx) {
           return CreateChanged(ctx, [](SMGR_STREAM_CFG& c) {
             c.Address.enType = SMGR_IPV4_HOSTNAME;
             std::memset(c.Address.acAddress, 0, sizeof(c.Address.acAddress));
           });
         },
         badAddress},
        {"unterminated host name",
         [](CallContext& ctx) {
           return CreateChanged(ctx, [](SMGR_STREAM_CFG& c) {
             c.Address.enType = SMGR_IPV4_HOSTNAME;
             std::memset(c.Address.szHostName, 'h', sizeof(c.Address.szHostName));
           });
         },
         badAddress},
        {"unresolvable host name: sent with the warning",
         [](CallContext& ctx) {
           return CreateChanged(ctx, [](SMGR_STREAM_CFG& c) {
             c.Address.enType = SMGR_IPV4_HOSTNAME;
             std::memset(c.Address.acAddress, 0, sizeof(c.Address.acAddress));
             std::strcpy(c.Address.szHostName, "nowhere.invalid");
           });
         },
         {TRUE, LE::Equals, SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME, true}},
        {"unterminated still image name",
         [](CallContext& ctx) {
           return CreateChanged(ctx, [](SMGR_STREAM_CFG& c) {
             std::memset(c.szStillImageFName, 's', sizeof(c.szStillImageFName));
           });
         },
         {FALSE, LE::Equals, SMGR_ERROR_FILENAME_TOO_LONG, false}},
        {"unterminated name (64 characters)",
         [](CallContext& ctx) {
           return CreateChanged(ctx,
                                [](SMGR_STREAM_CFG& c) { std::memset(c.szName, 'n', sizeof(c.szName)); });
         },
         acceptedAndSent}}});
  rows.push_back(
      {"SessMgr_OpenStream",
       SMGRPROT_STREAM_OPEN_REQ,
       SuccessCodes::ZeroOnly,
       StreamIdAnswer,
       nullptr,
       [](CallContext& ctx) { return OpenWith(ctx, ChosenSelector(ctx, false)); },
       CloseStreams,
       {{"NULL selector",
         [](CallContext& ctx) {
           return SessMgr_OpenStream(nullptr, ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>());
         },
         invalidNoSend},
        {"NULL handle output",
         [](CallContext&) {
           SMGR_OBJECT_SELECTOR selector = ById(1);
           return SessMgr_OpenStream(&selector, nullptr);
         },
         invalidNoSend},
        {"selector by handle", [](CallContext& ctx) { return OpenWith(ctx, ByHandle(WipedStream())); },
         invalidNoSend},
        {"selector kind 5", [](CallContext& ctx) { return OpenWith(ctx, OfKind(5)); }, invalidNoSend},
        {"selector kind -1", [](CallContext& ctx) { return OpenWith(ctx, OfKind(-1)); }, invalidNoSend},
        {"by NULL name", [](CallContext& ctx) { return OpenWith(ctx, ByName(nullptr)); }, invalidNoSend},
        {"by a 70-character name", [](CallContext& ctx) { return OpenWith(ctx, ByName(kLongName)); },
         acceptedAndSent}}});
  rows.push_back(
      {"SessMgr_CloseStream",
       SMGRPROT_STREAM_CLOSE_REQ,
       SuccessCodes::ZeroOnly,
       ResultOnly,
       OpenCannedStream,
       [](CallContext& ctx) {
         HSTREAM* phStream = ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>();
         *phStream = static_cast<HSTREAM>(ctx.hOpen);
         ctx.hOpen = nullptr;  // released by this call whatever the daemon says
         return SessMgr_CloseStream(phStream);
       },
       CloseStreams,
       {{"NULL handle pointer", [](CallContext&) { return SessMgr_CloseStream(nullptr); }, invalidNoSend},
        {"NULL handle",
         [](CallContext& ctx) {
           HSTREAM* phStream = ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>();
           return SessMgr_CloseStream(phStream);
         },
         invalidNoSend},
        {"handle after its last close (wiped signature); the variable is kept",
         [](CallContext& ctx) {
           HSTREAM* phStream = ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>();
           *phStream = WipedStream();
           BOOL bResult = SessMgr_CloseStream(phStream);
           return *phStream == WipedStream() ? bResult : 2;
         },
         invalidNoSend},
        {"handle of another family",
         [](CallContext& ctx) {
           HSTREAM* phStream = ctx.buffer(sizeof(HSTREAM)).as<HSTREAM>();
           *phStream = ForeignStream();
           return SessMgr_CloseStream(phStream);
         },
         invalidNoSend}}});
  rows.push_back(SweepOnlyRow(
      "SessMgr_GetStreamID",
      {{"NULL handle",
        [](CallContext& ctx) { return SessMgr_GetStreamID(nullptr, ctx.buffer(sizeof(int)).as<int>()); },
        {FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}},
       {"wiped handle",
        [](CallContext& ctx) {
          return SessMgr_GetStreamID(WipedStream(), ctx.buffer(sizeof(int)).as<int>());
        },
        {FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}},
       {"handle of another family",
        [](CallContext& ctx) {
          return SessMgr_GetStreamID(ForeignStream(), ctx.buffer(sizeof(int)).as<int>());
        },
        {FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}}}));

  // The selector operations: one list of bad selectors, the kinds each accepts.
  rows.push_back(SelectorRow<SessMgr_DeleteStream, false, kStreamKit>(
      "SessMgr_DeleteStream", SMGRPROT_STREAM_DELETE_REQ, ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(SelectorRow<SessMgr_StartStream, true, kStreamKit>(
      "SessMgr_StartStream", SMGRPROT_STREAM_START_REQ, ResultWithDescription, SuccessCodes::ZeroOrWarning));
  rows.push_back(SelectorRow<SessMgr_StopStream, false, kStreamKit>(
      "SessMgr_StopStream", SMGRPROT_STREAM_STOP_REQ, ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(SelectorRow<SessMgr_PauseStream, true, kStreamKit>(
      "SessMgr_PauseStream", SMGRPROT_STREAM_PAUSE_REQ, ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(SelectorRow<SessMgr_ResumeStream, true, kStreamKit>(
      "SessMgr_ResumeStream", SMGRPROT_STREAM_RESUME_REQ, ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(SelectorRow<SessMgr_ResetStreamStats, true, kStreamKit>(
      "SessMgr_ResetStreamStats", SMGRPROT_STREAM_RESETSTATS_REQ, ResultOnly, SuccessCodes::ZeroOnly));

  rows.push_back(RecordRow<SMGR_STREAM_INFO, SessMgr_GetStreamInfo, kStreamKit>(
      "SessMgr_GetStreamInfo", SMGRPROT_STREAM_GETINFO_REQ, StreamInfoAnswer));
  rows.push_back(RecordRow<SMGR_STREAM_STATS, SessMgr_GetStreamStats, kStreamKit>(
      "SessMgr_GetStreamStats", SMGRPROT_STREAM_GETSTATS_REQ, StreamStatsAnswer));
  rows.push_back(PagedRow<SMGR_STREAM_INFO, SessMgr_EnumerateStreams>(
      "SessMgr_EnumerateStreams", SMGRPROT_STREAM_ENUMERATE_REQ, StreamsAnswer));
  rows.push_back(
      {"SessMgr_DeleteStillImage",
       SMGRPROT_STILL_DELETE_REQ,
       SuccessCodes::ZeroOnly,
       StillDeleteAnswer,
       nullptr,
       [](CallContext& ctx) {
         static const char* const kNames[] = {"logo", "logo.mp4", "/usr/share/ostrelle/still_images/x.mp4",
                                              "../../etc/passwd", ""};
         return SessMgr_DeleteStillImage(kNames[ctx.params.byte() % 5]);
       },
       nullptr,
       {{"NULL name", [](CallContext&) { return SessMgr_DeleteStillImage(nullptr); }, invalidNoSend},
        {"name of 300 characters",
         [](CallContext& ctx) {
           char* sz = ctx.buffer(301, 'f').as<char>();
           sz[300] = '\0';
           return SessMgr_DeleteStillImage(sz);
         },
         invalidNoSend},
        {"name of 256 characters (no room for the terminator)",
         [](CallContext& ctx) {
           char* sz = ctx.buffer(257, 'f').as<char>();
           sz[256] = '\0';
           return SessMgr_DeleteStillImage(sz);
         },
         invalidNoSend}}});
  rows.push_back(
      {"SessMgr_DeleteAllStillImages",
       SMGRPROT_STILL_DELETE_REQ,
       SuccessCodes::ZeroOnly,
       StillDeleteAnswer,
       nullptr,
       [](CallContext& ctx) {
         const uint8_t bFlags = ctx.params.byte();
         return SessMgr_DeleteAllStillImages(OptionalOut<ULONG>(ctx, bFlags, 0),
                                             OptionalOut<ULONG>(ctx, bFlags, 1));
       },
       nullptr,
       {{"NULL counts", [](CallContext&) { return SessMgr_DeleteAllStillImages(nullptr, nullptr); },
         acceptedAndSent}}});
  rows.push_back(
      SweepOnlyRow("SessMgr_CompareStreamConfigs", {{"same record twice",
                                                     [](CallContext&) -> BOOL {
                                                       SMGR_STREAM_CFG cfg = ValidStreamCfg();
                                                       return SessMgr_CompareStreamConfigs(&cfg, &cfg) == 0;
                                                     },
                                                     asDocumented},
                                                    {"unterminated texts, unknown kinds, 4 billion sources",
                                                     [](CallContext&) -> BOOL {
                                                       SMGR_STREAM_CFG a, b;
                                                       std::memset(&a, 0xEE, sizeof(a));
                                                       std::memset(&b, 0xEE, sizeof(b));
                                                       a.nNumOfSources = b.nNumOfSources = 0xFFFFFFFFu;
                                                       SessMgr_CompareStreamConfigs(&a, &b);
                                                       return TRUE;
                                                     },
                                                     asDocumented}}));
  rows.push_back(NameRow<SessMgr_GetStreamTypeString, false>("SessMgr_GetStreamTypeString"));
  rows.push_back(
      NameRow<SessMgr_GetStreamEncapsulationString, false>("SessMgr_GetStreamEncapsulationString"));
  rows.push_back(
      NameRow<SessMgr_GetStreamContentFormatString, false>("SessMgr_GetStreamContentFormatString"));
  rows.push_back(NameRow<SessMgr_GetStreamDataEncapsString, false>("SessMgr_GetStreamDataEncapsString"));
  rows.push_back(NameRow<SessMgr_GetStreamStateString, true>("SessMgr_GetStreamStateString"));
  rows.push_back(NameRow<SessMgr_GetSRTVersionString, true>("SessMgr_GetSRTVersionString"));
  rows.push_back(NameRow<SessMgr_GetStreamModeString, true>("SessMgr_GetStreamModeString"));
  rows.push_back(NameRow<SessMgr_GetSRTStreamRedundancyString, true>("SessMgr_GetSRTStreamRedundancyString"));
  rows.push_back(NameRow<SessMgr_GetFECTypeString, true>("SessMgr_GetFECTypeString"));
  rows.push_back(NameRow<SessMgr_GetMpegProFECLevelString, true>("SessMgr_GetMpegProFECLevelString"));
  rows.push_back(SweepOnlyRow("CleanupSessMgrStreams", {{"with no handle open",
                                                         [](CallContext&) -> BOOL {
                                                           CleanupSessMgrStreams();
                                                           return TRUE;
                                                         },
                                                         asDocumented}}));
  return rows;
}

const RowRegistration kStreamRows{"streams", StreamRows};

}  // namespace
}  // namespace smgr::test
