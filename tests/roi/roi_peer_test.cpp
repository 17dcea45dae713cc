// Region-of-interest departures the operation table cannot see: the handle
// takes the daemon's ID and name, the local clash is case-sensitive, close
// clears the caller's variable and sends the ID, info copies by the smaller
// size, enumeration asks without a cap, and the selector kinds per operation.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "lib_state.h"
#include "peer_fixture.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"

namespace smgr::test {
namespace {

class RoiPeerTest : public ConnectedPeerTest {
 protected:
  void SetUp() override {
    ConnectedPeerTest::SetUp();
    for (WORD w : {SMGRPROT_ROI_DELETE_RSP, SMGRPROT_ROI_CLOSE_RSP, SMGRPROT_ROI_SETCFG_RSP,
                   SMGRPROT_ROI_START_RSP, SMGRPROT_ROI_STOP_RSP})
      peer.setReplySize(w, 20);
    peer.setReplySize(SMGRPROT_ROI_CREATE_RSP, sizeof(SMGRPROT_MSG_ROI_CREATE_RSP));
    peer.setReplySize(SMGRPROT_ROI_GETINFO_RSP, sizeof(SMGRPROT_MSG_ROI_GETINFO_RSP));
  }
  HROI Create(const char* szName, int32_t iAnswerID, const char* szAnswerName) {
    SMGR_ROI_CFG cfg{};
    cfg.nSize = sizeof(cfg);
    std::strcpy(cfg.szName, szName);
    char name[64] = {};
    std::strcpy(name, szAnswerName);
    peer.onNextRequest(SMGRPROT_ROI_CREATE_REQ, Reply::ok().put(20, iAnswerID).bytes(24, name, sizeof(name)));
    HROI hRegion = nullptr;
    EXPECT_TRUE(SessMgr_CreateROI(&cfg, &hRegion));
    return hRegion;
  }
};

TEST_F(RoiPeerTest, CreateKeepsTheDaemonsIdAndNameAndClashesCaseSensitively) {
  HROI hZone = Create("Zone", 11, "Zone");
  UINT nID = 0;
  ASSERT_TRUE(SessMgr_GetROIIndex(hZone, &nID));
  EXPECT_EQ(nID, 11u);
  auto create = peer.lastRequest(SMGRPROT_ROI_CREATE_REQ);
  ASSERT_EQ(create->size(), 132u);
  EXPECT_EQ(create->text(28, 64), "Zone");

  HROI hLower = Create("zone", 12, "zone-2");  // another case is another name here
  ASSERT_NE(hLower, nullptr);
  SMGR_ROI_CFG clash{};
  clash.nSize = sizeof(clash);
  std::strcpy(clash.szName, "zone-2");  // the daemon's name, not the asked one, is remembered
  HROI hClash = nullptr;
  EXPECT_FALSE(SessMgr_CreateROI(&clash, &hClash));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_ID_IN_USE);
  clash.szName[0] = '\0';
  clash.nIndex = 11;
  EXPECT_FALSE(SessMgr_CreateROI(&clash, &hClash));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_ID_IN_USE);
  clash.nIndex = 0;
  clash.nSize = 120;
  EXPECT_FALSE(SessMgr_CreateROI(&clash, &hClash));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_EQ(peer.requestCount(SMGRPROT_ROI_CREATE_REQ), 2u);

  HROI hClose = hZone;
  ASSERT_TRUE(SessMgr_CloseROI(&hClose));
  EXPECT_EQ(hClose, nullptr);
  auto close = peer.lastRequest(SMGRPROT_ROI_CLOSE_REQ);
  ASSERT_EQ(close->size(), 20u);
  EXPECT_EQ(close->field<int32_t>(16), 11);
  EXPECT_EQ(LiveHandleCount(), 1u);
  SessMgr_CloseROI(&hLower);
}

