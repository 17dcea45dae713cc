// LED rules: Status green; Error red on a failed stream or overheating; 4k
// off; Status1..4 follow the streams of video encoders 1..4 of the profile
// (green streaming, green-blinking setting up, amber paused). Blinking makes
// Status and Status1..4 blink green. Every change of a state is a transition.
#include "led_model.h"

#include "stream_model.h"
#include "temperature_model.h"

namespace sim {
namespace {

enum Led : size_t { kStatus, k4k, kError, kStatus1 };

bool IsSettingUp(int state) {
  return state == SMGR_STREAM_STATE_CONNECTING || state == SMGR_STREAM_STATE_SECURING ||
         state == SMGR_STREAM_STATE_LISTENING || state == SMGR_STREAM_STATE_RESOLVING;
}

bool IsStreaming(int state) {
  return state == SMGR_STREAM_STATE_RUNNING || state == SMGR_STREAM_STATE_PUBLISHING ||
         state == SMGR_STREAM_STATE_CONNECTED;
}

// One encoder's LED from the states of the streams it feeds: streaming wins,
// then setting up, then paused.
int EncoderLed(bool streaming, bool settingUp, bool paused) {
  if (streaming) return SMGR_LED_STATE_GREEN_ON;
  if (settingUp) return SMGR_LED_STATE_GREEN_BLINKING;
  if (paused) return SMGR_LED_STATE_AMBER_ON;
  return SMGR_LED_STATE_OFF;
}

}  // namespace

uint32_t LedModel::upTime() const { return static_cast<uint32_t>((appliance_.nowMs() - startMs_) / 1000); }

std::array<int, LedModel::kLedCount> LedModel::evaluate() {
  std::array<int, kLedCount> states{};
  states[kStatus] = SMGR_LED_STATE_GREEN_ON;
  states[k4k] = SMGR_LED_STATE_OFF;
  StreamModel& streams = appliance_.family<StreamModel>();
  const auto& encoders = appliance_.profile().videoEncoders;
  bool failed = false;
  std::array<bool, 4> streaming{}, settingUp{}, paused{};
  for (const auto& stream : streams.list()) {
    const int state = streams.stateOf(stream.nIndex);
    failed = failed || state == SMGR_STREAM_STATE_FAILED;
    for (int s = 0; s < stream.nNumOfSources && s < SMGR_MAX_STREAM_CONTENT_SOURCES; ++s) {
      if (stream.ContentSources[s].enType != SMGR_CONTENT_SRC_VIDEO) continue;
      for (size_t e = 0; e < encoders.size() && e < 4; ++e) {
        if (encoders[e].id != stream.ContentSources[s].ID) continue;
        streaming[e] = streaming[e] || IsStreaming(state);
        settingUp[e] = settingUp[e] || IsSettingUp(state);
        paused[e] = paused[e] || state == SMGR_STREAM_STATE_PAUSED;
      }
    }
  }
  const bool overheating = appliance_.family<TemperatureModel>().overheating();
  states[kError] = failed || overheating ? SMGR_LED_STATE_RED_ON : SMGR_LED_STATE_OFF;
  for (size_t e = 0; e < 4; ++e) states[kStatus1 + e] = EncoderLed(streaming[e], settingUp[e], paused[e]);
  if (blinking()) {
    states[kStatus] = SMGR_LED_STATE_GREEN_BLINKING;
    for (size_t e = 0; e < 4; ++e) states[kStatus1 + e] = SMGR_LED_STATE_GREEN_BLINKING;
  }
  return states;
}

void LedModel::update() {
  const auto states = evaluate();
  for (size_t i = 0; evaluated_ && i < kLedCount; ++i)
    if (states[i] != states_[i]) ++transitions_[i];
  states_ = states;
  evaluated_ = true;
  if (blinkStopUpTime_ != 0 && !blinking()) blinkStopUpTime_ = 0;
}

void LedModel::info(SMGR_LEDS_INFO* info) {
  update();
  *info = SMGR_LEDS_INFO{};
  info->nSize = sizeof *info;
  int32_t* states[kLedCount] = {&info->enStatusLED,  &info->en4kLED,      &info->enErrorLED,
                                &info->enStatus1LED, &info->enStatus2LED, &info->enStatus3LED,
                                &info->enStatus4LED};
  uint32_t* counts[kLedCount] = {&info->nStatusLEDTransitions,  &info->n4kLEDTransitions,
                                 &info->nErrorLEDTransitions,   &info->nStatus1LEDTransitions,
                                 &info->nStatus2LEDTransitions, &info->nStatus3LEDTransitions,
                                 &info->nStatus4LEDTransitions};
  for (size_t i = 0; i < kLedCount; ++i) {
    *states[i] = states_[i];
    *counts[i] = transitions_[i];
  }
  info->nBlinkStopUpTime = blinkStopUpTime_;
}

Outcome LedModel::startBlinking(uint32_t seconds) {
  update();
  if (seconds < 1 || seconds > kLongestBlinkSeconds) return {SMGR_ERROR_INVALID_PARAMETERS, "duration"};
  if (blinking()) return {SMGR_ERROR_LED_ALREADY_BLINKING, "already blinking"};
  blinkStopUpTime_ = upTime() + seconds;
  update();
  return {};
}

Outcome LedModel::stopBlinking() {
  update();
  if (!blinking()) return {SMGR_ERROR_LED_NOT_BLINKING, "not blinking"};
  blinkStopUpTime_ = 0;
  update();
  return {};
}

}  // namespace sim
