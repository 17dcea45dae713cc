// Essence and ST 2110 synchronisation operations against the test peer: the
// departures the operation table cannot see (create's warning and its
// description at 88, the local identity check, the opened handle's copied
// fields, the statistics size rule, the shortened sync copy, exact bytes).
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "essence_internal.h"
#include "peer_fixture.h"
#include "smgr_protocol.h"
#include "trace_capture.h"

namespace smgr::test {
namespace {

class EssencePeerTest : public ConnectedPeerTest {
 protected:
  void SetUp() override {
    ConnectedPeerTest::SetUp();
    for (WORD w : {SMGRPROT_ESSENCE_DELETE_RSP, SMGRPROT_ESSENCE_STOP_RSP, SMGRPROT_ESSENCE_RESETSTATS_RSP,
                   SMGRPROT_ESSENCE_CLOSE_RSP, SMGRPROT_2110_SYNC_SETMODE_RSP})
      peer.setReplySize(w, 20);
    peer.setReplySize(SMGRPROT_ESSENCE_CREATE_RSP, sizeof(SMGRPROT_MSG_ESSENCE_CREATE_RSP));
    peer.setReplySize(SMGRPROT_ESSENCE_OPEN_RSP, sizeof(SMGRPROT_MSG_ESSENCE_INFO_RSP));
    peer.setReplySize(SMGRPROT_ESSENCE_GETSTATS_RSP, sizeof(SMGRPROT_MSG_ESSENCE_GETSTATS_RSP));
    peer.setReplySize(SMGRPROT_2110_SYNC_GETINFO_RSP, sizeof(SMGRPROT_MSG_2110_SYNC_GETINFO_RSP));
  }

