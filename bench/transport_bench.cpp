// Transport figures: a library round trip (SessMgr_GetDebugInfo) against a
// minimal responder in another process, next to a raw select + non-blocking
// mq_receive ping-pong of the same message sizes; the same round trip from 1
// to 8 threads of one process; heap allocations per request.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <mqueue.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/select.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>

#include "sessmgr_api.h"
#include "smgr_protocol.h"
#include "test_peer.h"

// ---- Heap allocation counter (every malloc of the process goes through it) ----

extern "C" void* __libc_malloc(size_t);
extern "C" void* __libc_calloc(size_t, size_t);
extern "C" void* __libc_realloc(void*, size_t);

namespace {
std::atomic<uint64_t> g_nHeapAllocations{0};
}

extern "C" void* malloc(size_t nSize) {
  g_nHeapAllocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_malloc(nSize);
}
extern "C" void* calloc(size_t nCount, size_t nSize) {
  g_nHeapAllocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_calloc(nCount, nSize);
}
extern "C" void* realloc(void* pv, size_t nSize) {
  g_nHeapAllocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_realloc(pv, nSize);
}

namespace {

// A raw client registers under a PID no process has, so that its queue and the
// library's never mix in the responder.
constexpr DWORD kRawClientPid = 0x7FFFFF00;

// The smallest daemon: answers connect and every request with the debug-info
// response (36 bytes), nothing else. Runs in a forked child.
[[noreturn]] void RunMinimalResponder(mqd_t queue, long nMsgSize, pid_t parent) {
  prctl(PR_SET_NAME, "sessmgrd", 0, 0, 0);
  prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0);
  if (getppid() != parent) _exit(0);  // the parent ended before the death signal was armed
  std::map<DWORD, mqd_t> clients;
  std::unique_ptr<char[]> buffer(new char[nMsgSize]);
  for (;;) {
    ssize_t n = mq_receive(queue, buffer.get(), nMsgSize, nullptr);
    if (n < static_cast<ssize_t>(sizeof(SMGRPROT_HEADER))) continue;
    SMGRPROT_HEADER request;
    std::memcpy(&request, buffer.get(), sizeof(request));
    if (request.wMsgType == SMGRPROT_USER_CONNECT_REQ) {
      char szName[33] = {};
      std::memcpy(szName, buffer.get() + 16, 32);
      clients[request.dwSrcPID] = mq_open(szName, O_WRONLY | O_NONBLOCK);
    }
    if (request.wMsgType == SMGRPROT_USER_DISCONNECT_IND) continue;
    auto it = clients.find(request.dwSrcPID);
    if (it == clients.end()) continue;
    SMGRPROT_MSG_DEBUG_GETINFO_RSP response;
    std::memset(&response, 0, sizeof(response));
    response.Header.wMsgType = static_cast<WORD>(request.wMsgType + 1);
    response.Header.wMsgSequence = request.wMsgSequence;
    response.Header.wMsgSize = request.wMsgType == SMGRPROT_USER_CONNECT_REQ ? 24 : sizeof(response);
    response.Header.dwSrcPID = static_cast<DWORD>(getpid());
    response.Data.DebugInfo.nSize = sizeof(SMGR_DEBUG_INFO);
    mq_send(it->second, reinterpret_cast<const char*>(&response), response.Header.wMsgSize, 0);
  }
}

// The environment of one run: the test peer's private queue and settings,
// a responder process and an initialised library.
class BenchEnvironment {
 public:
  BenchEnvironment() : peer_(Options()) {
    pid_t parent = getpid();
    responder_ = fork();
    if (responder_ == 0) {
      mqd_t queue = mq_open(peer_.daemonQueueName().c_str(), O_RDONLY);
      RunMinimalResponder(queue, 8192, parent);
    }
    if (!SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr)) {
      std::fprintf(stderr, "SessMgrLib_Init failed: %u\n", SessMgr_GetLastError());
      std::abort();
    }
  }
  ~BenchEnvironment() {
    SessMgrLib_Shutdown();
    kill(responder_, SIGKILL);
    waitpid(responder_, nullptr, 0);
  }
  const std::string& daemonQueue() const { return peer_.daemonQueueName(); }

 private:
  static smgr::test::PeerOptions Options() {
    smgr::test::PeerOptions options;
    options.nQueueDepth = 8;
    return options;
  }
  smgr::test::TestPeer peer_;
  pid_t responder_ = 0;
};

