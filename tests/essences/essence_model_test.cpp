// The simulator's essence and clock model: the daemon's codes for bad
// configurations and controls, the one-running-essence-per-input rule,
// counters and detection, the clock's lock, persistence, and the SDI unit's 303.
#include "essence_model.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <memory>

#include "audio_encoder_model.h"
#include "dispatch.h"
#include "metadata_model.h"

namespace sim::test {
namespace {

constexpr BYTE kOwn[4] = {192, 168, 1, 10};  // the unit's address in the default profile

class EssenceModelTest : public ::testing::Test {
 protected:
  void SetUp() override { makeAppliance(R"({"personality": "2110", "video_inputs": 2})"); }
  void makeAppliance(const char* profileJson) {
    ApplianceProfile profile;
    std::string error;
    ASSERT_TRUE(ApplianceProfile::FromJson(nlohmann::json::parse(profileJson), &profile, &error)) << error;
    appliance_ = std::make_unique<Appliance>(profile, clock_, std::filesystem::temp_directory_path());
  }
  EssenceModel& model() { return appliance_->family<EssenceModel>(); }

  static SMGR_ESSENCE_CFG Audio(unsigned input, uint16_t port, BOOL autoStart = FALSE) {
    SMGR_ESSENCE_CFG cfg{};
    cfg.nSize = sizeof cfg;
    cfg.bAutoStart = autoStart;
    cfg.nInputChannel = input;
    cfg.enMediaType = SMGR_ESSENCE_MEDIA_TYPE_AUDIO;
    cfg.Media.Audio = {2, SMGR_AUDIO_ESSENCE_PACKET_TIME_1MS};
    cfg.nRTPPayload = 97;
    cfg.Address.enType = SMGR_IPV4_ADDRESS;
    const BYTE group[4] = {239, 1, 1, 1};
    memcpy(cfg.Address.acAddress, group, 4);
    cfg.usPort = port;
    return cfg;
  }
  static ObjectSelector Id(int id) { return ObjectSelector{false, id, {}}; }

