// Rules of the simulated video encoders (see videnc_model.h) and their
// persisted section: configuration and run state survive a restart.
#include "videnc_model.h"

#include <algorithm>
#include <cstring>

#include "parameter_sets.h"
#include "persistence.h"
#include "sim_log.h"

namespace sim {
namespace {

constexpr uint32_t kDefaultBitRateKbps = 4000;
constexpr VIDEO_FORMAT kDefaultInput = VIDEO_FORMAT_1920_1080_29I;

// Every output resolution the encoders support (0 and CUSTOM besides).
constexpr VIDEO_FORMAT kOutputResolutions[] = {
    SMGR_VIDENC_OUT_RESOLUTION_3840_2160,     SMGR_VIDENC_OUT_RESOLUTION_1920_1080,
    SMGR_VIDENC_OUT_RESOLUTION_1920_1080I,    SMGR_VIDENC_OUT_RESOLUTION_1440_1080,
    SMGR_VIDENC_OUT_RESOLUTION_1440_1080I,    SMGR_VIDENC_OUT_RESOLUTION_1280_720,
    SMGR_VIDENC_OUT_RESOLUTION_960_1080,      SMGR_VIDENC_OUT_RESOLUTION_960_1080I,
    SMGR_VIDENC_OUT_RESOLUTION_960_720,       SMGR_VIDENC_OUT_RESOLUTION_640_720,
    SMGR_VIDENC_OUT_RESOLUTION_720_480,       SMGR_VIDENC_OUT_RESOLUTION_720_480I,
    SMGR_VIDENC_OUT_RESOLUTION_720_576,       SMGR_VIDENC_OUT_RESOLUTION_720_576I,
    SMGR_VIDENC_OUT_RESOLUTION_704_576P,      SMGR_VIDENC_OUT_RESOLUTION_704_576I,
    SMGR_VIDENC_OUT_RESOLUTION_540_480,       SMGR_VIDENC_OUT_RESOLUTION_540_480I,
    SMGR_VIDENC_OUT_RESOLUTION_540_576,       SMGR_VIDENC_OUT_RESOLUTION_540_576I,
    SMGR_VIDENC_OUT_RESOLUTION_704_240,       SMGR_VIDENC_OUT_RESOLUTION_704_256,
    SMGR_VIDENC_OUT_RESOLUTION_704_288,       SMGR_VIDENC_OUT_RESOLUTION_448_336P,
    SMGR_VIDENC_OUT_RESOLUTION_352_480,       SMGR_VIDENC_OUT_RESOLUTION_352_480I,
    SMGR_VIDENC_OUT_RESOLUTION_352_576,       SMGR_VIDENC_OUT_RESOLUTION_352_576I,
    SMGR_VIDENC_OUT_RESOLUTION_352_240,       SMGR_VIDENC_OUT_RESOLUTION_352_240I,
    SMGR_VIDENC_OUT_RESOLUTION_352_288,       SMGR_VIDENC_OUT_RESOLUTION_352_288I,
    SMGR_VIDENC_OUT_RESOLUTION_VGA_640_480,   SMGR_VIDENC_OUT_RESOLUTION_SVGA_800_600,
    SMGR_VIDENC_OUT_RESOLUTION_XGA_1024_768,  SMGR_VIDENC_OUT_RESOLUTION_1152_864,
    SMGR_VIDENC_OUT_RESOLUTION_WXGA_1280_768, SMGR_VIDENC_OUT_RESOLUTION_1280_800,
    SMGR_VIDENC_OUT_RESOLUTION_1280_960,      SMGR_VIDENC_OUT_RESOLUTION_SXGA_1280_1024,
    SMGR_VIDENC_OUT_RESOLUTION_1360_768,      SMGR_VIDENC_OUT_RESOLUTION_SXGA_1400_1050,
    SMGR_VIDENC_OUT_RESOLUTION_1440_900,      SMGR_VIDENC_OUT_RESOLUTION_1600_900,
    SMGR_VIDENC_OUT_RESOLUTION_1600_1200,     SMGR_VIDENC_OUT_RESOLUTION_1680_1050,
    SMGR_VIDENC_OUT_RESOLUTION_1920_1200,
};

bool In(int value, int low, int high) { return value >= low && value <= high; }
bool Set(const SMGR_VIDEO_ENCODER_CFG& cfg, uint64_t mask) { return (cfg.SetFieldsFlag & mask) != 0; }

// The profile may give per-encoder options ("autostart", "signal", "input_format")
// on the whole "video_encoders" object or on each entry of its array.
nlohmann::json OptionsOf(const nlohmann::json& document, size_t index) {
  if (!document.is_object() || !document.contains("video_encoders")) return nlohmann::json::object();
  const nlohmann::json& node = document.at("video_encoders");
  if (node.is_object()) return node;
  if (node.is_array() && index < node.size() && node[index].is_object()) return node[index];
  return nlohmann::json::object();
}

// Highest rate a raster can carry; higher requests are adapted down to it.
uint32_t CeilingKbps(unsigned width, unsigned height) {
  const unsigned pixels = width * height;
  if (pixels <= 720u * 576u) return 15000;
  if (pixels <= 1920u * 1200u) return 40000;
  return 80000;
}

}  // namespace

VideoEncoderModel::VideoEncoderModel(Appliance& appliance)
    : appliance_(appliance), bootMs_(appliance.nowMs()) {
  load(nullptr);
}

void VideoEncoderModel::load(const nlohmann::json& saved) {
  encoders_.clear();
  const ApplianceProfile& profile = appliance_.profile();
  const int64_t now = appliance_.nowMs();
  for (size_t i = 0; i < profile.videoEncoders.size(); ++i) {
    const ProfileObject& object = profile.videoEncoders[i];
    const nlohmann::json options = OptionsOf(profile.document, i);
    Encoder encoder;
    SMGR_VIDEO_ENCODER_INFO& info = encoder.info;
    info.nSize = sizeof(info);
    snprintf(info.szName, sizeof info.szName, "%s", object.name.c_str());
    info.nID = static_cast<UINT>(object.id);
    info.enInputInterface = static_cast<int32_t>(i % 4);
    info.enOutputResolution = SMGR_VIDENC_OUT_RESOLUTION_CLONE_INPUT;
    info.nBitRateInKbps =
        object.bitRateKbps > 0 ? static_cast<uint32_t>(object.bitRateKbps) : kDefaultBitRateKbps;
    info.nGOPSize = 30;
    info.enGOPStructure = SMGR_VIDENC_GOP_STRUCT_IP;
    info.enAspectRatio = SMGR_VIDENC_ASPECT_RATIO_AUTO_DETECT;
    info.enChromaSubSampling = SMGR_VIDENC_CHROMA_SUBSAMPLING_420_8_BIT;
    info.nNumSlices = 1;
    info.bDeblockingFilter = TRUE;
    info.enEncodingProfile = SMGR_VIDENC_PROFILE_HIGH;
    info.enCodecAlgorithm = SMGR_VIDENC_CODEC_ALGORITHM_H264;
    info.enRateControlMode = SMGR_VIDENC_RATECONTROL_MODE_CBR;
    info.nMaxBitRateInKbps = info.nBitRateInKbps;
    info.nCPBSizeMs = 1000;
    info.MaxPictureSizeRatio = 1.0f;
    encoder.inputFormat = options.value("input_format", kDefaultInput);
    encoder.signal = options.value("signal", true);
    if (saved.is_object() && saved.contains(object.name)) {
      const nlohmann::json& mine = saved.at(object.name);
      const std::vector<uint8_t> bytes = mine.value("config", std::vector<uint8_t>());
      if (bytes.size() == sizeof(info)) {
        memcpy(&info, bytes.data(), sizeof(info));
        info.nID = static_cast<UINT>(object.id);  // the profile owns identity
        snprintf(info.szName, sizeof info.szName, "%s", object.name.c_str());
      }
      encoder.running = mine.value("running", true);
    } else {
      encoder.running = options.value("autostart", true);
    }
    adaptBitRate(encoder);
    if (encoder.running) {
      encoder.startedAtMs = now;
      encoder.segmentStartMs = now;
    }
    encoders_[object.id] = encoder;
  }
  appliance_.sources().setLookup(kContentVideo,
                                 [this](int id, const std::string* name) { return lookup(id, name); });
}

nlohmann::json VideoEncoderModel::save() const {
  nlohmann::json saved = nlohmann::json::object();
  for (const auto& [id, encoder] : encoders_) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(&encoder.info);
    saved[encoder.info.szName] = {{"config", std::vector<uint8_t>(bytes, bytes + sizeof(encoder.info))},
                                  {"running", encoder.running}};
  }
  return saved;
}

