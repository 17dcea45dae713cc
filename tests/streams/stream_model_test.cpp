// Rules of the simulator's stream model: what the daemon accepts or refuses
// at creation, the state machine, the counters over a manual clock, what a
// restart keeps and what goes with a client.
#include <gtest/gtest.h>

#include "model_fixture.h"
#include "persistence.h"

namespace sim::test {
namespace {

using StreamCreateTest = ApplianceTest;
using StreamStateTest = ApplianceTest;
using StreamCountersTest = ApplianceTest;
using StreamLifetimeTest = ApplianceTest;

TEST_F(StreamCreateTest, AssignsIdsInCreationOrderAndReportsAppliedValues) {
  Outcome first = create(UdpConfig("cam1"));
  ASSERT_EQ(first.result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(first.id, 1);
  SMGR_STREAM_CFG second = UdpConfig("");
  second.nIndex = 7;
  Outcome named = create(second);
  ASSERT_EQ(named.result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(named.id, 7);
  EXPECT_EQ(named.name, "Stream7");

  SMGR_STREAM_INFO info{};
  ASSERT_EQ(streams().info(ByName("cam1"), &info), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(info.nSize, sizeof(SMGR_STREAM_INFO));
  EXPECT_EQ(info.IpMTU, 1500);  // defaults the daemon fills in
  EXPECT_EQ(info.IpTTL, 64);
  EXPECT_EQ(info.nNumOfSources, 2);
  EXPECT_STREQ(info.ContentSources[0].szName, "venc1");
  EXPECT_STREQ(info.ContentSources[1].szName, "aenc1");
  EXPECT_TRUE(info.ContentSources[0].bTsPidWasAutoAssigned);
  EXPECT_NE(info.ContentSources[0].iTsPid, info.ContentSources[1].iTsPid);
  EXPECT_EQ(info.TsInfo.iPcrPID, info.ContentSources[0].iTsPid);  // PCR rides on the video
  EXPECT_TRUE(info.TsInfo.bPmtPIDWasAutoAssigned);
  EXPECT_GT(info.nBandwithEstimateInKbps, 4000 + 128);

  // A deleted stream's ID is not handed out again at once.
  ASSERT_EQ(streams().remove(ById(1)).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(create(UdpConfig("cam3")).id, 2);
}

TEST_F(StreamCreateTest, IdsAndNamesAreUnique) {
  SMGR_STREAM_CFG cfg = UdpConfig("cam1");
  cfg.nIndex = 3;
  ASSERT_EQ(create(cfg).result, SMGR_ERROR_SUCCESS);
  SMGR_STREAM_CFG sameId = UdpConfig("other");
  sameId.nIndex = 3;
  EXPECT_EQ(create(sameId).result, SMGR_ERROR_ID_IN_USE);
  EXPECT_EQ(create(UdpConfig("cam1")).result, SMGR_STREAM_NAME_IN_USE);
  SMGR_STREAM_CFG tooBig = UdpConfig("big");
  tooBig.nIndex = StreamModel::kMaxStreamId + 1;
  EXPECT_EQ(create(tooBig).result, SMGR_ERROR_INVALID_STREAM_ID);
  EXPECT_EQ(streams().count(), 1u);
}

TEST_F(StreamCreateTest, StreamLimitOfTheProfile) {
  for (int i = 0; i < appliance_->profile().streamLimit; ++i) {
    ASSERT_EQ(create(UdpConfig(("s" + std::to_string(i)).c_str())).result, SMGR_ERROR_SUCCESS) << i;
  }
  EXPECT_EQ(create(UdpConfig("one-too-many")).result, SMGR_ERROR_TOO_MANY_STREAMS);
}

TEST_F(StreamCreateTest, ContentSourcesMustExistAndCoverTheContents) {
  WireSources missingVideo;
  snprintf(missingVideo.entries[0].Via.szName, sizeof missingVideo.entries[0].Via.szName, "venc99");
  EXPECT_EQ(create(UdpConfig("a"), missingVideo).result, SMGR_ERROR_NO_MATCHING_CODEC_FOUND);

  SMGR_STREAM_CFG withData = UdpConfig("b");
  withData.nNumOfSources = 3;
  withData.ContentSources[2].enType = SMGR_CONTENT_SRC_DATA;
  WireSources data;
  data.entries[2].enType = SMGR_CONTENT_SRC_DATA;
  data.entries[2].Via.ID = 42;
  EXPECT_EQ(create(withData, data).result, SMGR_ERROR_NO_MATCHING_METADATA_FOUND);
  data.entries[2].Via.ID = 2;
  EXPECT_EQ(create(withData, data).result, SMGR_ERROR_SUCCESS);

  SMGR_STREAM_CFG uncovered = UdpConfig("c");
  uncovered.enContents |= SMGR_STREAM_CONTENTS_DATA;
  EXPECT_EQ(create(uncovered).result, SMGR_ERROR_INVALID_STREAM_CONTENTS);
  SMGR_STREAM_CFG none = UdpConfig("d");
  none.nNumOfSources = 0;
  EXPECT_EQ(create(none).result, SMGR_ERROR_INVALID_STREAM_CONTENTS);

  SMGR_STREAM_CFG twice = UdpConfig("e");
  twice.nNumOfSources = 3;
  twice.ContentSources[2] = twice.ContentSources[1];
  WireSources sameAudio;
  sameAudio.entries[2] = sameAudio.entries[1];
  EXPECT_EQ(create(twice, sameAudio).result, SMGR_ERROR_DUPLICATE_AUDIO_ENCODERS_IN_STREAM);
}

TEST_F(StreamCreateTest, TransportAddressPortAndMtuSanity) {
  struct Case {
    const char* what;
    void (*change)(SMGR_STREAM_CFG&);
    SMGR_RESULT expected;
  };
  const Case cases[] = {
      {"unknown encapsulation", [](SMGR_STREAM_CFG& c) { c.enEncapsulation = 4; },
       SMGR_ERROR_INVALID_STREAM_ENCAPSULATION},
      {"port 0", [](SMGR_STREAM_CFG& c) { c.usPort = 0; }, SMGR_ERROR_INVALID_STREAM_UDP_PORT},
      {"odd RTP port",
       [](SMGR_STREAM_CFG& c) { c.enEncapsulation = SMGR_STREAM_ENCAPS_TS_RTP, c.usPort = 5001; },
       SMGR_ERROR_INVALID_STREAM_ODD_RTP_PORT},
      {"0.0.0.0", [](SMGR_STREAM_CFG& c) { memset(c.Address.acAddress, 0, 16); },
       SMGR_ERROR_INVALID_STREAM_ADDRESS},
      {"broadcast", [](SMGR_STREAM_CFG& c) { memset(c.Address.acAddress, 255, 4); },
       SMGR_ERROR_INVALID_STREAM_ADDRESS},
      {"address type 9", [](SMGR_STREAM_CFG& c) { c.Address.enType = 9; }, SMGR_ERROR_INVALID_STREAM_ADDRESS},
      {"ANY on UDP", [](SMGR_STREAM_CFG& c) { c.Address.enType = SMGR_ANY_ADDRESS; },
       SMGR_ERROR_INVALID_STREAM_ADDRESS},
      {"MTU 100", [](SMGR_STREAM_CFG& c) { c.IpMTU = 100; }, SMGR_ERROR_INVALID_STREAM_MTU},
      {"MTU 9000", [](SMGR_STREAM_CFG& c) { c.IpMTU = 9000; }, SMGR_ERROR_INVALID_STREAM_MTU},
      {"stream type RX", [](SMGR_STREAM_CFG& c) { c.enType = SMGR_STREAM_TYPE_RX; },
       SMGR_ERROR_INVALID_STREAM_TYPE},
      {"unterminated name", [](SMGR_STREAM_CFG& c) { memset(c.szName, 'x', sizeof c.szName); },
       SMGR_ERROR_INVALID_STREAM_NAME},
      {"25 sources", [](SMGR_STREAM_CFG& c) { c.nNumOfSources = 25; }, SMGR_ERROR_INVALID_PARAMETERS},
      {"missing still image", [](SMGR_STREAM_CFG& c) { snprintf(c.szStillImageFName, 16, "nope.mp4"); },
       SMGR_ERROR_NO_SUCH_STILL_IMAGE},
  };
  for (const Case& c : cases) {
    SMGR_STREAM_CFG cfg = UdpConfig("x");
    c.change(cfg);
    EXPECT_EQ(create(cfg).result, c.expected) << c.what;
  }
  EXPECT_EQ(streams().count(), 0u);
}

TEST_F(StreamCreateTest, FeaturesThatBelongToSomeTransportsOnly) {
  SMGR_STREAM_CFG rtcp = UdpConfig("rtcp");
  rtcp.bUseRTCP = TRUE;
  EXPECT_EQ(create(rtcp).result, SMGR_ERROR_RTCP_ENABLED_ON_TS_UDP_STREAM);
  rtcp.enEncapsulation = SMGR_STREAM_ENCAPS_TS_RTP;
  EXPECT_EQ(create(rtcp).result, SMGR_ERROR_SUCCESS);

  SMGR_STREAM_CFG aes = UdpConfig("aes");
  aes.bEncrypted = TRUE;
  aes.CryptoCfg.nKeySize = 16;
  aes.enEncapsulation = SMGR_STREAM_ENCAPS_TS_RTP;
  EXPECT_EQ(create(aes).result, SMGR_ERROR_AES_ENABLED_ON_NON_TS_UDP_STREAM);
  aes.enEncapsulation = SMGR_STREAM_ENCAPS_TS_UDP;
  aes.CryptoCfg.nKeySize = 20;
  EXPECT_EQ(create(aes).result, SMGR_ERROR_INVALID_STREAM_ENCRYPTION);

  SMGR_STREAM_CFG fec = UdpConfig("fec");
  fec.enFECType = SMGR_FEC_TYPE_QX;
  fec.enEncapsulation = SMGR_STREAM_ENCAPS_TS_RTP;
  EXPECT_EQ(create(fec).result, SMGR_ERROR_FEC_ENABLED_ON_NON_TS_UDP_STREAM);
  fec.enFECType = SMGR_FEC_TYPE_PRO_MPEG;
  fec.enEncapsulation = SMGR_STREAM_ENCAPS_TS_UDP;
  EXPECT_EQ(create(fec).result, SMGR_ERROR_PRO_MPEG_FEC_ENABLED_ON_NON_TS_RTP_STREAM);
  fec.enEncapsulation = SMGR_STREAM_ENCAPS_TS_RTP;
  fec.FECCfg.ProMPEG = {SMGR_FEC_LEVEL_B, 10, 20, FALSE, FALSE};
  EXPECT_EQ(create(fec).result, SMGR_ERROR_INVALID_NUM_OF_FEC_PKTS_PER_GROUP);
  fec.FECCfg.ProMPEG.nNumOfColumns = 10;
  fec.usPort = 65534;
  EXPECT_EQ(create(fec).result, SMGR_ERROR_STREAM_UDP_PORT_TOO_HIGH_FOR_MPEG_PRO_FEC_LEVEL_B);
  fec.usPort = 6000;
  EXPECT_EQ(create(fec).result, SMGR_ERROR_SUCCESS);
}

TEST_F(StreamCreateTest, SrtRules) {
  SMGR_STREAM_CFG srt = SrtConfig("srt");
  srt.bEncrypted = TRUE;
  EXPECT_EQ(create(srt).result, SMGR_ERROR_STREAM_NEEDS_PASSPHRASE);
  snprintf(srt.CryptoCfg.szPassphrase, sizeof srt.CryptoCfg.szPassphrase, "short");
  EXPECT_EQ(create(srt).result, SMGR_ERROR_STREAM_PASSPHRASE_TOO_SHORT);
  snprintf(srt.CryptoCfg.szPassphrase, sizeof srt.CryptoCfg.szPassphrase, "long enough phrase");
  srt.Address.acAddress[0] = 232;
  EXPECT_EQ(create(srt).result, SMGR_ERROR_MCAST_ADDRESS_UNSUPPORTED_ON_SRT_STREAMS);
  srt.Address.acAddress[0] = 198;
  srt.bUseShaping = TRUE;
  EXPECT_EQ(create(srt).result, SMGR_ERROR_TRAFFIC_SHAPING_UNSUPPORTED_FOR_SRT);
  srt.bUseShaping = FALSE;
  ASSERT_EQ(create(srt).result, SMGR_ERROR_SUCCESS);

  SMGR_STREAM_CFG listener = SrtConfig("listener", SMGR_SRT_MODE_SERVER);
  snprintf(listener.EncapSpecCfg.SRT.szPublishingID, 16, "cam-a");
  EXPECT_EQ(create(listener).result, SMGR_ERROR_UNSUPPORTED_PUBLISHING_ID_ON_LISTENER_SRT_STREAM);
  listener.EncapSpecCfg.SRT.szPublishingID[0] = '\0';
  EXPECT_EQ(create(listener).result, SMGR_ERROR_SUCCESS);

  SMGR_STREAM_CFG caller1 = SrtConfig("c1");
  snprintf(caller1.EncapSpecCfg.SRT.szPublishingID, 16, "cam-a");
  ASSERT_EQ(create(caller1).result, SMGR_ERROR_SUCCESS);
  SMGR_STREAM_CFG caller2 = SrtConfig("c2");
  snprintf(caller2.EncapSpecCfg.SRT.szPublishingID, 16, "cam-a");
  EXPECT_EQ(create(caller2).result, SMGR_ERROR_SRT_PUBLISHING_ID_IN_USE);
}

TEST_F(StreamStateTest, StartStopPauseResumeRefusals) {
  ASSERT_EQ(create(UdpConfig("cam1")).result, SMGR_ERROR_SUCCESS);
  const ObjectSelector cam = ByName("cam1");
  EXPECT_EQ(streams().stop(cam).result, SMGR_ERROR_STREAM_NOT_STARTED);
  EXPECT_EQ(streams().pause(cam).result, SMGR_ERROR_STREAM_NOT_STARTED);
  EXPECT_EQ(streams().start(cam).result, SMGR_ERROR_SUCCESS);
  Outcome again = streams().start(cam);
  EXPECT_EQ(again.result, SMGR_ERROR_STREAM_ALREADY_STARTED);
  EXPECT_NE(again.description.find("cam1"), std::string::npos);
  EXPECT_EQ(streams().resume(cam).result, SMGR_ERROR_STREAM_NOT_PAUSED);
  EXPECT_EQ(streams().pause(cam).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(streams().stateOf(1), SMGR_STREAM_STATE_PAUSED);
  EXPECT_EQ(streams().pause(cam).result, SMGR_ERROR_STREAM_ALREADY_PAUSED);
  EXPECT_EQ(streams().resume(cam).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(streams().stateOf(1), SMGR_STREAM_STATE_RUNNING);

  Outcome busy = streams().remove(cam);
  EXPECT_EQ(busy.result, SMGR_ERROR_STREAM_IN_USE);
  EXPECT_FALSE(busy.description.empty());
  EXPECT_EQ(streams().stop(cam).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(streams().remove(cam).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(streams().start(cam).result, SMGR_ERROR_NO_MATCHING_STREAM_FOUND);
  EXPECT_EQ(streams().close(1).result, SMGR_ERROR_NO_MATCHING_STREAM_FOUND);
}

TEST_F(StreamStateTest, AutoStartAndOpenByIdOrName) {
  SMGR_STREAM_CFG cfg = UdpConfig("auto");
  cfg.bAutoStart = TRUE;
  Outcome created = create(cfg);
  ASSERT_EQ(created.result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(streams().stateOf(created.id), SMGR_STREAM_STATE_RUNNING);
  Outcome opened = streams().open(ByName("auto"));
  EXPECT_EQ(opened.id, created.id);
  EXPECT_EQ(streams().open(ById(created.id)).name, "auto");
  EXPECT_EQ(streams().open(ByName("Auto")).result, SMGR_ERROR_NO_MATCHING_STREAM_FOUND);  // case matters
}

TEST_F(StreamStateTest, SrtPhasesBeforeStreaming) {
  SMGR_STREAM_CFG caller = SrtConfig("caller");
  caller.bEncrypted = TRUE;
  snprintf(caller.CryptoCfg.szPassphrase, sizeof caller.CryptoCfg.szPassphrase, "0123456789");
  caller.bAutoStart = TRUE;
  const int id = create(caller).id;
  EXPECT_EQ(streams().stateOf(id), SMGR_STREAM_STATE_CONNECTING);
  clock_->advanceMs(1200);
  EXPECT_EQ(streams().stateOf(id), SMGR_STREAM_STATE_SECURING);
  clock_->advanceMs(400);
  EXPECT_EQ(streams().stateOf(id), SMGR_STREAM_STATE_RUNNING);

  SMGR_STREAM_CFG listener = SrtConfig("listener", SMGR_SRT_MODE_SERVER);
  listener.bAutoStart = TRUE;
  const int lid = create(listener).id;
  EXPECT_EQ(streams().stateOf(lid), SMGR_STREAM_STATE_LISTENING);
  clock_->advanceMs(2000);
  EXPECT_EQ(streams().stateOf(lid), SMGR_STREAM_STATE_RUNNING);
}

TEST_F(StreamCountersTest, AdvanceWhileStreamingFreezeWhilePausedZeroOnReset) {
  const int id = create(UdpConfig("cam1")).id;
  EXPECT_EQ(uint64_t{statsOf(id).Counters.Sender.nTxOkBytes}, 0u);
  ASSERT_EQ(streams().start(ById(id)).result, SMGR_ERROR_SUCCESS);
  clock_->advanceMs(2000);
  SMGR_STREAM_STATS running = statsOf(id);
  EXPECT_EQ(running.enState, SMGR_STREAM_STATE_RUNNING);
  EXPECT_EQ(uint64_t{running.nUpTimeInSecs}, 2u);
  EXPECT_EQ(running.nSize, sizeof(SMGR_STREAM_STATS));
  // Bytes follow the bit rate: kbit/s x 2 s / 8, in whole 1316-byte packets.
  const uint64_t expected = static_cast<uint64_t>(running.nBitRateInKbps) * 2000 / 8;
  EXPECT_LE(uint64_t{running.Counters.Sender.nTxOkBytes}, expected);
  EXPECT_GT(uint64_t{running.Counters.Sender.nTxOkBytes}, expected - 1316);
  EXPECT_EQ(uint64_t{running.Counters.Sender.nTxOkBytes},
            uint64_t{running.Counters.Sender.nTxOkPackets} * 1316);

  ASSERT_EQ(streams().pause(ById(id)).result, SMGR_ERROR_SUCCESS);
  clock_->advanceMs(5000);
  SMGR_STREAM_STATS paused = statsOf(id);
  EXPECT_EQ(uint64_t{paused.Counters.Sender.nTxOkPackets}, uint64_t{running.Counters.Sender.nTxOkPackets});
  EXPECT_EQ(paused.nBitRateInKbps, 0);

  ASSERT_EQ(streams().resume(ById(id)).result, SMGR_ERROR_SUCCESS);
  clock_->advanceMs(1000);
  EXPECT_GT(uint64_t{statsOf(id).Counters.Sender.nTxOkPackets},
            uint64_t{paused.Counters.Sender.nTxOkPackets});

  ASSERT_EQ(streams().resetStats(ById(id)).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(uint64_t{statsOf(id).Counters.Sender.nTxOkPackets}, 0u);
  clock_->advanceMs(1000);
  EXPECT_GT(uint64_t{statsOf(id).Counters.Sender.nTxOkPackets}, 0u);
}

TEST_F(StreamCountersTest, SrtLinkFiguresAndRedundantLinks) {
  SMGR_STREAM_CFG cfg = SrtConfig("srt");
  cfg.EncapSpecCfg.SRT.enLinkRedundancyMode = SMGR_SRT_REDUNDANCY_ACTIVE_BACKUP;
  cfg.bAutoStart = TRUE;
  const int id = create(cfg).id;
  clock_->advanceMs(500);
  EXPECT_EQ(uint64_t{statsOf(id).EncapSpecStats.SRT.Conn.Dir.Tx.nSentPkts}, 0u);  // still connecting
  clock_->advanceMs(10000);
  SMGR_STREAM_STATS stats = statsOf(id);
  const SMGR_STREAM_SRT_STATS& conn = stats.EncapSpecStats.SRT.Conn;
  EXPECT_GT(uint64_t{conn.Dir.Tx.nSentPkts},
            uint64_t{stats.Counters.Sender.nTxOkPackets});  // retransmissions included
  EXPECT_GT(uint64_t{conn.Dir.Tx.nResentPkts}, 0u);
  EXPECT_EQ(conn.iLatency, 120);  // the daemon's default latency
  EXPECT_EQ(conn.enState, SMGR_STREAM_STATE_RUNNING);
  EXPECT_EQ(stats.EncapSpecStats.SRT.nLinks, 2);
  EXPECT_EQ(uint64_t{stats.EncapSpecStats.SRT.Link[1].Dir.Tx.nSentPkts}, 0u);  // the backup link idles
}

TEST_F(StreamCountersTest, UnresolvedHostNameKeepsResolving) {
  SMGR_STREAM_CFG cfg = UdpConfig("far");
  cfg.Address = SMGR_IP_ADDRESS{SMGR_UNRESOLVED_HOSTNAME, {}, "encoder.invalid"};
  cfg.bAutoStart = TRUE;
  const int id = create(cfg).id;
  clock_->advanceMs(5000);
  SMGR_STREAM_STATS stats = statsOf(id);
  EXPECT_EQ(stats.enState, SMGR_STREAM_STATE_RESOLVING);
  EXPECT_EQ(uint64_t{stats.Counters.Sender.nTxOkPackets}, 0u);
}

TEST_F(StreamLifetimeTest, RestartKeepsStreamsAndStartedStateNotCountersNorNonPersistentOnes) {
  appliance_->enablePersistence(true);
  SMGR_STREAM_CFG srt = SrtConfig("srt");
  srt.bAutoStart = TRUE;
  ASSERT_EQ(create(srt).result, SMGR_ERROR_SUCCESS);
  ASSERT_EQ(create(UdpConfig("paused")).result, SMGR_ERROR_SUCCESS);
  ASSERT_EQ(streams().start(ByName("paused")).result, SMGR_ERROR_SUCCESS);
  ASSERT_EQ(streams().pause(ByName("paused")).result, SMGR_ERROR_SUCCESS);
  SMGR_STREAM_CFG scratch = UdpConfig("scratch");
  scratch.bNonPersistent = TRUE;
  ASSERT_EQ(create(scratch).result, SMGR_ERROR_SUCCESS);
  clock_->advanceMs(10000);
  const std::vector<SMGR_STREAM_INFO> before = streams().list();

  Appliance restarted(ApplianceProfile::Default(), clock_, stateDir_);
  std::string error;
  ASSERT_TRUE(restarted.restore(&error)) << error;
  StreamModel& again = restarted.family<StreamModel>();
  const std::vector<SMGR_STREAM_INFO> after = again.list();
  ASSERT_EQ(after.size(), 2u);
  for (size_t i = 0; i < after.size(); ++i) EXPECT_EQ(memcmp(&after[i], &before[i], sizeof after[i]), 0) << i;
  EXPECT_EQ(again.stateOf(1), SMGR_STREAM_STATE_CONNECTING);  // the SRT handshake again
  EXPECT_EQ(again.stateOf(2), SMGR_STREAM_STATE_PAUSED);
  SMGR_STREAM_STATS stats{};
  ASSERT_EQ(again.stats(ById(1), &stats), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(stats.Counters.Sender.nTxOkPackets, 0u);
  EXPECT_EQ(again.create(UdpConfig("next"), WireSources().entries, SMGR_MAX_STREAM_CONTENT_SOURCES).id, 4);
}

TEST_F(StreamLifetimeTest, ADepartedClientsOpensGoWithIt) {
  ASSERT_EQ(create(UdpConfig("cam1"), WireSources(), 101).result, SMGR_ERROR_SUCCESS);  // held open by 101
  EXPECT_EQ(streams().open(ById(1), 101).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(streams().open(ByName("cam1"), 202).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(streams().close(1, 101).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(streams().close(1, 303).result, SMGR_ERROR_SUCCESS);  // a close without an open changes nothing
  EXPECT_EQ(streams().openCount(1), 2);
  NotifyClientDeparture(*appliance_, 202);
  EXPECT_EQ(streams().openCount(1), 1);
  NotifyClientDeparture(*appliance_, 101);
  EXPECT_EQ(streams().openCount(1), 0);
}

}  // namespace
}  // namespace sim::test
