// Video encoder departures against the test peer: which operations report a
// daemon failure, handles shared by name and by ID, the sizes the library
// copies (its own record size, not the daemon's nSize), control and
// parameter-set replies, and the enumeration request.
#include <errno.h>
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>

#include "lib_state.h"
#include "peer_fixture.h"

namespace smgr::test {
namespace {

constexpr SMGR_RESULT kSentinel = 0x0BADF00Du;

class VideoEncoderPeerTest : public ConnectedPeerTest {
 protected:
  void SetUp() override {
    ConnectedPeerTest::SetUp();
    for (WORD w : {SMGRPROT_VIDENC_SETCFG_RSP, SMGRPROT_VIDENC_RESETSTATS_RSP, SMGRPROT_VIDENC_START_RSP,
                   SMGRPROT_VIDENC_STOP_RSP, SMGRPROT_VIDENC_RESET_RSP})
      peer.setReplySize(w, sizeof(SMGRPROT_MSG_VIDENC_RESULT_RSP));
    peer.setReplySize(SMGRPROT_VIDENC_OPEN_RSP, sizeof(SMGRPROT_MSG_VIDENC_OPEN_RSP));
    peer.setReplySize(SMGRPROT_VIDENC_GETINFO_RSP, sizeof(SMGRPROT_MSG_VIDENC_GETINFO_RSP));
    peer.setReplySize(SMGRPROT_VIDENC_GETSTATS_RSP, sizeof(SMGRPROT_MSG_VIDENC_GETSTATS_RSP));
    peer.setReplySize(SMGRPROT_VIDENC_CONTROL_RSP, sizeof(SMGRPROT_MSG_VIDENC_CONTROL_RSP));
    peer.setReplySize(SMGRPROT_VIDENC_GETSPSPPS_RSP, sizeof(SMGRPROT_MSG_VIDENC_GETSPSPPS_RSP));
    peer.setReplySize(SMGRPROT_VIDENC_ENUMERATE_RSP,
                      offsetof(SMGRPROT_MSG_VIDENC_ENUMERATE_RSP, Data.EncoderInfo));
  }
  HVIDENC Open(const char* szName, int32_t iID) {
    peer.onNextRequest(SMGRPROT_VIDENC_OPEN_REQ, Reply::ok().put(20, iID));
    HVIDENC hEncoder = nullptr;
    EXPECT_TRUE(SessMgr_OpenVideoEncoder(szName, &hEncoder));
    return hEncoder;
  }
};

struct FailureCase {
  const char* szName;
  WORD wRequest;
  size_t nRequestSize;
  bool bReportsFailure;
  std::function<BOOL(HVIDENC)> call;
};

TEST_F(VideoEncoderPeerTest, OnlyOpenStartStopResetConfigureAndEnumerateReportADaemonFailure) {
  HVIDENC hEncoder = Open("venc1", 7);
  static SMGR_VIDEO_ENCODER_CFG cfg{};
  static SMGR_VIDEO_ENCODER_INFO info{};
  static SMGR_VIDEO_ENCODER_STATS stats{};
  cfg.nSize = sizeof(cfg);
  info.nSize = sizeof(info);
  stats.nSize = sizeof(stats);
  const FailureCase cases[] = {
      {"start", SMGRPROT_VIDENC_START_REQ, 20, true, SessMgr_StartVideoEncoder},
      {"stop", SMGRPROT_VIDENC_STOP_REQ, 20, true, SessMgr_StopVideoEncoder},
      {"reset", SMGRPROT_VIDENC_RESET_REQ, 20, true, SessMgr_ResetVideoEncoder},
      {"configure", SMGRPROT_VIDENC_SETCFG_REQ, 168, true,
       [](HVIDENC h) { return SessMgr_ConfigureVideoEncoder(h, &cfg); }},
      {"info", SMGRPROT_VIDENC_GETINFO_REQ, 20, false,
       [](HVIDENC h) { return SessMgr_GetVideoEncoderInfo(h, &info); }},
      {"stats", SMGRPROT_VIDENC_GETSTATS_REQ, 20, false,
       [](HVIDENC h) { return SessMgr_GetVideoEncoderStats(h, &stats); }},
      {"reset stats", SMGRPROT_VIDENC_RESETSTATS_REQ, 20, false, SessMgr_ResetVideoEncoderStats},
      {"control", SMGRPROT_VIDENC_CONTROL_REQ, 284, false,
       [](HVIDENC h) { return SessMgr_ControlVideoEncoder(h, 1, nullptr, nullptr); }},
      {"sprop", SMGRPROT_VIDENC_GETSPSPPS_REQ, 20, false,
       [](HVIDENC h) {
         char sz[32];
         size_t nSize = sizeof(sz);
         return SessMgr_GetVideoEncoderSPROP(h, sz, &nSize);
       }},
      {"enumerate", SMGRPROT_VIDENC_ENUMERATE_REQ, 24, true,
       [](HVIDENC) { return SessMgr_EnumerateVideoEncoders(nullptr, 0, 0, nullptr, nullptr, nullptr); }},
  };
  for (const FailureCase& c : cases) {
    SCOPED_TRACE(c.szName);
    peer.onNextRequest(c.wRequest, Reply::withResult(SMGR_ERROR_CODEC_NOT_STARTED));
    SessMgr_SetLastError(kSentinel);
    errno = 0;
    EXPECT_FALSE(c.call(hEncoder));
    EXPECT_EQ(SessMgr_GetLastError(), c.bReportsFailure ? SMGR_ERROR_CODEC_NOT_STARTED : kSentinel);
    auto request = peer.lastRequest(c.wRequest);
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->size(), c.nRequestSize);
    if (c.wRequest == SMGRPROT_VIDENC_ENUMERATE_REQ) {
      EXPECT_EQ(errno, static_cast<int>(SMGR_ERROR_CODEC_NOT_STARTED));
    } else {
      EXPECT_EQ(request->field<int32_t>(16), 7);
    }
    // A warning is no success in this family.
    peer.onNextRequest(c.wRequest, Reply::withResult(SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME));
    EXPECT_FALSE(c.call(hEncoder));
  }
  EXPECT_TRUE(SessMgr_CloseVideoEncoder(&hEncoder));
}

TEST_F(VideoEncoderPeerTest, TwoNamesOfOneIdShareTheHandleThatKeepsTheFirstName) {
  HVIDENC hFirst = Open("venc1", 4);
  HVIDENC hSecond = Open("main", 4);
  EXPECT_EQ(hFirst, hSecond);
  HVIDENC hAgain = nullptr;
  ASSERT_TRUE(SessMgr_OpenVideoEncoder("venc1", &hAgain));  // found by its name: nothing sent
  EXPECT_EQ(hAgain, hFirst);
  EXPECT_EQ(peer.requestCount(SMGRPROT_VIDENC_OPEN_REQ), 2u);
  EXPECT_EQ(peer.lastRequest(SMGRPROT_VIDENC_OPEN_REQ)->text(16, 64), "main");
  HVIDENC hThird = Open("main", 4);  // "main" is not the handle's name: asked again
  EXPECT_EQ(hThird, hFirst);
  EXPECT_EQ(LiveHandleCount(), 1u);
  for (int i = 0; i < 4; ++i) EXPECT_TRUE(SessMgr_CloseVideoEncoder(&hFirst));
  EXPECT_EQ(hFirst, hSecond) << "the caller's variable is kept";
  EXPECT_EQ(LiveHandleCount(), 0u);

  peer.onNextRequest(SMGRPROT_VIDENC_OPEN_REQ, Reply::withResult(SMGR_ERROR_NO_MATCHING_CODEC_FOUND));
  HVIDENC hMissing = hSecond;
  EXPECT_FALSE(SessMgr_OpenVideoEncoder("nope", &hMissing));
  EXPECT_EQ(hMissing, nullptr);
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_NO_MATCHING_CODEC_FOUND);
}

