// Process-level behaviour: re-connect after fork, a daemon that dies, the start
// marker, and the exit and SIGSEGV paths that must leave no receive queue
// behind; many Init/Shutdown cycles leave nothing behind either.
#include <dirent.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>

#include "lib_state.h"
#include "peer_fixture.h"
#include "request_engine.h"
#include "test_peer.h"
#include "util.h"

namespace smgr::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// Runs body in a forked child and returns its exit status (-1: killed by a
// signal or hung, -2: no child).
template <typename Body>
int RunInChild(TestPeer& peer, Body body) {
  pid_t child = peer.forkClient();
  if (child == 0) {
    int nCode = body();
    _exit(nCode);
  }
  if (child < 0) return -2;
  int nStatus = WaitForChild(child);
  return nStatus != kChildHung && WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
}

std::vector<Request> RequestsFrom(const TestPeer& peer, pid_t pid) {
  std::vector<Request> from;
  for (const Request& request : peer.requests())
    if (request.srcPid() == pid) from.push_back(request);
  return from;
}

std::string QueueOf(const Request& connect) { return connect.text(16, 32); }

size_t CountOwnReceiveQueues() {
  std::string prefix = "vdsesslib" + std::to_string(getpid()) + "-";
  size_t n = 0;
  if (DIR* dir = opendir("/dev/mqueue")) {
    while (dirent* entry = readdir(dir))
      if (std::string(entry->d_name).rfind(prefix, 0) == 0) ++n;
    closedir(dir);
  }
  return n;
}

size_t CountOpenDescriptors() {
  size_t n = 0;
  if (DIR* dir = opendir("/proc/self/fd")) {
    while (readdir(dir)) ++n;
    closedir(dir);
  }
  return n;
}

class ForkedClient : public ConnectedPeerTest {};

TEST_F(ForkedClient, ChildReconnectsOnItsFirstRequestAndParentKeepsWorking) {
  std::string parentQueue = QueueOf(*peer.lastRequest(SMGRPROT_USER_CONNECT_REQ));
  pid_t child = peer.forkClient();
  ASSERT_GE(child, 0);
  if (child == 0) {
    SMGR_DEBUG_INFO info{};
    bool bOk = SessMgr_GetDebugInfo(&info) && SessMgr_SetDebugState(4);
    SessMgrLib_Shutdown();
    _exit(bOk ? 0 : 1);
  }
  int nStatus = WaitForChild(child);
  ASSERT_NE(nStatus, kChildHung);
  ASSERT_TRUE(WIFEXITED(nStatus));
  EXPECT_EQ(WEXITSTATUS(nStatus), 0);
  ASSERT_TRUE(peer.waitForRequests(SMGRPROT_USER_DISCONNECT_IND, 1));

  auto fromChild = RequestsFrom(peer, child);
  ASSERT_EQ(fromChild.size(), 4u);
  EXPECT_EQ(fromChild[0].type(), SMGRPROT_USER_CONNECT_REQ);
  EXPECT_EQ(fromChild[1].type(), SMGRPROT_DEBUG_GETINFO_REQ);
  EXPECT_EQ(fromChild[2].type(), SMGRPROT_DEBUG_SETCFG_REQ);
  EXPECT_EQ(fromChild[3].type(), SMGRPROT_USER_DISCONNECT_IND);
  std::string childQueue = QueueOf(fromChild[0]);
  EXPECT_EQ(childQueue.rfind("/vdsesslib" + std::to_string(child) + "-", 0), 0u) << childQueue;
  unsigned nParent = std::stoul(parentQueue.substr(parentQueue.find('-') + 1));
  unsigned nChild = std::stoul(childQueue.substr(childQueue.find('-') + 1));
  EXPECT_EQ(nChild, nParent + 1) << "the counter goes on in the child";
  EXPECT_FALSE(MessageQueueExists(childQueue));
  EXPECT_TRUE(MessageQueueExists(parentQueue));

  SMGR_DEBUG_INFO info{};
  EXPECT_TRUE(SessMgr_GetDebugInfo(&info));
  EXPECT_EQ(peer.requestCount(SMGRPROT_USER_DISCONNECT_IND), 1u) << "the parent is still connected";
}

TEST_F(ForkedClient, ForkDuringAnotherThreadsRequestLeavesTheChildAUsableLibrary) {
  // The parent's next request stays in flight (API mutex held) for 300 ms.
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, Replies(Reply::ok().delay(milliseconds(300))));
  std::thread requester([] {
    SMGR_DEBUG_INFO info{};
    EXPECT_TRUE(SessMgr_GetDebugInfo(&info));
  });
  ASSERT_TRUE(peer.waitForRequests(SMGRPROT_DEBUG_GETINFO_REQ, 1));
  int nStatus = RunInChild(peer, [] {
    alarm(5);  // a child that inherited the held API mutex would hang here
    SMGR_DEBUG_INFO info{};
    bool bOk = SessMgr_GetDebugInfo(&info);
    SessMgrLib_Shutdown();
    return bOk ? 0 : 1;
  });
  requester.join();
  EXPECT_EQ(nStatus, 0);
}

