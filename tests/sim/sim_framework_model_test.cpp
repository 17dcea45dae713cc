// The simulator's framework without queues: still-image deletion in the state
// folder, the appliance profile, and the dispatcher's answers to malformed,
// unmodelled and paged requests.
#include <gtest/gtest.h>

#include <fstream>
#include <vector>

#include "dispatch.h"
#include "model_fixture.h"
#include "sim_log.h"
#include "still_images.h"

namespace sim::test {
namespace {

using StillImageTest = ApplianceTest;

void Touch(const std::filesystem::path& path) { std::ofstream(path) << "mp4"; }

TEST_F(StillImageTest, DeleteOneAndAllSkippingImagesInUse) {
  const auto dir = appliance_->stillImageDir();
  Touch(dir / "logo.mp4");
  Touch(dir / "bars.mp4");
  Touch(dir / "slate.mp4");
  SMGR_STREAM_CFG cfg = UdpConfig("cam1");
  snprintf(cfg.szStillImageFName, sizeof cfg.szStillImageFName, "slate.mp4");
  ASSERT_EQ(create(cfg).result, SMGR_ERROR_SUCCESS);

  StillDeleteOutcome one = DeleteStillImages(*appliance_, "logo.mp4");
  EXPECT_EQ(one.result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(one.deleted, 1u);
  EXPECT_FALSE(std::filesystem::exists(dir / "logo.mp4"));
  EXPECT_EQ(DeleteStillImages(*appliance_, "logo.mp4").result, SMGR_ERROR_NO_SUCH_STILL_IMAGE);
  EXPECT_EQ(DeleteStillImages(*appliance_, "slate.mp4").result, SMGR_ERROR_STILL_IMAGE_IN_USE);
  EXPECT_EQ(DeleteStillImages(*appliance_, "../etc.mp4").result, SMGR_ERROR_INVALID_FILENAME_PATH);

  StillDeleteOutcome all = DeleteStillImages(*appliance_, "all");
  EXPECT_EQ(all.result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(all.deleted, 1u);  // bars.mp4
  EXPECT_EQ(all.skipped, 1u);  // slate.mp4 is shown by cam1
  EXPECT_TRUE(std::filesystem::exists(dir / "slate.mp4"));
}

TEST(ProfileTest, DefaultIsAnSdiUnit) {
  ApplianceProfile profile = ApplianceProfile::Default();
  EXPECT_EQ(profile.personality, 0);
  EXPECT_EQ(profile.videoEncoders.size(), 4u);
  EXPECT_EQ(profile.audioEncoders.size(), 8u);
  EXPECT_EQ(profile.videoInputs.size(), 4u);
  EXPECT_EQ(profile.metadataSources.size(), 2u);
  EXPECT_EQ(profile.streamLimit, 16);
  EXPECT_EQ(profile.videoEncoders[3].name, "venc4");
  EXPECT_EQ(profile.videoEncoders[3].id, 4);
}

TEST(ProfileTest, OverlayChangesOnlyWhatItNames) {
  ApplianceProfile profile;
  std::string error;
  ASSERT_TRUE(ApplianceProfile::FromJson(
      nlohmann::json::parse(R"({"personality": "2110", "stream_limit": 2, "video_encoders": 1,
                                "metadata_sources": [{"id": 7, "name": "cot-feed", "bitrate_kbps": 16}]})"),
      &profile, &error))
      << error;
  EXPECT_EQ(profile.personality, 1);
  EXPECT_EQ(profile.streamLimit, 2);
  ASSERT_EQ(profile.videoEncoders.size(), 1u);
  EXPECT_EQ(profile.videoEncoders[0].name, "venc1");
  EXPECT_EQ(profile.audioEncoders.size(), 8u);
  ASSERT_EQ(profile.metadataSources.size(), 1u);
  EXPECT_EQ(profile.metadataSources[0].id, 7);
  EXPECT_EQ(profile.document["stream_limit"], 2);  // families read their own sections from here
}

TEST(ProfileTest, BadDocumentsAreRefusedWithAReason) {
  const char* bad[] = {R"({"personality": "PAL"})", R"({"video_encoders": "four"})",
                       R"({"stream_limit": -1})", R"({"audio_encoders": {"count": 1000}})", R"([1, 2])"};
  for (const char* text : bad) {
    ApplianceProfile profile;
    std::string error;
    EXPECT_FALSE(ApplianceProfile::FromJson(nlohmann::json::parse(text), &profile, &error)) << text;
    EXPECT_FALSE(error.empty()) << text;
  }
}

// Captures what the dispatcher sends.
class CapturingOutbox : public Outbox {
 public:
  bool sendTo(pid_t, const void* data, size_t size) override {
    const auto* bytes = static_cast<const uint8_t*>(data);
    sent.emplace_back(bytes, bytes + size);
    return true;
  }
  size_t messageLimit(pid_t) override { return limit; }
  std::vector<std::vector<uint8_t>> sent;
  size_t limit = 8192;
};

class DispatcherTest : public ApplianceTest {
 protected:
  void SetUp() override {
    ApplianceTest::SetUp();
    SetLogSink([this](LogLevel, const std::string& line) { log.push_back(line); });
  }
  void TearDown() override {
    SetLogSink(nullptr);
    ApplianceTest::TearDown();
  }

  template <typename T>
  void dispatch(T message, size_t size = sizeof(T)) {
    message.Header.wMsgSize = static_cast<WORD>(size);
    message.Header.wMsgSequence = 77;
    Dispatcher(*appliance_, outbox).dispatch(client, reinterpret_cast<const uint8_t*>(&message), size);
  }

  SMGRPROT_HEADER lastHeader() const {
    SMGRPROT_HEADER header{};
    memcpy(&header, outbox.sent.back().data(), sizeof header);
    return header;
  }
  SMGR_RESULT lastResult() const {
    SMGR_RESULT result;
    memcpy(&result, outbox.sent.back().data() + 16, sizeof result);
    return result;
  }

  CapturingOutbox outbox;
  ClientInfo client{getpid(), 0, "/test", "test"};
  std::vector<std::string> log;
};

SMGRPROT_MSG_STREAM_SELECT_REQ SelectRequest(WORD type, int id) {
  SMGRPROT_MSG_STREAM_SELECT_REQ request{};
  request.Header.wMsgType = type;
  request.Data.Select.enType = SMGR_SELECTBY_OBJECT_ID;
  request.Data.Select.Via.ID = id;
  return request;
}

TEST_F(DispatcherTest, WrongSizeIsAnsweredWithInvalidParameters) {
  dispatch(SelectRequest(SMGRPROT_STREAM_START_REQ, 1), 40);
  ASSERT_EQ(outbox.sent.size(), 1u);
  EXPECT_EQ(lastHeader().wMsgType, SMGRPROT_STREAM_START_RSP);
  EXPECT_EQ(lastHeader().wMsgSequence, 77);
  EXPECT_EQ(lastHeader().wMsgSize, sizeof(SMGRPROT_MSG_STREAM_START_RSP));
  EXPECT_EQ(lastHeader().dwSrcPID, static_cast<DWORD>(getpid()));
  EXPECT_EQ(lastResult(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_FALSE(log.empty());
}

TEST_F(DispatcherTest, UnmodelledFamiliesAnswerUnsupportedAndGarbageIsOnlyLogged) {
  SMGRPROT_MSG_STREAM_SELECT_REQ request =
      SelectRequest(SMGRPROT_SESSION_ADD_STREAM_REQ, 1);  // reserved: no family answers it
  dispatch(request);
  ASSERT_EQ(outbox.sent.size(), 1u);
  EXPECT_EQ(lastHeader().wMsgType, SMGRPROT_SESSION_ADD_STREAM_RSP);
  EXPECT_EQ(lastResult(), SMGR_ERROR_UNSUPPORTED_API);

  request.Header.wMsgType = 4242;
  dispatch(request);
  request.Header.wMsgType = SMGRPROT_STREAM_START_RSP;  // a response sent as a request
  dispatch(request);
  EXPECT_EQ(outbox.sent.size(), 1u);
  EXPECT_GE(log.size(), 3u);
}

TEST_F(DispatcherTest, BadSelectorIsInvalidParameters) {
  SMGRPROT_MSG_STREAM_SELECT_REQ request = SelectRequest(SMGRPROT_STREAM_GETINFO_REQ, 1);
  request.Data.Select.enType = SMGR_SELECTBY_OBJECT_HANDLE;
  dispatch(request);
  EXPECT_EQ(lastResult(), SMGR_ERROR_INVALID_PARAMETERS);
  request.Data.Select.enType = SMGR_SELECTBY_OBJECT_NAME;
  memset(request.Data.Select.Via.szName, 'n', sizeof request.Data.Select.Via.szName);  // unterminated
  dispatch(request);
  EXPECT_EQ(lastResult(), SMGR_ERROR_INVALID_PARAMETERS);
}

TEST_F(DispatcherTest, EnumerationHonoursCountOffsetAndTheClientsMessageSize) {
  for (const char* name : {"a", "b", "c"}) ASSERT_EQ(create(UdpConfig(name)).result, SMGR_ERROR_SUCCESS);
  auto enumerate = [&](int count, int offset) {
    SMGRPROT_MSG_STREAM_ENUMERATE_REQ request{};
    request.Header.wMsgType = SMGRPROT_STREAM_ENUMERATE_REQ;
    request.Data.nNumOfStreams = count;
    request.Data.nStartOffset = offset;
    dispatch(request);
    SMGRPROT_STREAM_ENUMERATE_RSP_DATA head{};
    memcpy(&head, outbox.sent.back().data() + 16, 16);
    return head;
  };
  outbox.limit = 32 + 3 * sizeof(SMGR_STREAM_INFO);
  SMGRPROT_STREAM_ENUMERATE_RSP_DATA page = enumerate(2, 1);
  EXPECT_EQ(page.Result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(page.nTotalNumOfStreams, 3u);
  EXPECT_EQ(page.nNumOfStreams, 2u);
  EXPECT_EQ(page.nStreamInfoSize, sizeof(SMGR_STREAM_INFO));
  EXPECT_EQ(outbox.sent.back().size(), 32 + 2 * sizeof(SMGR_STREAM_INFO));
  SMGR_STREAM_INFO second{};
  memcpy(&second, outbox.sent.back().data() + 32, sizeof second);
  EXPECT_STREQ(second.szName, "b");

  EXPECT_EQ(enumerate(0, 0).nNumOfStreams, 0u);  // the total alone
  EXPECT_EQ(enumerate(10, 5).nNumOfStreams, 0u);
  outbox.limit = 8192;  // one record fits a default client queue
  EXPECT_EQ(enumerate(10, 0).nNumOfStreams, 1u);
  EXPECT_EQ(enumerate(-1, 0).Result, SMGR_ERROR_INVALID_PARAMETERS);
}

TEST_F(DispatcherTest, CreateAnswersTheAssignedIdAndName) {
  SMGRPROT_MSG_STREAM_CREATE_REQ request{};
  request.Header.wMsgType = SMGRPROT_STREAM_CREATE_REQ;
  request.Data.StreamCfg = UdpConfig("");
  WireSources sources;
  memcpy(request.Data.ContentSources, sources.entries, sizeof sources.entries);
  dispatch(request);
  SMGRPROT_MSG_STREAM_CREATE_RSP response{};
  ASSERT_EQ(outbox.sent.back().size(), sizeof response);
  memcpy(&response, outbox.sent.back().data(), sizeof response);
  EXPECT_EQ(response.Data.Result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(response.Data.iStreamID, 1);
  EXPECT_STREQ(response.Data.szName, "Stream1");
}

}  // namespace
}  // namespace sim::test
