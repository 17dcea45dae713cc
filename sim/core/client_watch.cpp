// Client death detection: pidfds polled together with an eventfd that wakes
// the waiter, and the /proc check for processes the kernel gives no pidfd for.
#include "client_watch.h"

#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <string>

#include "sim_log.h"

namespace sim {
namespace {

int OpenPidfd(pid_t pid) {
#ifdef SYS_pidfd_open
  return static_cast<int>(syscall(SYS_pidfd_open, pid, 0));  // close-on-exec by definition
#else
  (void)pid;
  errno = ENOSYS;
  return -1;
#endif
}

}  // namespace

bool IsProcessAlive(pid_t pid) {
  if (pid <= 0) return false;
  if (kill(pid, 0) != 0 && errno != EPERM) return false;
  std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
  std::string line;
  if (!std::getline(stat, line)) return true;
  size_t paren = line.rfind(')');
  if (paren == std::string::npos || paren + 2 >= line.size()) return true;
  char state = line[paren + 2];
  return state != 'Z' && state != 'X';
}

ClientWatch::ClientWatch(std::chrono::milliseconds fallbackInterval, bool usePidfd)
    : fallbackInterval_(fallbackInterval),
      nextFallbackCheck_(std::chrono::steady_clock::now() + fallbackInterval),
      usePidfd_(usePidfd),
      wakeFd_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

ClientWatch::~ClientWatch() {
  for (auto& [pid, fd] : watched_) {
    if (fd >= 0) close(fd);
  }
  for (int fd : retired_) close(fd);
  if (wakeFd_ >= 0) close(wakeFd_);
}

bool ClientWatch::watch(pid_t pid) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (watched_.count(pid)) return true;
  int fd = -1;
  if (usePidfd_) {
    fd = OpenPidfd(pid);
    if (fd < 0 && errno == ESRCH) return false;
    if (fd < 0)
      SIM_LOG_DEBUG("no pidfd for pid %u (%s), looking for it in /proc", static_cast<unsigned>(pid),
                    strerror(errno));
  }
  // With a pidfd the process cannot be replaced by another of the same PID any more.
  if (!IsProcessAlive(pid)) {
    if (fd >= 0) close(fd);
    return false;
  }
  watched_[pid] = fd;
  wake();
  return true;
}

void ClientWatch::unwatch(pid_t pid) {
  std::lock_guard<std::mutex> lock(mutex_);
  auto it = watched_.find(pid);
  if (it == watched_.end()) return;
  // A wait in progress may be polling this descriptor: closed by the next wait.
  if (it->second >= 0) retired_.push_back(it->second);
  watched_.erase(it);
  wake();
}

bool ClientWatch::watchedByPidfd(pid_t pid) {
  std::lock_guard<std::mutex> lock(mutex_);
  auto it = watched_.find(pid);
  return it != watched_.end() && it->second >= 0;
}

void ClientWatch::wake() {
  const uint64_t one = 1;
  if (wakeFd_ >= 0) (void)!write(wakeFd_, &one, sizeof one);
}

std::vector<pid_t> ClientWatch::waitForDeaths(std::chrono::milliseconds timeout) {
  using std::chrono::milliseconds;
  std::vector<pollfd> fds{{wakeFd_, POLLIN, 0}};
  std::vector<pid_t> pids{0};
  bool fallback = false;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    for (int fd : retired_) close(fd);
    retired_.clear();
    for (auto& [pid, fd] : watched_) {
      if (fd < 0) {
        fallback = true;
        continue;
      }
      fds.push_back({fd, POLLIN, 0});
      pids.push_back(pid);
    }
    if (fallback) {
      // Rounded up: a wait that ends before the check is due would only spin.
      auto untilCheck =
          std::chrono::ceil<milliseconds>(nextFallbackCheck_ - std::chrono::steady_clock::now());
      timeout = std::clamp(untilCheck, milliseconds(0), timeout);
    }
  }

  std::vector<pid_t> dead;
  if (poll(fds.data(), fds.size(), static_cast<int>(timeout.count())) > 0) {
    uint64_t count;
    if (fds[0].revents) (void)!read(wakeFd_, &count, sizeof count);
    for (size_t i = 1; i < fds.size(); ++i) {
      if (fds[i].revents) dead.push_back(pids[i]);
    }
  }

  std::lock_guard<std::mutex> lock(mutex_);
  // Only deaths of processes still watched by the descriptor that was polled.
  dead.erase(std::remove_if(dead.begin(), dead.end(),
                            [&](pid_t pid) {
                              auto it = watched_.find(pid);
                              auto polled = std::find(pids.begin(), pids.end(), pid);
                              return it == watched_.end() || it->second != fds[polled - pids.begin()].fd;
                            }),
             dead.end());
  const auto now = std::chrono::steady_clock::now();
  if (fallback && now >= nextFallbackCheck_) {
    nextFallbackCheck_ = now + fallbackInterval_;
    for (auto& [pid, fd] : watched_) {
      if (fd < 0 && !IsProcessAlive(pid)) dead.push_back(pid);
    }
  }
  for (pid_t pid : dead) {
    auto it = watched_.find(pid);
    if (it->second >= 0) close(it->second);  // no wait is polling it now
    watched_.erase(it);
  }
  return dead;
}

}  // namespace sim
