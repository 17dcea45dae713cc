// Video input value names (interface type, state), the capabilities text and
// the field-by-field dump of an information record. No lock, no last error.
#include "lib_state.h"
#include "lib_trace.h"
#include "sessmgr_api.h"
#include "util_cfgfile.h"
#include "util_string.h"
#include "value_names.h"
#include "video_input_internal.h"

namespace {

using smgr::MakeValueNameTable;
using smgr::NameGeneration;
using smgr::UnknownValueForm;
using smgr::ValueName;

// Interface type 1 reads as the system's personality names its inputs.
constexpr ValueName kInterfaceTypesSdi[] = {
    {-1, "Auto-Detect"}, {0, "(Unknown)"}, {1, "SDI"}, {2, "Composite"}};
constexpr ValueName kInterfaceTypes2110[] = {
    {-1, "Auto-Detect"}, {0, "(Unknown)"}, {1, "ST-2110"}, {2, "Composite"}};
constexpr ValueName kInputStates[] = {{0, "INACTIVE"},   {1, "ACTIVE"},     {2, "SQD FAILED"},
                                      {3, "SQD ACTIVE"}, {4, "2SI FAILED"}, {5, "2SI ACTIVE"}};

constexpr auto kInterfaceTypeNamesSdi =
    MakeValueNameTable("SessMgr_GetVideoInterfaceTypeString", kInterfaceTypesSdi, NameGeneration::Checked,
                       UnknownValueForm::WithValue);
constexpr auto kInterfaceTypeNames2110 =
    MakeValueNameTable("SessMgr_GetVideoInterfaceTypeString", kInterfaceTypes2110, NameGeneration::Checked,
                       UnknownValueForm::WithValue);
constexpr auto kInputStateNames = MakeValueNameTable("SessMgr_GetVideoInputStateString", kInputStates,
                                                     NameGeneration::Checked, UnknownValueForm::WithValue);

const smgr::ValueNameTable& InterfaceTypeNames() {
  return g_enPersonality == VDR2_PERSONALITY_2110 ? kInterfaceTypeNames2110 : kInterfaceTypeNamesSdi;
}

// A value's name without the value-name operation's own call traces.
struct QuietName {
  QuietName(const smgr::ValueNameTable& table, int nValue) {
    smgr::ValueNameTable quiet = table;
    quiet.callTrace = smgr::NameCallTrace::Never;
    smgr::NameOfValue(quiet, nValue, sz, sizeof(sz));
  }
  char sz[64];
};

}  // namespace

char* _GetCapabilitiesString(DWORD dwCapabilities, char* szBuffer, size_t nSize) {
  static constexpr struct {
    DWORD dwBit;
    const char* szWord;
  } kWords[] = {{SMGR_VIDIN_CAPABILITY_SDI, "SDI"},
                {SMGR_VIDIN_CAPABILITY_HD, "HD"},
                {SMGR_VIDIN_CAPABILITY_UHD, "UHD"},
                {SMGR_VIDIN_CAPABILITY_AUDIO, "AUDIO"},
                {SMGR_VIDIN_CAPABILITY_COMPOSITE, "COMPOSITE"}};
  if (szBuffer == nullptr || nSize == 0) return szBuffer;
  szBuffer[0] = '\0';
  bool bFirst = true;
  for (const auto& word : kWords) {
    if ((dwCapabilities & word.dwBit) == 0) continue;
    if (!bFirst) StringCat(szBuffer, ", ", nSize);
    StringCat(szBuffer, word.szWord, nSize);
    bFirst = false;
  }
  return szBuffer;
}

void _PrintVideoInputInfo(const SMGR_VIDEO_INPUT_INFO* pInfo) {
  if (pInfo == nullptr) return;
  char szCapabilities[64];
#define INFO_TRACE(...) SMGR_TRACE_AS("_PrintVideoInputInfo", 6, __VA_ARGS__)
  INFO_TRACE("szName = \"%.64s\".\n", pInfo->szName);
  INFO_TRACE("nID = %u.\n", pInfo->nID);
  INFO_TRACE("dwCapabilities = 0x%08lX (%s).\n", static_cast<unsigned long>(pInfo->dwCapabilities),
             _GetCapabilitiesString(pInfo->dwCapabilities, szCapabilities, sizeof(szCapabilities)));
  INFO_TRACE("enState = %d (%s).\n", pInfo->enState, QuietName(kInputStateNames, pInfo->enState).sz);
  INFO_TRACE("enCfgInterfaceType = %d (%s).\n", pInfo->enCfgInterfaceType,
             QuietName(InterfaceTypeNames(), pInfo->enCfgInterfaceType).sz);
  INFO_TRACE("enInterfaceType = %d (%s).\n", pInfo->enInterfaceType,
             QuietName(InterfaceTypeNames(), pInfo->enInterfaceType).sz);
  INFO_TRACE("enInputFormat = 0x%016llX.\n", static_cast<unsigned long long>(pInfo->enInputFormat));
  INFO_TRACE("nFormatLockStateChanges = %llu (last at %u s).\n",
             static_cast<unsigned long long>(pInfo->nFormatLockStateChanges),
             pInfo->nLastFormatLockStateChangeUPTimeInSecs);
  INFO_TRACE("bSDILevelBDetected = %d.\n", pInfo->bSDILevelBDetected);
  INFO_TRACE("nNumOfAudioChannels = %u.\n", pInfo->nNumOfAudioChannels);
  INFO_TRACE("nInputChecks = %llu (last at %u s).\n", static_cast<unsigned long long>(pInfo->nInputChecks),
             pInfo->nLastInputCheckUPTimeInSecs);
  INFO_TRACE("bEnableFIRFilter = %d.\n", pInfo->bEnableFIRFilter);
  INFO_TRACE("ColorPrimaries = %u, TransferCharacteristics = %u, MatrixCoefficients = %u.\n",
             pInfo->ColorPrimaries, pInfo->TransferCharacteristics, pInfo->MatrixCoefficients);
#undef INFO_TRACE
}

extern "C" {

SMGR_API char* SessMgr_GetVideoInterfaceTypeString(int enInterfaceType, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(InterfaceTypeNames(), enInterfaceType, szBuffer, nSize);
}

SMGR_API char* SessMgr_GetVideoInputStateString(int enState, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kInputStateNames, enState, szBuffer, nSize);
}

}  // extern "C"
