// The talkback channel of the simulated appliance: one return-audio channel
// that listens on a UDP port once started, runs once the profile's simulated
// sender begins, and discards an intruder's packet every few seconds. Pure
// model code driven by the appliance clock; the wire side is talkback_handlers.cpp.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "appliance.h"
#include "sim_protocol.h"

namespace sim {

class TalkBackModel {
 public:
  // SetFieldsFlag bits in record order (the simulator's choice; the library names none).
  static constexpr uint64_t kSetIndex = 0x1, kSetName = 0x2, kSetAutoStart = 0x4, kSetPort = 0x8,
                            kSetVolume = 0x10;

  explicit TalkBackModel(Appliance& appliance);

  SMGR_RESULT configure(const SMGR_TALKBACK_CFG& cfg);
  SMGR_RESULT start();
  SMGR_RESULT stop();
  SMGR_RESULT enable();
  SMGR_RESULT disable();
  SMGR_RESULT resetStats();
  void info(SMGR_TALKBACK_INFO* info) const;
  void stats(SMGR_TALKBACK_STATS* stats) const;
  int state() const;

  // Configuration and administrative state survive a restart; the channel then
  // starts by itself when enabled and set to auto-start.
  nlohmann::json save() const;
  void load(const nlohmann::json& saved);

 private:
  // The simulated remote sender and the intruder, from the profile's "talkback" section.
  struct Traffic {
    bool senderPresent = true;
    int64_t senderDelayMs = 2000;  // after the channel starts listening
    int packetsPerSecond = 50;
    int packetBytes = 172;
    uint8_t senderAddress[4] = {198, 51, 100, 20};
    int64_t intruderPeriodMs = 5000;
    uint8_t intruderAddress[4] = {203, 0, 113, 66};
  };
  // Counts of one kind of packet between two instants.
  struct Count {
    int64_t packets = 0;
    int64_t lastMs = 0;  // time of the last one (0: none)
  };

  void readProfile(const nlohmann::json& document);
  Count accepted(int64_t untilMs) const;
  Count discarded(int64_t untilMs) const;
  int64_t unixSeconds(int64_t ms) const;
  void fold();  // moves the running counts into the totals (stop, reset, port change)

  Appliance& appliance_;
  Traffic traffic_;
  SMGR_TALKBACK_CFG cfg_{};
  bool adminEnabled_ = true;
  std::optional<int64_t> startedMs_;  // listening since
  int64_t countedFromMs_ = 0;         // counts before this are in the totals
  Count acceptedTotal_, discardedTotal_;
};

}  // namespace sim
