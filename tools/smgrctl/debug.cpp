// smgrctl debug commands: the daemon's own diagnostics (information, threads, mutexes).
#include <CLI/CLI.hpp>
#include <cstring>
#include <iostream>

#include "commands.h"
#include "output.h"
#include "paging.h"

namespace smgrctl {
namespace {

using nlohmann::json;

// The daemon's thread states: 0 waits for work, 1 works on it; others as numbers.
std::string ThreadStateName(int state) {
  switch (state) {
    case 0:
      return "WAITING";
    case 1:
      return "BUSY";
    default:
      return "STATE " + std::to_string(state);
  }
}

std::string Bounded(const char* text, size_t size) { return std::string(text, strnlen(text, size)); }

const char* SchedulerName(int scheduler) {
  switch (scheduler) {
    case 0:
      return "OTHER";
    case 1:
      return "FIFO";
    case 2:
      return "RR";
    case 3:
      return "BATCH";
    case 5:
      return "IDLE";
    default:
      return "?";
  }
}

int RunInfo() {
  if (!Connect()) return 1;
  SMGR_DEBUG_INFO info{};
  info.nSize = sizeof info;
  if (!SessMgr_GetDebugInfo(&info)) return Fail("debug info");
  if (Globals().json) {
    PrintJson({{"pid", info.iPID}, {"watchdog", info.bWatchdogEnabled != 0}, {"debug_state", info.enState}});
    return 0;
  }
  Table table({"FIELD", "VALUE"});
  table.add({"Daemon PID", std::to_string(info.iPID)});
  table.add({"Watchdog", info.bWatchdogEnabled ? "enabled" : "disabled"});
  table.add({"Debug state", std::to_string(info.enState)});
  std::cout << table.render();
  return 0;
}

int RunThreads() {
  if (!Connect()) return 1;
  std::vector<SMGR_THREAD_INFO> threads;
  if (!CollectPages<SMGR_THREAD_INFO>(SessMgr_EnumerateThreads, &threads)) return Fail("debug threads");
  json array = json::array();
  Table table({"TID", "NAME", "SCHED", "PRIO", "STATE", "ITERATIONS", "DELTA", "FUNCTION", "FILE"});
  for (const char* column : {"TID", "PRIO", "ITERATIONS", "DELTA"}) table.alignRight(column);
  for (const SMGR_THREAD_INFO& thread : threads) {
    const std::string name = Bounded(thread.szName, sizeof thread.szName);
    const std::string function = Bounded(thread.szFunctionName, sizeof thread.szFunctionName);
    const std::string file = Bounded(thread.szFileName, sizeof thread.szFileName);
    array.push_back({{"tid", thread.iThreadID},
                     {"name", name},
                     {"scheduler", thread.iScheduler},
                     {"priority", thread.iPriority},
                     {"state", ThreadStateName(thread.enState)},
                     {"state_value", thread.enState},
                     {"iterations", Val(thread.nIterations)},
                     {"iterations_delta", Val(thread.nIterationsDelta)},
                     {"state_changes", Val(thread.nStateChanges)},
                     {"function", function},
                     {"file", file},
                     {"line", Val(thread.nLineNumber)},
                     {"stuck_count", Val(thread.nStuckCount)}});
    table.add({std::to_string(thread.iThreadID), name, SchedulerName(thread.iScheduler),
               std::to_string(thread.iPriority), ThreadStateName(thread.enState),
               std::to_string(Val(thread.nIterations)), std::to_string(Val(thread.nIterationsDelta)),
               function.empty() ? "-" : function,
               file.empty() ? "-" : file + ":" + std::to_string(Val(thread.nLineNumber))});
  }
  if (Globals().json) {
    PrintJson(array);
  } else {
    std::cout << table.render();
  }
  return 0;
}

int RunMutexes() {
  if (!Connect()) return 1;
  std::vector<SMGR_MUTEX_INFO> mutexes;
  if (!CollectPages<SMGR_MUTEX_INFO>(SessMgr_EnumerateMutexes, &mutexes)) return Fail("debug mutexes");
  json array = json::array();
  Table table({"CREATED AT", "LOCKED", "ACQUIRED", "RELEASED", "DELTA", "OWNER", "LAST TAKEN IN"});
  for (const char* column : {"LOCKED", "ACQUIRED", "RELEASED", "DELTA"}) table.alignRight(column);
  for (const SMGR_MUTEX_INFO& mutex : mutexes) {
    const std::string created = Bounded(mutex.szCreationFileName, sizeof mutex.szCreationFileName) + ":" +
                                std::to_string(mutex.nCreationLineNumber);
    const std::string owner = Bounded(mutex.szOwningThreadName, sizeof mutex.szOwningThreadName);
    const std::string function = Bounded(mutex.szFunction, sizeof mutex.szFunction);
    const std::string file = Bounded(mutex.szFile, sizeof mutex.szFile);
    array.push_back({{"created_at", created},
                     {"in_lock", mutex.nInLockCount},
                     {"acquired", Val(mutex.nAquiredCount)},
                     {"released", Val(mutex.nReleasedCount)},
                     {"acquired_delta", Val(mutex.nAquiredDelta)},
                     {"owner_tid", mutex.iOwnerThreadID},
                     {"owner", owner},
                     {"function", function},
                     {"file", file},
                     {"line", Val(mutex.nLineNumber)}});
    table.add(
        {created, std::to_string(mutex.nInLockCount), std::to_string(Val(mutex.nAquiredCount)),
         std::to_string(Val(mutex.nReleasedCount)), std::to_string(Val(mutex.nAquiredDelta)),
         owner.empty() ? "-" : owner + " (" + std::to_string(mutex.iOwnerThreadID) + ")",
         function.empty() ? "-" : function + " " + file + ":" + std::to_string(Val(mutex.nLineNumber))});
  }
  if (Globals().json) {
    PrintJson(array);
  } else {
    std::cout << table.render();
  }
  return 0;
}

void AddDebugCommands(Command& command) {
  int& status = command.status();
  CLI::App* debug = command.app().add_subcommand("debug", "The daemon's own diagnostics");
  debug->require_subcommand(1);
  debug->add_subcommand("info", "Daemon PID, watchdog and debug state")->callback([&status] {
    status = RunInfo();
  });
  debug->add_subcommand("threads", "The daemon's threads and their health counters")->callback([&status] {
    status = RunThreads();
  });
  debug->add_subcommand("mutexes", "The daemon's mutexes and their counters")->callback([&status] {
    status = RunMutexes();
  });
}

const CommandGroup kDebugCommands{"debug", AddDebugCommands};

}  // namespace

}  // namespace smgrctl
