// Metadata sources against the test peer: what the library rewrites or refuses
// before a create or configure, the exact request bytes, handle sharing, the
// one-item enumeration, and the statistics floor and sort.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "lib_state.h"
#include "peer_fixture.h"
#include "row_kit.h"

namespace smgr::test {
namespace {

using ::testing::HasSubstr;

constexpr size_t kInfo = offsetof(SMGRPROT_MSG_METADATA_INFO_RSP, Data.MetaDataInfo);

class MetaDataPeerTest : public ConnectedPeerTest {
 protected:
  void SetUp() override {
    ConnectedPeerTest::SetUp();
    for (WORD w : {SMGRPROT_METADATA_DELETE_RSP, SMGRPROT_METADATA_CLOSE_RSP, SMGRPROT_METADATA_STOP_RSP,
                   SMGRPROT_METADATA_RESETSTATS_RSP})
      peer.setReplySize(w, sizeof(SMGRPROT_MSG_METADATA_RESULT_RSP));
    peer.setReplySize(SMGRPROT_METADATA_CREATE_RSP, sizeof(SMGRPROT_MSG_METADATA_CREATE_RSP));
    peer.setReplySize(SMGRPROT_METADATA_OPEN_RSP, sizeof(SMGRPROT_MSG_METADATA_INFO_RSP));
    peer.setReplySize(SMGRPROT_METADATA_GETSTATS_RSP, sizeof(SMGRPROT_MSG_METADATA_GETSTATS_RSP));
    peer.setReplySize(SMGRPROT_METADATA_ENUMERATE_RSP, sizeof(SMGRPROT_MSG_METADATA_ENUMERATE_RSP));
  }

