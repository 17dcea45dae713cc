// Operation-table rows of the region-of-interest family.
#include "row_kit.h"

namespace smgr::test {
namespace {

constexpr int kCannedRoiId = 42;
constexpr char kCannedRoiName[] = "canned-roi";

Bytes CreateAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_ROI_CREATE_RSP));
  Put(&message, 20, kCannedRoiId);
  std::memcpy(message.data() + 24, kCannedRoiName, sizeof(kCannedRoiName));
  return message;
}

Bytes InfoAnswer(const Bytes& request) {
  Bytes message = Answer(request, sizeof(SMGRPROT_MSG_ROI_GETINFO_RSP));
  std::memset(message.data() + 20, 'r', sizeof(SMGR_ROI_INFO));
  Put(&message, 20, static_cast<uint32_t>(sizeof(SMGR_ROI_INFO)));
  return message;
}

Bytes RegionsAnswer(const Bytes& request) { return PageAnswer(request, sizeof(SMGR_ROI_INFO), 2); }

SMGR_ROI_CFG ValidRoiCfg(const char* szName = "zone", int nIndex = 0) {
  SMGR_ROI_CFG cfg{};
  cfg.nSize = sizeof(cfg);
  std::strncpy(cfg.szName, szName, sizeof(cfg.szName) - 1);
  cfg.nIndex = nIndex;
  cfg.nEncoderID = 1;
  cfg.nWidth = 64;
  cfg.nHeight = 64;
  cfg.enPositioning = SMGR_ROI_POS_CENTERED;
  return cfg;
}

BOOL CreateWith(CallContext& ctx, const SMGR_ROI_CFG& cfg) {
  HROI* phRegion = ctx.buffer(sizeof(HROI)).as<HROI>();
  BOOL bResult = SessMgr_CreateROI(&cfg, phRegion);
  if (bResult) ctx.hCreated = *phRegion;
  return bResult;
}

// A live handle holding the canned ID and name.
void OpenCannedRegion(CallContext& ctx) {
  SMGR_ROI_CFG cfg = ValidRoiCfg(kCannedRoiName);
  HROI hRegion = nullptr;
  if (SessMgr_CreateROI(&cfg, &hRegion)) ctx.hOpen = hRegion;
}

void CloseRegions(CallContext& ctx) {
  for (HSMGR* ph : {&ctx.hCreated, &ctx.hOpen}) {
    HROI hRegion = static_cast<HROI>(*ph);
    if (hRegion != nullptr) SessMgr_CloseROI(&hRegion);
    *ph = nullptr;
  }
}

// A stream handle is the foreign handle of the selector sweeps.
constexpr HandleKit kRoiKit{OpenCannedRegion, CloseRegions, SMGR_STREAM_HANDLE_SIGNATURE};

HROI WipedRegion() { return static_cast<HROI>(wipedHandle()); }
HROI StreamHandle() { return static_cast<HROI>(foreignHandle(SMGR_STREAM_HANDLE_SIGNATURE)); }

struct ConfigureCall {
  static BOOL With(CallContext&, const SMGR_OBJECT_SELECTOR* pSelector) {
    SMGR_ROI_CFG cfg = ValidRoiCfg();
    cfg.SetFieldsFlag = SMGR_ROI_SET_WIDTH;
    return SessMgr_ConfigureROI(pSelector, &cfg);
  }
};

