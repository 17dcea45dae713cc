// Shared pieces of the simulator's model tests: an appliance on a manual clock
// with a private state folder, and a valid stream configuration to vary.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include "appliance.h"
#include "stream_model.h"

namespace sim::test {

class ApplianceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    stateDir_ = std::filesystem::temp_directory_path() /
                ("sim-model-" + std::to_string(getpid()) + "-" + info->name());
    std::filesystem::remove_all(stateDir_);
    clock_ = std::make_shared<ManualClock>();
    appliance_ = std::make_unique<Appliance>(ApplianceProfile::Default(), clock_, stateDir_);
  }
  void TearDown() override { std::filesystem::remove_all(stateDir_); }

  StreamModel& streams() { return appliance_->family<StreamModel>(); }

  // A TS-UDP stream to 239.1.1.1:5000 fed by venc1 (by name) and audio encoder 1 (by ID).
  static SMGR_STREAM_CFG UdpConfig(const char* name) {
    SMGR_STREAM_CFG cfg{};
    cfg.nSize = sizeof cfg;
    snprintf(cfg.szName, sizeof cfg.szName, "%s", name);
    cfg.enType = SMGR_STREAM_TYPE_TX;
    cfg.enContents = SMGR_STREAM_CONTENTS_VIDEO | SMGR_STREAM_CONTENTS_AUDIO;
    cfg.Address.enType = SMGR_IPV4_ADDRESS;
    const BYTE address[4] = {239, 1, 1, 1};
    memcpy(cfg.Address.acAddress, address, 4);
    cfg.usPort = 5000;
    cfg.enEncapsulation = SMGR_STREAM_ENCAPS_TS_UDP;
    cfg.nNumOfSources = 2;
    cfg.ContentSources[0].enType = SMGR_CONTENT_SRC_VIDEO;
    cfg.ContentSources[0].Selector.enType = SMGR_SELECTBY_OBJECT_NAME;
    cfg.ContentSources[1].enType = SMGR_CONTENT_SRC_AUDIO;
    cfg.ContentSources[1].Selector.enType = SMGR_SELECTBY_OBJECT_ID;
    return cfg;
  }

  static SMGR_STREAM_CFG SrtConfig(const char* name, int mode = SMGR_SRT_MODE_CLIENT) {
    SMGR_STREAM_CFG cfg = UdpConfig(name);
    cfg.enEncapsulation = SMGR_STREAM_ENCAPS_TS_SRT;
    const BYTE address[4] = {198, 51, 100, 7};
    memcpy(cfg.Address.acAddress, address, 4);
    cfg.EncapSpecCfg.SRT.enMode = mode;
    if (mode == SMGR_SRT_MODE_SERVER) cfg.Address = SMGR_IP_ADDRESS{SMGR_ANY_ADDRESS, {}, {}};
    return cfg;
  }

  // The wire entries that go with UdpConfig (video by name, audio by ID).
  struct WireSources {
    SMGRPROT_OBJECT_SELECTOR entries[SMGR_MAX_STREAM_CONTENT_SOURCES]{};
    WireSources() {
      entries[0].enType = SMGR_CONTENT_SRC_VIDEO;
      snprintf(entries[0].Via.szName, sizeof entries[0].Via.szName, "venc1");
      entries[1].enType = SMGR_CONTENT_SRC_AUDIO;
      entries[1].Via.ID = 1;
    }
  };

  Outcome create(const SMGR_STREAM_CFG& cfg, const WireSources& sources = WireSources(), pid_t client = 0) {
    return streams().create(cfg, sources.entries, SMGR_MAX_STREAM_CONTENT_SOURCES, client);
  }

  static ObjectSelector ById(int id) { return ObjectSelector{false, id, {}}; }
  static ObjectSelector ByName(const std::string& name) { return ObjectSelector{true, 0, name}; }

  SMGR_STREAM_STATS statsOf(int id) {
    SMGR_STREAM_STATS stats{};
    EXPECT_EQ(streams().stats(ById(id), &stats), SMGR_ERROR_SUCCESS);
    return stats;
  }

  std::filesystem::path stateDir_;
  std::shared_ptr<ManualClock> clock_;
  std::unique_ptr<Appliance> appliance_;
};

}  // namespace sim::test
