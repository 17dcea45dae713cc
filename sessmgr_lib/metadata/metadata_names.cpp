// Metadata value names: six checked tables on the one value-name mechanism.
// The video-input type is named after the unit's kind of video input.
#include "metadata_names.h"

#include "lib_state.h"
#include "sessmgr_api.h"
#include "util_cfgfile.h"
#include "value_names.h"

namespace smgr::metadata_names {

using smgr::NameGeneration;
using smgr::UnknownValueForm;
using smgr::ValueName;

namespace {

constexpr ValueName kInputTypesSdi[] = {{SMGR_METADATA_IN_TYPE_SERIAL, "Serial"},
                                        {SMGR_METADATA_IN_TYPE_INET, "Network"},
                                        {SMGR_METADATA_IN_TYPE_VIDEO_INPUT, "HD-SDI"}};
constexpr ValueName kInputTypes2110[] = {{SMGR_METADATA_IN_TYPE_SERIAL, "Serial"},
                                         {SMGR_METADATA_IN_TYPE_INET, "Network"},
                                         {SMGR_METADATA_IN_TYPE_VIDEO_INPUT, "ST-2110"}};
constexpr ValueName kInputFormats[] = {{SMGR_METADATA_IN_FORMAT_KLV, "KLV"},
                                       {SMGR_METADATA_IN_FORMAT_COT, "CoT"}};
constexpr ValueName kStates[] = {{SMGR_METADATA_STATE_STOPPED, "DISABLED"},
                                 {SMGR_METADATA_STATE_WORKING, "WORKING"}};
constexpr ValueName kStatuses[] = {{SMGR_METADATA_STATUS_STOPPED, "STOPPED"},
                                   {SMGR_METADATA_STATUS_STARTED, "STARTED"}};
constexpr ValueName kSerialStandards[] = {{SMGR_METADATA_SERIAL_STD_RS232, "RS-232"},
                                          {SMGR_METADATA_SERIAL_STD_RS422, "RS-422"}};
constexpr ValueName kClassifications[] = {{SMGR_METADATA_CLASSIFICATION_UNCLASSIFIED, "UNCLASSIFIED"},
                                          {SMGR_METADATA_CLASSIFICATION_RESTRICTED, "RESTRICTED"},
                                          {SMGR_METADATA_CLASSIFICATION_CONFIDENTIAL, "CONFIDENTIAL"},
                                          {SMGR_METADATA_CLASSIFICATION_SECRET, "SECRET"},
                                          {SMGR_METADATA_CLASSIFICATION_TOP_SECRET, "TOP SECRET"}};

template <size_t N>
constexpr ValueNameTable Checked(const char* szOperation, const ValueName (&entries)[N]) {
  return MakeValueNameTable(szOperation, entries, NameGeneration::Checked, UnknownValueForm::WithValue);
}

}  // namespace

const ValueNameTable kInputTypeSdi = Checked("SessMgr_GetMetaDataInputTypeString", kInputTypesSdi);
const ValueNameTable kInputType2110 = Checked("SessMgr_GetMetaDataInputTypeString", kInputTypes2110);
const ValueNameTable kInputFormat = Checked("SessMgr_GetMetaDataInputFormatString", kInputFormats);
const ValueNameTable kState = Checked("SessMgr_GetMetaDataSourceStateString", kStates);
const ValueNameTable kStatus = Checked("SessMgr_GetMetaDataSourceStatusString", kStatuses);
const ValueNameTable kSerialStandard = Checked("SessMgr_GetMetaDataSerialStandardString", kSerialStandards);
const ValueNameTable kClassification =
    Checked("SessMgr_GetMetaDataMissionClassificationString", kClassifications);

const ValueNameTable& InputTypeTable() {
  return g_enPersonality == VDR2_PERSONALITY_2110 ? kInputType2110 : kInputTypeSdi;
}

}  // namespace smgr::metadata_names

using namespace smgr::metadata_names;

extern "C" {

SMGR_API char* SessMgr_GetMetaDataInputTypeString(int enInput, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(InputTypeTable(), enInput, szBuffer, nSize);
}

SMGR_API char* SessMgr_GetMetaDataInputFormatString(int enInput, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kInputFormat, enInput, szBuffer, nSize);
}

SMGR_API char* SessMgr_GetMetaDataSourceStateString(int enState, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kState, enState, szBuffer, nSize);
}

SMGR_API char* SessMgr_GetMetaDataSourceStatusString(int enStatus, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kStatus, enStatus, szBuffer, nSize);
}

SMGR_API char* SessMgr_GetMetaDataSerialStandardString(int enStandard, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kSerialStandard, enStandard, szBuffer, nSize);
}

SMGR_API char* SessMgr_GetMetaDataMissionClassificationString(int enClassification, char* szBuffer,
                                                              size_t nSize) {
  return smgr::NameOfValue(kClassification, enClassification, szBuffer, nSize);
}

}  // extern "C"
