// Operation-table rows of the metadata-source family (sources, identity, tag
// text, value names).
#include "row_kit.h"

namespace smgr::test {
namespace {

constexpr int kCannedSourceId = 42;
constexpr size_t kInfoOffset = offsetof(SMGRPROT_MSG_METADATA_INFO_RSP, Data.MetaDataInfo);
constexpr size_t kStatsOffset = offsetof(SMGRPROT_MSG_METADATA_GETSTATS_RSP, Data.MetaDataStats);

Bytes SourcesAnswer(const Bytes& request) { return PageAnswer(request, sizeof(SMGR_METADATA_INFO), 1); }

Bytes CreateAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_METADATA_CREATE_RSP));
  Put(&message, 20, kCannedSourceId);
  std::memset(message.data() + 24, 'c', SMGR_OBJECT_NAME_SIZE);  // unterminated name
  return message;
}

Bytes InfoAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_METADATA_INFO_RSP));
  Put(&message, kInfoOffset, static_cast<uint32_t>(sizeof(SMGR_METADATA_INFO)));
  Put(&message, kInfoOffset + offsetof(SMGR_METADATA_INFO, nIndex), kCannedSourceId);
  std::memset(message.data() + kInfoOffset + offsetof(SMGR_METADATA_INFO, szName), 'n',
              SMGR_OBJECT_NAME_SIZE);
  Put(&message, kInfoOffset + offsetof(SMGR_METADATA_INFO, enInputType),
      int32_t{SMGR_METADATA_IN_TYPE_SERIAL});
  std::memset(message.data() + kInfoOffset + offsetof(SMGR_METADATA_INFO, in), 'd',
              SMGR_METADATA_DEVICE_NAME_SIZE);
  return message;
}

// CoT statistics claiming 17 discovered sensors, in no order.
Bytes StatsAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_METADATA_GETSTATS_RSP));
  Put(&message, kStatsOffset, static_cast<uint32_t>(sizeof(SMGR_METADATA_STATS)));
  Put(&message, kStatsOffset + offsetof(SMGR_METADATA_STATS, enInputFormat),
      int32_t{SMGR_METADATA_IN_FORMAT_COT});
  Put(&message, kStatsOffset + offsetof(SMGR_METADATA_STATS, format.CoT.nDiscoveredSensorsCount),
      uint32_t{17});
  const size_t nUIDs = kStatsOffset + offsetof(SMGR_METADATA_STATS, format.CoT.aszSensorUIDs);
  for (int i = 0; i < SMGR_METADATA_MAX_SENSORS; ++i)
    std::memset(message.data() + nUIDs + i * SMGR_METADATA_SENSOR_UID_SIZE, 'z' - i,
                SMGR_METADATA_SENSOR_UID_SIZE);
  return message;
}

void OpenCannedSource(CallContext& ctx) {
  SMGR_OBJECT_SELECTOR selector = ById(kCannedSourceId);
  HMETADATA hSource = nullptr;
  if (SessMgr_OpenMetaDataSource(&selector, &hSource)) ctx.hOpen = hSource;
}

void CloseSources(CallContext& ctx) {
  for (HSMGR* ph : {&ctx.hCreated, &ctx.hOpen}) {
    HMETADATA hSource = static_cast<HMETADATA>(*ph);
    if (hSource != nullptr) SessMgr_CloseMetaDataSource(&hSource);
    *ph = nullptr;
  }
}

constexpr HandleKit kMetaDataKit{OpenCannedSource, CloseSources, SMGR_STREAM_HANDLE_SIGNATURE};

HMETADATA WipedSource() { return static_cast<HMETADATA>(wipedHandle()); }
HMETADATA ForeignSource() { return static_cast<HMETADATA>(foreignHandle(kMetaDataKit.dwForeignSignature)); }

SMGR_METADATA_CFG SerialSource() {
  SMGR_METADATA_CFG cfg{};
  cfg.nSize = sizeof(cfg);
  std::strcpy(cfg.in.Serial.szInputDeviceName, "/dev/ttyS1");
  cfg.in.Serial.nBaudRate = 9600;
  return cfg;
}

