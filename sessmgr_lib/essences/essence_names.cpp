// Essence value names (tables as data on the one value-name mechanism, all of
// the checked generation) and the configuration identity that create uses.
#include <strings.h>

#include "essence_internal.h"
#include "lib_trace.h"
#include "value_names.h"

namespace smgr::essence_names {
namespace {

using smgr::MakeValueNameTable;
using smgr::NameGeneration;
using smgr::UnknownValueForm;
using smgr::ValueName;

constexpr ValueName kMediaTypeEntries[] = {{0, "Video"}, {1, "Audio"}, {2, "ANC Data"}};
constexpr ValueName kStateEntries[] = {{0, "STOPPED"}, {1, "RUNNING"}};
constexpr ValueName kPacketTimeEntries[] = {{1, "1 ms"}, {2, "125 us"}};
constexpr ValueName kSampleModeEntries[] = {{1, "L16"}, {2, "L20"}, {3, "L24"}, {4, "AES3"}};
constexpr ValueName kFrequencyEntries[] = {{1, "44.1kHz"}, {2, "48kHz"}, {3, "96kHz"}};
constexpr ValueName kDetectionEntries[] = {
    {0, "DISABLED"}, {1, "STREAM_DETECTED"}, {2, "BUSY"}, {3, "COMPLETED"}};

constexpr auto Checked(const char* szOperation, const auto& entries) {
  return MakeValueNameTable(szOperation, entries, NameGeneration::Checked, UnknownValueForm::WithValue);
}

}  // namespace

const ValueNameTable kMediaTypes = Checked("SessMgr_GetEssenceMediaTypeString", kMediaTypeEntries);
const ValueNameTable kStates = Checked("SessMgr_GetEssenceStateString", kStateEntries);
const ValueNameTable kPacketTimes = Checked("SessMgr_GetEssenceAudioPacketTimeString", kPacketTimeEntries);
const ValueNameTable kSampleModes = Checked("SessMgr_GetEssenceAudioSampleModeString", kSampleModeEntries);
const ValueNameTable kFrequencies =
    Checked("SessMgr_GetEssenceAudioSampleFrequencyString", kFrequencyEntries);
const ValueNameTable kDetectionStates =
    Checked("SessMgr_GetEssenceVideoFormatDetectionStateString", kDetectionEntries);

}  // namespace smgr::essence_names

using namespace smgr::essence_names;

SMGR_ESSENCE_HANDLE* _LocateEssenceByConfig(const SMGR_ESSENCE_CFG* pCfg) {
  for (FNODE_D* pNode = smgr::EssenceHandles::List().pHead; pCfg != nullptr && pNode != nullptr;
       pNode = pNode->pNext) {
    auto* pHandle = static_cast<SMGR_ESSENCE_HANDLE*>(pNode->pvObject);
    if (AreEssenceConfigsIdentical(pCfg, &pHandle->Config)) {
      SessMgr_SetLastError(SMGR_ERROR_ID_IN_USE);
      return pHandle;
    }
  }
  SMGR_TRACE(7, "No handle found matching configuration.\n");
  return nullptr;
}

extern "C" {

SMGR_API BOOL AreEssenceConfigsIdentical(const SMGR_ESSENCE_CFG* pCfg1, const SMGR_ESSENCE_CFG* pCfg2) {
  if (pCfg1 == nullptr || pCfg2 == nullptr) return FALSE;
  const size_t nName = sizeof(pCfg1->szName);
  if (pCfg1->szName[0] != '\0') {
    if (strncasecmp(pCfg1->szName, pCfg2->szName, nName) != 0) return FALSE;
    SMGR_TRACE(7, "Found handle with same name \"%.*s\".\n", static_cast<int>(nName), pCfg1->szName);
    return TRUE;
  }
  if (pCfg1->nIndex > 0 && pCfg1->nIndex == pCfg2->nIndex) {
    SMGR_TRACE(7, "Found handle with same index (%d).\n", pCfg1->nIndex);
    return TRUE;
  }
  return FALSE;
}

SMGR_API char* SessMgr_GetEssenceMediaTypeString(int enMediaType, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kMediaTypes, enMediaType, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetEssenceStateString(int enState, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kStates, enState, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetEssenceAudioPacketTimeString(int enPacketTime, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kPacketTimes, enPacketTime, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetEssenceAudioSampleModeString(int enSampleMode, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kSampleModes, enSampleMode, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetEssenceAudioSampleFrequencyString(int enFrequency, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kFrequencies, enFrequency, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetEssenceVideoFormatDetectionStateString(int enState, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kDetectionStates, enState, szBuffer, nSize);
}

}  // extern "C"
