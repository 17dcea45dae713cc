// The value-name tables of the metadata family, shared by the exported
// value-name operations and the record dumps.
#pragma once

#include "value_names.h"

namespace smgr::metadata_names {

extern const ValueNameTable kInputFormat;
extern const ValueNameTable kState;
extern const ValueNameTable kStatus;
extern const ValueNameTable kSerialStandard;
extern const ValueNameTable kClassification;
// "HD-SDI" or "ST-2110" for the video-input type, by the unit's personality.
const ValueNameTable& InputTypeTable();

}  // namespace smgr::metadata_names
