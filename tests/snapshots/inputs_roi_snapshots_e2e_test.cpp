// smgrctl and the library against a real sessmgrd-sim for video inputs,
// regions of interest and snapshots: value names in tables, --json reads,
// the daemon's codes as exit statuses, and a snapshot file on disk.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "sim_harness.h"

namespace sim::test {
namespace {

using nlohmann::json;

class InputsRoiSnapshotsCli : public ::testing::Test {
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

TEST_F(InputsRoiSnapshotsCli, VideoInputsListShowAndSet) {
  CommandResult list = ok({"vin", "list"});
  EXPECT_NE(list.out.find("sdi1"), std::string::npos);
  EXPECT_NE(list.out.find("1920x1080p50"), std::string::npos);
  EXPECT_NE(list.out.find("INACTIVE"), std::string::npos) << list.out;
  json sdi1 = okJson({"video-input", "show", "sdi1"});
  EXPECT_EQ(sdi1["state"], "ACTIVE");
  EXPECT_EQ(sdi1["capabilities"], "SDI, HD, UHD, AUDIO");
  ok({"video-input", "set", "sdi1", "--interface", "SDI", "--fir", "on"});
  json changed = okJson({"video-input", "show", "sdi1"});
  EXPECT_EQ(changed["configured_interface"], "SDI");
  EXPECT_EQ(changed["fir_filter"], true);
  CommandResult missing = RunCtl({"vin", "show", "sdi9"});
  EXPECT_EQ(missing.status, 5) << "81 is a not-found code";
}

TEST_F(InputsRoiSnapshotsCli, RegionsCreateControlAndRefuse) {
  ok({"roi", "create", "--encoder", "1", "--name", "Zone", "--width", "320", "--height", "180"});
  CommandResult clash =
      RunCtl({"roi", "create", "--encoder", "2", "--name", "zone", "--width", "8", "--height", "8"});
  EXPECT_EQ(clash.status, 1) << "6: the daemon compares names ignoring case";
  ok({"roi", "enable", "Zone"});
  EXPECT_EQ(RunCtl({"roi", "enable", "Zone"}).status, 1);
  ok({"roi", "set", "Zone", "--positioning", "top-left", "--border", "box"});
  json zone = okJson({"roi", "show", "Zone"});
  EXPECT_EQ(zone["positioning"], "Top-Left");
  EXPECT_EQ(zone["border"], "Box");
  EXPECT_EQ(zone["enabled"], true);
  EXPECT_NE(ok({"roi", "list"}).out.find("Top-Left"), std::string::npos);
  ok({"roi", "delete", "Zone"});
  EXPECT_EQ(RunCtl({"roi", "show", "Zone"}).status, 5);
}

TEST_F(InputsRoiSnapshotsCli, SnapshotsTakeListRenameDelete) {
  json taken = okJson({"snapshot", "take", "--encoder", "1", "--format", "png", "--width", "64", "--height",
                       "32", "/any/folder/gate"});
  EXPECT_EQ(taken["file"], "gate.png");
  json storage = okJson({"snapshot", "storage"});
  const std::filesystem::path folder = storage["directory"].get<std::string>();
  EXPECT_TRUE(std::filesystem::exists(folder / "gate.png"));
  EXPECT_EQ(okJson({"snapshot", "list"})[0]["file"], "gate.png");
  ok({"snapshot", "rename", "gate.png", "door.png"});
  ok({"snapshot", "defaults", "set", "--quality", "90"});
  EXPECT_EQ(okJson({"snapshot", "defaults"})["quality"], 90);
  EXPECT_EQ(RunCtl({"snapshot", "delete", "gate.png"}).status, 5) << "58 is a not-found code";
  EXPECT_EQ(RunCtl({"snapshot", "storage", "set", "--device", "nfs"}).status, 1);
  EXPECT_EQ(okJson({"snapshot", "delete", "--all"})["deleted"], 1);
}

}  // namespace
}  // namespace sim::test
