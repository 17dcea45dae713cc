// Video encoder metrics: state, input presence, bit rate, frame rate, load,
// encoded frames and bytes, errors, resets and dropped frames.
#include <cstring>
#include <string>
#include <vector>

#include "encoder_handles.h"
#include "sessmgr_api.h"
#include "smgrctl/paging.h"
#include "snapshot.h"

namespace exporter {
namespace {

const std::vector<std::pair<int, std::string>>& VideoEncoderStates() {
  static const std::vector<std::pair<int, std::string>> states = [] {
    std::vector<std::pair<int, std::string>> known;
    for (int state :
         {SMGR_VIDENC_STATE_STOPPED, SMGR_VIDENC_STATE_AWAIT_FRAMING, SMGR_VIDENC_STATE_NOT_ENCODING,
          SMGR_VIDENC_STATE_WORKING, SMGR_VIDENC_STATE_RESETTING, SMGR_VIDENC_STATE_FAILED}) {
      char text[64] = "";
      SessMgr_GetVideoEncoderStateString(state, text, sizeof text);
      known.emplace_back(state, LabelText(text, sizeof text));
    }
    return known;
  }();
  return states;
}

class VideoEncoderCollector : public FamilyCollector {
 public:
  bool collect(SnapshotBuilder& out) override {
    std::vector<SMGR_VIDEO_ENCODER_INFO> encoders;
    if (!smgrctl::CollectPages<SMGR_VIDEO_ENCODER_INFO>(SessMgr_EnumerateVideoEncoders, &encoders, 8))
      return false;
    for (const SMGR_VIDEO_ENCODER_INFO& info : encoders) {
      const LabelList labels = ObjectLabels(info.nID, info.szName, sizeof info.szName);
      HVIDENC handle = handles_.get(std::string(info.szName, strnlen(info.szName, sizeof info.szName)));
      if (!handle) return false;
      SMGR_VIDEO_ENCODER_STATS stats{};
      stats.nSize = sizeof stats;
      if (!SessMgr_GetVideoEncoderStats(handle, &stats)) return false;
      out.states("smgr_video_encoder_state", "Video encoder state: 1 for the current one", labels,
                 VideoEncoderStates(), stats.enState);
      out.gauge("smgr_video_encoder_input_present", "1 when the encoder's input has a signal", labels,
                stats.bInputPresent ? 1 : 0);
      out.gauge("smgr_video_encoder_bit_rate_bits_per_second", "Bit rate the encoder produces", labels,
                stats.nBitRateInKbps * 1000.0);
      out.gauge("smgr_video_encoder_frame_rate", "Frames per second encoded", labels,
                static_cast<double>(stats.dPreciseFrameRate));
      out.gauge("smgr_video_encoder_load_ratio", "Encoder load (0 to 1)", labels,
                stats.nLoadPercentage / 100.0);
      out.gauge("smgr_video_encoder_up_time_seconds", "Time since the encoder started", labels,
                static_cast<double>(stats.nUpTimeInSecs));
      out.counter("smgr_video_encoder_frames_total", "Frames encoded", labels, stats.nEncodedFrames);
      out.counter("smgr_video_encoder_bytes_total", "Bytes encoded", labels, stats.nEncodedBytes);
      out.counter("smgr_video_encoder_dropped_frames_total", "Frames dropped", labels, stats.nDroppedFrames);
      out.counter("smgr_video_encoder_errors_total", "Encoding errors", labels, stats.nErrors);
      out.counter("smgr_video_encoder_resets_total", "Encoder resets", labels, stats.nResets);
    }
    handles_.closeUnseen();
    return true;
  }
  void disconnected() override { handles_.forget(); }

 private:
  HandleCache<HVIDENC, SessMgr_OpenVideoEncoder, SessMgr_CloseVideoEncoder> handles_;
};

const CollectorRegistration registration("video_encoders",
                                         []() -> FamilyCollector* { return new VideoEncoderCollector; });

}  // namespace
}  // namespace exporter
