// Fuzz target: SessMgrLib_WaitForResponse against any sequence of messages and
// transport events, with any response time-out. Besides the sanitizers, the
// outcome is compared with an independent model of the wait's rules: the first
// message of the awaited type and sequence ends the wait with its wMsgSize;
// the same type with another sequence sets 13, another type 12, both discarded
// and followed by the time check; progress indications are skipped without a
// time check; select errors end the wait with 11; the time-out (3) is reached
// when the elapsed seconds exceed the time-out's, or equal them with the
// microseconds reaching its remainder.
//
// Input: [u16 awaited type][u16 sequence][u16 time-out ms][items, see fake_daemon.cpp]
#include <cstring>

#include "fake_daemon.h"
#include "lib_state.h"
#include "operation_table.h"

namespace {

using smgr::fuzz::FakeDaemon;
using smgr::fuzz::Item;

struct Outcome {
  BOOL bResult = FALSE;
  SMGR_RESULT lastError = 0;
  size_t nSize = 0;
};

Outcome Model(std::deque<Item> items, WORD wType, WORD wSequence, int nTimeoutMs, SMGR_RESULT initialError,
              size_t nMsgSize) {
  Outcome outcome;
  outcome.lastError = initialError;
  long long nElapsed = 0;
  const auto timedOut = [&] {
    const long long nSecs = nElapsed / 1'000'000;
    const long long nMicros = nElapsed % 1'000'000;
    return nSecs > nTimeoutMs / 1000 ||
           (nSecs == nTimeoutMs / 1000 && nMicros >= (nTimeoutMs % 1000) * 1000LL);
  };
  for (;;) {
    while (!items.empty() && items.front().kind == Item::Kind::ClockAdvance) {
      nElapsed += items.front().nMicros;
      items.pop_front();
    }
    bool bReadable = false;
    if (items.empty()) {
      nElapsed += 1'000'000;
    } else {
      switch (items.front().kind) {
        case Item::Kind::SelectTimeout:
          items.pop_front();
          nElapsed += 1'000'000;
          break;
        case Item::Kind::SelectError:
          outcome.lastError = SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR;
          return outcome;
        case Item::Kind::NotSet:
          items.pop_front();
          bReadable = true;
          break;
        default:
          bReadable = true;
          break;
      }
    }
    if (bReadable && !items.empty()) {
      const Item::Kind kind = items.front().kind;
      if (kind == Item::Kind::Message) {
        smgr::test::Bytes message = items.front().bytes;
        items.pop_front();
        if (message.size() > nMsgSize) message.resize(nMsgSize);
        SMGRPROT_HEADER header{};
        if (!message.empty()) std::memcpy(&header, message.data(), std::min(message.size(), sizeof(header)));
        if (message.empty()) {
          // zero bytes: only the time check
        } else if (header.wMsgType == wType && header.wMsgSequence == wSequence) {
          outcome.bResult = TRUE;
          outcome.nSize = header.wMsgSize;
          return outcome;
        } else if (header.wMsgType == wType) {
          outcome.lastError = SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_SEQU_ERROR;
        } else if (header.wMsgType == SMGRPROT_REQUEST_PROGRESS_IND) {
          continue;
        } else {
          outcome.lastError = SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_TYPE_ERROR;
        }
      } else if (kind == Item::Kind::ReceiveError || kind == Item::Kind::ZeroBytes) {
        items.pop_front();
      }
    }
    if (timedOut()) {
      outcome.lastError = SMGR_ERROR_IPC_RESPONSE_TIMEOUT_ERROR;
      return outcome;
    }
  }
}

}  // namespace

// Awaiting a diagnostics response: at once, after progress, after wrong
// types and sequences, after transport faults, and never (time-out).
std::vector<smgr::test::Bytes> smgr::fuzz::SeedInputs() {
  const std::vector<uint8_t> head = {0xC5, 0x03, 0x2A, 0x00, 0x10, 0x27};  // type 965, sequence 42, 10000 ms
  const std::vector<std::vector<uint8_t>> tails = {
      {7},
      {0, 20, 0, 0x02 | (1 << 2) | 0x10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 50, 0, 0, 0, 7},
      {0, 20, 0, 0x03 | (1 << 2) | 0x10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7},
      {0, 20, 0, 0x01 | (2 << 2) | 0x10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7},
      {4, 5, 1, 5, 2, 5, 3, 6, 200, 7},
      {5, 0},
      {},
  };
  std::vector<smgr::test::Bytes> seeds;
  for (const auto& tail : tails) {
    smgr::test::Bytes seed = head;
    seed.insert(seed.end(), tail.begin(), tail.end());
    seeds.push_back(seed);
  }
  return seeds;
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  smgr::fuzz::StartConnectedLibrary();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pbData, size_t nSize) {
  if (nSize < 6) return 0;
  FakeDaemon& daemon = FakeDaemon::instance();
  daemon.reset();
  WORD wType, wSequence, wTimeout;
  std::memcpy(&wType, pbData, 2);
  std::memcpy(&wSequence, pbData + 2, 2);
  std::memcpy(&wTimeout, pbData + 4, 2);
  const int nTimeoutMs = wTimeout % 30000;
  smgr::test::ParamReader in(pbData + 6, nSize - 6);
  smgr::test::Bytes valid = smgr::test::MakeMessage(wType, wSequence, 20);
  smgr::fuzz::DecodeItems(in, wType, wSequence, valid, static_cast<size_t>(daemon.nMsgSize), 32,
                          &daemon.inbox);

  const SMGR_RESULT initialError = 0x77u;
  const Outcome expected =
      Model(daemon.inbox, wType, wSequence, nTimeoutMs, initialError, static_cast<size_t>(daemon.nMsgSize));
  const int nSavedTimeout = g_nIPCRespTimeoutInMS;
  g_nIPCRespTimeoutInMS = nTimeoutMs;
  SessMgr_SetLastError(initialError);
  size_t* pnSize = new size_t(0xDEADu);  // heap: a write past it is reported
  const BOOL bResult = SessMgrLib_WaitForResponse(wType, wSequence, pnSize);
  const SMGR_RESULT lastError = SessMgr_GetLastError();
  g_nIPCRespTimeoutInMS = nSavedTimeout;
  const size_t nReportedSize = *pnSize;
  delete pnSize;

  FUZZ_CHECK(bResult == expected.bResult, "result differs from the wait's rules");
  FUZZ_CHECK(lastError == expected.lastError, "last error differs from the wait's rules");
  if (bResult) FUZZ_CHECK(nReportedSize == expected.nSize, "size is not the response's wMsgSize");
  if (!bResult) FUZZ_CHECK(nReportedSize == 0xDEADu, "size written on failure");
  daemon.inbox.clear();
  return 0;
}
