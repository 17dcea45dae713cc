// Operation-table rows of the essence family and the ST 2110 synchronisation.
#include "row_kit.h"

namespace smgr::test {
namespace {

constexpr int kCannedEssenceId = 7;
constexpr size_t kInfoAt = 20;  // the information record in open, getinfo and getstats responses

Bytes EssencesAnswer(const Bytes& request) { return PageAnswer(request, sizeof(SMGR_ESSENCE_INFO), 1); }

Bytes CreateAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_ESSENCE_CREATE_RSP));
  Put(&message, 20, kCannedEssenceId);
  std::memcpy(message.data() + 24, "canned-essence", 15);
  return message;
}

Bytes InfoAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_ESSENCE_INFO_RSP));
  Put(&message, kInfoAt, static_cast<uint32_t>(sizeof(SMGR_ESSENCE_INFO)));
  Put(&message, kInfoAt + 4, kCannedEssenceId);
  std::memset(message.data() + kInfoAt + 8, 'n', SMGR_OBJECT_NAME_SIZE);  // unterminated name
  Put(&message, kInfoAt + 80, int32_t{SMGR_ESSENCE_MEDIA_TYPE_AUDIO});
  return message;
}

Bytes StatsAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_ESSENCE_GETSTATS_RSP));
  Put(&message, kInfoAt, static_cast<uint32_t>(sizeof(SMGR_ESSENCE_STATS)));
  std::memset(message.data() + kInfoAt + 4, 0x5A, message.size() - kInfoAt - 4);
  return message;
}

Bytes SyncAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_2110_SYNC_GETINFO_RSP));
  Put(&message, 20, static_cast<uint32_t>(sizeof(SMGR_2110_SYNC_INFO)));
  std::memset(message.data() + 24, 0x3C, message.size() - 24);
  return message;
}

void OpenCannedEssence(CallContext& ctx) {
  SMGR_OBJECT_SELECTOR selector = ById(kCannedEssenceId);
  HESSENCE hEssence = nullptr;
  if (SessMgr_OpenEssence(&selector, &hEssence)) ctx.hOpen = hEssence;
}

void CloseEssences(CallContext& ctx) {
  for (HSMGR* ph : {&ctx.hCreated, &ctx.hOpen}) {
    HESSENCE hEssence = static_cast<HESSENCE>(*ph);
    if (hEssence != nullptr) SessMgr_CloseEssence(&hEssence);
    *ph = nullptr;
  }
}

constexpr HandleKit kEssenceKit{OpenCannedEssence, CloseEssences, SMGR_STREAM_HANDLE_SIGNATURE};

SMGR_ESSENCE_CFG AudioEssenceCfg() {
  SMGR_ESSENCE_CFG cfg{};
  cfg.nSize = sizeof(cfg);
  std::strcpy(cfg.szName, "fuzzed");
  cfg.enMediaType = SMGR_ESSENCE_MEDIA_TYPE_AUDIO;
  cfg.Media.Audio.nNumOfChannels = 2;
  cfg.Media.Audio.enPacketTime = SMGR_AUDIO_ESSENCE_PACKET_TIME_1MS;
  cfg.Address.enType = SMGR_IPV4_ADDRESS;
  const uint8_t abAddress[4] = {239, 10, 0, 1};
  std::memcpy(cfg.Address.acAddress, abAddress, sizeof(abAddress));
  cfg.usPort = 5004;
  return cfg;
}

BOOL CreateWith(CallContext& ctx, SMGR_ESSENCE_CFG cfg) {
  HESSENCE* phEssence = ctx.buffer(sizeof(HESSENCE), 0).as<HESSENCE>();
  BOOL bResult = SessMgr_CreateEssence(&cfg, phEssence);
  if (bResult) ctx.hCreated = *phEssence;
  return bResult;
}

HESSENCE WipedEssence() { return static_cast<HESSENCE>(wipedHandle()); }

struct ConfigureCall {
  static BOOL With(CallContext&, const SMGR_OBJECT_SELECTOR* pSelector) {
    SMGR_ESSENCE_CFG cfg = AudioEssenceCfg();
    return SessMgr_ConfigureEssence(pSelector, &cfg);
  }
};