  static SMGR_ESSENCE_CFG Audio(const char* szName, int nIndex = 0) {
    SMGR_ESSENCE_CFG cfg{};
    cfg.nSize = sizeof(cfg);
    cfg.nIndex = nIndex;
    std::strncpy(cfg.szName, szName, sizeof(cfg.szName) - 1);
    cfg.nInputChannel = 2;
    cfg.enMediaType = SMGR_ESSENCE_MEDIA_TYPE_AUDIO;
    cfg.Media.Audio.nNumOfChannels = 99;  // the daemon judges it, not the library
    cfg.nRTPPayload = 97;
    cfg.usPort = 5004;
    return cfg;
  }
  static SMGR_OBJECT_SELECTOR Select(int enType, int nID = 0, const void* pv = nullptr) {
    SMGR_OBJECT_SELECTOR s{};
    s.enType = enType;
    if (enType == SMGR_SELECTBY_OBJECT_ID) s.Via.ID = nID;
    if (enType == SMGR_SELECTBY_OBJECT_NAME) s.Via.szName = static_cast<const char*>(pv);
    if (enType == SMGR_SELECTBY_OBJECT_HANDLE) s.Via.Handle = const_cast<void*>(pv);
    return s;
  }
  void AnswerCreate(int nID, const char* szName, SMGR_RESULT result = 0) {
    char name[64] = {};
    std::strncpy(name, szName, sizeof(name) - 1);
    peer.onNextRequest(SMGRPROT_ESSENCE_CREATE_REQ,
                       Reply::withResult(result).put(20, nID).bytes(24, name, sizeof(name)));
  }
};

TEST_F(EssencePeerTest, TracesKeepTheirQuirks) {
  TraceCapture traces(6);
  SMGR_ESSENCE_CFG cfg = Audio("t");
  cfg.Media.Video.enInputFormat = 0x80000001E008703Bull;  // 1920x1080i29, printed with "%d"
  cfg.enMediaType = SMGR_ESSENCE_MEDIA_TYPE_VIDEO;
  HESSENCE hEssence = nullptr;
  AnswerCreate(1, "t");
  ASSERT_TRUE(SessMgr_CreateEssence(&cfg, &hEssence));
  EXPECT_TRUE(traces.has("nInputChannel= 2.\n"));
  EXPECT_TRUE(traces.has("usPort =  5004.\n"));
  EXPECT_TRUE(traces.has("Media.Video.enInputFormat = \"1920x1080i29\":-536317893.\n"));
  cfg.SetFieldsFlag = SMGR_ESSENCE_SET_PORT | SMGR_ESSENCE_SET_AUDIO_PACKET_TIME;
  SMGR_OBJECT_SELECTOR byId = Select(SMGR_SELECTBY_OBJECT_ID, 1);
  SessMgr_ConfigureEssence(&byId, &cfg);
  EXPECT_TRUE(traces.has("SetFieldsFlag = 0x0000000000002040.\n"));
  EXPECT_TRUE(traces.has("Setting PORT to 5004.\n"));
  EXPECT_TRUE(traces.hasFragment("Setting SMGR_ESSENCE_AUDIO_PACKET_TIME to \"(Invalid:"));
  EXPECT_TRUE(SessMgr_CloseEssence(&hEssence));
}

TEST_F(EssencePeerTest, CreateFailureReadsTheDescriptionAt88AndFreesTheHandle) {
  char text[160] = "address in use by essence 3";
  peer.onNextRequest(SMGRPROT_ESSENCE_CREATE_REQ,
                     Reply::withResult(0x10000003u).bytes(88, text, sizeof(text)));
  SMGR_ESSENCE_CFG cfg = Audio("dup");
  HESSENCE hEssence = nullptr;
  EXPECT_FALSE(SessMgr_CreateEssence(&cfg, &hEssence));
  EXPECT_EQ(SessMgr_GetLastError(), 0x10000003u);
  char szError[400];
  EXPECT_NE(std::string(SessMgr_GetLastErrorString(szError, sizeof(szError))).find(text), std::string::npos)
      << szError;
  EXPECT_EQ(smgr::EssenceHandles::Count(), 0u);
}

TEST_F(EssencePeerTest, CreateKeepsAWarningAndIdentityIsNameIgnoringCaseElseIndex) {
  AnswerCreate(4, "Cam", SMGR_WARNING_TOO_MANY_ESSENCES_TO_START);
  HESSENCE hCam = nullptr;
  SMGR_ESSENCE_CFG cam = Audio("Cam");
  ASSERT_TRUE(SessMgr_CreateEssence(&cam, &hCam));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_WARNING_TOO_MANY_ESSENCES_TO_START);
  auto request = peer.lastRequest(SMGRPROT_ESSENCE_CREATE_REQ);
  ASSERT_EQ(request->size(), 1188u);
  EXPECT_EQ(std::memcmp(request->bytes().data() + 16, &cam, sizeof(cam)), 0);  // as given, no media check
  int nID = 0;
  ASSERT_TRUE(SessMgr_GetEssenceID(hCam, &nID));
  EXPECT_EQ(nID, 4);

  SMGR_ESSENCE_CFG other = Audio("cAM");
  other.usPort = 6000;
  HESSENCE hOther = nullptr;
  EXPECT_FALSE(SessMgr_CreateEssence(&other, &hOther));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_ID_IN_USE);
  SMGR_ESSENCE_CFG byIndex = Audio("", 4);
  EXPECT_FALSE(SessMgr_CreateEssence(&byIndex, &hOther));
  EXPECT_EQ(peer.requestCount(SMGRPROT_ESSENCE_CREATE_REQ), 1u);

  // Unnamed with index 0 never clash locally, whatever their addresses.
  HESSENCE hA = nullptr, hB = nullptr;
  SMGR_ESSENCE_CFG unnamed = Audio("");
  AnswerCreate(8, "");
  ASSERT_TRUE(SessMgr_CreateEssence(&unnamed, &hA));
  AnswerCreate(9, "");
  ASSERT_TRUE(SessMgr_CreateEssence(&unnamed, &hB));
  EXPECT_EQ(peer.requestCount(SMGRPROT_ESSENCE_CREATE_REQ), 3u);
  for (HESSENCE* ph : {&hCam, &hA, &hB}) EXPECT_TRUE(SessMgr_CloseEssence(ph));
}