TEST_F(ForkedClient, ChildWithoutRequestsDoesNothingAtShutdownOrExit) {
  std::string parentQueue = QueueOf(*peer.lastRequest(SMGRPROT_USER_CONNECT_REQ));
  int nStatus = RunInChild(peer, [] {
    SessMgrLib_Shutdown();
    return 0;
  });
  EXPECT_EQ(nStatus, 0);
  nStatus = RunInChild(peer, [] {
    exit(0);  // the exit handler finds the parent's connection: nothing to do
    return 1;
  });
  EXPECT_EQ(nStatus, 0);
  SMGR_DEBUG_INFO info{};
  ASSERT_TRUE(SessMgr_GetDebugInfo(&info));
  for (const Request& request : peer.requests()) EXPECT_EQ(request.srcPid(), getpid());
  EXPECT_TRUE(MessageQueueExists(parentQueue));
}

TEST(DaemonProcess, DeathFailsTheNextRequestWith4WithinOneRound) {
  TestPeer peer;
  peer.startInChildProcess();
  ASSERT_TRUE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr)) << SessMgr_GetLastError();
  EXPECT_EQ(g_SessMgrDaemonPID, peer.daemonPid());
  SMGR_DEBUG_INFO info{};
  ASSERT_TRUE(SessMgr_GetDebugInfo(&info));
  peer.killDaemon();
  auto start = steady_clock::now();
  EXPECT_FALSE(SessMgr_GetDebugInfo(&info));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DAEMON_GONE);
  EXPECT_LT(steady_clock::now() - start, milliseconds(1500));
  ShutdownLibraryCompletely();
}

TEST(DaemonProcess, KilledDaemonThatNobodyReapedFailsTheRequestInFlightWithin1100Ms) {
  TestPeer peer;
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, Replies(Reply::ok().delay(milliseconds(5000))));
  peer.startInChildProcess();
  ASSERT_TRUE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr)) << SessMgr_GetLastError();
  // The daemon dies while the request is in flight and stays a zombie: we do not reap it yet.
  steady_clock::time_point killedAt;
  std::thread killer([&] {
    std::this_thread::sleep_for(milliseconds(200));
    killedAt = steady_clock::now();
    kill(peer.daemonPid(), SIGKILL);
  });
  SMGR_DEBUG_INFO info{};
  EXPECT_FALSE(SessMgr_GetDebugInfo(&info));
  const auto failedAt = steady_clock::now();
  killer.join();
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DAEMON_GONE);
  EXPECT_LT(failedAt - killedAt, milliseconds(1100));
  peer.killDaemon();  // reaps it
  ShutdownLibraryCompletely();
}

TEST(DaemonProcess, StartMarkerRequiresARunningDaemonNamedSessmgrd) {
  TestPeer peer;
  peer.createStartMarker();
  if (GetProcessPID("sessmgrd", nullptr) == 0) {
    EXPECT_FALSE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr));
    EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DAEMON_GONE);
  }
  peer.startInChildProcess();
  // The child names itself right after fork; give it a moment to show up.
  for (int i = 0; i < 100 && GetProcessPID("sessmgrd", nullptr) == 0; ++i) usleep(10000);
  ASSERT_TRUE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr)) << SessMgr_GetLastError();
  ShutdownLibraryCompletely();
}

class UncleanEnd : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_FALSE(IsLibraryInitialised());
    peer.start();
  }
  // The child connects on its own, then ends without shutting down.
  void expectNoQueueLeftAfter(void (*end)()) {
    pid_t child = peer.forkClient();
    ASSERT_GE(child, 0);
    if (child == 0) {
      if (!SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr)) _exit(2);
      end();
      _exit(3);
    }
    int nStatus = WaitForChild(child);
    ASSERT_NE(nStatus, kChildHung);
    // Any end but a failed initialisation (a sanitizer may re-raise the signal).
    ASSERT_FALSE(WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 2) << nStatus;
    ASSERT_TRUE(peer.waitForRequests(SMGRPROT_USER_DISCONNECT_IND, 1));
    auto fromChild = RequestsFrom(peer, child);
    ASSERT_GE(fromChild.size(), 2u);
    EXPECT_EQ(fromChild.back().type(), SMGRPROT_USER_DISCONNECT_IND);
    EXPECT_FALSE(MessageQueueExists(QueueOf(fromChild.front())));
  }

  TestPeer peer;
};

TEST_F(UncleanEnd, ExitWithTheLibraryInitialisedRemovesTheReceiveQueue) {
  expectNoQueueLeftAfter([] {
    SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr);  // two users left open: one exit finishes both
    exit(0);
  });
}

TEST_F(UncleanEnd, SegmentationFaultRemovesTheReceiveQueue) {
  expectNoQueueLeftAfter([] { raise(SIGSEGV); });
}

TEST(Cycles, TenThousandInitShutdownCyclesLeaveNothingBehind) {
  TestPeer peer;
  peer.start();
  size_t nDescriptors = CountOpenDescriptors();
  for (int i = 0; i < 10000; ++i) {
    ASSERT_TRUE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr)) << i << ": " << SessMgr_GetLastError();
    SessMgrLib_Shutdown();
    if (i % 500 == 499) {
      ASSERT_TRUE(peer.waitForRequests(SMGRPROT_USER_DISCONNECT_IND, 500));
      peer.clearRequests();
    }
  }
  EXPECT_EQ(CountOwnReceiveQueues(), 0u);
  EXPECT_EQ(CountOpenDescriptors(), nDescriptors);
  EXPECT_EQ(g_pInputBuffer, nullptr);
}

}  // namespace
}  // namespace smgr::test
