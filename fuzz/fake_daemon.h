// The daemon and the queues as the fuzz targets play them: an in-memory
// transport installed through the library's transport seam. Requests the
// library sends go to a responder; the client's receive queue is a list of
// items (messages and transport events such as a select time-out, a select
// error or a failed receive); the wait's clock is virtual, so a time-out costs
// no real time. Everything above the queue calls is the production code.
#pragma once

#include <sys/time.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <vector>

#include "operation_table.h"

namespace smgr::fuzz {

using smgr::test::Bytes;

struct Item {
  enum class Kind {
    Message,        // delivered by the next receive
    SelectTimeout,  // one select round passes (the clock moves 1 s)
    SelectError,    // select fails (errno nErrno)
    NotSet,         // select reports readiness but not for the queue
    ReceiveError,   // the receive fails (errno nErrno)
    ZeroBytes,      // the receive returns 0 bytes
    ClockAdvance,   // time passes (nMicros) before the next event
  };
  Kind kind = Kind::Message;
  Bytes bytes;
  long nMicros = 0;
  int nErrno = 0;
};

class FakeDaemon {
 public:
  static FakeDaemon& instance();

  // Installs the in-memory transport (once per process).
  void install();
  // Forgets queued items and recorded requests; every fault switched off.
  void reset();

  // Called for every request the library sends to the daemon queue.
  std::function<void(const Bytes& request)> onRequest;
  // Answers with the operation table's valid response (canned mode).
  void answerWithValidResponses();

  std::deque<Item> inbox;        // the client's receive queue
  std::vector<Bytes> requests;   // every message sent to the daemon queue
  std::vector<Bytes> delivered;  // every message the library received
  size_t nSendAttempts = 0;      // sends tried since reset(), failed ones included
  long nMsgSize = 8192;          // the receive queue's message size (mq_getattr)

  // Faults of the next calls.
  int nOpenDaemonErrno = 0;  // opening the daemon queue fails
  int nCreateErrno = 0;      // creating the receive queue fails
  int nGetattrErrno = 0;     // mq_getattr fails
  int nSendErrno = 0;        // every send fails

  // Queues the library holds open (descriptors of this fake).
  int openQueues() const { return nOpen_; }
  // Receive queues created and not yet unlinked.
  int linkedReceiveQueues() const { return nLinked_; }
  long elapsedMicros() const;  // virtual time since reset()

  // Transport entry points (used through the hook table).
  int open(const char* szName, int nFlags);
  int close(int queue);
  int unlink(const char* szName);
  int getattr(int queue, long* pnMsgSize, long* pnCurMsgs);
  int send(int queue, const char* pb, size_t n);
  int waitReadable(int queue, bool* pbSet);
  ssize_t receive(int queue, char* pb, size_t n);
  int timeOfDay(struct timeval* pNow);
  // Up for longer than the boot window: a missing daemon queue fails at once.
  static constexpr DWORD kUpTimeSecs = 3600;
  void sleepMicros(unsigned nMicros) { advance(static_cast<long>(nMicros)); }

 private:
  void advance(long nMicros);
  long long nNowMicros_ = 1'000'000'000'000LL;
  long long nResetMicros_ = 1'000'000'000'000LL;
  int nOpen_ = 0;
  int nLinked_ = 0;
  int nNextQueue_ = 1000;
};

// Decodes fuzz bytes into receive-queue items. Messages are fixed up (or
// deliberately broken) relative to the expected response type and sequence
// as the bytes say; see the format in fake_daemon.cpp.
void DecodeItems(smgr::test::ParamReader& in, WORD wExpectedType, WORD wSequence, const Bytes& validResponse,
                 size_t nMsgSize, size_t nMaxItems, std::deque<Item>* pItems);

// Stops the process with a message when a property does not hold (a finding).
[[noreturn]] void Violation(const char* szWhat, const char* szDetail = "");
#define FUZZ_CHECK(cond, detail)                         \
  do {                                                   \
    if (!(cond)) ::smgr::fuzz::Violation(#cond, detail); \
  } while (0)

// Rows of the operation table the response target drives (a request, a
// valid invocation and a valid answer).
const std::vector<const smgr::test::OperationRow*>& ResponseRows();

// The seed corpus of a target, built from the operation table (each target
// defines it). SMGR_FUZZ_WRITE_SEEDS=<dir> makes a target write its seeds
// there and exit, before any fuzzing.
std::vector<Bytes> SeedInputs();
void WriteSeedsIfAsked();

// Environment for the library: private settings (time-out 10 s), no start
// marker, a daemon queue name no real queue has. Call before the first Init.
void PrepareEnvironment();

// The start of the targets that fuzz requests of a connected library: seeds if
// asked, the environment, the fake daemon answering validly, SessMgrLib_Init.
void StartConnectedLibrary();

}  // namespace smgr::fuzz
