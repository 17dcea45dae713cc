// Fuzz target: the input plays the daemon during SessMgrLib_Init (queue
// faults, the receive queue's message size, then the connect response and
// whatever else arrives), followed by the shutdown. Checked on every input: a
// BOOL of 0 or 1; a failed start leaves no queue open or linked and the
// library uninitialised, with a last error unless the daemon refused; a
// successful start talks to the daemon whose PID the response named (a request
// then works or fails with 4 when that process does not exist); the shutdown
// sends the disconnect indication and removes every queue; a canned start
// afterwards works.
//
// Input: [faults][message size][items, see fake_daemon.cpp]
//   faults & 1: opening the daemon queue fails (EACCES); & 2: creating the
//   receive queue fails (EMFILE); & 4: mq_getattr fails; & 8: sending fails.
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "fake_daemon.h"
#include "lib_state.h"
#include "operation_table.h"

namespace {

using smgr::fuzz::FakeDaemon;
using smgr::test::Bytes;

constexpr size_t kMaxItems = 16;
constexpr long kMsgSizes[] = {8192, 4096, 1024, 200, 180, 28, 20, 17, 16, 8, 1};

bool ProcessExists(pid_t pid) { return pid > 0 && (kill(pid, 0) == 0 || errno == EPERM); }

}  // namespace

