// The wait for a response and the request engine against misbehaving daemons:
// stale and foreign messages, progress indications, time-outs, truncated,
// oversized and arbitrary responses, a full daemon queue.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <mqueue.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <thread>

#include "lib_state.h"
#include "peer_fixture.h"
#include "request_engine.h"
#include "test_peer.h"

namespace smgr::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// A made-up generic operation on the debug-info message: the standard
// departures (Result with description, warnings succeed) unless a test says
// otherwise.
RequestTraits GenericTraits() {
  RequestTraits traits{.szOperation = "TestOperation", .wRequestType = SMGRPROT_DEBUG_GETINFO_REQ};
  return traits;
}

BOOL SendGeneric(const RequestTraits& traits, CopyBackStep copyBack = nullptr) {
  SMGRPROT_MSG_DEBUG_GETINFO_REQ request{};
  return Transact(traits, &request, sizeof(request), true, nullptr, copyBack);
}

class Transport : public ConnectedPeerTest {};

TEST_F(Transport, StaleSequenceIsDiscardedWith13InPassing) {
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, {Reply::stale(), Reply::ok()});
  peer.setReplySize(SMGRPROT_DEBUG_GETINFO_RSP, 180);
  RequestTraits traits = GenericTraits();
  traits.successLastError = SuccessLastError::Untouched;
  SessMgr_SetLastError(0);
  EXPECT_TRUE(SendGeneric(traits));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_SEQU_ERROR);
}

TEST_F(Transport, WrongTypeIsDiscardedWith12InPassing) {
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, {Reply::wrongType(), Reply::ok()});
  peer.setReplySize(SMGRPROT_DEBUG_GETINFO_RSP, 180);
  RequestTraits traits = GenericTraits();
  traits.successLastError = SuccessLastError::Untouched;
  SessMgr_SetLastError(0);
  EXPECT_TRUE(SendGeneric(traits));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_TYPE_ERROR);
}

TEST_F(Transport, ProgressIndicationsNeverEndTheWait) {
  // Whatever their sequence: the second one carries a foreign sequence.
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, {Reply::progress(10), Reply::progress(50).sequenceDelta(7),
                                                  Reply::progress(99).truncateTo(16), Reply::ok()});
  SessMgr_SetLastError(55);
  SMGR_DEBUG_INFO info{};
  EXPECT_TRUE(SessMgr_GetDebugInfo(&info));
  EXPECT_EQ(SessMgr_GetLastError(), 0u);
}

TEST_F(Transport, MessagesShorterThanTheHeaderAreReadAsZeros) {
  // Four bytes of a foreign type, then a lone byte, then the answer.
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ,
                     {Reply::raw({0x39, 0x30, 0x00, 0x00}), Reply::raw({0x01}), Reply::ok()});
  SMGR_DEBUG_INFO info{};
  EXPECT_TRUE(SessMgr_GetDebugInfo(&info));
}

TEST_F(Transport, NoAnswerTimesOutWith3AfterTheConfiguredTime) {
  // Only the connecting initialisation reads the settings: reconnect with 1500 ms.
  ShutdownLibraryCompletely();
  peer.setResponseTimeoutMs(1500);
  ASSERT_TRUE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr));
  ASSERT_EQ(g_nIPCRespTimeoutInMS, 1500);
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, Replies::none());
  SMGR_DEBUG_INFO info{};
  auto start = steady_clock::now();
  EXPECT_FALSE(SessMgr_GetDebugInfo(&info));
  auto elapsed = steady_clock::now() - start;
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_IPC_RESPONSE_TIMEOUT_ERROR);
  EXPECT_GE(elapsed, milliseconds(1500));
  EXPECT_LT(elapsed, milliseconds(1500 + 1200));

  // The answer that comes too late is discarded by the next wait.
  WORD wTimedOut = peer.lastRequest(SMGRPROT_DEBUG_GETINFO_REQ)->sequence();
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, [wTimedOut](const Request& request) {
    return Replies{Reply::ok().sequenceDelta(static_cast<WORD>(wTimedOut - request.sequence())), Reply::ok()};
  });
  EXPECT_TRUE(SessMgr_GetDebugInfo(&info));
}

