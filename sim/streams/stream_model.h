// The stream model of the simulated appliance: the rules the daemon applies
// when streams are created, controlled and queried, and the counters that
// advance while a stream runs. Pure model code (no queues), driven by the
// appliance clock so that tests control time.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "appliance.h"
#include "objects.h"
#include "sim_protocol.h"

namespace sim {

class StreamModel {
 public:
  static constexpr int kMaxStreamId = 1024;

  explicit StreamModel(Appliance& appliance) : appliance_(appliance) {}

  // Create: cfg is the configuration record as received, sources the wire entries.
  Outcome create(const SMGR_STREAM_CFG& cfg, const SMGRPROT_OBJECT_SELECTOR* sources, size_t sourceCount);
  Outcome remove(const ObjectSelector& selector);
  Outcome start(const ObjectSelector& selector);
  Outcome stop(const ObjectSelector& selector);
  Outcome pause(const ObjectSelector& selector);
  Outcome resume(const ObjectSelector& selector);
  Outcome resetStats(const ObjectSelector& selector);
  Outcome open(const ObjectSelector& selector);
  Outcome close(int id);
  SMGR_RESULT info(const ObjectSelector& selector, SMGR_STREAM_INFO* info);
  SMGR_RESULT stats(const ObjectSelector& selector, SMGR_STREAM_STATS* stats);

  // Every stream's information, in ID order (the enumeration order).
  std::vector<SMGR_STREAM_INFO> list();
  size_t count() const { return streams_.size(); }
  // True when a stream shows this still image (a base name such as logo.mp4).
  bool usesStillImage(const std::string& baseName) const;
  // The reported state (SMGR_STREAM_STATE_...) of a stream, -1 when it does not exist.
  int stateOf(int id);

 private:
  enum class Run { kStopped, kRunning, kPaused };
  struct Stream {
    SMGR_STREAM_INFO info{};
    BOOL autoStart = FALSE;
    Run run = Run::kStopped;
    int64_t startedAtMs = 0;
    // Time during which data flowed since the last reset: closed segments plus the open one.
    int64_t accumulatedMs = 0;
    std::optional<int64_t> segmentStartMs;
    int bitRateKbps = 0;
  };

  Stream* find(const ObjectSelector& selector);
  SMGR_RESULT validate(const SMGR_STREAM_CFG& cfg, const SMGRPROT_OBJECT_SELECTOR* sources,
                       size_t sourceCount, Stream* stream, std::string* why);
  int allocateId();
  int setupDelayMs(const Stream& stream) const;
  int reportedState(const Stream& stream, int64_t now) const;
  int64_t flowMs(const Stream& stream, int64_t now) const;
  void doStart(Stream& stream, int64_t now);
  void closeSegment(Stream& stream, int64_t now);
  static std::string label(const Stream& stream);

  Appliance& appliance_;
  std::map<int, Stream> streams_;
  int nextId_ = 1;
};

}  // namespace sim