  static SMGR_METADATA_CFG Serial(const char* szDevice) {
    SMGR_METADATA_CFG cfg{};
    cfg.nSize = sizeof(cfg);
    std::strcpy(cfg.in.Serial.szInputDeviceName, szDevice);
    return cfg;
  }
  static SMGR_METADATA_CFG Udp(uint8_t bAddress, uint16_t usPort) {
    SMGR_METADATA_CFG cfg{};
    cfg.nSize = sizeof(cfg);
    cfg.enInputType = SMGR_METADATA_IN_TYPE_INET;
    cfg.in.Network.Address.acAddress[0] = bAddress;
    cfg.in.Network.usPort = usPort;
    return cfg;
  }
  static void SetRelay(SMGR_METADATA_CFG* pCfg, int i, uint8_t bLast, uint16_t usPort) {
    pCfg->Relays[i].Address.enType = SMGR_IPV4_ADDRESS;
    const uint8_t ab[4] = {10, 0, 0, bLast};
    std::memcpy(pCfg->Relays[i].Address.acAddress, ab, 4);
    pCfg->Relays[i].usPort = usPort;
    if (pCfg->nNumOfRelays < static_cast<uint32_t>(i + 1)) pCfg->nNumOfRelays = i + 1;
  }
  void AnswerCreate(int nID, const char* szName) {
    char name[64] = {};
    std::strncpy(name, szName, sizeof(name) - 1);
    peer.onNextRequest(SMGRPROT_METADATA_CREATE_REQ, Reply::ok().put(20, nID).bytes(24, name, sizeof(name)));
  }
  SMGR_METADATA_CFG SentCreate() {
    return peer.lastRequest(SMGRPROT_METADATA_CREATE_REQ)
        ->as<SMGRPROT_MSG_METADATA_CREATE_REQ>()
        .Data.MetaDataCfg;
  }
  std::string LastErrorText() {
    char sz[256];
    return SessMgr_GetLastErrorString(sz, sizeof(sz));
  }
};

TEST_F(MetaDataPeerTest, CreateSendsTheNormalisedRecordAndLeavesTheCallersAlone) {
  SMGR_METADATA_CFG cfg = Serial("/dev/ttyS1");
  std::strcpy(cfg.szClassifyingCountry, "usa");
  std::strcpy(cfg.szObjectCountry, "gbr;fra");
  cfg.UASTagFilter[0] = 1u << 5;
  cfg.bEnableRelaying = FALSE;  // relays are resolved and checked all the same
  cfg.nNumOfRelays = 2;
  for (int i : {0, 1}) {
    cfg.Relays[i].Address.enType = SMGR_UNRESOLVED_HOSTNAME;
    std::strcpy(cfg.Relays[i].Address.szHostName, "localhost");  // resolved twice: never a duplicate
  }
  const SMGR_METADATA_CFG before = cfg;
  AnswerCreate(7, "Metadata7");
  HMETADATA hSource = nullptr;
  ASSERT_TRUE(SessMgr_CreateMetaDataSource(&cfg, &hSource)) << SessMgr_GetLastError();
  EXPECT_EQ(std::memcmp(&cfg, &before, sizeof(cfg)), 0);

  auto request = peer.lastRequest(SMGRPROT_METADATA_CREATE_REQ);
  ASSERT_EQ(request->size(), 5356u);
  SMGR_METADATA_CFG sent = SentCreate();
  EXPECT_STREQ(sent.szClassifyingCountry, "USA");
  EXPECT_STREQ(sent.szObjectCountry, "GBR;FRA");
  EXPECT_EQ(sent.enClassification, SMGR_METADATA_CLASSIFICATION_UNCLASSIFIED);
  EXPECT_EQ(sent.UASTagFilter[0], (1u << 5) | (1u << 1));
  EXPECT_EQ(sent.Relays[0].Address.enType, SMGR_HOSTNAME_RESOLVED_AS_IPV4);
  EXPECT_EQ(sent.Relays[1].Address.enType, SMGR_HOSTNAME_RESOLVED_AS_IPV4);
  int nID = 0;
  ASSERT_TRUE(SessMgr_GetMetaDataSourceID(hSource, &nID));
  EXPECT_EQ(nID, 7);

  // A second source with an all-zero filter and a classification asked for keeps both.
  SMGR_METADATA_CFG other = Serial("/dev/ttyS2");
  other.bClassifyMission = TRUE;
  AnswerCreate(8, "Metadata8");
  HMETADATA hOther = nullptr;
  ASSERT_TRUE(SessMgr_CreateMetaDataSource(&other, &hOther));
  EXPECT_EQ(SentCreate().UASTagFilter[0], 0u);
  EXPECT_EQ(SentCreate().enClassification, 0);
  EXPECT_TRUE(SessMgr_CloseMetaDataSource(&hSource));
  EXPECT_TRUE(SessMgr_CloseMetaDataSource(&hOther));
}

TEST_F(MetaDataPeerTest, RelaysToOneAddressOnTwoPortsAreDuplicatesAndNothingIsSent) {
  SMGR_METADATA_CFG cfg = Serial("/dev/ttyS1");
  SetRelay(&cfg, 0, 1, 5000);
  SetRelay(&cfg, 1, 1, 6000);
  HMETADATA hSource = nullptr;
  EXPECT_FALSE(SessMgr_CreateMetaDataSource(&cfg, &hSource));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DUPLICATE_METADATA_RELAY_ADDRESS);
  EXPECT_THAT(LastErrorText(), HasSubstr("Relay #2 has duplicate IP address"));

  cfg.Relays[1].Address.enType = SMGR_UNRESOLVED_HOSTNAME;
  std::strcpy(cfg.Relays[1].Address.szHostName, "relay.invalid");
  EXPECT_FALSE(SessMgr_CreateMetaDataSource(&cfg, &hSource));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_METADATA_RELAY_ADDRESS);
  EXPECT_THAT(LastErrorText(), HasSubstr("Relay #2 has unresolvable host name \"relay.invalid\""));
  EXPECT_EQ(peer.requestCount(SMGRPROT_METADATA_CREATE_REQ), 0u);
  EXPECT_EQ(LiveHandleCount(), 0u);
}