TEST_F(EssencePeerTest, OpenedHandleCopiesTheInformationButNotChannelPayloadOrSource) {
  SMGR_ESSENCE_INFO info{};
  info.nSize = sizeof(info);
  info.nIndex = 3;
  std::strcpy(info.szName, "ess3");
  info.nInputChannel = 2;
  info.enMediaType = SMGR_ESSENCE_MEDIA_TYPE_AUDIO;
  info.Media.Audio = {8, SMGR_AUDIO_ESSENCE_SAMPLE_MODE_L24, SMGR_AUDIO_ESSENCE_SAMPLE_FREQUENCY_48000HZ, 2};
  info.nRTPPayload = 97;
  info.Address.enType = SMGR_IPV4_ADDRESS;
  info.Address.acAddress[0] = 239;
  info.SourceAddress.acAddress[0] = 10;
  peer.onNextRequest(SMGRPROT_ESSENCE_OPEN_REQ, Reply::ok().bytes(20, &info, sizeof(info)));
  SMGR_OBJECT_SELECTOR byName = Select(SMGR_SELECTBY_OBJECT_NAME, 0, "ess3");
  HESSENCE h1 = nullptr, h2 = nullptr;
  ASSERT_TRUE(SessMgr_OpenEssence(&byName, &h1));
  ASSERT_TRUE(SessMgr_OpenEssence(&byName, &h2));
  EXPECT_EQ(h1, h2);
  EXPECT_EQ(peer.requestCount(SMGRPROT_ESSENCE_OPEN_REQ), 1u);

  const SMGR_ESSENCE_CFG& cfg = h1->Config;
  EXPECT_EQ(h1->nRefCount, 2);
  EXPECT_EQ(cfg.nSize, 1172u);
  EXPECT_EQ(cfg.nIndex, 3);
  EXPECT_EQ(cfg.Media.Audio.nNumOfChannels, 8u);
  EXPECT_EQ(cfg.Address.acAddress[0], 239);
  EXPECT_EQ(cfg.nInputChannel, 0u);
  EXPECT_EQ(cfg.nRTPPayload, 0u);
  EXPECT_EQ(cfg.SourceAddress.acAddress[0], 0);

  EXPECT_TRUE(SessMgr_CloseEssence(&h1));
  EXPECT_TRUE(SessMgr_CloseEssence(&h2));
  EXPECT_EQ(peer.requestCount(SMGRPROT_ESSENCE_CLOSE_REQ), 2u);
  EXPECT_EQ(peer.lastRequest(SMGRPROT_ESSENCE_CLOSE_REQ)->field<int32_t>(16), 3);
}

TEST_F(EssencePeerTest, ConfigureRefusesAHandleSelectorAndSendsAShortRecordPadded) {
  AnswerCreate(6, "v");
  HESSENCE hEssence = nullptr;
  SMGR_ESSENCE_CFG cfg = Audio("v");
  ASSERT_TRUE(SessMgr_CreateEssence(&cfg, &hEssence));
  SessMgr_SetLastError(1234);
  SMGR_OBJECT_SELECTOR byHandle = Select(SMGR_SELECTBY_OBJECT_HANDLE, 0, hEssence);
  EXPECT_FALSE(SessMgr_ConfigureEssence(&byHandle, &cfg));
  EXPECT_EQ(SessMgr_GetLastError(), 1234u);
  EXPECT_EQ(peer.requestCount(SMGRPROT_ESSENCE_SETCFG_REQ), 0u);
  // Start takes the handle: the daemon sees its ID.
  EXPECT_TRUE(SessMgr_StartEssence(&byHandle));
  EXPECT_EQ(peer.lastRequest(SMGRPROT_ESSENCE_START_REQ)->field<int32_t>(20), 6);

  cfg.nSize = offsetof(SMGR_ESSENCE_CFG, usPort);
  cfg.SetFieldsFlag = SMGR_ESSENCE_SET_PORT;
  SMGR_OBJECT_SELECTOR byId = Select(SMGR_SELECTBY_OBJECT_ID, 6);
  EXPECT_TRUE(SessMgr_ConfigureEssence(&byId, &cfg));
  auto sent = peer.lastRequest(SMGRPROT_ESSENCE_SETCFG_REQ);
  ASSERT_EQ(sent->size(), 1256u);
  EXPECT_EQ(sent->field<uint64_t>(84 + 4), SMGR_ESSENCE_SET_PORT);
  EXPECT_EQ(sent->field<uint16_t>(84 + 636), 0);  // beyond the caller's nSize
  EXPECT_TRUE(SessMgr_CloseEssence(&hEssence));
}