// The statistics record must hold all 48 bytes: the generic record row's
// shorter records fail locally here.
OperationRow StatsRow() {
  OperationRow row = RecordRow<SMGR_ESSENCE_STATS, SessMgr_GetEssenceStats, kEssenceKit>(
      "SessMgr_GetEssenceStats", SMGRPROT_ESSENCE_GETSTATS_REQ, StatsAnswer);
  row.invoke = [](CallContext& ctx) {
    SMGR_OBJECT_SELECTOR s = ChosenSelector(ctx, true);
    SMGR_ESSENCE_STATS* pStats = SizedRecord<SMGR_ESSENCE_STATS>(ctx, ctx.params.byte() & 1 ? 3 : 0);
    return SessMgr_GetEssenceStats(&s, pStats);
  };
  for (BadInput& bad : row.badInputs)
    if (std::strcmp(bad.szWhat, "record of nSize 0 in 4 bytes") == 0 ||
        std::strcmp(bad.szWhat, "record one byte short") == 0)
      bad.expect = invalidNoSend;
  row.badInputs.push_back({"nSize 47",
                           [](CallContext& ctx) {
                             SMGR_OBJECT_SELECTOR s = ById(1);
                             return SessMgr_GetEssenceStats(&s, SizedRecord<SMGR_ESSENCE_STATS>(ctx, 1));
                           },
                           invalidNoSend});
  return row;
}