// A plain start, one after a progress indication and a stale answer, one per
// queue fault, and starts on small receive queues.
std::vector<Bytes> smgr::fuzz::SeedInputs() {
  std::vector<Bytes> seeds = {{0, 0, 7}, {0, 0, 4, 7}, {1, 0},    {2, 0},
                              {4, 0, 7}, {8, 0},       {0, 3, 7}, {0, 4, 7}};
  // Progress (type 5000, sequence fixed up), a stale connect response, then the valid one.
  seeds.push_back({0, 0, 0, 20,   0,    0x02 | (1 << 2) | 0x10,
                   0, 0, 0, 0,    0,    0,
                   0, 0, 0, 0,    0,    0,
                   0, 0, 0, 0,    42,   0,
                   0, 0, 1, 0xFF, 0x0F, 0x80 | 0x01 | (2 << 2) | 0x10,
                   0, 7});
  return seeds;
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  smgr::fuzz::WriteSeedsIfAsked();
  smgr::fuzz::PrepareEnvironment();
  FakeDaemon::instance().install();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pbData, size_t nSize) {
  if (nSize < 2) return 0;
  FakeDaemon& daemon = FakeDaemon::instance();
  daemon.reset();
  const uint8_t bFaults = pbData[0];
  daemon.nMsgSize = kMsgSizes[pbData[1] % (sizeof(kMsgSizes) / sizeof(kMsgSizes[0]))];
  if (bFaults & 1) daemon.nOpenDaemonErrno = EACCES;
  if (bFaults & 2) daemon.nCreateErrno = EMFILE;
  if (bFaults & 4) daemon.nGetattrErrno = EBADF;
  if (bFaults & 8) daemon.nSendErrno = EAGAIN;
  smgr::test::ParamReader items(pbData + 2, nSize - 2);
  WORD wSequence = 0;
  daemon.onRequest = [&](const Bytes& request) {
    if (smgr::test::RequestType(request) != SMGRPROT_USER_CONNECT_REQ) return;
    wSequence = smgr::test::RequestSequence(request);
    Bytes valid =
        smgr::test::MakeMessage(SMGRPROT_USER_CONNECT_RSP, wSequence, sizeof(SMGRPROT_MSG_CONNECT_RSP));
    smgr::fuzz::DecodeItems(items, SMGRPROT_USER_CONNECT_RSP, wSequence, valid,
                            static_cast<size_t>(daemon.nMsgSize), kMaxItems, &daemon.inbox);
  };

  SessMgr_SetLastError(SMGR_ERROR_SUCCESS);
  const BOOL bResult = SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr);
  const SMGR_RESULT lastError = SessMgr_GetLastError();
  daemon.nOpenDaemonErrno = daemon.nCreateErrno = daemon.nGetattrErrno = daemon.nSendErrno = 0;
  FUZZ_CHECK(bResult == TRUE || bResult == FALSE, "");

  // The response the start ended on, when it was the connect response.
  const Bytes* pAnswer = nullptr;
  if (!daemon.delivered.empty() &&
      smgr::test::RequestType(daemon.delivered.back()) == SMGRPROT_USER_CONNECT_RSP &&
      smgr::test::RequestSequence(daemon.delivered.back()) == wSequence)
    pAnswer = &daemon.delivered.back();

  if (!bResult) {
    FUZZ_CHECK(g_nLibInitCount.load() == 0, "failed start left the library initialised");
    FUZZ_CHECK(daemon.linkedReceiveQueues() == 0, "failed start left its receive queue behind");
    // The daemon queue may stay open after a failed connect; nothing else.
    FUZZ_CHECK(daemon.openQueues() <= 1, "failed start left a queue open");
    const bool bRefused = pAnswer != nullptr && pAnswer->size() >= sizeof(SMGRPROT_MSG_CONNECT_RSP);
    FUZZ_CHECK(lastError != 0 || bRefused, "failed start without a last error");
    return 0;
  }

  FUZZ_CHECK(pAnswer != nullptr && pAnswer->size() >= sizeof(SMGRPROT_MSG_CONNECT_RSP),
             "started without a whole connect response");
  FUZZ_CHECK(lastError == 0 || lastError == SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_TYPE_ERROR ||
                 lastError == SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_SEQU_ERROR,
             "a start sets no last error but the discards' in passing");
  FUZZ_CHECK(g_nLibInitCount.load() == 1, "");
  FUZZ_CHECK(daemon.linkedReceiveQueues() == 1 && daemon.openQueues() == 2, "");

  SMGRPROT_MSG_CONNECT_RSP response;
  std::memcpy(&response, pAnswer->data(), sizeof(response));
  const pid_t daemonPid = static_cast<pid_t>(response.Header.dwSrcPID);
  FUZZ_CHECK(g_SessMgrDaemonPID == daemonPid, "daemon PID not taken from the connect response");

  // A request now: it works while the named daemon process exists (the
  // answer comes from the canned responder), otherwise it fails with 4.
  daemon.inbox.clear();
  daemon.answerWithValidResponses();
  if (daemon.nMsgSize >= static_cast<long>(sizeof(SMGRPROT_MSG_DEBUG_SETCFG_RSP))) {
    SessMgr_SetLastError(0x77u);
    const BOOL bRequest = SessMgr_SetDebugState(2);
    if (ProcessExists(daemonPid))
      FUZZ_CHECK(bRequest == TRUE && SessMgr_GetLastError() == 0, "request after the start failed");
    else
      FUZZ_CHECK(!bRequest && SessMgr_GetLastError() == SMGR_ERROR_DAEMON_GONE,
                 "vanished daemon not noticed");
  }

  const size_t nRequestsBefore = daemon.requests.size();
  SessMgrLib_Shutdown();
  FUZZ_CHECK(g_nLibInitCount.load() == 0, "");
  FUZZ_CHECK(daemon.requests.size() == nRequestsBefore + 1 &&
                 smgr::test::RequestType(daemon.requests.back()) == SMGRPROT_USER_DISCONNECT_IND,
             "no disconnect indication");
  FUZZ_CHECK(daemon.openQueues() == 0 && daemon.linkedReceiveQueues() == 0, "shutdown left a queue behind");

  // A canned start and stop still work.
  daemon.reset();
  daemon.nMsgSize = 8192;
  daemon.answerWithValidResponses();
  FUZZ_CHECK(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr) == TRUE,
             "canned start after a fuzzed one failed");
  SessMgrLib_Shutdown();
  FUZZ_CHECK(daemon.openQueues() == 0 && daemon.linkedReceiveQueues() == 0, "");
  return 0;
}
