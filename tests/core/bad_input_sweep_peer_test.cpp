// Every exported operation against bad caller input, from the operation table:
// NULL pointers, short and huge record sizes, over-long names, handles of
// another family or after their last close, unknown selector kinds. Each
// variant must give its documented result and last error, send nothing when
// nothing may be sent (the test peer records every request), stay inside the
// caller's memory and leave no handle behind; the valid invocation succeeds
// with one request whose header is the process's own and sized as sent.
// LeakSanitizer (asan preset) covers heap leaks.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <set>
#include <string>

#include "lib_state.h"
#include "operation_table.h"
#include "peer_fixture.h"
#include "test_peer.h"

namespace smgr::test {
namespace {

constexpr SMGR_RESULT kSentinel = 0x0BADF00Du;  // last error before each call

class BadInputSweep : public ::testing::Test {
 protected:
  BadInputSweep() : peer(Options()) {}
  static PeerOptions Options() {
    PeerOptions options;
    options.nResponseTimeoutMs = 300;
    return options;
  }
  void SetUp() override {
    // The daemon answers every request with the table's valid response.
    for (const OperationRow& row : OperationTable()) {
      if (row.validResponse == nullptr) continue;
      auto answer = row.validResponse;
      peer.onRequest(row.wRequestType,
                     [answer](const Request& request) { return Reply::raw(answer(request.bytes())); });
    }
    peer.start();
    ASSERT_TRUE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr)) << SessMgr_GetLastError();
  }
  void TearDown() override { ShutdownLibraryCompletely(); }

  // Runs one variant and checks everything the table says about it.
  void Check(const OperationRow& row, const BadInput& bad) {
    SCOPED_TRACE(std::string(row.szName) + ": " + bad.szWhat);
    CallContext ctx;
    const size_t nHandlesBefore = LiveHandleCount();
    if (row.prepare != nullptr) row.prepare(ctx);
    const size_t nRequestsBefore = peer.requests().size();
    const size_t nOfTypeBefore = row.wRequestType ? peer.requestCount(row.wRequestType) : 0;
    SessMgr_SetLastError(kSentinel);

    const BOOL bResult = bad.call(ctx);

    const SMGR_RESULT lastError = SessMgr_GetLastError();
    EXPECT_EQ(bResult, bad.expect.bReturn);
    switch (bad.expect.lastError) {
      case Expectation::LastError::Equals:
        EXPECT_EQ(lastError, bad.expect.code);
        break;
      case Expectation::LastError::Unchanged:
        EXPECT_EQ(lastError, kSentinel) << "the last error must be left as it was";
        break;
      case Expectation::LastError::Any:
        break;
    }
    const size_t nSent = peer.requests().size() - nRequestsBefore;
    if (bad.expect.bSendsRequest) {
      EXPECT_EQ(nSent, 1u);
      EXPECT_EQ(peer.requestCount(row.wRequestType) - nOfTypeBefore, 1u);
    } else {
      EXPECT_EQ(nSent, 0u) << "nothing may reach the daemon";
    }
    EXPECT_TRUE(ctx.guardsIntact()) << "written outside the caller's memory";
    if (row.finish != nullptr) row.finish(ctx);
    EXPECT_EQ(LiveHandleCount(), nHandlesBefore) << "handle left behind";
  }

  TestPeer peer;
};

TEST_F(BadInputSweep, EveryVariantOfEveryOperationGivesItsDocumentedResult) {
  size_t nVariants = 0;
  for (const OperationRow& row : OperationTable()) {
    for (const BadInput& bad : row.badInputs) {
      Check(row, bad);
      ++nVariants;
    }
  }
  EXPECT_GT(nVariants, 100u);
  EXPECT_EQ(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr), TRUE) << "the library still works";
  SessMgrLib_Shutdown();
  EXPECT_TRUE(SessMgr_SetDebugState(1));
}

TEST_F(BadInputSweep, TheValidInvocationOfEveryRequestRowSucceedsAgainstItsValidResponse) {
  for (const OperationRow& row : OperationTable()) {
    if (row.invoke == nullptr) continue;
    SCOPED_TRACE(row.szName);
    CallContext ctx;
    const size_t nHandlesBefore = LiveHandleCount();
    if (row.prepare != nullptr) row.prepare(ctx);
    const size_t nOfTypeBefore = peer.requestCount(row.wRequestType);
    SessMgr_SetLastError(kSentinel);
    EXPECT_EQ(row.invoke(ctx), TRUE);
    const bool bUntouched =
        row.success == SuccessCodes::Untouched || row.success == SuccessCodes::UntouchedOrWarning;
    EXPECT_EQ(SessMgr_GetLastError(), bUntouched ? kSentinel : 0u);
    EXPECT_EQ(peer.requestCount(row.wRequestType) - nOfTypeBefore, 1u);
    if (auto sent = peer.lastRequest(row.wRequestType)) {  // the header every request carries
      EXPECT_EQ(sent->header().wMsgSize, sent->size());
      EXPECT_EQ(sent->header().wReserved, 0);
      EXPECT_EQ(sent->srcPid(), getpid());
      EXPECT_EQ(sent->srcUid(), getuid());
    }
    EXPECT_TRUE(ctx.guardsIntact());
    if (row.finish != nullptr) row.finish(ctx);
    EXPECT_EQ(LiveHandleCount(), nHandlesBefore);
  }
}

