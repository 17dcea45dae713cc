// The registries of persisted sections and client-departure hooks, and the
// atomic JSON write that every persisted file goes through.
#include "persistence.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <vector>

#include "appliance.h"
#include "sim_log.h"

namespace sim {
namespace {

struct Section {
  std::string name;
  int order;
  PersistedSection::SaveFn save;
  PersistedSection::LoadFn load;
};

std::vector<Section>& Sections() {
  static std::vector<Section> sections;
  return sections;
}

std::vector<ClientDepartureHook::DepartFn>& DepartureHooks() {
  static std::vector<ClientDepartureHook::DepartFn> hooks;
  return hooks;
}

bool WriteAll(int fd, const std::string& text) {
  size_t done = 0;
  while (done < text.size()) {
    ssize_t n = write(fd, text.data() + done, text.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += static_cast<size_t>(n);
  }
  return true;
}

}  // namespace

PersistedSection::PersistedSection(const char* name, int order, SaveFn save, LoadFn load) {
  Sections().push_back({name, order, std::move(save), std::move(load)});
}

ClientDepartureHook::ClientDepartureHook(const char*, DepartFn depart) {
  DepartureHooks().push_back(std::move(depart));
}

nlohmann::json SnapshotAppliance(Appliance& appliance) {
  nlohmann::json snapshot = nlohmann::json::object();
  for (const Section& section : Sections()) snapshot[section.name] = section.save(appliance);
  return snapshot;
}

void RestoreAppliance(Appliance& appliance, const nlohmann::json& snapshot) {
  std::vector<const Section*> ordered;
  for (const Section& section : Sections()) ordered.push_back(&section);
  std::stable_sort(ordered.begin(), ordered.end(),
                   [](const Section* a, const Section* b) { return a->order < b->order; });
  for (const Section* section : ordered) {
    const bool present = snapshot.is_object() && snapshot.contains(section->name);
    try {
      section->load(appliance, present ? snapshot.at(section->name) : nlohmann::json());
    } catch (const std::exception& e) {
      // A section the family cannot read (an edited file, an older layout) starts from its defaults.
      SIM_LOG_ERROR("saved section \"%s\" cannot be loaded (%s), starting it empty", section->name.c_str(),
                    e.what());
      section->load(appliance, nlohmann::json());
    }
  }
}

bool WriteJsonAtomically(const std::string& path, const nlohmann::json& value, std::string* error) {
  const std::string temporary = path + ".tmp." + std::to_string(getpid());
  const std::string text = value.dump(2) + "\n";
  int fd = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) {
    if (error) *error = temporary + ": " + strerror(errno);
    return false;
  }
  bool ok = WriteAll(fd, text) && fsync(fd) == 0;
  int savedErrno = errno;
  ok = (close(fd) == 0) && ok;
  if (ok && rename(temporary.c_str(), path.c_str()) != 0) {
    savedErrno = errno;
    ok = false;
  }
  if (!ok) {
    unlink(temporary.c_str());
    if (error) *error = path + ": " + strerror(savedErrno);
    return false;
  }
  // The rename itself must reach the disk too.
  std::string folder = std::filesystem::path(path).parent_path().string();
  int dirFd = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (dirFd >= 0) {
    fsync(dirFd);
    close(dirFd);
  }
  return true;
}

void NotifyClientDeparture(Appliance& appliance, pid_t pid) {
  for (const auto& depart : DepartureHooks()) depart(appliance, pid);
}

}  // namespace sim
