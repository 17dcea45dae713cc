// Rules of the simulated video encoders on a manual clock: one case per
// configure refusal, rate adaptation, run states, moving counters, parameter
// sets, what streams see, and what survives a restart.
#include "videnc_model.h"

#include <gtest/gtest.h>

#include <functional>

#include "model_fixture.h"

namespace sim::test {
namespace {

class VideoEncoderModelTest : public ApplianceTest {
 protected:
  VideoEncoderModel& encoders() { return appliance_->family<VideoEncoderModel>(); }
  SMGR_VIDEO_ENCODER_STATS statsOf(int id) {
    SMGR_VIDEO_ENCODER_STATS stats{};
    EXPECT_EQ(encoders().stats(id, &stats), SMGR_ERROR_SUCCESS);
    return stats;
  }
  SMGR_VIDEO_ENCODER_INFO infoOf(int id) {
    SMGR_VIDEO_ENCODER_INFO info{};
    EXPECT_EQ(encoders().info(id, &info), SMGR_ERROR_SUCCESS);
    return info;
  }
  void useProfile(const char* szOverlay) {
    ApplianceProfile profile;
    std::string error;
    ASSERT_TRUE(ApplianceProfile::FromJson(nlohmann::json::parse(szOverlay), &profile, &error)) << error;
    appliance_ = std::make_unique<Appliance>(profile, clock_, stateDir_);
  }
};

struct Refusal {
  const char* szWhat;
  std::function<void(SMGR_VIDEO_ENCODER_CFG&)> set;
  SMGR_RESULT expected;
};

TEST_F(VideoEncoderModelTest, EachConfigureRefusalHasItsCodeAndChangesNothing) {
  using C = SMGR_VIDEO_ENCODER_CFG;
  const Refusal refusals[] = {
      {"bit rate", [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_BITRATE, c.nBitRateInKbps = 50; }, 205},
      {"GOP size", [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_GOP_SIZE, c.nGOPSize = 0; }, 71},
      {"GOP structure", [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_GOP_STRUCTURE, c.enGOPStructure = 8; },
       76},
      {"GOP mode", [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_GOP_MODE, c.enGOPMode = 7; }, 236},
      {"slices", [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_NUM_SLICES, c.nNumSlices = 17; }, 240},
      {"profile", [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_ENCODING_PROFILE, c.enEncodingProfile = 0; },
       235},
      {"codec", [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_CODEC_ALGORITHM, c.enCodecAlgorithm = 2; }, 238},
      {"chroma",
       [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_CHROMA_SUBSAMPLING, c.enChromaSubSampling = 0; }, 237},
      {"raster with a rate",
       [](C& c) {
         c.SetFieldsFlag = SMGR_VIDENC_SET_OUTPUT_RESOLUTION,
         c.enOutputResolution = VIDEO_FORMAT_1920_1080_30P;
       },
       70},
      {"H.265 with High",
       [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_CODEC_ALGORITHM, c.enCodecAlgorithm = 1; }, 244},
      {"4:2:2 with High",
       [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_CHROMA_SUBSAMPLING, c.enChromaSubSampling = 3; }, 239},
      {"HLG in 8 bits",
       [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_DYNAMIC_RANGE_MODE, c.enDynamicRangeMode = 2; }, 277},
      {"crop with H.265",
       [](C& c) {
         c.SetFieldsFlag =
             SMGR_VIDENC_SET_CODEC_ALGORITHM | SMGR_VIDENC_SET_ENCODING_PROFILE | SMGR_VIDENC_SET_RESIZE_MODE;
         c.enCodecAlgorithm = 1, c.enEncodingProfile = SMGR_VIDENC_PROFILE_MAIN, c.enResizeMode = 1;
       },
       202},
      {"VBR under its maximum",
       [](C& c) {
         c.SetFieldsFlag = SMGR_VIDENC_SET_RATE_CONTROL_MODE | SMGR_VIDENC_SET_MAX_BITRATE;
         c.enRateControlMode = 1, c.nMaxBitRateInKbps = 1000;
       },
       246},
      {"rate control",
       [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_RATE_CONTROL_MODE, c.enRateControlMode = 3; }, 245},
      {"resync hour", [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_TC_RESYNC_HOUR, c.TCResyncHour = 24; },
       241},
      {"picture rate",
       [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_PICTURE_RATE, c.nEncodedPictureRate = 61; }, 113},
      {"input", [](C& c) { c.SetFieldsFlag = SMGR_VIDENC_SET_INPUT_INTERFACE, c.enInputInterface = 4; }, 81},
      {"unassigned bit 9", [](C& c) { c.SetFieldsFlag = 1ull << 9; }, 258},
  };
  const SMGR_VIDEO_ENCODER_INFO before = infoOf(1);
  for (const Refusal& refusal : refusals) {
    SCOPED_TRACE(refusal.szWhat);
    SMGR_VIDEO_ENCODER_CFG cfg{};
    cfg.nSize = sizeof(cfg);
    refusal.set(cfg);
    EXPECT_EQ(encoders().configure(1, cfg), refusal.expected);
    const SMGR_VIDEO_ENCODER_INFO after = infoOf(1);
    EXPECT_EQ(memcmp(&before, &after, sizeof(before)), 0);
  }
  SMGR_VIDEO_ENCODER_CFG cfg{};
  cfg.SetFieldsFlag = SMGR_VIDENC_SET_DEBLOCK_OFFSETS;  // both offsets, nothing else
  cfg.DeblockTcOffset = -2;
  cfg.DeblockBetaOffset = 3;
  cfg.nBitRateInKbps = 1;
  ASSERT_EQ(encoders().configure(1, cfg), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(infoOf(1).DeblockTcOffset, -2);
  EXPECT_EQ(infoOf(1).DeblockBetaOffset, 3);
  EXPECT_EQ(infoOf(1).nBitRateInKbps, 4000u);
}

TEST_F(VideoEncoderModelTest, ARateAboveTheRastersCeilingIsAdapted) {
  SMGR_VIDEO_ENCODER_CFG cfg{};
  cfg.SetFieldsFlag = SMGR_VIDENC_SET_BITRATE | SMGR_VIDENC_SET_OUTPUT_RESOLUTION;
  cfg.nBitRateInKbps = 30000;
  cfg.enOutputResolution = SMGR_VIDENC_OUT_RESOLUTION_576P;
  ASSERT_EQ(encoders().configure(2, cfg), SMGR_ERROR_SUCCESS);
  EXPECT_TRUE(infoOf(2).bBitRateWasAdapted);
  EXPECT_EQ(infoOf(2).nAdaptedBitRateInKbps, 15000u);
  EXPECT_EQ(appliance_->sources().findById(kContentVideo, 2)->bitRateKbps, 15000);
}

TEST_F(VideoEncoderModelTest, RunStates) {
  EXPECT_EQ(encoders().stateOf(1), SMGR_VIDENC_STATE_WORKING);  // started at boot
  EXPECT_EQ(encoders().start(1), SMGR_ERROR_CODEC_ALREADY_STARTED);
  EXPECT_EQ(encoders().reset(1), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(encoders().stateOf(1), SMGR_VIDENC_STATE_RESETTING);
  clock_->advanceMs(VideoEncoderModel::kResetMs);
  EXPECT_EQ(encoders().stateOf(1), SMGR_VIDENC_STATE_WORKING);
  EXPECT_EQ(statsOf(1).nResets, 1u);

  SMGR_VIDEO_ENCODER_CFG cfg{};
  cfg.SetFieldsFlag = SMGR_VIDENC_SET_CODEC_ALGORITHM | SMGR_VIDENC_SET_ENCODING_PROFILE;
  cfg.enCodecAlgorithm = SMGR_VIDENC_CODEC_ALGORITHM_H265;
  cfg.enEncodingProfile = SMGR_VIDENC_PROFILE_MAIN;
  ASSERT_EQ(encoders().configure(1, cfg), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(encoders().stateOf(1), SMGR_VIDENC_STATE_RESETTING);

  EXPECT_EQ(encoders().stop(1), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(encoders().stateOf(1), SMGR_VIDENC_STATE_STOPPED);
  EXPECT_EQ(encoders().stop(1), SMGR_ERROR_CODEC_NOT_STARTED);
  EXPECT_FALSE(appliance_->sources().findByName(kContentVideo, "venc1")->started);
  EXPECT_EQ(encoders().open("venc9").result, SMGR_ERROR_NO_MATCHING_CODEC_FOUND);

  useProfile(R"({"video_encoders": {"count": 2, "name": "enc", "signal": false, "autostart": false}})");
  EXPECT_EQ(encoders().stateOf(2), SMGR_VIDENC_STATE_STOPPED);
  ASSERT_EQ(encoders().start(2), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(encoders().stateOf(2), SMGR_VIDENC_STATE_AWAIT_FRAMING);
  EXPECT_FALSE(statsOf(2).bInputPresent);
}

TEST_F(VideoEncoderModelTest, CountersMoveWhileWorkingAndResetStatsZeroesThem) {
  encoders();  // boot
  clock_->advanceMs(10000);
  SMGR_VIDEO_ENCODER_STATS stats = statsOf(1);
  EXPECT_EQ(stats.nUpTimeInSecs, 10u);
  EXPECT_EQ(stats.nEncodedFrames, 299u);  // 30000/1001 frames a second
  EXPECT_EQ(stats.nEncodedBytes, 10000u * 4000u / 8u);
  EXPECT_EQ(stats.nCurrentPTS, 900000);
  EXPECT_EQ(stats.nTCSeconds, 9);
  EXPECT_TRUE(stats.bLatencyMeasured);
  EXPECT_GT(stats.nLoadPercentage, 0);

  ASSERT_EQ(encoders().control(1, VideoEncoderModel::kForceIdrCommand), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(statsOf(1).nLastIDRFramePTS, 900000);
  EXPECT_EQ(encoders().control(1, 2), SMGR_ERROR_INVALID_PARAMETERS);

  ASSERT_EQ(encoders().resetStats(1), SMGR_ERROR_SUCCESS);
  stats = statsOf(1);
  EXPECT_EQ(stats.nEncodedFrames, 0u);
  EXPECT_EQ(stats.nEncodedBytes, 0u);
  EXPECT_EQ(stats.nLastStatsResetUpTimeInSecs, 10u);
  ASSERT_EQ(encoders().stop(1), SMGR_ERROR_SUCCESS);
  clock_->advanceMs(5000);
  EXPECT_EQ(statsOf(1).nEncodedFrames, 0u);  // nothing moves while stopped
}

TEST_F(VideoEncoderModelTest, ParameterSetsFollowCodecProfileAndLevel) {
  std::vector<uint8_t> sps, pps;
  ASSERT_EQ(encoders().parameterSets(1, &sps, &pps), SMGR_ERROR_SUCCESS);
  ASSERT_GE(sps.size(), 4u);
  EXPECT_EQ(sps[0], 0x67);
  EXPECT_EQ(sps[1], 100);  // High
  EXPECT_EQ(sps[3], 40);   // level 4 for 1080i29
  EXPECT_EQ(pps[0], 0x68);
  SMGR_VIDEO_ENCODER_CFG cfg{};
  cfg.SetFieldsFlag = SMGR_VIDENC_SET_CODEC_ALGORITHM | SMGR_VIDENC_SET_ENCODING_PROFILE;
  cfg.enCodecAlgorithm = SMGR_VIDENC_CODEC_ALGORITHM_H265;
  cfg.enEncodingProfile = SMGR_VIDENC_PROFILE_MAIN;
  ASSERT_EQ(encoders().configure(1, cfg), SMGR_ERROR_SUCCESS);
  ASSERT_EQ(encoders().parameterSets(1, &sps, &pps), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(sps[0], 0x42);
  EXPECT_EQ(pps[0], 0x44);
  EXPECT_EQ(statsOf(1).enH26XLevel, SMGR_H265_LEVEL_40);
}

TEST_F(VideoEncoderModelTest, ConfigurationAndRunStateSurviveARestart) {
  appliance_->enablePersistence(true);
  SMGR_VIDEO_ENCODER_CFG cfg{};
  cfg.SetFieldsFlag = SMGR_VIDENC_SET_GOP_SIZE;
  cfg.nGOPSize = 60;
  ASSERT_EQ(encoders().configure(3, cfg), SMGR_ERROR_SUCCESS);
  ASSERT_EQ(encoders().stop(3), SMGR_ERROR_SUCCESS);
  appliance_ = std::make_unique<Appliance>(ApplianceProfile::Default(), clock_, stateDir_);
  std::string error;
  ASSERT_TRUE(appliance_->restore(&error)) << error;
  EXPECT_EQ(infoOf(3).nGOPSize, 60u);
  EXPECT_EQ(encoders().stateOf(3), SMGR_VIDENC_STATE_STOPPED);
  EXPECT_EQ(encoders().stateOf(1), SMGR_VIDENC_STATE_WORKING);
  EXPECT_FALSE(appliance_->sources().findById(kContentVideo, 3)->started);
}

}  // namespace
}  // namespace sim::test