TEST_F(RoiPeerTest, SelectorKindsAndAStreamHandleInASelector) {
  HROI hRegion = Create("", 5, "roi-5");
  SMGR_OBJECT_SELECTOR byHandle{};
  byHandle.enType = SMGR_SELECTBY_OBJECT_HANDLE;
  byHandle.Via.Handle = hRegion;
  ASSERT_TRUE(SessMgr_EnableROI(&byHandle));
  auto enable = peer.lastRequest(SMGRPROT_ROI_START_REQ);
  ASSERT_EQ(enable->size(), 84u);
  EXPECT_EQ(enable->field<int32_t>(16), SMGR_SELECTBY_OBJECT_ID);
  EXPECT_EQ(enable->field<int32_t>(20), 5);
  peer.onNextRequest(SMGRPROT_ROI_STOP_REQ, Reply::withResult(SMGR_ERROR_ROI_ALREADY_DISABLED));
  EXPECT_FALSE(SessMgr_DisableROI(&byHandle));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_ROI_ALREADY_DISABLED);

  SMGR_ROI_CFG cfg{};
  cfg.nSize = sizeof(cfg);
  SessMgr_SetLastError(4321);
  EXPECT_FALSE(SessMgr_DeleteROI(&byHandle));  // delete and configure take ID or name only
  EXPECT_FALSE(SessMgr_ConfigureROI(&byHandle, &cfg));
  struct {
    DWORD dwSignature = SMGR_STREAM_HANDLE_SIGNATURE;
    char abRest[96] = {};
  } stream;
  SMGR_OBJECT_SELECTOR byStream = byHandle;
  byStream.Via.Handle = &stream;
  EXPECT_FALSE(SessMgr_EnableROI(&byStream));
  EXPECT_EQ(SessMgr_GetLastError(), 4321u) << "a refused selector leaves the last error";
  EXPECT_EQ(peer.requestCount(SMGRPROT_ROI_DELETE_REQ) + peer.requestCount(SMGRPROT_ROI_SETCFG_REQ), 0u);

  SMGR_OBJECT_SELECTOR byName{};
  byName.enType = SMGR_SELECTBY_OBJECT_NAME;
  byName.Via.szName = "roi-5";
  cfg.SetFieldsFlag = SMGR_ROI_SET_WIDTH;
  cfg.nWidth = 320;
  ASSERT_TRUE(SessMgr_ConfigureROI(&byName, &cfg));
  auto set = peer.lastRequest(SMGRPROT_ROI_SETCFG_REQ);
  ASSERT_EQ(set->size(), 200u);
  EXPECT_EQ(set->text(20, 64), "roi-5");
  EXPECT_EQ(set->field<uint32_t>(84 + 92), 320u);
  SessMgr_CloseROI(&hRegion);
}

TEST_F(RoiPeerTest, InfoCopiesTheSmallerSizeAndEnumerationHasNoCap) {
  SMGR_ROI_INFO answer{};
  answer.nSize = 100;  // an older daemon record
  answer.nIndex = 9;
  peer.onNextRequest(SMGRPROT_ROI_GETINFO_REQ, Reply::ok().put(20, answer));
  SMGR_ROI_INFO info;
  std::memset(&info, 0x7F, sizeof(info));
  info.nSize = sizeof(info);
  SMGR_OBJECT_SELECTOR byId{};
  byId.Via.ID = 9;
  ASSERT_TRUE(SessMgr_GetROIInfo(&byId, &info));
  EXPECT_EQ(info.nSize, 100u);
  EXPECT_EQ(info.nIndex, 9);
  EXPECT_EQ(info.enPositioning, 0x7F7F7F7F) << "nothing past the daemon's size";

  std::vector<unsigned char> buffer(116 * 100);
  peer.onNextRequest(SMGRPROT_ROI_ENUMERATE_REQ, Reply::ok().size(32));
  EXPECT_TRUE(SessMgr_EnumerateROIs(buffer.data(), buffer.size(), 3, nullptr, nullptr, nullptr));
  auto page = peer.lastRequest(SMGRPROT_ROI_ENUMERATE_REQ);
  EXPECT_EQ(page->field<uint32_t>(16), 100u);
  EXPECT_EQ(page->field<uint32_t>(20), 3u);
}

}  // namespace
}  // namespace smgr::test
