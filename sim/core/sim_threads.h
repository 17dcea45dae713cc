// The simulator's own threads and mutexes, instrumented so that the
// diagnostics family can report them as the daemon reports its own: every
// thread started through StartThread and every TrackedMutex is registered.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace sim {

// Where something happened. SourceLocation is not usable with every
// compiler this tree builds with, the builtins are.
class SourceLocation {
 public:
  static constexpr SourceLocation current(const char* file = __builtin_FILE(), int line = __builtin_LINE(),
                                          const char* function = __builtin_FUNCTION()) {
    return SourceLocation(file, line, function);
  }
  constexpr const char* file_name() const { return file_; }
  constexpr int line() const { return line_; }
  constexpr const char* function_name() const { return function_; }

 private:
  constexpr SourceLocation(const char* file, int line, const char* function)
      : file_(file), line_(line), function_(function) {}
  const char* file_;
  int line_;
  const char* function_;
};

// ---- Threads ---------------------------------------------------------------

// What a registered thread is doing, as reported in the thread list.
enum ThreadState : int { kThreadWaiting = 0, kThreadBusy = 1 };

struct ThreadSnapshot {
  int tid = 0;
  int scheduler = 0;  // SCHED_OTHER, SCHED_FIFO, ...
  int priority = 0;
  std::string name;
  std::string fileName;
  std::string functionName;
  int state = kThreadWaiting;
  uint64_t iterations = 0;
  uint64_t iterationsDelta = 0;
  uint64_t stateChanges = 0;
  uint64_t stateChangesDelta = 0;
  uint64_t lineNumber = 0;
  int64_t lastChange = 0;  // time_t of the last state change
  uint64_t stuckCount = 0;
  uint32_t lastStuckUpTime = 0;
};

// Per-thread bookkeeping; a thread reaches its own record through CurrentThread().
struct ThreadRecord {
  void beat(SourceLocation where = SourceLocation::current());
  void setState(ThreadState state);

  std::string name_;
  std::string file_;
  std::string function_;
  std::atomic<int> tid_{0};
  std::atomic<int> state_{kThreadWaiting};
  std::atomic<uint64_t> iterations_{0};
  std::atomic<uint64_t> stateChanges_{0};
  std::atomic<uint64_t> line_{0};
  std::atomic<int64_t> lastChange_{0};
  uint64_t reportedIterations_ = 0;
  uint64_t reportedStateChanges_ = 0;
};

// Registers the calling thread (the main thread calls this once at start).
ThreadRecord& RegisterCurrentThread(const char* name, SourceLocation where = SourceLocation::current());
// The calling thread's record, or nullptr for an unregistered thread.
ThreadRecord* CurrentThread();
void UnregisterCurrentThread();

// Starts a named, registered thread (the kernel name is set too, so ps shows it).
std::thread StartThread(const char* name, std::function<void()> body,
                        SourceLocation where = SourceLocation::current());

// Every task of this process (read from /proc/self/task), enriched with the
// registry's counters for registered threads. Deltas count since the previous call.
std::vector<ThreadSnapshot> SnapshotThreads();

// ---- Mutexes ---------------------------------------------------------------

struct MutexSnapshot {
  std::string creationFile;
  int creationLine = 0;
  int inLockCount = 0;
  uint64_t acquired = 0;
  uint64_t released = 0;
  uint64_t acquiredDelta = 0;
  int ownerTid = 0;
  std::string ownerName;
  std::string function;  // where it was last taken
  std::string file;
  int line = 0;
};

class TrackedMutex {
 public:
  explicit TrackedMutex(SourceLocation created = SourceLocation::current());
  ~TrackedMutex();
  TrackedMutex(const TrackedMutex&) = delete;
  TrackedMutex& operator=(const TrackedMutex&) = delete;

  void lock(SourceLocation where = SourceLocation::current());
  void unlock();

  MutexSnapshot snapshot();

 private:
  std::mutex mutex_;
  std::mutex infoMutex_;  // guards the fields below against snapshot readers
  std::string creationFile_;
  int creationLine_;
  bool locked_ = false;
  uint64_t acquired_ = 0;
  uint64_t released_ = 0;
  uint64_t reportedAcquired_ = 0;
  int ownerTid_ = 0;
  std::string ownerName_;
  const char* function_ = "";
  const char* file_ = "";
  int line_ = 0;
};

// RAII guard that records where the lock was taken.
class TrackedLock {
 public:
  explicit TrackedLock(TrackedMutex& mutex, SourceLocation where = SourceLocation::current())
      : mutex_(mutex) {
    mutex_.lock(where);
  }
  ~TrackedLock() { mutex_.unlock(); }
  TrackedLock(const TrackedLock&) = delete;
  TrackedLock& operator=(const TrackedLock&) = delete;

 private:
  TrackedMutex& mutex_;
};

std::vector<MutexSnapshot> SnapshotMutexes();

}  // namespace sim