TEST_F(MetaDataPeerTest, AnIdenticalOpenSourceRefusesTheCreateLocally) {
  AnswerCreate(3, "udp");
  HMETADATA hUdp = nullptr;
  SMGR_METADATA_CFG udp = Udp(10, 5000);
  ASSERT_TRUE(SessMgr_CreateMetaDataSource(&udp, &hUdp));
  AnswerCreate(4, "serial");
  HMETADATA hSerial = nullptr;
  SMGR_METADATA_CFG serial = Serial("/dev/ttyS1");
  ASSERT_TRUE(SessMgr_CreateMetaDataSource(&serial, &hSerial));

  HMETADATA hNew = nullptr;
  SMGR_METADATA_CFG samePort = Udp(20, 5000);  // another address, same port
  EXPECT_FALSE(SessMgr_CreateMetaDataSource(&samePort, &hNew));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_ID_IN_USE);
  SMGR_METADATA_CFG sameDevice = Serial("/dev/ttyS1");
  EXPECT_FALSE(SessMgr_CreateMetaDataSource(&sameDevice, &hNew));
  SMGR_METADATA_CFG sameName = Serial("/dev/ttyS9");
  std::strcpy(sameName.szName, "UDP");  // the daemon's name, case ignored
  EXPECT_FALSE(SessMgr_CreateMetaDataSource(&sameName, &hNew));
  EXPECT_EQ(peer.requestCount(SMGRPROT_METADATA_CREATE_REQ), 2u);

  SMGR_METADATA_CFG video1{}, video2{};
  video1.enInputType = video2.enInputType = SMGR_METADATA_IN_TYPE_VIDEO_INPUT;
  EXPECT_FALSE(AreMetaDataSrcConfigsIdentical(&video1, &video2));
  EXPECT_TRUE(SessMgr_CloseMetaDataSource(&hUdp));
  EXPECT_TRUE(SessMgr_CloseMetaDataSource(&hSerial));
}

TEST_F(MetaDataPeerTest, ConfigureRunsOnlyTheFlaggedStepsAndSendsTheWholeRecord) {
  SMGR_METADATA_CFG cfg = Serial("/dev/ttyS1");
  std::strcpy(cfg.szClassifyingCountry, "usa");
  cfg.UASTagFilter[1] = 1;
  SetRelay(&cfg, 0, 1, 5000);
  SetRelay(&cfg, 1, 1, 5001);
  SMGR_OBJECT_SELECTOR selector = ByName("klv1");
  ASSERT_TRUE(SessMgr_ConfigureMetaDataSource(&selector, &cfg));  // nothing flagged: sent as it is
  auto sent = peer.lastRequest(SMGRPROT_METADATA_SETCFG_REQ)->as<SMGRPROT_MSG_METADATA_SETCFG_REQ>();
  EXPECT_EQ(peer.lastRequest(SMGRPROT_METADATA_SETCFG_REQ)->size(), 5424u);
  EXPECT_STREQ(sent.Data.Select.Via.szName, "klv1");
  EXPECT_EQ(std::memcmp(&sent.Data.Config, &cfg, sizeof(cfg)), 0);

  cfg.SetFieldsFlag = SMGR_METADATA_SET_CLASSIFYING_COUNTRY | SMGR_METADATA_SET_UAS_TAG_FILTER;
  ASSERT_TRUE(SessMgr_ConfigureMetaDataSource(&selector, &cfg));
  sent = peer.lastRequest(SMGRPROT_METADATA_SETCFG_REQ)->as<SMGRPROT_MSG_METADATA_SETCFG_REQ>();
  EXPECT_STREQ(sent.Data.Config.szClassifyingCountry, "USA");
  EXPECT_EQ(sent.Data.Config.UASTagFilter[0], 1u << 1);
  EXPECT_EQ(sent.Data.Config.enClassification, 0);  // never defaulted on configure

  cfg.SetFieldsFlag = SMGR_METADATA_SET_RELAYS;
  EXPECT_FALSE(SessMgr_ConfigureMetaDataSource(&selector, &cfg));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DUPLICATE_METADATA_RELAY_ADDRESS);
  EXPECT_EQ(peer.requestCount(SMGRPROT_METADATA_SETCFG_REQ), 2u);

  cfg.SetFieldsFlag = 0;
  cfg.nSize = offsetof(SMGR_METADATA_CFG, in);  // an older caller: zeros from there on
  ASSERT_TRUE(SessMgr_ConfigureMetaDataSource(&selector, &cfg));
  sent = peer.lastRequest(SMGRPROT_METADATA_SETCFG_REQ)->as<SMGRPROT_MSG_METADATA_SETCFG_REQ>();
  EXPECT_EQ(sent.Data.Config.in.Serial.szInputDeviceName[0], '\0');
  EXPECT_EQ(sent.Data.Config.nNumOfRelays, 0u);
}

