// The scriptable test peer: plays sessmgrd over real POSIX message queues so
// that tests check the exact bytes the library sends and feed it any response
// (well-formed, stale, late, truncated, oversized, arbitrary bytes).
//
//   TestPeer peer;                       // private queue, settings file, marker path
//   peer.start();                        // responder thread (or startInChildProcess())
//   SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr);
//   peer.onRequest(SMGRPROT_DEBUG_GETINFO_REQ, [](const Request& r) {
//     return Reply::withResult(0).put(20, info);
//   });
//   auto req = peer.lastRequest(SMGRPROT_DEBUG_GETINFO_REQ);
#pragma once

#include <mqueue.h>
#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstring>
#include <deque>
#include <functional>
#include <initializer_list>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "sessmgr_api.h"
#include "smgr_protocol.h"

namespace smgr::test {

using Bytes = std::vector<uint8_t>;

// One message as the peer received it, byte for byte.
class Request {
 public:
  explicit Request(Bytes bytes) : bytes_(std::move(bytes)) {}

  const Bytes& bytes() const { return bytes_; }
  size_t size() const { return bytes_.size(); }
  // The header; zero where the message was shorter.
  SMGRPROT_HEADER header() const { return as<SMGRPROT_HEADER>(); }
  WORD type() const { return header().wMsgType; }
  WORD sequence() const { return header().wMsgSequence; }
  pid_t srcPid() const { return static_cast<pid_t>(header().dwSrcPID); }
  uid_t srcUid() const { return static_cast<uid_t>(header().dwSrcUID); }
  // A value at a message offset; zero-filled past the end of the message.
  template <typename T>
  T field(size_t nOffset) const {
    T value;
    std::memset(&value, 0, sizeof(value));
    if (nOffset < bytes_.size())
      std::memcpy(&value, bytes_.data() + nOffset, std::min(sizeof(T), bytes_.size() - nOffset));
    return value;
  }
  // The whole message as a record (zero-filled past the end).
  template <typename T>
  T as() const {
    return field<T>(0);
  }
  // NUL-terminated text in a fixed field.
  std::string text(size_t nOffset, size_t nFieldSize) const;

 private:
  Bytes bytes_;
};

// One message the peer sends back. Unless told otherwise it is the response to
// the request (type + 1, same sequence), as large as the response record of
// that type (see TestPeer::setReplySize), from the daemon's PID, Result 0.
class Reply {
 public:
  static Reply withResult(SMGR_RESULT result);
  static Reply ok() { return withResult(SMGR_ERROR_SUCCESS); }
  // A progress indication (5000) with the request's sequence.
  static Reply progress(DWORD nPercentageDone);
  // Exactly these bytes, nothing filled in.
  static Reply raw(Bytes bytes);
  // The right response, but with the previous sequence (a late answer).
  static Reply stale() { return ok().sequenceDelta(-1); }
  // Another response type with the right sequence.
  static Reply wrongType() { return ok().typeDelta(3); }

  Reply& size(size_t nSize);  // record size: wMsgSize and bytes sent
  Reply& result(SMGR_RESULT result);
  Reply& description(const std::string& text);
  Reply& bytes(size_t nOffset, const void* pvData, size_t nLength);
  template <typename T>
  Reply& put(size_t nOffset, const T& value) {
    return bytes(nOffset, &value, sizeof(T));
  }
  Reply& type(WORD wType);
  Reply& typeDelta(int nDelta);
  Reply& sequenceDelta(int nDelta);
  Reply& reportedSize(WORD wSize);   // wMsgSize unlike the bytes sent
  Reply& truncateTo(size_t nBytes);  // send only the first nBytes
  Reply& delay(std::chrono::milliseconds wait);
  Reply& daemonPid(pid_t pid);

  // The bytes to send for this request (nDefaultSize: the response record size).
  Bytes build(const Request& request, size_t nDefaultSize) const;
  std::chrono::milliseconds delayBefore() const { return delay_; }

 private:
  template <typename Field, typename Value>
  Reply& set(Field& field, Value value) {
    field = value;
    return *this;
  }

  bool raw_ = false;
  Bytes rawBytes_;
  std::optional<size_t> size_;
  std::optional<WORD> type_;
  int typeDelta_ = 1;
  int sequenceDelta_ = 0;
  std::optional<WORD> reportedSize_;
  std::optional<size_t> truncate_;
  std::optional<pid_t> pid_;
  std::chrono::milliseconds delay_{0};
  std::vector<std::pair<size_t, Bytes>> patches_;
};

// What the peer sends for one request: nothing, one message, or several in order.
class Replies {
 public:
  Replies() = default;                               // nothing at all
  Replies(Reply reply) : list_{std::move(reply)} {}  // NOLINT(google-explicit-constructor)
  Replies(std::initializer_list<Reply> replies) : list_(replies) {}
  static Replies none() { return Replies(); }
  const std::vector<Reply>& list() const { return list_; }

