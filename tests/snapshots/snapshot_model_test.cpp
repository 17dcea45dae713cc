// Rules of the simulated snapshots: a case per refusal code, naming (base
// names, generated names, extensions, suffixes), quota and storage devices,
// settings across a restart, and a written PNG that decodes to colour bars.
#include "snapshot_model.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "model_fixture.h"
#include "persistence.h"

namespace sim::test {
namespace {

class SnapshotModelTest : public ApplianceTest {
 protected:
  SnapshotModel& snapshots() { return appliance_->family<SnapshotModel>(); }
  static SMGR_SNAPSHOT_CFG Still(const char* name, uint64_t flags = 0,
                                 int format = SMGR_SNAPSHOT_FORMAT_JPEG) {
    SMGR_SNAPSHOT_CFG cfg{};
    cfg.nSize = sizeof cfg;
    cfg.SetFieldsFlag = flags | kSnapshotFormat | kSnapshotWidth | kSnapshotHeight;
    cfg.enFormat = format;
    cfg.Width = 64;
    cfg.Height = 36;
    cfg.nVidencID = 1;
    snprintf(cfg.szFileName, sizeof cfg.szFileName, "%s", name);
    return cfg;
  }
  std::string take(const SMGR_SNAPSHOT_CFG& cfg, SMGR_RESULT expected = SMGR_ERROR_SUCCESS) {
    std::string name;
    EXPECT_EQ(snapshots().take(cfg, &name), expected);
    return name;
  }
  static uint32_t BE32(const std::vector<uint8_t>& b, size_t at) {
    return uint32_t{b[at]} << 24 | uint32_t{b[at + 1]} << 16 | uint32_t{b[at + 2]} << 8 | b[at + 3];
  }
};

TEST_F(SnapshotModelTest, TakeRefusesWithTheCodeOfEachRule) {
  SMGR_SNAPSHOT_CFG cfg = Still("a");
  cfg.nVidencID = 9;
  take(cfg, SMGR_ERROR_NO_MATCHING_CODEC_FOUND);
  snapshots().setEncoderRunning([](int id) { return id != 2; });
  cfg.nVidencID = 2;
  take(cfg, SMGR_ERROR_CODEC_NOT_STARTED);
  cfg = Still("a", kSnapshotQuality);
  cfg.nQualityFactor = 101;
  take(cfg, SMGR_ERROR_INVALID_PARAMETERS);
  cfg = Still("a", kSnapshotPalette);
  cfg.enPaletteSelection = 3;
  take(cfg, SMGR_ERROR_INVALID_PARAMETERS);
  cfg = Still("a");
  cfg.Width = 1921;
  take(cfg, SMGR_ERROR_INVALID_PARAMETERS);
  take(Still("a", 0, 2), SMGR_ERROR_INVALID_PARAMETERS);
  take(Still("bad name.jpg"), SMGR_ERROR_INVALID_CHARS_IN_FILENAME);
  SMGR_SNAPSHOT_ADMIN_CFG admin{sizeof admin, kStorageLimit, 1, 0};
  ASSERT_EQ(snapshots().setAdmin(admin), SMGR_ERROR_SUCCESS);
  cfg = Still("big");
  cfg.SetFieldsFlag |= kSnapshotFormat;
  cfg.enFormat = SMGR_SNAPSHOT_FORMAT_PNG;
  cfg.Width = 640;
  cfg.Height = 360;
  take(cfg, SMGR_ERROR_OUT_OF_STORAGE_SPACE);
}

TEST_F(SnapshotModelTest, NamesFilesAndTheStoredPngDecodes) {
  EXPECT_EQ(take(Still("/elsewhere/gate")), "gate.jpg");
  EXPECT_EQ(take(Still("gate.jpg")), "gate_1.jpg") << "no overwrite: a suffix";
  EXPECT_EQ(take(Still("gate.jpg", kSnapshotOverwrite | 0)), "gate_2.jpg");
  SMGR_SNAPSHOT_CFG overwrite = Still("gate.jpg", kSnapshotOverwrite);
  overwrite.bOverwrite = TRUE;
  EXPECT_EQ(take(overwrite), "gate.jpg");
  EXPECT_EQ(take(Still("")), "venc1_1.jpg");
  const std::string png = take(Still("bars", 0, SMGR_SNAPSHOT_FORMAT_PNG));
  ASSERT_EQ(png, "bars.png");

  std::ifstream in(snapshots().folder() / png, std::ios::binary);
  std::vector<uint8_t> b((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  ASSERT_GT(b.size(), 33u);
  EXPECT_EQ(std::string(b.begin() + 1, b.begin() + 4), "PNG");
  EXPECT_EQ(BE32(b, 16), 64u);
  EXPECT_EQ(BE32(b, 20), 36u);
  // IDAT: zlib header, stored blocks, Adler-32; rows are filter 0 + RGB.
  const size_t idat = 8 + 25;
  ASSERT_EQ(std::string(b.begin() + idat + 4, b.begin() + idat + 8), "IDAT");
  size_t at = idat + 8 + 2;
  std::vector<uint8_t> raw;
  for (bool last = false; !last;) {
    last = b[at] & 1;
    const size_t n = b[at + 1] | b[at + 2] << 8;
    EXPECT_EQ(n ^ 0xFFFF, size_t(b[at + 3] | b[at + 4] << 8));
    raw.insert(raw.end(), b.begin() + at + 5, b.begin() + at + 5 + n);
    at += 5 + n;
  }
  ASSERT_EQ(raw.size(), 36u * (1 + 64 * 3));
  uint32_t s1 = 1, s2 = 0;
  for (uint8_t byte : raw) s1 = (s1 + byte) % 65521, s2 = (s2 + s1) % 65521;
  EXPECT_EQ(BE32(b, at), (s2 << 16) | s1);
  EXPECT_EQ(raw[1 + 0], 191) << "white bar first";
  EXPECT_EQ(raw[1 + 63 * 3], 0) << "black bar last";

  std::ifstream jpeg(snapshots().folder() / "gate.jpg", std::ios::binary);
  std::vector<uint8_t> j((std::istreambuf_iterator<char>(jpeg)), std::istreambuf_iterator<char>());
  ASSERT_GT(j.size(), 4u);
  EXPECT_EQ(j[0], 0xFF);
  EXPECT_EQ(j[1], 0xD8);
  EXPECT_EQ(j[j.size() - 1], 0xD9);
}

TEST_F(SnapshotModelTest, DeleteRenameStorageAndPersistence) {
  take(Still("one"));
  take(Still("two"));
  EXPECT_EQ(snapshots().remove("nothing.jpg"), SMGR_ERROR_NO_SUCH_SNAPSHOT);
  EXPECT_EQ(snapshots().rename("one.jpg", "two.jpg"), SMGR_ERROR_NAME_IN_USE);
  EXPECT_EQ(snapshots().rename("nothing.jpg", "x.jpg"), SMGR_ERROR_NO_SUCH_SNAPSHOT);
  EXPECT_EQ(snapshots().rename("one.jpg", "o ne.jpg"), SMGR_ERROR_INVALID_CHARS_IN_FILENAME);
  EXPECT_EQ(snapshots().rename("one.jpg", "three.jpg"), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(snapshots().remove("two.jpg"), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(snapshots().removeAll(), 1u);

  SMGR_SNAPSHOT_ADMIN_CFG admin{sizeof admin, kStorageLimit, 0, 0};
  EXPECT_EQ(snapshots().setAdmin(admin), SMGR_ERROR_UNLIMITED_SNAPSHOTS_NOT_SUPPORTED_FOR_LOCATION);
  admin.nMaxStorageInKiloBytes = 1 << 30;
  EXPECT_EQ(snapshots().setAdmin(admin), SMGR_ERROR_SNAPSHOT_MEDIA_MAX_STORAGE_LIMIT_EXCEEDED);
  admin = {sizeof admin, kStorageDevice, 0, SMGR_SNAPSHOT_STORAGE_NFS};
  EXPECT_EQ(snapshots().setAdmin(admin), SMGR_ERROR_NFS_NOT_ENABLED);
  admin.enStorageDevice = SMGR_SNAPSHOT_STORAGE_CUSTOM_DIRECTORY;
  EXPECT_EQ(snapshots().setAdmin(admin), SMGR_ERROR_SNAPSHOTS_CUSTOM_LOCATION_DOES_NOT_EXIST);
  admin = {sizeof admin, kStorageLimit, 2048, 0};
  ASSERT_EQ(snapshots().setAdmin(admin), SMGR_ERROR_SUCCESS);
  SMGR_SNAPSHOT_DEFAULTS defaults{sizeof defaults, kSnapshotQuality, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(snapshots().setDefaults(defaults), SMGR_ERROR_INVALID_PARAMETERS);
  defaults.nQualityFactor = 90;
  ASSERT_EQ(snapshots().setDefaults(defaults), SMGR_ERROR_SUCCESS);

  Appliance restarted(ApplianceProfile::Default(), clock_, stateDir_);
  RestoreAppliance(restarted, SnapshotAppliance(*appliance_));
  EXPECT_EQ(restarted.family<SnapshotModel>().defaults().nQualityFactor, 90);
  EXPECT_EQ(restarted.family<SnapshotModel>().adminInfo().nMaxStorageInKiloBytes, 2048);
}

TEST_F(SnapshotModelTest, ACustomFolderMustBeAFolder) {
  ApplianceProfile profile;
  std::string error;
  const std::string file = (stateDir_ / "plain").string();
  std::filesystem::create_directories(stateDir_);
  std::ofstream(file) << "x";
  ASSERT_TRUE(ApplianceProfile::FromJson({{"snapshot_custom_directory", file}}, &profile, &error)) << error;
  Appliance custom(profile, clock_, stateDir_);
  SMGR_SNAPSHOT_ADMIN_CFG admin{sizeof admin, kStorageDevice, 0, SMGR_SNAPSHOT_STORAGE_CUSTOM_DIRECTORY};
  EXPECT_EQ(custom.family<SnapshotModel>().setAdmin(admin),
            SMGR_ERROR_SNAPSHOTS_CUSTOM_LOCATION_NOT_A_DIRECTORY);
}

}  // namespace
}  // namespace sim::test