TEST_F(VideoEncoderPeerTest, ConfigureTakesTheCallersRecordSizeUpTo148) {
  HVIDENC hEncoder = Open("venc1", 2);
  unsigned char abCaller[200];
  std::memset(abCaller, 0xEE, sizeof(abCaller));
  SMGR_VIDEO_ENCODER_CFG* pCfg = reinterpret_cast<SMGR_VIDEO_ENCODER_CFG*>(abCaller);
  pCfg->nSize = 16;
  pCfg->SetFieldsFlag = SMGR_VIDENC_SET_DEBLOCK_OFFSETS;
  ASSERT_TRUE(SessMgr_ConfigureVideoEncoder(hEncoder, pCfg));
  auto request = peer.lastRequest(SMGRPROT_VIDENC_SETCFG_REQ);
  EXPECT_EQ(request->field<uint32_t>(20), 16u);
  EXPECT_EQ(request->field<uint64_t>(24), 0x80000u);
  EXPECT_EQ(request->field<int32_t>(32), static_cast<int32_t>(0xEEEEEEEE));  // enInputInterface
  for (size_t i = 36; i < request->size(); ++i) ASSERT_EQ(request->bytes()[i], 0) << "byte " << i;

  pCfg->nSize = 200;
  ASSERT_TRUE(SessMgr_ConfigureVideoEncoder(hEncoder, pCfg));
  request = peer.lastRequest(SMGRPROT_VIDENC_SETCFG_REQ);
  EXPECT_EQ(request->size(), 168u);
  EXPECT_EQ(request->field<uint32_t>(20), 200u);
  EXPECT_EQ(request->bytes()[167], 0xEE);
  EXPECT_TRUE(SessMgr_CloseVideoEncoder(&hEncoder));
}

