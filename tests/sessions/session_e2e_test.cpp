// Sessions, saved configurations, LEDs and temperature with the real
// simulator and smgrctl: a session starts its stream and lights its encoder's
// LED, a saved unit comes back after a change, blinking is refused twice.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "sim_harness.h"

namespace sim::test {
namespace {

using nlohmann::json;

class PanelCliTest : public ::testing::Test {
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
  json okJson(std::vector<std::string> args) {
    args.insert(args.begin(), "--json");
    return json::parse(ok(args).out);
  }

  SimProcess sim_{R"({"config": {"save_ms": 100, "load_ms": 200}})"};  // quick file work
};

TEST_F(PanelCliTest, ASessionRunsItsStreamAndASavedUnitComesBack) {
  ok({"stream", "create", "cam1", "-e", "TS-UDP", "-a", "239.1.1.1", "-p", "5000", "--video", "venc1"});
  ok({"session", "create", "news", "--stream", "cam1", "--advertise", "any"});
  ok({"session", "start", "news"});
  EXPECT_EQ(okJson({"stream", "list"})[0]["state"], "STREAMING");
  json leds = okJson({"led", "show"});
  EXPECT_EQ(leds["leds"][3]["led"], "Status1");
  EXPECT_EQ(leds["leds"][3]["state"], "Green");
  json list = okJson({"session", "list"});
  ASSERT_EQ(list.size(), 1u);
  EXPECT_EQ(list[0]["advert_address"], "239.255.255.255");
  EXPECT_EQ(okJson({"session", "stats", "news"})["advertising"], true);

  ok({"config", "save", "demo"});
  EXPECT_EQ(okJson({"config", "status"})["saved"], true);
  ok({"session", "stop", "news"});
  ok({"session", "delete", "news"});
  EXPECT_EQ(okJson({"config", "status"})["saved"], false);
  EXPECT_EQ(okJson({"session", "list"}).size(), 0u);
  ok({"config", "load", "demo"});
  EXPECT_EQ(okJson({"session", "list"})[0]["name"], "news");
  EXPECT_EQ(okJson({"config", "status"})["saved"], true);

  // A configuration that is not there is "not found" (exit 5), on stderr or as JSON.
  CommandResult missing = RunCtl({"config", "load", "nothing"});
  EXPECT_EQ(missing.status, 5);
  EXPECT_NE(missing.err.find("config load nothing"), std::string::npos) << missing.err;
  ok({"config", "delete", "demo"});
  CommandResult gone = RunCtl({"--json", "config", "delete", "demo"});
  EXPECT_EQ(gone.status, 5);
  EXPECT_EQ(json::parse(gone.out)["error"]["symbol"], "SMGR_ERROR_NO_MATCHING_CONFIG_FILE");
}

TEST_F(PanelCliTest, BlinkingIsRefusedTwiceAndTheSensorReads) {
  ok({"led", "blink", "60"});
  EXPECT_GT(okJson({"led", "show"})["blink_stop_uptime"].get<int>(), 0);
  CommandResult twice = RunCtl({"led", "blink", "60"});
  EXPECT_EQ(twice.status, 1);
  EXPECT_NE(twice.err.find("led blink"), std::string::npos);
  ok({"led", "blink", "--stop"});
  EXPECT_EQ(RunCtl({"led", "blink", "--stop"}).status, 1);
  json temperature = okJson({"temperature", "show"});
  EXPECT_NEAR(temperature["current_celsius"].get<int>(), 35, 2);
  EXPECT_GT(temperature["current_time"].get<int64_t>(), 1600000000);
}

}  // namespace
}  // namespace sim::test
