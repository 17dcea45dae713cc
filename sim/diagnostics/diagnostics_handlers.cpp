// Diagnostics family of the simulator: debug state and information, and the
// thread and mutex lists drawn from the simulator's own threads (from /proc)
// and its instrumented mutexes.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "dispatch.h"
#include "objects.h"
#include "sim_log.h"
#include "sim_threads.h"

namespace sim {
namespace {

constexpr size_t kRecordsOffset = SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET;

// "void sim::Server::run(const std::atomic<bool>&)" -> "Server::run".
std::string ShortFunctionName(const std::string& pretty) {
  std::string name = pretty.substr(0, pretty.find('('));
  size_t space = name.rfind(' ');
  if (space != std::string::npos) name = name.substr(space + 1);
  if (name.rfind("sim::", 0) == 0) name = name.substr(5);
  return name;
}

void Copy(char* field, size_t size, const std::string& text) { snprintf(field, size, "%s", text.c_str()); }

// Answers a paged enumeration with the records that fill() makes of the sources.
template <typename Record, typename Source, typename Fill>
void Page(Context& context, Reply& reply, int32_t wanted, int32_t offset, const std::vector<Source>& all,
          Fill fill) {
  std::vector<Record> records(all.size());
  for (size_t i = 0; i < all.size(); ++i) fill(all[i], &records[i]);
  AnswerPage(context, reply, wanted, offset, records);
}

void OnSetDebugState(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_DEBUG_SETCFG_REQ>();
  context.appliance().debugState = message.Data.iDebugState;
  SIM_LOG_INFO("debug state set to %d by pid %d", message.Data.iDebugState, context.client().pid);
  reply.result(SMGR_ERROR_SUCCESS);
}

void OnGetDebugInfo(Context& context, const Request&, Reply& reply) {
  auto* response = reply.as<SMGRPROT_MSG_DEBUG_GETINFO_RSP>();
  response->Data.Result = SMGR_ERROR_SUCCESS;
  response->Data.DebugInfo.nSize = sizeof(SMGR_DEBUG_INFO);
  response->Data.DebugInfo.iPID = getpid();
  response->Data.DebugInfo.bWatchdogEnabled = context.appliance().profile().watchdogEnabled;
  response->Data.DebugInfo.enState = context.appliance().debugState;
}

void OnEnumerateThreads(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_THREAD_ENUMERATE_REQ>();
  Page<SMGR_THREAD_INFO>(context, reply, message.Data.nNumOfThreads, message.Data.nStartOffset,
                         SnapshotThreads(), [](const ThreadSnapshot& thread, SMGR_THREAD_INFO* record) {
                           record->iThreadID = thread.tid;
                           record->iScheduler = thread.scheduler;
                           record->iPriority = thread.priority;
                           Copy(record->szName, sizeof record->szName, thread.name);
                           Copy(record->szFileName, sizeof record->szFileName, thread.fileName);
                           Copy(record->szFunctionName, sizeof record->szFunctionName,
                                ShortFunctionName(thread.functionName));
                           record->enState = thread.state;
                           record->nIterations = thread.iterations;
                           record->nIterationsDelta = thread.iterationsDelta;
                           record->nStateChanges = thread.stateChanges;
                           record->nStateChangesDelta = thread.stateChangesDelta;
                           record->nLineNumber = thread.lineNumber;
                           record->tLastChange = thread.lastChange;
                           record->nStuckCount = thread.stuckCount;
                           record->nLastStuckUPTimeInSecs = thread.lastStuckUpTime;
                         });
}

void OnEnumerateMutexes(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_MUTEX_ENUMERATE_REQ>();
  Page<SMGR_MUTEX_INFO>(
      context, reply, message.Data.nNumOfMutexes, message.Data.nStartOffset, SnapshotMutexes(),
      [](const MutexSnapshot& mutex, SMGR_MUTEX_INFO* record) {
        record->nSize = sizeof(SMGR_MUTEX_INFO);
        Copy(record->szCreationFileName, sizeof record->szCreationFileName, mutex.creationFile);
        record->nCreationLineNumber = mutex.creationLine;
        record->nInLockCount = mutex.inLockCount;
        record->nAquiredCount = mutex.acquired;
        record->nReleasedCount = mutex.released;
        record->nAquiredDelta = mutex.acquiredDelta;
        record->iOwnerThreadID = mutex.ownerTid;
        Copy(record->szOwningThreadName, sizeof record->szOwningThreadName, mutex.ownerName);
        Copy(record->szFunction, sizeof record->szFunction, ShortFunctionName(mutex.function));
        Copy(record->szFile, sizeof record->szFile, mutex.file);
        record->nLineNumber = mutex.line;
      });
}

void OnDebugRequest(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_DEBUG_REQ>();
  // The library never fills nReqDataSize; the data is taken as it comes.
  SIM_LOG_INFO("debug request %d from pid %d (uid %u)", message.Data.enRequest, context.client().pid,
               context.client().uid);
  reply.result(context.client().uid == 0 ? SMGR_ERROR_SUCCESS : SMGR_ERROR_INSUFFICIENT_RIGHTS);
}

const FamilyRegistration kDiagnostics{
    "diagnostics",
    {
        {SMGRPROT_DEBUG_SETCFG_REQ, "debug setcfg", sizeof(SMGRPROT_MSG_DEBUG_SETCFG_REQ),
         SMGRPROT_DEBUG_SETCFG_RSP, sizeof(SMGRPROT_MSG_DEBUG_SETCFG_RSP), OnSetDebugState},
        {SMGRPROT_DEBUG_GETINFO_REQ, "debug getinfo", sizeof(SMGRPROT_MSG_DEBUG_GETINFO_REQ),
         SMGRPROT_DEBUG_GETINFO_RSP, sizeof(SMGRPROT_MSG_DEBUG_GETINFO_RSP), OnGetDebugInfo},
        {SMGRPROT_THREAD_ENUMERATE_REQ, "thread enumerate", sizeof(SMGRPROT_MSG_THREAD_ENUMERATE_REQ),
         SMGRPROT_THREAD_ENUMERATE_RSP, kRecordsOffset, OnEnumerateThreads},
        {SMGRPROT_DEBUG_REQ, "debug request", sizeof(SMGRPROT_MSG_DEBUG_REQ), SMGRPROT_DEBUG_RSP,
         sizeof(SMGRPROT_MSG_DEBUG_RSP), OnDebugRequest},
        {SMGRPROT_MUTEX_ENUMERATE_REQ, "mutex enumerate", sizeof(SMGRPROT_MSG_MUTEX_ENUMERATE_REQ),
         SMGRPROT_MUTEX_ENUMERATE_RSP, kRecordsOffset, OnEnumerateMutexes},
    }};

}  // namespace
}  // namespace sim
