// Rules of the simulated regions of interest.
#include "roi_model.h"

#include <strings.h>

#include <cstdio>
#include <cstring>

#include "persistence.h"
#include "sim_log.h"

namespace sim {
namespace {

constexpr uint64_t kSetIndex = 0x1;
constexpr uint64_t kSetName = 0x2;
constexpr int kMaxRegionId = 1024;

struct Raster {
  unsigned width = 1920;
  unsigned height = 1080;
};

Raster RasterOf(const ApplianceProfile& profile, const std::string& encoder) {
  Raster raster;
  const nlohmann::json rasters = profile.document.value("video_encoder_rasters", nlohmann::json::object());
  if (rasters.contains(encoder) && rasters.at(encoder).is_string())
    sscanf(rasters.at(encoder).get<std::string>().c_str(), "%ux%u", &raster.width, &raster.height);
  return raster;
}

// The fields of a configuration that a region record shares.
void TakeFields(const SMGR_ROI_CFG& cfg, uint64_t flags, SMGR_ROI_INFO* region) {
  if (flags & SMGR_ROI_SET_ORIGIN_X) region->Origin.X = cfg.Origin.X;
  if (flags & SMGR_ROI_SET_ORIGIN_Y) region->Origin.Y = cfg.Origin.Y;
  if (flags & SMGR_ROI_SET_WIDTH) region->nWidth = cfg.nWidth;
  if (flags & SMGR_ROI_SET_HEIGHT) region->nHeight = cfg.nHeight;
  if (flags & SMGR_ROI_SET_ENCODER_ID) region->nEncoderID = cfg.nEncoderID;
  if (flags & SMGR_ROI_SET_BORDER_TYPE) region->enBorderType = cfg.enBorderType;
  if (flags & SMGR_ROI_SET_ENABLE) region->bEnableRegion = cfg.bEnableRegion;
  if (flags & SMGR_ROI_SET_PRIORITY) region->nPriority = cfg.nPriority;
  if (flags & SMGR_ROI_SET_POSITIONING) region->enPositioning = cfg.enPositioning;
}

}  // namespace

bool RoiModel::nameTaken(const std::string& name, int ownId) const {
  for (const auto& [id, region] : regions_)
    if (id != ownId && strcasecmp(region.szName, name.c_str()) == 0) return true;
  return false;
}

SMGR_ROI_INFO* RoiModel::find(const ObjectSelector& selector) {
  for (auto& [id, region] : regions_)
    if (selector.byName ? strcasecmp(region.szName, selector.name.c_str()) == 0 : id == selector.id)
      return &region;
  return nullptr;
}

SMGR_RESULT RoiModel::validate(const SMGR_ROI_INFO& region, int ownId) const {
  const ProfileObject* encoder = nullptr;
  for (const ProfileObject& object : appliance_.profile().videoEncoders)
    if (object.id == region.nEncoderID) encoder = &object;
  if (encoder == nullptr) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  for (const auto& [id, other] : regions_)
    if (id != ownId && other.nEncoderID == region.nEncoderID)
      return SMGR_ERROR_MAX_OF_ONE_ROI_PER_VIDEO_ENCODER;
  if (region.enPositioning < SMGR_ROI_POS_BOTTOM_RIGHT || region.enPositioning > SMGR_ROI_POS_ABSOLUTE ||
      region.enBorderType < SMGR_ROI_BORDER_TYPE_NONE ||
      region.enBorderType > SMGR_ROI_BORDER_TYPE_DASHED_BOX ||
      (region.bEnableRegion != FALSE && region.bEnableRegion != TRUE))
    return SMGR_ERROR_INVALID_PARAMETERS;
  const Raster raster = RasterOf(appliance_.profile(), encoder->name);
  const uint64_t x = region.enPositioning == SMGR_ROI_POS_ABSOLUTE ? region.Origin.X : 0;
  const uint64_t y = region.enPositioning == SMGR_ROI_POS_ABSOLUTE ? region.Origin.Y : 0;
  if (region.nWidth == 0 || region.nHeight == 0 || x + region.nWidth > raster.width ||
      y + region.nHeight > raster.height)
    return SMGR_ERROR_INVALID_PARAMETERS;
  return SMGR_ERROR_SUCCESS;
}

Outcome RoiModel::create(const SMGR_ROI_CFG& cfg) {
  if (cfg.nSize != sizeof cfg || !Terminated(cfg.szName, sizeof cfg.szName))
    return Outcome(SMGR_ERROR_INVALID_PARAMETERS, "bad record");
  int id = cfg.nIndex;
  if (id > 0) {
    if (id > kMaxRegionId) return Outcome(SMGR_ERROR_INVALID_PARAMETERS, "ID out of range");
    if (regions_.count(id) != 0) return Outcome(SMGR_ERROR_ID_IN_USE, "ID in use");
  } else {
    for (id = 1; regions_.count(id) != 0; ++id) {
    }
  }
  std::string name = cfg.szName[0] != '\0' ? std::string(cfg.szName) : "roi" + std::to_string(id);
  if (nameTaken(name, 0)) return Outcome(SMGR_ERROR_NAME_IN_USE, "name in use");
  SMGR_ROI_INFO region{};
  region.nSize = sizeof region;
  snprintf(region.szName, sizeof region.szName, "%s", name.c_str());
  region.nIndex = id;
  TakeFields(cfg, ~uint64_t{0}, &region);
  if (SMGR_RESULT result = validate(region, 0); result != SMGR_ERROR_SUCCESS) return Outcome(result);
  regions_[id] = region;
  appliance_.persist();
  return Outcome(SMGR_ERROR_SUCCESS, {}, id, name);
}

SMGR_RESULT RoiModel::remove(const ObjectSelector& selector) {
  SMGR_ROI_INFO* region = find(selector);
  if (region == nullptr) return SMGR_ERROR_NO_MATCHING_ROI_FOUND;
  regions_.erase(region->nIndex);
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT RoiModel::close(int id) {
  return regions_.count(id) != 0 ? SMGR_ERROR_SUCCESS : SMGR_ERROR_NO_MATCHING_ROI_FOUND;
}

SMGR_RESULT RoiModel::info(const ObjectSelector& selector, SMGR_ROI_INFO* info) {
  SMGR_ROI_INFO* region = find(selector);
  if (region == nullptr) return SMGR_ERROR_NO_MATCHING_ROI_FOUND;
  *info = *region;
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT RoiModel::configure(const ObjectSelector& selector, const SMGR_ROI_CFG& cfg) {
  SMGR_ROI_INFO* region = find(selector);
  if (region == nullptr) return SMGR_ERROR_NO_MATCHING_ROI_FOUND;
  if (cfg.nSize != sizeof cfg || (cfg.SetFieldsFlag & kSetIndex)) return SMGR_ERROR_INVALID_PARAMETERS;
  SMGR_ROI_INFO changed = *region;
  if (cfg.SetFieldsFlag & kSetName) {
    if (!Terminated(cfg.szName, sizeof cfg.szName) || cfg.szName[0] == '\0')
      return SMGR_ERROR_INVALID_PARAMETERS;
    if (nameTaken(cfg.szName, region->nIndex)) return SMGR_ERROR_NAME_IN_USE;
    snprintf(changed.szName, sizeof changed.szName, "%s", cfg.szName);
  }
  TakeFields(cfg, cfg.SetFieldsFlag, &changed);
  if (SMGR_RESULT result = validate(changed, region->nIndex); result != SMGR_ERROR_SUCCESS) return result;
  *region = changed;
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT RoiModel::enable(const ObjectSelector& selector, bool on) {
  SMGR_ROI_INFO* region = find(selector);
  if (region == nullptr) return SMGR_ERROR_NO_MATCHING_ROI_FOUND;
  if ((region->bEnableRegion != FALSE) == on)
    return on ? SMGR_ERROR_ROI_ALREADY_ENABLED : SMGR_ERROR_ROI_ALREADY_DISABLED;
  region->bEnableRegion = on ? TRUE : FALSE;
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

std::vector<SMGR_ROI_INFO> RoiModel::list() const {
  std::vector<SMGR_ROI_INFO> all;
  for (const auto& [id, region] : regions_) all.push_back(region);
  return all;
}

nlohmann::json RoiModel::save() const {
  nlohmann::json section = nlohmann::json::array();
  for (const auto& [id, r] : regions_)
    section.push_back({{"id", id},
                       {"name", r.szName},
                       {"encoder", r.nEncoderID},
                       {"x", r.Origin.X},
                       {"y", r.Origin.Y},
                       {"width", r.nWidth},
                       {"height", r.nHeight},
                       {"border", r.enBorderType},
                       {"priority", r.nPriority},
                       {"enabled", r.bEnableRegion != FALSE},
                       {"positioning", r.enPositioning}});
  return section;
}

void RoiModel::load(const nlohmann::json& section) {
  regions_.clear();
  if (!section.is_array()) return;
  for (const auto& item : section) {
    SMGR_ROI_INFO r{};
    r.nSize = sizeof r;
    r.nIndex = item.value("id", 0);
    snprintf(r.szName, sizeof r.szName, "%s", item.value("name", std::string()).c_str());
    r.nEncoderID = item.value("encoder", 0);
    r.Origin.X = item.value("x", 0u);
    r.Origin.Y = item.value("y", 0u);
    r.nWidth = item.value("width", 0u);
    r.nHeight = item.value("height", 0u);
    r.enBorderType = item.value("border", 0);
    r.nPriority = item.value("priority", 0);
    r.bEnableRegion = item.value("enabled", false) ? TRUE : FALSE;
    r.enPositioning = item.value("positioning", 0);
    if (r.nIndex > 0) regions_[r.nIndex] = r;
  }
}

namespace {

const PersistedSection kRegions{
    "regions_of_interest", 30, [](Appliance& appliance) { return appliance.family<RoiModel>().save(); },
    [](Appliance& appliance, const nlohmann::json& section) { appliance.family<RoiModel>().load(section); }};

}  // namespace
}  // namespace sim
