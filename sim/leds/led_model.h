// The front-panel LEDs of the simulated appliance: states derived from the
// streams and the temperature whenever they are looked at, transition
// counters, and blinking to locate the unit (timed by the appliance up-time).
#pragma once

#include <array>
#include <cstdint>

#include "appliance.h"
#include "objects.h"
#include "sim_protocol.h"

namespace sim {

class LedModel {
 public:
  static constexpr uint32_t kLongestBlinkSeconds = 86400;
  static constexpr size_t kLedCount = 7;  // Status, 4k, Error, Status1..4

  explicit LedModel(Appliance& appliance) : appliance_(appliance), startMs_(appliance.nowMs()) {}

  // Re-evaluates the LEDs and fills the record.
  void info(SMGR_LEDS_INFO* info);
  Outcome startBlinking(uint32_t seconds);
  Outcome stopBlinking();
  // Seconds since the appliance started.
  uint32_t upTime() const;

 private:
  std::array<int, kLedCount> evaluate();
  void update();
  bool blinking() const { return blinkStopUpTime_ != 0 && upTime() < blinkStopUpTime_; }

  Appliance& appliance_;
  int64_t startMs_;
  uint32_t blinkStopUpTime_ = 0;
  bool evaluated_ = false;
  std::array<int, kLedCount> states_{};
  std::array<uint32_t, kLedCount> transitions_{};
};

}  // namespace sim
