// The appliance container and the default content-source catalogue drawn from
// the profile.
#include "appliance.h"

#include <fstream>
#include <system_error>

#include "persistence.h"
#include "sim_log.h"

namespace sim {
namespace {

ContentSourceCatalog::Lookup ProfileLookup(std::vector<ProfileObject> objects) {
  return [objects = std::move(objects)](int id, const std::string* name) -> std::optional<ContentSourceRef> {
    for (const auto& object : objects) {
      if (name ? object.name == *name : object.id == id) {
        return ContentSourceRef{object.id, object.name, object.bitRateKbps, true};
      }
    }
    return std::nullopt;
  };
}

}  // namespace

ContentSourceCatalog::ContentSourceCatalog(const ApplianceProfile& profile) {
  lookups_[kContentVideo] = ProfileLookup(profile.videoEncoders);
  lookups_[kContentAudio] = ProfileLookup(profile.audioEncoders);
  lookups_[kContentData] = ProfileLookup(profile.metadataSources);
}

void ContentSourceCatalog::setLookup(ContentKind kind, Lookup lookup) { lookups_[kind] = std::move(lookup); }

std::optional<ContentSourceRef> ContentSourceCatalog::findById(ContentKind kind, int id) const {
  auto it = lookups_.find(kind);
  if (it == lookups_.end()) return std::nullopt;
  return it->second(id, nullptr);
}

std::optional<ContentSourceRef> ContentSourceCatalog::findByName(ContentKind kind,
                                                                 const std::string& name) const {
  auto it = lookups_.find(kind);
  if (it == lookups_.end()) return std::nullopt;
  return it->second(0, &name);
}

Appliance::Appliance(ApplianceProfile profile, std::shared_ptr<Clock> clock, std::filesystem::path stateDir)
    : profile_(std::move(profile)),
      clock_(std::move(clock)),
      stateDir_(std::move(stateDir)),
      sources_(profile_) {
  std::error_code ignored;
  std::filesystem::create_directories(stillImageDir(), ignored);
}

void Appliance::persist() {
  ++changeCount_;
  if (!persistenceEnabled_ || restoring_) return;
  std::string error;
  if (!WriteJsonAtomically(stateFile().string(), SnapshotAppliance(*this), &error))
    SIM_LOG_ERROR("cannot persist the appliance state: %s", error.c_str());
}

bool Appliance::restore(std::string* error) {
  nlohmann::json snapshot = nlohmann::json::object();
  bool loaded = false;
  if (std::ifstream in(stateFile()); in) {
    snapshot = nlohmann::json::parse(in, nullptr, false);
    loaded = !snapshot.is_discarded() && snapshot.is_object();
    if (!loaded) {
      if (error) *error = stateFile().string() + ": not a JSON object";
      snapshot = nlohmann::json::object();
    }
  } else if (error) {
    *error = stateFile().string() + ": no saved state";
  }
  restoring_ = true;  // loads must not write the file they are reading
  RestoreAppliance(*this, snapshot);
  restoring_ = false;
  return loaded;
}

}  // namespace sim
