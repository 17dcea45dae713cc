// Open and Close against the test peer: shared, counted handles, one close
// request per Close call, and what a failed close does to the caller's variable.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "stream_peer.h"

namespace smgr::test {
namespace {

using StreamOpenCloseTest = StreamPeerTest;

TEST_F(StreamOpenCloseTest, SameIdSharesOneHandleAndEveryCloseIsSent) {
  AnswerWithStream(SMGRPROT_STREAM_OPEN_REQ, 4, "cam");
  HSTREAM h1 = nullptr, h2 = nullptr;
  SMGR_OBJECT_SELECTOR selector = ById(4);
  ASSERT_TRUE(SessMgr_OpenStream(&selector, &h1));
  SessMgr_SetLastError(99);
  ASSERT_TRUE(SessMgr_OpenStream(&selector, &h2));
  EXPECT_EQ(SessMgr_GetLastError(), 0u);
  EXPECT_EQ(h1, h2);
  EXPECT_EQ(peer.requestCount(SMGRPROT_STREAM_OPEN_REQ), 1u);
  auto open = peer.lastRequest(SMGRPROT_STREAM_OPEN_REQ);
  ASSERT_EQ(open->size(), 84u);
  EXPECT_EQ(open->field<int32_t>(16), SMGR_SELECTBY_OBJECT_ID);
  EXPECT_EQ(open->field<int32_t>(20), 4);

  ASSERT_TRUE(SessMgr_CloseStream(&h1));
  EXPECT_EQ(h1, nullptr);
  int nID = 0;
  EXPECT_TRUE(SessMgr_GetStreamID(h2, &nID));  // still referenced by the second open
  EXPECT_EQ(nID, 4);
  ASSERT_TRUE(SessMgr_CloseStream(&h2));
  auto closes = peer.requests(SMGRPROT_STREAM_CLOSE_REQ);
  ASSERT_EQ(closes.size(), 2u);
  EXPECT_EQ(closes[1].size(), 20u);
  EXPECT_EQ(closes[1].field<int32_t>(16), 4);
  // The record is gone: the next open asks the daemon again.
  AnswerWithStream(SMGRPROT_STREAM_OPEN_REQ, 4);
  ASSERT_TRUE(SessMgr_OpenStream(&selector, &h1));
  EXPECT_EQ(peer.requestCount(SMGRPROT_STREAM_OPEN_REQ), 2u);
  EXPECT_TRUE(SessMgr_CloseStream(&h1));
}

TEST_F(StreamOpenCloseTest, OpenByIdThenByNameMakesTwoHandles) {
  AnswerWithStream(SMGRPROT_STREAM_OPEN_REQ, 4, "cam");
  HSTREAM hById = nullptr, hByName = nullptr;
  SMGR_OBJECT_SELECTOR byId = ById(4), byName = ByName("cam");
  ASSERT_TRUE(SessMgr_OpenStream(&byId, &hById));
  AnswerWithStream(SMGRPROT_STREAM_OPEN_REQ, 4, "cam");
  ASSERT_TRUE(SessMgr_OpenStream(&byName, &hByName));
  EXPECT_NE(hById, hByName);
  auto open = peer.lastRequest(SMGRPROT_STREAM_OPEN_REQ);
  EXPECT_EQ(open->field<int32_t>(16), SMGR_SELECTBY_OBJECT_NAME);
  EXPECT_EQ(open->text(20, 64), "cam");
  for (size_t i = 20 + 4; i < 84; ++i) EXPECT_EQ(open->bytes()[i], 0) << i;
  HSTREAM hAgain = nullptr;
  ASSERT_TRUE(SessMgr_OpenStream(&byName, &hAgain));  // the by-name handle remembers its name
  EXPECT_EQ(hAgain, hByName);
  EXPECT_TRUE(SessMgr_CloseStream(&hById));
  EXPECT_TRUE(SessMgr_CloseStream(&hByName));
  EXPECT_TRUE(SessMgr_CloseStream(&hAgain));
}

// A failed close (swept by the operation table) still clears the caller's variable.
TEST_F(StreamOpenCloseTest, AFailedCloseStillClearsTheVariable) {
  AnswerWithStream(SMGRPROT_STREAM_OPEN_REQ, 4);
  HSTREAM hStream = nullptr;
  SMGR_OBJECT_SELECTOR selector = ById(4);
  ASSERT_TRUE(SessMgr_OpenStream(&selector, &hStream));
  peer.onNextRequest(SMGRPROT_STREAM_CLOSE_REQ, Reply::withResult(SMGR_ERROR_NO_MATCHING_STREAM_FOUND));
  EXPECT_FALSE(SessMgr_CloseStream(&hStream));
  EXPECT_EQ(hStream, nullptr);
}

TEST_F(StreamOpenCloseTest, ThreadsOpeningOneStreamShareOneHandle) {
  peer.onRequest(SMGRPROT_STREAM_OPEN_REQ, [](const Request&) { return Reply::ok().put(20, int32_t{8}); });
  constexpr int kThreads = 4;
  HSTREAM handles[kThreads] = {};
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([&, i] {
      SMGR_OBJECT_SELECTOR selector = ById(8);
      EXPECT_TRUE(SessMgr_OpenStream(&selector, &handles[i]));
    });
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(peer.requestCount(SMGRPROT_STREAM_OPEN_REQ), 1u);
  const HSTREAM hShared = handles[0];
  for (HSTREAM& hStream : handles) {
    EXPECT_EQ(hStream, hShared);
    EXPECT_TRUE(SessMgr_CloseStream(&hStream));
  }
  EXPECT_EQ(peer.requestCount(SMGRPROT_STREAM_CLOSE_REQ), static_cast<size_t>(kThreads));
}

}  // namespace
}  // namespace smgr::test
