// The simulated appliance: profile, clock, state folder, the catalogue of
// content sources that streams draw from, and one state object per family.
// Families keep their own state here without the appliance knowing their types.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <typeindex>

#include "profile.h"

namespace sim {

// Monotonic milliseconds; tests drive a ManualClock.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual int64_t nowMs() = 0;
};

class SteadyClock : public Clock {
 public:
  int64_t nowMs() override {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
  }
};

class ManualClock : public Clock {
 public:
  int64_t nowMs() override { return now_; }
  void advanceMs(int64_t ms) { now_ += ms; }

 private:
  int64_t now_ = 1000000;
};

// Kinds of content source, as the stream configuration numbers them.
enum ContentKind : int { kContentVideo = 1, kContentAudio = 2, kContentData = 4 };

struct ContentSourceRef {
  int id = 0;
  std::string name;
  int bitRateKbps = 0;
  bool started = true;  // a stream started on an unstarted source gets a warning
};

// Finds content sources by ID or name. The profile's objects answer by default;
// a family that models a kind (video encoders, metadata sources) installs its own lookup.
class ContentSourceCatalog {
 public:
  using Lookup = std::function<std::optional<ContentSourceRef>(int id, const std::string* name)>;

  explicit ContentSourceCatalog(const ApplianceProfile& profile);
  void setLookup(ContentKind kind, Lookup lookup);
  std::optional<ContentSourceRef> findById(ContentKind kind, int id) const;
  std::optional<ContentSourceRef> findByName(ContentKind kind, const std::string& name) const;

 private:
  std::map<int, Lookup> lookups_;
};

class Appliance {
 public:
  Appliance(ApplianceProfile profile, std::shared_ptr<Clock> clock, std::filesystem::path stateDir);

  const ApplianceProfile& profile() const { return profile_; }
  Clock& clock() { return *clock_; }
  int64_t nowMs() { return clock_->nowMs(); }
  const std::filesystem::path& stateDir() const { return stateDir_; }
  std::filesystem::path stillImageDir() const { return stateDir_ / "still_images"; }
  ContentSourceCatalog& sources() { return sources_; }

  // The family state of type T, made on first use as T(Appliance&).
  template <typename T>
  T& family() {
    auto it = families_.find(std::type_index(typeid(T)));
    if (it == families_.end()) {
      it = families_.emplace(std::type_index(typeid(T)), std::make_shared<T>(*this)).first;
    }
    return *std::static_pointer_cast<T>(it->second);
  }

  // Debug state set through the diagnostics family.
  int debugState = 0;

  // Persistence (persistence.h). With persistence enabled, persist() writes every
  // family's section to <state-dir>/appliance.json atomically; families call it
  // after a change they answered as done. restore() runs once at start: every
  // section's load runs, with its saved part or null (then the family sets up its
  // defaults, e.g. installs its content-source lookup); false when no file was loaded.
  void enablePersistence(bool enabled) { persistenceEnabled_ = enabled; }
  bool persistenceEnabled() const { return persistenceEnabled_; }
  std::filesystem::path stateFile() const { return stateDir_ / "appliance.json"; }
  void persist();
  bool restore(std::string* error);
  // Bumped by every persist(): families and the configuration store see changes.
  uint64_t changeCount() const { return changeCount_; }

 private:
  ApplianceProfile profile_;
  std::shared_ptr<Clock> clock_;
  std::filesystem::path stateDir_;
  ContentSourceCatalog sources_;
  std::map<std::type_index, std::shared_ptr<void>> families_;
  bool persistenceEnabled_ = false;
  bool restoring_ = false;
  uint64_t changeCount_ = 0;
};

}  // namespace sim
