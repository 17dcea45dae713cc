// The request engine: the one implementation of the standard request
// sequence (not-initialised check, lock, PID check, header fill, send, wait,
// result test, bounded copy-back, unlock, last error, traces).
//
// A family operation declares how it departs from the standard sequence in a
// RequestTraits value and supplies two small callbacks: one that fills the
// data part of the request under the lock (selector translation, handle
// bookkeeping) and one that copies the response back to the caller, also
// under the lock. Families never touch the queues, the mutex or the sequence
// counter themselves.
#pragma once

#include <mqueue.h>
#include <sys/time.h>
#include <sys/types.h>

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

#include "sessmgr_api.h"
#include "smgr_protocol.h"

namespace smgr {

// Non-owning reference to a callable; no allocation, unlike std::function.
template <typename Signature>
class FunctionRef;

template <typename R, typename... Args>
class FunctionRef<R(Args...)> {
 public:
  FunctionRef() = default;
  FunctionRef(std::nullptr_t) {}
  template <typename F, typename = std::enable_if_t<!std::is_same_v<std::decay_t<F>, FunctionRef>>>
  FunctionRef(F&& f)  // NOLINT(google-explicit-constructor): used like a lambda parameter
      : object_(const_cast<void*>(static_cast<const void*>(&f))), call_([](void* o, Args... args) -> R {
          return (*static_cast<std::remove_reference_t<F>*>(o))(std::forward<Args>(args)...);
        }) {}
  R operator()(Args... args) const { return call_(object_, std::forward<Args>(args)...); }
  explicit operator bool() const { return call_ != nullptr; }

 private:
  void* object_ = nullptr;
  R (*call_)(void*, Args...) = nullptr;
};

// Which daemon results make the operation succeed.
enum class SuccessTest {
  ExactlyZero,    // only SMGR_ERROR_SUCCESS
  ZeroOrWarning,  // 0, or any code with SMGR_IS_SUCCESS_WITH_WARNING set
};

// Where the "PID changed since initialisation" check sits.
enum class PidCheck {
  AfterLock,   // the standard place
  BeforeLock,  // enumerations check before taking the mutex
};

// What a failed AdaptToPIDChange does to the operation (it always goes on).
enum class AdaptFailure {
  Trace,   // level 3 trace only
  Assert,  // failed debug assertion "AdaptToPIDChange()"
};

// Whether the last error of a successful operation is set after the mutex is
// released (the standard) or while it is still held.
enum class SuccessErrorOrder { AfterUnlock, BeforeUnlock };

// What a success does to the last error.
enum class SuccessLastError {
  Result,     // the response's Result (0, or the warning)
  Untouched,  // left as it was
  // 0 leaves it as it was, a warning (which passes ZeroOrWarning) becomes it
  // (the configuration store's load).
  WarningOnly,
};

// What a daemon failure (Result that fails the success test) does to the last error.
enum class FailureLastError {
  ResultWithDescription,  // SessMgr_SetLastErrorEx(Result, 0, szErrorDescription)
  Result,                 // SessMgr_SetLastError(Result)
  ResultWithErrno,        // SessMgr_SetLastErrorEx(Result, the int at nFailureErrnoOffset, NULL)
  Untouched,
};

// What an mq_send failure does besides its level 3 trace.
enum class SendFailure {
  SetLastError,  // SMGR_ERROR_LIB_TO_DAEMON_IPC_ERROR with errno
  TraceOnly,
};

// When the sequence number is taken.
enum class SequenceOrder {
  UnderLock,   // the standard: after locking
  BeforeLock,  // taken while building the request, before locking; the wait expects it
  // Taken before locking, but the wait expects g_wTxSequence as read after the
  // send: another thread's request in between makes the wait miss (kept on purpose
  // for the families that do so).
  BeforeLockWaitCurrent,
};

// How "library not initialised" is reported.
enum class InitCheck {
  Standard,  // last error notInitialisedResult, no lock
  None,      // not checked at all
};

// The departures of one operation from the standard request sequence.
struct RequestTraits {
  const char* szOperation;  // exported name, used as the function of engine traces
  WORD wRequestType;        // the awaited response type is wRequestType + 1
  SuccessTest success = SuccessTest::ZeroOrWarning;
  // The response carries szErrorDescription after Result (the generic 180-byte
  // head). Without it the head is Result alone (20 bytes).
  bool bResponseHasDescription = true;
  // Message offset of szErrorDescription when it does not follow Result
  // directly (a create response that carries the new ID and name first); 0
  // means right after Result.
  size_t nDescriptionOffset = 0;
  SuccessLastError successLastError = SuccessLastError::Result;
  SuccessErrorOrder successErrorOrder = SuccessErrorOrder::AfterUnlock;
  FailureLastError failureLastError = FailureLastError::ResultWithDescription;
  size_t nFailureErrnoOffset = 0;  // message offset of the daemon's errno (ResultWithErrno)
  PidCheck pidCheck = PidCheck::AfterLock;
  AdaptFailure adaptFailure = AdaptFailure::Trace;
  SequenceOrder sequenceOrder = SequenceOrder::UnderLock;
  InitCheck initCheck = InitCheck::Standard;
  // Last error when the library is not initialised (InitCheck::Standard).
  SMGR_RESULT notInitialisedResult = SMGR_ERROR_LIB_NOT_INITIALIZED;
  SendFailure sendFailure = SendFailure::SetLastError;
  // Level 3 trace on mq_send failure, formatted with (errno, strerror text).
  const char* szSendFailureTrace = "Failed to send request to sessmgrd, errno (%d):%s.\n";
  // Response time-out for this request in ms, given to its wait alone (the
  // configured g_nIPCRespTimeoutInMS is not touched); 0 means the configured one.
  int nResponseTimeoutMs = 0;
  // Level of the "Done (returning %s).\n" exit trace.
  int nExitTraceLevel = 5;
  // Smallest response (bytes actually received) the operation can read; 0 means
  // the generic head (180 with a description, 20 without). A shorter response
  // fails with SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR and nothing is copied.
  size_t nMinResponseSize = 0;
  // The copy-back also runs for a Result that fails the success test (for
  // responses whose other fields matter either way); the operation still
  // fails with the standard failure last error.
  bool bCopyBackOnFailure = false;
};

// A received response, readable only within the bytes the queue delivered.
// Valid during the onSuccess callback only (it points into the receive buffer).
class ResponseView {
 public:
  ResponseView(const BYTE* pbMessage, size_t nReceived) : pb_(pbMessage), n_(nReceived) {}