TEST_F(VideoEncoderPeerTest, InfoCopiesTheCallersSizeNotTheReturnedOne) {
  HVIDENC hEncoder = Open("venc1", 2);
  SMGR_VIDEO_ENCODER_INFO answer{};
  answer.nSize = 100;  // an older daemon's claim, ignored
  std::strcpy(answer.szName, "venc1");
  answer.nAdaptedBitRateInKbps = 3500;
  peer.onNextRequest(SMGRPROT_VIDENC_GETINFO_REQ, Reply::ok().put(24, answer));
  SMGR_VIDEO_ENCODER_INFO info{};
  info.nSize = sizeof(info);
  ASSERT_TRUE(SessMgr_GetVideoEncoderInfo(hEncoder, &info));
  EXPECT_EQ(info.nSize, 220u);
  EXPECT_EQ(info.nAdaptedBitRateInKbps, 3500u);
  // A short reply copies what arrived, nothing more.
  peer.onNextRequest(SMGRPROT_VIDENC_GETSTATS_REQ, Reply::ok().size(30));
  SMGR_VIDEO_ENCODER_STATS stats{};
  stats.nSize = sizeof(stats);
  stats.nResets = 9;
  ASSERT_TRUE(SessMgr_GetVideoEncoderStats(hEncoder, &stats));
  EXPECT_EQ(stats.nSize, 6u);
  EXPECT_EQ(stats.nResets, 9u);
  EXPECT_TRUE(SessMgr_CloseVideoEncoder(&hEncoder));
}

