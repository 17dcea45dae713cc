// The five diagnostics operations against the test peer: exact request bytes,
// copy-back of the debug information, the record sizes of the two paged
// enumerations (the paging rules are the engine's), and the root-only debug
// request.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <vector>

#include "lib_state.h"
#include "peer_fixture.h"
#include "test_peer.h"
#include "util.h"

namespace smgr::test {
namespace {

class Diagnostics : public ConnectedPeerTest {};

SMGR_THREAD_INFO MakeThread(int nId) {
  SMGR_THREAD_INFO info;
  std::memset(&info, 0, sizeof(info));
  info.iThreadID = nId;
  std::snprintf(info.szName, sizeof(info.szName), "worker-%d", nId);
  info.nIterations = 1000u + static_cast<unsigned>(nId);
  info.nLastStuckUPTimeInSecs = 42;
  return info;
}

// An enumeration response: counts, then the records (as many as given).
template <typename Info>
Reply EnumerationReply(DWORD nTotal, const std::vector<Info>& records, DWORD nClaimed) {
  Reply reply = Reply::ok().size(32 + records.size() * sizeof(Info));
  reply.put(20, nTotal).put(24, nClaimed).put(28, static_cast<DWORD>(sizeof(Info)));
  for (size_t i = 0; i < records.size(); ++i) reply.put(32 + i * sizeof(Info), records[i]);
  return reply;
}

TEST_F(Diagnostics, SetDebugStateSendsTheState) {
  ASSERT_TRUE(SessMgr_SetDebugState(3));
  auto request = peer.lastRequest(SMGRPROT_DEBUG_SETCFG_REQ);
  ASSERT_TRUE(request);
  EXPECT_EQ(request->size(), 20u);
  EXPECT_EQ(request->field<int32_t>(16), 3);
}

TEST_F(Diagnostics, GetDebugInfoCopiesTheFourFields) {
  SMGR_DEBUG_INFO sent{16, 777, TRUE, 2};
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, Reply::ok().put(20, sent));
  SMGR_DEBUG_INFO info{};
  ASSERT_TRUE(SessMgr_GetDebugInfo(&info));
  EXPECT_EQ(info.nSize, 16u);
  EXPECT_EQ(info.iPID, 777);
  EXPECT_EQ(info.bWatchdogEnabled, TRUE);
  EXPECT_EQ(info.enState, 2);
  auto request = peer.lastRequest(SMGRPROT_DEBUG_GETINFO_REQ);
  EXPECT_EQ(request->size(), 20u);
  EXPECT_EQ(request->field<int32_t>(16), 0);

  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, Reply::withResult(17).put(20, sent));
  SMGR_DEBUG_INFO untouched{};
  EXPECT_FALSE(SessMgr_GetDebugInfo(&untouched));
  EXPECT_EQ(SessMgr_GetLastError(), 17u);
  EXPECT_EQ(untouched.iPID, 0) << "nothing copied on failure";
}

TEST_F(Diagnostics, EnumerateThreadsAsksForWhatFitsAndCopiesIt) {
  std::vector<SMGR_THREAD_INFO> threads = {MakeThread(1), MakeThread(2)};
  peer.onNextRequest(SMGRPROT_THREAD_ENUMERATE_REQ, EnumerationReply<SMGR_THREAD_INFO>(5, threads, 2));
  std::vector<uint8_t> buffer(400, 0xEE);
  UINT nTotal = 0, nReturned = 0;
  size_t nElement = 0;
  ASSERT_TRUE(SessMgr_EnumerateThreads(buffer.data(), buffer.size(), 3, &nTotal, &nReturned, &nElement));
  auto request = peer.lastRequest(SMGRPROT_THREAD_ENUMERATE_REQ);
  EXPECT_EQ(request->size(), 24u);
  EXPECT_EQ(request->field<int32_t>(16), 2) << "400 / 196";
  EXPECT_EQ(request->field<int32_t>(20), 3);
  EXPECT_EQ(nTotal, 5u);
  EXPECT_EQ(nReturned, 2u);
  EXPECT_EQ(nElement, sizeof(SMGR_THREAD_INFO));
  SMGR_THREAD_INFO second;
  std::memcpy(&second, buffer.data() + sizeof(SMGR_THREAD_INFO), sizeof(second));
  EXPECT_EQ(second.iThreadID, 2);
  EXPECT_STREQ(second.szName, "worker-2");
  EXPECT_EQ(buffer[2 * sizeof(SMGR_THREAD_INFO)], 0xEE) << "nothing written past the records";
}

