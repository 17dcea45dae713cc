// Session departures the operation table cannot see: the exact create request
// (the record copied as it is, member entries by ID or name text, never past
// three), the duplicate check that compares empty names too, and the refused
// handle selector of Start/Stop/Delete.
#include <gtest/gtest.h>

#include <cstring>

#include "peer_fixture.h"
#include "trace_capture.h"

namespace smgr::test {
namespace {

class SessionPeerTest : public ConnectedPeerTest {
 protected:
  void SetUp() override {
    ConnectedPeerTest::SetUp();
    peer.setReplySize(SMGRPROT_SESSION_CREATE_RSP, sizeof(SMGRPROT_MSG_SESSION_CREATE_RSP));
    for (WORD w : {SMGRPROT_SESSION_START_RSP, SMGRPROT_SESSION_STOP_RSP, SMGRPROT_SESSION_DELETE_RSP,
                   SMGRPROT_SESSION_CLOSE_RSP})
      peer.setReplySize(w, sizeof(SMGRPROT_MSG_SESSION_RESULT_RSP));
  }
  void AnswerCreate(int32_t iID, const char* szName) {
    char name[64] = {};
    std::strncpy(name, szName, sizeof(name) - 1);
    peer.onNextRequest(SMGRPROT_SESSION_CREATE_REQ, Reply::ok().put(20, iID).bytes(24, name, sizeof(name)));
  }
  static SMGR_SESSION_CFG Cfg(const char* szName) {
    SMGR_SESSION_CFG cfg{};
    cfg.nSize = sizeof(cfg);
    std::strncpy(cfg.szName, szName, sizeof(cfg.szName) - 1);
    cfg.AdvertAddress.enType = SMGR_ANY_ADDRESS;
    return cfg;
  }
};

TEST_F(SessionPeerTest, CreateSendsTheRecordAsItIsAndMembersByIdOrName) {
  SMGR_SESSION_CFG cfg = Cfg("news");
  std::strcpy(cfg.szAuthor, "desk");
  cfg.nNumOfStreams = 200;  // only three entries exist
  cfg.Streams[0].enType = SMGR_SELECTBY_OBJECT_ID;
  cfg.Streams[0].Via.ID = 7;
  cfg.Streams[1].enType = SMGR_SELECTBY_OBJECT_NAME;
  cfg.Streams[1].Via.szName = "cam";
  cfg.Streams[2].enType = SMGR_SELECTBY_OBJECT_HANDLE;
  cfg.usAdvertPort = 9875;
  AnswerCreate(5, "news-5");
  HSESSION hSession = nullptr;
  TraceCapture traces;
  ASSERT_TRUE(SessMgr_CreateSession(&cfg, &hSession));
  EXPECT_TRUE(traces.hasFragment("Content source selection by handle not yet implemented."));

  auto request = peer.lastRequest(SMGRPROT_SESSION_CREATE_REQ);
  ASSERT_EQ(request->size(), 1304u);
  EXPECT_EQ(std::memcmp(request->bytes().data() + 16, &cfg, sizeof(cfg)), 0);
  EXPECT_EQ(request->field<int32_t>(1100), 0);  // entries keep enType 0
  EXPECT_EQ(request->field<int32_t>(1104), 7);
  EXPECT_EQ(request->field<int32_t>(1168), 0);
  EXPECT_EQ(request->text(1172, 64), "cam");
  EXPECT_EQ(request->text(1240, 64), "");  // the handle member stays empty

  int nID = 0;
  EXPECT_TRUE(SessMgr_GetSessionID(hSession, &nID));
  EXPECT_EQ(nID, 5);
  EXPECT_TRUE(SessMgr_CloseSession(&hSession));
  EXPECT_EQ(peer.lastRequest(SMGRPROT_SESSION_CLOSE_REQ)->field<int32_t>(16), 5);
}

TEST_F(SessionPeerTest, AnEmptyNameIsADuplicateOfAnUnnamedHandle) {
  AnswerCreate(1, "");
  HSESSION hFirst = nullptr, hSecond = nullptr;
  SMGR_SESSION_CFG cfg = Cfg("");
  ASSERT_TRUE(SessMgr_CreateSession(&cfg, &hFirst));
  EXPECT_FALSE(SessMgr_CreateSession(&cfg, &hSecond));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_ID_IN_USE);
  EXPECT_EQ(peer.requestCount(SMGRPROT_SESSION_CREATE_REQ), 1u);
  EXPECT_TRUE(SessMgr_CloseSession(&hFirst));
}

TEST_F(SessionPeerTest, ControlTakesIdOrNameOnlyAndFailuresCarryTheResultAlone) {
  AnswerCreate(3, "s3");
  HSESSION hSession = nullptr;
  SMGR_SESSION_CFG cfg = Cfg("s3");
  ASSERT_TRUE(SessMgr_CreateSession(&cfg, &hSession));
  SMGR_OBJECT_SELECTOR byHandle{};
  byHandle.enType = SMGR_SELECTBY_OBJECT_HANDLE;
  byHandle.Via.Handle = hSession;
  SessMgr_SetLastError(4321);
  EXPECT_FALSE(SessMgr_StartSession(&byHandle));
  EXPECT_EQ(SessMgr_GetLastError(), 4321u);
  EXPECT_EQ(peer.requestCount(SMGRPROT_SESSION_START_REQ), 0u);

  SMGR_OBJECT_SELECTOR byId{};
  byId.Via.ID = 3;
  peer.onNextRequest(SMGRPROT_SESSION_START_REQ, Reply::withResult(SMGR_ERROR_SESSION_ALREADY_STARTED));
  EXPECT_FALSE(SessMgr_StartSession(&byId));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_SESSION_ALREADY_STARTED);
  peer.onNextRequest(SMGRPROT_SESSION_STOP_REQ, Reply::withResult(0x80000002u));
  EXPECT_FALSE(SessMgr_StopSession(&byId));  // a warning is no success here
  EXPECT_TRUE(SessMgr_DeleteSession(&byId));
  int nID = 0;
  EXPECT_TRUE(SessMgr_GetSessionID(hSession, &nID));  // Delete leaves local handles
  EXPECT_TRUE(SessMgr_CloseSession(&hSession));
}

}  // namespace
}  // namespace smgr::test