  size_t received() const { return n_; }
  // The header's wMsgSize: what the daemon says it sent (never trusted for reads).
  WORD reportedSize() const;
  SMGR_RESULT result() const;
  // Copies the daemon's description (terminated, at most nSize - 1 chars); empty
  // when the response carries none. nOffset 0 means right after Result.
  void description(char* szBuffer, size_t nSize, size_t nOffset = 0) const;

  // Reads a value at a message offset; false (and *pValue untouched) when it
  // does not lie wholly within the received bytes.
  template <typename T>
  bool read(size_t nOffset, T* pValue) const {
    static_assert(std::is_trivially_copyable_v<T>);
    if (nOffset > n_ || n_ - nOffset < sizeof(T)) return false;
    std::memcpy(pValue, pb_ + nOffset, sizeof(T));
    return true;
  }
  // True when [nOffset, nOffset + nLength) lies within the received bytes.
  bool holds(size_t nOffset, size_t nLength) const { return nOffset <= n_ && n_ - nOffset >= nLength; }
  // Copies min(nLength, nDestSize, bytes received past nOffset) bytes starting at
  // message offset nOffset into pDest; returns the number copied.
  size_t copyOut(size_t nOffset, size_t nLength, void* pDest, size_t nDestSize) const;
  const BYTE* bytes() const { return pb_; }

