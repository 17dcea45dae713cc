// smgrctl video-encoder against a real sessmgrd-sim: the listing in value
// names, a partial configure with rate adaptation, a refused setting, the
// parameter sets, and a stream started on a stopped encoder.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "sim_harness.h"

namespace sim::test {
namespace {

using nlohmann::json;

class VideoEncoderCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(sim_.ready()) << sim_.log();
    sim_.exportEnvironment();
  }
  CommandResult ok(const std::vector<std::string>& args) {
    CommandResult result = RunCtl(args);
    EXPECT_EQ(result.status, 0) << result.err;
    return result;
  }
  SimProcess sim_;
};

TEST_F(VideoEncoderCliTest, ListSetShowAndSprop) {
  const CommandResult list = ok({"venc", "list"});
  EXPECT_NE(list.out.find("venc4"), std::string::npos) << list.out;
  EXPECT_NE(list.out.find("WORKING"), std::string::npos);
  EXPECT_NE(list.out.find("BNC-1"), std::string::npos);
  EXPECT_NE(list.out.find("Input/Auto"), std::string::npos);

  ok({"video-encoder", "set", "2", "--bitrate", "30000", "--resolution", "576p", "--codec", "h265",
      "--profile", "main"});
  const json shown = json::parse(ok({"--json", "venc", "show", "venc2"}).out);
  EXPECT_EQ(shown["codec"], "H.265");
  EXPECT_EQ(shown["resolution"], "720x576p");
  EXPECT_EQ(shown["bitrate_kbps"], 30000);
  EXPECT_EQ(shown["adapted_bitrate_kbps"], 15000);
  EXPECT_EQ(shown["bitrate_adapted"], true);

  const CommandResult refused = RunCtl({"venc", "set", "venc1", "--gop", "0"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("venc1"), std::string::npos) << refused.err;

  const CommandResult sprop = ok({"venc", "sprop", "venc1"});
  EXPECT_EQ(sprop.out.rfind("Z2Q", 0), 0u) << sprop.out;  // base64 of 0x67 0x64 (High)
  EXPECT_NE(sprop.out.find(",aO"), std::string::npos);
  EXPECT_EQ(RunCtl({"venc", "show", "venc9"}).status, 5);  // not found
  EXPECT_EQ(json::parse(ok({"--json", "venc", "show", "id:2"}).out)["name"], "venc2");
}

TEST_F(VideoEncoderCliTest, AStreamOnAStoppedEncoderStartsWithAWarning) {
  ok({"venc", "stop", "venc1"});
  EXPECT_EQ(json::parse(ok({"--json", "venc", "stats", "1"}).out)[0]["state"], "STOPPED");
  ok({"stream", "create", "cam1", "-e", "TS-UDP", "-a", "239.1.1.1", "-p", "5000", "--video", "venc1",
      "--audio", "aenc1"});
  const CommandResult started = ok({"stream", "start", "cam1"});
  EXPECT_NE(started.err.find("warning"), std::string::npos) << started.err;
  ok({"venc", "start", "venc1"});
  EXPECT_EQ(RunCtl({"venc", "start", "venc1"}).status, 1);  // already started
}

}  // namespace
}  // namespace sim::test
