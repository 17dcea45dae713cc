// Start-up, the connect handshake and shutdown against the test peer: the
// exact bytes of connect, disconnect and system shutdown, the usage count,
// refusals, a truncated answer and a missing daemon.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>

#include "lib_state.h"
#include "peer_fixture.h"
#include "request_engine.h"
#include "test_peer.h"
#include "util.h"

namespace smgr::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

std::string ExpectedQueuePrefix() { return "/vdsesslib" + std::to_string(getpid()) + "-"; }

TEST(Lifecycle, ConnectRequestIsExact) {
  TestPeer peer;
  peer.start();
  DWORD dwActual = 0;
  ASSERT_TRUE(SessMgrLib_Init(SMGR_API_VERSION_1_0, &dwActual));
  EXPECT_EQ(dwActual, SMGR_API_VERSION_1_0);
  auto connect = peer.lastRequest(SMGRPROT_USER_CONNECT_REQ);
  ASSERT_TRUE(connect);
  EXPECT_EQ(connect->size(), 304u);
  SMGRPROT_HEADER header = connect->header();
  EXPECT_EQ(header.wMsgSize, 304);
  EXPECT_EQ(header.wReserved, 0);
  EXPECT_EQ(header.dwSrcPID, static_cast<DWORD>(getpid()));
  EXPECT_EQ(header.dwSrcUID, static_cast<DWORD>(getuid()));
  std::string queue = connect->text(16, 32);
  EXPECT_EQ(queue.rfind(ExpectedQueuePrefix(), 0), 0u) << queue;
  EXPECT_EQ(queue.size(), ExpectedQueuePrefix().size() + 5) << "counter printed as %05u";
  EXPECT_TRUE(MessageQueueExists(queue));
  EXPECT_FALSE(connect->text(48, 256).empty()) << "process name";
  // Everything after the two names is zero.
  for (size_t i = 16 + queue.size(); i < 48; ++i) EXPECT_EQ(connect->bytes()[i], 0) << i;
  EXPECT_EQ(g_enCardType, 7);
  EXPECT_EQ(g_SessMgrDaemonPID, getpid());
  EXPECT_EQ(g_dwClientAPIVersion, SMGR_API_VERSION_1_0);
  EXPECT_EQ(g_nIPCRespTimeoutInMS, 3000) << "ResponseTimeout from the settings file";
  ShutdownLibraryCompletely();
  EXPECT_FALSE(MessageQueueExists(queue));
}

TEST(Lifecycle, OnlyFirstInitConnectsAndOnlyLastShutdownDisconnects) {
  TestPeer peer;
  peer.start();
  ASSERT_TRUE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr));
  ASSERT_TRUE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr));
  EXPECT_EQ(g_nLibInitCount.load(), 2);
  SessMgrLib_Shutdown();
  EXPECT_TRUE(IsLibraryInitialised());
  // A request after the first shutdown still works and orders the peer's view.
  SMGR_DEBUG_INFO info{};
  ASSERT_TRUE(SessMgr_GetDebugInfo(&info));
  EXPECT_EQ(peer.requestCount(SMGRPROT_USER_CONNECT_REQ), 1u);
  EXPECT_EQ(peer.requestCount(SMGRPROT_USER_DISCONNECT_IND), 0u);

  WORD wLastSequence = peer.lastRequest(SMGRPROT_DEBUG_GETINFO_REQ)->sequence();
  std::string queue = peer.lastRequest(SMGRPROT_USER_CONNECT_REQ)->text(16, 32);
  SessMgrLib_Shutdown();
  EXPECT_FALSE(IsLibraryInitialised());
  ASSERT_TRUE(peer.waitForRequests(SMGRPROT_USER_DISCONNECT_IND, 1));
  auto disconnect = peer.lastRequest(SMGRPROT_USER_DISCONNECT_IND);
  EXPECT_EQ(disconnect->size(), 20u);
  EXPECT_EQ(disconnect->header().wMsgSize, 20);
  EXPECT_EQ(disconnect->sequence(), static_cast<WORD>(wLastSequence + 1));
  EXPECT_EQ(disconnect->srcPid(), getpid());
  EXPECT_EQ(disconnect->field<DWORD>(16), 0u);
  EXPECT_FALSE(MessageQueueExists(queue));
  EXPECT_EQ(g_OutMsgQID, static_cast<mqd_t>(-1));
  EXPECT_EQ(g_InMsgQID, static_cast<mqd_t>(-1));
}

