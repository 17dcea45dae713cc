// The configuration store of the simulated appliance: saved configurations
// are snapshots of every family's persisted section, kept as JSON files in
// <state-dir>/config/ (the appliance's configuration folder), with the
// start-up one, the "saved since the last change" flag and auto-save.
#pragma once

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "appliance.h"
#include "sessmgr/sm_config.h"
#include "sim_protocol.h"

namespace sim {

class ConfigStore {
 public:
  static constexpr const char* kStartupName = "qelstartup.cfg";
  static constexpr int kStartupModeMakesStartup = 1;

  explicit ConfigStore(Appliance& appliance);

  std::filesystem::path folder() const { return appliance_.stateDir() / "config"; }
  // The file a request names: a full path in the appliance's configuration
  // folder (the library's or this state folder's), "" for the start-up one.
  // False (209) for any other place.
  bool resolve(const std::string& requested, std::filesystem::path* file) const;

  SMGR_RESULT save(const std::string& requested, int startupMode);
  SMGR_RESULT load(const std::string& requested);
  SMGR_RESULT remove(const std::string& requested, int* error);
  SMGR_RESULT removeAll(uint32_t* deleted, int* error);
  bool isSaved();
  void setAutoSave(bool enabled);
  bool autoSave() const { return autoSave_; }
  // Rewrites the start-up file when auto-save is on and the unit changed since.
  void catchUpAutoSave();

  // Progress durations of save and load (profile "config": save_ms, load_ms).
  int saveMs() const { return saveMs_; }
  int loadMs() const { return loadMs_; }

  // The store's own persisted section (auto-save); loaded last. Taken at every
  // persisted change, so auto-save rewrites the start-up file right then.
  nlohmann::json saveSection();
  void loadSection(const nlohmann::json& section);

 private:
  SMGR_RESULT writeSnapshot(const std::filesystem::path& file);
  SMGR_RESULT restoreFile(const std::filesystem::path& file, bool startup);
  void markSaved() { savedAtChange_ = appliance_.changeCount(); }

  Appliance& appliance_;
  uint64_t savedAtChange_ = 0;
  bool autoSave_ = false;
  bool restoringFile_ = false;
  bool writing_ = false;  // taking a snapshot for a file
  int saveMs_ = 300;
  int loadMs_ = 1200;
};

}  // namespace sim