VideoEncoderModel::Encoder* VideoEncoderModel::find(int id) {
  auto it = encoders_.find(id);
  return it == encoders_.end() ? nullptr : &it->second;
}

uint32_t VideoEncoderModel::upSecs() const {
  return static_cast<uint32_t>((appliance_.nowMs() - bootMs_) / 1000);
}

Outcome VideoEncoderModel::open(const std::string& name) const {
  for (const auto& [id, encoder] : encoders_)
    if (name == encoder.info.szName) return Outcome(SMGR_ERROR_SUCCESS, {}, id, name);
  return Outcome(SMGR_ERROR_NO_MATCHING_CODEC_FOUND, "no encoder named " + name);
}

VIDEO_FORMAT VideoEncoderModel::outputRaster(const Encoder& encoder) const {
  const VIDEO_FORMAT out = encoder.info.enOutputResolution;
  return out == SMGR_VIDENC_OUT_RESOLUTION_CLONE_INPUT ? encoder.inputFormat : out;
}

double VideoEncoderModel::frameRate(const Encoder& encoder) const {
  if (encoder.info.nEncodedPictureRate != 0) return encoder.info.nEncodedPictureRate;
  const unsigned rate = GET_VIDEO_FORMAT_FRATE(encoder.inputFormat);
  const bool fractional = rate == 23 || rate == 29 || rate == 59;
  return fractional ? (rate + 1) * 1000.0 / 1001.0 : (rate != 0 ? rate : 25);
}

