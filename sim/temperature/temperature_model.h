// The temperature sensor of the simulated appliance: one sample a second of
// the appliance clock, following ambient plus the heat of running streams and
// busy encoders with a lag, with noise, and (when the profile asks for them)
// invalid readings and implausible jumps that the daemon counts and drops.
#pragma once

#include <cstdint>

#include "appliance.h"
#include "sim_protocol.h"

namespace sim {

struct TemperatureSettings {
  double ambientCelsius = 35.0;
  double perStreamCelsius = 1.5;
  double perEncoderCelsius = 2.0;
  double lagSeconds = 120.0;
  double noiseCelsius = 0.5;
  int glitchEverySeconds = 0;  // 0: the sensor never misreads
  double overheatCelsius = 75.0;

  // Defaults overlaid with the profile's "temperature" section.
  static TemperatureSettings FromProfile(const ApplianceProfile& profile);
};

class TemperatureModel {
 public:
  explicit TemperatureModel(Appliance& appliance);

  // Takes the samples due up to now and fills the statistics.
  void info(SMGR_TEMPERATURE_INFO* info);
  // The last accepted reading (after taking the samples due).
  int currentCelsius();
  bool overheating() { return currentCelsius() >= settings_.overheatCelsius; }

 private:
  void catchUp();
  double target();
  double noise();
  int32_t epochSeconds(int64_t ms) const;

  Appliance& appliance_;
  TemperatureSettings settings_;
  int64_t startMs_;
  int64_t startEpoch_;
  int64_t lastSampleMs_;
  uint64_t samples_ = 0;
  uint32_t random_ = 12345;
  double modelled_;  // the lagging true temperature
  SMGR_TEMPERATURE_INFO stats_{};
};

}  // namespace sim