TEST_F(VideoEncoderPeerTest, ControlRepliesReplaceTheCallersDataOnlyWhenTheyFit) {
  HVIDENC hEncoder = Open("venc1", 2);
  unsigned char abData[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  size_t nSize = 4;
  ASSERT_TRUE(SessMgr_ControlVideoEncoder(hEncoder, 42, abData, &nSize));  // reply nDataSize 0
  auto request = peer.lastRequest(SMGRPROT_VIDENC_CONTROL_REQ);
  EXPECT_EQ(request->field<int32_t>(20), 42);
  EXPECT_EQ(request->field<int32_t>(24), 4);
  EXPECT_EQ(request->field<uint32_t>(28), 0x04030201u);
  EXPECT_EQ(nSize, 4u);
  EXPECT_EQ(abData[0], 1);

  peer.onNextRequest(SMGRPROT_VIDENC_CONTROL_REQ, Reply::ok().put(20, uint32_t{2}).put(24, uint16_t{0x0909}));
  ASSERT_TRUE(SessMgr_ControlVideoEncoder(hEncoder, 42, abData, &nSize));
  EXPECT_EQ(nSize, 2u);
  EXPECT_EQ(abData[1], 9);

  peer.onNextRequest(SMGRPROT_VIDENC_CONTROL_REQ, Reply::ok().put(20, uint32_t{200}));
  SessMgr_SetLastError(kSentinel);
  EXPECT_FALSE(SessMgr_ControlVideoEncoder(hEncoder, 42, abData, &nSize));
  EXPECT_EQ(SessMgr_GetLastError(), kSentinel);
  EXPECT_EQ(nSize, 2u);
  EXPECT_EQ(abData[2], 3);

  ASSERT_TRUE(SessMgr_ControlVideoEncoder(hEncoder, 1, nullptr, nullptr));
  EXPECT_EQ(peer.lastRequest(SMGRPROT_VIDENC_CONTROL_REQ)->field<int32_t>(24), 0);
  EXPECT_TRUE(SessMgr_CloseVideoEncoder(&hEncoder));
}

TEST_F(VideoEncoderPeerTest, ParameterSetsAreBase64WithTheFullLengthBack) {
  HVIDENC hEncoder = Open("venc1", 2);
  const unsigned char abSps[] = {0x67, 0x42, 0x00, 0x1f};
  const unsigned char abPps[] = {0x68, 0xce, 0x3c, 0x80};
  peer.onNextRequest(SMGRPROT_VIDENC_GETSPSPPS_REQ,
                     Reply::ok()
                         .put(24, uint64_t{4} | (uint64_t{1} << 32))  // high half ignored
                         .bytes(32, abSps, 4)
                         .put(288, uint64_t{4})
                         .bytes(296, abPps, 4));
  char sz[10];
  size_t nSize = sizeof(sz);
  ASSERT_TRUE(SessMgr_GetVideoEncoderSPROP(hEncoder, sz, &nSize));
  EXPECT_STREQ(sz, "Z0IAHw==,");
  EXPECT_EQ(nSize, std::strlen("Z0IAHw==,aM48gA=="));

  for (uint64_t nLie : {uint64_t{257}, uint64_t{256}}) {  // over the field, over the 300-byte scratch
    peer.onNextRequest(SMGRPROT_VIDENC_GETSPSPPS_REQ, Reply::ok().put(24, nLie));
    SessMgr_SetLastError(kSentinel);
    nSize = sizeof(sz);
    EXPECT_FALSE(SessMgr_GetVideoEncoderSPROP(hEncoder, sz, &nSize));
    EXPECT_EQ(SessMgr_GetLastError(), kSentinel);
  }
  EXPECT_TRUE(SessMgr_CloseVideoEncoder(&hEncoder));
}

TEST_F(VideoEncoderPeerTest, EnumerationAsksForWholeRecordsAndNameAtIndexWantsExactlyOne) {
  SessMgr_SetLastError(kSentinel);
  EXPECT_TRUE(SessMgr_EnumerateVideoEncoders(nullptr, 220, 3, nullptr, nullptr, nullptr));
  EXPECT_EQ(SessMgr_GetLastError(), 0u) << "cleared first";
  auto request = peer.lastRequest(SMGRPROT_VIDENC_ENUMERATE_REQ);
  EXPECT_EQ(request->field<uint32_t>(16), 1u);
  EXPECT_EQ(request->field<uint32_t>(20), 3u);
  EXPECT_TRUE(SessMgr_EnumerateVideoEncoders(nullptr, 659, 0, nullptr, nullptr, nullptr));
  EXPECT_EQ(peer.lastRequest(SMGRPROT_VIDENC_ENUMERATE_REQ)->field<uint32_t>(16), 2u);

  char sz[16] = "kept";
  EXPECT_FALSE(SessMgr_GetVideoEncoderNameAtIndex(9, sz, sizeof(sz)));  // no record came back
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_NO_MATCHING_CODEC_FOUND);
  EXPECT_STREQ(sz, "kept");
  SMGR_VIDEO_ENCODER_INFO record{};
  std::strcpy(record.szName, "venc2");
  peer.onNextRequest(SMGRPROT_VIDENC_ENUMERATE_REQ, Reply::ok()
                                                        .size(sizeof(SMGRPROT_MSG_VIDENC_ENUMERATE_RSP))
                                                        .put(20, uint32_t{4})
                                                        .put(24, uint32_t{1})
                                                        .put(28, uint32_t{220})
                                                        .put(32, record));
  EXPECT_TRUE(SessMgr_GetVideoEncoderNameAtIndex(1, sz, 4));
  EXPECT_STREQ(sz, "ven");
}

}  // namespace
}  // namespace smgr::test
