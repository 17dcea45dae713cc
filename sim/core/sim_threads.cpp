// Registry of the simulator's threads and mutexes, and the snapshots that the
// diagnostics family turns into thread and mutex records.
#include "sim_threads.h"

#include <dirent.h>
#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>

namespace sim {
namespace {

int CurrentTid() { return static_cast<int>(syscall(SYS_gettid)); }

std::string BaseName(const char* path) { return std::filesystem::path(path ? path : "").filename().string(); }

struct ThreadTable {
  std::mutex mutex;
  std::vector<std::shared_ptr<ThreadRecord>> records;
};
ThreadTable& Threads() {
  static ThreadTable table;
  return table;
}

thread_local std::shared_ptr<ThreadRecord> t_current;

struct MutexTable {
  std::mutex mutex;
  std::vector<TrackedMutex*> mutexes;
};
MutexTable& Mutexes() {
  static MutexTable table;
  return table;
}

std::string ReadComm(int tid) {
  std::ifstream in("/proc/self/task/" + std::to_string(tid) + "/comm");
  std::string name;
  std::getline(in, name);
  return name;
}

}  // namespace

void ThreadRecord::beat(SourceLocation where) {
  iterations_.fetch_add(1, std::memory_order_relaxed);
  line_.store(where.line(), std::memory_order_relaxed);
}

void ThreadRecord::setState(ThreadState state) {
  if (state_.exchange(state) != state) {
    stateChanges_.fetch_add(1, std::memory_order_relaxed);
    lastChange_.store(time(nullptr), std::memory_order_relaxed);
  }
}

ThreadRecord& RegisterCurrentThread(const char* name, SourceLocation where) {
  auto record = std::make_shared<ThreadRecord>();
  record->name_ = name;
  record->file_ = BaseName(where.file_name());
  record->function_ = where.function_name();
  record->tid_ = CurrentTid();
  record->line_ = where.line();
  record->lastChange_ = time(nullptr);
  pthread_setname_np(pthread_self(), std::string(name).substr(0, 15).c_str());
  {
    std::lock_guard<std::mutex> lock(Threads().mutex);
    Threads().records.push_back(record);
  }
  t_current = record;
  return *record;
}

ThreadRecord* CurrentThread() { return t_current.get(); }

void UnregisterCurrentThread() {
  if (!t_current) return;
  std::lock_guard<std::mutex> lock(Threads().mutex);
  auto& records = Threads().records;
  records.erase(std::remove(records.begin(), records.end(), t_current), records.end());
  t_current.reset();
}

std::thread StartThread(const char* name, std::function<void()> body, SourceLocation where) {
  std::string threadName = name;
  return std::thread([threadName, body = std::move(body), where] {
    RegisterCurrentThread(threadName.c_str(), where);
    body();
    UnregisterCurrentThread();
  });
}

std::vector<ThreadSnapshot> SnapshotThreads() {
  std::vector<int> tids;
  if (DIR* dir = opendir("/proc/self/task")) {
    while (dirent* entry = readdir(dir)) {
      if (entry->d_name[0] != '.') tids.push_back(atoi(entry->d_name));
    }
    closedir(dir);
  }
  std::sort(tids.begin(), tids.end());

  std::lock_guard<std::mutex> lock(Threads().mutex);
  std::vector<ThreadSnapshot> out;
  for (int tid : tids) {
    ThreadSnapshot snap;
    snap.tid = tid;
    snap.scheduler = sched_getscheduler(tid);
    if (snap.scheduler == SCHED_OTHER || snap.scheduler == SCHED_BATCH || snap.scheduler == SCHED_IDLE) {
      errno = 0;
      snap.priority = getpriority(PRIO_PROCESS, static_cast<id_t>(tid));
    } else {
      sched_param param{};
      sched_getparam(tid, &param);
      snap.priority = param.sched_priority;
    }
    snap.name = ReadComm(tid);
    for (auto& record : Threads().records) {
      if (record->tid_ != tid) continue;
      snap.name = record->name_;
      snap.fileName = record->file_;
      snap.functionName = record->function_;
      snap.state = record->state_;
      snap.iterations = record->iterations_;
      snap.iterationsDelta = snap.iterations - record->reportedIterations_;
      record->reportedIterations_ = snap.iterations;
      snap.stateChanges = record->stateChanges_;
      snap.stateChangesDelta = snap.stateChanges - record->reportedStateChanges_;
      record->reportedStateChanges_ = snap.stateChanges;
      snap.lineNumber = record->line_;
      snap.lastChange = record->lastChange_;
      break;
    }
    out.push_back(std::move(snap));
  }
  return out;
}

TrackedMutex::TrackedMutex(SourceLocation created)
    : creationFile_(BaseName(created.file_name())), creationLine_(static_cast<int>(created.line())) {
  std::lock_guard<std::mutex> lock(Mutexes().mutex);
  Mutexes().mutexes.push_back(this);
}

TrackedMutex::~TrackedMutex() {
  std::lock_guard<std::mutex> lock(Mutexes().mutex);
  auto& list = Mutexes().mutexes;
  list.erase(std::remove(list.begin(), list.end(), this), list.end());
}

void TrackedMutex::lock(SourceLocation where) {
  mutex_.lock();
  std::lock_guard<std::mutex> info(infoMutex_);
  locked_ = true;
  ++acquired_;
  ownerTid_ = CurrentTid();
  ThreadRecord* self = CurrentThread();
  ownerName_ = self ? self->name_ : ReadComm(ownerTid_);
  function_ = where.function_name();
  file_ = where.file_name();
  line_ = static_cast<int>(where.line());
}

void TrackedMutex::unlock() {
  {
    std::lock_guard<std::mutex> info(infoMutex_);
    locked_ = false;
    ++released_;
    ownerTid_ = 0;
  }
  mutex_.unlock();
}

MutexSnapshot TrackedMutex::snapshot() {
  std::lock_guard<std::mutex> info(infoMutex_);
  MutexSnapshot snap;
  snap.creationFile = creationFile_;
  snap.creationLine = creationLine_;
  snap.inLockCount = locked_ ? 1 : 0;
  snap.acquired = acquired_;
  snap.released = released_;
  snap.acquiredDelta = acquired_ - reportedAcquired_;
  reportedAcquired_ = acquired_;
  snap.ownerTid = ownerTid_;
  snap.ownerName = locked_ ? ownerName_ : "";
  snap.function = function_;
  snap.file = BaseName(file_);
  snap.line = line_;
  return snap;
}

std::vector<MutexSnapshot> SnapshotMutexes() {
  std::lock_guard<std::mutex> lock(Mutexes().mutex);
  std::vector<MutexSnapshot> out;
  for (TrackedMutex* mutex : Mutexes().mutexes) out.push_back(mutex->snapshot());
  return out;
}

}  // namespace sim
