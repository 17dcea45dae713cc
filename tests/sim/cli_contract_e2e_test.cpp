// smgrctl's contract with scripts, end to end against the simulator: one exit
// status per class of failure, the JSON error object, and the parse rules a
// new user tripped on.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "sim_harness.h"

namespace sim::test {
namespace {

using nlohmann::json;

class CliContractTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(sim_.ready()) << sim_.log();
    sim_.exportEnvironment();
  }
  void create(const std::string& name, const std::string& port) {
    ASSERT_EQ(RunCtl({"stream", "create", name, "-a", "239.1.1.1", "-p", port}).status, 0);
  }
  static json Error(const CommandResult& result) { return json::parse(result.out).at("error"); }

  SimProcess sim_;
};

TEST_F(CliContractTest, EveryFailureClassHasItsExitStatusAndJsonError) {
  create("cam1", "5000");
  EXPECT_EQ(RunCtl({"stream", "list"}).status, 0);

  CommandResult refused = RunCtl({"--json", "stream", "stop", "cam1"});  // not started
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(Error(refused)["operation"], "stream stop cam1");
  EXPECT_EQ(Error(refused)["symbol"], "SMGR_ERROR_STREAM_NOT_STARTED");

  CommandResult notFound = RunCtl({"--json", "stream", "show", "nosuch"});
  EXPECT_EQ(notFound.status, 5);
  json error = Error(notFound);
  EXPECT_EQ(error["code"], 27);
  EXPECT_EQ(error["symbol"], "SMGR_ERROR_NO_MATCHING_STREAM_FOUND");
  EXPECT_EQ(error["text"], "No matching stream found");

  CommandResult unresolved = RunCtl({"stream", "create", "x", "-a", "nosuch.invalid", "-p", "1"});
  EXPECT_EQ(unresolved.status, 1);
  EXPECT_NE(unresolved.err.find("Unable to resolve hostname \"nosuch.invalid\""), std::string::npos)
      << unresolved.err;

  CommandResult unreachable = RunCtl({"--json", "--queue", "/smgr-nobody-serves-this", "stream", "list"});
  EXPECT_EQ(unreachable.status, 4);
  EXPECT_NE(Error(unreachable)["text"].get<std::string>().find("no daemon serves the queue /smgr-nobody"),
            std::string::npos);

  for (std::vector<std::string> args : std::vector<std::vector<std::string>>{
           {},
           {"help"},
           {"bogus", "--help"},
           {"stream", "bogus"},
           {"stream", "stats", "-n", "2"},
           {"stream", "create", "x", "-a", "1.2.3", "-p", "1"},
           {"stream", "create", "x", "-a", "239.1.1.1", "-p", "1", "--srt-mode", "listener"},
           {"error", "99999"}}) {
    CommandResult usage = RunCtl(args);
    EXPECT_EQ(usage.status, 2) << ::testing::PrintToString(args) << usage.err;
  }
}

TEST_F(CliContractTest, ADaemonThatStopsAnsweringTimesOut) {
  create("cam1", "5000");
  int out[2];
  ASSERT_EQ(pipe(out), 0);
  pid_t child = fork();
  if (child == 0) {
    dup2(out[1], STDOUT_FILENO);
    execl(SMGRCTL_PATH, SMGRCTL_PATH, "stream", "stats", "--watch", "0.2", "--count", "100", nullptr);
    _exit(127);
  }
  close(out[1]);
  char first[64] = {};
  ASSERT_GT(read(out[0], first, sizeof first - 1), 0);  // the first sample is out
  kill(sim_.pid(), SIGSTOP);
  int status = 0;
  waitpid(child, &status, 0);  // the settings' ResponseTimeout is 3 s
  kill(sim_.pid(), SIGCONT);
  close(out[0]);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 3);
}

TEST_F(CliContractTest, ScriptsReadWhatTheyAskedFor) {
  CommandResult created = RunCtl({"stream", "create", "42", "--id", "7", "-p", "5000", "--srt-mode",
                                  "LISTENER", "-e", "ts-srt"});  // option values in any case
  ASSERT_EQ(created.status, 0) << created.err;
  json shown = json::parse(RunCtl({"--json", "stream", "show", "name:42"}).out);
  EXPECT_EQ(shown["id"], 7);
  EXPECT_EQ(shown["state"], "STOPPED");  // at the top level, as in stream list
  EXPECT_EQ(json::parse(RunCtl({"--json", "stream", "show", "id:7"}).out)["name"], "42");

  CommandResult samples = RunCtl({"--json", "stream", "stats", "--watch", "0.1", "--count", "2"});
  ASSERT_EQ(samples.status, 0) << samples.err;
  std::istringstream lines(samples.out);
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    json sample = json::parse(line);
    EXPECT_TRUE(sample.contains("time"));
    EXPECT_EQ(sample["streams"][0]["name"], "42");
  }
  EXPECT_EQ(count, 2);

  EXPECT_NE(RunCtl({"__complete", "stream"}).out.find("create\n"), std::string::npos);  // bash completion

  CommandResult partial = RunCtl({"stream", "stats", "7", "nosuch"});
  EXPECT_EQ(partial.status, 5);
  EXPECT_NE(partial.out.find("42"), std::string::npos);
  EXPECT_NE(partial.err.find("nosuch"), std::string::npos);
}

TEST_F(CliContractTest, StillImagesListTheStreamsThatShowThem) {
  std::ofstream(sim_.stillImageDir() / "slate.mp4") << "12345";
  ASSERT_EQ(
      RunCtl({"stream", "create", "cam1", "-a", "239.1.1.1", "-p", "5000", "--still", "slate.mp4"}).status,
      0);
  setenv("SESSMGR_STILL_IMAGE_DIR", sim_.stillImageDir().c_str(), 1);
  json list = json::parse(RunCtl({"--json", "still", "list"}).out);
  unsetenv("SESSMGR_STILL_IMAGE_DIR");
  ASSERT_EQ(list.size(), 1u);
  EXPECT_EQ(list[0]["bytes"], 5);
  EXPECT_NE(list[0]["used_by"].get<std::string>().find("cam1"), std::string::npos);
  CommandResult inUse = RunCtl({"still", "delete", "slate"});
  EXPECT_EQ(inUse.status, 1);
  EXPECT_NE(inUse.err.find("\"cam1\""), std::string::npos) << inUse.err;
}

}  // namespace
}  // namespace sim::test
