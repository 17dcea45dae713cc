// Connection handling and the poll loop of smgr-exporter. The library does not
// reconnect by itself: when the daemon goes away the poller shuts it down and
// initialises it again on the next poll, until the daemon answers again.
#include "poller.h"

#include <string>

#include "sessmgr_api.h"

namespace exporter {

namespace {

// Failures that mean the connection to the daemon is gone (rather than a refusal).
bool IsConnectionLoss(unsigned code) {
  switch (code) {
    case SMGR_ERROR_IPC_RESPONSE_TIMEOUT_ERROR:
    case SMGR_ERROR_DAEMON_GONE:
    case SMGR_ERROR_LIB_LOCAL_IPC_INIT_ERROR:
    case SMGR_ERROR_LIB_TO_DAEMON_IPC_ERROR:
    case SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR:
    case SMGR_ERROR_LIB_NOT_INITIALIZED:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::vector<prometheus::MetricFamily> SnapshotCollectable::Collect() const {
  std::shared_ptr<const std::vector<prometheus::MetricFamily>> families;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    families = families_;
  }
  return *families;
}

void SnapshotCollectable::publish(std::vector<prometheus::MetricFamily> families) {
  auto published = std::make_shared<const std::vector<prometheus::MetricFamily>>(std::move(families));
  std::lock_guard<std::mutex> lock(mutex_);
  families_ = std::move(published);
}

Poller::Poller()
    : upGauge_(prometheus::BuildGauge()
                   .Name("smgr_up")
                   .Help("1 when the last poll reached the session manager daemon, else 0")
                   .Register(*health_)
                   .Add({})),
      pollDuration_(prometheus::BuildGauge()
                        .Name("smgr_poll_duration_seconds")
                        .Help("Duration of the last poll of the daemon")
                        .Register(*health_)
                        .Add({})),
      polls_(prometheus::BuildCounter()
                 .Name("smgr_polls_total")
                 .Help("Polls of the daemon made")
                 .Register(*health_)
                 .Add({})),
      connects_(prometheus::BuildCounter()
                    .Name("smgr_library_initialisations_total")
                    .Help("Successful initialisations of the client library (first connect and reconnects)")
                    .Register(*health_)
                    .Add({})),
      failures_(prometheus::BuildCounter()
                    .Name("smgr_poll_failures_total")
                    .Help("Failed polls by the library's result code")
                    .Register(*health_)) {
  for (const auto& [name, factory] : RegisteredCollectors()) collectors_.emplace_back(factory());
}

Poller::~Poller() { disconnect(); }

bool Poller::connect() {
  if (connected_) return true;
  DWORD version = 0;
  if (!SessMgrLib_Init(SMGR_API_VERSION_1_0, &version)) return false;
  connected_ = true;
  connects_.Increment();
  return true;
}

void Poller::disconnect() {
  if (!connected_) return;
  for (auto& collector : collectors_) collector->disconnected();
  SessMgrLib_Shutdown();
  connected_ = false;
}

void Poller::countFailure(unsigned code) { failures_.Add({{"code", std::to_string(code)}}).Increment(); }

void Poller::pollOnce() {
  const auto started = std::chrono::steady_clock::now();
  bool reached = connect();
  bool complete = reached;
  if (!reached) countFailure(SessMgr_GetLastError());
  std::vector<prometheus::MetricFamily> families;
  if (reached) {
    SnapshotBuilder builder(counters_);
    for (auto& collector : collectors_) {
      if (collector->collect(builder)) continue;
      const unsigned code = SessMgr_GetLastError();
      complete = false;
      if (IsConnectionLoss(code)) {
        reached = false;
        disconnect();
      }
      countFailure(code);
      if (!reached) break;
    }
    if (complete) counters_.forgetUnseen();
    if (reached) families = builder.take();
  }
  snapshot_->publish(std::move(families));
  up_ = reached;
  upGauge_.Set(reached ? 1 : 0);
  polls_.Increment();
  pollDuration_.Set(std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count());
}

void Poller::run(std::chrono::milliseconds interval) {
  auto next = std::chrono::steady_clock::now();
  std::unique_lock<std::mutex> lock(stopMutex_);
  while (!stopping_) {
    lock.unlock();
    pollOnce();
    lock.lock();
    next += interval;
    const auto now = std::chrono::steady_clock::now();
    if (next < now) next = now;  // a poll longer than the interval: no burst of catch-up polls
    stopSignal_.wait_until(lock, next, [this] { return stopping_; });
  }
}

void Poller::stop() {
  std::lock_guard<std::mutex> lock(stopMutex_);
  stopping_ = true;
  stopSignal_.notify_all();
}

}  // namespace exporter
