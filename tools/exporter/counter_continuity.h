// Keeps exported counters monotonic: the daemon zeroes its statistics on a
// reset request or a restart, but a Prometheus counter must never go down, so
// a drop is folded into an offset that later readings are added to.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

namespace exporter {

class CounterContinuity {
 public:
  // The value to export for the series `key` when the daemon reports `raw`.
  double next(const std::string& key, uint64_t raw);
  // Called after a poll that reached the daemon: forgets series it did not report
  // (deleted objects), so a reused ID starts again from its own value.
  void forgetUnseen();
  size_t size() const { return series_.size(); }

 private:
  struct Series {
    uint64_t lastRaw = 0;
    uint64_t offset = 0;
    bool seen = false;
  };
  std::unordered_map<std::string, Series> series_;
};

}  // namespace exporter