std::vector<OperationRow> EssenceRows() {
  const Expectation local{TRUE, LE::Unchanged};
  std::vector<OperationRow> rows;
  rows.push_back({"SessMgr_CreateEssence",
                  SMGRPROT_ESSENCE_CREATE_REQ,
                  SuccessCodes::ZeroOrWarning,
                  CreateAnswer,
                  nullptr,
                  [](CallContext& ctx) {
                    SMGR_ESSENCE_CFG cfg = AudioEssenceCfg();
                    const uint8_t bShape = ctx.params.byte();
                    if (bShape & 1) cfg.nSize = 0xFFFFFFFFu;  // a newer caller: still 1172 bytes go
                    if (bShape & 2) cfg.nIndex = static_cast<int32_t>(ctx.params.u32() & 0xFFFF) + 100;
                    if (bShape & 4) cfg.szName[0] = '\0';
                    if (bShape & 8) cfg.enMediaType = 77;  // the daemon judges media
                    return CreateWith(ctx, cfg);
                  },
                  CloseEssences,
                  {{"NULL configuration",
                    [](CallContext& ctx) {
                      return SessMgr_CreateEssence(nullptr, ctx.buffer(sizeof(HESSENCE)).as<HESSENCE>());
                    },
                    invalidNoSend},
                   {"NULL handle output",
                    [](CallContext&) {
                      SMGR_ESSENCE_CFG cfg = AudioEssenceCfg();
                      return SessMgr_CreateEssence(&cfg, nullptr);
                    },
                    invalidNoSend},
                   {"nSize 1171",
                    [](CallContext& ctx) {
                      SMGR_ESSENCE_CFG cfg = AudioEssenceCfg();
                      cfg.nSize = sizeof(cfg) - 1;
                      return CreateWith(ctx, cfg);
                    },
                    invalidNoSend},
                   {"unterminated name (64 characters)",
                    [](CallContext& ctx) {
                      SMGR_ESSENCE_CFG cfg = AudioEssenceCfg();
                      std::memset(cfg.szName, 'n', sizeof(cfg.szName));
                      return CreateWith(ctx, cfg);
                    },
                    acceptedAndSent}}});
  rows.push_back({"SessMgr_OpenEssence",
                  SMGRPROT_ESSENCE_OPEN_REQ,
                  SuccessCodes::ZeroOnly,
                  InfoAnswer,
                  nullptr,
                  [](CallContext& ctx) {
                    SMGR_OBJECT_SELECTOR selector = ChosenSelector(ctx, false);
                    HESSENCE* phEssence = ctx.buffer(sizeof(HESSENCE), 0).as<HESSENCE>();
                    BOOL bResult = SessMgr_OpenEssence(&selector, phEssence);
                    if (bResult) ctx.hCreated = *phEssence;
                    return bResult;
                  },
                  CloseEssences,
                  {{"NULL selector",
                    [](CallContext& ctx) {
                      return SessMgr_OpenEssence(nullptr, ctx.buffer(sizeof(HESSENCE)).as<HESSENCE>());
                    },
                    invalidNoSend},
                   {"selector by handle",
                    [](CallContext& ctx) {
                      SMGR_OBJECT_SELECTOR selector = ByHandle(WipedEssence());
                      return SessMgr_OpenEssence(&selector, ctx.buffer(sizeof(HESSENCE)).as<HESSENCE>());
                    },
                    invalidNoSend},
                   {"selector kind 5",
                    [](CallContext& ctx) {
                      SMGR_OBJECT_SELECTOR selector = OfKind(5);
                      return SessMgr_OpenEssence(&selector, ctx.buffer(sizeof(HESSENCE)).as<HESSENCE>());
                    },
                    invalidNoSend}}});
  rows.push_back(
      {"SessMgr_CloseEssence",
       SMGRPROT_ESSENCE_CLOSE_REQ,
       SuccessCodes::ZeroOrWarning,
       ResultOnly,
       OpenCannedEssence,
       [](CallContext& ctx) {
         HESSENCE* phEssence = ctx.buffer(sizeof(HESSENCE)).as<HESSENCE>();
         *phEssence = static_cast<HESSENCE>(ctx.hOpen);
         ctx.hOpen = nullptr;  // released by this call whatever the daemon says
         return SessMgr_CloseEssence(phEssence);
       },
       CloseEssences,
       {{"NULL handle pointer", [](CallContext&) { return SessMgr_CloseEssence(nullptr); }, invalidNoSend},
        {"NULL handle",
         [](CallContext& ctx) { return SessMgr_CloseEssence(ctx.buffer(sizeof(HESSENCE)).as<HESSENCE>()); },
         invalidNoSend},
        {"wiped handle; the variable is kept",
         [](CallContext& ctx) {
           HESSENCE* phEssence = ctx.buffer(sizeof(HESSENCE)).as<HESSENCE>();
           *phEssence = WipedEssence();
           BOOL bResult = SessMgr_CloseEssence(phEssence);
           return *phEssence == WipedEssence() ? bResult : 2;
         },
         invalidNoSend}}});
  rows.push_back(
      {"SessMgr_GetEssenceID",
       0,
       SuccessCodes::ZeroOnly,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       {{"NULL handle",
         [](CallContext& ctx) { return SessMgr_GetEssenceID(nullptr, ctx.buffer(sizeof(int)).as<int>()); },
         invalidNoSend},
        {"wiped handle",
         [](CallContext& ctx) {
           return SessMgr_GetEssenceID(WipedEssence(), ctx.buffer(sizeof(int)).as<int>());
         },
         invalidNoSend}}});

  rows.push_back(SelectorRow<SessMgr_DeleteEssence, false, kEssenceKit>(
      "SessMgr_DeleteEssence", SMGRPROT_ESSENCE_DELETE_REQ, ResultOnly, SuccessCodes::ZeroOrWarning));
  rows.push_back(SelectorRow<SessMgr_StartEssence, true, kEssenceKit>(
      "SessMgr_StartEssence", SMGRPROT_ESSENCE_START_REQ, ResultWithDescription,
      SuccessCodes::ZeroOrWarning));
  rows.push_back(SelectorRow<SessMgr_StopEssence, true, kEssenceKit>(
      "SessMgr_StopEssence", SMGRPROT_ESSENCE_STOP_REQ, ResultOnly, SuccessCodes::ZeroOrWarning));
  rows.push_back(SelectorRow<SessMgr_ResetEssenceStats, true, kEssenceKit>(
      "SessMgr_ResetEssenceStats", SMGRPROT_ESSENCE_RESETSTATS_REQ, ResultOnly, SuccessCodes::ZeroOrWarning));
  {
    std::vector<BadInput> bad = BadSelectorInputs<ConfigureCall, kEssenceKit>();
    bad.push_back({"NULL configuration",
                   [](CallContext&) {
                     SMGR_OBJECT_SELECTOR s = ById(1);
                     return SessMgr_ConfigureEssence(&s, nullptr);
                   },
                   invalidNoSend});
    rows.push_back({"SessMgr_ConfigureEssence", SMGRPROT_ESSENCE_SETCFG_REQ, SuccessCodes::ZeroOrWarning,
                    ResultWithDescription, nullptr,
                    [](CallContext& ctx) {
                      SMGR_OBJECT_SELECTOR s = ChosenSelector(ctx, false);
                      SMGR_ESSENCE_CFG* pCfg = SizedRecord<SMGR_ESSENCE_CFG>(ctx, ctx.params.byte());
                      return SessMgr_ConfigureEssence(&s, pCfg);
                    },
                    nullptr, std::move(bad)});
  }
  // Information and statistics take a warning as success, as every request of the family does.
  OperationRow info = RecordRow<SMGR_ESSENCE_INFO, SessMgr_GetEssenceInfo, kEssenceKit>(
      "SessMgr_GetEssenceInfo", SMGRPROT_ESSENCE_GETINFO_REQ, InfoAnswer);
  info.success = SuccessCodes::ZeroOrWarning;
  rows.push_back(std::move(info));
  OperationRow stats = StatsRow();
  stats.success = SuccessCodes::ZeroOrWarning;
  rows.push_back(std::move(stats));
  rows.push_back(PagedRow<SMGR_ESSENCE_INFO, SessMgr_EnumerateEssences>(
      "SessMgr_EnumerateEssences", SMGRPROT_ESSENCE_ENUMERATE_REQ, EssencesAnswer));
  rows.push_back(
      {"SessMgr_GetEssenceNameAtIndex",
       SMGRPROT_ESSENCE_ENUMERATE_REQ,
       SuccessCodes::ZeroOnly,
       EssencesAnswer,
       nullptr,
       [](CallContext& ctx) {
         const size_t nSize = 1 + ctx.params.byte() % 80;
         return SessMgr_GetEssenceNameAtIndex(ctx.params.byte(), ctx.buffer(nSize).as<char>(), nSize);
       },
       nullptr,
       {{"NULL buffer", [](CallContext&) { return SessMgr_GetEssenceNameAtIndex(0, nullptr, 16); },
         invalidNoSend},
        {"size 0",
         [](CallContext& ctx) { return SessMgr_GetEssenceNameAtIndex(0, ctx.buffer(1).as<char>(), 0); },
         invalidNoSend}}});
  rows.push_back({"AreEssenceConfigsIdentical",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"unterminated names, unnamed with index 0",
                    [](CallContext&) -> BOOL {
                      SMGR_ESSENCE_CFG a = AudioEssenceCfg();
                      SMGR_ESSENCE_CFG b = a;
                      std::memset(a.szName, 'x', sizeof(a.szName));
                      std::memset(b.szName, 'X', sizeof(b.szName));
                      SMGR_ESSENCE_CFG c{};
                      return AreEssenceConfigsIdentical(&a, &b) && !AreEssenceConfigsIdentical(&c, &c);
                    },
                    local}}});
  rows.push_back(
      {"SessMgr_Get2110SyncInfo",
       SMGRPROT_2110_SYNC_GETINFO_REQ,
       SuccessCodes::ZeroEvenOnWarning,  // the copy sets 0 after the warning
       SyncAnswer,
       nullptr,
       [](CallContext& ctx) {
         return SessMgr_Get2110SyncInfo(SizedRecord<SMGR_2110_SYNC_INFO>(ctx, ctx.params.byte()));
       },
       nullptr,
       {{"NULL record", [](CallContext&) { return SessMgr_Get2110SyncInfo(nullptr); }, invalidNoSend},
        {"nSize 0: nothing copied",
         [](CallContext& ctx) -> BOOL {
           auto* pInfo = ctx.buffer(sizeof(SMGR_2110_SYNC_INFO), 0x77).as<SMGR_2110_SYNC_INFO>();
           pInfo->nSize = 0;
           return SessMgr_Get2110SyncInfo(pInfo) && pInfo->nSize == 0 && pInfo->enSyncMode == 0x77777777;
         },
         acceptedAndSent},
        {"nSize 12 in 12 bytes",
         [](CallContext& ctx) -> BOOL {
           auto* pInfo = ctx.buffer(12, 0).as<SMGR_2110_SYNC_INFO>();
           pInfo->nSize = 12;
           return SessMgr_Get2110SyncInfo(pInfo) && pInfo->nSize == 12;
         },
         acceptedAndSent}}});
  rows.push_back(
      {"SessMgr_Set2110ClockMode",
       SMGRPROT_2110_SYNC_SETMODE_REQ,
       SuccessCodes::ZeroOrWarning,
       ResultOnly,
       nullptr,
       [](CallContext& ctx) { return SessMgr_Set2110ClockMode(static_cast<int>(ctx.params.u32())); },
       nullptr,
       {{"mode INT_MIN goes unchecked", [](CallContext&) { return SessMgr_Set2110ClockMode(INT32_MIN); },
         acceptedAndSent}}});
  rows.push_back(NameRow<SessMgr_GetEssenceMediaTypeString, true>("SessMgr_GetEssenceMediaTypeString"));
  rows.push_back(NameRow<SessMgr_GetEssenceStateString, true>("SessMgr_GetEssenceStateString"));
  rows.push_back(
      NameRow<SessMgr_GetEssenceAudioPacketTimeString, true>("SessMgr_GetEssenceAudioPacketTimeString"));
  rows.push_back(
      NameRow<SessMgr_GetEssenceAudioSampleModeString, true>("SessMgr_GetEssenceAudioSampleModeString"));
  rows.push_back(NameRow<SessMgr_GetEssenceAudioSampleFrequencyString, true>(
      "SessMgr_GetEssenceAudioSampleFrequencyString"));
  rows.push_back(NameRow<SessMgr_GetEssenceVideoFormatDetectionStateString, true>(
      "SessMgr_GetEssenceVideoFormatDetectionStateString"));
  rows.push_back({"CleanupSessMgrEssences",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"with no handle open",
                    [](CallContext&) -> BOOL {
                      CleanupSessMgrEssences();
                      return TRUE;
                    },
                    local}}});
  return rows;
}

const RowRegistration kEssenceRows{"essences", EssenceRows};

}  // namespace
}  // namespace smgr::test
