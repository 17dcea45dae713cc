// Control and query operations against the test peer: accepted selector
// kinds, the wire selector, success tests, size negotiation of info and
// statistics, paging, and still-image deletion.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "stream_peer.h"
#include "util_dbg.h"

namespace smgr::test {
namespace {

using StreamControlTest = StreamPeerTest;

TEST_F(StreamControlTest, WarningsSucceedOnlyForStart) {
  SMGR_OBJECT_SELECTOR selector = ById(3);
  peer.onNextRequest(SMGRPROT_STREAM_START_REQ,
                     Reply::withResult(SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE));
  EXPECT_TRUE(SessMgr_StartStream(&selector));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE);
  peer.onNextRequest(SMGRPROT_STREAM_PAUSE_REQ,
                     Reply::withResult(SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE));
  EXPECT_FALSE(SessMgr_PauseStream(&selector));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE);

  // Only Start passes the daemon's description on.
  peer.onNextRequest(SMGRPROT_STREAM_START_REQ,
                     Reply::withResult(SMGR_ERROR_STREAM_ALREADY_STARTED).description("held by session 2"));
  EXPECT_FALSE(SessMgr_StartStream(&selector));
  char sz[256];
  EXPECT_NE(std::string(SessMgr_GetLastErrorString(sz, sizeof(sz))).find("held by session 2"),
            std::string::npos);
  peer.onNextRequest(SMGRPROT_STREAM_STOP_REQ, Reply::withResult(SMGR_ERROR_STREAM_NOT_STARTED));
  EXPECT_FALSE(SessMgr_StopStream(&selector));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_STREAM_NOT_STARTED);
  EXPECT_TRUE(SessMgr_ResumeStream(&selector));
  EXPECT_TRUE(SessMgr_ResetStreamStats(&selector));
  EXPECT_TRUE(SessMgr_DeleteStream(&selector));
  EXPECT_EQ(SessMgr_GetLastError(), 0u);
  auto reset = peer.lastRequest(SMGRPROT_STREAM_RESETSTATS_REQ);
  ASSERT_EQ(reset->size(), 84u);
  EXPECT_EQ(reset->field<int32_t>(20), 3);
}

TEST_F(StreamControlTest, SelectorKindsPerOperation) {
  AnswerWithStream(SMGRPROT_STREAM_OPEN_REQ, 14, "cam");
  HSTREAM hStream = nullptr;
  SMGR_OBJECT_SELECTOR byId = ById(14);
  ASSERT_TRUE(SessMgr_OpenStream(&byId, &hStream));
  SMGR_OBJECT_SELECTOR byHandle = ByHandle(hStream);
  ASSERT_TRUE(SessMgr_PauseStream(&byHandle));
  auto pause = peer.lastRequest(SMGRPROT_STREAM_PAUSE_REQ);
  EXPECT_EQ(pause->field<int32_t>(16), SMGR_SELECTBY_OBJECT_ID);  // a handle never travels
  EXPECT_EQ(pause->field<int32_t>(20), 14);

  SessMgr_SetLastError(4321);
  EXPECT_FALSE(SessMgr_StopStream(&byHandle));  // Stop and Delete take ID or name only
  EXPECT_FALSE(SessMgr_DeleteStream(&byHandle));
  SMGR_OBJECT_SELECTOR bogus{};
  bogus.enType = 5;
  EXPECT_FALSE(SessMgr_StartStream(&bogus));
  EXPECT_EQ(SessMgr_GetLastError(), 4321u);
  EXPECT_EQ(peer.requestCount(SMGRPROT_STREAM_STOP_REQ) + peer.requestCount(SMGRPROT_STREAM_DELETE_REQ) +
                peer.requestCount(SMGRPROT_STREAM_START_REQ),
            0u);
  EXPECT_FALSE(SessMgr_StartStream(nullptr));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);

  // Deleting does not touch the local handle.
  ASSERT_TRUE(SessMgr_DeleteStream(&byId));
  int nID = 0;
  EXPECT_TRUE(SessMgr_GetStreamID(hStream, &nID));
  EXPECT_EQ(nID, 14);
  EXPECT_TRUE(SessMgr_CloseStream(&hStream));
}

