// The scriptable test peer (see test_peer.h): a private daemon queue and
// settings, a responder that records requests and answers by script.
#include "test_peer.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace smgr::test {
namespace {

constexpr WORD kStopMessageType = 0xFFFF;
constexpr DWORD kStopMessageMagic = 0x504F5453;  // "STOP"
constexpr const char* kEnvQueue = "SESSMGR_DAEMON_QUEUE";
constexpr const char* kEnvSettings = "SESSMGR_SETTINGS_FILE";
constexpr const char* kEnvMarker = "SESSMGR_STARTED_MARKER";

std::atomic<int> g_nPeerCounter{0};

// Response record sizes the peer knows without being told.
const std::map<WORD, size_t> kKnownReplySizes = {
    {SMGRPROT_USER_CONNECT_RSP, sizeof(SMGRPROT_MSG_CONNECT_RSP)},
    {SMGRPROT_DEBUG_SETCFG_RSP, sizeof(SMGRPROT_MSG_DEBUG_SETCFG_RSP)},
    {SMGRPROT_DEBUG_GETINFO_RSP, sizeof(SMGRPROT_MSG_DEBUG_GETINFO_RSP)},
    {SMGRPROT_THREAD_ENUMERATE_RSP, SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET},
    {SMGRPROT_DEBUG_RSP, sizeof(SMGRPROT_MSG_DEBUG_RSP)},
    {SMGRPROT_MUTEX_ENUMERATE_RSP, SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET},
};
constexpr size_t kGenericReplySize = 180;  // header, Result, szErrorDescription[160]

void PutBytes(Bytes* pMessage, size_t nOffset, const void* pvData, size_t nLength) {
  if (pMessage->size() < nOffset + nLength) pMessage->resize(nOffset + nLength, 0);
  std::memcpy(pMessage->data() + nOffset, pvData, nLength);
}

}  // namespace

std::string Request::text(size_t nOffset, size_t nFieldSize) const {
  if (nOffset >= bytes_.size()) return {};
  size_t nAvailable = std::min(nFieldSize, bytes_.size() - nOffset);
  const char* sz = reinterpret_cast<const char*>(bytes_.data() + nOffset);
  return std::string(sz, strnlen(sz, nAvailable));
}

// ---- Reply ------------------------------------------------------------------

Reply Reply::withResult(SMGR_RESULT result) {
  Reply reply;
  reply.result(result);
  return reply;
}

Reply Reply::progress(DWORD nPercentageDone) {
  Reply reply;
  reply.type(SMGRPROT_REQUEST_PROGRESS_IND)
      .size(sizeof(SMGRPROT_MSG_REQUEST_PROGRESS_IND))
      .put(16, nPercentageDone);
  return reply;
}

Reply Reply::raw(Bytes bytes) {
  Reply reply;
  reply.raw_ = true;
  reply.rawBytes_ = std::move(bytes);
  return reply;
}

Reply& Reply::size(size_t nSize) { return set(size_, nSize); }
Reply& Reply::result(SMGR_RESULT result) { return put(16, result); }
Reply& Reply::description(const std::string& text) {
  char sz[160] = {};
  std::memcpy(sz, text.data(), std::min(text.size(), sizeof(sz) - 1));
  return bytes(20, sz, sizeof(sz));
}
Reply& Reply::bytes(size_t nOffset, const void* pvData, size_t nLength) {
  const auto* pb = static_cast<const uint8_t*>(pvData);
  patches_.emplace_back(nOffset, Bytes(pb, pb + nLength));
  return *this;
}
Reply& Reply::type(WORD wType) { return set(type_, wType); }
Reply& Reply::typeDelta(int nDelta) { return set(typeDelta_, nDelta); }
Reply& Reply::sequenceDelta(int nDelta) { return set(sequenceDelta_, nDelta); }
Reply& Reply::reportedSize(WORD wSize) { return set(reportedSize_, wSize); }
Reply& Reply::truncateTo(size_t nBytes) { return set(truncate_, nBytes); }
Reply& Reply::delay(std::chrono::milliseconds wait) { return set(delay_, wait); }
Reply& Reply::daemonPid(pid_t pid) { return set(pid_, pid); }

