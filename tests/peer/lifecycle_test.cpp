// Start-up, the connect handshake and shutdown against the test peer: the
// exact bytes of connect, disconnect and system shutdown, the usage count,
// the version check and a missing daemon.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>

#include "lib_state.h"
#include "peer_fixture.h"
#include "test_peer.h"

namespace smgr::test {
namespace {

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
  EXPECT_EQ(queue.rfind("/vdsesslib" + std::to_string(getpid()) + "-", 0), 0u) << queue;
  EXPECT_EQ(queue.size(), std::string("/vdsesslib").size() + std::to_string(getpid()).size() + 6);
  EXPECT_TRUE(MessageQueueExists(queue));
  EXPECT_FALSE(connect->text(48, 256).empty());
  EXPECT_EQ(g_enCardType, 7);
  EXPECT_EQ(g_SessMgrDaemonPID, getpid());
  ShutdownLibraryCompletely();
  EXPECT_FALSE(MessageQueueExists(queue));
}

}  // namespace
}  // namespace smgr::test
