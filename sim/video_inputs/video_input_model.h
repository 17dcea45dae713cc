// The video inputs of the simulated appliance: the profile's inputs, the
// signal each one receives (a fixed format, none, or a repeating schedule from
// the profile's "video_input_signals"), the lock and check counters that the
// appliance clock drives, and the few settings a client may change (kept
// across restarts). Pure model code, no queues.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "appliance.h"
#include "objects.h"
#include "sim_protocol.h"

namespace sim {

// VIDEO_FORMAT codes as the protocol packs them (the named ones come from the
// encoder family's header, which this folder does not depend on).
constexpr int64_t kVideoFormatUnknown = 1;
int64_t PackVideoFormat(unsigned width, unsigned height, unsigned rate, bool interlaced);
// "1080p50", "1080i25", "2160p60", "1280x720p59": a packed code, or 0 when the text is no format.
int64_t ParseVideoFormatText(const std::string& text);
unsigned VideoFormatWidth(int64_t format);
unsigned VideoFormatHeight(int64_t format);

class VideoInputModel {
 public:
  explicit VideoInputModel(Appliance& appliance);

  // What an input receives at the current time.
  struct Signal {
    bool present = false;
    int64_t format = kVideoFormatUnknown;
  };

  Outcome open(const std::string& name);  // the ID of the input with that name, else 81
  SMGR_RESULT info(int id, SMGR_VIDEO_INPUT_INFO* info);
  SMGR_RESULT resetStats(int id);
  SMGR_RESULT configure(int id, const SMGR_VIDEO_INPUT_CFG& cfg);
  std::vector<SMGR_VIDEO_INPUT_INFO> list();
  // The signal an input receives now (encoders follow it); not present for an unknown ID.
  Signal signalOf(int id);

  // Whether a working encoder takes its picture from this input; the encoder
  // family installs it (none is working until then).
  void setInputInUse(std::function<bool(int id)> inUse) { inUse_ = std::move(inUse); }

  nlohmann::json save() const;
  void load(const nlohmann::json& section);

 private:
  struct Segment {
    int64_t format;  // kVideoFormatUnknown: no signal
    int64_t ms;
  };
  struct Input {
    ProfileObject object;
    std::vector<Segment> schedule;  // one segment of 0 ms: a steady signal
    int cfgInterfaceType = SMGR_VIF_TYPE_AUTO_DETECT;
    int colorSpace = 0;
    BOOL firFilter = FALSE;
    int64_t statsSinceMs = 0;  // lock changes and checks count from here
  };

  Input* find(int id);
  int64_t formatAt(const Input& input, int64_t ms) const;
  // Lock changes in (fromMs, toMs] and the time of the last one (or -1).
  uint64_t lockChanges(const Input& input, int64_t fromMs, int64_t toMs, int64_t* lastMs) const;
  void fill(Input& input, SMGR_VIDEO_INPUT_INFO* info);

  Appliance& appliance_;
  int64_t bootMs_;
  std::map<int, Input> inputs_;
  std::function<bool(int id)> inUse_;
};

}  // namespace sim
