// Rules of the simulated snapshots: naming, limits, quota, storage devices.
#include "snapshot_model.h"

#include <cstdio>
#include <fstream>

#include "persistence.h"
#include "sim_log.h"
#include "snapshot_images.h"

namespace sim {
namespace {

namespace fs = std::filesystem;

constexpr int kDefaultLimitKb = 10 * 1024;
constexpr int kDefaultFlashKb = 64 * 1024;

int FlashKiloBytes(const ApplianceProfile& profile) {
  return profile.document.value("snapshot_flash_kb", kDefaultFlashKb);
}

bool ValidNameChars(const std::string& name) {
  for (char c : name)
    if (!isalnum(static_cast<unsigned char>(c)) && c != '.' && c != '_' && c != '-') return false;
  return true;
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The encoder raster: the profile's "video_encoder_rasters" entry, else 1920x1080.
void RasterOf(const ApplianceProfile& profile, const std::string& encoder, unsigned* width,
              unsigned* height) {
  *width = 1920;
  *height = 1080;
  const nlohmann::json rasters = profile.document.value("video_encoder_rasters", nlohmann::json::object());
  if (rasters.contains(encoder) && rasters.at(encoder).is_string())
    sscanf(rasters.at(encoder).get<std::string>().c_str(), "%ux%u", width, height);
}

}  // namespace

SnapshotModel::SnapshotModel(Appliance& appliance) : appliance_(appliance), maxKiloBytes_(kDefaultLimitKb) {
  defaults_.nSize = sizeof defaults_;
  defaults_.enFormat = SMGR_SNAPSHOT_FORMAT_JPEG;
  defaults_.nQualityFactor = 75;
}

fs::path SnapshotModel::folder() const {
  if (device_ == SMGR_SNAPSHOT_STORAGE_CUSTOM_DIRECTORY)
    return fs::path(appliance_.profile().document.value("snapshot_custom_directory", std::string()));
  return appliance_.stateDir() / "snapshots";
}

uint64_t SnapshotModel::usedBytes() const {
  uint64_t total = 0;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder(), error))
    if (entry.is_regular_file(error)) total += entry.file_size(error);
  return total;
}