int VideoEncoderModel::level(const Encoder& encoder) const {
  const VIDEO_FORMAT raster = outputRaster(encoder);
  const unsigned pixels = GET_VIDEO_FORMAT_HSIZE(raster) * GET_VIDEO_FORMAT_VSIZE(raster);
  const bool fast = frameRate(encoder) > 31;
  const bool hevc = encoder.info.enCodecAlgorithm == SMGR_VIDENC_CODEC_ALGORITHM_H265;
  if (pixels <= 720u * 576u) return hevc ? SMGR_H265_LEVEL_30 : SMGR_H264_LEVEL3;
  if (pixels <= 1920u * 1200u)
    return hevc ? (fast ? SMGR_H265_LEVEL_41 : SMGR_H265_LEVEL_40) : (fast ? 42 : 40);
  return hevc ? (fast ? SMGR_H265_LEVEL_51 : SMGR_H265_LEVEL_50) : (fast ? 52 : 51);
}

void VideoEncoderModel::adaptBitRate(Encoder& encoder) const {
  const VIDEO_FORMAT raster = outputRaster(encoder);
  const uint32_t ceiling = CeilingKbps(GET_VIDEO_FORMAT_HSIZE(raster), GET_VIDEO_FORMAT_VSIZE(raster));
  encoder.info.bBitRateWasAdapted = encoder.info.nBitRateInKbps > ceiling;
  encoder.info.nAdaptedBitRateInKbps = std::min(encoder.info.nBitRateInKbps, ceiling);
}

int VideoEncoderModel::state(const Encoder& encoder) const {
  if (!encoder.running) return SMGR_VIDENC_STATE_STOPPED;
  if (appliance_.nowMs() < encoder.resettingUntilMs) return SMGR_VIDENC_STATE_RESETTING;
  return encoder.signal ? SMGR_VIDENC_STATE_WORKING : SMGR_VIDENC_STATE_AWAIT_FRAMING;
}

int VideoEncoderModel::stateOf(int id) {
  Encoder* encoder = find(id);
  return encoder ? state(*encoder) : -1;
}

