// Saved configurations: atomic snapshot files, loads that check the file
// before touching the unit, deletions that report errno, and the saved flag.
#include "config_store.h"

#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <system_error>

#include "persistence.h"
#include "sim_log.h"
#include "stream_model.h"

namespace sim {
namespace {

constexpr char kLibraryFolder[] = SMGR_CONFIG_FOLDER;

// Loaded after every other family: loading the start-up file at launch
// rebuilds them all, and nothing may load after that with an empty section.
const PersistedSection kConfigSection{
    "config", 1000, [](Appliance& appliance) { return appliance.family<ConfigStore>().saveSection(); },
    [](Appliance& appliance, const nlohmann::json& section) {
      appliance.family<ConfigStore>().loadSection(section);
    }};

bool StartsWith(const std::string& text, const std::string& prefix) {
  return text.compare(0, prefix.size(), prefix) == 0;
}

}  // namespace

ConfigStore::ConfigStore(Appliance& appliance) : appliance_(appliance) {
  const auto& document = appliance.profile().document;
  if (document.contains("config")) {
    saveMs_ = document["config"].value("save_ms", saveMs_);
    loadMs_ = document["config"].value("load_ms", loadMs_);
  }
  markSaved();
}

bool ConfigStore::resolve(const std::string& requested, std::filesystem::path* file) const {
  if (requested.empty()) {
    *file = folder() / kStartupName;
    return true;
  }
  std::string name;
  const std::string ownFolder = folder().string() + "/";
  if (StartsWith(requested, kLibraryFolder))
    name = requested.substr(sizeof kLibraryFolder - 1);
  else if (StartsWith(requested, ownFolder))
    name = requested.substr(ownFolder.size());
  else
    return false;
  if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) return false;
  *file = folder() / name;
  return true;
}

SMGR_RESULT ConfigStore::writeSnapshot(const std::filesystem::path& file) {
  std::error_code ignored;
  std::filesystem::create_directories(folder(), ignored);
  std::string error;
  writing_ = true;
  const nlohmann::json snapshot = SnapshotAppliance(appliance_);
  writing_ = false;
  if (!WriteJsonAtomically(file.string(), snapshot, &error)) {
    SIM_LOG_ERROR("cannot save the configuration: %s", error.c_str());
    return SMGR_ERROR_GENERIC_FAILURE;
  }
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT ConfigStore::save(const std::string& requested, int startupMode) {
  std::filesystem::path file;
  if (!resolve(requested, &file)) return SMGR_ERROR_INVALID_FILENAME_PATH;
  if (SMGR_RESULT result = writeSnapshot(file); result != SMGR_ERROR_SUCCESS) return result;
  if (startupMode == kStartupModeMakesStartup && file.filename() != kStartupName) {
    if (SMGR_RESULT result = writeSnapshot(folder() / kStartupName); result != SMGR_ERROR_SUCCESS)
      return result;
  }
  markSaved();
  SIM_LOG_INFO("configuration saved to %s", file.c_str());
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT ConfigStore::restoreFile(const std::filesystem::path& file, bool startup) {
  std::ifstream in(file);
  if (!in) return startup ? SMGR_ERROR_NO_STARTUP_CONFIG_FILE : SMGR_ERROR_NO_MATCHING_CONFIG_FILE;
  const nlohmann::json snapshot = nlohmann::json::parse(in, nullptr, false);
  if (snapshot.is_discarded() || !snapshot.is_object()) return SMGR_ERROR_INVALID_CONFIG_FILE;
  restoringFile_ = true;  // the file's own "config" part does not change the store
  try {
    RestoreAppliance(appliance_, snapshot);
  } catch (const nlohmann::json::exception& error) {
    restoringFile_ = false;
    SIM_LOG_ERROR("configuration %s is damaged: %s", file.c_str(), error.what());
    return SMGR_ERROR_INVALID_CONFIG_FILE;
  }
  restoringFile_ = false;
  // Auto-start streams start as at power-up; one without its content sources is a warning.
  const SMGR_RESULT started = appliance_.family<StreamModel>().startAutoStartStreams();
  appliance_.persist();
  markSaved();
  SIM_LOG_INFO("configuration loaded from %s", file.c_str());
  return started;
}

SMGR_RESULT ConfigStore::load(const std::string& requested) {
  std::filesystem::path file;
  if (!resolve(requested, &file)) return SMGR_ERROR_INVALID_FILENAME_PATH;
  return restoreFile(file, file.filename() == kStartupName);
}

SMGR_RESULT ConfigStore::remove(const std::string& requested, int* error) {
  std::filesystem::path file;
  *error = 0;
  if (!resolve(requested, &file)) return SMGR_ERROR_INVALID_FILENAME_PATH;
  if (::unlink(file.c_str()) == 0) return SMGR_ERROR_SUCCESS;
  *error = errno;
  return errno == ENOENT ? SMGR_ERROR_NO_MATCHING_CONFIG_FILE : SMGR_ERROR_GENERIC_FAILURE;
}

SMGR_RESULT ConfigStore::removeAll(uint32_t* deleted, int* error) {
  *deleted = 0;
  *error = 0;
  std::error_code code;
  for (const auto& entry : std::filesystem::directory_iterator(folder(), code)) {
    const auto& path = entry.path();
    if (path.extension() != ".cfg" || path.filename() == kStartupName) continue;
    if (::unlink(path.c_str()) != 0) {
      *error = errno;
      return SMGR_ERROR_GENERIC_FAILURE;
    }
    ++*deleted;
  }
  return SMGR_ERROR_SUCCESS;  // a missing folder holds nothing to delete
}

bool ConfigStore::isSaved() { return savedAtChange_ == appliance_.changeCount(); }

void ConfigStore::setAutoSave(bool enabled) {
  autoSave_ = enabled;
  appliance_.persist();
  markSaved();  // the switch itself is no change of the unit's configuration
  catchUpAutoSave();
}

void ConfigStore::catchUpAutoSave() {
  if (!autoSave_ || isSaved()) return;
  if (writeSnapshot(folder() / kStartupName) == SMGR_ERROR_SUCCESS) markSaved();
}

nlohmann::json ConfigStore::saveSection() {
  if (!writing_) catchUpAutoSave();
  return {{"auto_save", autoSave_}};
}

void ConfigStore::loadSection(const nlohmann::json& section) {
  if (restoringFile_) return;
  if (section.is_object()) {
    autoSave_ = section.value("auto_save", false);
    return;
  }
  // Launched without persisted state: the unit comes up as its start-up file says.
  autoSave_ = false;
  const std::filesystem::path startup = folder() / kStartupName;
  if (std::filesystem::exists(startup)) restoreFile(startup, true);
}

}  // namespace sim
