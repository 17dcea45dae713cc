// Rules of the simulator's configuration store: a saved unit comes back on
// load, a bad file leaves the unit as it is, the saved flag, deletions, and
// auto-save with the start-up file that a fresh launch loads.
#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>

#include "config_store.h"
#include "model_fixture.h"
#include "session_model.h"

namespace sim::test {
namespace {

class ConfigStoreTest : public ApplianceTest {
 protected:
  void SetUp() override {
    ApplianceTest::SetUp();
    ASSERT_EQ(create(UdpConfig("cam1")).result, SMGR_ERROR_SUCCESS);
  }
  ConfigStore& store() { return appliance_->family<ConfigStore>(); }
  size_t sessionCount() { return appliance_->family<SessionModel>().list().size(); }
  void addSession(const char* name) {
    SMGR_SESSION_CFG cfg{};
    cfg.nSize = sizeof cfg;
    snprintf(cfg.szName, sizeof cfg.szName, "%s", name);
    SMGRPROT_OBJECT_SELECTOR wire[SMGR_MAX_SESSION_STREAMS]{};
    ASSERT_EQ(appliance_->family<SessionModel>().create(cfg, wire).result, SMGR_ERROR_SUCCESS);
  }
  static std::string Named(const char* name) { return std::string(SMGR_CONFIG_FOLDER) + name; }
};

TEST_F(ConfigStoreTest, LoadRebuildsTheSavedUnitAndRefusesBadFilesUntouched) {
  addSession("one");
  ASSERT_EQ(store().save(Named("a.cfg"), 0), SMGR_ERROR_SUCCESS);
  EXPECT_TRUE(store().isSaved());
  addSession("two");
  EXPECT_FALSE(store().isSaved());
  EXPECT_EQ(store().load(Named("missing.cfg")), SMGR_ERROR_NO_MATCHING_CONFIG_FILE);
  EXPECT_EQ(store().load(""), SMGR_ERROR_NO_STARTUP_CONFIG_FILE);
  std::ofstream(store().folder() / "bad.cfg") << "{ not json";
  EXPECT_EQ(store().load(Named("bad.cfg")), SMGR_ERROR_INVALID_CONFIG_FILE);
  EXPECT_EQ(store().save("/etc/a.cfg", 0), SMGR_ERROR_INVALID_FILENAME_PATH);
  EXPECT_EQ(sessionCount(), 2u);

  ASSERT_EQ(store().load(Named("a.cfg")), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(sessionCount(), 1u);
  EXPECT_TRUE(store().isSaved());
}

TEST_F(ConfigStoreTest, LoadStartsAutoStartStreamsAndWarnsOfAnUnstartedSource) {
  SMGR_STREAM_CFG cfg = UdpConfig("auto");
  cfg.bAutoStart = TRUE;
  ASSERT_EQ(create(cfg).result, SMGR_ERROR_SUCCESS);
  ASSERT_EQ(streams().stop(ByName("auto")).result, SMGR_ERROR_SUCCESS);
  ASSERT_EQ(store().save(Named("a.cfg"), 0), SMGR_ERROR_SUCCESS);
  // Audio encoder 1 is not started on a fresh unit: the auto-start stream starts with the warning.
  EXPECT_EQ(store().load(Named("a.cfg")), SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE);
  EXPECT_NE(streams().stateOf(2), SMGR_STREAM_STATE_STOPPED);
  EXPECT_EQ(streams().stateOf(1), SMGR_STREAM_STATE_STOPPED);  // not an auto-start one
  EXPECT_TRUE(store().isSaved());
}

TEST_F(ConfigStoreTest, DeletionsReportErrnoAndSpareTheStartupFile) {
  int error = 0;
  EXPECT_EQ(store().remove(Named("none.cfg"), &error), SMGR_ERROR_NO_MATCHING_CONFIG_FILE);
  EXPECT_EQ(error, ENOENT);
  ASSERT_EQ(store().save(Named("a.cfg"), ConfigStore::kStartupModeMakesStartup), SMGR_ERROR_SUCCESS);
  ASSERT_EQ(store().save(Named("b.cfg"), 0), SMGR_ERROR_SUCCESS);
  uint32_t deleted = 0;
  ASSERT_EQ(store().removeAll(&deleted, &error), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(deleted, 2u);
  EXPECT_TRUE(std::filesystem::exists(store().folder() / ConfigStore::kStartupName));
}

TEST_F(ConfigStoreTest, AutoSaveKeepsTheStartupFileThatAFreshLaunchLoads) {
  store().setAutoSave(true);
  addSession("kept");
  store().catchUpAutoSave();
  EXPECT_TRUE(store().isSaved());

  Appliance relaunched(ApplianceProfile::Default(), clock_, stateDir_);
  relaunched.family<StreamModel>().create(UdpConfig("cam1"), WireSources().entries,
                                          SMGR_MAX_STREAM_CONTENT_SOURCES);
  relaunched.restore(nullptr);  // no persisted state: the start-up file it is
  ASSERT_EQ(relaunched.family<SessionModel>().list().size(), 1u);
  EXPECT_STREQ(relaunched.family<SessionModel>().list()[0].szName, "kept");
  EXPECT_FALSE(relaunched.family<ConfigStore>().autoSave());
}

}  // namespace
}  // namespace sim::test
