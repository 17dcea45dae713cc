// Configuration store departures: completed names on the wire, success that
// leaves the last error alone (but a load warning sets it), failures that
// carry the daemon's errno, the count of a failed DeleteAll, and Save's own
// time-out.
#include <gtest/gtest.h>

#include <chrono>

#include "peer_fixture.h"

namespace smgr::test {
namespace {

constexpr SMGR_RESULT kSentinel = 4321;

class ConfigPeerTest : public ConnectedPeerTest {
 protected:
  ConfigPeerTest() : ConnectedPeerTest(Options()) {}
  static PeerOptions Options() {
    PeerOptions options;
    options.nResponseTimeoutMs = 300;
    return options;
  }
  void SetUp() override {
    ConnectedPeerTest::SetUp();
    for (WORD w : {SMGRPROT_CONFIG_WRITE_RSP, SMGRPROT_CONFIG_READ_RSP, SMGRPROT_CONFIG_SET_AUTOSAVE_RSP})
      peer.setReplySize(w, sizeof(SMGRPROT_MSG_CONFIG_RESULT_RSP));
    peer.setReplySize(SMGRPROT_CONFIG_DELETE_RSP, sizeof(SMGRPROT_MSG_CONFIG_VALUE_RSP));
    peer.setReplySize(SMGRPROT_CONFIG_DELETE_ALL_RSP, sizeof(SMGRPROT_MSG_CONFIG_DELETE_ALL_RSP));
    SessMgr_SetLastError(kSentinel);
  }
};

TEST_F(ConfigPeerTest, SaveCompletesTheNameAndSuccessLeavesTheLastError) {
  ASSERT_TRUE(SessMgr_SaveConfig(nullptr, 3));
  auto request = peer.lastRequest(SMGRPROT_CONFIG_WRITE_REQ);
  ASSERT_EQ(request->size(), 308u);
  EXPECT_EQ(request->field<int32_t>(16), 3);
  EXPECT_EQ(request->text(20, 288), "/usr/share/ostrelle/config/qelstartup.cfg");
  EXPECT_FALSE(SessMgr_SaveConfig("a*", 0));  // refused, but its sequence number is used up
  ASSERT_TRUE(SessMgr_SaveConfig("test", 0));
  auto named = peer.lastRequest(SMGRPROT_CONFIG_WRITE_REQ);
  EXPECT_EQ(named->text(20, 288), "/usr/share/ostrelle/config/test.cfg");
  EXPECT_EQ(named->sequence(), static_cast<WORD>(request->sequence() + 2));
  ASSERT_TRUE(SessMgr_LoadConfig(nullptr));
  EXPECT_EQ(peer.lastRequest(SMGRPROT_CONFIG_READ_REQ)->text(16, 256), "");
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_CHARS_IN_FILENAME);
  SessMgr_SetLastError(kSentinel);
  ASSERT_TRUE(SessMgr_LoadConfig("x"));
  EXPECT_EQ(SessMgr_GetLastError(), kSentinel);

  peer.onNextRequest(SMGRPROT_CONFIG_READ_REQ, Reply::withResult(0x80000002u));
  EXPECT_TRUE(SessMgr_LoadConfig("test"));
  EXPECT_EQ(SessMgr_GetLastError(), 0x80000002u);
  peer.onNextRequest(SMGRPROT_CONFIG_WRITE_REQ, Reply::withResult(0x80000002u));
  EXPECT_FALSE(SessMgr_SaveConfig("test", 0));  // only Load takes a warning
  EXPECT_EQ(SessMgr_GetLastError(), 0x80000002u);
}

TEST_F(ConfigPeerTest, DeletionsFailWithTheDaemonsErrnoAndDeleteAllReportsItsCountAnyway) {
  peer.onNextRequest(SMGRPROT_CONFIG_DELETE_REQ,
                     Reply::withResult(SMGR_ERROR_NO_MATCHING_CONFIG_FILE).put(20, int32_t{2}));
  EXPECT_FALSE(SessMgr_DeleteConfig("gone"));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_NO_MATCHING_CONFIG_FILE);
  EXPECT_EQ(SessMgr_GetLastErrno(), 2);

  peer.onNextRequest(SMGRPROT_CONFIG_DELETE_ALL_REQ,
                     Reply::withResult(SMGR_ERROR_GENERIC_FAILURE).put(20, uint32_t{4}).put(24, int32_t{13}));
  ULONG nDeleted = ~0ull;
  EXPECT_FALSE(SessMgr_DeleteAllConfigs(&nDeleted));
  EXPECT_EQ(nDeleted, 4u);  // the 32-bit count fills the whole 64-bit variable
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_GENERIC_FAILURE);
  EXPECT_EQ(SessMgr_GetLastErrno(), 13);
}

TEST_F(ConfigPeerTest, SaveWaitsLongerThanTheConfiguredTimeOut) {
  peer.onNextRequest(SMGRPROT_CONFIG_WRITE_REQ, Reply::ok().delay(std::chrono::milliseconds(1300)));
  EXPECT_TRUE(SessMgr_SaveConfig("slow", 0));
  peer.onNextRequest(SMGRPROT_CONFIG_SET_AUTOSAVE_REQ, Reply::ok().delay(std::chrono::milliseconds(1300)));
  EXPECT_FALSE(SessMgr_SetConfigAutoSaveState(TRUE));
  EXPECT_EQ(peer.lastRequest(SMGRPROT_CONFIG_SET_AUTOSAVE_REQ)->field<int32_t>(16), TRUE);
}

}  // namespace
}  // namespace smgr::test
