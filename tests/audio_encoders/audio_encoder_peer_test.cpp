// Audio encoder departures against the test peer: handles shared by name then
// by the daemon's ID with a silent close, size floors with exact request bytes,
// the last-error differences (untouched on info/stats/reset refusals,
// enumerate's errno), mute's value as given, and the personality input texts
// (the language text's departures are rows of the operation table).
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "audio_encoder_internal.h"
#include "lib_state.h"
#include "peer_fixture.h"
#include "test_peer.h"
#include "util_cfgfile.h"

namespace smgr::test {
namespace {

constexpr SMGR_RESULT kSentinel = 0x0BADF00Du;

class AudioEncoders : public ConnectedPeerTest {
 protected:
  void SetUp() override {
    ConnectedPeerTest::SetUp();
    peer.onRequest(SMGRPROT_AUDENC_OPEN_REQ, [](const Request& request) {
      const int nId =
          request.text(16, 64) == "aenc-second-name" ? 5 : 5 + static_cast<int>(request.text(16, 64).size());
      return Reply::ok().size(24).put(20, nId);
    });
    ASSERT_TRUE(SessMgr_OpenAudioEncoder("aenc1", &hEncoder));  // ID 10
  }
  HAUDENC hEncoder = nullptr;
};

TEST_F(AudioEncoders, OpenSharesByNameThenByIdAndCloseIsLocal) {
  auto open = peer.lastRequest(SMGRPROT_AUDENC_OPEN_REQ);
  ASSERT_TRUE(open);
  EXPECT_EQ(open->size(), 80u);
  EXPECT_EQ(open->text(16, 64), "aenc1");

  HAUDENC hAgain = nullptr, hOther = nullptr, hFive = nullptr, hSecond = nullptr;
  ASSERT_TRUE(SessMgr_OpenAudioEncoder("aenc1", &hAgain));
  EXPECT_EQ(hAgain, hEncoder);
  EXPECT_EQ(peer.requestCount(SMGRPROT_AUDENC_OPEN_REQ), 1u)
      << "a name open in the process is not asked again";
  ASSERT_TRUE(SessMgr_OpenAudioEncoder("aenc2", &hOther));  // ID 10 too: the first name's handle
  EXPECT_EQ(hOther, hEncoder);
  EXPECT_STREQ(hEncoder->szName, "aenc1");
  EXPECT_EQ(hEncoder->nRefCount, 3);
  ASSERT_TRUE(SessMgr_OpenAudioEncoder("aenc-second-name", &hFive));
  ASSERT_TRUE(SessMgr_OpenAudioEncoder("aenc-second-name", &hSecond));
  EXPECT_NE(hFive, hEncoder);
  EXPECT_EQ(peer.requestCount(SMGRPROT_AUDENC_OPEN_REQ), 3u);

  const size_t nRequests = peer.requests().size();
  HAUDENC hCopy = hEncoder;
  for (int i = 0; i < 3; ++i) ASSERT_TRUE(SessMgr_CloseAudioEncoder(&hCopy));
  EXPECT_EQ(hCopy, hEncoder) << "close leaves the caller's variable";
  EXPECT_TRUE(SessMgr_CloseAudioEncoder(&hFive));
  EXPECT_TRUE(SessMgr_CloseAudioEncoder(&hFive));
  EXPECT_EQ(peer.requests().size(), nRequests) << "close sends nothing";
  EXPECT_EQ(LiveHandleCount(), 0u);
  hEncoder = nullptr;
}

TEST_F(AudioEncoders, SizeFloorsRejectShortRecordsAndSendTheCurrentRecordOnly) {
  SMGR_AUDIO_ENCODER_CFG cfg[2];
  std::memset(cfg, 0x77, sizeof(cfg));
  cfg[0].nSize = 60;
  EXPECT_FALSE(SessMgr_ConfigureAudioEncoder(hEncoder, cfg));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_EQ(peer.requestCount(SMGRPROT_AUDENC_SETCFG_REQ), 0u);
  cfg[0].nSize = 80;
  peer.onNextRequest(SMGRPROT_AUDENC_SETCFG_REQ, Reply::ok().size(20));
  ASSERT_TRUE(SessMgr_ConfigureAudioEncoder(hEncoder, cfg));
  auto request = peer.lastRequest(SMGRPROT_AUDENC_SETCFG_REQ);
  ASSERT_TRUE(request);
  ASSERT_EQ(request->size(), 84u);
  EXPECT_EQ(request->field<int32_t>(16), 10);
  EXPECT_EQ(std::memcmp(request->bytes().data() + 20, cfg, 64), 0);

  peer.onRequest(SMGRPROT_AUDENC_GETINFO_REQ, [](const Request&) {
    SMGR_AUDIO_ENCODER_INFO sent{};
    sent.nSize = 204;
    std::strcpy(sent.szName, "aenc1");
    return Reply::ok().size(228).put(24, sent);
  });
  SMGR_AUDIO_ENCODER_INFO info[2];
  std::memset(info, 0x66, sizeof(info));
  info[0].nSize = 300;
  ASSERT_TRUE(SessMgr_GetAudioEncoderInfo(hEncoder, info));
  EXPECT_EQ(info[0].nSize, 204u);
  EXPECT_STREQ(info[0].szName, "aenc1");
  EXPECT_EQ(reinterpret_cast<uint8_t*>(info)[204], 0x66) << "nothing beyond the current record";
}

TEST_F(AudioEncoders, RefusalsSetTheLastErrorOnlyWhereTheFamilySaysSo) {
  for (WORD wType :
       {SMGRPROT_AUDENC_GETINFO_REQ, SMGRPROT_AUDENC_GETSTATS_REQ, SMGRPROT_AUDENC_RESETSTATS_REQ})
    peer.onRequest(wType, [](const Request&) { return Reply::withResult(31).size(228); });
  SMGR_AUDIO_ENCODER_INFO info{};
  info.nSize = sizeof(info);
  SMGR_AUDIO_ENCODER_STATS stats{};
  stats.nSize = sizeof(stats);
  SessMgr_SetLastError(kSentinel);
  EXPECT_FALSE(SessMgr_GetAudioEncoderInfo(hEncoder, &info));
  EXPECT_FALSE(SessMgr_GetAudioEncoderStats(hEncoder, &stats));
  EXPECT_FALSE(SessMgr_ResetAudioEncoderStats(hEncoder));
  EXPECT_EQ(SessMgr_GetLastError(), kSentinel);

  peer.onNextRequest(SMGRPROT_AUDENC_START_REQ, Reply::withResult(30).size(20));
  EXPECT_FALSE(SessMgr_StartAudioEncoder(hEncoder));
  EXPECT_EQ(SessMgr_GetLastError(), 30u);

  SessMgr_SetLastError(kSentinel);
  peer.onNextRequest(SMGRPROT_AUDENC_ENUMERATE_REQ, Reply::withResult(0x1234).size(32));
  errno = 0;
  EXPECT_FALSE(SessMgr_EnumerateAudioEncoders(nullptr, 0, 0, nullptr, nullptr, nullptr));
  EXPECT_EQ(errno, 0x1234) << "the refusal reaches errno";
  EXPECT_EQ(SessMgr_GetLastError(), kSentinel) << "but not the last error";

  peer.onNextRequest(SMGRPROT_AUDENC_ENUMERATE_REQ, Reply::ok().size(32).put(20, DWORD{3}));
  char szName[16] = "x";
  EXPECT_FALSE(SessMgr_GetAudioEncoderNameAtIndex(3, szName, sizeof(szName)));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_NO_MATCHING_CODEC_FOUND);
  auto request = peer.lastRequest(SMGRPROT_AUDENC_ENUMERATE_REQ);
  ASSERT_TRUE(request);
  EXPECT_EQ(request->field<DWORD>(16), 1u) << "one 204-byte record";
  EXPECT_EQ(request->field<DWORD>(20), 3u);
}

TEST_F(AudioEncoders, MuteSendsItsValueAsGivenAndNotInitialisedIsABadArgument) {
  peer.onNextRequest(SMGRPROT_AUDENC_MUTE_REQ, Reply::ok().size(20));
  ASSERT_TRUE(SessMgr_MuteAudioEncoder(hEncoder, 2));
  auto request = peer.lastRequest(SMGRPROT_AUDENC_MUTE_REQ);
  ASSERT_TRUE(request);
  EXPECT_EQ(request->size(), 24u);
  EXPECT_EQ(request->field<int32_t>(16), 10);
  EXPECT_EQ(request->field<BOOL>(20), 2);

  ShutdownLibraryCompletely();
  HAUDENC hNew = nullptr;
  EXPECT_FALSE(SessMgr_OpenAudioEncoder("aenc1", &hNew));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
}

TEST(AudioEncoderNames, InputTextsFollowThePersonality) {
  char sz[16];
  const int enSaved = g_enPersonality;
  g_enPersonality = VDR2_PERSONALITY_SDI;
  EXPECT_STREQ(SessMgr_GetAudioEncoderInputTypeString(13, sz, sizeof(sz)), "SDI2Ch9+10");
  EXPECT_STREQ(SessMgr_GetAudioEncoderInputTypeString(0, sz, sizeof(sz)), "Analog");
  g_enPersonality = VDR2_PERSONALITY_2110;
  EXPECT_STREQ(SessMgr_GetAudioEncoderInputTypeString(13, sz, sizeof(sz)), "2Ch9+10");
  EXPECT_STREQ(SessMgr_GetAudioEncoderInputTypeString(33, sz, sizeof(sz)), "(Invalid:33)");
  g_enPersonality = enSaved;
  EXPECT_STREQ(SessMgr_GetAudioEncoderCaptureStateString(1, sz, sizeof(sz)), "CAPTURING");
}

}  // namespace
}  // namespace smgr::test
