// The video encoder model of the simulated appliance: encoders from the
// profile, the checks a configure goes through, the run states, counters
// that move while an encoder works, parameter sets, and what streams see of
// an encoder. Pure model code driven by the appliance clock.
#pragma once

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

class VideoEncoderModel {
 public:
  static constexpr int64_t kResetMs = 500;    // time spent RESETTING
  static constexpr int kForceIdrCommand = 1;  // the one control command modelled

  explicit VideoEncoderModel(Appliance& appliance);

  // The encoder's ID, or 26 (no such name).
  Outcome open(const std::string& name) const;
  SMGR_RESULT info(int id, SMGR_VIDEO_ENCODER_INFO* info);
  SMGR_RESULT configure(int id, const SMGR_VIDEO_ENCODER_CFG& cfg);
  SMGR_RESULT stats(int id, SMGR_VIDEO_ENCODER_STATS* stats);
  SMGR_RESULT resetStats(int id);
  SMGR_RESULT start(int id);
  SMGR_RESULT stop(int id);
  SMGR_RESULT reset(int id);
  SMGR_RESULT control(int id, int command);
  SMGR_RESULT parameterSets(int id, std::vector<uint8_t>* sps, std::vector<uint8_t>* pps);
  std::vector<SMGR_VIDEO_ENCODER_INFO> list();
  int stateOf(int id);

  // What the stream family sees: started means WORKING, the rate is the adapted one.
  std::optional<ContentSourceRef> lookup(int id, const std::string* name);
  nlohmann::json save() const;
  void load(const nlohmann::json& saved);

 private:
  struct Encoder {
    SMGR_VIDEO_ENCODER_INFO info{};  // effective configuration (name, ID, adapted values)
    VIDEO_FORMAT inputFormat = 0;
    bool signal = true;
    bool running = false;
    int64_t startedAtMs = 0;
    int64_t resettingUntilMs = 0;
    int64_t workedMs = 0;         // closed working time since the last statistics reset
    int64_t segmentStartMs = -1;  // start of the open working segment, -1 when none
    uint64_t resets = 0;
    uint32_t lastResetUpSecs = 0;
    uint32_t lastStateChangeUpSecs = 0;
    uint32_t lastStatsResetUpSecs = 0;
    int64_t lastIdrPts = 0;
  };

  Encoder* find(int id);
  SMGR_RESULT check(const Encoder& encoder, const SMGR_VIDEO_ENCODER_CFG& cfg,
                    SMGR_VIDEO_ENCODER_INFO* next) const;
  void adaptBitRate(Encoder& encoder) const;
  void beginRun(Encoder& encoder, int64_t delayMs);
  void closeSegment(Encoder& encoder);
  int64_t workMs(const Encoder& encoder) const;
  int state(const Encoder& encoder) const;
  VIDEO_FORMAT outputRaster(const Encoder& encoder) const;
  double frameRate(const Encoder& encoder) const;
  int level(const Encoder& encoder) const;
  uint32_t upSecs() const;

  Appliance& appliance_;
  int64_t bootMs_;
  std::map<int, Encoder> encoders_;
};

}  // namespace sim