TEST_F(MetaDataPeerTest, CreateFailureKeepsTheDescriptionAtByte88) {
  char szText[160] = "Serial port /dev/ttyS1 is taken";
  peer.onNextRequest(
      SMGRPROT_METADATA_CREATE_REQ,
      Reply::withResult(SMGR_ERROR_SERIAL_PORT_UNAVAILABLE_FOR_METADATA).bytes(88, szText, sizeof(szText)));
  SMGR_METADATA_CFG cfg = Serial("/dev/ttyS1");
  HMETADATA hSource = nullptr;
  EXPECT_FALSE(SessMgr_CreateMetaDataSource(&cfg, &hSource));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_SERIAL_PORT_UNAVAILABLE_FOR_METADATA);
  EXPECT_THAT(LastErrorText(), HasSubstr(szText));
  EXPECT_EQ(LiveHandleCount(), 0u);
}

TEST_F(MetaDataPeerTest, OpenByIdThenByReturnedNameSharesOneHandleAndEveryCloseIsSent) {
  Reply info = Reply::ok().put(kInfo + offsetof(SMGR_METADATA_INFO, nIndex), int32_t{2});
  const char name[64] = "klv2";
  info.bytes(kInfo + offsetof(SMGR_METADATA_INFO, szName), name, sizeof(name));
  info.put(kInfo + offsetof(SMGR_METADATA_INFO, enInputType), int32_t{SMGR_METADATA_IN_TYPE_VIDEO_INPUT});
  peer.onNextRequest(SMGRPROT_METADATA_OPEN_REQ, info);
  SMGR_OBJECT_SELECTOR byId = ById(2), byName = ByName("klv2");
  HMETADATA hFirst = nullptr, hSecond = nullptr;
  ASSERT_TRUE(SessMgr_OpenMetaDataSource(&byId, &hFirst));
  ASSERT_TRUE(SessMgr_OpenMetaDataSource(&byName, &hSecond));
  EXPECT_EQ(hFirst, hSecond);
  EXPECT_EQ(peer.requestCount(SMGRPROT_METADATA_OPEN_REQ), 1u);

  EXPECT_TRUE(SessMgr_CloseMetaDataSource(&hFirst));
  EXPECT_EQ(hFirst, nullptr);
  int nID = 0;
  EXPECT_TRUE(SessMgr_GetMetaDataSourceID(hSecond, &nID));  // still valid
  EXPECT_TRUE(SessMgr_CloseMetaDataSource(&hSecond));
  auto closes = peer.requests(SMGRPROT_METADATA_CLOSE_REQ);
  ASSERT_EQ(closes.size(), 2u);
  for (const Request& close : closes) EXPECT_EQ(close.field<int32_t>(16), 2);
  EXPECT_EQ(LiveHandleCount(), 0u);
}