int64_t VideoEncoderModel::workMs(const Encoder& encoder) const {
  int64_t open = 0;
  if (encoder.segmentStartMs >= 0 && encoder.signal)
    open =
        std::max<int64_t>(0, appliance_.nowMs() - std::max(encoder.segmentStartMs, encoder.resettingUntilMs));
  return encoder.workedMs + open;
}

void VideoEncoderModel::closeSegment(Encoder& encoder) {
  encoder.workedMs = workMs(encoder);
  encoder.segmentStartMs = -1;
}

void VideoEncoderModel::beginRun(Encoder& encoder, int64_t delayMs) {
  const int64_t now = appliance_.nowMs();
  closeSegment(encoder);
  encoder.resettingUntilMs = now + delayMs;
  encoder.segmentStartMs = now;
  encoder.lastStateChangeUpSecs = upSecs();
}

SMGR_RESULT VideoEncoderModel::start(int id) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  if (encoder->running) return SMGR_ERROR_CODEC_ALREADY_STARTED;
  encoder->running = true;
  encoder->startedAtMs = appliance_.nowMs();
  beginRun(*encoder, 0);
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT VideoEncoderModel::stop(int id) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  if (!encoder->running) return SMGR_ERROR_CODEC_NOT_STARTED;
  closeSegment(*encoder);
  encoder->running = false;
  encoder->resettingUntilMs = 0;
  encoder->lastStateChangeUpSecs = upSecs();
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT VideoEncoderModel::reset(int id) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  if (!encoder->running) return SMGR_ERROR_CODEC_NOT_STARTED;
  ++encoder->resets;
  encoder->lastResetUpSecs = upSecs();
  beginRun(*encoder, kResetMs);
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT VideoEncoderModel::check(const Encoder& encoder, const SMGR_VIDEO_ENCODER_CFG& cfg,
                                     SMGR_VIDEO_ENCODER_INFO* next) const {
  if (cfg.SetFieldsFlag & ~SMGR_VIDENC_SET_ALL_ASSIGNED) return SMGR_ERROR_INVALID_VIDENC_CONFIGURATION;
  SMGR_VIDEO_ENCODER_INFO& n = *next;
  n = encoder.info;
  if (Set(cfg, SMGR_VIDENC_SET_INPUT_INTERFACE)) {
    if (!In(cfg.enInputInterface, 0, 3)) return SMGR_ERROR_NO_MATCHING_INPUT_FOUND;
    n.enInputInterface = cfg.enInputInterface;
  }
  if (Set(cfg, SMGR_VIDENC_SET_OUTPUT_RESOLUTION)) {
    const VIDEO_FORMAT out = cfg.enOutputResolution;
    const bool known = out == 0 || out == VIDEO_FORMAT_CUSTOM ||
                       std::find(std::begin(kOutputResolutions), std::end(kOutputResolutions), out) !=
                           std::end(kOutputResolutions);
    if (!known) return SMGR_ERROR_UNSUPPORTED_OUTPUT_RESOLUTION;
    n.enOutputResolution = out;
  }
  if (Set(cfg, SMGR_VIDENC_SET_BITRATE)) {
    if (!In(static_cast<int>(std::min<uint32_t>(cfg.nBitRateInKbps, 1u << 30)), 100, 100000))
      return SMGR_ERROR_INVALID_BITRATE;
    n.nBitRateInKbps = cfg.nBitRateInKbps;
  }
  if (Set(cfg, SMGR_VIDENC_SET_PICTURE_RATE)) {
    if (cfg.nEncodedPictureRate > 60) return SMGR_ERROR_INVALID_PICTURE_RATE;
    n.nEncodedPictureRate = cfg.nEncodedPictureRate;
  }
  if (Set(cfg, SMGR_VIDENC_SET_GOP_SIZE)) {
    if (cfg.nGOPSize == 0 || cfg.nGOPSize > 1000) return SMGR_ERROR_INVALID_GOP_SIZE;
    n.nGOPSize = cfg.nGOPSize;
  }
  if (Set(cfg, SMGR_VIDENC_SET_GOP_STRUCTURE)) {
    if (!In(cfg.enGOPStructure, 0, 7)) return SMGR_ERROR_INVALID_GOP_STRUCTURE;
    n.enGOPStructure = cfg.enGOPStructure;
  }
  if (Set(cfg, SMGR_VIDENC_SET_GOP_MODE)) {
    if (!In(cfg.enGOPMode, 0, 6)) return SMGR_ERROR_INVALID_GOP_MODE;
    n.enGOPMode = cfg.enGOPMode;
  }
  if (Set(cfg, SMGR_VIDENC_SET_NUM_SLICES)) {
    if (cfg.nNumSlices == 0 || cfg.nNumSlices > 16) return SMGR_ERROR_INVALID_NUMBER_OF_SLICES;
    n.nNumSlices = cfg.nNumSlices;
  }
  if (Set(cfg, SMGR_VIDENC_SET_ENCODING_PROFILE)) {
    if (!In(cfg.enEncodingProfile, 1, 7)) return SMGR_ERROR_INVALID_ENCODER_PROFILE;
    n.enEncodingProfile = cfg.enEncodingProfile;
  }
  if (Set(cfg, SMGR_VIDENC_SET_CODEC_ALGORITHM)) {
    if (!In(cfg.enCodecAlgorithm, 0, 1)) return SMGR_ERROR_INVALID_CODEC_ALGORITHM;
    n.enCodecAlgorithm = cfg.enCodecAlgorithm;
  }
  if (Set(cfg, SMGR_VIDENC_SET_CHROMA_SUBSAMPLING)) {
    if (!In(cfg.enChromaSubSampling, 1, 4)) return SMGR_ERROR_INVALID_PICTURE_FORMAT;
    n.enChromaSubSampling = cfg.enChromaSubSampling;
  }
  if (Set(cfg, SMGR_VIDENC_SET_RATE_CONTROL_MODE)) {
    if (!In(cfg.enRateControlMode, 0, 2)) return SMGR_ERROR_INVALID_RATECTRLMODE;
    n.enRateControlMode = cfg.enRateControlMode;
  }
  if (Set(cfg, SMGR_VIDENC_SET_TC_RESYNC_HOUR)) {
    if (cfg.TCResyncHour > 23) return SMGR_ERROR_INVALID_RESYNC_HOUR;
    n.TCResyncHour = cfg.TCResyncHour;
  }
  // Fields without a range of their own.
  if (Set(cfg, SMGR_VIDENC_SET_SCALING_MATRIX)) n.enScalingMatrix = cfg.enScalingMatrix;
  if (Set(cfg, SMGR_VIDENC_SET_CLOSED_CAPTION)) n.bExtractClosedCaption = cfg.bExtractClosedCaption;
  if (Set(cfg, SMGR_VIDENC_SET_PTS_OFFSET)) n.nPTSOffset = cfg.nPTSOffset;
  if (Set(cfg, SMGR_VIDENC_SET_ASPECT_RATIO)) n.enAspectRatio = cfg.enAspectRatio;
  if (Set(cfg, SMGR_VIDENC_SET_TIME_CODE)) n.enTimeCode = cfg.enTimeCode;
  if (Set(cfg, SMGR_VIDENC_SET_STRICT_BITRATE)) n.bStrictBitrate = cfg.bStrictBitrate;
  if (Set(cfg, SMGR_VIDENC_SET_RESIZE_MODE)) n.enResizeMode = cfg.enResizeMode;
  if (Set(cfg, SMGR_VIDENC_SET_DEBLOCK_FILTER)) n.bDeblockingFilter = cfg.bDeblockingFilter;
  if (Set(cfg, SMGR_VIDENC_SET_DEBLOCK_OFFSETS)) {
    n.DeblockTcOffset = cfg.DeblockTcOffset;
    n.DeblockBetaOffset = cfg.DeblockBetaOffset;
  }
  if (Set(cfg, SMGR_VIDENC_SET_SCENE_CHANGE_RESILIENCE))
    n.bSceneChangeResilience = cfg.bSceneChangeResilience;
  if (Set(cfg, SMGR_VIDENC_SET_SYSTEM_TC_COUNTING_MODE))
    n.enSystemTCCountingMode = cfg.enSystemTCCountingMode;
  if (Set(cfg, SMGR_VIDENC_SET_INTRA_REFRESH)) n.bUseIntraRefresh = cfg.bUseIntraRefresh;
  if (Set(cfg, SMGR_VIDENC_SET_MAX_BITRATE)) n.nMaxBitRateInKbps = cfg.nMaxBitRateInKbps;
  if (Set(cfg, SMGR_VIDENC_SET_CPB_SIZE)) n.nCPBSizeMs = cfg.nCPBSizeMs;
  if (Set(cfg, SMGR_VIDENC_SET_MAX_PICTURE_SIZE_RATIO)) n.MaxPictureSizeRatio = cfg.MaxPictureSizeRatio;
  if (Set(cfg, SMGR_VIDENC_SET_DYNAMIC_RANGE_MODE)) n.enDynamicRangeMode = cfg.enDynamicRangeMode;
  if (Set(cfg, SMGR_VIDENC_SET_SKIP_SEQUENCE_LENGTH)) n.SkipSequenceLength = cfg.SkipSequenceLength;
  if (Set(cfg, SMGR_VIDENC_SET_TC_RESYNC)) n.bEnableTCResync = cfg.bEnableTCResync;
  if (Set(cfg, SMGR_VIDENC_SET_ANC_DATA_INPUT)) n.enANCDataInput = cfg.enANCDataInput;

  // Combinations, on the configuration as it would become.
  const bool hevc = n.enCodecAlgorithm == SMGR_VIDENC_CODEC_ALGORITHM_H265;
  const int profile = n.enEncodingProfile;
  const bool profileOfCodec =
      hevc ? (profile == SMGR_VIDENC_PROFILE_MAIN || profile >= SMGR_VIDENC_PROFILE_MAIN_10)
           : profile <= SMGR_VIDENC_PROFILE_HIGH_422;
  if (!profileOfCodec) return SMGR_ERROR_INVALID_ENCODING_PROFILE_CODEC_ALGORITHM_COMBINATION;
  const bool tenBit = n.enChromaSubSampling == SMGR_VIDENC_CHROMA_SUBSAMPLING_420_10_BIT ||
                      n.enChromaSubSampling == SMGR_VIDENC_CHROMA_SUBSAMPLING_422_10_BIT;
  const bool chroma422 = n.enChromaSubSampling >= SMGR_VIDENC_CHROMA_SUBSAMPLING_422_8_BIT;
  const bool profileTakes10Bit =
      profile == SMGR_VIDENC_PROFILE_HIGH_10 || profile >= SMGR_VIDENC_PROFILE_HIGH_422;
  const bool profileTakes422 =
      profile == SMGR_VIDENC_PROFILE_HIGH_422 || profile == SMGR_VIDENC_PROFILE_MAIN_422_10;
  if ((tenBit && !profileTakes10Bit) || (chroma422 && !profileTakes422))
    return SMGR_ERROR_INVALID_ENCODING_PROFILE_PICTURE_FORMAT_COMBINATION;
  if (n.enDynamicRangeMode >= SMGR_VIDENC_DYNAMICRANGE_MODE_HDR_HLG && !tenBit)
    return SMGR_ERROR_INVALID_DYNAMIC_RANGE_PICTURE_FORMAT_COMBINATION;
  if (hevc && n.enResizeMode == SMGR_VIDENC_RESIZE_MODE_CROP) return SMGR_ERROR_INVALID_RESIZE_MODE_FOR_HEVC;
  if (n.enRateControlMode != SMGR_VIDENC_RATECONTROL_MODE_CBR && n.nMaxBitRateInKbps < n.nBitRateInKbps)
    return SMGR_ERROR_INVALID_RATECONTROLMODE_MAXBITRATE_VIDEO_BITRATE_COMBINATION;
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT VideoEncoderModel::configure(int id, const SMGR_VIDEO_ENCODER_CFG& cfg) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  SMGR_VIDEO_ENCODER_INFO next{};
  const SMGR_RESULT result = check(*encoder, cfg, &next);
  if (result != SMGR_ERROR_SUCCESS) return result;
  const bool restart = next.enCodecAlgorithm != encoder->info.enCodecAlgorithm ||
                       next.enOutputResolution != encoder->info.enOutputResolution;
  encoder->info = next;
  adaptBitRate(*encoder);
  // A new codec or raster passes through RESETTING while the encoder works.
  if (restart && state(*encoder) == SMGR_VIDENC_STATE_WORKING) beginRun(*encoder, kResetMs);
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT VideoEncoderModel::info(int id, SMGR_VIDEO_ENCODER_INFO* info) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  *info = encoder->info;
  return SMGR_ERROR_SUCCESS;
}

