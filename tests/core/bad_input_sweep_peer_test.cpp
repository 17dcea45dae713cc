// Every exported operation against bad caller input, from the operation table:
// NULL pointers, short and huge record sizes, over-long names, handles of
// another family or after their last close, unknown selector kinds. Each
// variant must give its documented result and last error, send nothing when
// nothing may be sent (the test peer records every request), stay inside the
// caller's memory and leave no handle behind. LeakSanitizer (asan preset)
// covers heap leaks.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
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
    EXPECT_EQ(SessMgr_GetLastError(), 0u);
    EXPECT_EQ(peer.requestCount(row.wRequestType) - nOfTypeBefore, 1u);
    EXPECT_TRUE(ctx.guardsIntact());
    if (row.finish != nullptr) row.finish(ctx);
    EXPECT_EQ(LiveHandleCount(), nHandlesBefore);
  }
}

TEST_F(BadInputSweep, EveryRequestOperationFailsWith14AndSendsNothingWhenNotInitialised) {
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

TEST_F(BadInputSweep, DebugRequestFromANonRootProcessFailsWith73AndSendsNothing) {
  if (getuid() != 0) GTEST_SKIP() << "needs root to drop to another user";
  const size_t nBefore = peer.requests().size();
  pid_t child = peer.forkClient();
  ASSERT_GE(child, 0);
  if (child == 0) {
    // The root check comes before anything is built or sent, so the inherited
    // connection is never used by this child.
    if (setuid(65534) != 0) _exit(2);
    char abData[4] = {};
    BOOL bResult = SessMgr_DebugRequest(1, abData, sizeof(abData));
    _exit(!bResult && SessMgr_GetLastError() == SMGR_ERROR_INSUFFICIENT_RIGHTS ? 0 : 1);
  }
  int nStatus = WaitForChild(child);
  ASSERT_NE(nStatus, kChildHung);
  EXPECT_TRUE(WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0);
  EXPECT_EQ(peer.requests().size(), nBefore);
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
