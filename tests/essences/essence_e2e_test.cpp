// Essences end to end on an ST 2110 unit: smgrctl, the library and the real
// simulator (clock mode, create, start, moving counters, the one running
// audio essence per input), and the SDI unit's refusal.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <thread>

#include "sim_harness.h"

namespace sim::test {
namespace {

using nlohmann::json;

json OkJson(std::vector<std::string> args) {
  args.insert(args.begin(), "--json");
  CommandResult result = RunCtl(args);
  EXPECT_EQ(result.status, 0) << result.err;
  return result.status == 0 ? json::parse(result.out) : json();
}

TEST(EssenceEndToEnd, ClockCreateStartCountersAndOneAudioEssencePerInput) {
  SimProcess sim(R"({"personality": "2110", "video_inputs": 2})");
  ASSERT_TRUE(sim.ready()) << sim.log();
  sim.exportEnvironment();
  EXPECT_EQ(RunCtl({"sync", "mode", "1"}).status, 0);
  EXPECT_EQ(OkJson({"sync", "show"})["mode"], 1);

  json mic =
      OkJson({"essence", "create", "mic", "--audio", "2", "--address", "239.10.0.1", "--port", "5004"});
  EXPECT_EQ(mic["channels"], 2);
  EXPECT_EQ(mic["sample_frequency"], "48kHz");
  json cam = OkJson({"essence", "create", "cam", "--video", "1920x1080i29", "--address", "239.10.0.2",
                     "--port", "5006", "--payload", "98"});
  EXPECT_EQ(cam["format"], "1920x1080i29");
  EXPECT_EQ(RunCtl({"essence", "start", "mic"}).status, 0);
  EXPECT_EQ(RunCtl({"essence", "start", std::to_string(cam["id"].get<int>())}).status, 0);

  json first = OkJson({"essence", "stats", "mic"});
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  json second = OkJson({"essence", "stats", "mic"});
  ASSERT_EQ(second.size(), 1u);
  EXPECT_EQ(second[0]["state"], "RUNNING");
  EXPECT_GT(second[0]["rx_packets"].get<uint64_t>(), first[0]["rx_packets"].get<uint64_t>());

  ASSERT_EQ(RunCtl({"essence", "create", "mic2", "--audio", "8", "--ptime", "125us", "--address",
                    "239.10.0.3", "--port", "5004"})
                .status,
            0);
  CommandResult refused = RunCtl({"essence", "start", "mic2"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("essence start mic2"), std::string::npos) << refused.err;
  EXPECT_EQ(RunCtl({"essence", "set", "mic2", "--input", "1"}).status, 0);
  EXPECT_EQ(RunCtl({"essence", "start", "mic2"}).status, 0);

  CommandResult list = RunCtl({"essence", "list"});
  EXPECT_NE(list.out.find("RUNNING"), std::string::npos) << list.out;
  EXPECT_NE(list.out.find("1920x1080i29"), std::string::npos) << list.out;
  EXPECT_TRUE(sim.stop());
}

TEST(EssenceEndToEnd, AnSdiUnitRefusesWith303) {
  SimProcess sim;
  ASSERT_TRUE(sim.ready()) << sim.log();
  sim.exportEnvironment();
  for (auto args : {std::vector<std::string>{"essence", "list"}, std::vector<std::string>{"sync", "show"}}) {
    CommandResult result = RunCtl(args);
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("SDI"), std::string::npos) << result.err;
  }
  EXPECT_TRUE(sim.stop());
}

}  // namespace
}  // namespace sim::test