std::vector<SMGR_VIDEO_ENCODER_INFO> VideoEncoderModel::list() {
  std::vector<SMGR_VIDEO_ENCODER_INFO> all;
  for (const auto& [id, encoder] : encoders_) all.push_back(encoder.info);
  return all;
}

SMGR_RESULT VideoEncoderModel::stats(int id, SMGR_VIDEO_ENCODER_STATS* out) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  const SMGR_VIDEO_ENCODER_INFO& info = encoder->info;
  SMGR_VIDEO_ENCODER_STATS s{};
  s.nSize = sizeof(s);
  s.enState = state(*encoder);
  const bool working = s.enState == SMGR_VIDENC_STATE_WORKING;
  const int64_t work = workMs(*encoder);
  const double fps = frameRate(*encoder);
  const uint64_t frames = static_cast<uint64_t>(work * fps / 1000.0);
  s.nUpTimeInSecs =
      encoder->running ? static_cast<uint64_t>((appliance_.nowMs() - encoder->startedAtMs) / 1000) : 0;
  s.bInputPresent = encoder->signal;
  s.enInputFormat = encoder->signal ? encoder->inputFormat : VIDEO_FORMAT_UNKNOWN;
  s.enOutputResolution = outputRaster(*encoder);
  s.nEncodedFrames = frames;
  s.nEncodedNALs =
      frames * info.nNumSlices + 2 * (frames / std::max<uint32_t>(info.nGOPSize, 1) + (frames ? 1 : 0));
  s.nEncodedBytes = static_cast<uint64_t>(work) * info.nAdaptedBitRateInKbps / 8;
  s.nResets = encoder->resets;
  s.nLastResetUPTimeInSecs = encoder->lastResetUpSecs;
  s.nLoadPercentage =
      working ? static_cast<int32_t>(std::min<uint32_t>(95, 20 + info.nAdaptedBitRateInKbps / 500)) : 0;
  s.bClosedCaptionEnabled = info.bExtractClosedCaption;
  s.nCurrentPTS = work * 90;  // 90 kHz
  s.enAspectRatio = info.enAspectRatio == SMGR_VIDENC_ASPECT_RATIO_AUTO_DETECT ? SMGR_VIDENC_ASPECT_RATIO_16_9
                                                                               : info.enAspectRatio;
  s.nLastStateChangeUpTimeInSecs = encoder->lastStateChangeUpSecs;
  s.nLastStatsResetUpTimeInSecs = encoder->lastStatsResetUpSecs;
  const uint64_t wholeFps = static_cast<uint64_t>(fps + 0.5);
  const uint64_t seconds = wholeFps ? frames / wholeFps : 0;
  s.nTCHours = static_cast<int32_t>(seconds / 3600 % 24);
  s.nTCMinutes = static_cast<int32_t>(seconds / 60 % 60);
  s.nTCSeconds = static_cast<int32_t>(seconds % 60);
  s.nTCFames = static_cast<int32_t>(wholeFps ? frames % wholeFps : 0);
  s.enTimeCodeSource =
      info.enTimeCode == SMGR_VIDENC_TIME_CODE_SYSTEM ? SMGR_TCSOURCE_SYSTEM_TIMESTAMP : SMGR_TCSOURCE_NONE;
  s.nBitRateInKbps = working ? info.nAdaptedBitRateInKbps : 0;
  s.nFrameRate = static_cast<int32_t>(wholeFps);
  s.enInputInterfaceType = info.enInputInterface;
  const uint64_t gop = std::max<uint32_t>(info.nGOPSize, 1);
  s.nLastIDRFramePTS =
      std::max<int64_t>(encoder->lastIdrPts, static_cast<int64_t>((frames / gop) * gop * 90000 / fps));
  s.nSPSNumUnitsInTicks = fps == static_cast<double>(wholeFps) ? 1000 : 1001;
  s.nSPSTimeScale = static_cast<uint32_t>(wholeFps * 2000);
  s.dPreciseFrameRate = fps;
  s.enH26XProfile = info.enEncodingProfile;
  s.enH26XLevel = level(*encoder);
  s.enHEVCTier = SMGR_VIDENC_HEVCTIER_MAIN;
  s.nNumSlices = info.nNumSlices;
  s.bLatencyMeasured = working;
  if (working) {
    s.nMinLatencyInMS = 30;
    s.nMaxLatencyInMS = 60;
    s.nAverageLatencyInMS = 45;
    s.nAllTimeMinLatencyInMS = 28;
    s.nAllTimeMaxLatencyInMS = 75;
  }
  s.enEntropyCoding = info.enEncodingProfile == SMGR_VIDENC_PROFILE_BASELINE
                          ? SMGR_VIDENC_ENTROPY_CODING_CAVLC
                          : SMGR_VIDENC_ENTROPY_CODING_CABAC;
  s.MaxPictureSizeInBits =
      static_cast<uint32_t>(info.nAdaptedBitRateInKbps * 1000.0 / fps * info.MaxPictureSizeRatio);
  s.nCPBSizeMs = info.nCPBSizeMs;
  s.SkipSequenceLength = info.SkipSequenceLength;
  s.ColorPrimaries = 1;  // BT.709
  s.TransferCharacteristics = 1;
  s.MatrixCoefficients = 1;
  s.nScalerLoadPercentage = working && info.enOutputResolution != 0 ? 12.5 : 0.0;
  *out = s;
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT VideoEncoderModel::resetStats(int id) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  const bool open = encoder->segmentStartMs >= 0;
  closeSegment(*encoder);
  encoder->workedMs = 0;
  encoder->resets = 0;
  encoder->lastIdrPts = 0;
  if (open) encoder->segmentStartMs = appliance_.nowMs();
  encoder->lastStatsResetUpSecs = upSecs();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT VideoEncoderModel::control(int id, int command) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  if (command != kForceIdrCommand) return SMGR_ERROR_INVALID_PARAMETERS;
  encoder->lastIdrPts = workMs(*encoder) * 90;
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT VideoEncoderModel::parameterSets(int id, std::vector<uint8_t>* sps, std::vector<uint8_t>* pps) {
  Encoder* encoder = find(id);
  if (!encoder) return SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
  const VIDEO_FORMAT raster = outputRaster(*encoder);
  ParameterSetShape shape;
  shape.hevc = encoder->info.enCodecAlgorithm == SMGR_VIDENC_CODEC_ALGORITHM_H265;
  shape.profile = encoder->info.enEncodingProfile;
  shape.chroma = encoder->info.enChromaSubSampling;
  shape.levelIdc = level(*encoder);
  shape.width = GET_VIDEO_FORMAT_HSIZE(raster);
  shape.height = GET_VIDEO_FORMAT_VSIZE(raster);
  shape.interlaced = IS_VIDEO_FORMAT_INTERLACED(raster);
  *sps = MakeSps(shape);
  *pps = MakePps(shape);
  return SMGR_ERROR_SUCCESS;
}

std::optional<ContentSourceRef> VideoEncoderModel::lookup(int id, const std::string* name) {
  for (const auto& [encoderId, encoder] : encoders_) {
    if (name ? *name == encoder.info.szName : encoderId == id)
      return ContentSourceRef{encoderId, encoder.info.szName,
                              static_cast<int>(encoder.info.nAdaptedBitRateInKbps),
                              state(encoder) == SMGR_VIDENC_STATE_WORKING};
  }
  return std::nullopt;
}

namespace {

const PersistedSection kVideoEncoderSection{
    "video_encoders", 10, [](Appliance& appliance) { return appliance.family<VideoEncoderModel>().save(); },
    [](Appliance& appliance, const nlohmann::json& saved) {
      appliance.family<VideoEncoderModel>().load(saved);
    }};

}  // namespace
}  // namespace sim
