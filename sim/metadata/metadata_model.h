// The metadata-source model of the simulated appliance: the fixed KLV sources
// of the video inputs, the serial and network sources clients create, the
// rules the daemon applies to their configurations, and the counters that
// advance while a source runs. Pure model code, on the appliance clock.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "appliance.h"
#include "objects.h"
#include "sim_protocol.h"

namespace sim {

class MetaDataModel {
 public:
  static constexpr int kDefaultLimit = 8;
  static constexpr int kDefaultBitRateKbps = 64;

  explicit MetaDataModel(Appliance& appliance);

  Outcome create(const SMGR_METADATA_CFG& cfg);
  Outcome configure(const ObjectSelector& selector, const SMGR_METADATA_CFG& cfg);
  Outcome remove(const ObjectSelector& selector);
  Outcome start(const ObjectSelector& selector);
  Outcome stop(const ObjectSelector& selector);
  Outcome resetStats(const ObjectSelector& selector);
  Outcome open(const ObjectSelector& selector, pid_t pid);
  // Close of a known ID is never refused; an unknown one answers 48.
  Outcome close(int id, pid_t pid);
  SMGR_RESULT info(const ObjectSelector& selector, SMGR_METADATA_INFO* info);
  SMGR_RESULT stats(const ObjectSelector& selector, SMGR_METADATA_STATS* stats);
  // Every source's information in ID order (the enumeration order).
  std::vector<SMGR_METADATA_INFO> list();
  void clientGone(pid_t pid);
  int openCount(int id) const;

  // What streams see of a source (content kind 4).
  std::optional<ContentSourceRef> findContent(int id, const std::string* name);

  // Persistence: the sources and the next ID; load with null sets up the
  // profile's fixed sources. Auto-start sources start when loaded.
  nlohmann::json save() const;
  void load(const nlohmann::json& saved);

 private:
  struct Source {
    SMGR_METADATA_CFG cfg{};
    bool fixed = false;  // a video input's KLV source from the profile
    bool started = false;
    bool waiting = false;  // started, but no KLV arrives (ST 2110: no data essence runs on its input)
    int bitRateKbps = kDefaultBitRateKbps;
    int64_t segmentStartMs = 0;  // when the current run (or the run since the reset) began
    int64_t accumulatedMs = 0;   // run time before that, since the last reset
    std::map<pid_t, int> opens;
  };

  Source* find(const ObjectSelector& selector);
  SMGR_RESULT validate(const SMGR_METADATA_CFG& cfg, int selfId, std::string* why) const;
  SMGR_RESULT judgeFlags(const Source& source, const SMGR_METADATA_CFG& cfg, std::string* why) const;
  bool usedByStream(const Source& source);
  int64_t runMs(const Source& source) const;
  // On an ST 2110 unit a video input's source reads the running data essence
  // of input channel n-1; counters stand still while there is none.
  bool noKlvFlowing(const Source& source) const;
  void followInput(Source& source);
  void setupFixedSources();
  SMGR_METADATA_INFO infoOf(const Source& source) const;

  Appliance& appliance_;
  std::map<int, Source> sources_;
  int nextId_ = 1;
  int limit_ = kDefaultLimit;
  std::vector<std::string> serialPorts_;
};

}  // namespace sim
