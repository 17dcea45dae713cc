// The regions of interest of the simulated appliance: one region at most per
// video encoder, a rectangle inside the encoder's raster, names unique
// ignoring case, enable/disable state. Regions survive a restart. Encoders are
// the profile's "video_encoders"; their raster is "video_encoder_rasters"
// from the profile (1920x1080 when it names none). Pure model code.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "appliance.h"
#include "objects.h"
#include "sim_protocol.h"

namespace sim {

class RoiModel {
 public:
  explicit RoiModel(Appliance& appliance) : appliance_(appliance) {}

  Outcome create(const SMGR_ROI_CFG& cfg);  // id and name of the new region
  SMGR_RESULT remove(const ObjectSelector& selector);
  SMGR_RESULT close(int id);  // the region stays
  SMGR_RESULT info(const ObjectSelector& selector, SMGR_ROI_INFO* info);
  SMGR_RESULT configure(const ObjectSelector& selector, const SMGR_ROI_CFG& cfg);
  SMGR_RESULT enable(const ObjectSelector& selector, bool on);
  std::vector<SMGR_ROI_INFO> list() const;

  nlohmann::json save() const;
  void load(const nlohmann::json& section);

 private:
  SMGR_ROI_INFO* find(const ObjectSelector& selector);
  // 2, 26 or 129 for a region that cannot be as described; 0 when it can.
  SMGR_RESULT validate(const SMGR_ROI_INFO& region, int ownId) const;
  bool nameTaken(const std::string& name, int ownId) const;

  Appliance& appliance_;
  std::map<int, SMGR_ROI_INFO> regions_;
};

}  // namespace sim
