// smgrctl debug commands (daemon information, threads, mutexes) and the
// result-code lookup (smgrctl error CODE).
#include <CLI/CLI.hpp>
#include <cstring>
#include <iostream>

#include "smgrctl_commands.h"
#include "smgrctl_output.h"

namespace smgrctl {
namespace {

using nlohmann::json;

// Pages through a diagnostics enumeration and returns its records.
template <typename Record, typename Enumerate>
bool CollectRecords(Enumerate enumerate, std::vector<Record>* records) {
  std::vector<uint8_t> buffer(32 * sizeof(Record));
  UINT offset = 0;
  for (int guard = 0; guard < 10000; ++guard) {
    UINT total = 0, returned = 0;
    size_t elementSize = 0;
    if (!enumerate(buffer.data(), buffer.size(), offset, &total, &returned, &elementSize)) return false;
    if (returned == 0 || elementSize == 0 || returned * elementSize > buffer.size()) break;
    for (UINT i = 0; i < returned; ++i) {
      Record record{};
      memcpy(&record, buffer.data() + i * elementSize, std::min(elementSize, sizeof record));
      records->push_back(record);
    }
    offset += returned;
    if (offset >= total) break;
  }
  return true;
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
  if (!CollectRecords<SMGR_THREAD_INFO>(SessMgr_EnumerateThreads, &threads)) return Fail("debug threads");
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
                     {"state", thread.enState},
                     {"iterations", Val(thread.nIterations)},
                     {"iterations_delta", Val(thread.nIterationsDelta)},
                     {"state_changes", Val(thread.nStateChanges)},
                     {"function", function},
                     {"file", file},
                     {"line", Val(thread.nLineNumber)},
                     {"stuck_count", Val(thread.nStuckCount)}});
    table.add({std::to_string(thread.iThreadID), name, SchedulerName(thread.iScheduler),
               std::to_string(thread.iPriority), std::to_string(thread.enState),
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
  if (!CollectRecords<SMGR_MUTEX_INFO>(SessMgr_EnumerateMutexes, &mutexes)) return Fail("debug mutexes");
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

int RunError(const std::string& text) {
  SMGR_RESULT code = 0;
  try {
    size_t used = 0;
    unsigned long long value = std::stoull(text, &used, 0);
    if (used != text.size() || value > 0xFFFFFFFFull) throw std::out_of_range("code");
    code = static_cast<SMGR_RESULT>(value);
  } catch (...) {
    return Usage("error", "\"" + text + "\" is not a result code (decimal or 0x hexadecimal)");
  }
  char message[256];
  SessMgr_GetErrorString(code, message, sizeof message);
  if (Globals().json) {
    PrintJson({{"code", code},
               {"hex",
                [&] {
                  char hex[16];
                  snprintf(hex, sizeof hex, "0x%08X", code);
                  return std::string(hex);
                }()},
               {"text", message},
               {"warning", (code & SMGR_IS_SUCCESS_WITH_WARNING) != 0}});
  } else {
    std::cout << message << "\n";
  }
  return 0;
}

}  // namespace

void AddDebugCommands(CLI::App& app, int& status) {
  CLI::App* debug = app.add_subcommand("debug", "The daemon's own diagnostics");
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

void AddErrorCommand(CLI::App& app, int& status) {
  static std::string code;
  auto* error = app.add_subcommand("error", "Text of a result code (no daemon needed)");
  error->add_option("code", code, "Result code, decimal or 0x hexadecimal")->required();
  error->callback([&status] { status = RunError(code); });
}

}  // namespace smgrctl
