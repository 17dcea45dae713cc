// Folding of daemon-side counter resets into a per-series offset.
#include "counter_continuity.h"

namespace exporter {

double CounterContinuity::next(const std::string& key, uint64_t raw) {
  Series& series = series_[key];
  if (raw < series.lastRaw) series.offset += series.lastRaw;  // the daemon started again from zero
  series.lastRaw = raw;
  series.seen = true;
  return static_cast<double>(series.offset + raw);
}

void CounterContinuity::forgetUnseen() {
  for (auto it = series_.begin(); it != series_.end();) {
    if (!it->second.seen) {
      it = series_.erase(it);
    } else {
      it->second.seen = false;
      ++it;
    }
  }
}

}  // namespace exporter
