// Rules of the simulated regions of interest: a case per refusal code, close
// keeping the region, and regions surviving a restart.
#include "roi_model.h"

#include <gtest/gtest.h>

#include "model_fixture.h"
#include "persistence.h"

namespace sim::test {
namespace {

class RoiModelTest : public ApplianceTest {
 protected:
  RoiModel& regions() { return appliance_->family<RoiModel>(); }
  static SMGR_ROI_CFG Region(const char* name, int encoder, int index = 0) {
    SMGR_ROI_CFG cfg{};
    cfg.nSize = sizeof cfg;
    snprintf(cfg.szName, sizeof cfg.szName, "%s", name);
    cfg.nIndex = index;
    cfg.nEncoderID = encoder;
    cfg.Origin = {1600, 900};
    cfg.nWidth = 320;
    cfg.nHeight = 180;
    cfg.enPositioning = SMGR_ROI_POS_ABSOLUTE;
    return cfg;
  }
};

TEST_F(RoiModelTest, CreateRefusesWithTheCodeOfEachRule) {
  Outcome zone = regions().create(Region("Zone", 1, 5));
  ASSERT_EQ(zone.result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(zone.id, 5);
  EXPECT_EQ(regions().create(Region("other", 2, 5)).result, SMGR_ERROR_ID_IN_USE);
  EXPECT_EQ(regions().create(Region("zone", 2)).result, SMGR_ERROR_NAME_IN_USE);
  EXPECT_EQ(regions().create(Region("x", 9)).result, SMGR_ERROR_NO_MATCHING_CODEC_FOUND);
  EXPECT_EQ(regions().create(Region("x", 1)).result, SMGR_ERROR_MAX_OF_ONE_ROI_PER_VIDEO_ENCODER);
  SMGR_ROI_CFG outside = Region("x", 2);
  outside.Origin.X = 1601;  // one pixel past the right edge of 1920
  EXPECT_EQ(regions().create(outside).result, SMGR_ERROR_INVALID_PARAMETERS);
  SMGR_ROI_CFG bad = Region("x", 2);
  bad.enPositioning = 6;
  EXPECT_EQ(regions().create(bad).result, SMGR_ERROR_INVALID_PARAMETERS);
  bad = Region("x", 2);
  bad.enBorderType = 2;
  EXPECT_EQ(regions().create(bad).result, SMGR_ERROR_INVALID_PARAMETERS);
  bad = Region("x", 2);
  bad.nSize = 115;
  EXPECT_EQ(regions().create(bad).result, SMGR_ERROR_INVALID_PARAMETERS);
  Outcome unnamed = regions().create(Region("", 2));
  ASSERT_EQ(unnamed.result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(unnamed.id, 1);
  EXPECT_EQ(unnamed.name, "roi1");
}

TEST_F(RoiModelTest, ControlConfigureAndPersistence) {
  ASSERT_EQ(regions().create(Region("gate", 3, 7)).result, SMGR_ERROR_SUCCESS);
  const ObjectSelector gate = ByName("GATE");  // names match ignoring case
  EXPECT_EQ(regions().enable(gate, true), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(regions().enable(gate, true), SMGR_ERROR_ROI_ALREADY_ENABLED);
  EXPECT_EQ(regions().enable(gate, false), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(regions().enable(gate, false), SMGR_ERROR_ROI_ALREADY_DISABLED);
  EXPECT_EQ(regions().enable(ById(8), true), SMGR_ERROR_NO_MATCHING_ROI_FOUND);

  SMGR_ROI_CFG change = Region("", 0);
  change.SetFieldsFlag = SMGR_ROI_SET_INDEX;
  EXPECT_EQ(regions().configure(ById(7), change), SMGR_ERROR_INVALID_PARAMETERS);
  change.SetFieldsFlag = SMGR_ROI_SET_WIDTH;
  change.nSize = 120;
  EXPECT_EQ(regions().configure(ById(7), change), SMGR_ERROR_INVALID_PARAMETERS);
  change.nSize = sizeof change;
  change.nWidth = 100;
  ASSERT_EQ(regions().configure(ById(7), change), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(regions().close(7), SMGR_ERROR_SUCCESS);

  Appliance restarted(ApplianceProfile::Default(), clock_, stateDir_);
  RestoreAppliance(restarted, SnapshotAppliance(*appliance_));
  SMGR_ROI_INFO info{};
  ASSERT_EQ(restarted.family<RoiModel>().info(ById(7), &info), SMGR_ERROR_SUCCESS)
      << "close keeps the region";
  EXPECT_STREQ(info.szName, "gate");
  EXPECT_EQ(info.nWidth, 100u);
  EXPECT_EQ(info.nHeight, 180u);
  EXPECT_EQ(restarted.family<RoiModel>().remove(ById(7)), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(restarted.family<RoiModel>().remove(ById(7)), SMGR_ERROR_NO_MATCHING_ROI_FOUND);
}

}  // namespace
}  // namespace sim::test
