// Metadata sources end to end: smgrctl and the library against a real
// sessmgrd-sim, from create to counters, and a stream holding its source.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <thread>

#include "sim_harness.h"

namespace sim::test {
namespace {

using nlohmann::json;

class MetaDataCliTest : public ::testing::Test {
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

  SimProcess sim_;
};

TEST_F(MetaDataCliTest, CreateStartCountAndAStreamKeepsItsSource) {
  json created = okJson({"meta", "create", "", "--serial", "/dev/ttyS1", "--baud", "19200", "--relay",
                         "10.0.0.1:5000,ttl=8", "--uas-tags", "2,5-7"});
  const int id = created["id"];
  EXPECT_EQ(id, 3);
  json list = okJson({"metadata", "list"});
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(list[0]["input_type"], "HD-SDI");
  EXPECT_EQ(list[2]["name"], "Metadata3");
  EXPECT_EQ(list[2]["uas_tags"], "1,2,5,6,7");  // the library added the checksum tag
  EXPECT_EQ(list[2]["status"], "STOPPED");

  ok({"meta", "start", "Metadata3"});
  json before = okJson({"meta", "stats", "3"});
  std::this_thread::sleep_for(std::chrono::milliseconds(400));
  json after = okJson({"meta", "stats", "3"});
  EXPECT_EQ(after[0]["state"], "WORKING");
  EXPECT_GT(after[0]["rx_bytes"].get<uint64_t>(), before[0]["rx_bytes"].get<uint64_t>());
  EXPECT_GT(after[0]["relays"][0]["tx_bytes"].get<uint64_t>(), 0u);

  ok({"stream", "create", "with-klv", "-a", "239.1.1.1", "-p", "5000", "--video", "1", "--audio", "1",
      "--data", "Metadata3"});
  CommandResult refused = RunCtl({"meta", "delete", "3"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("metadata delete 3"), std::string::npos) << refused.err;
  EXPECT_NE(refused.err.find("in use"), std::string::npos) << refused.err;
  ok({"stream", "delete", "with-klv"});
  ok({"meta", "stop", "3"});
  ok({"meta", "delete", "3"});
  EXPECT_EQ(RunCtl({"meta", "delete", "1"}).status, 1);  // a video input's source stays
}

TEST_F(MetaDataCliTest, BadOptionsExitTwoAndTheDaemonsRefusalsOne) {
  EXPECT_EQ(RunCtl({"meta", "create", "x", "--serial", "/dev/ttyS1", "--uas-tags", "142"}).status, 2);
  EXPECT_EQ(RunCtl({"meta", "create", "x", "--serial", "/dev/ttyS1", "--security-tags", "25"}).status, 2);
  EXPECT_EQ(RunCtl({"meta", "set", "1"}).status, 2);
  CommandResult baud = RunCtl({"meta", "create", "x", "--serial", "/dev/ttyS1", "--baud", "1234"});
  EXPECT_EQ(baud.status, 1);
  ok({"meta", "create", "net", "--udp", "239.0.0.9:6000", "--cot", "--sensor-discovery"});
  ok({"meta", "set", "net", "--udp", "6001"});
  CommandResult cotOnKlv = RunCtl({"meta", "set", "klv1", "--spi-uid", "a"});
  EXPECT_EQ(cotOnKlv.status, 1);
  EXPECT_NE(cotOnKlv.err.find("CoT"), std::string::npos) << cotOnKlv.err;
  json shown = okJson({"meta", "show", "net"});
  EXPECT_EQ(shown["format"], "CoT");
  EXPECT_EQ(shown["input"], "239.0.0.9:6001");
}

}  // namespace
}  // namespace sim::test
