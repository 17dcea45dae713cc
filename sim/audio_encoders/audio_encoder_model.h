// The audio encoders of the simulated appliance: the daemon's rules for
// configure, start, stop and mute, and the counters, time stamps, level meter
// and capture that advance while an encoder works. Pure model code driven by
// the appliance clock; the wire side is audio_encoder_handlers.cpp.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "appliance.h"
#include "sim_protocol.h"

namespace sim {

class AudioEncoderModel {
 public:
  // SetFieldsFlag bits the library leaves unnamed; the simulator's choice.
  static constexpr uint64_t kSetPtsOffset = 0x80;
  static constexpr uint64_t kSetCaptureToDisk = 0x100;
  static constexpr uint64_t kSetCaptureSize = 0x200;

  explicit AudioEncoderModel(Appliance& appliance);

  // ID of the encoder called name, or 26.
  SMGR_RESULT open(const std::string& name, int* id) const;
  SMGR_RESULT configure(int id, const SMGR_AUDIO_ENCODER_CFG& cfg);
  SMGR_RESULT start(int id);
  SMGR_RESULT stop(int id);
  SMGR_RESULT mute(int id, bool mute);
  SMGR_RESULT resetStats(int id);
  SMGR_RESULT info(int id, SMGR_AUDIO_ENCODER_INFO* info) const;
  SMGR_RESULT stats(int id, SMGR_AUDIO_ENCODER_STATS* stats);
  // Every encoder's information, in profile order (the enumeration order).
  std::vector<SMGR_AUDIO_ENCODER_INFO> list() const;

  // What streams see of an encoder (the audio content-source lookup).
  std::optional<ContentSourceRef> lookup(int id, const std::string* name) const;

  // Configurations as they survive a restart, and back (run state is not kept).
  nlohmann::json save() const;
  void load(const nlohmann::json& saved);

 private:
  struct Encoder {
    SMGR_AUDIO_ENCODER_INFO info{};
    bool failing = false;
    int state = SMGR_AUDENC_STATE_STOPPED;
    int64_t stateChangeMs = 0;
    int64_t activeMs = 0;                   // encoding time since the last reset, closed segments
    std::optional<int64_t> segmentStartMs;  // open segment while the encoder runs
    int64_t countedMs = 0;                  // part of activeMs already in the base counts
    int64_t baseFrames = 0, baseBytes = 0;  // produced under earlier settings since the last reset
    int64_t captureBaseBytes = 0;           // bytes encoded when the capture began
  };

  void markFailing(const nlohmann::json& document);
  Encoder* find(int id);
  const Encoder* find(int id) const;
  SMGR_RESULT validate(const Encoder& encoder, const SMGR_AUDIO_ENCODER_INFO& next, uint64_t flags) const;
  bool pairTaken(const Encoder& encoder, int input) const;
  void setState(Encoder& encoder, int state);
  // On an ST 2110 unit, SDI input n is the running audio essence of input
  // channel n-1: without one the encoder has nothing to encode.
  bool starved(const Encoder& encoder) const;
  // A running encoder fails while its essence is missing and works again when it returns.
  void followInput(Encoder& encoder);
  int64_t activeMsNow(const Encoder& encoder) const;
  void defaults(const ProfileObject& object, size_t index, Encoder* encoder) const;

  Appliance& appliance_;
  std::vector<Encoder> encoders_;
};

}  // namespace sim