TEST_F(Transport, PerRequestTimeoutLeavesTheConfiguredOneAlone) {
  const int nConfigured = g_nIPCRespTimeoutInMS;
  std::atomic<int> nSeenDuringTheWait{nConfigured};  // what another thread's wait would use meanwhile
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, [&](const Request&) {
    for (auto end = steady_clock::now() + milliseconds(300); steady_clock::now() < end;) {
      if (g_nIPCRespTimeoutInMS != nConfigured) nSeenDuringTheWait = g_nIPCRespTimeoutInMS;
      std::this_thread::sleep_for(milliseconds(1));  // samples the whole wait
    }
    return Replies::none();
  });
  RequestTraits traits = GenericTraits();
  traits.nResponseTimeoutMs = 500;
  auto start = steady_clock::now();
  EXPECT_FALSE(SendGeneric(traits));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_IPC_RESPONSE_TIMEOUT_ERROR);
  EXPECT_LT(steady_clock::now() - start, milliseconds(1500));
  EXPECT_EQ(nSeenDuringTheWait.load(), nConfigured);
}

TEST_F(Transport, TruncatedResponsesFailWith11AndCopyNothing) {
  for (size_t nBytes : {size_t{4}, size_t{16}, size_t{19}, size_t{35}}) {
    peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, Reply::ok().truncateTo(nBytes));
    SMGR_DEBUG_INFO info;
    std::memset(&info, 0xAB, sizeof(info));
    EXPECT_FALSE(SessMgr_GetDebugInfo(&info)) << nBytes;
    EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR) << nBytes;
    const auto* pb = reinterpret_cast<const uint8_t*>(&info);
    for (size_t i = 0; i < sizeof(info); ++i) ASSERT_EQ(pb[i], 0xAB) << nBytes;
  }
}

TEST_F(Transport, GenericHeadNeeds180Bytes) {
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, Reply::withResult(25).size(179));
  EXPECT_FALSE(SendGeneric(GenericTraits()));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR);
}

TEST_F(Transport, OversizedReportedSizeNeverWidensTheRead) {
  SMGR_DEBUG_INFO sent{16, 4321, TRUE, 3};
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, Reply::ok().put(20, sent).reportedSize(60000));
  SMGR_DEBUG_INFO info{};
  ASSERT_TRUE(SessMgr_GetDebugInfo(&info));
  EXPECT_EQ(info.iPID, 4321);
  EXPECT_EQ(info.enState, 3);
}

TEST_F(Transport, DaemonFailureKeepsItsDescription) {
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ,
                     Reply::withResult(25).size(180).description("stream is held by session 'news'"));
  EXPECT_FALSE(SendGeneric(GenericTraits()));
  EXPECT_EQ(SessMgr_GetLastError(), 25u);
  char sz[256];
  EXPECT_NE(std::string(SessMgr_GetLastErrorString(sz, sizeof(sz))).find("held by session 'news'"),
            std::string::npos)
      << sz;
}

TEST_F(Transport, UnterminatedDescriptionIsBounded) {
  std::string text(160, 'x');
  Reply reply = Reply::withResult(SMGR_IS_TEXT_DESCRIBED_ERROR | 5).size(180);
  reply.bytes(20, text.data(), text.size());
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, reply);
  EXPECT_FALSE(SendGeneric(GenericTraits()));
  char sz[512];
  // A text-described error reads as the daemon's text: all 160 characters, no more.
  EXPECT_EQ(std::string(SessMgr_GetLastErrorString(sz, sizeof(sz))), text);
}

TEST_F(Transport, WarningsSucceedOnlyWhereTheTraitsSaySo) {
  const SMGR_RESULT kWarning = SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME;
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, Reply::withResult(kWarning).size(180));
  EXPECT_TRUE(SendGeneric(GenericTraits()));
  EXPECT_EQ(SessMgr_GetLastError(), kWarning);

  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, Reply::withResult(kWarning));
  SMGR_DEBUG_INFO info{};
  EXPECT_FALSE(SessMgr_GetDebugInfo(&info)) << "diagnostics accept 0 only";
  EXPECT_EQ(SessMgr_GetLastError(), kWarning);
}

