// Talkback departures against the test peer: the zeroed 108-byte configure
// request cut to the caller's record, size floors, the last error kept by
// successes and by refused information or statistics but set by a refused
// configure, and 14 only for the control requests.
#include <gtest/gtest.h>

#include <cstring>

#include "peer_fixture.h"
#include "test_peer.h"

namespace smgr::test {
namespace {

constexpr SMGR_RESULT kSentinel = 0x0BADF00Du;

class TalkBack : public ConnectedPeerTest {};

TEST_F(TalkBack, ConfigureSendsTheRecordInAZeroedRequestAndKeepsTheLastErrorOnSuccess) {
  SMGR_TALKBACK_CFG cfg[2];
  std::memset(cfg, 0x5C, sizeof(cfg));
  cfg[0].nSize = 91;
  EXPECT_FALSE(SessMgr_ConfigureTalkBack(cfg));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_EQ(peer.requestCount(SMGRPROT_TALKBACK_SETCFG_REQ), 0u);

  cfg[0].nSize = 150;
  peer.onNextRequest(SMGRPROT_TALKBACK_SETCFG_REQ, Reply::ok().size(20));
  SessMgr_SetLastError(kSentinel);
  ASSERT_TRUE(SessMgr_ConfigureTalkBack(cfg));
  EXPECT_EQ(SessMgr_GetLastError(), kSentinel);
  auto request = peer.lastRequest(SMGRPROT_TALKBACK_SETCFG_REQ);
  ASSERT_TRUE(request);
  ASSERT_EQ(request->size(), 108u);
  EXPECT_EQ(request->header().wMsgSize, 108);
  EXPECT_EQ(std::memcmp(request->bytes().data() + 16, cfg, 92), 0);

  peer.onNextRequest(SMGRPROT_TALKBACK_SETCFG_REQ, Reply::withResult(17).size(20));
  EXPECT_FALSE(SessMgr_ConfigureTalkBack(cfg));
  EXPECT_EQ(SessMgr_GetLastError(), 17u) << "a refused configure is stored";
}

TEST_F(TalkBack, InformationAndStatisticsHaveFloorsAndKeepTheLastErrorWhenRefused) {
  SMGR_TALKBACK_STATS stats{};
  stats.nSize = 1111;
  EXPECT_FALSE(SessMgr_GetTalkBackStats(&stats));
  EXPECT_EQ(peer.requestCount(SMGRPROT_TALKBACK_GETSTATS_REQ), 0u);

  SMGR_TALKBACK_INFO sent{80, 1, "talkback", 5004, 0, 50};
  peer.onNextRequest(SMGRPROT_TALKBACK_GETINFO_REQ, Reply::ok().size(100).put(20, sent));
  SMGR_TALKBACK_INFO info[2];
  std::memset(info, 0x33, sizeof(info));
  info[0].nSize = 120;
  SessMgr_SetLastError(kSentinel);
  ASSERT_TRUE(SessMgr_GetTalkBackInfo(info));
  EXPECT_EQ(info[0].nSize, 80u);
  EXPECT_EQ(info[0].usPort, 5004);
  EXPECT_EQ(info[1].nSize, 0x33333333u) << "nothing beyond the current record";
  EXPECT_EQ(peer.lastRequest(SMGRPROT_TALKBACK_GETINFO_REQ)->size(), 16u);

  peer.onNextRequest(SMGRPROT_TALKBACK_GETSTATS_REQ, Reply::withResult(61).size(1132));
  stats.nSize = sizeof(stats);
  EXPECT_FALSE(SessMgr_GetTalkBackStats(&stats));
  EXPECT_EQ(SessMgr_GetLastError(), kSentinel);
}

TEST_F(TalkBack, ControlRequestsSetTheLastErrorAndReport14WhenNotInitialised) {
  peer.onNextRequest(SMGRPROT_TALKBACK_DISABLE_REQ, Reply::ok().size(20));
  SessMgr_SetLastError(kSentinel);
  ASSERT_TRUE(SessMgr_DisableTalkBack());
  EXPECT_EQ(SessMgr_GetLastError(), 0u);
  auto request = peer.lastRequest(SMGRPROT_TALKBACK_DISABLE_REQ);
  ASSERT_TRUE(request);
  EXPECT_EQ(request->size(), 20u);
  EXPECT_EQ(request->field<DWORD>(16), 0u);
  peer.onNextRequest(SMGRPROT_TALKBACK_START_REQ, Reply::withResult(74).size(20));
  EXPECT_FALSE(SessMgr_StartTalkBack());
  EXPECT_EQ(SessMgr_GetLastError(), 74u);

  ShutdownLibraryCompletely();
  EXPECT_FALSE(SessMgr_EnableTalkBack());
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_LIB_NOT_INITIALIZED);
  SMGR_TALKBACK_CFG cfg{};
  cfg.nSize = sizeof(cfg);
  EXPECT_FALSE(SessMgr_ConfigureTalkBack(&cfg));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  char sz[16];
  EXPECT_STREQ(SessMgr_GetTalkBackStateString(1, sz, sizeof(sz)), "RECEIVING");
  EXPECT_STREQ(SessMgr_GetTalkBackStateString(3, sz, sizeof(sz)), "DISABLED");
}

}  // namespace
}  // namespace smgr::test
