// Control and query operations against the test peer: the wire selector, the
// daemon's description, an older daemon's and a short record, and still-image
// deletion. Selector kinds, success codes, caller record sizes and paging are
// swept by the operation table and the engine's own tests.
#include <gtest/gtest.h>

#include <string>

#include "stream_peer.h"

namespace smgr::test {
namespace {

using StreamControlTest = StreamPeerTest;

// Which results succeed is swept by the operation table; only Start passes the
// daemon's description on.
TEST_F(StreamControlTest, OnlyStartKeepsTheDaemonsDescription) {
  SMGR_OBJECT_SELECTOR selector = ById(3);
  char sz[256];
  for (WORD wRequest : {SMGRPROT_STREAM_START_REQ, SMGRPROT_STREAM_STOP_REQ}) {
    peer.onNextRequest(wRequest,
                       Reply::withResult(SMGR_ERROR_STREAM_ALREADY_STARTED).description("held by session 2"));
    EXPECT_FALSE(wRequest == SMGRPROT_STREAM_START_REQ ? SessMgr_StartStream(&selector)
                                                       : SessMgr_StopStream(&selector));
    EXPECT_EQ(std::string(SessMgr_GetLastErrorString(sz, sizeof(sz))).find("held by session 2") !=
                  std::string::npos,
              wRequest == SMGRPROT_STREAM_START_REQ);
  }
  ASSERT_TRUE(SessMgr_ResetStreamStats(&selector));
  auto reset = peer.lastRequest(SMGRPROT_STREAM_RESETSTATS_REQ);
  ASSERT_EQ(reset->size(), 84u);
  EXPECT_EQ(reset->field<int32_t>(20), 3);
}

TEST_F(StreamControlTest, AHandleTravelsAsItsIdAndDeleteKeepsIt) {
  AnswerWithStream(SMGRPROT_STREAM_OPEN_REQ, 14, "cam");
  HSTREAM hStream = nullptr;
  SMGR_OBJECT_SELECTOR byId = ById(14);
  ASSERT_TRUE(SessMgr_OpenStream(&byId, &hStream));
  SMGR_OBJECT_SELECTOR byHandle = ByHandle(hStream);
  ASSERT_TRUE(SessMgr_PauseStream(&byHandle));
  auto pause = peer.lastRequest(SMGRPROT_STREAM_PAUSE_REQ);
  EXPECT_EQ(pause->field<int32_t>(16), SMGR_SELECTBY_OBJECT_ID);
  EXPECT_EQ(pause->field<int32_t>(20), 14);

  ASSERT_TRUE(SessMgr_DeleteStream(&byId));
  int nID = 0;
  EXPECT_TRUE(SessMgr_GetStreamID(hStream, &nID));
  EXPECT_EQ(nID, 14);
  EXPECT_TRUE(SessMgr_CloseStream(&hStream));
}

// Older callers are swept by the operation table; an older daemon and a failure here.
TEST_F(StreamControlTest, InfoOfAnOlderDaemonAndNothingOnFailure) {
  SMGR_STREAM_INFO answer{};
  answer.nSize = 200;  // an older daemon
  answer.nIndex = 3;
  std::memset(answer.szUserData, 'u', 10);
  SMGR_OBJECT_SELECTOR selector = ById(3);
  SMGR_STREAM_INFO info;
  std::memset(&info, 0xAB, sizeof(info));
  info.nSize = sizeof(info);
  peer.onNextRequest(SMGRPROT_STREAM_GETINFO_REQ, Reply::ok().bytes(20, &answer, sizeof(answer)));
  ASSERT_TRUE(SessMgr_GetStreamInfo(&selector, &info));
  EXPECT_EQ(info.nSize, 200u);
  EXPECT_EQ(info.nIndex, 3);
  EXPECT_EQ(reinterpret_cast<BYTE*>(&info)[200], 0xAB);
  EXPECT_EQ(info.szUserData[0], static_cast<char>(0xAB));

  std::memset(&info, 0xAB, sizeof(info));
  info.nSize = sizeof(info);
  peer.onNextRequest(SMGRPROT_STREAM_GETINFO_REQ, Reply::withResult(SMGR_ERROR_NO_MATCHING_STREAM_FOUND));
  EXPECT_FALSE(SessMgr_GetStreamInfo(&selector, &info));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_NO_MATCHING_STREAM_FOUND);
  EXPECT_EQ(info.nIndex, static_cast<int32_t>(0xABABABAB));
}

TEST_F(StreamControlTest, StatsCopyIsBoundedByWhatArrived) {
  SMGR_STREAM_STATS stats{};
  stats.nSize = sizeof(stats);
  stats.nBitRateInKbps = 777;  // beyond what the daemon sends below
  SMGR_STREAM_STATS daemon{};
  daemon.nSize = sizeof(daemon);  // claims a full record ...
  daemon.enState = SMGR_STREAM_STATE_PAUSED;
  peer.onNextRequest(SMGRPROT_STREAM_GETSTATS_REQ,
                     Reply::ok().size(20 + 100).bytes(20, &daemon, 100));  // ... but sends 100 bytes
  SMGR_OBJECT_SELECTOR selector = ById(2);
  ASSERT_TRUE(SessMgr_GetStreamStats(&selector, &stats));
  EXPECT_EQ(stats.enState, SMGR_STREAM_STATE_PAUSED);
  EXPECT_EQ(stats.nSize, 100u);
  EXPECT_EQ(stats.nBitRateInKbps, 777);
}

TEST_F(StreamControlTest, StillImages) {
  ASSERT_TRUE(SessMgr_DeleteStillImage("logo"));
  auto request = peer.lastRequest(SMGRPROT_STILL_DELETE_REQ);
  ASSERT_EQ(request->size(), 272u);
  EXPECT_EQ(request->text(16, 256), "/usr/share/ostrelle/still_images/logo.mp4");

  EXPECT_FALSE(SessMgr_DeleteStillImage("/tmp/elsewhere/logo.mp4"));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_FALSE(SessMgr_DeleteStillImage("../logo"));
  ASSERT_TRUE(SessMgr_DeleteStillImage("/usr/share/ostrelle/still_images/logo.mp4"));
  EXPECT_EQ(peer.lastRequest(SMGRPROT_STILL_DELETE_REQ)->text(16, 256),
            "/usr/share/ostrelle/still_images/logo.mp4");
  EXPECT_EQ(peer.requestCount(SMGRPROT_STILL_DELETE_REQ), 2u);

  peer.onNextRequest(SMGRPROT_STILL_DELETE_REQ, Reply::ok().put(20, uint32_t{3}).put(24, uint32_t{1}));
  EXPECT_TRUE(SessMgr_DeleteAllStillImages(nullptr, nullptr));
  EXPECT_EQ(peer.lastRequest(SMGRPROT_STILL_DELETE_REQ)->text(16, 256), "all");

  ULONG nDeleted = 0, nSkipped = 0;
  peer.onNextRequest(
      SMGRPROT_STILL_DELETE_REQ,
      Reply::withResult(SMGR_ERROR_STILL_IMAGE_IN_USE).put(20, uint32_t{2}).put(24, uint32_t{5}));
  EXPECT_FALSE(SessMgr_DeleteAllStillImages(&nDeleted, &nSkipped));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_STILL_IMAGE_IN_USE);
  EXPECT_EQ(nDeleted, 2u);
  EXPECT_EQ(nSkipped, 5u);
}

}  // namespace
}  // namespace smgr::test
