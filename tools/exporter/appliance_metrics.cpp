// Appliance-wide metrics: the temperature sensor and the front-panel LEDs (one
// request each per poll).
#include <string>
#include <vector>

#include "sessmgr_api.h"
#include "snapshot.h"

namespace exporter {
namespace {

class TemperatureCollector : public FamilyCollector {
 public:
  bool collect(SnapshotBuilder& out) override {
    SMGR_TEMPERATURE_INFO info{};
    info.nSize = sizeof info;
    if (!SessMgr_GetTemperatureInfo(&info)) return false;
    out.gauge("smgr_temperature_celsius", "Current temperature of the unit", {}, info.nCurrentInCelsius);
    out.gauge("smgr_temperature_max_celsius", "Highest temperature measured", {}, info.nMaxInCelsius);
    out.gauge("smgr_temperature_min_celsius", "Lowest temperature measured", {}, info.nMinInCelsius);
    out.counter("smgr_temperature_invalid_measurements_total", "Readings the sensor got wrong", {},
                info.nInvalidMeasurements);
    return true;
  }
};

class LedCollector : public FamilyCollector {
 public:
  bool collect(SnapshotBuilder& out) override {
    SMGR_LEDS_INFO info{};
    info.nSize = sizeof info;
    if (!SessMgr_GetLEDsInfo(&info)) return false;
    const std::pair<const char*, int> leds[] = {
        {"status", info.enStatusLED},   {"4k", info.en4kLED},           {"error", info.enErrorLED},
        {"status1", info.enStatus1LED}, {"status2", info.enStatus2LED}, {"status3", info.enStatus3LED},
        {"status4", info.enStatus4LED}};
    for (const auto& [led, state] : leds) {
      out.states("smgr_led_state", "Front-panel LED state: 1 for the current one", {{"led", led}}, States(),
                 state);
    }
    return true;
  }

 private:
  static const std::vector<std::pair<int, std::string>>& States() {
    static const std::vector<std::pair<int, std::string>> states = [] {
      std::vector<std::pair<int, std::string>> known;
      for (int state = SMGR_LED_STATE_OFF; state <= SMGR_LED_STATE_RED_ON; ++state) {
        char text[64] = "";
        SessMgr_GetLEDStateString(state, text, sizeof text);
        known.emplace_back(state, LabelText(text, sizeof text));
      }
      return known;
    }();
    return states;
  }
};

const CollectorRegistration temperature("temperature",
                                        []() -> FamilyCollector* { return new TemperatureCollector; });
const CollectorRegistration leds("leds", []() -> FamilyCollector* { return new LedCollector; });

}  // namespace
}  // namespace exporter
