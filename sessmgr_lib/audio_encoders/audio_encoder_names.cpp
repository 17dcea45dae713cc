// Audio encoder value names: the tables as data on the one value-name
// mechanism, the two input tables chosen by the system personality, and the
// language text, which departs from the common contract.
#include "audio_encoder_internal.h"
#include "lib_state.h"
#include "lib_trace.h"
#include "util_cfgfile.h"
#include "util_string.h"

namespace smgr::audio_names {
namespace {

using smgr::MakeValueNameTable;
using smgr::NameGeneration;
using smgr::UnknownValueForm;

constexpr ValueName kStateTexts[] = {{0, "STOPPED"}, {3, "WORKING"}, {67, "MUTED"}, {128, "FAILED"}};
constexpr ValueName kModeTexts[] = {{0, "Stereo"}, {1, "Mono"}, {2, "Mono (Right Channel)"}};
constexpr ValueName kShortModeTexts[] = {{0, "Stereo"}, {1, "Mono"}, {2, "Mono-R"}};
constexpr ValueName kAlgorithmTexts[] = {{0, "PCM"},         {1, "Raw"},   {10, "MPEG2-ADTS"},
                                         {20, "MPEG4-ADTS"}, {21, "LOAS"}, {22, "HE-V1-LOAS"},
                                         {23, "HE-V2-LOAS"}};
constexpr ValueName kCaptureTexts[] = {{0, "DISABLED"}, {1, "CAPTURING"}, {2, "COMPLETED"}};
constexpr ValueName kStcTexts[] = {{-1, "Automatic"}, {0, "BNC-1"}, {1, "BNC-2"}, {2, "BNC-3"}, {3, "BNC-4"}};

// SDI input n, channel pair p is 8 x (n - 1) + p.
constexpr ValueName kSdiInputTexts[] = {
    {0, "Analog"},       {1, "SDI1Ch1+2"},    {2, "SDI1Ch3+4"},    {3, "SDI1Ch5+6"},    {4, "SDI1Ch7+8"},
    {5, "SDI1Ch9+10"},   {6, "SDI1Ch11+12"},  {7, "SDI1Ch13+14"},  {8, "SDI1Ch15+16"},  {9, "SDI2Ch1+2"},
    {10, "SDI2Ch3+4"},   {11, "SDI2Ch5+6"},   {12, "SDI2Ch7+8"},   {13, "SDI2Ch9+10"},  {14, "SDI2Ch11+12"},
    {15, "SDI2Ch13+14"}, {16, "SDI2Ch15+16"}, {17, "SDI3Ch1+2"},   {18, "SDI3Ch3+4"},   {19, "SDI3Ch5+6"},
    {20, "SDI3Ch7+8"},   {21, "SDI3Ch9+10"},  {22, "SDI3Ch11+12"}, {23, "SDI3Ch13+14"}, {24, "SDI3Ch15+16"},
    {25, "SDI4Ch1+2"},   {26, "SDI4Ch3+4"},   {27, "SDI4Ch5+6"},   {28, "SDI4Ch7+8"},   {29, "SDI4Ch9+10"},
    {30, "SDI4Ch11+12"}, {31, "SDI4Ch13+14"}, {32, "SDI4Ch15+16"}};
constexpr size_t kInputCount = sizeof(kSdiInputTexts) / sizeof(kSdiInputTexts[0]);

// On an ST 2110 system the four inputs are not SDI connectors: the same texts
// without the leading "SDI".
struct St2110Inputs {
  ValueName entries[kInputCount];
};
constexpr St2110Inputs Make2110Inputs() {
  St2110Inputs table{};
  table.entries[0] = kSdiInputTexts[0];
  for (size_t i = 1; i < kInputCount; ++i)
    table.entries[i] = {kSdiInputTexts[i].nValue, kSdiInputTexts[i].szText + 3};
  return table;
}
constexpr St2110Inputs k2110Inputs = Make2110Inputs();

constexpr const char* kInputOperation = "SessMgr_GetAudioEncoderInputTypeString";
constexpr ValueNameTable kSdiInputs =
    MakeValueNameTable(kInputOperation, kSdiInputTexts, NameGeneration::Checked, UnknownValueForm::WithValue);
constexpr ValueNameTable kSt2110Inputs{kInputOperation, k2110Inputs.entries, kInputCount,
                                       NameGeneration::Checked, UnknownValueForm::WithValue};

}  // namespace

const ValueNameTable kStates = MakeValueNameTable("SessMgr_GetAudioEncoderStateString", kStateTexts,
                                                  NameGeneration::Checked, UnknownValueForm::WithValue);
const ValueNameTable kModes = MakeValueNameTable("SessMgr_GetAudioEncoderModeString", kModeTexts,
                                                 NameGeneration::Checked, UnknownValueForm::WithValue);
const ValueNameTable kShortModes =
    MakeValueNameTable("SessMgr_GetAudioEncoderShortModeString", kShortModeTexts, NameGeneration::Checked,
                       UnknownValueForm::WithValue);
const ValueNameTable kAlgorithms =
    MakeValueNameTable("SessMgr_GetAudioEncoderAlgorithmString", kAlgorithmTexts, NameGeneration::Checked,
                       UnknownValueForm::WithValue);
const ValueNameTable kCaptureStates =
    MakeValueNameTable("SessMgr_GetAudioEncoderCaptureStateString", kCaptureTexts, NameGeneration::Checked,
                       UnknownValueForm::WithValue);
const ValueNameTable kStcSources =
    MakeValueNameTable("SessMgr_GetAudioEncoderSTCSourceInterfaceString", kStcTexts, NameGeneration::Checked,
                       UnknownValueForm::WithValue);

const ValueNameTable& InputTypes() {
  return g_enPersonality == VDR2_PERSONALITY_2110 ? kSt2110Inputs : kSdiInputs;
}

}  // namespace smgr::audio_names

using namespace smgr::audio_names;

extern "C" {

SMGR_API char* SessMgr_GetAudioEncoderStateString(int enState, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kStates, enState, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetAudioEncoderModeString(int enMode, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kModes, enMode, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetAudioEncoderShortModeString(int enMode, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kShortModes, enMode, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetAudioEncoderAlgorithmString(int enAlgo, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kAlgorithms, enAlgo, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetAudioEncoderCaptureStateString(int enCapState, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kCaptureStates, enCapState, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetAudioEncoderSTCSourceInterfaceString(int enCapState, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kStcSources, enCapState, szBuffer, nSize);
}
SMGR_API char* SessMgr_GetAudioEncoderInputTypeString(int enType, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(InputTypes(), enType, szBuffer, nSize);
}

SMGR_API char* SessMgr_GetAudioEncoderLanguageString(const char* szLanguage, char* szBuffer, size_t nSize) {
  if (g_bDoStringAPITrace) SMGR_TRACE(6, "Called (szLanguage=%s).\n", szLanguage ? szLanguage : "NULL");
  // "(None)" is written although NULL is returned; callers rely on the text.
  if (szLanguage == nullptr || szLanguage[0] == '\0') {
    PrintToString(szBuffer, nSize, "%s", "(None)");
    return nullptr;
  }
  const char* szName = GetLanguageFromTag(szLanguage);
  if (szName == nullptr) return nullptr;
  PrintToString(szBuffer, nSize, "%s", szName);
  return szBuffer;
}

}  // extern "C"
