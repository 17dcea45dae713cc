// Rules of the simulated video inputs: the signal schedule and its counters,
// the capabilities per personality, the codes of every refusal, and settings
// that survive a restart.
#include "video_input_model.h"

#include <gtest/gtest.h>

#include "model_fixture.h"
#include "persistence.h"

namespace sim::test {
namespace {

class VideoInputModelTest : public ApplianceTest {
 protected:
  VideoInputModel& inputs() { return appliance_->family<VideoInputModel>(); }
  SMGR_VIDEO_INPUT_INFO infoOf(int id) {
    SMGR_VIDEO_INPUT_INFO info{};
    EXPECT_EQ(inputs().info(id, &info), SMGR_ERROR_SUCCESS);
    return info;
  }
};

TEST_F(VideoInputModelTest, SignalsFollowTheScheduleAndCountLockChanges) {
  SMGR_VIDEO_INPUT_INFO hd = infoOf(1);
  EXPECT_STREQ(hd.szName, "sdi1");
  EXPECT_EQ(hd.enState, SMGR_VIDIN_STATE_ACTIVE);
  EXPECT_EQ(static_cast<uint64_t>(hd.enInputFormat), 0x80000001E0087064ull);  // 1920x1080p50
  EXPECT_EQ(hd.nNumOfAudioChannels, 16u);
  EXPECT_EQ(hd.ColorPrimaries, 1u);
  EXPECT_EQ(hd.dwCapabilities, 0x1Eu);
  EXPECT_EQ(infoOf(2).enInputFormat & 1, 1) << "1080i25 is interlaced";
  SMGR_VIDEO_INPUT_INFO none = infoOf(4);
  EXPECT_EQ(none.enState, SMGR_VIDIN_STATE_INACTIVE);
  EXPECT_EQ(none.enInputFormat, kVideoFormatUnknown);
  EXPECT_EQ(none.nNumOfAudioChannels, 0u);

  // sdi3 repeats 50 s of UHD and 10 s of nothing.
  EXPECT_EQ(infoOf(3).ColorPrimaries, 9u);
  clock_->advanceMs(55000);
  EXPECT_FALSE(inputs().signalOf(3).present);
  clock_->advanceMs(75000);  // 130 s: changes at 50, 60, 110 and 120 s
  SMGR_VIDEO_INPUT_INFO uhd = infoOf(3);
  EXPECT_EQ(uhd.nFormatLockStateChanges, 4u);
  EXPECT_EQ(uhd.nLastFormatLockStateChangeUPTimeInSecs, 120u);
  EXPECT_EQ(uhd.nInputChecks, 130u);
  ASSERT_EQ(inputs().resetStats(3), SMGR_ERROR_SUCCESS);
  clock_->advanceMs(2000);
  EXPECT_EQ(infoOf(3).nFormatLockStateChanges, 0u);
  EXPECT_EQ(infoOf(3).nInputChecks, 2u);
}

TEST_F(VideoInputModelTest, RefusalsAndPersistedSettings) {
  EXPECT_EQ(inputs().open("sdi9").result, SMGR_ERROR_NO_MATCHING_INPUT_FOUND);
  EXPECT_EQ(inputs().open("sdi2").id, 2);
  SMGR_VIDEO_INPUT_INFO info{};
  EXPECT_EQ(inputs().info(77, &info), SMGR_ERROR_NO_MATCHING_INPUT_FOUND);
  EXPECT_EQ(inputs().resetStats(77), SMGR_ERROR_NO_MATCHING_INPUT_FOUND);

  SMGR_VIDEO_INPUT_CFG cfg{sizeof(SMGR_VIDEO_INPUT_CFG), 0x1, SMGR_VIF_TYPE_COMPOSITE, 0, FALSE};
  EXPECT_EQ(inputs().configure(1, cfg), SMGR_ERROR_INVALID_PARAMETERS);
  cfg = {sizeof(SMGR_VIDEO_INPUT_CFG), 0x4, 0, 0, 7};
  EXPECT_EQ(inputs().configure(1, cfg), SMGR_ERROR_INVALID_PARAMETERS);
  cfg = {sizeof(SMGR_VIDEO_INPUT_CFG), 0x8, 0, 0, FALSE};
  EXPECT_EQ(inputs().configure(1, cfg), SMGR_ERROR_INVALID_PARAMETERS) << "unknown bit";
  inputs().setInputInUse([](int id) { return id == 1; });
  cfg = {sizeof(SMGR_VIDEO_INPUT_CFG), 0x1 | 0x4, SMGR_VIF_TYPE_SDI, 0, TRUE};
  EXPECT_EQ(inputs().configure(1, cfg), SMGR_ERROR_INPUT_DEVICE_IN_USE);
  ASSERT_EQ(inputs().configure(2, cfg), SMGR_ERROR_SUCCESS);

  nlohmann::json saved = SnapshotAppliance(*appliance_);
  Appliance restarted(ApplianceProfile::Default(), clock_, stateDir_);
  RestoreAppliance(restarted, saved);
  SMGR_VIDEO_INPUT_INFO kept{};
  ASSERT_EQ(restarted.family<VideoInputModel>().info(2, &kept), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(kept.enCfgInterfaceType, SMGR_VIF_TYPE_SDI);
  EXPECT_TRUE(kept.bEnableFIRFilter);
}

TEST_F(VideoInputModelTest, TheSt2110PersonalityHasNoSdiCapabilityAndProfileSignalsApply) {
  ApplianceProfile profile;
  std::string error;
  ASSERT_TRUE(ApplianceProfile::FromJson(
      nlohmann::json::parse(
          R"({"personality":"2110","video_input_signals":{"sdi1":"720p59","sdi2":"bogus"}})"),
      &profile, &error))
      << error;
  Appliance st2110(profile, clock_, stateDir_);
  SMGR_VIDEO_INPUT_INFO info{};
  ASSERT_EQ(st2110.family<VideoInputModel>().info(1, &info), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(info.dwCapabilities & SMGR_VIDIN_CAPABILITY_SDI, 0u);
  EXPECT_EQ(static_cast<uint64_t>(info.enInputFormat), 0x800000014005A076ull);
  EXPECT_FALSE(st2110.family<VideoInputModel>().signalOf(2).present) << "a bad signal reads as none";
}
}  // namespace
}  // namespace sim::test
