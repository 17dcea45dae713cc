// What one poll builds: the metric families of every object the daemon
// reported, in Prometheus' data model (prometheus-cpp serialises them), and the
// helpers the family files use to add series with the id and name labels.
#pragma once

#include <prometheus/metric_family.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "counter_continuity.h"

namespace exporter {

using LabelList = std::vector<std::pair<std::string, std::string>>;

// A fixed-size name field of a daemon record as a label value: bounded by the
// field (no terminator needed) and valid UTF-8 (an invalid byte becomes U+FFFD),
// because Prometheus rejects the whole scrape on one invalid label value.
std::string LabelText(const char* field, size_t fieldSize);

// The id and name labels of one object.
LabelList ObjectLabels(long id, const char* nameField, size_t nameFieldSize);

class SnapshotBuilder {
 public:
  explicit SnapshotBuilder(CounterContinuity& counters) : counters_(counters) {}
  void gauge(const std::string& name, const std::string& help, const LabelList& labels, double value);
  // A counter as the daemon reports it; resets are folded away (CounterContinuity).
  void counter(const std::string& name, const std::string& help, const LabelList& labels, uint64_t raw);
  // One series per known state, 1 for the current one (the enum pattern of Prometheus).
  void states(const std::string& name, const std::string& help, const LabelList& labels,
              const std::vector<std::pair<int, std::string>>& known, int current);
  std::vector<prometheus::MetricFamily> take() { return std::move(families_); }

 private:
  prometheus::ClientMetric& add(const std::string& name, const std::string& help, prometheus::MetricType type,
                                const LabelList& labels);

  CounterContinuity& counters_;
  std::vector<prometheus::MetricFamily> families_;
  std::unordered_map<std::string, size_t> index_;
};

// One family of daemon objects. collect() makes the family's requests (one
// enumeration, one statistics request per object) and adds its series; on a
// failure it returns false with the library's last error telling why.
// disconnected() drops what belongs to the old connection (open handles).
class FamilyCollector {
 public:
  virtual ~FamilyCollector() = default;
  virtual bool collect(SnapshotBuilder& out) = 0;
  virtual void disconnected() {}
};

using CollectorFactory = FamilyCollector* (*)();

// Static registration of one family file; the poller creates one collector of each, in name order.
struct CollectorRegistration {
  CollectorRegistration(const char* name, CollectorFactory factory);
};
std::vector<std::pair<std::string, CollectorFactory>> RegisteredCollectors();

}  // namespace exporter