Bytes Reply::build(const Request& request, size_t nDefaultSize) const {
  if (raw_) return rawBytes_;
  size_t nSize = size_.value_or(nDefaultSize);
  Bytes message(std::max(nSize, sizeof(SMGRPROT_HEADER)), 0);
  SMGRPROT_HEADER header{};
  header.wMsgType = type_.value_or(static_cast<WORD>(request.type() + typeDelta_));
  header.wMsgSequence = static_cast<WORD>(request.sequence() + sequenceDelta_);
  header.wMsgSize = reportedSize_.value_or(static_cast<WORD>(nSize));
  header.dwSrcPID = static_cast<DWORD>(pid_.value_or(getpid()));
  std::memcpy(message.data(), &header, sizeof(header));
  for (const auto& [nOffset, data] : patches_) {
    if (nOffset + data.size() > message.size()) continue;  // a field beyond the record: not sent
    PutBytes(&message, nOffset, data.data(), data.size());
  }
  message.resize(nSize);
  if (truncate_ && *truncate_ < message.size()) message.resize(*truncate_);
  return message;
}

// ---- TestPeer -----------------------------------------------------------------

TestPeer::TestPeer(PeerOptions options) : options_(options) {
  int n = ++g_nPeerCounter;
  std::string stem = "smgrtest-" + std::to_string(getpid()) + "-" + std::to_string(n);
  queueName_ = "/" + stem;
  settingsFile_ = "/tmp/" + stem + ".ini";
  markerFile_ = "/tmp/" + stem + ".started";
  for (const char* szName : {kEnvQueue, kEnvSettings, kEnvMarker}) {
    const char* szValue = getenv(szName);
    savedEnv_[szName] = szValue ? std::optional<std::string>(szValue) : std::nullopt;
  }
  setenv(kEnvQueue, queueName_.c_str(), 1);
  setenv(kEnvSettings, settingsFile_.c_str(), 1);
  setenv(kEnvMarker, markerFile_.c_str(), 1);
  writeSettings();
  if (options_.bCreateDaemonQueue) {
    struct mq_attr attr {};
    attr.mq_maxmsg = options_.nQueueDepth;
    attr.mq_msgsize = options_.nQueueMsgSize;
    // The per-user queue budget is shared with every other test on the
    // machine: wait for room rather than fail at once.
    for (int nAttempt = 0; nAttempt < 100; ++nAttempt) {
      queue_ = mq_open(queueName_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600, &attr);
      if (queue_ != static_cast<mqd_t>(-1) || (errno != EMFILE && errno != ENOSPC)) break;
      usleep(100000);
    }
    if (queue_ == static_cast<mqd_t>(-1)) throw std::runtime_error("test peer: cannot create " + queueName_);
  }
}

TestPeer::~TestPeer() {
  stop();
  for (auto& [pid, q] : clients_) mq_close(q);
  if (queue_ != static_cast<mqd_t>(-1)) {
    mq_close(queue_);
    mq_unlink(queueName_.c_str());
  }
  unlink(settingsFile_.c_str());
  unlink(markerFile_.c_str());
  for (const auto& [name, value] : savedEnv_) {
    if (value)
      setenv(name.c_str(), value->c_str(), 1);
    else
      unsetenv(name.c_str());
  }
}

void TestPeer::writeSettings() const {
  std::ofstream file(settingsFile_, std::ios::trunc);
  file << "[API Library]\n"
       << "InitIPCTimeout=" << options_.nInitIpcTimeout << "\n"
       << "ResponseTimeout=" << options_.nResponseTimeoutMs << "\n";
}

void TestPeer::setResponseTimeoutMs(int nTimeoutMs) {
  options_.nResponseTimeoutMs = nTimeoutMs;
  writeSettings();
}

void TestPeer::setInitIpcTimeout(int nAttempts) {
  options_.nInitIpcTimeout = nAttempts;
  writeSettings();
}

void TestPeer::createStartMarker() { std::ofstream(markerFile_) << "started\n"; }
void TestPeer::removeStartMarker() { unlink(markerFile_.c_str()); }

void TestPeer::start() {
  if (running_ || queue_ == static_cast<mqd_t>(-1)) return;
  running_ = true;
  thread_ = std::thread([this] { serve(true); });
}

void TestPeer::startInChildProcess() {
  if (running_ || queue_ == static_cast<mqd_t>(-1)) return;
  pid_t parent = getpid();
  pid_t child = fork();
  if (child < 0) throw std::runtime_error("test peer: fork failed");
  if (child == 0) {
    prctl(PR_SET_NAME, "sessmgrd", 0, 0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0);
    if (getppid() != parent) _exit(0);
    serve(false);
    _exit(0);
  }
  child_ = child;
  running_ = true;
}

