// The simulated talkback channel: listening, running once the sender begins,
// the intruder's discarded packets, the start/stop/enable/disable codes, the
// configuration rules and what survives a restart.
#include "talkback_model.h"

#include <gtest/gtest.h>

#include "model_fixture.h"
#include "persistence.h"

namespace sim::test {
namespace {

class TalkBackModelTest : public ApplianceTest {
 protected:
  TalkBackModel& channel() { return appliance_->family<TalkBackModel>(); }
  SMGR_TALKBACK_STATS stats() {
    SMGR_TALKBACK_STATS s{};
    channel().stats(&s);
    return s;
  }
};

TEST_F(TalkBackModelTest, ListensThenRunsAndCountsTheSenderAndTheIntruder) {
  EXPECT_EQ(channel().stop(), SMGR_ERROR_TALKBACK_NOT_STARTED);
  ASSERT_EQ(channel().start(), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(channel().start(), SMGR_ERROR_TALKBACK_ALREADY_STARTED);
  EXPECT_EQ(stats().enState, SMGR_TALKBACK_STATE_LISTENING);
  clock_->advanceMs(2000 + 3000);  // the sender begins after 2 s, 50 packets a second
  SMGR_TALKBACK_STATS s = stats();
  EXPECT_EQ(s.enState, SMGR_TALKBACK_STATE_RUNNING);
  EXPECT_EQ(s.nRxOkPackets, 151u);  // at 2.00 s, 2.02 s, ... 5.00 s
  EXPECT_EQ(s.nRxDiscardedPackets, 1u);
  EXPECT_EQ(s.SourceAddress.enType, SMGR_IPV4_ADDRESS);
  EXPECT_GT(s.iLastRxTime, 1600000000);
  ASSERT_EQ(channel().stop(), SMGR_ERROR_SUCCESS);
  clock_->advanceMs(10000);
  EXPECT_EQ(stats().nRxOkPackets, 151u) << "nothing arrives while stopped";
  ASSERT_EQ(channel().resetStats(), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(stats().nRxOkPackets, 0u);
}

TEST_F(TalkBackModelTest, DisableStopsAndRefusesStartsAndRepeatsAreHarmless) {
  ASSERT_EQ(channel().start(), SMGR_ERROR_SUCCESS);
  ASSERT_EQ(channel().disable(), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(channel().disable(), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(stats().enState, SMGR_TALKBACK_STATE_ADMIN_DISABLED);
  EXPECT_EQ(channel().start(), SMGR_ERROR_TALKBACK_SERVICE_ADMINISTRATIVELY_DISABLED);
  ASSERT_EQ(channel().enable(), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(channel().enable(), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(stats().enState, SMGR_TALKBACK_STATE_LISTENING) << "auto-start on enable";
}

TEST_F(TalkBackModelTest, ConfigureAppliesFlaggedFieldsAndSurvivesARestart) {
  SMGR_TALKBACK_CFG cfg{};
  cfg.nSize = sizeof cfg;
  cfg.SetFieldsFlag = TalkBackModel::kSetPort;
  EXPECT_EQ(channel().configure(cfg), SMGR_ERROR_INVALID_STREAM_UDP_PORT);
  cfg.SetFieldsFlag = TalkBackModel::kSetVolume;
  cfg.nVolume = 101;
  EXPECT_EQ(channel().configure(cfg), SMGR_ERROR_INVALID_AUDIO_LEVEL);
  cfg.SetFieldsFlag = TalkBackModel::kSetPort | TalkBackModel::kSetVolume;
  cfg.usPort = 6000;
  cfg.nVolume = 80;
  ASSERT_EQ(channel().configure(cfg), SMGR_ERROR_SUCCESS);
  ASSERT_EQ(channel().disable(), SMGR_ERROR_SUCCESS);

  const nlohmann::json saved = SnapshotAppliance(*appliance_);
  appliance_ = std::make_unique<Appliance>(ApplianceProfile::Default(), clock_, stateDir_);
  RestoreAppliance(*appliance_, saved);
  SMGR_TALKBACK_INFO info{};
  channel().info(&info);
  EXPECT_EQ(info.usPort, 6000);
  EXPECT_EQ(info.nVolume, 80);
  EXPECT_STREQ(info.szName, "talkback") << "the name was not flagged";
  EXPECT_EQ(stats().enState, SMGR_TALKBACK_STATE_ADMIN_DISABLED);
  ASSERT_EQ(channel().enable(), SMGR_ERROR_SUCCESS);
  RestoreAppliance(*appliance_, SnapshotAppliance(*appliance_));
  EXPECT_EQ(stats().enState, SMGR_TALKBACK_STATE_LISTENING) << "enabled channels start by themselves";
}

}  // namespace
}  // namespace sim::test
