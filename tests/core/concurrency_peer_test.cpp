// Many threads of one process calling at once: every exchange is serialised,
// every thread gets its own answer and its own last error.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "peer_fixture.h"
#include "test_peer.h"

namespace smgr::test {
namespace {

class Concurrency : public ConnectedPeerTest {};

TEST_F(Concurrency, SixteenThreadsKeepTheirOwnAnswersAndLastErrors) {
  // The daemon answers SetDebugState(n) with Result n for odd n, 0 otherwise,
  // and GetDebugInfo with the requester's state echoed back in iPID.
  peer.onRequest(SMGRPROT_DEBUG_SETCFG_REQ, [](const Request& request) {
    int32_t nState = request.field<int32_t>(16);
    return Reply::withResult(nState % 2 ? static_cast<SMGR_RESULT>(nState) : 0);
  });
  constexpr int kThreads = 16;
  constexpr int kRounds = 150;
  std::atomic<int> nMismatches{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t, &nMismatches] {
      for (int i = 0; i < kRounds; ++i) {
        int nState = 1000 * (t + 1) + i;
        BOOL bResult = SessMgr_SetDebugState(nState);
        SMGR_RESULT expected = nState % 2 ? static_cast<SMGR_RESULT>(nState) : 0;
        if (bResult != (expected == 0) || SessMgr_GetLastError() != expected) ++nMismatches;
        SMGR_DEBUG_INFO info{};
        if (!SessMgr_GetDebugInfo(&info) || SessMgr_GetLastError() != 0) ++nMismatches;
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(nMismatches.load(), 0);
  // One exchange at a time: every request has its own sequence.
  auto requests = peer.requests(SMGRPROT_DEBUG_SETCFG_REQ);
  ASSERT_EQ(requests.size(), static_cast<size_t>(kThreads * kRounds));
  for (size_t i = 1; i < requests.size(); ++i) EXPECT_NE(requests[i].sequence(), requests[i - 1].sequence());
}

}  // namespace
}  // namespace smgr::test