// The daemon's Result decides: a warning succeeds only where the row says so
// (and stays the last error unless the row says 0), a failure fails with its
// code; nothing is left behind.
TEST_F(BadInputSweep, EveryRequestRowTakesAWarningOrAFailureAsItsRowSays) {
  for (SMGR_RESULT result : {SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME, SMGR_ERROR_GENERIC_FAILURE}) {
    for (const OperationRow& row : OperationTable()) {
      if (row.invoke == nullptr) continue;
      SCOPED_TRACE(std::string(row.szName) + " answered with " + std::to_string(result));
      CallContext ctx;
      const size_t nHandlesBefore = LiveHandleCount();
      if (row.prepare != nullptr) row.prepare(ctx);
      peer.onNextRequest(row.wRequestType, [answer = row.validResponse, result](const Request& request) {
        Bytes message = answer(request.bytes());
        std::memcpy(message.data() + sizeof(SMGRPROT_HEADER), &result, sizeof(result));
        return Replies(Reply::raw(message));
      });
      const bool bWarningSucceeds = row.success == SuccessCodes::ZeroOrWarning ||
                                    row.success == SuccessCodes::UntouchedOrWarning ||
                                    row.success == SuccessCodes::ZeroEvenOnWarning;
      const bool bSucceeds = (result & SMGR_IS_SUCCESS_WITH_WARNING) && bWarningSucceeds;
      const SMGR_RESULT successLastError = row.success == SuccessCodes::ZeroEvenOnWarning ? 0 : result;
      using Kept = OperationRow::KeptLastError;
      const bool bFailureKeeps =
          row.keptLastError == Kept::OnDaemonFailure || row.keptLastError == Kept::OnDaemonOrSendFailure;
      SessMgr_SetLastError(kSentinel);
      EXPECT_EQ(row.invoke(ctx), bSucceeds ? TRUE : FALSE);
      EXPECT_EQ(SessMgr_GetLastError(), bSucceeds ? successLastError : bFailureKeeps ? kSentinel : result);
      EXPECT_TRUE(ctx.guardsIntact());
      if (row.finish != nullptr) row.finish(ctx);
      EXPECT_EQ(LiveHandleCount(), nHandlesBefore);
    }
  }
}

TEST_F(BadInputSweep, EveryRequestOperationFailsWithItsCodeAndSendsNothingWhenNotInitialised) {
  ShutdownLibraryCompletely();
  ASSERT_TRUE(peer.waitForRequests(SMGRPROT_USER_DISCONNECT_IND, 1));  // recorded before the slate is cleared
  peer.clearRequests();
  for (const OperationRow& row : OperationTable()) {
    if (row.invoke == nullptr) continue;
    SCOPED_TRACE(row.szName);
    CallContext ctx;  // no prepare: nothing can be opened
    SessMgr_SetLastError(kSentinel);
    EXPECT_EQ(row.invoke(ctx), FALSE);
    EXPECT_EQ(SessMgr_GetLastError(), row.notInitialisedResult);
    EXPECT_TRUE(ctx.guardsIntact());
  }
  SessMgr_SetLastError(kSentinel);
  SessMgrLib_Shutdown();
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_LIB_NOT_INITIALIZED);
  SessMgr_SetLastError(kSentinel);
  EXPECT_FALSE(SessMgr_Shutdown());
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_LIB_NOT_INITIALIZED);
  SMGR_OBJECT_SELECTOR selector{};
  HSTREAM hStream = static_cast<HSTREAM>(wipedHandle());
  int nID = 0;
  EXPECT_FALSE(SessMgr_GetStreamID(hStream, &nID));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_LIB_NOT_INITIALIZED);
  EXPECT_FALSE(SessMgr_OpenStream(&selector, &hStream));
  EXPECT_FALSE(SessMgr_CloseStream(&hStream));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_LIB_NOT_INITIALIZED);
  EXPECT_TRUE(peer.requests().empty()) << "nothing may be sent while not initialised";
}

// The table is the single place a family is added: every name the shared
// library exports must have its row.
TEST(OperationTable, CoversEveryExportedOperation) {
  std::string command = std::string("nm -D --defined-only ") + SESSMGR_SHARED_LIBRARY_PATH;
  FILE* pipe = popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::set<std::string> missing;
  char szLine[512];
  size_t nExports = 0;
  while (fgets(szLine, sizeof(szLine), pipe) != nullptr) {
    char szAddress[64], szKind[8], szName[256];
    if (sscanf(szLine, "%63s %7s %255s", szAddress, szKind, szName) != 3) continue;
    if (std::string(szKind) != "T") continue;
    ++nExports;
    if (FindRowByName(szName) == nullptr) missing.insert(szName);
  }
  pclose(pipe);
  EXPECT_GT(nExports, 0u);
  for (const std::string& name : missing) ADD_FAILURE() << name << " has no row in the operation table";
}

}  // namespace
}  // namespace smgr::test