SMGR_METADATA_RELAY_CFG Relay(uint8_t bLastByte, uint16_t usPort) {
  SMGR_METADATA_RELAY_CFG relay{};
  relay.Address.enType = SMGR_IPV4_ADDRESS;
  const uint8_t abAddress[4] = {10, 0, 0, bLastByte};
  std::memcpy(relay.Address.acAddress, abAddress, sizeof(abAddress));
  relay.usPort = usPort;
  return relay;
}

SMGR_METADATA_CFG WithRelays(SMGR_METADATA_CFG cfg, uint32_t nRelays, bool bDuplicate) {
  cfg.nNumOfRelays = nRelays;
  for (uint32_t i = 0; i < nRelays && i < SMGR_METADATA_MAX_RELAYS; ++i)
    cfg.Relays[i] = Relay(bDuplicate ? 1 : static_cast<uint8_t>(i + 1), static_cast<uint16_t>(5000 + i));
  return cfg;
}

BOOL OpenWith(CallContext& ctx, SMGR_OBJECT_SELECTOR selector) {
  return SessMgr_OpenMetaDataSource(&selector, ctx.buffer(sizeof(HMETADATA)).as<HMETADATA>());
}

BOOL CreateWith(CallContext& ctx, SMGR_METADATA_CFG cfg) {
  HMETADATA* phSource = ctx.buffer(sizeof(HMETADATA), 0).as<HMETADATA>();
  BOOL bResult = SessMgr_CreateMetaDataSource(&cfg, phSource);
  if (bResult) ctx.hCreated = *phSource;
  return bResult;
}

struct ConfigureCall {
  static BOOL With(CallContext&, const SMGR_OBJECT_SELECTOR* pSelector) {
    SMGR_METADATA_CFG cfg = SerialSource();
    cfg.SetFieldsFlag = SMGR_METADATA_SET_SERIAL_BAUDRATE;
    return SessMgr_ConfigureMetaDataSource(pSelector, &cfg);
  }
};

BOOL ConfigureById(SMGR_METADATA_CFG cfg) {
  SMGR_OBJECT_SELECTOR selector = ById(1);
  return SessMgr_ConfigureMetaDataSource(&selector, &cfg);
}

struct StatsCall {
  static BOOL With(CallContext& ctx, const SMGR_OBJECT_SELECTOR* pSelector) {
    return SessMgr_GetMetaDataSourceStats(pSelector, SizedRecord<SMGR_METADATA_STATS>(ctx, 0));
  }
};

bool SensorsSorted(const SMGR_METADATA_STATS& stats) {
  for (int i = 1; i < SMGR_METADATA_MAX_SENSORS; ++i)
    if (std::memcmp(stats.format.CoT.aszSensorUIDs[i - 1], stats.format.CoT.aszSensorUIDs[i],
                    SMGR_METADATA_SENSOR_UID_SIZE) > 0)
      return false;
  return true;
}

