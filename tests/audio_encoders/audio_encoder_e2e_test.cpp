// smgrctl audio-encoder against a real sessmgrd-sim: the list in the
// library's value names, set/start/mute with the daemon's refusals, and
// streams that see whether their audio encoder runs.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "sim_harness.h"

namespace sim::test {
namespace {

TEST(AudioEncoderCli, ListSetStartMuteAndStreamsSeeTheRunState) {
  SimProcess sim;
  ASSERT_TRUE(sim.ready()) << sim.log();
  sim.exportEnvironment();
  auto ok = [](const std::vector<std::string>& args) {
    CommandResult result = RunCtl(args);
    EXPECT_EQ(result.status, 0) << result.err;
    return result;
  };
  CommandResult list = ok({"aenc", "list"});
  EXPECT_NE(list.out.find("aenc8"), std::string::npos) << list.out;
  EXPECT_NE(list.out.find("SDI1Ch3+4"), std::string::npos);
  EXPECT_NE(list.out.find("MPEG4-ADTS"), std::string::npos);

  ok({"aenc", "set", "2", "--input", "SDI1CH12", "--bitrate", "96", "--language", "fre"});
  ok({"aenc", "start", "aenc1"});
  CommandResult busy = RunCtl({"aenc", "start", "aenc2"});
  EXPECT_EQ(busy.status, 1) << "the pair is in use";
  EXPECT_NE(busy.err.find("audio-encoder start aenc2"), std::string::npos) << busy.err;
  EXPECT_EQ(RunCtl({"aenc", "set", "aenc3", "--sample-rate", "44"}).status, 1) << "SDI audio is 48 kHz";
  EXPECT_EQ(RunCtl({"aenc", "set", "aenc3", "--input", "SDI9CH12"}).status, 2) << "not an input";
  ok({"aenc", "mute", "1"});
  auto stats = nlohmann::json::parse(ok({"--json", "aenc", "stats", "aenc1"}).out);
  ASSERT_EQ(stats.size(), 1u);
  EXPECT_EQ(stats[0]["state"], "MUTED");
  auto shown = nlohmann::json::parse(ok({"--json", "aenc", "show", "aenc2"}).out);
  EXPECT_EQ(shown["input"], "SDI1Ch1+2");
  EXPECT_EQ(shown["bitrate_kbps"], 96);
  EXPECT_EQ(shown["stats"]["state"], "STOPPED");

  ok({"stream", "create", "live", "-e", "TS-UDP", "-a", "239.1.1.9", "-p", "5000", "--video", "venc1",
      "--audio", "aenc1"});
  ok({"stream", "create", "idle", "-e", "TS-UDP", "-a", "239.1.1.9", "-p", "5002", "--video", "venc1",
      "--audio", "aenc4"});
  EXPECT_EQ(ok({"stream", "start", "live"}).err.find("warning"), std::string::npos);
  EXPECT_NE(ok({"stream", "start", "idle"}).err.find("warning"), std::string::npos) << "aenc4 is not started";
}

}  // namespace
}  // namespace sim::test
