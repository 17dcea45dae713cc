// The stream model of the simulated appliance: the rules the daemon applies
// when streams are created, controlled and queried, and the counters that
// advance while a stream runs. Pure model code (no queues), driven by the
// appliance clock so that tests control time. Streams and their started state
// survive a restart (stream_persistence.cpp); opens are per client and go with it.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
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
  // The creating client (0: none) holds the new stream open, as after an Open.
  // Changes answered as done are persisted (Appliance::persist) before the model returns.
  Outcome create(const SMGR_STREAM_CFG& cfg, const SMGRPROT_OBJECT_SELECTOR* sources, size_t sourceCount,
                 pid_t client = 0);
  Outcome remove(const ObjectSelector& selector);
  Outcome start(const ObjectSelector& selector);
  Outcome stop(const ObjectSelector& selector);
  Outcome pause(const ObjectSelector& selector);
  Outcome resume(const ObjectSelector& selector);
  Outcome resetStats(const ObjectSelector& selector);
  Outcome open(const ObjectSelector& selector, pid_t client = 0);
  Outcome close(int id, pid_t client = 0);
  SMGR_RESULT info(const ObjectSelector& selector, SMGR_STREAM_INFO* info);
  SMGR_RESULT stats(const ObjectSelector& selector, SMGR_STREAM_STATS* stats);

  // Every stream's information, in ID order (the enumeration order).
  std::vector<SMGR_STREAM_INFO> list();
  size_t count() const { return streams_.size(); }
  // True when a stream shows this still image (a base name such as logo.mp4).
  bool usesStillImage(const std::string& baseName) const;
  // The reported state (SMGR_STREAM_STATE_...) of a stream, -1 when it does not exist.
  int stateOf(int id);
  // Opens held on a stream by all clients together.
  int openCount(int id) const;
  // Forgets the opens of a client that is gone; how many there were.
  int dropClient(pid_t client);
  // Another family that holds streams (a session its members) says why one may
  // not be deleted, or nothing; delete then answers 25 (SMGR_ERROR_STREAM_IN_USE).
  using DeleteGuard = std::function<std::string(int id)>;
  void addDeleteGuard(DeleteGuard guard) { deleteGuards_.push_back(std::move(guard)); }
  // Starts every stopped auto-start stream, as a loaded configuration does: the
  // warning SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE when one of them has
  // a content source that is not running, else success.
  SMGR_RESULT startAutoStartStreams();

  // The persisted section: every stream but the non-persistent ones, with its
  // started state, and the next ID. load(null) starts empty; started streams
  // come back started (setup phases again, counters from zero).
  nlohmann::json save() const;
  void load(const nlohmann::json& section);

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
    std::map<pid_t, int> opens;  // client -> opens not closed yet
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
  std::string unstartedSources(const Stream& stream) const;

  Appliance& appliance_;
  std::map<int, Stream> streams_;
  int nextId_ = 1;
  std::vector<DeleteGuard> deleteGuards_;
};

}  // namespace sim
