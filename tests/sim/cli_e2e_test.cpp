// smgrctl against a real sessmgrd-sim: tables for people, --json for scripts,
// failure lines and exit statuses, diagnostics and still images.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <thread>

#include "sim_harness.h"

namespace sim::test {
namespace {

using nlohmann::json;

class CliTest : public ::testing::Test {
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
    CommandResult result = ok(args);
    return json::parse(result.out);
  }
  void createUdpAndSrt() {
    ok({"stream", "create", "cam1", "-e", "TS-UDP", "-a", "239.1.1.1", "-p", "5000", "--video", "venc1",
        "--audio", "aenc1"});
    ok({"stream", "create", "link2", "-e", "TS-SRT", "-a", "198.51.100.4", "-p", "9000", "--passphrase",
        "0123456789abc", "--video", "2", "--audio", "2"});
  }

  SimProcess sim_;
};

TEST_F(CliTest, ListShowsTheSystemsOwnValueNamesInAlignedColumns) {
  createUdpAndSrt();
  ok({"stream", "start", "cam1"});
  CommandResult list = ok({"stream", "list"});
  std::istringstream lines(list.out);
  std::string header, first, second;
  std::getline(lines, header);
  std::getline(lines, first);
  std::getline(lines, second);
  EXPECT_EQ(header.rfind("ID  NAME", 0), 0u) << list.out;
  EXPECT_NE(first.find("STREAMING"), std::string::npos) << list.out;
  EXPECT_NE(first.find("TS-UDP"), std::string::npos);
  EXPECT_NE(first.find("239.1.1.1"), std::string::npos);
  EXPECT_NE(second.find("TS-SRT"), std::string::npos);
  EXPECT_NE(second.find("STOPPED"), std::string::npos);
  // Columns line up: every field of the header starts where the rows' fields start.
  EXPECT_EQ(header.find("STATE"), first.find("STREAMING"));
  EXPECT_EQ(header.find("STATE"), second.find("STOPPED"));
}

TEST_F(CliTest, JsonListAndStatsParseBackAndCountersMove) {
  createUdpAndSrt();
  ok({"stream", "start", "1"});
  json list = okJson({"stream", "list"});
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(list[0]["name"], "cam1");
  EXPECT_EQ(list[0]["state"], "STREAMING");
  EXPECT_EQ(list[1]["encapsulation"], "TS-SRT");
  EXPECT_EQ(list[1]["srt"]["mode"], "Caller");
  EXPECT_EQ(list[0]["sources"][0]["name"], "venc1");

  json before = okJson({"stream", "stats", "cam1"});
  std::this_thread::sleep_for(std::chrono::milliseconds(600));
  json after = okJson({"stream", "stats", "cam1"});
  EXPECT_GT(after[0]["tx_packets"].get<uint64_t>(), before[0]["tx_packets"].get<uint64_t>());
  EXPECT_GT(after[0]["bitrate_kbps"].get<int>(), 0);
}

TEST_F(CliTest, FailuresExitNonZeroWithOneLineNamingTheOperation) {
  createUdpAndSrt();
  ok({"stream", "start", "cam1"});
  CommandResult again = RunCtl({"stream", "start", "cam1"});
  EXPECT_NE(again.status, 0);
  EXPECT_EQ(again.err,
            "smgrctl: stream start cam1: Stream already started, Stream 1 (\"cam1\") is already started\n");
  CommandResult busy = RunCtl({"stream", "delete", "cam1"});
  EXPECT_NE(busy.status, 0);
  EXPECT_EQ(busy.err, "smgrctl: stream delete cam1: Stream still in use\n");
  CommandResult missing = RunCtl({"stream", "show", "nope"});
  EXPECT_EQ(missing.err, "smgrctl: stream show nope: No matching stream found\n");
  CommandResult duplicate =
      RunCtl({"stream", "create", "cam1", "-a", "239.1.1.2", "-p", "5002", "--video", "1", "--audio", "3"});
  EXPECT_EQ(duplicate.err, "smgrctl: stream create cam1: A stream with this name already exists\n");
  CommandResult noDaemon = [] {
    setenv("SESSMGR_DAEMON_QUEUE", "/simtest-nobody-here", 1);
    return RunCtl({"stream", "list"});
  }();
  sim_.exportEnvironment();
  EXPECT_NE(noDaemon.status, 0);
  EXPECT_EQ(noDaemon.err.rfind("smgrctl: connect to sessmgrd: ", 0), 0u) << noDaemon.err;
}

TEST_F(CliTest, PauseResumeStopDeleteRoundTrip) {
  createUdpAndSrt();
  for (const char* step : {"start", "pause", "resume", "stop", "delete"}) ok({"stream", step, "link2"});
  json list = okJson({"stream", "list"});
  ASSERT_EQ(list.size(), 1u);
  EXPECT_EQ(list[0]["name"], "cam1");
}

TEST_F(CliTest, StreamsSurviveAKillOfTheSimulator) {
  createUdpAndSrt();
  ok({"stream", "start", "cam1"});
  ASSERT_TRUE(sim_.killAndRestart()) << sim_.log();  // right after the answer: nothing may be lost
  json list = okJson({"stream", "list"});
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(list[0]["name"], "cam1");
  EXPECT_EQ(list[0]["state"], "STREAMING");
  EXPECT_EQ(list[1]["name"], "link2");
  EXPECT_EQ(list[1]["state"], "STOPPED");
}

TEST_F(CliTest, StatsWatchPrintsOneTablePerRound) {
  createUdpAndSrt();
  ok({"stream", "start", "cam1"});
  CommandResult watch = ok({"stream", "stats", "--watch", "0.3", "--count", "3"});
  size_t tables = 0;
  for (size_t at = watch.out.find("--- "); at != std::string::npos; at = watch.out.find("--- ", at + 1))
    ++tables;
  EXPECT_EQ(tables, 3u) << watch.out;
}

TEST_F(CliTest, DebugCommandsShowTheSimulatorsThreadsAndMutexes) {
  json info = okJson({"debug", "info"});
  EXPECT_EQ(info["pid"].get<int>(), sim_.pid());
  json threads = okJson({"debug", "threads"});
  ASSERT_GE(threads.size(), 2u);
  bool sawMain = false, sawHousekeeper = false;
  for (const json& thread : threads) {
    sawMain |= thread["name"] == "sessmgrd" && thread["tid"] == sim_.pid();
    sawHousekeeper |= thread["name"] == "smgr-housekeep";
  }
  EXPECT_TRUE(sawMain) << threads.dump();
  EXPECT_TRUE(sawHousekeeper) << threads.dump();
  json mutexes = okJson({"debug", "mutexes"});
  ASSERT_GE(mutexes.size(), 2u);
  EXPECT_GT(mutexes[0]["acquired"].get<uint64_t>(), 0u);
  EXPECT_NE(ok({"debug", "threads"}).out.find("sessmgrd"), std::string::npos);
}

TEST_F(CliTest, ErrorTextsComeFromTheLibrary) {
  EXPECT_EQ(ok({"error", "27"}).out, "No matching stream found\n");
  EXPECT_EQ(ok({"error", "0x80000003"}).out, "Unable to resolve hostname\n");
  EXPECT_EQ(ok({"error", "12"}).out, "(Unknown:12)\n");
  json code = okJson({"error", "25"});
  EXPECT_EQ(code["text"], "Stream still in use");
  EXPECT_EQ(RunCtl({"error", "twelve"}).status, 2);
}

TEST_F(CliTest, StillImagesAreDeletedInTheStateFolder) {
  for (const char* name : {"logo.mp4", "bars.mp4", "slate.mp4"})
    std::ofstream(sim_.stillImageDir() / name) << "x";
  ok({"stream", "create", "cam1", "-a", "239.1.1.1", "-p", "5000", "--still", "slate.mp4"});
  ok({"still", "delete", "logo"});  // the library adds .mp4
  EXPECT_FALSE(std::filesystem::exists(sim_.stillImageDir() / "logo.mp4"));
  json all = okJson({"still", "delete", "--all"});
  EXPECT_EQ(all["deleted"], 1);
  EXPECT_EQ(all["skipped"], 1);
  EXPECT_TRUE(std::filesystem::exists(sim_.stillImageDir() / "slate.mp4"));
  EXPECT_NE(RunCtl({"still", "delete", "logo"}).status, 0);
}

TEST_F(CliTest, EveryCommandHasHelp) {
  for (std::vector<std::string> args : std::vector<std::vector<std::string>>{{"--help"},
                                                                             {"stream", "--help"},
                                                                             {"stream", "create", "--help"},
                                                                             {"stream", "stats", "--help"},
                                                                             {"still", "delete", "--help"},
                                                                             {"debug", "threads", "--help"},
                                                                             {"error", "--help"}}) {
    CommandResult help = RunCtl(args);
    EXPECT_EQ(help.status, 0) << args.back();
    EXPECT_NE(help.out.find("Usage"), std::string::npos) << args.back();
  }
}

}  // namespace
}  // namespace sim::test