void TestPeer::stop() {
  if (!running_) return;
  running_ = false;
  if (child_ != 0) {
    killDaemon();
    return;
  }
  SMGRPROT_MSG_DISCONNECT_IND stop{};
  stop.Header.wMsgType = kStopMessageType;
  stop.Header.wMsgSize = sizeof(stop);
  stop.Data.dwReserved = kStopMessageMagic;
  mqd_t writer = mq_open(queueName_.c_str(), O_WRONLY | O_CLOEXEC);
  mq_send(writer, reinterpret_cast<const char*>(&stop), sizeof(stop), 31);
  mq_close(writer);
  thread_.join();
}

pid_t TestPeer::forkClient() {
  while (running_ && child_ == 0 && !parked_.load())
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  return fork();
}

pid_t TestPeer::daemonPid() const { return child_ != 0 ? child_ : getpid(); }

void TestPeer::killDaemon() {
  if (child_ == 0) return;
  kill(child_, SIGKILL);
  waitpid(child_, nullptr, 0);
  child_ = 0;
  running_ = false;
}

void TestPeer::onRequest(WORD wType, Handler handler) {
  std::lock_guard<std::mutex> lock(mutex_);
  handlers_[wType] = std::move(handler);
}

void TestPeer::onNextRequest(WORD wType, Handler handler) {
  std::lock_guard<std::mutex> lock(mutex_);
  oneShot_[wType].push_back(std::move(handler));
}

void TestPeer::onNextRequest(WORD wType, Replies replies) {
  onNextRequest(wType, [replies](const Request&) { return replies; });
}

void TestPeer::setReplySize(WORD wResponseType, size_t nSize) {
  std::lock_guard<std::mutex> lock(mutex_);
  replySizes_[wResponseType] = nSize;
}

size_t TestPeer::replySize(WORD wResponseType) const {
  std::lock_guard<std::mutex> lock(mutex_);
  if (auto it = replySizes_.find(wResponseType); it != replySizes_.end()) return it->second;
  if (auto it = kKnownReplySizes.find(wResponseType); it != kKnownReplySizes.end()) return it->second;
  return kGenericReplySize;
}

std::vector<Request> TestPeer::requests() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return requests_;
}

std::vector<Request> TestPeer::requests(WORD wType) const {
  std::lock_guard<std::mutex> lock(mutex_);
  std::vector<Request> matching;
  for (const Request& request : requests_)
    if (request.type() == wType) matching.push_back(request);
  return matching;
}

std::optional<Request> TestPeer::lastRequest(WORD wType) const {
  std::lock_guard<std::mutex> lock(mutex_);
  for (auto it = requests_.rbegin(); it != requests_.rend(); ++it)
    if (it->type() == wType) return *it;
  return std::nullopt;
}

size_t TestPeer::requestCount(WORD wType) const { return requests(wType).size(); }

bool TestPeer::waitForRequests(WORD wType, size_t nCount, std::chrono::milliseconds timeout) const {
  std::unique_lock<std::mutex> lock(mutex_);
  return requestArrived_.wait_for(lock, timeout, [&] {
    return static_cast<size_t>(std::count_if(requests_.begin(), requests_.end(),
                                             [&](const Request& r) { return r.type() == wType; })) >= nCount;
  });
}

void TestPeer::clearRequests() {
  std::lock_guard<std::mutex> lock(mutex_);
  requests_.clear();
}

void TestPeer::serve(bool bRecord) {
  Bytes buffer(static_cast<size_t>(options_.nQueueMsgSize));
  for (;;) {
    parked_.store(true);
    ssize_t n = mq_receive(queue_, reinterpret_cast<char*>(buffer.data()), buffer.size(), nullptr);
    if (n < 0) {
      if (errno == EINTR) continue;
      return;  // parked_ stays set: this thread no longer allocates
    }
    parked_.store(false);
    Bytes message(buffer.begin(), buffer.begin() + n);
    Request request(message);
    if (request.type() == kStopMessageType && request.field<DWORD>(16) == kStopMessageMagic) return;
    handle(message, bRecord);
  }
}

Replies TestPeer::repliesFor(const Request& request) {
  Handler handler;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (auto it = oneShot_.find(request.type()); it != oneShot_.end() && !it->second.empty()) {
      handler = std::move(it->second.front());
      it->second.pop_front();
    } else if (auto it2 = handlers_.find(request.type()); it2 != handlers_.end()) {
      handler = it2->second;
    }
  }
  if (handler) return handler(request);
  switch (request.type()) {
    case SMGRPROT_USER_CONNECT_REQ:
      return Reply::withResult(options_.connectResult).put(20, options_.enCardType);
    case SMGRPROT_USER_DISCONNECT_IND:
    case SMGRPROT_SYSTEM_SHUTDOWN_REQ:
      return Replies::none();
    default:
      return Reply::ok();
  }
}

