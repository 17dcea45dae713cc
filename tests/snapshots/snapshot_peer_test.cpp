// Snapshot departures the operation table cannot see: base names on the
// wire, the daemon's name copied back, the name limits, the record size
// rules of the defaults and storage, and the delete-all count on failure.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "peer_fixture.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"

namespace smgr::test {
namespace {

class SnapshotPeerTest : public ConnectedPeerTest {
 protected:
  void SetUp() override {
    ConnectedPeerTest::SetUp();
    peer.setReplySize(SMGRPROT_SNAPSHOT_TAKE_RSP, sizeof(SMGRPROT_MSG_SNAPSHOT_TAKE_RSP));
    for (WORD w :
         {SMGRPROT_SNAPSHOT_DELETE_RSP, SMGRPROT_SNAPSHOT_RENAME_RSP, SMGRPROT_SNAPSHOT_DELETE_ALL_RSP})
      peer.setReplySize(w, sizeof(SMGRPROT_MSG_SNAPSHOT_COUNT_RSP));
    peer.setReplySize(SMGRPROT_SNAPSHOT_GETDEFAULTS_RSP, sizeof(SMGRPROT_MSG_SNAPSHOT_GETDEFAULTS_RSP));
    peer.setReplySize(SMGRPROT_SNAPSHOT_GETADMININFO_RSP, sizeof(SMGRPROT_MSG_SNAPSHOT_GETADMININFO_RSP));
    peer.setReplySize(SMGRPROT_SNAPSHOT_SETDEFAULTS_RSP, 20);
    peer.setReplySize(SMGRPROT_SNAPSHOT_SETADMINCFG_RSP, 20);
  }
};

TEST_F(SnapshotPeerTest, TakeSendsTheBaseNameAndReturnsTheDaemonsName) {
  SMGR_SNAPSHOT_CFG cfg{};
  cfg.nSize = 16;  // the whole record travels whatever nSize says
  cfg.nVidencID = 2;
  cfg.Height = 720;
  std::strcpy(cfg.szFileName, "/somewhere/else/gate.jpg");
  const char szWritten[] = "gate_1.jpg";
  peer.onNextRequest(SMGRPROT_SNAPSHOT_TAKE_REQ, Reply::ok().bytes(20, szWritten, sizeof(szWritten)));
  ASSERT_TRUE(SessMgr_TakeSnapshot(&cfg));
  EXPECT_STREQ(cfg.szFileName, "gate_1.jpg");
  auto take = peer.lastRequest(SMGRPROT_SNAPSHOT_TAKE_REQ);
  ASSERT_EQ(take->size(), 344u);
  EXPECT_EQ(take->text(36, 288), "gate.jpg");
  EXPECT_EQ(take->field<uint32_t>(16 + 320), 720u);

  std::memset(cfg.szFileName, 'x', sizeof(cfg.szFileName) - 1);
  cfg.szFileName[287] = '\0';  // 287 characters still go
  EXPECT_TRUE(SessMgr_TakeSnapshot(&cfg));
  std::memset(cfg.szFileName, 'x', sizeof(cfg.szFileName));
  EXPECT_FALSE(SessMgr_TakeSnapshot(&cfg));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_EQ(peer.requestCount(SMGRPROT_SNAPSHOT_TAKE_REQ), 2u);
}

TEST_F(SnapshotPeerTest, DeleteAndRenameTakeBaseNamesUnder256Characters) {
  ASSERT_TRUE(SessMgr_RenameSnapshot("../up/a.jpg", "/abs/b.jpg"));
  auto rename = peer.lastRequest(SMGRPROT_SNAPSHOT_RENAME_REQ);
  ASSERT_EQ(rename->size(), 528u);
  EXPECT_EQ(rename->text(16, 256), "a.jpg");
  EXPECT_EQ(rename->text(272, 256), "b.jpg");
  const std::string sz255(255, 'd');
  ASSERT_TRUE(SessMgr_DeleteSnapshot(sz255.c_str()));
  EXPECT_EQ(peer.lastRequest(SMGRPROT_SNAPSHOT_DELETE_REQ)->text(16, 256), sz255);
  const std::string sz256(256, 'd');
  EXPECT_FALSE(SessMgr_DeleteSnapshot(sz256.c_str()));
  EXPECT_FALSE(SessMgr_RenameSnapshot("a.jpg", sz256.c_str()));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_EQ(peer.requestCount(SMGRPROT_SNAPSHOT_DELETE_REQ), 1u);
  EXPECT_EQ(peer.requestCount(SMGRPROT_SNAPSHOT_RENAME_REQ), 1u);
}

TEST_F(SnapshotPeerTest, DeleteAllReportsTheCountEvenOnFailure) {
  peer.onNextRequest(SMGRPROT_SNAPSHOT_DELETE_ALL_REQ,
                     Reply::withResult(SMGR_ERROR_NO_SUCH_SNAPSHOT).put(20, 3u).put(24, 13));
  ULONG nDeleted = 99;
  EXPECT_FALSE(SessMgr_DeleteAllSnapshots(&nDeleted));
  EXPECT_EQ(nDeleted, 3u);
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_NO_SUCH_SNAPSHOT);
  EXPECT_EQ(peer.lastRequest(SMGRPROT_SNAPSHOT_DELETE_ALL_REQ)->size(), 16u);
}

TEST_F(SnapshotPeerTest, DefaultsAndStorageSizeRules) {
  SMGR_SNAPSHOT_DEFAULTS defaults{};
  defaults.nSize = 16;  // an older record: the rest is sent as zeros
  defaults.SetFieldsFlag = 0x3;
  defaults.enFormat = SMGR_SNAPSHOT_FORMAT_PNG;
  defaults.Width = 640;
  ASSERT_TRUE(SessMgr_SetSnapshotDefaults(&defaults));
  auto set = peer.lastRequest(SMGRPROT_SNAPSHOT_SETDEFAULTS_REQ);
  ASSERT_EQ(set->size(), 52u);
  EXPECT_EQ(set->field<int32_t>(28), SMGR_SNAPSHOT_FORMAT_PNG);
  EXPECT_EQ(set->field<uint32_t>(40), 0u);

  SMGR_SNAPSHOT_ADMIN_INFO answer{};
  answer.nSize = 300;
  std::strcpy(answer.szDirectory, "/state/snapshots/");
  peer.onNextRequest(SMGRPROT_SNAPSHOT_GETADMININFO_REQ, Reply::ok().put(20, answer));
  SMGR_SNAPSHOT_ADMIN_INFO info{};
  info.nSize = 300;
  ASSERT_TRUE(SessMgr_GetSnapshotAdminInfo(&info));
  EXPECT_STREQ(info.szDirectory, "/state/snapshots/");
  EXPECT_EQ(peer.lastRequest(SMGRPROT_SNAPSHOT_GETADMININFO_REQ)->size(), 16u);

  char sz[32];
  EXPECT_STREQ(SessMgr_GetSnapshotStorageDeviceString(3, sz, sizeof(sz)), "(Invalid:3)");
}

}  // namespace
}  // namespace smgr::test
