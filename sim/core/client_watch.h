// Notices when client processes die. Each watched process gets a pidfd
// (pidfd_open), which poll reports readable the moment the process exits;
// where the kernel refuses pidfds (ENOSYS, EPERM, ...) the process is looked
// up in /proc every fallback interval instead.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <mutex>
#include <vector>

namespace sim {

// A process that exists and is not a zombie (the /proc check).
bool IsProcessAlive(pid_t pid);

class ClientWatch {
 public:
  // usePidfd false forces the /proc check (tests of the fallback).
  explicit ClientWatch(std::chrono::milliseconds fallbackInterval, bool usePidfd = true);
  ~ClientWatch();
  ClientWatch(const ClientWatch&) = delete;
  ClientWatch& operator=(const ClientWatch&) = delete;

  // Starts watching pid; false when it is already gone. A pid watched again keeps one watch.
  bool watch(pid_t pid);
  void unwatch(pid_t pid);
  // True when pid is watched through a pidfd (false: /proc fallback or not watched).
  bool watchedByPidfd(pid_t pid);
  // Waits until a watched process dies, wake() is called or the timeout passes;
  // returns the dead processes, which are no longer watched.
  std::vector<pid_t> waitForDeaths(std::chrono::milliseconds timeout);
  // Makes a waitForDeaths in progress return (to see new watches or to stop).
  void wake();

 private:
  std::mutex mutex_;
  std::map<pid_t, int> watched_;  // pid -> pidfd, -1 for the /proc fallback
  std::vector<int> retired_;      // pidfds of unwatched processes, closed by the next wait
  std::chrono::milliseconds fallbackInterval_;
  std::chrono::steady_clock::time_point nextFallbackCheck_;
  bool usePidfd_;
  int wakeFd_ = -1;  // eventfd
};

}  // namespace sim
