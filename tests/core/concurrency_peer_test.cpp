// Many threads of one process calling at once: every exchange is serialised,
// every thread gets its own answer and its own last error; what a request
// sees of another thread that slips in before it takes the API mutex.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "lib_state.h"
#include "peer_fixture.h"
#include "request_engine.h"
#include "test_peer.h"

namespace smgr::test {
namespace {

class Concurrency : public ConnectedPeerTest {};

RequestTraits GenericTraits(SequenceOrder order) {
  RequestTraits traits{.szOperation = "TestOperation", .wRequestType = SMGRPROT_DEBUG_GETINFO_REQ};
  traits.sequenceOrder = order;
  traits.nResponseTimeoutMs = 300;
  return traits;
}

// Runs a request of traits on another thread while this one holds the API
// mutex, so that the request stops at the mutex. Once the request has taken
// its sequence number (only the orders before the lock do so), whileHeld runs
// on this thread, still holding the mutex. Returns the request's outcome.
template <typename F>
std::pair<BOOL, SMGR_RESULT> RaceAtTheLock(const RequestTraits& traits, F whileHeld,
                                           BuildStep build = nullptr) {
  BOOL bResult = -1;
  SMGR_RESULT lastError = 0;
  std::thread requester;
  {
    ApiLock lock;
    const WORD wBefore = g_wTxSequence.load();
    requester = std::thread([&] {
      SMGRPROT_MSG_DEBUG_GETINFO_REQ request{};
      bResult = Transact(traits, &request, sizeof(request), true, build);
      lastError = SessMgr_GetLastError();
    });
    if (traits.sequenceOrder != SequenceOrder::UnderLock) {
      // Taken before the lock: the request has passed the unlocked checks.
      const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
      while (g_wTxSequence.load() == wBefore && std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
      EXPECT_NE(g_wTxSequence.load(), wBefore) << "no sequence number taken before the lock";
    }
    whileHeld();
  }
  requester.join();
  return {bResult, lastError};
}

TEST_F(Concurrency, LastShutdownWhileARequestWaitsForTheLockGives14AndBuildsNothing) {
  std::atomic<bool> bBuilt{false};
  auto build = [&](void*) { return bBuilt = true; };
  auto [bResult, lastError] = RaceAtTheLock(
      GenericTraits(SequenceOrder::BeforeLock), [] { SessMgrLib_Shutdown(); }, build);
  EXPECT_FALSE(bResult);
  EXPECT_EQ(lastError, SMGR_ERROR_LIB_NOT_INITIALIZED);
  EXPECT_FALSE(bBuilt) << "the build step ran over drained handle tables";
  EXPECT_EQ(peer.requestCount(SMGRPROT_DEBUG_GETINFO_REQ), 0u);
}

TEST_F(Concurrency, SequenceOrdersWithAnotherRequestSlippingInBeforeTheLock) {
  peer.setReplySize(SMGRPROT_DEBUG_GETINFO_RSP, 180);
  struct Case {
    SequenceOrder order;
    bool bNumberedFirst;  // the racing request's number precedes the other's
    BOOL bAnswered;
  };
  for (const Case& c :
       {Case{SequenceOrder::UnderLock, false, TRUE}, Case{SequenceOrder::BeforeLock, true, TRUE},
        // sends its own number but waits for the other's: misses its answer
        Case{SequenceOrder::BeforeLockWaitCurrent, true, FALSE}}) {
    SCOPED_TRACE(static_cast<int>(c.order));
    peer.clearRequests();
    auto [bResult, lastError] = RaceAtTheLock(GenericTraits(c.order), [] {
      SMGRPROT_MSG_DEBUG_GETINFO_REQ request{};
      EXPECT_TRUE(Transact(GenericTraits(SequenceOrder::UnderLock), &request, sizeof(request), true));
    });
    EXPECT_EQ(bResult, c.bAnswered);
    EXPECT_EQ(lastError, c.bAnswered ? SMGR_ERROR_SUCCESS : SMGR_ERROR_IPC_RESPONSE_TIMEOUT_ERROR);
    const auto requests = peer.requests(SMGRPROT_DEBUG_GETINFO_REQ);
    ASSERT_EQ(requests.size(), 2u);  // the one that slipped in is sent first
    const WORD wOther = requests[0].sequence();
    const WORD wRacing = requests[1].sequence();
    EXPECT_EQ(static_cast<WORD>(c.bNumberedFirst ? wOther - wRacing : wRacing - wOther), 1);
  }
}

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