std::vector<OperationRow> RoiRows() {
  const Expectation clash{FALSE, LE::Equals, SMGR_ERROR_ID_IN_USE, false};
  std::vector<OperationRow> rows;
  rows.push_back(
      {"SessMgr_CreateROI",
       SMGRPROT_ROI_CREATE_REQ,
       SuccessCodes::ZeroOnly,
       CreateAnswer,
       OpenCannedRegion,
       [](CallContext& ctx) {
         const uint8_t bShape = ctx.params.byte();
         SMGR_ROI_CFG cfg = ValidRoiCfg((bShape & 1) ? "" : "fuzzed", (bShape & 2) ? 7 : 0);
         if (bShape & 4) std::memset(cfg.szName, 'n', sizeof(cfg.szName));  // unterminated
         return CreateWith(ctx, cfg);
       },
       CloseRegions,
       {{"NULL configuration",
         [](CallContext& ctx) { return SessMgr_CreateROI(nullptr, ctx.buffer(sizeof(HROI)).as<HROI>()); },
         invalidNoSend},
        {"NULL handle output",
         [](CallContext&) {
           SMGR_ROI_CFG cfg = ValidRoiCfg();
           return SessMgr_CreateROI(&cfg, nullptr);
         },
         invalidNoSend},
        {"nSize 115",
         [](CallContext& ctx) {
           SMGR_ROI_CFG cfg = ValidRoiCfg();
           cfg.nSize = 115;
           return CreateWith(ctx, cfg);
         },
         invalidNoSend},
        {"nSize 117",
         [](CallContext& ctx) {
           SMGR_ROI_CFG cfg = ValidRoiCfg();
           cfg.nSize = 117;
           return CreateWith(ctx, cfg);
         },
         invalidNoSend},
        {"ID of a held handle",
         [](CallContext& ctx) { return CreateWith(ctx, ValidRoiCfg("", kCannedRoiId)); }, clash},
        {"name of a held handle",
         [](CallContext& ctx) { return CreateWith(ctx, ValidRoiCfg(kCannedRoiName)); }, clash},
        {"name of a held handle in other case: sent",
         [](CallContext& ctx) { return CreateWith(ctx, ValidRoiCfg("Canned-ROI")); }, acceptedAndSent}}});
  rows.push_back(SelectorRow<SessMgr_DeleteROI, false, kRoiKit>("SessMgr_DeleteROI", SMGRPROT_ROI_DELETE_REQ,
                                                                ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(
      {"SessMgr_GetROIIndex",
       0,
       SuccessCodes::ZeroOnly,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       {{"NULL handle",
         [](CallContext& ctx) { return SessMgr_GetROIIndex(nullptr, ctx.buffer(4).as<UINT>()); },
         invalidNoSend},
        {"wiped handle",
         [](CallContext& ctx) { return SessMgr_GetROIIndex(WipedRegion(), ctx.buffer(4).as<UINT>()); },
         invalidNoSend},
        {"stream handle",
         [](CallContext& ctx) { return SessMgr_GetROIIndex(StreamHandle(), ctx.buffer(4).as<UINT>()); },
         invalidNoSend}}});
  rows.push_back(
      {"SessMgr_CloseROI",
       SMGRPROT_ROI_CLOSE_REQ,
       SuccessCodes::ZeroOnly,
       ResultOnly,
       OpenCannedRegion,
       [](CallContext& ctx) {
         HROI* phRegion = ctx.buffer(sizeof(HROI)).as<HROI>();
         *phRegion = static_cast<HROI>(ctx.hOpen);
         ctx.hOpen = nullptr;  // released by this call whatever the daemon says
         return static_cast<BOOL>(SessMgr_CloseROI(phRegion) && *phRegion == nullptr);
       },
       CloseRegions,
       {{"NULL handle pointer", [](CallContext&) { return SessMgr_CloseROI(nullptr); }, invalidNoSend},
        {"NULL handle",
         [](CallContext& ctx) { return SessMgr_CloseROI(ctx.buffer(sizeof(HROI)).as<HROI>()); },
         invalidNoSend},
        {"stream handle; the variable is kept",
         [](CallContext& ctx) {
           HROI* phRegion = ctx.buffer(sizeof(HROI)).as<HROI>();
           *phRegion = StreamHandle();
           BOOL bResult = SessMgr_CloseROI(phRegion);
           return *phRegion == StreamHandle() ? bResult : 2;
         },
         invalidNoSend}}});
  rows.push_back(RecordRow<SMGR_ROI_INFO, SessMgr_GetROIInfo, kRoiKit>("SessMgr_GetROIInfo",
                                                                       SMGRPROT_ROI_GETINFO_REQ, InfoAnswer));
  rows.push_back(PagedRow<SMGR_ROI_INFO, SessMgr_EnumerateROIs>("SessMgr_EnumerateROIs",
                                                                SMGRPROT_ROI_ENUMERATE_REQ, RegionsAnswer));
  std::vector<BadInput> configureBad = BadSelectorInputs<ConfigureCall, kRoiKit>();
  configureBad.push_back({"NULL configuration",
                          [](CallContext&) {
                            SMGR_OBJECT_SELECTOR s = ById(1);
                            return SessMgr_ConfigureROI(&s, nullptr);
                          },
                          invalidNoSend});
  rows.push_back({"SessMgr_ConfigureROI", SMGRPROT_ROI_SETCFG_REQ, SuccessCodes::ZeroOnly, ResultOnly,
                  nullptr,
                  [](CallContext& ctx) {
                    SMGR_OBJECT_SELECTOR s = ChosenSelector(ctx, false);
                    return ConfigureCall::With(ctx, &s);
                  },
                  nullptr, std::move(configureBad)});
  rows.push_back(SelectorRow<SessMgr_EnableROI, true, kRoiKit>("SessMgr_EnableROI", SMGRPROT_ROI_START_REQ,
                                                               ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(SelectorRow<SessMgr_DisableROI, true, kRoiKit>("SessMgr_DisableROI", SMGRPROT_ROI_STOP_REQ,
                                                                ResultOnly, SuccessCodes::ZeroOnly));
  rows.push_back(NameRow<SessMgr_GetROIPositioningString, true>("SessMgr_GetROIPositioningString"));
  rows.push_back(NameRow<SessMgr_GetROIBorderTypeString, true>("SessMgr_GetROIBorderTypeString"));
  rows.push_back({"CleanupSessMgrROIs",
                  0,
                  SuccessCodes::ZeroOnly,
                  nullptr,
                  nullptr,
                  nullptr,
                  nullptr,
                  {{"with no handle open",
                    [](CallContext&) -> BOOL {
                      CleanupSessMgrROIs();
                      return TRUE;
                    },
                    {TRUE, LE::Unchanged}}}});
  return rows;
}

const RowRegistration kRoiRows{"roi", RoiRows};

}  // namespace
}  // namespace smgr::test
