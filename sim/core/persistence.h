// What the simulated appliance keeps across a restart, and what goes when a
// client goes. Each family registers, from a static object in its own folder:
//   - a PersistedSection: how its part of the appliance state (the objects the
//     real daemon keeps across a restart) becomes JSON and comes back;
//   - a ClientDepartureHook: what it drops when a client disconnects or dies
//     (opens, subscriptions, per-client state).
// The appliance writes every section to <state-dir>/appliance.json atomically
// (temporary file, fsync, rename) whenever a family calls
// Appliance::persist() after a change it answered as done; saved
// configurations use the same sections (Snapshot/Restore).
#pragma once

#include <sys/types.h>

#include <functional>
#include <nlohmann/json.hpp>
#include <string>

namespace sim {

class Appliance;

struct PersistedSection {
  using SaveFn = std::function<nlohmann::json(Appliance&)>;
  // Rebuilds the family from its section. Runs once when the simulator starts,
  // with null when nothing was saved (the family sets up its defaults then, and
  // installs whatever it hooks into, e.g. a content-source lookup); runs again
  // when a saved configuration is loaded.
  using LoadFn = std::function<void(Appliance&, const nlohmann::json&)>;
  // Load order: lower first (e.g. encoders before the streams that use them).
  PersistedSection(const char* name, int order, SaveFn save, LoadFn load);
};

struct ClientDepartureHook {
  using DepartFn = std::function<void(Appliance&, pid_t pid)>;
  ClientDepartureHook(const char* family, DepartFn depart);
};

// Every registered section's state, keyed by section name.
nlohmann::json SnapshotAppliance(Appliance& appliance);
// Rebuilds every registered section from a snapshot, in section order.
void RestoreAppliance(Appliance& appliance, const nlohmann::json& snapshot);
// Writes a snapshot to path atomically (temporary file beside it, fsync, rename,
// fsync of the folder); false with *error set on failure.
bool WriteJsonAtomically(const std::string& path, const nlohmann::json& value, std::string* error);
// Tells every family that the client with this PID is gone.
void NotifyClientDeparture(Appliance& appliance, pid_t pid);

}  // namespace sim
