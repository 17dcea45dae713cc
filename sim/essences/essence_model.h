// The simulated appliance's ST 2110 essences and PTP clock: the rules the
// daemon applies to essence configurations, the reception counters of running
// essences, and the clock's lock. Pure model on the appliance clock; the
// handlers in essence_handlers.cpp put it on the wire.
#pragma once

#include <sys/types.h>

#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "appliance.h"
#include "objects.h"
#include "sim_protocol.h"

namespace sim {

class EssenceModel {
 public:
  explicit EssenceModel(Appliance& appliance);

  // Essences exist in the ST 2110 personality only; elsewhere every request answers 303.
  bool supported() const;

  Outcome create(const SMGR_ESSENCE_CFG& cfg);
  Outcome configure(const ObjectSelector& selector, const SMGR_ESSENCE_CFG& cfg);
  Outcome remove(const ObjectSelector& selector);
  Outcome start(const ObjectSelector& selector);
  Outcome stop(const ObjectSelector& selector);
  Outcome resetStats(const ObjectSelector& selector);
  Outcome open(const ObjectSelector& selector, pid_t client);
  // 283 for an unknown ID; extra closes are never refused.
  Outcome close(int id, pid_t client);
  void clientGone(pid_t client);
  int openCount(int id) const;

  SMGR_RESULT info(const ObjectSelector& selector, SMGR_ESSENCE_INFO* info);
  SMGR_RESULT stats(const ObjectSelector& selector, SMGR_ESSENCE_STATS* stats);
  std::vector<SMGR_ESSENCE_INFO> list();

  // The clock: 0 free-run, 1 PTP; other modes answer 2.
  SMGR_RESULT setClockMode(int mode);
  SMGR_2110_SYNC_INFO syncInfo();
  bool clockLocked();

  // Seam for the families that read essences (audio encoders, fixed metadata
  // sources): the running essence of a media type on an input channel.
  std::optional<int> runningEssence(int mediaType, unsigned inputChannel) const;

  nlohmann::json save() const;
  void load(const nlohmann::json& saved);

 private:
  struct Essence {
    SMGR_ESSENCE_CFG cfg{};  // as applied: nIndex is the ID, szName the name
    bool running = false;
    int64_t startedMs = 0;       // start of the running period (detection)
    int64_t countedFromMs = 0;   // counters run from here while running
    uint64_t packetsBefore = 0;  // received before countedFromMs since the last reset
    std::map<pid_t, int> opens;
  };

  Essence* find(const ObjectSelector& selector);
  SMGR_RESULT check(const SMGR_ESSENCE_CFG& cfg, int selfId, std::string* why) const;
  bool inputBusy(const SMGR_ESSENCE_CFG& cfg, int selfId) const;
  void startNow(Essence& essence);
  uint64_t packets(const Essence& essence, int64_t now) const;
  double packetsPerSecond(const SMGR_ESSENCE_CFG& cfg) const;
  SMGR_ESSENCE_INFO infoOf(const Essence& essence) const;

  Appliance& appliance_;
  std::map<int, Essence> essences_;
  int nextId_ = 1;
  int clockMode_ = 0;
  int64_t clockModeSinceMs_ = 0;
};

}  // namespace sim
