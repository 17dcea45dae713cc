// Rules and counters of the simulated audio encoders (see audio_encoder_model.h).
#include "audio_encoder_model.h"

#include <strings.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "essence_model.h"
#include "objects.h"
#include "sim_log.h"

namespace sim {
namespace {

constexpr int kSampleRates[] = {16, 22, 24, 32, 44, 48};
constexpr int kAlgorithms[] = {0, 1, 10, 20, 21, 22, 23};
// The language tags the daemon knows (ISO 639-2, both forms where they differ).
constexpr const char* kLanguages[] = {"eng", "fre", "fra", "ger", "deu", "spa", "ita", "por",
                                      "rus", "chi", "zho", "jpn", "kor", "ara", "dut", "nld"};

bool IsSdi(int input) { return input >= 1; }
bool IsMono(int mode) { return mode != SMGR_AUDENC_MODE_STEREO; }
int Channels(int mode) { return IsMono(mode) ? 1 : 2; }
int64_t SampleRateHz(int kHz) { return kHz == 44 ? 44100 : kHz == 22 ? 22050 : int64_t{kHz} * 1000; }
int SamplesPerFrame(int algorithm) {
  return algorithm >= SMGR_AUDENC_ALGORITHM_MPEG4_AAC_HE_V1_LOAS ? 2048 : 1024;
}

// Stereo bit-rate range of a compressed algorithm; mono may use half the ceiling.
struct BitRange {
  unsigned min, max;
};
std::optional<BitRange> RangeOf(int algorithm) {
  switch (algorithm) {
    case SMGR_AUDENC_ALGORITHM_MPEG4_AAC_HE_V1_LOAS:
      return BitRange{16, 128};
    case SMGR_AUDENC_ALGORITHM_MPEG4_AAC_HE_V2_LOAS:
      return BitRange{16, 64};
    case SMGR_AUDENC_ALGORITHM_PCM:
    case SMGR_AUDENC_ALGORITHM_RAW:
      return std::nullopt;  // the rate follows from the samples
    default:
      return BitRange{32, 384};
  }
}

// What the encoder produces, kbit/s.
int64_t OutputKbps(const SMGR_AUDIO_ENCODER_INFO& info) {
  if (!RangeOf(info.enAlgorithm)) return SampleRateHz(info.enSampleRate) * 16 * Channels(info.enMode) / 1000;
  return info.nBitRateInKbps;
}

int64_t FramesIn(const SMGR_AUDIO_ENCODER_INFO& info, int64_t ms) {
  return ms * SampleRateHz(info.enSampleRate) / 1000 / SamplesPerFrame(info.enAlgorithm);
}
int64_t BytesIn(const SMGR_AUDIO_ENCODER_INFO& info, int64_t ms) { return ms * OutputKbps(info) / 8; }

bool KnownLanguage(const char* tag) {
  return std::any_of(std::begin(kLanguages), std::end(kLanguages),
                     [tag](const char* known) { return strcasecmp(known, tag) == 0; });
}

// Applies the flagged fields of a configuration to an information record.
SMGR_AUDIO_ENCODER_INFO Merge(SMGR_AUDIO_ENCODER_INFO info, const SMGR_AUDIO_ENCODER_CFG& cfg) {
  const uint64_t flags = cfg.SetFieldsFlag;
  if (flags & SMGR_AUDENC_SET_INPUT_INTERFACE) info.enInputInterface = cfg.enInputInterface;
  if (flags & SMGR_AUDENC_SET_BITRATE) info.nBitRateInKbps = cfg.nBitRateInKbps;
  if (flags & SMGR_AUDENC_SET_SAMPLE_RATE) info.enSampleRate = cfg.enSampleRate;
  if (flags & SMGR_AUDENC_SET_CRC) info.bEnableCRCs = cfg.bEnableCRCs;
  if (flags & SMGR_AUDENC_SET_DELAY) info.nDelayInMS = cfg.nDelayInMS;
  if (flags & SMGR_AUDENC_SET_MODE) info.enMode = cfg.enMode;
  if (flags & SMGR_AUDENC_SET_ALGORITHM) info.enAlgorithm = cfg.enAlgorithm;
  if (flags & AudioEncoderModel::kSetPtsOffset) info.nPTSOffset = cfg.nPTSOffset;
  if (flags & AudioEncoderModel::kSetCaptureToDisk) info.bCaptureToDisk = cfg.bCaptureToDisk;
  if (flags & AudioEncoderModel::kSetCaptureSize) info.nMaxCaptureSizeInKBytes = cfg.nMaxCaptureSizeInKBytes;
  if (flags & SMGR_AUDENC_SET_INPUT_LEVEL) info.nInputLevel = cfg.nInputLevel;
  if (flags & SMGR_AUDENC_SET_STC_SOURCE_IF) info.enSTCSourceInterface = cfg.enSTCSourceInterface;
  if (flags & SMGR_AUDENC_SET_LANGUAGE) memcpy(info.szLanguage, cfg.szLanguage, sizeof info.szLanguage);
  return info;
}

bool Running(int state) { return state != SMGR_AUDENC_STATE_STOPPED; }

}  // namespace

AudioEncoderModel::AudioEncoderModel(Appliance& appliance) : appliance_(appliance) {
  const auto& objects = appliance.profile().audioEncoders;
  for (size_t i = 0; i < objects.size(); ++i) {
    Encoder encoder;
    defaults(objects[i], i, &encoder);
    encoders_.push_back(encoder);
  }
  try {
    markFailing(appliance.profile().document);
  } catch (const nlohmann::json::exception& e) {
    SIM_LOG_WARN("profile: failing audio encoders ignored: %s", e.what());
  }
}

// {"count": 8, "failing": [3]} or an array whose entries say "failing": true.
void AudioEncoderModel::markFailing(const nlohmann::json& document) {
  if (!document.contains("audio_encoders")) return;
  const nlohmann::json& section = document.at("audio_encoders");
  std::vector<int> failing;
  if (section.is_object() && section.contains("failing"))
    failing = section.at("failing").get<std::vector<int>>();
  for (size_t i = 0; i < encoders_.size(); ++i) {
    Encoder& encoder = encoders_[i];
    encoder.failing =
        std::find(failing.begin(), failing.end(), static_cast<int>(encoder.info.nID)) != failing.end();
    if (section.is_array() && i < section.size() && section[i].is_object())
      encoder.failing = section[i].value("failing", encoder.failing);
  }
}

// aenc<n>: SDI1 pair n, AAC-LC in ADTS, 48 kHz stereo at the profile's bit rate.
void AudioEncoderModel::defaults(const ProfileObject& object, size_t index, Encoder* encoder) const {
  SMGR_AUDIO_ENCODER_INFO& info = encoder->info;
  info = SMGR_AUDIO_ENCODER_INFO{};
  info.nSize = sizeof info;
  snprintf(info.szName, sizeof info.szName, "%s", object.name.c_str());
  info.nID = static_cast<DWORD>(object.id);
  info.enInputInterface = static_cast<int32_t>(index % 32) + 1;
  info.enAlgorithm = SMGR_AUDENC_ALGORITHM_MPEG4_AAC_LC_ADTS;
  info.nBitRateInKbps = object.bitRateKbps > 0 ? static_cast<DWORD>(object.bitRateKbps) : 128;
  info.enSampleRate = 48;
  info.enMode = SMGR_AUDENC_MODE_STEREO;
  info.nMaxCaptureSizeInKBytes = 1024;
  snprintf(info.szCaptureFileName, sizeof info.szCaptureFileName, "/var/capture/%s.aac", object.name.c_str());
  info.enSTCSourceInterface = SMGR_AUDENC_STC_AUTOMATIC;
  memcpy(info.szLanguage, "eng", 4);
}

AudioEncoderModel::Encoder* AudioEncoderModel::find(int id) {
  for (Encoder& encoder : encoders_)
    if (static_cast<int>(encoder.info.nID) == id) return &encoder;
  return nullptr;
}

const AudioEncoderModel::Encoder* AudioEncoderModel::find(int id) const {
  return const_cast<AudioEncoderModel*>(this)->find(id);
}

SMGR_RESULT AudioEncoderModel::open(const std::string& name, int* id) const {
  for (const Encoder& encoder : encoders_) {
    if (name == encoder.info.szName) {
      *id = static_cast<int>(encoder.info.nID);
      return SMGR_ERROR_SUCCESS;
    }
  }
  return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
}

bool AudioEncoderModel::pairTaken(const Encoder& encoder, int input) const {
  if (!IsSdi(input)) return false;
  return std::any_of(encoders_.begin(), encoders_.end(), [&](const Encoder& other) {
    return &other != &encoder && Running(other.state) && other.info.enInputInterface == input;
  });
}

SMGR_RESULT AudioEncoderModel::validate(const Encoder& encoder, const SMGR_AUDIO_ENCODER_INFO& next,
                                        uint64_t flags) const {
  if (std::find(std::begin(kAlgorithms), std::end(kAlgorithms), next.enAlgorithm) == std::end(kAlgorithms) ||
      next.enMode < SMGR_AUDENC_MODE_STEREO || next.enMode > SMGR_AUDENC_MODE_MONO_RIGHT)
    return SMGR_ERROR_INVALID_PARAMETERS;
  const int inputs = static_cast<int>(appliance_.profile().videoInputs.size());
  if (next.enInputInterface < 0 || next.enInputInterface > 8 * std::min(inputs, 4))
    return SMGR_ERROR_NO_MATCHING_INPUT_FOUND;
  if (std::find(std::begin(kSampleRates), std::end(kSampleRates), next.enSampleRate) ==
      std::end(kSampleRates))
    return SMGR_ERROR_INVALID_SAMPLE_RATE;
  if (IsSdi(next.enInputInterface) && next.enSampleRate != 48)
    return SMGR_ERROR_INVALID_SAMPLE_RATE_FOR_SDI_AUDIO;
  if (!IsSdi(next.enInputInterface)) {
    for (const Encoder& other : encoders_) {
      if (&other != &encoder && !IsSdi(other.info.enInputInterface) &&
          other.info.enSampleRate != next.enSampleRate)
        return SMGR_ERROR_CONFLICT_SAMPLE_RATE;  // one analogue input, one clock
    }
  }
  if (auto range = RangeOf(next.enAlgorithm)) {
    if (next.nBitRateInKbps < range->min || next.nBitRateInKbps > range->max)
      return SMGR_ERROR_INVALID_AUDIO_BITRATE;
    if (IsMono(next.enMode) && next.nBitRateInKbps > range->max / 2)
      return SMGR_ERROR_AUDIO_BITRATE_TOO_HIGH_FOR_MODE;
  }
  if (flags & SMGR_AUDENC_SET_STC_SOURCE_IF) {
    if (next.enSTCSourceInterface < SMGR_AUDENC_STC_AUTOMATIC ||
        next.enSTCSourceInterface > SMGR_AUDENC_STC_IF_BNC4)
      return SMGR_ERROR_INVALID_PARAMETERS;
    if (IsSdi(next.enInputInterface) && next.enSTCSourceInterface != SMGR_AUDENC_STC_AUTOMATIC)
      return SMGR_ERROR_STC_SOURCE_FIXED_FOR_SDI_AUDIO;
  }
  if (flags & SMGR_AUDENC_SET_LANGUAGE) {
    if (!Terminated(next.szLanguage, sizeof next.szLanguage)) return SMGR_ERROR_INVALID_LANGUAGE_CODE;
    if (next.szLanguage[0] != '\0' && !KnownLanguage(next.szLanguage))
      return SMGR_ERROR_INVALID_LANGUAGE_CODE;
  }
  if (next.nInputLevel < -12 || next.nInputLevel > 12) return SMGR_ERROR_INVALID_AUDIO_LEVEL;
  if (next.nMaxCaptureSizeInKBytes < 0) return SMGR_ERROR_INVALID_PARAMETERS;
  if (Running(encoder.state) && pairTaken(encoder, next.enInputInterface))
    return SMGR_ERROR_AUDIO_CHANNELS_IN_USE;
  return SMGR_ERROR_SUCCESS;
}

int64_t AudioEncoderModel::activeMsNow(const Encoder& encoder) const {
  return encoder.activeMs + (encoder.segmentStartMs ? appliance_.nowMs() - *encoder.segmentStartMs : 0);
}

void AudioEncoderModel::setState(Encoder& encoder, int state) {
  const int64_t now = appliance_.nowMs();
  if (encoder.segmentStartMs) encoder.activeMs += now - *encoder.segmentStartMs;
  encoder.segmentStartMs.reset();
  // An encoder without input (failed for want of an essence) neither encodes nor counts errors.
  if (Running(state) && (state != SMGR_AUDENC_STATE_FAILED || encoder.failing)) encoder.segmentStartMs = now;
  if (state != encoder.state) encoder.stateChangeMs = now;
  encoder.state = state;
}

bool AudioEncoderModel::starved(const Encoder& encoder) const {
  const int input = encoder.info.enInputInterface;
  if (!IsSdi(input)) return false;
  EssenceModel& essences = appliance_.family<EssenceModel>();
  return essences.supported() &&
         !essences.runningEssence(SMGR_ESSENCE_MEDIA_TYPE_AUDIO, static_cast<unsigned>((input - 1) / 8));
}

void AudioEncoderModel::followInput(Encoder& encoder) {
  if (encoder.failing || !Running(encoder.state)) return;
  const bool noInput = starved(encoder);
  if (noInput && encoder.state != SMGR_AUDENC_STATE_FAILED)
    setState(encoder, SMGR_AUDENC_STATE_FAILED);
  else if (!noInput && encoder.state == SMGR_AUDENC_STATE_FAILED)
    setState(encoder, SMGR_AUDENC_STATE_WORKING);
}

SMGR_RESULT AudioEncoderModel::configure(int id, const SMGR_AUDIO_ENCODER_CFG& cfg) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  const SMGR_AUDIO_ENCODER_INFO next = Merge(encoder->info, cfg);
  const SMGR_RESULT result = validate(*encoder, next, cfg.SetFieldsFlag);
  if (result != SMGR_ERROR_SUCCESS) return result;
  // What was encoded so far counts at the old settings.
  const int64_t activeMs = activeMsNow(*encoder);
  encoder->baseFrames += FramesIn(encoder->info, activeMs - encoder->countedMs);
  encoder->baseBytes += BytesIn(encoder->info, activeMs - encoder->countedMs);
  encoder->countedMs = activeMs;
  encoder->info = next;
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT AudioEncoderModel::start(int id) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  if (Running(encoder->state)) return SMGR_ERROR_CODEC_ALREADY_STARTED;
  if (pairTaken(*encoder, encoder->info.enInputInterface)) return SMGR_ERROR_AUDIO_CHANNELS_IN_USE;
  setState(*encoder,
           encoder->failing || starved(*encoder) ? SMGR_AUDENC_STATE_FAILED : SMGR_AUDENC_STATE_WORKING);
  SMGR_AUDIO_ENCODER_STATS now{};
  stats(id, &now);
  encoder->captureBaseBytes = static_cast<int64_t>(now.nEncodedBytes);
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT AudioEncoderModel::stop(int id) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  if (!Running(encoder->state)) return SMGR_ERROR_CODEC_NOT_STARTED;
  setState(*encoder, SMGR_AUDENC_STATE_STOPPED);
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT AudioEncoderModel::mute(int id, bool mute) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  followInput(*encoder);
  if (encoder->state != SMGR_AUDENC_STATE_WORKING && encoder->state != SMGR_AUDENC_STATE_MUTED)
    return SMGR_ERROR_CODEC_NOT_STARTED;  // stopped, or failed and producing nothing to mute
  const bool muted = encoder->state == SMGR_AUDENC_STATE_MUTED;
  if (mute && muted) return SMGR_ERROR_CODEC_ALREADY_MUTED;
  if (!mute && !muted) return SMGR_ERROR_CODEC_NOT_MUTED;
  setState(*encoder, mute ? SMGR_AUDENC_STATE_MUTED : SMGR_AUDENC_STATE_WORKING);
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT AudioEncoderModel::resetStats(int id) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  encoder->activeMs = encoder->countedMs = 0;
  encoder->baseFrames = encoder->baseBytes = 0;
  if (encoder->segmentStartMs) encoder->segmentStartMs = appliance_.nowMs();
  encoder->captureBaseBytes = 0;
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT AudioEncoderModel::info(int id, SMGR_AUDIO_ENCODER_INFO* info) const {
  const Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  *info = encoder->info;
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT AudioEncoderModel::stats(int id, SMGR_AUDIO_ENCODER_STATS* stats) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  followInput(*encoder);
  const SMGR_AUDIO_ENCODER_INFO& info = encoder->info;
  const int64_t now = appliance_.nowMs();
  const int64_t activeMs = activeMsNow(*encoder);
  *stats = SMGR_AUDIO_ENCODER_STATS{};
  stats->nSize = sizeof *stats;
  stats->enState = encoder->state;
  if (encoder->failing) {
    stats->nErrors = static_cast<uint64_t>(activeMs / 1000);  // one per second while it fails
  } else {
    stats->nEncodedFrames =
        static_cast<uint64_t>(encoder->baseFrames + FramesIn(info, activeMs - encoder->countedMs));
    stats->nEncodedBytes =
        static_cast<uint64_t>(encoder->baseBytes + BytesIn(info, activeMs - encoder->countedMs));
    stats->nCurrentPTS = activeMs * 90 + info.nPTSOffset;
  }
  if (info.bCaptureToDisk && (Running(encoder->state) || activeMs > 0)) {
    const int64_t limit = int64_t{info.nMaxCaptureSizeInKBytes} * 1024;
    const int64_t captured =
        std::max<int64_t>(0, static_cast<int64_t>(stats->nEncodedBytes) - encoder->captureBaseBytes);
    stats->nCaptureSize = static_cast<uint64_t>(std::min(captured, limit));
    stats->enCaptureState = captured >= limit ? SMGR_AUDENC_CAPTURE_COMPLETED : SMGR_AUDENC_CAPTURE_ACTIVE;
  }
  stats->nLastStateChangeUpTimeInSecs = static_cast<DWORD>(encoder->stateChangeMs / 1000);
  const bool producing =
      encoder->state == SMGR_AUDENC_STATE_WORKING || encoder->state == SMGR_AUDENC_STATE_MUTED;
  stats->nBitRateInKbps = producing ? static_cast<int32_t>(OutputKbps(info)) : 0;
  stats->enSTCSourceInterface = IsSdi(info.enInputInterface) ? (info.enInputInterface - 1) / 8
                                : info.enSTCSourceInterface == SMGR_AUDENC_STC_AUTOMATIC
                                    ? SMGR_AUDENC_STC_IF_BNC
                                    : info.enSTCSourceInterface;
  if (encoder->state == SMGR_AUDENC_STATE_WORKING && !encoder->failing)
    stats->nMaxSampleValue =
        static_cast<int16_t>(4000 + (now / 200 * 2654435761LL) % 20000);  // a moving meter
  return SMGR_ERROR_SUCCESS;
}

std::vector<SMGR_AUDIO_ENCODER_INFO> AudioEncoderModel::list() const {
  std::vector<SMGR_AUDIO_ENCODER_INFO> all;
  for (const Encoder& encoder : encoders_) all.push_back(encoder.info);
  return all;
}

std::optional<ContentSourceRef> AudioEncoderModel::lookup(int id, const std::string* name) const {
  for (const Encoder& encoder : encoders_) {
    if (name ? *name == encoder.info.szName : static_cast<int>(encoder.info.nID) == id)
      return ContentSourceRef{static_cast<int>(encoder.info.nID), encoder.info.szName,
                              static_cast<int>(OutputKbps(encoder.info)), Running(encoder.state)};
  }
  return std::nullopt;
}

nlohmann::json AudioEncoderModel::save() const {
  nlohmann::json all = nlohmann::json::array();
  for (const Encoder& encoder : encoders_) {
    const SMGR_AUDIO_ENCODER_INFO& i = encoder.info;
    all.push_back({{"id", i.nID},
                   {"input", i.enInputInterface},
                   {"algorithm", i.enAlgorithm},
                   {"bitrate_kbps", i.nBitRateInKbps},
                   {"sample_rate_khz", i.enSampleRate},
                   {"mode", i.enMode},
                   {"crc", i.bEnableCRCs != 0},
                   {"delay_ms", i.nDelayInMS},
                   {"pts_offset", i.nPTSOffset},
                   {"capture", i.bCaptureToDisk != 0},
                   {"capture_kb", i.nMaxCaptureSizeInKBytes},
                   {"level", i.nInputLevel},
                   {"stc", i.enSTCSourceInterface},
                   {"language", std::string(i.szLanguage, strnlen(i.szLanguage, sizeof i.szLanguage))}});
  }
  return all;
}

void AudioEncoderModel::load(const nlohmann::json& saved) {
  const auto& objects = appliance_.profile().audioEncoders;
  for (size_t i = 0; i < encoders_.size() && i < objects.size(); ++i) defaults(objects[i], i, &encoders_[i]);
  if (!saved.is_array()) return;
  for (const auto& item : saved) {
    Encoder* encoder = item.is_object() ? find(item.value("id", -1)) : nullptr;
    if (!encoder) continue;
    SMGR_AUDIO_ENCODER_INFO& i = encoder->info;
    i.enInputInterface = item.value("input", i.enInputInterface);
    i.enAlgorithm = item.value("algorithm", i.enAlgorithm);
    i.nBitRateInKbps = item.value("bitrate_kbps", i.nBitRateInKbps);
    i.enSampleRate = item.value("sample_rate_khz", i.enSampleRate);
    i.enMode = item.value("mode", i.enMode);
    i.bEnableCRCs = item.value("crc", false) ? TRUE : FALSE;
    i.nDelayInMS = item.value("delay_ms", i.nDelayInMS);
    i.nPTSOffset = item.value("pts_offset", i.nPTSOffset);
    i.bCaptureToDisk = item.value("capture", false) ? TRUE : FALSE;
    i.nMaxCaptureSizeInKBytes = item.value("capture_kb", i.nMaxCaptureSizeInKBytes);
    i.nInputLevel = item.value("level", i.nInputLevel);
    i.enSTCSourceInterface = item.value("stc", i.enSTCSourceInterface);
    snprintf(i.szLanguage, sizeof i.szLanguage, "%s", item.value("language", std::string("eng")).c_str());
  }
}

}  // namespace sim
