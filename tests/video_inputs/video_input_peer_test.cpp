// Video input departures the operation table cannot see: one counted handle
// per input (by name, then by the daemon's ID), the exact request bytes, the
// size floors, the last error per operation, 81 from name at index, and the
// personality-dependent interface text.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "lib_state.h"
#include "peer_fixture.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"
#include "util_cfgfile.h"
#include "video_input_internal.h"

namespace smgr::test {
namespace {

class VideoInputPeerTest : public ConnectedPeerTest {
 protected:
  void SetUp() override {
    ConnectedPeerTest::SetUp();
    peer.setReplySize(SMGRPROT_VIDIN_OPEN_RSP, sizeof(SMGRPROT_MSG_VIDIN_OPEN_RSP));
    peer.setReplySize(SMGRPROT_VIDIN_GETINFO_RSP, sizeof(SMGRPROT_MSG_VIDIN_GETINFO_RSP));
    peer.setReplySize(SMGRPROT_VIDIN_SETCFG_RSP, 20);
    peer.setReplySize(SMGRPROT_VIDIN_RESETSTATS_RSP, 20);
  }
  HVIDIN OpenAs(const char* szName, int32_t iID) {
    peer.onNextRequest(SMGRPROT_VIDIN_OPEN_REQ, Reply::ok().put(20, iID));
    HVIDIN hInput = nullptr;
    EXPECT_TRUE(SessMgr_OpenVideoInput(szName, &hInput));
    return hInput;
  }
};

TEST_F(VideoInputPeerTest, OneCountedHandlePerInputAndLocalClose) {
  HVIDIN hFirst = OpenAs("sdi1", 4);
  HVIDIN hAgain = nullptr;
  ASSERT_TRUE(SessMgr_OpenVideoInput("sdi1", &hAgain));  // from the table: nothing sent
  EXPECT_EQ(hAgain, hFirst);
  EXPECT_EQ(peer.requestCount(SMGRPROT_VIDIN_OPEN_REQ), 1u);
  auto open = peer.lastRequest(SMGRPROT_VIDIN_OPEN_REQ);
  ASSERT_EQ(open->size(), 80u);
  EXPECT_EQ(open->text(16, 64), "sdi1");

  EXPECT_EQ(OpenAs("SDI-1", 4), hFirst);  // another name for the same ID shares the handle
  EXPECT_EQ(LiveHandleCount(), 1u);
  for (int i = 0; i < 3; ++i) {
    HVIDIN hClose = hFirst;
    EXPECT_TRUE(SessMgr_CloseVideoInput(&hClose));
    EXPECT_EQ(hClose, hFirst) << "the caller's variable is kept";
  }
  EXPECT_EQ(LiveHandleCount(), 0u);
  EXPECT_EQ(peer.requests().size(), 3u) << "connect and two opens; close sends nothing";

  peer.onNextRequest(SMGRPROT_VIDIN_OPEN_REQ, Reply::withResult(SMGR_ERROR_NO_MATCHING_INPUT_FOUND));
  HVIDIN hMissing = hFirst;
  EXPECT_FALSE(SessMgr_OpenVideoInput("sdi9", &hMissing));
  EXPECT_EQ(hMissing, nullptr);
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_NO_MATCHING_INPUT_FOUND);
}

TEST_F(VideoInputPeerTest, RequestsCarryTheIdAndConfigureTakesAtMost24Bytes) {
  HVIDIN hInput = OpenAs("sdi2", 9);
  SMGR_VIDEO_INPUT_CFG cfg[2] = {};
  cfg[0] = {static_cast<UINT>(sizeof(cfg)), 0x5, SMGR_VIF_TYPE_SDI, 3, TRUE};
  std::memset(&cfg[1], 0xEE, sizeof(cfg[1]));
  ASSERT_TRUE(SessMgr_ConfigureVideoInput(hInput, cfg));
  auto set = peer.lastRequest(SMGRPROT_VIDIN_SETCFG_REQ);
  ASSERT_EQ(set->size(), 44u);
  EXPECT_EQ(set->field<int32_t>(16), 9);
  EXPECT_EQ(set->field<uint64_t>(24), 0x5u);
  EXPECT_EQ(set->field<int32_t>(40), TRUE);

  ASSERT_TRUE(SessMgr_ResetVideoInputStats(hInput));
  auto reset = peer.lastRequest(SMGRPROT_VIDIN_RESETSTATS_REQ);
  ASSERT_EQ(reset->size(), 20u);
  EXPECT_EQ(reset->field<int32_t>(16), 9);
  SessMgr_CloseVideoInput(&hInput);
}

TEST_F(VideoInputPeerTest, InfoCopies144AndFailuresKeepTheLastErrorExceptConfigure) {
  HVIDIN hInput = OpenAs("sdi3", 2);
  SMGR_VIDEO_INPUT_INFO answer{};
  answer.nSize = 144;
  std::strcpy(answer.szName, "sdi3");
  answer.dwCapabilities = 0x1A;
  answer.MatrixCoefficients = 1;
  peer.onNextRequest(SMGRPROT_VIDIN_GETINFO_REQ, Reply::ok().put(20, 2).put(24, answer));
  unsigned char abRecord[200];
  std::memset(abRecord, 0x77, sizeof(abRecord));
  auto* pInfo = reinterpret_cast<SMGR_VIDEO_INPUT_INFO*>(abRecord);
  pInfo->nSize = 200;
  ASSERT_TRUE(SessMgr_GetVideoInputInfo(hInput, pInfo));
  EXPECT_EQ(pInfo->nSize, 144u);
  EXPECT_STREQ(pInfo->szName, "sdi3");
  EXPECT_EQ(pInfo->MatrixCoefficients, 1u);
  EXPECT_EQ(abRecord[144], 0x77) << "nothing past 144 bytes";
  EXPECT_EQ(peer.lastRequest(SMGRPROT_VIDIN_GETINFO_REQ)->field<int32_t>(16), 2);

  for (WORD wRequest : {SMGRPROT_VIDIN_GETINFO_REQ, SMGRPROT_VIDIN_RESETSTATS_REQ, SMGRPROT_VIDIN_SETCFG_REQ})
    peer.onNextRequest(wRequest, Reply::withResult(SMGR_ERROR_INPUT_DEVICE_IN_USE));
  pInfo->nSize = 144;
  SessMgr_SetLastError(1234);
  EXPECT_FALSE(SessMgr_GetVideoInputInfo(hInput, pInfo));
  EXPECT_FALSE(SessMgr_ResetVideoInputStats(hInput));
  EXPECT_EQ(SessMgr_GetLastError(), 1234u) << "info and reset stats leave the last error";
  SMGR_VIDEO_INPUT_CFG cfg{sizeof(cfg), 1, SMGR_VIF_TYPE_SDI, 0, FALSE};
  EXPECT_FALSE(SessMgr_ConfigureVideoInput(hInput, &cfg));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INPUT_DEVICE_IN_USE);
  SessMgr_CloseVideoInput(&hInput);
}

