// The simulated audio encoders: the state machine and its codes, the
// configuration rules (only flagged fields, ranges, SDI constraints), counters
// that follow the clock, persistence, and what streams see of an encoder.
#include "audio_encoder_model.h"

#include <gtest/gtest.h>

#include "model_fixture.h"
#include "persistence.h"

namespace sim::test {
namespace {

class AudioEncoderModelTest : public ApplianceTest {
 protected:
  void SetUp() override {
    ApplianceTest::SetUp();
    std::string error;
    appliance_->restore(&error);  // every section's load: the content-source lookup
  }
  AudioEncoderModel& encoders() { return appliance_->family<AudioEncoderModel>(); }
  SMGR_RESULT set(int id, uint64_t flags, void (*fill)(SMGR_AUDIO_ENCODER_CFG&)) {
    SMGR_AUDIO_ENCODER_CFG cfg{};
    cfg.nSize = sizeof cfg;
    cfg.SetFieldsFlag = flags;
    fill(cfg);
    return encoders().configure(id, cfg);
  }
  SMGR_AUDIO_ENCODER_STATS stats(int id) {
    SMGR_AUDIO_ENCODER_STATS s{};
    EXPECT_EQ(encoders().stats(id, &s), SMGR_ERROR_SUCCESS);
    return s;
  }
};

TEST_F(AudioEncoderModelTest, StartStopMuteFollowTheStateMachine) {
  int id = 0;
  EXPECT_EQ(encoders().open("nope", &id), SMGR_ERROR_NO_MATCHING_CODEC_FOUND);
  ASSERT_EQ(encoders().open("aenc2", &id), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(encoders().stop(id), SMGR_ERROR_CODEC_NOT_STARTED);
  EXPECT_EQ(encoders().mute(id, true), SMGR_ERROR_CODEC_NOT_STARTED);
  EXPECT_EQ(encoders().start(99), SMGR_ERROR_NO_MATCHING_CODEC_FOUND);
  ASSERT_EQ(encoders().start(id), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(encoders().start(id), SMGR_ERROR_CODEC_ALREADY_STARTED);
  EXPECT_EQ(encoders().mute(id, false), SMGR_ERROR_CODEC_NOT_MUTED);
  ASSERT_EQ(encoders().mute(id, true), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(stats(id).enState, SMGR_AUDENC_STATE_MUTED);
  EXPECT_EQ(stats(id).nMaxSampleValue, 0);
  EXPECT_EQ(encoders().mute(id, true), SMGR_ERROR_CODEC_ALREADY_MUTED);
  ASSERT_EQ(encoders().mute(id, false), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(stats(id).enState, SMGR_AUDENC_STATE_WORKING);
  // aenc3 moved onto aenc2's running pair cannot start.
  ASSERT_EQ(set(3, SMGR_AUDENC_SET_INPUT_INTERFACE, [](auto& c) { c.enInputInterface = 2; }),
            SMGR_ERROR_SUCCESS);
  EXPECT_EQ(encoders().start(3), SMGR_ERROR_AUDIO_CHANNELS_IN_USE);
  ASSERT_EQ(encoders().stop(id), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(stats(id).enState, SMGR_AUDENC_STATE_STOPPED);
  EXPECT_EQ(encoders().start(3), SMGR_ERROR_SUCCESS);
}

TEST_F(AudioEncoderModelTest, ConfigureChecksOnlyWhatItChangesAgainstTheRules) {
  struct Case {
    uint64_t flags;
    void (*fill)(SMGR_AUDIO_ENCODER_CFG&);
    SMGR_RESULT expected;
  } cases[] = {
      {SMGR_AUDENC_SET_SAMPLE_RATE, [](auto& c) { c.enSampleRate = 45; }, SMGR_ERROR_INVALID_SAMPLE_RATE},
      {SMGR_AUDENC_SET_SAMPLE_RATE, [](auto& c) { c.enSampleRate = 44; },
       SMGR_ERROR_INVALID_SAMPLE_RATE_FOR_SDI_AUDIO},
      {SMGR_AUDENC_SET_INPUT_INTERFACE, [](auto& c) { c.enInputInterface = 33; },
       SMGR_ERROR_NO_MATCHING_INPUT_FOUND},
      {SMGR_AUDENC_SET_BITRATE, [](auto& c) { c.nBitRateInKbps = 500; }, SMGR_ERROR_INVALID_AUDIO_BITRATE},
      {SMGR_AUDENC_SET_BITRATE | SMGR_AUDENC_SET_MODE,
       [](auto& c) {
         c.nBitRateInKbps = 256;
         c.enMode = SMGR_AUDENC_MODE_MONO;
       },
       SMGR_ERROR_AUDIO_BITRATE_TOO_HIGH_FOR_MODE},
      {SMGR_AUDENC_SET_STC_SOURCE_IF, [](auto& c) { c.enSTCSourceInterface = 1; },
       SMGR_ERROR_STC_SOURCE_FIXED_FOR_SDI_AUDIO},
      {SMGR_AUDENC_SET_LANGUAGE, [](auto& c) { memcpy(c.szLanguage, "xyz", 4); },
       SMGR_ERROR_INVALID_LANGUAGE_CODE},
      {SMGR_AUDENC_SET_INPUT_LEVEL, [](auto& c) { c.nInputLevel = 13; }, SMGR_ERROR_INVALID_AUDIO_LEVEL},
      {SMGR_AUDENC_SET_ALGORITHM, [](auto& c) { c.enAlgorithm = 2; }, SMGR_ERROR_INVALID_PARAMETERS},
      {SMGR_AUDENC_SET_MODE, [](auto& c) { c.enMode = 3; }, SMGR_ERROR_INVALID_PARAMETERS},
      {SMGR_AUDENC_SET_BITRATE,
       [](auto& c) {
         c.nBitRateInKbps = 96;
         c.enSampleRate = 7;
       },
       SMGR_ERROR_SUCCESS},  // rate not flagged
  };
  for (const Case& c : cases) EXPECT_EQ(set(1, c.flags, c.fill), c.expected) << "flags " << c.flags;
  EXPECT_EQ(set(9, SMGR_AUDENC_SET_BITRATE, [](auto& c) { c.nBitRateInKbps = 96; }),
            SMGR_ERROR_NO_MATCHING_CODEC_FOUND);

  // Two analogue encoders share one sampling clock.
  const uint64_t analog = SMGR_AUDENC_SET_INPUT_INTERFACE | SMGR_AUDENC_SET_SAMPLE_RATE;
  ASSERT_EQ(set(1, analog, [](auto& c) { c.enSampleRate = 44; }), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(set(2, analog, [](auto& c) { c.enSampleRate = 32; }), SMGR_ERROR_CONFLICT_SAMPLE_RATE);
  EXPECT_EQ(set(1, SMGR_AUDENC_SET_STC_SOURCE_IF, [](auto& c) { c.enSTCSourceInterface = 3; }),
            SMGR_ERROR_SUCCESS);
  SMGR_AUDIO_ENCODER_INFO info{};
  ASSERT_EQ(encoders().info(1, &info), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(info.enInputInterface, SMGR_AUDENC_IF_ANALOG);
  EXPECT_EQ(info.enSampleRate, 44);
  EXPECT_EQ(info.nBitRateInKbps, 96u);
  EXPECT_EQ(info.enSTCSourceInterface, SMGR_AUDENC_STC_IF_BNC4);
}

TEST_F(AudioEncoderModelTest, CountersFollowTheClockAndResetAndCaptureCompletes) {
  ASSERT_EQ(set(1,
                AudioEncoderModel::kSetCaptureToDisk | AudioEncoderModel::kSetCaptureSize |
                    AudioEncoderModel::kSetPtsOffset,
                [](auto& c) {
                  c.bCaptureToDisk = TRUE;
                  c.nMaxCaptureSizeInKBytes = 64;
                  c.nPTSOffset = 1000;
                }),
            SMGR_ERROR_SUCCESS);
  ASSERT_EQ(encoders().start(1), SMGR_ERROR_SUCCESS);
  clock_->advanceMs(2000);
  SMGR_AUDIO_ENCODER_STATS s = stats(1);
  EXPECT_EQ(s.nEncodedFrames, 2 * 48000u / 1024);
  EXPECT_EQ(s.nEncodedBytes, 2 * 128000u / 8);
  EXPECT_EQ(s.nCurrentPTS, 2 * 90000 + 1000);
  EXPECT_NE(s.nMaxSampleValue, 0);
  EXPECT_EQ(s.enCaptureState, SMGR_AUDENC_CAPTURE_ACTIVE);
  clock_->advanceMs(3000);  // 80 KB encoded by now: the 64 KB capture is done
  s = stats(1);
  EXPECT_EQ(s.enCaptureState, SMGR_AUDENC_CAPTURE_COMPLETED);
  EXPECT_EQ(s.nCaptureSize, 64u * 1024);
  ASSERT_EQ(encoders().resetStats(1), SMGR_ERROR_SUCCESS);
  s = stats(1);
  EXPECT_EQ(s.nEncodedFrames, 0u);
  EXPECT_EQ(s.nEncodedBytes, 0u);
  ASSERT_EQ(set(1, SMGR_AUDENC_SET_ALGORITHM | SMGR_AUDENC_SET_BITRATE,
                [](auto& c) {
                  c.enAlgorithm = SMGR_AUDENC_ALGORITHM_MPEG4_AAC_HE_V1_LOAS;
                  c.nBitRateInKbps = 64;
                }),
            SMGR_ERROR_SUCCESS);
  clock_->advanceMs(1000);
  EXPECT_EQ(stats(1).nEncodedFrames, 48000u / 2048) << "HE frames hold 2048 samples";
}

TEST_F(AudioEncoderModelTest, StreamsSeeTheEncodersAndConfigurationsSurviveARestart) {
  auto ref = appliance_->sources().findByName(kContentAudio, "aenc4");
  ASSERT_TRUE(ref);
  EXPECT_EQ(ref->id, 4);
  EXPECT_FALSE(ref->started);
  ASSERT_EQ(encoders().start(4), SMGR_ERROR_SUCCESS);
  EXPECT_TRUE(appliance_->sources().findById(kContentAudio, 4)->started);
  ASSERT_EQ(set(4, SMGR_AUDENC_SET_DELAY, [](auto& c) { c.nDelayInMS = 40; }), SMGR_ERROR_SUCCESS);

  const nlohmann::json saved = SnapshotAppliance(*appliance_);
  appliance_ = std::make_unique<Appliance>(ApplianceProfile::Default(), clock_, stateDir_);
  RestoreAppliance(*appliance_, saved);
  SMGR_AUDIO_ENCODER_INFO info{};
  ASSERT_EQ(encoders().info(4, &info), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(info.nDelayInMS, 40u);
  EXPECT_EQ(stats(4).enState, SMGR_AUDENC_STATE_STOPPED) << "run state is not kept";
  EXPECT_FALSE(appliance_->sources().findById(kContentAudio, 4)->started);
}

TEST_F(AudioEncoderModelTest, AnEncoderTheProfileMarksFailingFailsWhenStarted) {
  ApplianceProfile profile;
  std::string error;
  const nlohmann::json overlay = {{"audio_encoders", {{"count", 2}, {"name", "aenc"}, {"failing", {2}}}}};
  ASSERT_TRUE(ApplianceProfile::FromJson(overlay, &profile, &error)) << error;
  appliance_ = std::make_unique<Appliance>(profile, clock_, stateDir_);
  ASSERT_EQ(encoders().start(2), SMGR_ERROR_SUCCESS);
  clock_->advanceMs(3000);
  SMGR_AUDIO_ENCODER_STATS s = stats(2);
  EXPECT_EQ(s.enState, SMGR_AUDENC_STATE_FAILED);
  EXPECT_EQ(s.nEncodedFrames, 0u);
  EXPECT_EQ(s.nErrors, 3u);
}

}  // namespace
}  // namespace sim::test