SMGR_RESULT SnapshotModel::checkDefaults(const SMGR_SNAPSHOT_DEFAULTS& d, unsigned maxWidth,
                                         unsigned maxHeight) const {
  if (d.enFormat != SMGR_SNAPSHOT_FORMAT_JPEG && d.enFormat != SMGR_SNAPSHOT_FORMAT_PNG)
    return SMGR_ERROR_INVALID_PARAMETERS;
  if (d.nQualityFactor < 1 || d.nQualityFactor > 100) return SMGR_ERROR_INVALID_PARAMETERS;
  if (d.enPaletteSelection < SMGR_PNG_PALETTE_RGB_TRUE_COLOR ||
      d.enPaletteSelection > SMGR_PNG_PALETTE_LAB_OPTIMIZED)
    return SMGR_ERROR_INVALID_PARAMETERS;
  if (d.bOverwrite != FALSE && d.bOverwrite != TRUE) return SMGR_ERROR_INVALID_PARAMETERS;
  if (d.Width > maxWidth || d.Height > maxHeight) return SMGR_ERROR_INVALID_PARAMETERS;
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT SnapshotModel::take(const SMGR_SNAPSHOT_CFG& cfg, std::string* writtenName) {
  const ProfileObject* encoder = nullptr;
  for (const ProfileObject& object : appliance_.profile().videoEncoders)
    if (object.id == static_cast<int>(cfg.nVidencID)) encoder = &object;
  if (encoder == nullptr) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  if (running_ && !running_(encoder->id)) return SMGR_ERROR_CODEC_NOT_STARTED;
  unsigned rasterWidth = 0, rasterHeight = 0;
  RasterOf(appliance_.profile(), encoder->name, &rasterWidth, &rasterHeight);

  SMGR_SNAPSHOT_DEFAULTS d = defaults_;  // the fields the request sets replace the defaults
  const uint64_t flags = cfg.SetFieldsFlag;
  if (flags & kSnapshotFormat) d.enFormat = cfg.enFormat;
  if (flags & kSnapshotQuality) d.nQualityFactor = cfg.nQualityFactor;
  if (flags & kSnapshotOverwrite) d.bOverwrite = cfg.bOverwrite;
  if (flags & kSnapshotWidth) d.Width = cfg.Width;
  if (flags & kSnapshotHeight) d.Height = cfg.Height;
  if (flags & kSnapshotPalette) d.enPaletteSelection = cfg.enPaletteSelection;
  if (SMGR_RESULT result = checkDefaults(d, rasterWidth, rasterHeight); result != SMGR_ERROR_SUCCESS)
    return result;
  if (!Terminated(cfg.szFileName, sizeof cfg.szFileName)) return SMGR_ERROR_INVALID_PARAMETERS;

  std::string name = fs::path(cfg.szFileName).filename().string();
  if (!ValidNameChars(name)) return SMGR_ERROR_INVALID_CHARS_IN_FILENAME;
  const std::string extension = d.enFormat == SMGR_SNAPSHOT_FORMAT_PNG ? ".png" : ".jpg";
  if (name.empty()) name = encoder->name + "_" + std::to_string(++generated_);
  if (!EndsWith(name, extension)) name += extension;
  if (name.size() >= SMGR_SNAPSHOT_WIRE_FNAME_SIZE) return SMGR_ERROR_INVALID_PARAMETERS;

  const fs::path dir = folder();
  std::error_code error;
  fs::create_directories(dir, error);
  if (!d.bOverwrite && fs::exists(dir / name)) {
    const std::string stem = name.substr(0, name.size() - extension.size());
    for (unsigned n = 1; fs::exists(dir / name); ++n) name = stem + "_" + std::to_string(n) + extension;
  }
  const unsigned width = d.Width != 0 ? d.Width : rasterWidth;
  const unsigned height = d.Height != 0 ? d.Height : rasterHeight;
  const std::vector<uint8_t> image = d.enFormat == SMGR_SNAPSHOT_FORMAT_PNG
                                         ? ColourBarsPng(width, height)
                                         : ColourBarsJpeg(width, height, d.nQualityFactor);
  uint64_t used = usedBytes();
  if (fs::exists(dir / name)) used -= std::min<uint64_t>(used, fs::file_size(dir / name, error));
  if (maxKiloBytes_ > 0 && used + image.size() > static_cast<uint64_t>(maxKiloBytes_) * 1024)
    return SMGR_ERROR_OUT_OF_STORAGE_SPACE;
  std::ofstream out(dir / name, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(image.data()), static_cast<std::streamsize>(image.size()));
  if (!out.flush()) return SMGR_ERROR_OUT_OF_STORAGE_SPACE;
  SIM_LOG_INFO("snapshot %s written (%ux%u, %zu bytes)", name.c_str(), width, height, image.size());
  *writtenName = name;
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT SnapshotModel::remove(const std::string& name) {
  std::error_code error;
  if (name.empty() || !ValidNameChars(name) || !fs::is_regular_file(folder() / name, error))
    return SMGR_ERROR_NO_SUCH_SNAPSHOT;
  fs::remove(folder() / name, error);
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT SnapshotModel::rename(const std::string& from, const std::string& to) {
  std::error_code error;
  if (from.empty() || !ValidNameChars(from) || !fs::is_regular_file(folder() / from, error))
    return SMGR_ERROR_NO_SUCH_SNAPSHOT;
  if (to.empty() || !ValidNameChars(to)) return SMGR_ERROR_INVALID_CHARS_IN_FILENAME;
  if (fs::exists(folder() / to, error)) return SMGR_ERROR_NAME_IN_USE;
  fs::rename(folder() / from, folder() / to, error);
  return error ? SMGR_ERROR_NO_SUCH_SNAPSHOT : SMGR_ERROR_SUCCESS;
}

unsigned SnapshotModel::removeAll() {
  unsigned count = 0;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder(), error))
    if (entry.is_regular_file(error) && fs::remove(entry.path(), error)) ++count;
  return count;
}

SMGR_RESULT SnapshotModel::setDefaults(const SMGR_SNAPSHOT_DEFAULTS& given) {
  SMGR_SNAPSHOT_DEFAULTS d = defaults_;
  const uint64_t flags = given.SetFieldsFlag;
  if (flags & kSnapshotFormat) d.enFormat = given.enFormat;
  if (flags & kSnapshotQuality) d.nQualityFactor = given.nQualityFactor;
  if (flags & kSnapshotOverwrite) d.bOverwrite = given.bOverwrite;
  if (flags & kSnapshotWidth) d.Width = given.Width;
  if (flags & kSnapshotHeight) d.Height = given.Height;
  if (flags & kSnapshotPalette) d.enPaletteSelection = given.enPaletteSelection;
  if (SMGR_RESULT result = checkDefaults(d, 8191, 8191); result != SMGR_ERROR_SUCCESS) return result;
  defaults_ = d;
  defaults_.SetFieldsFlag = 0;
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT SnapshotModel::setAdmin(const SMGR_SNAPSHOT_ADMIN_CFG& admin) {
  int limit = (admin.SetFieldsFlag & kStorageLimit) ? admin.nMaxStorageInKiloBytes : maxKiloBytes_;
  int device = (admin.SetFieldsFlag & kStorageDevice) ? admin.enStorageDevice : device_;
  if (limit < 0) return SMGR_ERROR_INVALID_PARAMETERS;
  switch (device) {
    case SMGR_SNAPSHOT_STORAGE_LOCAL:
      if (limit == 0) return SMGR_ERROR_UNLIMITED_SNAPSHOTS_NOT_SUPPORTED_FOR_LOCATION;
      if (limit > FlashKiloBytes(appliance_.profile()))
        return SMGR_ERROR_SNAPSHOT_MEDIA_MAX_STORAGE_LIMIT_EXCEEDED;
      break;
    case SMGR_SNAPSHOT_STORAGE_NFS:
      return SMGR_ERROR_NFS_NOT_ENABLED;
    case SMGR_SNAPSHOT_STORAGE_CUSTOM_DIRECTORY: {
      const std::string custom =
          appliance_.profile().document.value("snapshot_custom_directory", std::string());
      std::error_code error;
      if (custom.empty() || !fs::exists(custom, error))
        return SMGR_ERROR_SNAPSHOTS_CUSTOM_LOCATION_DOES_NOT_EXIST;
      if (!fs::is_directory(custom, error)) return SMGR_ERROR_SNAPSHOTS_CUSTOM_LOCATION_NOT_A_DIRECTORY;
      break;
    }
    default:
      return SMGR_ERROR_INVALID_PARAMETERS;
  }
  maxKiloBytes_ = limit;
  device_ = device;
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

SMGR_SNAPSHOT_ADMIN_INFO SnapshotModel::adminInfo() const {
  SMGR_SNAPSHOT_ADMIN_INFO info{};
  info.nSize = sizeof info;
  info.nMaxStorageInKiloBytes = maxKiloBytes_;
  info.enStorageDevice = device_;
  std::string dir = folder().string();
  if (dir.empty() || dir.back() != '/') dir += '/';
  snprintf(info.szDirectory, sizeof info.szDirectory, "%s", dir.c_str());
  return info;
}

nlohmann::json SnapshotModel::save() const {
  return {{"format", defaults_.enFormat},
          {"quality", defaults_.nQualityFactor},
          {"overwrite", defaults_.bOverwrite != FALSE},
          {"width", defaults_.Width},
          {"height", defaults_.Height},
          {"palette", defaults_.enPaletteSelection},
          {"limit_kb", maxKiloBytes_},
          {"device", device_}};
}

void SnapshotModel::load(const nlohmann::json& section) {
  if (!section.is_object()) return;
  defaults_.enFormat = section.value("format", SMGR_SNAPSHOT_FORMAT_JPEG);
  defaults_.nQualityFactor = section.value("quality", 75);
  defaults_.bOverwrite = section.value("overwrite", false) ? TRUE : FALSE;
  defaults_.Width = section.value("width", 0u);
  defaults_.Height = section.value("height", 0u);
  defaults_.enPaletteSelection = section.value("palette", 0);
  maxKiloBytes_ = section.value("limit_kb", kDefaultLimitKb);
  device_ = section.value("device", SMGR_SNAPSHOT_STORAGE_LOCAL);
}

namespace {

const PersistedSection kSnapshotSettings{
    "snapshots", 40, [](Appliance& appliance) { return appliance.family<SnapshotModel>().save(); },
    [](Appliance& appliance, const nlohmann::json& section) {
      appliance.family<SnapshotModel>().load(section);
    }};

}  // namespace
}  // namespace sim