TEST_F(VideoInputPeerTest, EnumerationAsksByBufferSizeAndNameAtIndexGives81) {
  peer.onNextRequest(SMGRPROT_VIDIN_ENUMERATE_REQ,
                     Reply::ok().size(32).put(20, 4u).put(24, 0u).put(28, 144u));
  UINT nTotal = 0;
  std::vector<unsigned char> buffer(144 * 3 + 100);
  EXPECT_TRUE(SessMgr_EnumerateVideoInputs(buffer.data(), buffer.size(), 2, &nTotal, nullptr, nullptr));
  auto page = peer.lastRequest(SMGRPROT_VIDIN_ENUMERATE_REQ);
  ASSERT_EQ(page->size(), 24u);
  EXPECT_EQ(page->field<uint32_t>(16), 3u);
  EXPECT_EQ(page->field<uint32_t>(20), 2u);
  EXPECT_EQ(nTotal, 4u);

  peer.onNextRequest(SMGRPROT_VIDIN_ENUMERATE_REQ,
                     Reply::ok().size(32).put(20, 4u).put(24, 0u).put(28, 144u));
  char szName[16] = "unchanged";
  EXPECT_FALSE(SessMgr_GetVideoInputNameAtIndex(4, szName, sizeof(szName)));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_NO_MATCHING_INPUT_FOUND) << "81, not the encoders' 26";
  EXPECT_STREQ(szName, "unchanged");

  peer.onNextRequest(SMGRPROT_VIDIN_ENUMERATE_REQ, Reply::withResult(SMGR_ERROR_OUT_OF_MEMORY).size(32));
  errno = 0;
  EXPECT_FALSE(SessMgr_EnumerateVideoInputs(nullptr, 0, 0, &nTotal, nullptr, nullptr));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_OUT_OF_MEMORY);
  EXPECT_EQ(errno, static_cast<int>(SMGR_ERROR_OUT_OF_MEMORY));
}

TEST(VideoInputNames, InterfaceTypeFollowsThePersonalityAndCapabilitiesJoinWords) {
  char sz[32];
  const int enSaved = g_enPersonality;
  g_enPersonality = VDR2_PERSONALITY_SDI;
  EXPECT_STREQ(SessMgr_GetVideoInterfaceTypeString(1, sz, sizeof(sz)), "SDI");
  g_enPersonality = VDR2_PERSONALITY_2110;
  EXPECT_STREQ(SessMgr_GetVideoInterfaceTypeString(1, sz, sizeof(sz)), "ST-2110");
  g_enPersonality = enSaved;
  EXPECT_STREQ(SessMgr_GetVideoInterfaceTypeString(-1, sz, sizeof(sz)), "Auto-Detect");
  EXPECT_STREQ(SessMgr_GetVideoInputStateString(4, sz, sizeof(sz)), "2SI FAILED");
  EXPECT_STREQ(SessMgr_GetVideoInputStateString(6, sz, sizeof(sz)), "(Invalid:6)");
  EXPECT_STREQ(_GetCapabilitiesString(0x2 | 0x8 | 0x10, sz, sizeof(sz)), "SDI, UHD, AUDIO");
  EXPECT_STREQ(_GetCapabilitiesString(0x20 | 0x1, sz, sizeof(sz)), "COMPOSITE");
  EXPECT_STREQ(_GetCapabilitiesString(0, sz, sizeof(sz)), "");
}

}  // namespace
}  // namespace smgr::test