TEST(Lifecycle, MissingDaemonQueueFailsWith11) {
  PeerOptions options;
  options.bCreateDaemonQueue = false;
  options.nInitIpcTimeout = 0;  // at most two attempts should the machine still be booting
  TestPeer peer(options);
  auto start = steady_clock::now();
  EXPECT_FALSE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR);
  EXPECT_EQ(SessMgr_GetLastErrno(), ENOENT);
  EXPECT_LT(steady_clock::now() - start, milliseconds(2500));
  EXPECT_FALSE(IsLibraryInitialised());
}

TEST(Lifecycle, RefusedConnectLeavesLastErrorAndNoQueue) {
  PeerOptions options;
  options.connectResult = SMGRPROT_RESULT_GENERIC_FAILURE;
  TestPeer peer(options);
  peer.start();
  SessMgr_SetLastError(1234);
  EXPECT_FALSE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr));
  EXPECT_EQ(SessMgr_GetLastError(), 1234u);
  EXPECT_FALSE(IsLibraryInitialised());
  EXPECT_FALSE(MessageQueueExists(peer.lastRequest(SMGRPROT_USER_CONNECT_REQ)->text(16, 32)));
  EXPECT_EQ(g_pInputBuffer, nullptr);
}

TEST(Lifecycle, TruncatedConnectResponseFailsWith11) {
  TestPeer peer;
  peer.onNextRequest(SMGRPROT_USER_CONNECT_REQ, Reply::ok().truncateTo(20));
  peer.start();
  EXPECT_FALSE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR);
  EXPECT_FALSE(MessageQueueExists(peer.lastRequest(SMGRPROT_USER_CONNECT_REQ)->text(16, 32)));
  // The next attempt connects normally.
  ASSERT_TRUE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr));
  ShutdownLibraryCompletely();
}

class ConnectedLifecycle : public ConnectedPeerTest {};

TEST_F(ConnectedLifecycle, SystemShutdownRequestIsExactAndAwaitsNothing) {
  WORD wConnectSequence = peer.lastRequest(SMGRPROT_USER_CONNECT_REQ)->sequence();
  SessMgr_SetLastError(77);
  ASSERT_TRUE(SessMgr_Shutdown());
  EXPECT_EQ(SessMgr_GetLastError(), 77u) << "last error untouched";
  ASSERT_TRUE(peer.waitForRequests(SMGRPROT_SYSTEM_SHUTDOWN_REQ, 1));
  auto request = peer.lastRequest(SMGRPROT_SYSTEM_SHUTDOWN_REQ);
  EXPECT_EQ(request->size(), 20u);
  EXPECT_EQ(request->header().wMsgSize, 20);
  EXPECT_EQ(request->sequence(), static_cast<WORD>(wConnectSequence + 1));
  EXPECT_EQ(request->field<DWORD>(16), 0u);
  EXPECT_EQ(request->srcPid(), getpid());
}

TEST_F(ConnectedLifecycle, SequenceIncrementsAndWrapsLikeAnySixteenBitCounter) {
  g_wTxSequence = 0xFFFE;
  SMGR_DEBUG_INFO info{};
  for (int i = 0; i < 3; ++i) ASSERT_TRUE(SessMgr_GetDebugInfo(&info));
  auto requests = peer.requests(SMGRPROT_DEBUG_GETINFO_REQ);
  ASSERT_EQ(requests.size(), 3u);
  EXPECT_EQ(requests[0].sequence(), 0xFFFF);
  EXPECT_EQ(requests[1].sequence(), 0);
  EXPECT_EQ(requests[2].sequence(), 1);
}

TEST_F(ConnectedLifecycle, SetUidImpersonatesKnownUsersOnlyForRoot) {
  if (!IsRootUser()) {
    EXPECT_FALSE(SessMgrLib_SetUID(0));
    return;
  }
  ASSERT_TRUE(SessMgrLib_SetUID(65534));
  SMGR_DEBUG_INFO info{};
  ASSERT_TRUE(SessMgr_GetDebugInfo(&info));
  EXPECT_EQ(peer.lastRequest(SMGRPROT_DEBUG_GETINFO_REQ)->srcUid(), 65534u);
  ASSERT_TRUE(SessMgrLib_SetUID(getuid()));
}

}  // namespace
}  // namespace smgr::test