TEST_F(MetaDataPeerTest, EnumerationAsksForOneItemWhateverTheBuffer) {
  std::vector<uint8_t> buffer(100000);
  UINT nTotal = 0, nReturned = 0;
  peer.onNextRequest(SMGRPROT_METADATA_ENUMERATE_REQ,
                     Reply::ok().put(20, uint32_t{3}).put(28, uint32_t{5332}));
  ASSERT_TRUE(
      SessMgr_EnumerateMetaDataSources(buffer.data(), buffer.size(), 2, &nTotal, &nReturned, nullptr));
  auto request = peer.lastRequest(SMGRPROT_METADATA_ENUMERATE_REQ);
  EXPECT_EQ(request->field<uint32_t>(16), 1u);
  EXPECT_EQ(request->field<uint32_t>(20), 2u);
  EXPECT_EQ(nTotal, 3u);

  char szName[16] = "x";  // no item came back
  EXPECT_FALSE(SessMgr_GetMetaDataSourceNameAtIndex(5, szName, sizeof(szName)));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_NO_MATCHING_METADATA_FOUND);
}

TEST_F(MetaDataPeerTest, StatisticsNeedTheWholeRecordAndComeBackWithSensorsSorted) {
  SMGR_METADATA_STATS stats{};
  stats.nSize = sizeof(stats) - 1;
  SMGR_OBJECT_SELECTOR selector = ById(1);
  EXPECT_FALSE(SessMgr_GetMetaDataSourceStats(&selector, &stats));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_EQ(peer.requestCount(SMGRPROT_METADATA_GETSTATS_REQ), 0u);

  constexpr size_t kStats = offsetof(SMGRPROT_MSG_METADATA_GETSTATS_RSP, Data.MetaDataStats);
  constexpr size_t kUIDs = kStats + offsetof(SMGR_METADATA_STATS, format.CoT.aszSensorUIDs);
  Reply answer = Reply::ok().put(kStats, uint32_t{sizeof(stats)});
  answer.put(kStats + offsetof(SMGR_METADATA_STATS, enInputFormat), int32_t{SMGR_METADATA_IN_FORMAT_COT});
  answer.put(kStats + offsetof(SMGR_METADATA_STATS, format.CoT.nDiscoveredSensorsCount), uint32_t{3});
  const char uids[4][128] = {"gamma", "Alpha", "beta", "AAA-not-counted"};
  for (int i = 0; i < 4; ++i) answer.bytes(kUIDs + i * 128, uids[i], 128);
  peer.onNextRequest(SMGRPROT_METADATA_GETSTATS_REQ, answer);
  stats.nSize = sizeof(stats);
  ASSERT_TRUE(SessMgr_GetMetaDataSourceStats(&selector, &stats));
  EXPECT_STREQ(stats.format.CoT.aszSensorUIDs[0], "Alpha");
  EXPECT_STREQ(stats.format.CoT.aszSensorUIDs[1], "beta");
  EXPECT_STREQ(stats.format.CoT.aszSensorUIDs[2], "gamma");
  EXPECT_STREQ(stats.format.CoT.aszSensorUIDs[3], "AAA-not-counted");
}

TEST(MetaDataValueNames, VideoInputsAreNamedByPersonalityAndClassificationsStartAtOne) {
  char sz[16];
  const int saved = g_enPersonality;
  g_enPersonality = 1;  // ST 2110
  EXPECT_STREQ(SessMgr_GetMetaDataInputTypeString(SMGR_METADATA_IN_TYPE_VIDEO_INPUT, sz, sizeof sz),
               "ST-2110");
  g_enPersonality = 0;
  EXPECT_STREQ(SessMgr_GetMetaDataInputTypeString(SMGR_METADATA_IN_TYPE_VIDEO_INPUT, sz, sizeof sz),
               "HD-SDI");
  g_enPersonality = saved;
  EXPECT_STREQ(SessMgr_GetMetaDataMissionClassificationString(0, sz, sizeof sz), "(Invalid:0)");
  EXPECT_STREQ(SessMgr_GetMetaDataSourceStateString(0, sz, 4), "DIS");
}

}  // namespace
}  // namespace smgr::test