TEST_F(StreamControlTest, LongNamesAreCutAndTheRestIsZero) {
  const std::string name(70, 'z');
  SMGR_OBJECT_SELECTOR selector = ByName(name.c_str());
  ASSERT_TRUE(SessMgr_StartStream(&selector));
  auto start = peer.lastRequest(SMGRPROT_STREAM_START_REQ);
  ASSERT_EQ(start->size(), 84u);
  EXPECT_EQ(start->field<int32_t>(16), SMGR_SELECTBY_OBJECT_NAME);
  EXPECT_EQ(start->text(20, 64), name.substr(0, 63));
  EXPECT_EQ(start->bytes()[83], 0);
}

TEST_F(StreamControlTest, InfoSizeNegotiationBothWays) {
  SMGRPROT_MSG_STREAM_GETINFO_RSP answer{};
  answer.Data.StreamInfo.nSize = sizeof(SMGR_STREAM_INFO);
  answer.Data.StreamInfo.nIndex = 3;
  std::memset(answer.Data.StreamInfo.szUserData, 'u', 10);
  auto reply = [&] { return Reply::ok().bytes(20, &answer.Data.StreamInfo, sizeof(SMGR_STREAM_INFO)); };
  SMGR_OBJECT_SELECTOR selector = ById(3);

  SMGR_STREAM_INFO info;
  std::memset(&info, 0xAB, sizeof(info));
  info.nSize = 100;  // an older caller
  peer.onNextRequest(SMGRPROT_STREAM_GETINFO_REQ, reply());
  smgr::util::SetAssertAbortEnabled(false);
  ASSERT_TRUE(SessMgr_GetStreamInfo(&selector, &info));
  smgr::util::SetAssertAbortEnabled(true);
  EXPECT_EQ(info.nSize, 100u);
  EXPECT_EQ(info.nIndex, 3);
  EXPECT_EQ(reinterpret_cast<BYTE*>(&info)[100], 0xAB);

  answer.Data.StreamInfo.nSize = 200;  // an older daemon
  std::memset(&info, 0xAB, sizeof(info));
  info.nSize = sizeof(info);
  peer.onNextRequest(SMGRPROT_STREAM_GETINFO_REQ, reply());
  ASSERT_TRUE(SessMgr_GetStreamInfo(&selector, &info));
  EXPECT_EQ(info.nSize, 200u);
  EXPECT_EQ(reinterpret_cast<BYTE*>(&info)[200], 0xAB);
  EXPECT_EQ(info.szUserData[0], static_cast<char>(0xAB));

  std::memset(&info, 0xAB, sizeof(info));
  info.nSize = sizeof(info);
  peer.onNextRequest(SMGRPROT_STREAM_GETINFO_REQ, Reply::withResult(SMGR_ERROR_NO_MATCHING_STREAM_FOUND));
  EXPECT_FALSE(SessMgr_GetStreamInfo(&selector, &info));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_NO_MATCHING_STREAM_FOUND);
  EXPECT_EQ(info.nIndex, static_cast<int32_t>(0xABABABAB));
  EXPECT_FALSE(SessMgr_GetStreamInfo(&selector, nullptr));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
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