TEST_F(Transport, FailureLastErrorVariants) {
  RequestTraits traits = GenericTraits();
  traits.failureLastError = FailureLastError::Untouched;
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, Reply::withResult(30).size(180));
  SessMgr_SetLastError(99);
  EXPECT_FALSE(SendGeneric(traits));
  EXPECT_EQ(SessMgr_GetLastError(), 99u);

  traits.failureLastError = FailureLastError::ResultWithErrno;
  traits.nFailureErrnoOffset = 180;
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, Reply::withResult(45).size(184).put(180, int32_t{ENOENT}));
  EXPECT_FALSE(SendGeneric(traits));
  EXPECT_EQ(SessMgr_GetLastError(), 45u);
  EXPECT_EQ(SessMgr_GetLastErrno(), ENOENT);
}

TEST_F(Transport, CopyBackFailureBecomesTheLastError) {
  peer.onNextRequest(SMGRPROT_DEBUG_GETINFO_REQ, Reply::ok().size(180));
  EXPECT_FALSE(SendGeneric(GenericTraits(), [](const ResponseView&, SMGR_RESULT* pLastError) {
    *pLastError = SMGR_ERROR_OUT_OF_MEMORY;
    return false;
  }));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_OUT_OF_MEMORY);
}

TEST_F(Transport, InvalidArgumentsFailWith2AndSendNothing) {
  size_t nBefore = peer.requests().size();
  SMGRPROT_MSG_DEBUG_GETINFO_REQ request{};
  EXPECT_FALSE(Transact(GenericTraits(), &request, sizeof(request), false));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_FALSE(SessMgr_GetDebugInfo(nullptr));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  SMGR_DEBUG_INFO info{};
  ASSERT_TRUE(SessMgr_GetDebugInfo(&info));  // orders the peer's view
  EXPECT_EQ(peer.requests().size(), nBefore + 1);
}

TEST_F(Transport, BuildStepCanAbandonTheRequest) {
  size_t nBefore = peer.requests().size();
  SMGRPROT_MSG_DEBUG_GETINFO_REQ request{};
  SessMgr_SetLastError(0);
  EXPECT_FALSE(Transact(GenericTraits(), &request, sizeof(request), true, [](void*) { return false; }));
  EXPECT_EQ(SessMgr_GetLastError(), 0u) << "the build step sets its own error";
  SMGR_DEBUG_INFO info{};
  ASSERT_TRUE(SessMgr_GetDebugInfo(&info));
  EXPECT_EQ(peer.requests().size(), nBefore + 1);
}

TEST_F(Transport, NoInitCheckMeansNoError14) {
  ShutdownLibraryCompletely();
  RequestTraits traits = GenericTraits();
  traits.initCheck = InitCheck::None;
  EXPECT_FALSE(SendGeneric(traits));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_LIB_TO_DAEMON_IPC_ERROR) << "the closed queue fails the send";
  traits.initCheck = InitCheck::Standard;
  traits.notInitialisedResult = SMGR_ERROR_INVALID_PARAMETERS;
  EXPECT_FALSE(SendGeneric(traits));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
}

TEST_F(Transport, FullDaemonQueueFailsTheSendWith10AndErrno) {
  peer.stop();  // nobody drains the daemon queue any more
  mqd_t writer = mq_open(peer.daemonQueueName().c_str(), O_WRONLY | O_NONBLOCK);
  ASSERT_NE(writer, static_cast<mqd_t>(-1));
  char filler[20] = {};
  while (mq_send(writer, filler, sizeof(filler), 0) == 0) {
  }
  mq_close(writer);
  SMGR_DEBUG_INFO info{};
  EXPECT_FALSE(SessMgr_GetDebugInfo(&info));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_LIB_TO_DAEMON_IPC_ERROR);
  EXPECT_EQ(SessMgr_GetLastErrno(), EAGAIN);

  RequestTraits traits = GenericTraits();
  traits.sendFailure = SendFailure::TraceOnly;
  SessMgr_SetLastError(0);
  EXPECT_FALSE(SendGeneric(traits));
  EXPECT_EQ(SessMgr_GetLastError(), 0u);
}

}  // namespace
}  // namespace smgr::test