  std::shared_ptr<ManualClock> clock_ = std::make_shared<ManualClock>();
  std::unique_ptr<Appliance> appliance_;
};

TEST_F(EssenceModelTest, BadConfigurationsGetTheDaemonsCodes) {
  ASSERT_EQ(model().create(Audio(0, 5000)).result, 0u);
  struct Case {
    const char* what;
    void (*edit)(SMGR_ESSENCE_CFG&);
    SMGR_RESULT code;
  } cases[] = {
      {"media 3", [](SMGR_ESSENCE_CFG& c) { c.enMediaType = 3; }, 289},
      {"input 2 of 2", [](SMGR_ESSENCE_CFG& c) { c.nInputChannel = 2; }, 291},
      {"payload 95", [](SMGR_ESSENCE_CFG& c) { c.nRTPPayload = 95; }, 290},
      {"port 0", [](SMGR_ESSENCE_CFG& c) { c.usPort = 0; }, 287},
      {"unicast elsewhere", [](SMGR_ESSENCE_CFG& c) { c.Address.acAddress[0] = 10; }, 288},
      {"unit's own without source", [](SMGR_ESSENCE_CFG& c) { memcpy(c.Address.acAddress, kOwn, 4); }, 293},
      {"multicast source",
       [](SMGR_ESSENCE_CFG& c) {
         c.SourceAddress.enType = SMGR_IPV4_ADDRESS;
         c.SourceAddress.acAddress[0] = 232;
       },
       294},
      {"source is the unit", [](SMGR_ESSENCE_CFG& c) { memcpy(c.SourceAddress.acAddress, kOwn, 4); }, 295},
      {"address and port taken", [](SMGR_ESSENCE_CFG& c) { c.usPort = 5000; }, 0x10000003u},
      {"media values on data", [](SMGR_ESSENCE_CFG& c) { c.enMediaType = SMGR_ESSENCE_MEDIA_TYPE_DATA; },
       0x1000000Bu},
      {"17 channels", [](SMGR_ESSENCE_CFG& c) { c.Media.Audio.nNumOfChannels = 17; }, 0x1000000Cu},
      {"9 channels at 125 us",
       [](SMGR_ESSENCE_CFG& c) {
         c.Media.Audio = {9, SMGR_AUDIO_ESSENCE_PACKET_TIME_125US};
       },
       0x1000000Cu},
      {"packet time 0", [](SMGR_ESSENCE_CFG& c) { c.Media.Audio.enPacketTime = 0; }, 0x1000000Du},
      {"video format 1920x1080p31",
       [](SMGR_ESSENCE_CFG& c) {
         c.enMediaType = SMGR_ESSENCE_MEDIA_TYPE_VIDEO;
         c.Media.Video.enInputFormat = 0x800000000000003Eull | (1920ull << 22) | (1080ull << 9);
       },
       0x1000000Eu},
  };
  for (const Case& c : cases) {
    SMGR_ESSENCE_CFG cfg = Audio(1, 6000);
    c.edit(cfg);
    Outcome outcome = model().create(cfg);
    EXPECT_EQ(outcome.result, c.code) << c.what;
    EXPECT_FALSE(outcome.description.empty()) << c.what;
  }
  EXPECT_EQ(model().list().size(), 1u);
  SMGR_ESSENCE_CFG video = Audio(1, 6000);
  video.enMediaType = SMGR_ESSENCE_MEDIA_TYPE_VIDEO;
  video.Media.Video.enInputFormat = 0x80000001E008703Bull;  // 1920x1080i29
  EXPECT_EQ(model().create(video).result, 0u);
}

TEST_F(EssenceModelTest, ControlsAndOneRunningEssenceOfAMediaPerInput) {
  Outcome first = model().create(Audio(0, 5000));
  EXPECT_EQ(first.name, "Essence1");
  EXPECT_EQ(model().start(Id(1)).result, 0u);
  EXPECT_EQ(model().start(Id(1)).result, SMGR_ERROR_ESSENCE_ALREADY_STARTED);
  EXPECT_EQ(model().remove(Id(1)).result, SMGR_ERROR_ESSENCE_IN_USE);
  EXPECT_EQ(model().stop(Id(9)).result, SMGR_ERROR_NO_MATCHING_ESSENCE_FOUND);

  Outcome second = model().create(Audio(0, 5002, TRUE));
  EXPECT_EQ(second.result, SMGR_WARNING_TOO_MANY_ESSENCES_TO_START);
  SMGR_ESSENCE_STATS stats{};
  ASSERT_EQ(model().stats(Id(second.id), &stats), 0u);
  EXPECT_EQ(stats.enState, SMGR_ESSENCE_STATE_STOPPED);
  EXPECT_EQ(model().start(Id(second.id)).result, SMGR_ERROR_TOO_MANY_ESSENCES);

  SMGR_ESSENCE_CFG move = Audio(1, 0);
  move.SetFieldsFlag = SMGR_ESSENCE_SET_INPUT_CHANNEL;
  ASSERT_EQ(model().configure(Id(second.id), move).result, 0u);
  ASSERT_EQ(model().start(Id(second.id)).result, 0u);
  move.nInputChannel = 0;
  EXPECT_EQ(model().configure(Id(second.id), move).result, SMGR_ERROR_ESSENCE_INPUT_CHANNEL_IN_USE);

  EXPECT_EQ(model().stop(Id(1)).result, 0u);
  EXPECT_EQ(model().stop(Id(1)).result, SMGR_ERROR_ESSENCE_NOT_STARTED);
  EXPECT_EQ(model().close(42, 1).result, SMGR_ERROR_NO_MATCHING_ESSENCE_FOUND);
  EXPECT_EQ(model().open(Id(1), 100).result, 0u);
  EXPECT_EQ(model().close(1, 100).result, 0u);
  EXPECT_EQ(model().close(1, 100).result, 0u);  // an extra close is never refused
  EXPECT_EQ(model().open(Id(1), 100).result, 0u);
  model().clientGone(100);
  EXPECT_EQ(model().openCount(1), 0);
  EXPECT_EQ(model().remove(Id(1)).result, 0u);
}

TEST_F(EssenceModelTest, CountersDetectionAndTheClocksLock) {
  SMGR_ESSENCE_CFG video = Audio(0, 5000);
  video.enMediaType = SMGR_ESSENCE_MEDIA_TYPE_VIDEO;
  video.Media.Video.enInputFormat = 0x800000014005A076ull;  // 1280x720p59
  ASSERT_EQ(model().create(video).result, 0u);
  ASSERT_EQ(model().create(Audio(0, 5002, TRUE)).result, 0u);
  ASSERT_EQ(model().setClockMode(1), 0u);
  EXPECT_EQ(model().setClockMode(2), SMGR_ERROR_INVALID_PARAMETERS);
  ASSERT_EQ(model().start(Id(1)).result, 0u);

  SMGR_ESSENCE_STATS stats{};
  model().stats(Id(1), &stats);
  EXPECT_EQ(stats.enVideoFormatDetectionState, SMGR_ESSENCE_VIDEO_FORMAT_DETECT_STATE_STREAM_DETECTED);
  clock_->advanceMs(1500);
  model().stats(Id(1), &stats);
  EXPECT_EQ(stats.enVideoFormatDetectionState, SMGR_ESSENCE_VIDEO_FORMAT_DETECT_STATE_BUSY);
  EXPECT_FALSE(stats.bStreamSync);
  EXPECT_FALSE(model().syncInfo().bSynchronized);
  clock_->advanceMs(1500);
  model().stats(Id(1), &stats);
  EXPECT_EQ(stats.enVideoFormatDetectionState, SMGR_ESSENCE_VIDEO_FORMAT_DETECT_STATE_COMPLETED);
  EXPECT_EQ(stats.enDetectedVideoFormat, video.Media.Video.enInputFormat);
  EXPECT_TRUE(stats.bStreamSync);
  EXPECT_GT(stats.nRxPackets, 0u);
  SMGR_2110_SYNC_INFO sync = model().syncInfo();
  EXPECT_TRUE(sync.bSynchronized);
  EXPECT_GE(sync.nPrecisionInNanoSecs, 20u);
  EXPECT_LE(sync.nPrecisionInNanoSecs, 80u);
  EXPECT_EQ(sync.acPTPClockID[0], 0xAC);

  model().stats(Id(2), &stats);
  EXPECT_EQ(stats.nRxPackets, 3000u);  // 1 ms packets for 3 s
  SMGR_ESSENCE_INFO info{};
  model().info(Id(2), &info);
  EXPECT_EQ(info.Media.Audio.enSampleMode, SMGR_AUDIO_ESSENCE_SAMPLE_MODE_L24);
  EXPECT_EQ(info.Media.Audio.enSampleFrequency, SMGR_AUDIO_ESSENCE_SAMPLE_FREQUENCY_48000HZ);
  ASSERT_EQ(model().resetStats(Id(2)).result, 0u);
  model().stats(Id(2), &stats);
  EXPECT_EQ(stats.nRxPackets, 0u);
}

TEST_F(EssenceModelTest, SavedEssencesComeBackAndAutoStartOnesStart) {
  ASSERT_EQ(model().create(Audio(0, 5000, TRUE)).result, 0u);
  ASSERT_EQ(model().create(Audio(1, 5002)).result, 0u);
  model().setClockMode(1);
  const nlohmann::json saved = model().save();
  makeAppliance(R"({"personality": "2110", "video_inputs": 2})");
  model().load(saved);
  ASSERT_EQ(model().list().size(), 2u);
  EXPECT_EQ(model().syncInfo().enSyncMode, 1);
  EXPECT_EQ(model().start(Id(1)).result, SMGR_ERROR_ESSENCE_ALREADY_STARTED);
  EXPECT_EQ(model().create(Audio(1, 5004)).name, "Essence3");
}

class NoOutbox : public Outbox {
 public:
  bool sendTo(pid_t, const void* data, size_t size) override {
    last.assign(static_cast<const uint8_t*>(data), static_cast<const uint8_t*>(data) + size);
    return true;
  }
  size_t messageLimit(pid_t) override { return 8192; }
  std::vector<uint8_t> last;
};

// Audio encoder aenc1 (SDI input 1) and the KLV source of video input 1 read the
// running audio and data essences of input channel 0, as seen at each read.
TEST_F(EssenceModelTest, AudioEncodersAndVideoInputSourcesReadTheirInputsEssences) {
  AudioEncoderModel& encoders = appliance_->family<AudioEncoderModel>();
  MetaDataModel& sources = appliance_->family<MetaDataModel>();
  sources.load(nullptr);  // the fixed sources, auto-started
  SMGR_AUDIO_ENCODER_STATS audio{};
  SMGR_METADATA_STATS klv{};
  auto readAfter = [&](int64_t ms) {
    clock_->advanceMs(ms);
    ASSERT_EQ(encoders.stats(1, &audio), 0u);
    ASSERT_EQ(sources.stats(Id(1), &klv), 0u);
  };
  ASSERT_EQ(encoders.start(1), 0u);
  readAfter(2000);
  EXPECT_EQ(audio.enState, SMGR_AUDENC_STATE_FAILED);
  EXPECT_EQ(audio.nEncodedFrames + klv.nRxBytes, 0u);
  SMGR_ESSENCE_CFG data = Audio(0, 5002);
  data.enMediaType = SMGR_ESSENCE_MEDIA_TYPE_DATA;
  data.Media = {};
  ASSERT_EQ(model().create(Audio(0, 5000)).result + model().create(data).result, 0u);
  ASSERT_EQ(model().start(Id(1)).result + model().start(Id(2)).result, 0u);
  readAfter(0);
  readAfter(1000);
  EXPECT_EQ(audio.enState, SMGR_AUDENC_STATE_WORKING);
  EXPECT_EQ(audio.nEncodedFrames, 46u);  // one second at 48 kHz, 1024 samples a frame
  EXPECT_EQ(klv.nRxBytes, 8000u);        // one second at 64 kbit/s
  ASSERT_EQ(model().stop(Id(1)).result + model().stop(Id(2)).result, 0u);
  readAfter(0);
  readAfter(1000);
  EXPECT_EQ(audio.enState, SMGR_AUDENC_STATE_FAILED);
  EXPECT_EQ(audio.nEncodedFrames, 46u);
  EXPECT_EQ(klv.nRxBytes, 8000u);
  EXPECT_EQ(klv.nBitRateInKbps, 0);
}

TEST_F(EssenceModelTest, AnSdiUnitAnswers303WithTheCreateDescriptionAt88) {
  makeAppliance(R"({"personality": "SDI"})");
  NoOutbox outbox;
  ClientInfo client{getpid(), 0, "/test", "test"};
  SMGRPROT_MSG_ESSENCE_CREATE_REQ create{};
  create.Header = {SMGRPROT_ESSENCE_CREATE_REQ, 1, sizeof create, 0, 0, 0};
  create.Data.EssenceCfg = Audio(0, 5000);
  Dispatcher(*appliance_, outbox).dispatch(client, reinterpret_cast<const uint8_t*>(&create), sizeof create);
  SMGRPROT_MSG_ESSENCE_CREATE_RSP answer{};
  ASSERT_EQ(outbox.last.size(), sizeof answer);
  memcpy(&answer, outbox.last.data(), sizeof answer);
  EXPECT_EQ(answer.Data.Result, SMGR_ERROR_NOT_SUPPORTED_IN_SDI_PERSONALITY);
  EXPECT_NE(answer.Data.szErrorDescription[0], '\0');
}

}  // namespace
}  // namespace sim::test
