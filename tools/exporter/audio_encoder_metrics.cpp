// Audio encoder metrics: state, bit rate, encoded frames and bytes, errors and
// the level meter.
#include <cstring>
#include <string>
#include <vector>

#include "encoder_handles.h"
#include "sessmgr_api.h"
#include "smgrctl/paging.h"
#include "snapshot.h"

namespace exporter {
namespace {

const std::vector<std::pair<int, std::string>>& AudioEncoderStates() {
  static const std::vector<std::pair<int, std::string>> states = [] {
    std::vector<std::pair<int, std::string>> known;
    for (int state : {SMGR_AUDENC_STATE_STOPPED, SMGR_AUDENC_STATE_WORKING, SMGR_AUDENC_STATE_MUTED,
                      SMGR_AUDENC_STATE_FAILED}) {
      char text[64] = "";
      SessMgr_GetAudioEncoderStateString(state, text, sizeof text);
      known.emplace_back(state, LabelText(text, sizeof text));
    }
    return known;
  }();
  return states;
}

class AudioEncoderCollector : public FamilyCollector {
 public:
  bool collect(SnapshotBuilder& out) override {
    std::vector<SMGR_AUDIO_ENCODER_INFO> encoders;
    if (!smgrctl::CollectPages<SMGR_AUDIO_ENCODER_INFO>(SessMgr_EnumerateAudioEncoders, &encoders, 8))
      return false;
    for (const SMGR_AUDIO_ENCODER_INFO& info : encoders) {
      const LabelList labels = ObjectLabels(info.nID, info.szName, sizeof info.szName);
      HAUDENC handle = handles_.get(std::string(info.szName, strnlen(info.szName, sizeof info.szName)));
      if (!handle) return false;
      SMGR_AUDIO_ENCODER_STATS stats{};
      stats.nSize = sizeof stats;
      if (!SessMgr_GetAudioEncoderStats(handle, &stats)) return false;
      out.states("smgr_audio_encoder_state", "Audio encoder state: 1 for the current one", labels,
                 AudioEncoderStates(), stats.enState);
      out.gauge("smgr_audio_encoder_bit_rate_bits_per_second", "Bit rate the encoder produces", labels,
                stats.nBitRateInKbps * 1000.0);
      out.gauge("smgr_audio_encoder_max_sample_value", "Level meter: the largest recent sample", labels,
                stats.nMaxSampleValue);
      out.counter("smgr_audio_encoder_frames_total", "Frames encoded", labels, stats.nEncodedFrames);
      out.counter("smgr_audio_encoder_bytes_total", "Bytes encoded", labels, stats.nEncodedBytes);
      out.counter("smgr_audio_encoder_errors_total", "Encoding errors", labels, stats.nErrors);
    }
    handles_.closeUnseen();
    return true;
  }
  void disconnected() override { handles_.forget(); }

 private:
  HandleCache<HAUDENC, SessMgr_OpenAudioEncoder, SessMgr_CloseAudioEncoder> handles_;
};

const CollectorRegistration registration("audio_encoders",
                                         []() -> FamilyCollector* { return new AudioEncoderCollector; });

}  // namespace
}  // namespace exporter