 private:
  const BYTE* pb_;
  size_t n_;
};

// The family's fill step, run under the API mutex after the header is filled.
// Returns false to abandon the request (nothing is sent); it sets the last error
// itself when the failure calls for one (an invalid selector handle does not).
using BuildStep = FunctionRef<bool(void* pvRequest)>;

// The family's copy-back, run under the API mutex once the result passed the
// success test. *pLastError starts as the response's Result; the step may
// change it (e.g. a create keeps its host-name warning). Returning false turns
// the operation into a failure with *pLastError as the last error (use
// SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR for a response too short to read).
using CopyBackStep = FunctionRef<bool(const ResponseView& response, SMGR_RESULT* pLastError)>;

// Runs the standard request sequence for one request.
//   pvRequest / nRequestSize: the caller's zeroed request record; the engine
//     fills its SMGRPROT_HEADER (type, sequence, size = nRequestSize, PIDs).
//   bArgumentsValid: false when a required pointer argument is NULL; checked
//     after the not-initialised test, under the mutex (last error 2).
//   build, copyBack: may be empty.
//   checkBeforeLock: for the sequence orders that build the header before
//     locking, a local check run right after that (the number is used up
//     either way); false ends the call without locking, its last error set by
//     the step. May be empty; ignored for SequenceOrder::UnderLock.
// Returns TRUE/FALSE and leaves the last error as the standard sequence says.
BOOL Transact(const RequestTraits& traits, void* pvRequest, size_t nRequestSize, bool bArgumentsValid,
              BuildStep build = nullptr, CopyBackStep copyBack = nullptr,
              BuildStep checkBeforeLock = nullptr);

// Copies a record with the nSize negotiation of the API records: at most
// min(nCallerSize, nReturnedSize) bytes, and never beyond what the response
// holds past nOffset; returns the number of bytes copied (callers write it back
// into the record's nSize).
size_t CopyRecordBack(const ResponseView& response, size_t nOffset, size_t nReturnedSize, void* pvCaller,
                      size_t nCallerSize);

// True while the library is initialised (g_nLibInitCount > 0); no lock.
bool IsLibraryInitialised();

// The API mutex, for the few steps a family must run under it outside
// Transact (e.g. SessMgr_CloseStream's handle release happens inside build;
// Open's local lookup happens before any request). Recursive, so that
// AdaptToPIDChange may lock it again from inside a request.
class ApiLock {
 public:
  ApiLock();
  ~ApiLock();
  ApiLock(const ApiLock&) = delete;
  ApiLock& operator=(const ApiLock&) = delete;
};

// Runs the PID check of the standard sequence (AdaptToPIDChange after fork).
// Skipped while the library is not initialised: there is no connection to
// adapt, and adapting would open a receive queue nobody closes.
void CheckPidChange(const RequestTraits& traits);

// ---- Transport seam ---------------------------------------------------------
// Every queue call of the library and the clock of the response wait go
// through one table of functions. In a client process the table holds the
// POSIX calls (mq_open, mq_close, mq_unlink, mq_getattr, mq_send, select on the
// receive queue, mq_receive, gettimeofday) and is never replaced. Only the fuzz
// harnesses install another table, so that everything above these calls (the
// connect handshake, the wait and its discard rules, the request engine, every
// family's copy-back) is the code a client runs. Install before
// SessMgrLib_Init and restore after the last SessMgrLib_Shutdown, with no
// operation in flight; the table must outlive its use.
struct TransportHooks {
  mqd_t (*open)(const char* szName, int nFlags, mode_t mode, struct mq_attr* pAttr);
  int (*close)(mqd_t queue);
  int (*unlink)(const char* szName);
  int (*getattr)(mqd_t queue, struct mq_attr* pAttr);
  int (*send)(mqd_t queue, const char* pbMessage, size_t nLength, unsigned nPriority);
  // Waits at most one select round (1 s) for the queue to become readable:
  // > 0 readable (*pbSet: the queue itself is), 0 time-out, < 0 error (errno).
  int (*waitReadable)(mqd_t queue, bool* pbSet);
  ssize_t (*receive)(mqd_t queue, char* pbBuffer, size_t nSize, unsigned* pnPriority);
  int (*timeOfDay)(struct timeval* pNow);
  // Seconds since boot, for the start-up wait for the daemon's queue.
  BOOL (*upTime)(DWORD* pdwSeconds);
  // The pause between two attempts to open the daemon's queue.
  void (*sleepMicros)(unsigned nMicroSeconds);
};

// The table in force (the POSIX one unless a harness installed another).
const TransportHooks& Transport();
// Installs pHooks; nullptr puts the POSIX table back.
void SetTransportHooks(const TransportHooks* pHooks);

}  // namespace smgr
