// The exporter's poll: on its own thread, at the interval, it (re)connects to
// the daemon, asks every family collector for its objects and publishes the
// result as the snapshot scrapes read. A scrape never reaches the daemon.
#pragma once

#include <prometheus/collectable.h>
#include <prometheus/counter.h>
#include <prometheus/family.h>
#include <prometheus/gauge.h>
#include <prometheus/registry.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include "counter_continuity.h"
#include "snapshot.h"

namespace exporter {

// The last published snapshot, served to every scrape as it is.
class SnapshotCollectable : public prometheus::Collectable {
 public:
  std::vector<prometheus::MetricFamily> Collect() const override;
  void publish(std::vector<prometheus::MetricFamily> families);

 private:
  mutable std::mutex mutex_;
  std::shared_ptr<const std::vector<prometheus::MetricFamily>> families_ =
      std::make_shared<std::vector<prometheus::MetricFamily>>();
};

class Poller {
 public:
  Poller();
  ~Poller();  // shuts the library down when connected
  Poller(const Poller&) = delete;
  Poller& operator=(const Poller&) = delete;

  // One poll: connects when needed, asks every family, publishes the snapshot.
  void pollOnce();
  // Polls at once and then every interval until stop().
  void run(std::chrono::milliseconds interval);
  void stop();

  // The exporter's own health (smgr_up, poll duration, failures) and the daemon's objects.
  std::shared_ptr<prometheus::Registry> health() const { return health_; }
  std::shared_ptr<SnapshotCollectable> snapshot() const { return snapshot_; }
  bool up() const { return up_; }

 private:
  bool connect();
  void disconnect();
  void countFailure(unsigned code);

  std::vector<std::unique_ptr<FamilyCollector>> collectors_;
  CounterContinuity counters_;
  bool connected_ = false;
  bool up_ = false;

  std::shared_ptr<prometheus::Registry> health_ = std::make_shared<prometheus::Registry>();
  std::shared_ptr<SnapshotCollectable> snapshot_ = std::make_shared<SnapshotCollectable>();
  prometheus::Gauge& upGauge_;
  prometheus::Gauge& pollDuration_;
  prometheus::Counter& polls_;
  prometheus::Counter& connects_;
  prometheus::Family<prometheus::Counter>& failures_;

  std::mutex stopMutex_;
  std::condition_variable stopSignal_;
  bool stopping_ = false;
};

}  // namespace exporter