TEST_F(Diagnostics, EnumerateMutexesRequestsBy204ByteRecords) {
  SMGR_MUTEX_INFO mutex{};
  mutex.nSize = sizeof(mutex);
  mutex.nAquiredCount = 99;
  std::snprintf(mutex.szFile, sizeof(mutex.szFile), "daemon.c");
  peer.onNextRequest(SMGRPROT_MUTEX_ENUMERATE_REQ, EnumerationReply<SMGR_MUTEX_INFO>(1, {mutex}, 1));
  SMGR_MUTEX_INFO buffer[3];
  UINT nTotal = 0, nReturned = 0;
  size_t nElement = 0;
  ASSERT_TRUE(SessMgr_EnumerateMutexes(buffer, sizeof(buffer), 7, &nTotal, &nReturned, &nElement));
  auto request = peer.lastRequest(SMGRPROT_MUTEX_ENUMERATE_REQ);
  EXPECT_EQ(request->field<int32_t>(16), 3);
  EXPECT_EQ(request->field<int32_t>(20), 7);
  EXPECT_EQ(nReturned, 1u);
  EXPECT_EQ(nElement, 204u);
  uint64_t nAcquired = buffer[0].nAquiredCount;  // packed field: read by value
  EXPECT_EQ(nAcquired, 99u);
  EXPECT_STREQ(buffer[0].szFile, "daemon.c");
}

TEST_F(Diagnostics, DebugRequestCarriesDataAndLeavesItsSizeZero) {
  if (!IsRootUser()) GTEST_SKIP() << "the root path needs root";
  uint8_t data[512];
  for (size_t i = 0; i < sizeof(data); ++i) data[i] = static_cast<uint8_t>(i * 7);
  ASSERT_TRUE(SessMgr_DebugRequest(11, data, sizeof(data)));
  auto request = peer.lastRequest(SMGRPROT_DEBUG_REQ);
  ASSERT_TRUE(request);
  EXPECT_EQ(request->size(), 540u);
  EXPECT_EQ(request->field<int32_t>(16), 11);
  EXPECT_EQ(request->field<uint64_t>(20), 0u);
  EXPECT_EQ(std::memcmp(request->bytes().data() + 28, data, sizeof(data)), 0);

  ASSERT_TRUE(SessMgr_DebugRequest(12, nullptr, 100000)) << "without data the size is not checked";
  EXPECT_EQ(peer.lastRequest(SMGRPROT_DEBUG_REQ)->field<uint8_t>(28), 0);
}

TEST_F(Diagnostics, DebugRequestFromNonRootFailsWith73AndSendsNothing) {
  if (IsRootUser()) {
    // Drop privileges in a child; its request would re-connect first, so
    // nothing reaching the peer from it proves nothing was sent.
    pid_t child = peer.forkClient();
    ASSERT_GE(child, 0);
    if (child == 0) {
      if (setuid(65534) != 0) _exit(3);
      BOOL bResult = SessMgr_DebugRequest(1, nullptr, 0);
      _exit(!bResult && SessMgr_GetLastError() == SMGR_ERROR_INSUFFICIENT_RIGHTS ? 0 : 1);
    }
    int nStatus = WaitForChild(child);
    ASSERT_NE(nStatus, kChildHung);
    ASSERT_TRUE(WIFEXITED(nStatus));
    EXPECT_EQ(WEXITSTATUS(nStatus), 0);
    ASSERT_TRUE(SessMgr_SetDebugState(0));
    for (const Request& request : peer.requests()) EXPECT_NE(request.srcPid(), child);
  } else {
    EXPECT_FALSE(SessMgr_DebugRequest(1, nullptr, 0));
    EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INSUFFICIENT_RIGHTS);
  }
}

}  // namespace
}  // namespace smgr::test
