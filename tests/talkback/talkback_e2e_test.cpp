// smgrctl talkback against a real sessmgrd-sim: the channel auto-starts, set
// changes only what is given, disable refuses starts, stats --watch repeats.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "sim_harness.h"

namespace sim::test {
namespace {

TEST(TalkBackCli, ShowSetDisableEnableAndWatch) {
  SimProcess sim;
  ASSERT_TRUE(sim.ready()) << sim.log();
  sim.exportEnvironment();
  auto json = [](std::vector<std::string> args) {
    args.insert(args.begin(), "--json");
    CommandResult result = RunCtl(args);
    EXPECT_EQ(result.status, 0) << result.err;
    return nlohmann::json::parse(result.out.empty() ? "null" : result.out);
  };
  auto shown = json({"talkback", "show"});
  EXPECT_EQ(shown["name"], "talkback");
  EXPECT_EQ(shown["port"], 5004);
  EXPECT_EQ(shown["state"], "LISTENING") << "the channel starts by itself";
  EXPECT_EQ(RunCtl({"talkback", "start"}).status, 1);
  EXPECT_EQ(RunCtl({"talkback", "set", "--port", "0"}).status, 1);
  EXPECT_EQ(RunCtl({"talkback", "set", "--volume", "70"}).status, 0);
  shown = json({"talkback", "show"});
  EXPECT_EQ(shown["volume"], 70);
  EXPECT_EQ(shown["port"], 5004);

  EXPECT_EQ(RunCtl({"talkback", "disable"}).status, 0);
  EXPECT_EQ(RunCtl({"talkback", "start"}).status, 1);
  EXPECT_EQ(json({"talkback", "stats"})["state"], "DISABLED");
  EXPECT_EQ(RunCtl({"talkback", "enable"}).status, 0);
  CommandResult watch = RunCtl({"talkback", "stats", "--watch", "0.1", "-n", "2"});
  EXPECT_EQ(watch.status, 0) << watch.err;
  size_t tables = 0;
  for (size_t at = watch.out.find("STATE"); at != std::string::npos; at = watch.out.find("STATE", at + 1))
    ++tables;
  EXPECT_EQ(tables, 2u) << watch.out;
}

}  // namespace
}  // namespace sim::test