std::vector<OperationRow> MetaDataRows() {
  const Expectation local{TRUE, LE::Unchanged};
  std::vector<OperationRow> rows;
  rows.push_back(
      {"SessMgr_CreateMetaDataSource",
       SMGRPROT_METADATA_CREATE_REQ,
       SuccessCodes::ZeroOrWarning,
       CreateAnswer,
       nullptr,
       [](CallContext& ctx) {
         SMGR_METADATA_CFG cfg = SerialSource();
         const uint8_t bShape = ctx.params.byte();
         if (bShape & 1) cfg.nSize = 0xFFFFFFFFu;
         if (bShape & 2) cfg = WithRelays(cfg, 8, false);
         if (bShape & 4) cfg.UASTagFilter[4] = 0xFFFFFFFFu;
         if (bShape & 8) std::memset(cfg.szClassifyingCountry, 'u', sizeof(cfg.szClassifyingCountry));
         return CreateWith(ctx, cfg);
       },
       CloseSources,
       {{"NULL configuration",
         [](CallContext& ctx) {
           return SessMgr_CreateMetaDataSource(nullptr, ctx.buffer(sizeof(HMETADATA)).as<HMETADATA>());
         },
         invalidNoSend},
        {"NULL handle output",
         [](CallContext&) {
           SMGR_METADATA_CFG cfg = SerialSource();
           return SessMgr_CreateMetaDataSource(&cfg, nullptr);
         },
         invalidNoSend},
        {"nSize 5339",
         [](CallContext& ctx) {
           SMGR_METADATA_CFG cfg = SerialSource();
           cfg.nSize = sizeof(cfg) - 1;
           return CreateWith(ctx, cfg);
         },
         invalidNoSend},
        {"nine relays",
         [](CallContext& ctx) { return CreateWith(ctx, WithRelays(SerialSource(), 9, false)); },
         invalidNoSend},
        {"two relays to one address",
         [](CallContext& ctx) { return CreateWith(ctx, WithRelays(SerialSource(), 2, true)); },
         {FALSE, LE::Equals, SMGR_ERROR_DUPLICATE_METADATA_RELAY_ADDRESS, false}},
        {"unresolvable relay host name, unterminated",
         [](CallContext& ctx) {
           SMGR_METADATA_CFG cfg = WithRelays(SerialSource(), 8, false);
           cfg.Relays[7].Address.enType = SMGR_UNRESOLVED_HOSTNAME;
           std::memset(cfg.Relays[7].Address.szHostName, 'h', sizeof(cfg.Relays[7].Address.szHostName));
           return CreateWith(ctx, cfg);
         },
         {FALSE, LE::Equals, SMGR_ERROR_INVALID_METADATA_RELAY_ADDRESS, false}},
        {"unresolvable source host name",
         [](CallContext& ctx) {
           SMGR_METADATA_CFG cfg = SerialSource();
           cfg.enInputType = SMGR_METADATA_IN_TYPE_INET;
           cfg.in.Network.Address.enType = SMGR_UNRESOLVED_HOSTNAME;
           std::strcpy(cfg.in.Network.Address.szHostName, "nowhere.invalid");
           return CreateWith(ctx, cfg);
         },
         {FALSE, LE::Equals, SMGR_ERROR_INVALID_METADATA_SOURCE_ADDRESS, false}}}});
  rows.push_back(
      {"SessMgr_OpenMetaDataSource",
       SMGRPROT_METADATA_OPEN_REQ,
       SuccessCodes::ZeroOnly,
       InfoAnswer,
       nullptr,
       [](CallContext& ctx) {
         SMGR_OBJECT_SELECTOR selector = ChosenSelector(ctx, false);
         HMETADATA* phSource = ctx.buffer(sizeof(HMETADATA), 0).as<HMETADATA>();
         BOOL bResult = SessMgr_OpenMetaDataSource(&selector, phSource);
         if (bResult) ctx.hCreated = *phSource;
         return bResult;
       },
       CloseSources,
       {{"NULL selector",
         [](CallContext& ctx) {
           return SessMgr_OpenMetaDataSource(nullptr, ctx.buffer(sizeof(HMETADATA)).as<HMETADATA>());
         },
         invalidNoSend},
        {"NULL handle output",
         [](CallContext&) {
           SMGR_OBJECT_SELECTOR selector = ById(1);
           return SessMgr_OpenMetaDataSource(&selector, nullptr);
         },
         invalidNoSend},
        {"selector by handle", [](CallContext& ctx) { return OpenWith(ctx, ByHandle(WipedSource())); },
         invalidNoSend},
        {"selector kind 5", [](CallContext& ctx) { return OpenWith(ctx, OfKind(5)); }, invalidNoSend},
        {"by NULL name", [](CallContext& ctx) { return OpenWith(ctx, ByName(nullptr)); }, invalidNoSend}}});
  rows.push_back({"SessMgr_CloseMetaDataSource",
                  SMGRPROT_METADATA_CLOSE_REQ,
                  SuccessCodes::ZeroOrWarning,
                  ResultOnly,
                  OpenCannedSource,
                  [](CallContext& ctx) {
                    HMETADATA* phSource = ctx.buffer(sizeof(HMETADATA)).as<HMETADATA>();
                    *phSource = static_cast<HMETADATA>(ctx.hOpen);
                    ctx.hOpen = nullptr;
                    return SessMgr_CloseMetaDataSource(phSource);
                  },
                  CloseSources,
                  {{"NULL handle pointer", [](CallContext&) { return SessMgr_CloseMetaDataSource(nullptr); },
                    invalidNoSend},
                   {"NULL handle",
                    [](CallContext& ctx) {
                      return SessMgr_CloseMetaDataSource(ctx.buffer(sizeof(HMETADATA)).as<HMETADATA>());
                    },
                    invalidNoSend},
                   {"handle after its last close; the variable is kept",
                    [](CallContext& ctx) {
                      HMETADATA* phSource = ctx.buffer(sizeof(HMETADATA)).as<HMETADATA>();
                      *phSource = WipedSource();
                      BOOL bResult = SessMgr_CloseMetaDataSource(phSource);
                      return *phSource == WipedSource() ? bResult : 2;
                    },
                    invalidNoSend},
                   {"handle of another family",
                    [](CallContext& ctx) {
                      HMETADATA* phSource = ctx.buffer(sizeof(HMETADATA)).as<HMETADATA>();
                      *phSource = ForeignSource();
                      return SessMgr_CloseMetaDataSource(phSource);
                    },
                    invalidNoSend}}});
  rows.push_back({"SessMgr_GetMetaDataSourceID",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"NULL handle",
                    [](CallContext& ctx) {
                      return SessMgr_GetMetaDataSourceID(nullptr, ctx.buffer(sizeof(int)).as<int>());
                    },
                    {FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}},
                   {"wiped handle",
                    [](CallContext& ctx) {
                      return SessMgr_GetMetaDataSourceID(WipedSource(), ctx.buffer(sizeof(int)).as<int>());
                    },
                    {FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}},
                   {"handle of another family",
                    [](CallContext& ctx) {
                      return SessMgr_GetMetaDataSourceID(ForeignSource(), ctx.buffer(sizeof(int)).as<int>());
                    },
                    {FALSE, LE::Equals, SMGR_ERROR_INVALID_PARAMETERS}}}});

  rows.push_back(SelectorRow<SessMgr_DeleteMetaDataSource, false, kMetaDataKit>(
      "SessMgr_DeleteMetaDataSource", SMGRPROT_METADATA_DELETE_REQ, ResultOnly, SuccessCodes::ZeroOrWarning));
  rows.push_back(SelectorRow<SessMgr_StartMetaDataSource, true, kMetaDataKit>(
      "SessMgr_StartMetaDataSource", SMGRPROT_METADATA_START_REQ, ResultWithDescription,
      SuccessCodes::ZeroOrWarning));
  rows.push_back(SelectorRow<SessMgr_StopMetaDataSource, true, kMetaDataKit>(
      "SessMgr_StopMetaDataSource", SMGRPROT_METADATA_STOP_REQ, ResultOnly, SuccessCodes::ZeroOrWarning));
  rows.push_back(SelectorRow<SessMgr_ResetMetaDataSourceStats, true, kMetaDataKit>(
      "SessMgr_ResetMetaDataSourceStats", SMGRPROT_METADATA_RESETSTATS_REQ, ResultOnly,
      SuccessCodes::ZeroOrWarning));
  rows.push_back(RecordRow<SMGR_METADATA_INFO, SessMgr_GetMetaDataSourceInfo, kMetaDataKit>(
      "SessMgr_GetMetaDataSourceInfo", SMGRPROT_METADATA_GETINFO_REQ, InfoAnswer));
  rows.back().success = SuccessCodes::ZeroOrWarning;  // a warning succeeds in this family

  std::vector<BadInput> statsBad = BadSelectorInputs<StatsCall, kMetaDataKit>();
  statsBad.insert(statsBad.end(), {{"NULL record",
                                    [](CallContext&) {
                                      SMGR_OBJECT_SELECTOR s = ById(1);
                                      return SessMgr_GetMetaDataSourceStats(&s, nullptr);
                                    },
                                    invalidNoSend},
                                   {"nSize 2991",
                                    [](CallContext& ctx) {
                                      SMGR_OBJECT_SELECTOR s = ById(1);
                                      return SessMgr_GetMetaDataSourceStats(
                                          &s, SizedRecord<SMGR_METADATA_STATS>(ctx, 1));
                                    },
                                    invalidNoSend},
                                   {"17 sensors answered: 16 sorted, nSize written back",
                                    [](CallContext& ctx) {
                                      SMGR_OBJECT_SELECTOR s = ById(1);
                                      SMGR_METADATA_STATS* pStats = SizedRecord<SMGR_METADATA_STATS>(ctx, 3);
                                      return static_cast<BOOL>(SessMgr_GetMetaDataSourceStats(&s, pStats) &&
                                                               pStats->nSize == sizeof(SMGR_METADATA_STATS) &&
                                                               SensorsSorted(*pStats));
                                    },
                                    acceptedAndSent}});
  rows.push_back({"SessMgr_GetMetaDataSourceStats", SMGRPROT_METADATA_GETSTATS_REQ,
                  SuccessCodes::ZeroOrWarning, StatsAnswer, OpenCannedSource,
                  [](CallContext& ctx) {
                    SMGR_OBJECT_SELECTOR s = ChosenSelector(ctx, true);
                    return SessMgr_GetMetaDataSourceStats(
                        &s, SizedRecord<SMGR_METADATA_STATS>(ctx, (ctx.params.byte() & 1) ? 3 : 0));
                  },
                  CloseSources, std::move(statsBad)});

  std::vector<BadInput> configureBad = BadSelectorInputs<ConfigureCall, kMetaDataKit>();
  configureBad.insert(
      configureBad.end(),
      {{"NULL configuration",
        [](CallContext&) {
          SMGR_OBJECT_SELECTOR s = ById(1);
          return SessMgr_ConfigureMetaDataSource(&s, nullptr);
        },
        invalidNoSend},
       {"nine relays flagged",
        [](CallContext&) {
          SMGR_METADATA_CFG cfg = WithRelays(SerialSource(), 9, false);
          cfg.SetFieldsFlag = SMGR_METADATA_SET_RELAYS;
          return ConfigureById(cfg);
        },
        invalidNoSend},
       {"duplicate relays flagged",
        [](CallContext&) {
          SMGR_METADATA_CFG cfg = WithRelays(SerialSource(), 3, true);
          cfg.SetFieldsFlag = SMGR_METADATA_SET_RELAYS;
          return ConfigureById(cfg);
        },
        {FALSE, LE::Equals, SMGR_ERROR_DUPLICATE_METADATA_RELAY_ADDRESS, false}},
       {"nine relays not flagged: sent as they are",
        [](CallContext&) { return ConfigureById(WithRelays(SerialSource(), 9, false)); }, acceptedAndSent}});
  rows.push_back({"SessMgr_ConfigureMetaDataSource", SMGRPROT_METADATA_SETCFG_REQ,
                  SuccessCodes::ZeroOrWarning, ResultWithDescription, nullptr,
                  [](CallContext& ctx) {
                    SMGR_OBJECT_SELECTOR s = ChosenSelector(ctx, false);
                    SMGR_METADATA_CFG cfg = WithRelays(SerialSource(), 8, false);
                    cfg.SetFieldsFlag = (static_cast<uint64_t>(ctx.params.u32()) << 8) & 0x1FFFFFFFull;
                    cfg.nSize = ctx.params.byte() & 1 ? 100 : 0xFFFFFFFFu;
                    return SessMgr_ConfigureMetaDataSource(&s, &cfg);
                  },
                  nullptr, std::move(configureBad)});
  rows.push_back(PagedRow<SMGR_METADATA_INFO, SessMgr_EnumerateMetaDataSources>(
      "SessMgr_EnumerateMetaDataSources", SMGRPROT_METADATA_ENUMERATE_REQ, SourcesAnswer));
  rows.push_back(
      {"SessMgr_GetMetaDataSourceNameAtIndex",
       SMGRPROT_METADATA_ENUMERATE_REQ,
       SuccessCodes::ZeroOnly,
       SourcesAnswer,
       nullptr,
       [](CallContext& ctx) {
         const size_t nSize = ctx.params.byte() % 80 + 1;
         return SessMgr_GetMetaDataSourceNameAtIndex(ctx.params.byte(), ctx.buffer(nSize).as<char>(), nSize);
       },
       nullptr,
       {{"NULL buffer", [](CallContext&) { return SessMgr_GetMetaDataSourceNameAtIndex(0, nullptr, 64); },
         acceptedAndSent},
        {"1-byte buffer, offset UINT_MAX",
         [](CallContext& ctx) {
           return SessMgr_GetMetaDataSourceNameAtIndex(0xFFFFFFFFu, ctx.buffer(1).as<char>(), 1);
         },
         acceptedAndSent}}});
  rows.push_back({"AreMetaDataSrcConfigsIdentical",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"NULL records are never identical",
                    [](CallContext&) -> BOOL {
                      SMGR_METADATA_CFG cfg = SerialSource();
                      return !AreMetaDataSrcConfigsIdentical(nullptr, &cfg) &&
                             !AreMetaDataSrcConfigsIdentical(&cfg, nullptr);
                    },
                    local},
                   {"unterminated names and devices",
                    [](CallContext& ctx) -> BOOL {
                      auto* pA = ctx.buffer(sizeof(SMGR_METADATA_CFG), 0xEE).as<SMGR_METADATA_CFG>();
                      auto* pB = ctx.buffer(sizeof(SMGR_METADATA_CFG), 0xEE).as<SMGR_METADATA_CFG>();
                      pA->enInputType = pB->enInputType = SMGR_METADATA_IN_TYPE_SERIAL;
                      return AreMetaDataSrcConfigsIdentical(pA, pB);
                    },
                    local}}});
  rows.push_back({"_GenerateTagFilterString",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"tags 100 and 101 into 4 bytes",
                    [](CallContext& ctx) -> BOOL {
                      UINT filter[5] = {};
                      filter[3] = (1u << 4) | (1u << 5);
                      char* sz = ctx.buffer(4, 'x').as<char>();
                      _GenerateTagFilterString(filter, 1, 141, sz, 4);
                      return std::strcmp(sz, "100") == 0;
                    },
                    local},
                   {"NULL buffer, size 0, and a range to UINT_MAX stays within five words",
                    [](CallContext& ctx) -> BOOL {
                      UINT* pFilter = ctx.buffer(5 * sizeof(UINT), 0xFF).as<UINT>();
                      _GenerateTagFilterString(pFilter, 0, 5, nullptr, 16);
                      char* sz = ctx.buffer(1, 'x').as<char>();
                      _GenerateTagFilterString(pFilter, 0, 5, sz, 0);
                      char* szLong = ctx.buffer(1024, 'x').as<char>();
                      _GenerateTagFilterString(pFilter, 0, 0xFFFFFFFFu, szLong, 1024);
                      return sz[0] == 'x' && std::strncmp(szLong, "0,1,2", 5) == 0;
                    },
                    local}}});
  rows.push_back(NameRow<SessMgr_GetMetaDataInputTypeString, true>("SessMgr_GetMetaDataInputTypeString"));
  rows.push_back(NameRow<SessMgr_GetMetaDataInputFormatString, true>("SessMgr_GetMetaDataInputFormatString"));
  rows.push_back(NameRow<SessMgr_GetMetaDataSourceStateString, true>("SessMgr_GetMetaDataSourceStateString"));
  rows.push_back(
      NameRow<SessMgr_GetMetaDataSourceStatusString, true>("SessMgr_GetMetaDataSourceStatusString"));
  rows.push_back(
      NameRow<SessMgr_GetMetaDataSerialStandardString, true>("SessMgr_GetMetaDataSerialStandardString"));
  rows.push_back(NameRow<SessMgr_GetMetaDataMissionClassificationString, true>(
      "SessMgr_GetMetaDataMissionClassificationString"));
  rows.push_back({"CleanupSessMgrMetaData",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"with no handle open",
                    [](CallContext&) -> BOOL {
                      CleanupSessMgrMetaData();
                      return TRUE;
                    },
                    local}}});
  return rows;
}

const RowRegistration kMetaDataRows{"metadata", MetaDataRows};

}  // namespace
}  // namespace smgr::test
