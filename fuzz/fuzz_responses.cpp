// Fuzz target: the input plays the daemon for one operation of the operation
// table. The library sends the operation's request and receives the input's
// messages and transport events as the answer. Checked on every input: no
// sanitizer report, a BOOL of 0 or 1, the caller's memory written only inside
// its sizes, a last error consistent with the result, TRUE only for a response
// of the right type and sequence, no handle left behind, and the next request
// still works.
//
// Input: [operation][flags][12 parameter bytes][items, see fake_daemon.cpp]
//   flags & 1: the send to the daemon fails (EAGAIN).
#include <cstdint>
#include <cstring>

#include "fake_daemon.h"
#include "lib_state.h"
#include "operation_table.h"

namespace {

using smgr::fuzz::FakeDaemon;
using smgr::test::Bytes;
using smgr::test::OperationRow;

constexpr size_t kParamBytes = 12;
constexpr size_t kMaxItems = 24;

const std::vector<const OperationRow*>& FuzzedRows() { return smgr::fuzz::ResponseRows(); }

void CannedExchangeStillWorks() {
  FakeDaemon& daemon = FakeDaemon::instance();
  daemon.inbox.clear();
  daemon.answerWithValidResponses();
  SessMgr_SetLastError(0x77u);
  FUZZ_CHECK(SessMgr_SetDebugState(1) == TRUE, "a valid exchange after the fuzzed one failed");
  FUZZ_CHECK(SessMgr_GetLastError() == 0, "");
  FUZZ_CHECK(daemon.inbox.empty(), "");
}

}  // namespace

// Per row: the valid answer under several caller shapes, the valid answer
// after a stale one, the valid answer cut short, and a send failure.
std::vector<Bytes> smgr::fuzz::SeedInputs() {
  std::vector<Bytes> seeds;
  const auto& rows = FuzzedRows();
  for (size_t i = 0; i < rows.size(); ++i) {
    const uint8_t bRow = static_cast<uint8_t>(i);
    for (uint8_t bParam = 0; bParam < 5; ++bParam) {
      Bytes seed = {bRow, 0};
      seed.insert(seed.end(), kParamBytes, bParam);
      seed.push_back(7);  // the valid response
      seeds.push_back(seed);
    }
    Bytes stale = {bRow, 0};
    stale.insert(stale.end(), kParamBytes, 0);
    // The valid response one sequence late (wMsgSize fixed up), then the valid one.
    const uint8_t bFixups = 0x80 | 0x01 | (2 << 2) | 0x10;
    stale.insert(stale.end(), {0, 0xFF, 0x1F, bFixups, 0, 7});
    seeds.push_back(stale);
    // The valid response cut short (type, sequence and wMsgSize fixed up).
    for (uint8_t bLength : {18, 24, 40}) {
      Bytes cut = {bRow, 0};
      cut.insert(cut.end(), kParamBytes, 0);
      cut.insert(cut.end(), {0, bLength, 0, 0x80 | 0x01 | (1 << 2) | 0x10, 0});
      seeds.push_back(cut);
    }
    seeds.push_back(Bytes{bRow, 1});
  }
  return seeds;
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  smgr::fuzz::StartConnectedLibrary();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pbData, size_t nSize) {
  if (nSize < 2) return 0;
  FakeDaemon& daemon = FakeDaemon::instance();
  const auto& rows = FuzzedRows();
  const OperationRow& row = *rows[pbData[0] % rows.size()];
  const uint8_t bFlags = pbData[1];
  const size_t nParams = std::min(kParamBytes, nSize - 2);
  smgr::test::ParamReader items(pbData + 2 + nParams, nSize - 2 - nParams);

  const size_t nHandlesBefore = smgr::test::LiveHandleCount();
  smgr::test::CallContext ctx;
  ctx.params = smgr::test::ParamReader(pbData + 2, nParams);
  daemon.reset();
  daemon.answerWithValidResponses();
  if (row.prepare != nullptr) row.prepare(ctx);

  // From here the input answers the row's request.
  daemon.inbox.clear();
  daemon.requests.clear();
  daemon.delivered.clear();
  daemon.nSendAttempts = 0;
  WORD wSequence = 0;
  daemon.onRequest = [&](const Bytes& request) {
    wSequence = smgr::test::RequestSequence(request);
    if (smgr::test::RequestType(request) != row.wRequestType) return;
    smgr::fuzz::DecodeItems(items, static_cast<WORD>(row.wRequestType + 1), wSequence,
                            row.validResponse(request), static_cast<size_t>(daemon.nMsgSize), kMaxItems,
                            &daemon.inbox);
  };
  if (bFlags & 1) daemon.nSendErrno = EAGAIN;
  SessMgr_SetLastError(SMGR_ERROR_SUCCESS);

  const BOOL bResult = row.invoke(ctx);

  const SMGR_RESULT lastError = SessMgr_GetLastError();
  daemon.nSendErrno = 0;
  FUZZ_CHECK(bResult == TRUE || bResult == FALSE, row.szName);
  FUZZ_CHECK(ctx.guardsIntact(), row.szName);
  if (bResult) {
    const bool bWarningAllowed = row.success == smgr::test::SuccessCodes::ZeroOrWarning ||
                                 row.success == smgr::test::SuccessCodes::UntouchedOrWarning;
    // A success that leaves the last error keeps what the wait set on the way
    // (a stale or foreign message before the answer).
    const bool bLeavesLastError = row.success == smgr::test::SuccessCodes::Untouched ||
                                  row.success == smgr::test::SuccessCodes::UntouchedOrWarning;
    FUZZ_CHECK(
        bLeavesLastError || lastError == 0 || (bWarningAllowed && (lastError & SMGR_IS_SUCCESS_WITH_WARNING)),
        row.szName);
    FUZZ_CHECK(daemon.requests.size() == 1, row.szName);
    FUZZ_CHECK(!daemon.delivered.empty(), row.szName);
    const Bytes& answer = daemon.delivered.back();
    FUZZ_CHECK(smgr::test::RequestType(answer) == row.wRequestType + 1 &&
                   smgr::test::RequestSequence(answer) == wSequence,
               "TRUE without a response of the right type and sequence");
  }
  using Kept = OperationRow::KeptLastError;
  const bool bSendFailed = (bFlags & 1) && daemon.nSendAttempts > 0;
  const bool bKeepsOnSend =
      row.keptLastError == Kept::OnSendFailure || row.keptLastError == Kept::OnDaemonOrSendFailure;
  const bool bKeepsOnDaemon =
      row.keptLastError == Kept::OnDaemonFailure || row.keptLastError == Kept::OnDaemonOrSendFailure;
  if (!bResult && !(bSendFailed ? bKeepsOnSend : bKeepsOnDaemon)) FUZZ_CHECK(lastError != 0, row.szName);
  if (bSendFailed)
    FUZZ_CHECK(!bResult && lastError == (bKeepsOnSend ? 0 : SMGR_ERROR_LIB_TO_DAEMON_IPC_ERROR), row.szName);

  daemon.inbox.clear();
  daemon.answerWithValidResponses();
  if (row.finish != nullptr) row.finish(ctx);
  FUZZ_CHECK(smgr::test::LiveHandleCount() == nHandlesBefore, "handle left behind");
  CannedExchangeStillWorks();
  return 0;
}