 private:
  std::vector<Reply> list_;
};

struct PeerOptions {
  int nInitIpcTimeout = 0;         // "InitIPCTimeout" written to the settings file
  int nResponseTimeoutMs = 3000;   // "ResponseTimeout"
  long nQueueDepth = 4;            // the daemon queue's mq_maxmsg
  long nQueueMsgSize = 8192;       // and mq_msgsize
  SMGR_RESULT connectResult = 0;   // Result of the connect response
  int32_t enCardType = 7;          // enCardType of the connect response
  bool bCreateDaemonQueue = true;  // false: tests of a missing daemon
};

class TestPeer {
 public:
  using Handler = std::function<Replies(const Request&)>;

  explicit TestPeer(PeerOptions options = {});
  ~TestPeer();
  TestPeer(const TestPeer&) = delete;
  TestPeer& operator=(const TestPeer&) = delete;

  // Answers requests on a thread of this process (requests are recorded).
  void start();
  // Answers in a forked child named "sessmgrd" (a separate daemon process that
  // can die). Handlers must be set before; requests are not recorded.
  void startInChildProcess();
  void stop();
  // The daemon process: this process, or the child. killDaemon() ends the child
  // (and reaps it, so that it no longer exists).
  pid_t daemonPid() const;
  void killDaemon();

  // fork() once the serving thread is parked (blocked in mq_receive or
  // sleeping out a reply delay). A child forked
  // while that thread is inside the allocator could inherit its lock held
  // (the sanitizer allocators do not guard fork) and hang at its first malloc.
  pid_t forkClient();

  // Script. One-shot handlers run before the persistent one of their type.
  void onRequest(WORD wType, Handler handler);
  void onNextRequest(WORD wType, Handler handler);
  void onNextRequest(WORD wType, Replies replies);
  void setReplySize(WORD wResponseType, size_t nSize);

  // Recorded requests (in-process mode).
  std::vector<Request> requests() const;
  std::vector<Request> requests(WORD wType) const;
  std::optional<Request> lastRequest(WORD wType) const;
  size_t requestCount(WORD wType) const;
  bool waitForRequests(WORD wType, size_t nCount,
                       std::chrono::milliseconds timeout = std::chrono::milliseconds(3000)) const;
  void clearRequests();

  // Environment the library reads at its connecting initialisation.
  const std::string& daemonQueueName() const { return queueName_; }
  const std::string& settingsFile() const { return settingsFile_; }
  const std::string& startMarker() const { return markerFile_; }
  void setResponseTimeoutMs(int nTimeoutMs);
  void setInitIpcTimeout(int nAttempts);
  void createStartMarker();
  void removeStartMarker();

 private:
  void writeSettings() const;
  void serve(bool bRecord);
  void handle(const Bytes& message, bool bRecord);
  Replies repliesFor(const Request& request);
  size_t replySize(WORD wResponseType) const;
  void sendTo(pid_t client, const Bytes& message);

  PeerOptions options_;
  std::string queueName_;
  std::string settingsFile_;
  std::string markerFile_;
  std::map<std::string, std::optional<std::string>> savedEnv_;
  mqd_t queue_ = static_cast<mqd_t>(-1);
  std::thread thread_;
  pid_t child_ = 0;
  bool running_ = false;
  std::atomic<bool> parked_{false};  // serving thread blocked, not allocating

  mutable std::mutex mutex_;
  mutable std::condition_variable requestArrived_;
  std::vector<Request> requests_;
  std::map<WORD, Handler> handlers_;
  std::map<WORD, std::deque<Handler>> oneShot_;
  std::map<WORD, size_t> replySizes_;
  std::map<pid_t, mqd_t> clients_;  // responder side only
};

// True in a child forked by a test (not in the test program itself).
bool IsForkedTestChild();

// Waits for a forked child to end and returns its waitpid status. A child
// still running after the limit is killed and reported as kChildHung, so a
// hang fails one test quickly instead of running into the ctest time-out.
constexpr int kChildHung = -1;
int WaitForChild(pid_t child, std::chrono::milliseconds limit = std::chrono::milliseconds(20000));

// True when a message queue of that name exists.
bool MessageQueueExists(const std::string& name);

}  // namespace smgr::test