BenchEnvironment* g_pEnvironment = nullptr;

// The raw ping-pong: what the library does, by hand, with nothing else.
class RawClient {
 public:
  explicit RawClient(const std::string& daemonQueue) {
    name_ = "/smgrbench-raw-" + std::to_string(getpid());
    struct mq_attr attr {};
    attr.mq_maxmsg = 4;
    attr.mq_msgsize = 8192;
    in_ = mq_open(name_.c_str(), O_RDONLY | O_CREAT | O_NONBLOCK, 0600, &attr);
    out_ = mq_open(daemonQueue.c_str(), O_WRONLY | O_NONBLOCK);
    SMGRPROT_MSG_CONNECT_REQ connect;
    std::memset(&connect, 0, sizeof(connect));
    connect.Header.wMsgType = SMGRPROT_USER_CONNECT_REQ;
    connect.Header.wMsgSize = sizeof(connect);
    connect.Header.dwSrcPID = kRawClientPid;
    std::snprintf(connect.Data.RxMsgQName, sizeof(connect.Data.RxMsgQName), "%s", name_.c_str());
    mq_send(out_, reinterpret_cast<const char*>(&connect), sizeof(connect), 0);
    receive(SMGRPROT_USER_CONNECT_RSP, 0);
  }
  ~RawClient() {
    mq_close(out_);
    mq_close(in_);
    mq_unlink(name_.c_str());
  }
  bool roundTrip() {
    SMGRPROT_MSG_DEBUG_GETINFO_REQ request;
    std::memset(&request, 0, sizeof(request));
    request.Header.wMsgType = SMGRPROT_DEBUG_GETINFO_REQ;
    request.Header.wMsgSequence = ++sequence_;
    request.Header.wMsgSize = sizeof(request);
    request.Header.dwSrcPID = kRawClientPid;
    if (mq_send(out_, reinterpret_cast<const char*>(&request), sizeof(request), 0) != 0) return false;
    return receive(SMGRPROT_DEBUG_GETINFO_RSP, sequence_);
  }

 private:
  bool receive(WORD wType, WORD wSequence) {
    for (;;) {
      fd_set set;
      FD_ZERO(&set);
      FD_SET(in_, &set);
      struct timeval timeout = {1, 0};
      if (select(in_ + 1, &set, nullptr, nullptr, &timeout) <= 0) return false;
      ssize_t n = mq_receive(in_, buffer_, sizeof(buffer_), nullptr);
      if (n < static_cast<ssize_t>(sizeof(SMGRPROT_HEADER))) continue;
      SMGRPROT_HEADER header;
      std::memcpy(&header, buffer_, sizeof(header));
      if (header.wMsgType == wType &&
          (wType == SMGRPROT_USER_CONNECT_RSP || header.wMsgSequence == wSequence))
        return true;
    }
  }
  std::string name_;
  mqd_t in_;
  mqd_t out_;
  WORD sequence_ = 0;
  char buffer_[8192];
};

void BM_RawPingPong(benchmark::State& state) {
  RawClient client(g_pEnvironment->daemonQueue());
  for (auto _ : state) {
    if (!client.roundTrip()) state.SkipWithError("raw round trip failed");
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RawPingPong)->UseRealTime();

void BM_LibraryRoundTrip(benchmark::State& state) {
  SMGR_DEBUG_INFO info;
  uint64_t nAllocationsBefore = g_nHeapAllocations.load();
  for (auto _ : state) {
    if (!SessMgr_GetDebugInfo(&info)) state.SkipWithError("SessMgr_GetDebugInfo failed");
  }
  uint64_t nAllocations = g_nHeapAllocations.load() - nAllocationsBefore;
  state.SetItemsProcessed(state.iterations());
  if (state.threads() == 1)
    state.counters["allocs_per_request"] =
        static_cast<double>(nAllocations) / static_cast<double>(state.iterations());
}
BENCHMARK(BM_LibraryRoundTrip)->UseRealTime()->Threads(1)->Threads(2)->Threads(4)->Threads(8);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  BenchEnvironment environment;
  g_pEnvironment = &environment;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  g_pEnvironment = nullptr;
  return 0;
}
