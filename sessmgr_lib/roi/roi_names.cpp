// Region-of-interest value names (positioning, border type) and the trace of
// a configuration. No lock, no last error.
#include "lib_trace.h"
#include "roi_internal.h"
#include "sessmgr_api.h"
#include "value_names.h"

namespace {

using smgr::MakeValueNameTable;
using smgr::NameGeneration;
using smgr::UnknownValueForm;
using smgr::ValueName;

constexpr ValueName kPositionings[] = {{0, "Bottom-Right"}, {1, "Top-Right"}, {2, "Bottom-Left"},
                                       {3, "Top-Left"},     {4, "Centered"},  {5, "Absolute"}};
constexpr ValueName kBorderTypes[] = {{0, "(None)"}, {1, "Box"}};

constexpr auto kPositioningNames = MakeValueNameTable("SessMgr_GetROIPositioningString", kPositionings,
                                                      NameGeneration::Checked, UnknownValueForm::WithValue);
constexpr auto kBorderTypeNames = MakeValueNameTable("SessMgr_GetROIBorderTypeString", kBorderTypes,
                                                     NameGeneration::Checked, UnknownValueForm::WithValue);

}  // namespace

void _PrintROICfg(const SMGR_ROI_CFG* pCfg, bool bAll) {
  if (pCfg == nullptr || !SMGR_TRACE_ENABLED(6)) return;
#define CFG_TRACE(...) SMGR_TRACE_AS("_PrintROICfg", 6, __VA_ARGS__)
  const uint64_t flags = bAll ? ~uint64_t{0} : pCfg->SetFieldsFlag;
  if (bAll) {
    CFG_TRACE("nIndex = %d.\n", pCfg->nIndex);
    CFG_TRACE("szName = \"%.64s\".\n", pCfg->szName);
  }
  const uint64_t origin = SMGR_ROI_SET_ORIGIN_X | SMGR_ROI_SET_ORIGIN_Y;
  if ((flags & origin) == origin)
    CFG_TRACE("Origin = (%d, %d)\n", static_cast<int>(pCfg->Origin.X), static_cast<int>(pCfg->Origin.Y));
  else if (flags & SMGR_ROI_SET_ORIGIN_X)
    CFG_TRACE("X Origin = %d\n", static_cast<int>(pCfg->Origin.X));
  else if (flags & SMGR_ROI_SET_ORIGIN_Y)
    CFG_TRACE("Y Origin = %d\n", static_cast<int>(pCfg->Origin.Y));
  if (flags & SMGR_ROI_SET_WIDTH) CFG_TRACE("Width = %d\n", static_cast<int>(pCfg->nWidth));
  if (flags & SMGR_ROI_SET_HEIGHT) CFG_TRACE("Height = %d\n", static_cast<int>(pCfg->nHeight));
  if (flags & SMGR_ROI_SET_ENCODER_ID) CFG_TRACE("nEncoderID = %d.\n", pCfg->nEncoderID);
  if (flags & SMGR_ROI_SET_BORDER_TYPE) CFG_TRACE("enBorderType = %d\n", pCfg->enBorderType);
  if (flags & SMGR_ROI_SET_ENABLE) CFG_TRACE("enable = %s\n", pCfg->bEnableRegion ? "enabled" : "disabled");
  if (flags & SMGR_ROI_SET_PRIORITY) CFG_TRACE("nPriority = %d.\n", pCfg->nPriority);
  if (flags & SMGR_ROI_SET_POSITIONING) CFG_TRACE("enPositioning = %d\n", pCfg->enPositioning);
#undef CFG_TRACE
}

extern "C" {

SMGR_API char* SessMgr_GetROIPositioningString(int enPositioning, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kPositioningNames, enPositioning, szBuffer, nSize);
}

SMGR_API char* SessMgr_GetROIBorderTypeString(int enEdgeType, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kBorderTypeNames, enEdgeType, szBuffer, nSize);
}

}  // extern "C"