TEST_F(EssencePeerTest, StatsNeedAWhole48ByteRecord) {
  SMGR_OBJECT_SELECTOR byId = Select(SMGR_SELECTBY_OBJECT_ID, 1);
  SMGR_ESSENCE_STATS stats{};
  stats.nSize = 47;
  EXPECT_FALSE(SessMgr_GetEssenceStats(&byId, &stats));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_EQ(peer.requestCount(SMGRPROT_ESSENCE_GETSTATS_REQ), 0u);
  stats.nSize = 48;
  peer.onNextRequest(SMGRPROT_ESSENCE_GETSTATS_REQ,
                     Reply::ok().put(20, uint32_t{48}).put(24, int32_t{1}).put(32, uint64_t{777}));
  ASSERT_TRUE(SessMgr_GetEssenceStats(&byId, &stats));
  EXPECT_EQ(stats.enState, 1);
  EXPECT_EQ(stats.nRxPackets, 777u);
}

TEST_F(EssencePeerTest, SyncInfoCopiesOnlyTheCallersSizeAndSetModeSendsAZeroSelector) {
  SMGR_2110_SYNC_INFO info;
  std::memset(&info, 0xEE, sizeof(info));
  info.nSize = 12;
  peer.onNextRequest(
      SMGRPROT_2110_SYNC_GETINFO_REQ,
      Reply::ok().put(20, uint32_t{40}).put(24, int32_t{1}).put(28, int32_t{1}).put(32, uint64_t{55}));
  ASSERT_TRUE(SessMgr_Get2110SyncInfo(&info));
  EXPECT_EQ(info.nSize, 12u);
  EXPECT_EQ(info.enSyncMode, 1);
  EXPECT_EQ(info.bSynchronized, 1);
  EXPECT_EQ(info.nPrecisionInNanoSecs, 0xEEEEEEEEEEEEEEEEull);
  EXPECT_EQ(peer.lastRequest(SMGRPROT_2110_SYNC_GETINFO_REQ)->size(), 16u);

  ASSERT_TRUE(SessMgr_Set2110ClockMode(-7));
  auto request = peer.lastRequest(SMGRPROT_2110_SYNC_SETMODE_REQ);
  ASSERT_EQ(request->size(), 88u);
  const Bytes zero(68, 0);
  EXPECT_EQ(std::memcmp(request->bytes().data() + 16, zero.data(), zero.size()), 0);
  EXPECT_EQ(request->field<int32_t>(84), -7);
}

TEST_F(EssencePeerTest, NameAtIndexAsksForOneAndAnswers283ForNone) {
  peer.setReplySize(SMGRPROT_ESSENCE_ENUMERATE_RSP, 32);
  peer.onNextRequest(SMGRPROT_ESSENCE_ENUMERATE_REQ, Reply::ok().put(20, uint32_t{2}));
  char szName[16] = "x";
  EXPECT_FALSE(SessMgr_GetEssenceNameAtIndex(5, szName, sizeof(szName)));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_NO_MATCHING_ESSENCE_FOUND);
  auto request = peer.lastRequest(SMGRPROT_ESSENCE_ENUMERATE_REQ);
  EXPECT_EQ(request->field<uint32_t>(16), 1u);
  EXPECT_EQ(request->field<uint32_t>(20), 5u);
}

}  // namespace
}  // namespace smgr::test
