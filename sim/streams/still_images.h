// Still images of the simulated appliance: ".mp4" files in the state folder's
// still_images/ that streams may show. Deletion skips images in use.
#pragma once

#include <string>

#include "appliance.h"
#include "sim_protocol.h"

namespace sim {

struct StillDeleteOutcome {
  SMGR_RESULT result = SMGR_ERROR_SUCCESS;
  uint32_t deleted = 0;
  uint32_t skipped = 0;
  int lastErrno = 0;
};

// fileName: a base name ("logo.mp4"), a name in the appliance's still-image folder
// (SMGR_STILL_IMAGE_FOLDER "logo.mp4"), or the keyword "all".
StillDeleteOutcome DeleteStillImages(Appliance& appliance, const std::string& fileName);

}  // namespace sim