void TestPeer::handle(const Bytes& message, bool bRecord) {
  Request request(message);
  pid_t client = request.srcPid();
  if (request.type() == SMGRPROT_USER_CONNECT_REQ) {
    // Open the client's receive queue by the name it gave.
    std::string name = request.text(16, 32);
    if (auto it = clients_.find(client); it != clients_.end()) {
      mq_close(it->second);
      clients_.erase(it);
    }
    mqd_t q = mq_open(name.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (q != static_cast<mqd_t>(-1)) clients_[client] = q;
  }
  if (bRecord) {
    std::lock_guard<std::mutex> lock(mutex_);
    requests_.push_back(request);
  }
  requestArrived_.notify_all();

  Replies replies = repliesFor(request);
  for (const Reply& reply : replies.list()) {
    if (reply.delayBefore().count() > 0) {
      parked_.store(true);
      std::this_thread::sleep_for(reply.delayBefore());
      parked_.store(false);
    }
    sendTo(client, reply.build(request, replySize(static_cast<WORD>(request.type() + 1))));
  }
  if (request.type() == SMGRPROT_USER_DISCONNECT_IND) {
    if (auto it = clients_.find(client); it != clients_.end()) {
      mq_close(it->second);
      clients_.erase(it);
    }
  }
}

void TestPeer::sendTo(pid_t client, const Bytes& message) {
  auto it = clients_.find(client);
  if (it == clients_.end()) return;
  for (int nAttempt = 0; nAttempt < 200; ++nAttempt) {
    if (mq_send(it->second, reinterpret_cast<const char*>(message.data()), message.size(), 0) == 0) return;
    if (errno != EAGAIN) return;
    usleep(5000);  // the client's queue is full: give it time to drain
  }
}

namespace {
const pid_t g_TestProcessPid = getpid();

std::string ReadWholeFile(const std::string& path) {
  std::ifstream in(path);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

// Where a hung child is stuck, on standard error for the test log: its kernel
// wait channel and system call, and a backtrace when gdb is at hand.
void DescribeHungProcess(pid_t pid) {
  const std::string proc = "/proc/" + std::to_string(pid);
  fprintf(stderr, "child %d hung; wchan: %s; syscall: %s\n", static_cast<int>(pid),
          ReadWholeFile(proc + "/wchan").c_str(), ReadWholeFile(proc + "/syscall").c_str());
  const std::string gdb = "timeout 20 gdb -p " + std::to_string(pid) +
                          " -batch -ex 'thread apply all bt' 2>/dev/null | grep -E '^(#|Thread)' >&2";
  if (system("command -v gdb >/dev/null 2>&1") == 0) (void)!system(gdb.c_str());
}
}  // namespace

int WaitForChild(pid_t child, std::chrono::milliseconds limit) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  int nStatus = 0;
  for (;;) {
    pid_t ended = waitpid(child, &nStatus, WNOHANG);
    if (ended == child) return nStatus;
    if (ended < 0 && errno != EINTR) return kChildHung;  // not ours to reap: no status to give
    if (std::chrono::steady_clock::now() >= deadline) break;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  DescribeHungProcess(child);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  return kChildHung;
}

bool IsForkedTestChild() { return getpid() != g_TestProcessPid; }

bool MessageQueueExists(const std::string& name) {
  mqd_t q = mq_open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (q == static_cast<mqd_t>(-1)) return errno != ENOENT;
  mq_close(q);
  return true;
}

}  // namespace smgr::test

// ---- Fixture helpers ------------------------------------------------------------------

#include "lib_state.h"
#include "peer_fixture.h"

namespace smgr::test {

void ShutdownLibraryCompletely() {
  if (g_ClientPID.load() != getpid()) return;
  while (g_nLibInitCount.load() > 0) SessMgrLib_Shutdown();
}

}  // namespace smgr::test

// Sanitizer hooks for the test programs. A forked child that ends with exit()
// still holds copies of the parent's objects (test peer threads that do not
// exist in the child): no leak check there. The library's own SIGSEGV handler
// must run even under AddressSanitizer.
extern "C" int __lsan_is_turned_off() { return smgr::test::IsForkedTestChild() ? 1 : 0; }
extern "C" const char* __asan_default_options() { return "allow_user_segv_handler=1"; }
