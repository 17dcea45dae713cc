// Temperature samples and statistics: first-order lag towards the heat of the
// running work, deterministic noise, and the readings the daemon rejects.
#include "temperature_model.h"

#include <cmath>
#include <ctime>
#include <set>

#include "stream_model.h"

namespace sim {
namespace {

constexpr int64_t kSamplePeriodMs = 1000;
constexpr uint64_t kMostSamplesPerCatchUp = 3600;  // a longer gap jumps ahead
constexpr double kLargeDeltaCelsius = 10.0;

}  // namespace

TemperatureSettings TemperatureSettings::FromProfile(const ApplianceProfile& profile) {
  TemperatureSettings settings;
  if (!profile.document.contains("temperature")) return settings;
  const auto& section = profile.document["temperature"];
  settings.ambientCelsius = section.value("ambient_celsius", settings.ambientCelsius);
  settings.perStreamCelsius = section.value("per_stream_celsius", settings.perStreamCelsius);
  settings.perEncoderCelsius = section.value("per_encoder_celsius", settings.perEncoderCelsius);
  settings.lagSeconds = section.value("lag_s", settings.lagSeconds);
  settings.noiseCelsius = section.value("noise_celsius", settings.noiseCelsius);
  settings.glitchEverySeconds = section.value("glitch_every_s", settings.glitchEverySeconds);
  settings.overheatCelsius = section.value("overheat_celsius", settings.overheatCelsius);
  return settings;
}

TemperatureModel::TemperatureModel(Appliance& appliance)
    : appliance_(appliance),
      settings_(TemperatureSettings::FromProfile(appliance.profile())),
      startMs_(appliance.nowMs()),
      startEpoch_(static_cast<int64_t>(time(nullptr))),
      lastSampleMs_(startMs_ - kSamplePeriodMs),
      modelled_(settings_.ambientCelsius) {
  stats_.nSize = sizeof stats_;
  stats_.nMinInCelsius = INT32_MAX;
  stats_.nMaxInCelsius = INT32_MIN;
}

int32_t TemperatureModel::epochSeconds(int64_t ms) const {
  return static_cast<int32_t>(startEpoch_ + (ms - startMs_) / 1000);
}

// Running streams heat the unit, and each video encoder they use a little more.
double TemperatureModel::target() {
  StreamModel& streams = appliance_.family<StreamModel>();
  int running = 0;
  std::set<int> encoders;
  for (const auto& stream : streams.list()) {
    if (streams.stateOf(stream.nIndex) != SMGR_STREAM_STATE_RUNNING) continue;
    ++running;
    for (int i = 0; i < stream.nNumOfSources && i < SMGR_MAX_STREAM_CONTENT_SOURCES; ++i)
      if (stream.ContentSources[i].enType == SMGR_CONTENT_SRC_VIDEO)
        encoders.insert(stream.ContentSources[i].ID);
  }
  return settings_.ambientCelsius + running * settings_.perStreamCelsius +
         static_cast<double>(encoders.size()) * settings_.perEncoderCelsius;
}

// Uniform in [-noise, +noise], from a fixed seed so that runs repeat.
double TemperatureModel::noise() {
  random_ = random_ * 1103515245u + 12345u;
  return ((random_ >> 8) % 2001 / 1000.0 - 1.0) * settings_.noiseCelsius;
}

void TemperatureModel::catchUp() {
  const int64_t now = appliance_.nowMs();
  uint64_t due = now > lastSampleMs_ ? static_cast<uint64_t>((now - lastSampleMs_) / kSamplePeriodMs) : 0;
  if (due > kMostSamplesPerCatchUp) {
    lastSampleMs_ += static_cast<int64_t>(due - kMostSamplesPerCatchUp) * kSamplePeriodMs;
    due = kMostSamplesPerCatchUp;
  }
  const double heat = target();
  const double step = 1.0 - std::exp(-1.0 / settings_.lagSeconds);
  for (uint64_t i = 0; i < due; ++i) {
    lastSampleMs_ += kSamplePeriodMs;
    ++samples_;
    modelled_ += (heat - modelled_) * step;
    const int32_t when = epochSeconds(lastSampleMs_);
    const bool glitch = settings_.glitchEverySeconds > 0 && samples_ % settings_.glitchEverySeconds == 0;
    if (glitch && (samples_ / settings_.glitchEverySeconds) % 2 == 1) {
      ++stats_.nInvalidMeasurements;  // the sensor answered nothing usable
      stats_.iInvalidMeasurementTime = when;
      continue;
    }
    const double reading = glitch ? modelled_ + 3 * kLargeDeltaCelsius : modelled_ + noise();
    const int celsius = static_cast<int>(std::lround(reading));
    if (stats_.iCurrentMeasurementTime != 0 &&
        std::abs(celsius - stats_.nCurrentInCelsius) > kLargeDeltaCelsius) {
      ++stats_.nDiscardedLargeDeltas;
      stats_.iDiscardedLargeDeltaMeasurementTime = when;
      continue;
    }
    stats_.nCurrentInCelsius = celsius;
    stats_.iCurrentMeasurementTime = when;
    if (celsius > stats_.nMaxInCelsius) stats_.nMaxInCelsius = celsius, stats_.iMaxMeasurementTime = when;
    if (celsius < stats_.nMinInCelsius) stats_.nMinInCelsius = celsius, stats_.iMinMeasurementTime = when;
  }
}

void TemperatureModel::info(SMGR_TEMPERATURE_INFO* info) {
  catchUp();
  *info = stats_;
}

int TemperatureModel::currentCelsius() {
  catchUp();
  return stats_.nCurrentInCelsius;
}

}  // namespace sim