TEST_F(StreamControlTest, EnumerationPaging) {
  constexpr uint32_t kElement = 100;  // the daemon's own element size
  std::vector<BYTE> records(3 * kElement, 0x5A);
  peer.onRequest(SMGRPROT_STREAM_ENUMERATE_REQ, [&](const Request& request) {
    const int32_t nWanted = request.field<int32_t>(16);
    const uint32_t nReturned = nWanted < 3 ? static_cast<uint32_t>(nWanted) : 3;
    Reply reply =
        Reply::ok().size(32 + nReturned * kElement).put(20, uint32_t{7}).put(24, nReturned).put(28, kElement);
    if (nReturned > 0) reply.bytes(32, records.data(), nReturned * kElement);
    return reply;
  });
  UINT nTotal = 0, nReturned = 9;
  size_t nElement = 0;
  smgr::util::SetAssertAbortEnabled(false);
  ASSERT_TRUE(SessMgr_EnumerateStreams(nullptr, 0, 0, &nTotal, &nReturned, &nElement));
  EXPECT_EQ(nTotal, 7u);
  EXPECT_EQ(nReturned, 0u);
  std::vector<BYTE> small(sizeof(SMGR_STREAM_INFO) - 1, 0);
  ASSERT_TRUE(SessMgr_EnumerateStreams(small.data(), small.size(), 0, nullptr, nullptr, nullptr));
  EXPECT_EQ(peer.lastRequest(SMGRPROT_STREAM_ENUMERATE_REQ)->field<int32_t>(16), 0);
  smgr::util::SetAssertAbortEnabled(true);

  std::vector<BYTE> buffer(2 * sizeof(SMGR_STREAM_INFO), 0);
  ASSERT_TRUE(SessMgr_EnumerateStreams(buffer.data(), buffer.size(), 5, &nTotal, &nReturned, &nElement));
  auto request = peer.lastRequest(SMGRPROT_STREAM_ENUMERATE_REQ);
  EXPECT_EQ(request->size(), 24u);
  EXPECT_EQ(request->field<int32_t>(16), 2);
  EXPECT_EQ(request->field<int32_t>(20), 5);
  EXPECT_EQ(nReturned, 2u);
  EXPECT_EQ(nElement, kElement);
  EXPECT_EQ(buffer[2 * kElement - 1], 0x5A);
  EXPECT_EQ(buffer[2 * kElement], 0);
}

TEST_F(StreamControlTest, EnumerationThatDoesNotFitCopiesNothing) {
  peer.onNextRequest(
      SMGRPROT_STREAM_ENUMERATE_REQ,
      Reply::ok().size(32 + 2 * 100).put(20, uint32_t{2}).put(24, uint32_t{2}).put(28, uint32_t{5000}));
  std::vector<BYTE> buffer(sizeof(SMGR_STREAM_INFO), 0x11);
  UINT nTotal = 0, nReturned = 0;
  ASSERT_TRUE(SessMgr_EnumerateStreams(buffer.data(), buffer.size(), 0, &nTotal, &nReturned, nullptr));
  EXPECT_EQ(nReturned, 2u);
  EXPECT_EQ(buffer[0], 0x11);
  peer.onNextRequest(SMGRPROT_STREAM_ENUMERATE_REQ,
                     Reply::withResult(SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME));
  EXPECT_FALSE(SessMgr_EnumerateStreams(buffer.data(), buffer.size(), 0, &nTotal, &nReturned, nullptr));
}

TEST_F(StreamControlTest, StillImages) {
  ASSERT_TRUE(SessMgr_DeleteStillImage("logo"));
  auto request = peer.lastRequest(SMGRPROT_STILL_DELETE_REQ);
  ASSERT_EQ(request->size(), 272u);
  EXPECT_EQ(request->text(16, 256), "/usr/share/ostrelle/still_images/logo.mp4");

  const std::string longName(300, 'x');
  EXPECT_FALSE(SessMgr_DeleteStillImage(longName.c_str()));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_FALSE(SessMgr_DeleteStillImage("/tmp/elsewhere/logo.mp4"));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_FALSE(SessMgr_DeleteStillImage("../logo"));
  ASSERT_TRUE(SessMgr_DeleteStillImage("/usr/share/ostrelle/still_images/logo.mp4"));
  EXPECT_EQ(peer.lastRequest(SMGRPROT_STILL_DELETE_REQ)->text(16, 256),
            "/usr/share/ostrelle/still_images/logo.mp4");
  EXPECT_FALSE(SessMgr_DeleteStillImage(nullptr));
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
