// Snapshots of the simulated appliance: stills written as real files into the
// snapshot folder (<state-dir>/snapshots/, or the profile's
// "snapshot_custom_directory" once chosen), with the defaults, the storage
// settings and quota, and the naming rules. Defaults and storage survive a
// restart. Encoders are the profile's; whether one is running comes from a
// hook the encoder family installs (all run until then).
#pragma once

#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "appliance.h"
#include "objects.h"
#include "sim_protocol.h"

namespace sim {

// SetFieldsFlag bits of a snapshot request and of the defaults (the simulator's choice).
enum SnapshotField : uint64_t {
  kSnapshotFormat = 0x1,
  kSnapshotQuality = 0x2,
  kSnapshotOverwrite = 0x4,
  kSnapshotWidth = 0x8,
  kSnapshotHeight = 0x10,
  kSnapshotPalette = 0x20,
};
// SetFieldsFlag bits of the storage settings.
enum SnapshotStorageField : uint64_t { kStorageLimit = 0x1, kStorageDevice = 0x2 };

class SnapshotModel {
 public:
  explicit SnapshotModel(Appliance& appliance);

  // Takes a still; *writtenName receives the base name written.
  SMGR_RESULT take(const SMGR_SNAPSHOT_CFG& cfg, std::string* writtenName);
  SMGR_RESULT remove(const std::string& name);
  SMGR_RESULT rename(const std::string& from, const std::string& to);
  unsigned removeAll();
  SMGR_SNAPSHOT_DEFAULTS defaults() const { return defaults_; }
  SMGR_RESULT setDefaults(const SMGR_SNAPSHOT_DEFAULTS& defaults);
  SMGR_RESULT setAdmin(const SMGR_SNAPSHOT_ADMIN_CFG& admin);
  SMGR_SNAPSHOT_ADMIN_INFO adminInfo() const;
  std::filesystem::path folder() const;

  void setEncoderRunning(std::function<bool(int id)> running) { running_ = std::move(running); }

  nlohmann::json save() const;
  void load(const nlohmann::json& section);

 private:
  SMGR_RESULT checkDefaults(const SMGR_SNAPSHOT_DEFAULTS& d, unsigned maxWidth, unsigned maxHeight) const;
  uint64_t usedBytes() const;

  Appliance& appliance_;
  SMGR_SNAPSHOT_DEFAULTS defaults_{};
  int maxKiloBytes_;
  int device_ = SMGR_SNAPSHOT_STORAGE_LOCAL;
  unsigned generated_ = 0;
  std::function<bool(int id)> running_;
};

}  // namespace sim
