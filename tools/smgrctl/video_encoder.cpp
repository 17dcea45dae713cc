// smgrctl video-encoder (venc) commands: list, show, set, start, stop, reset,
// stats (with --watch), reset-stats, sprop and control. Encoders are named by
// ID or name (ParseSelector's rule); an ID is mapped to its name by
// enumerating, since the library opens encoders by name only.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cstring>
#include <iostream>
#include <optional>

#include "commands.h"
#include "exit_codes.h"
#include "output.h"
#include "paging.h"
#include "watch.h"

namespace smgrctl {
namespace {

using nlohmann::json;

bool ListEncoders(std::vector<SMGR_VIDEO_ENCODER_INFO>* encoders) {
  return CollectPages<SMGR_VIDEO_ENCODER_INFO>(SessMgr_EnumerateVideoEncoders, encoders, 8);
}

// Info, statistics, reset stats, control and sprop fail without touching the last
// error when the daemon refuses; Encoder::open clears it, so such a failure is
// told apart from a coded one.
int FailQuiet(const std::string& operation) {
  if (SessMgr_GetLastError() != SMGR_ERROR_SUCCESS) return Fail(operation);
  return FailWith(operation, SMGR_ERROR_SUCCESS, "the daemon refused (it gives no code here)", kExitRefused);
}

// An open handle on the encoder named by ID or name; closed when it goes.
class Encoder {
 public:
  ~Encoder() {
    if (handle_ != nullptr) SessMgr_CloseVideoEncoder(&handle_);
  }
  bool open(const std::string& target) {
    const SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
    std::string name;
    if (selector.enType == SMGR_SELECTBY_OBJECT_ID) {
      std::vector<SMGR_VIDEO_ENCODER_INFO> encoders;
      if (!ListEncoders(&encoders)) return false;
      auto it = std::find_if(encoders.begin(), encoders.end(), [&](const SMGR_VIDEO_ENCODER_INFO& info) {
        return static_cast<int>(info.nID) == selector.Via.ID;
      });
      if (it == encoders.end()) {
        SessMgr_SetLastError(SMGR_ERROR_NO_MATCHING_CODEC_FOUND);
        return false;
      }
      name = it->szName;
    } else {
      name = selector.Via.szName;
    }
    if (!SessMgr_OpenVideoEncoder(name.c_str(), &handle_)) return false;
    SessMgr_SetLastError(SMGR_ERROR_SUCCESS);
    return true;
  }
  HVIDENC handle() const { return handle_; }

 private:
  HVIDENC handle_ = nullptr;
};

std::string FormatText(char* (*fn)(long, char*, size_t), VIDEO_FORMAT format) {
  char text[64];
  return fn(static_cast<long>(format), text, sizeof text);
}
std::string InputFormatText(VIDEO_FORMAT format) {
  char text[64];
  return SessMgr_GetVideoEncoderInputFormatString(static_cast<long>(format), TRUE, text, sizeof text);
}

json InfoJson(const SMGR_VIDEO_ENCODER_INFO& i) {
  return {{"id", Val(i.nID)},
          {"name", i.szName},
          {"input", ValueText(SessMgr_GetVideoEncoderInputTypeString, i.enInputInterface)},
          {"resolution", FormatText(SessMgr_GetVideoEncoderOutputResolutionString, i.enOutputResolution)},
          {"bitrate_kbps", Val(i.nBitRateInKbps)},
          {"adapted_bitrate_kbps", Val(i.nAdaptedBitRateInKbps)},
          {"bitrate_adapted", i.bBitRateWasAdapted != 0},
          {"picture_rate", Val(i.nEncodedPictureRate)},
          {"gop_size", Val(i.nGOPSize)},
          {"gop_structure", ValueText(SessMgr_GetVideoEncoderGOPStructureString, i.enGOPStructure)},
          {"gop_mode", ValueText(SessMgr_GetVideoEncoderGOPModeString, i.enGOPMode)},
          {"codec", ValueText(SessMgr_GetVideoEncoderCodecAlgorithmString, i.enCodecAlgorithm)},
          {"profile", ValueText(SessMgr_GetVideoEncoderEncodingProfileString, i.enEncodingProfile)},
          {"chroma", ValueText(SessMgr_GetVideoEncoderChromaSubSamplingString, i.enChromaSubSampling)},
          {"rate_control", ValueText(SessMgr_GetVideoEncoderRateControlModeString, i.enRateControlMode)},
          {"max_bitrate_kbps", Val(i.nMaxBitRateInKbps)},
          {"cpb_ms", Val(i.nCPBSizeMs)},
          {"slices", Val(i.nNumSlices)},
          {"aspect_ratio", ValueText(SessMgr_GetVideoEncoderAspectRatioString, i.enAspectRatio)},
          {"dynamic_range", ValueText(SessMgr_GetVideoEncoderDynamicRangeModeString, i.enDynamicRangeMode)}};
}

json StatsJson(const SMGR_VIDEO_ENCODER_INFO& i, const SMGR_VIDEO_ENCODER_STATS& s) {
  const bool hevc = i.enCodecAlgorithm == SMGR_VIDENC_CODEC_ALGORITHM_H265;
  return {{"id", Val(i.nID)},
          {"name", i.szName},
          {"state", ValueText(SessMgr_GetVideoEncoderStateString, s.enState)},
          {"state_value", s.enState},
          {"uptime_s", Val(s.nUpTimeInSecs)},
          {"input_present", s.bInputPresent != 0},
          {"input_format", InputFormatText(s.enInputFormat)},
          {"frames", Val(s.nEncodedFrames)},
          {"nals", Val(s.nEncodedNALs)},
          {"bytes", Val(s.nEncodedBytes)},
          {"resets", Val(s.nResets)},
          {"bitrate_kbps", Val(s.nBitRateInKbps)},
          {"load_percent", s.nLoadPercentage},
          {"pts", Val(s.nCurrentPTS)},
          {"last_idr_pts", Val(s.nLastIDRFramePTS)},
          {"level", hevc ? ValueText(SessMgr_GetVideoEncoderH265LevelString, s.enH26XLevel)
                         : ValueText(SessMgr_GetVideoEncoderH264LevelString, s.enH26XLevel)},
          {"latency_ms",
           {{"min", Val(s.nMinLatencyInMS)},
            {"avg", Val(s.nAverageLatencyInMS)},
            {"max", Val(s.nMaxLatencyInMS)}}},
          {"timecode", {s.nTCHours, s.nTCMinutes, s.nTCSeconds, s.nTCFames}}};
}

bool Query(const Encoder& encoder, SMGR_VIDEO_ENCODER_INFO* info, SMGR_VIDEO_ENCODER_STATS* stats) {
  *info = SMGR_VIDEO_ENCODER_INFO{};
  info->nSize = sizeof *info;
  *stats = SMGR_VIDEO_ENCODER_STATS{};
  stats->nSize = sizeof *stats;
  return SessMgr_GetVideoEncoderInfo(encoder.handle(), info) &&
         SessMgr_GetVideoEncoderStats(encoder.handle(), stats);
}

// One table (or JSON array); a --watch sample is one compact JSON line with its time.
int PrintStats(const std::vector<std::string>& requested, bool list, bool sample = false) {
  std::vector<std::string> targets = requested;
  if (targets.empty()) {
    std::vector<SMGR_VIDEO_ENCODER_INFO> encoders;
    if (!ListEncoders(&encoders)) return Fail("video-encoder list");
    for (const auto& info : encoders) targets.push_back(info.szName);
  }
  json array = json::array();
  Table table = list
                    ? Table({"ID", "NAME", "STATE", "INPUT", "CODEC", "RESOLUTION", "KBIT/S", "GOP"})
                    : Table({"ID", "NAME", "STATE", "UPTIME", "FRAMES", "BYTES", "KBIT/S", "LOAD", "RESETS"});
  for (const char* column : {"ID", "FRAMES", "BYTES", "KBIT/S", "LOAD", "RESETS", "GOP"})
    table.alignRight(column);
  for (const std::string& target : targets) {
    Encoder encoder;
    SMGR_VIDEO_ENCODER_INFO info;
    SMGR_VIDEO_ENCODER_STATS stats;
    if (!encoder.open(target) || !Query(encoder, &info, &stats)) return FailQuiet("video-encoder " + target);
    const std::string state = ValueText(SessMgr_GetVideoEncoderStateString, stats.enState);
    if (list) {
      json value = InfoJson(info);
      value["state"] = state;
      array.push_back(value);
      table.add({std::to_string(info.nID), info.szName, state,
                 ValueText(SessMgr_GetVideoEncoderInputTypeString, info.enInputInterface),
                 ValueText(SessMgr_GetVideoEncoderCodecAlgorithmString, info.enCodecAlgorithm),
                 FormatText(SessMgr_GetVideoEncoderOutputResolutionString, info.enOutputResolution),
                 std::to_string(info.nAdaptedBitRateInKbps), std::to_string(info.nGOPSize)});
    } else {
      array.push_back(StatsJson(info, stats));
      table.add({std::to_string(info.nID), info.szName, state, DurationText(Val(stats.nUpTimeInSecs)),
                 std::to_string(Val(stats.nEncodedFrames)), std::to_string(Val(stats.nEncodedBytes)),
                 std::to_string(stats.nBitRateInKbps), std::to_string(stats.nLoadPercentage) + "%",
                 std::to_string(Val(stats.nResets))});
    }
  }
  if (Globals().json && sample) {
    std::cout << json{{"time", TimestampText()}, {"encoders", array}}.dump() << "\n";
  } else if (Globals().json) {
    PrintJson(array);
  } else if (table.empty()) {
    std::cout << "No video encoders.\n";
  } else {
    std::cout << table.render();
  }
  std::cout.flush();
  return 0;
}

int RunShow(const std::string& target) {
  if (!Connect()) return kExitUnreachable;
  Encoder encoder;
  SMGR_VIDEO_ENCODER_INFO info;
  SMGR_VIDEO_ENCODER_STATS stats;
  if (!encoder.open(target) || !Query(encoder, &info, &stats))
    return FailQuiet("video-encoder show " + target);
  json value = InfoJson(info);
  value["stats"] = StatsJson(info, stats);
  if (Globals().json) {
    PrintJson(value);
    return 0;
  }
  for (const auto& [key, field] : value.items()) {
    if (key == "stats") continue;
    std::cout << key << ": " << (field.is_string() ? field.get<std::string>() : field.dump()) << "\n";
  }
  for (const auto& [key, field] : value["stats"].items()) {
    if (key == "id" || key == "name") continue;
    std::cout << key << ": " << (field.is_string() ? field.get<std::string>() : field.dump()) << "\n";
  }
  return 0;
}

// A value given by its library text (case and punctuation ignored: "h264" is
// "H.264") or by its number.
std::optional<int> ParseNamed(const std::string& text, char* (*nameOf)(int, char*, size_t), int low,
                              int high) {
  const auto squash = [](std::string s) {
    std::string out;
    for (char c : s)
      if (std::isalnum(static_cast<unsigned char>(c)))
        out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
  };
  for (int value = low; value <= high; ++value)
    if (squash(ValueText(nameOf, value)) == squash(text)) return value;
  if (!text.empty() && (std::isdigit(static_cast<unsigned char>(text[0])) || text[0] == '-')) {
    try {
      return std::stoi(text);
    } catch (const std::exception&) {
    }
  }
  return std::nullopt;
}

// "input" (or "auto"), "WxHp"/"WxHi", or a short name such as 1080i, 720p, 576p.
std::optional<VIDEO_FORMAT> ParseResolution(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), ::tolower);
  if (text == "input" || text == "auto" || text == "0") return VIDEO_FORMAT{0};
  static const std::pair<const char*, VIDEO_FORMAT> kShort[] = {
      {"2160p", SMGR_VIDENC_OUT_RESOLUTION_2160P}, {"1080p", SMGR_VIDENC_OUT_RESOLUTION_1080P},
      {"1080i", SMGR_VIDENC_OUT_RESOLUTION_1080I}, {"720p", SMGR_VIDENC_OUT_RESOLUTION_720P},
      {"576p", SMGR_VIDENC_OUT_RESOLUTION_576P},   {"576i", SMGR_VIDENC_OUT_RESOLUTION_720_576I},
      {"480p", SMGR_VIDENC_OUT_RESOLUTION_480P},   {"480i", SMGR_VIDENC_OUT_RESOLUTION_720_480I}};
  for (const auto& [name, format] : kShort)
    if (text == name) return format;
  unsigned width = 0, height = 0;
  char scan = 'p';
  if (sscanf(text.c_str(), "%ux%u%c", &width, &height, &scan) >= 2 && width < 8192 && height < 8192 &&
      (scan == 'p' || scan == 'i'))
    return VIDEO_FORMAT_CODE(width, height, 0, scan == 'i');
  return std::nullopt;
}

struct SetArgs {
  std::string target;
  std::optional<unsigned> bitrate, gop, maxBitrate, slices, pictureRate;
  std::string codec, resolution, profile, gopStructure, gopMode, rateControl, chroma, input;
};

int RunSet(const SetArgs& args) {
  const std::string operation = "video-encoder set " + args.target;
  SMGR_VIDEO_ENCODER_CFG cfg{};
  cfg.nSize = sizeof cfg;
  const auto number = [&](const std::optional<unsigned>& value, uint64_t flag, UINT* field) {
    if (!value) return;
    cfg.SetFieldsFlag |= flag;
    *field = *value;
  };
  number(args.bitrate, SMGR_VIDENC_SET_BITRATE, &cfg.nBitRateInKbps);
  number(args.gop, SMGR_VIDENC_SET_GOP_SIZE, &cfg.nGOPSize);
  number(args.maxBitrate, SMGR_VIDENC_SET_MAX_BITRATE, &cfg.nMaxBitRateInKbps);
  number(args.slices, SMGR_VIDENC_SET_NUM_SLICES, &cfg.nNumSlices);
  number(args.pictureRate, SMGR_VIDENC_SET_PICTURE_RATE, &cfg.nEncodedPictureRate);
  struct Named {
    const std::string& text;
    const char* option;
    char* (*nameOf)(int, char*, size_t);
    int low, high;
    uint64_t flag;
    int32_t* field;
  };
  const Named named[] = {
      {args.codec, "--codec", SessMgr_GetVideoEncoderCodecAlgorithmString, 0, 1,
       SMGR_VIDENC_SET_CODEC_ALGORITHM, &cfg.enCodecAlgorithm},
      {args.profile, "--profile", SessMgr_GetVideoEncoderEncodingProfileString, 1, 7,
       SMGR_VIDENC_SET_ENCODING_PROFILE, &cfg.enEncodingProfile},
      {args.gopStructure, "--gop-structure", SessMgr_GetVideoEncoderGOPStructureString, 0, 7,
       SMGR_VIDENC_SET_GOP_STRUCTURE, &cfg.enGOPStructure},
      {args.gopMode, "--gop-mode", SessMgr_GetVideoEncoderGOPModeString, 0, 6, SMGR_VIDENC_SET_GOP_MODE,
       &cfg.enGOPMode},
      {args.rateControl, "--rate-control", SessMgr_GetVideoEncoderRateControlModeString, 0, 2,
       SMGR_VIDENC_SET_RATE_CONTROL_MODE, &cfg.enRateControlMode},
      {args.chroma, "--chroma", SessMgr_GetVideoEncoderChromaSubSamplingString, 1, 4,
       SMGR_VIDENC_SET_CHROMA_SUBSAMPLING, &cfg.enChromaSubSampling},
      {args.input, "--input", SessMgr_GetVideoEncoderInputTypeString, 0, 3, SMGR_VIDENC_SET_INPUT_INTERFACE,
       &cfg.enInputInterface},
  };
  for (const Named& n : named) {
    if (n.text.empty()) continue;
    std::optional<int> value = ParseNamed(n.text, n.nameOf, n.low, n.high);
    if (!value) return Usage(operation, std::string("unknown value \"") + n.text + "\" for " + n.option);
    cfg.SetFieldsFlag |= n.flag;
    *n.field = *value;
  }
  if (!args.resolution.empty()) {
    std::optional<VIDEO_FORMAT> format = ParseResolution(args.resolution);
    if (!format) return Usage(operation, "resolution must be input, WxHp, WxHi, 1080i, 720p, ...");
    cfg.SetFieldsFlag |= SMGR_VIDENC_SET_OUTPUT_RESOLUTION;
    cfg.enOutputResolution = *format;
  }
  if (cfg.SetFieldsFlag == 0) return Usage(operation, "nothing to set");
  if (!Connect()) return kExitUnreachable;
  Encoder encoder;
  if (!encoder.open(args.target) || !SessMgr_ConfigureVideoEncoder(encoder.handle(), &cfg))
    return Fail(operation);
  if (!Globals().json) std::cout << "Video encoder " << args.target << " configured.\n";
  return 0;
}

using ControlFn = BOOL (*)(HVIDENC);

int RunControl(const char* verb, ControlFn control, const std::string& target, const char* done) {
  if (!Connect()) return kExitUnreachable;
  const std::string operation = std::string("video-encoder ") + verb + " " + target;
  Encoder encoder;
  if (!encoder.open(target) || !control(encoder.handle())) return FailQuiet(operation);
  if (!Globals().json) std::cout << "Video encoder " << target << " " << done << ".\n";
  return 0;
}

int RunSprop(const std::string& target) {
  if (!Connect()) return kExitUnreachable;
  Encoder encoder;
  char text[700];
  size_t size = sizeof text;
  if (!encoder.open(target) || !SessMgr_GetVideoEncoderSPROP(encoder.handle(), text, &size))
    return FailQuiet("video-encoder sprop " + target);
  if (Globals().json)
    PrintJson({{"sprop_parameter_sets", text}});
  else
    std::cout << text << "\n";
  return 0;
}

int RunCommand(const std::string& target, int command) {
  if (!Connect()) return kExitUnreachable;
  Encoder encoder;
  if (!encoder.open(target) || !SessMgr_ControlVideoEncoder(encoder.handle(), command, nullptr, nullptr))
    return FailQuiet("video-encoder control " + target);
  if (!Globals().json) std::cout << "Command " << command << " sent to video encoder " << target << ".\n";
  return 0;
}

int RunStats(const std::vector<std::string>& targets, double watchSeconds, int count) {
  if (!Connect()) return kExitUnreachable;
  return Watch(watchSeconds, count, [&] { return PrintStats(targets, false, watchSeconds > 0); });
}

void AddVideoEncoderCommands(Command& command) {
  int& status = command.status();
  CLI::App* venc = command.app().add_subcommand("video-encoder", "Video encoders (H.264/HEVC)");
  venc->alias("venc");
  venc->require_subcommand(1);

  venc->add_subcommand("list", "List every video encoder with its state")->callback([&status] {
    status = Connect() ? PrintStats({}, true) : kExitUnreachable;
  });

  std::string& showTarget = command.keep<std::string>();
  auto* show = venc->add_subcommand("show", "Configuration and counters of one encoder");
  show->add_option("encoder", showTarget, "Encoder ID or name")->required();
  show->callback([&status, &showTarget] { status = RunShow(showTarget); });

  SetArgs& set = command.keep<SetArgs>();
  auto* cmd = venc->add_subcommand("set", "Change some settings of an encoder (only those given)");
  cmd->add_option("encoder", set.target, "Encoder ID or name")->required();
  cmd->add_option("--bitrate", set.bitrate, "Bit rate, kbit/s");
  cmd->add_option("--gop", set.gop, "Pictures per GOP");
  cmd->add_option("--codec", set.codec, "H.264 or H.265");
  cmd->add_option("--resolution", set.resolution, "input, 1920x1080i, 1280x720p, 1080i, 720p, ...");
  cmd->add_option("--profile", set.profile, "Baseline, Main, High, High 10, High 4:2:2, Main 10, ...");
  cmd->add_option("--gop-structure", set.gopStructure, "IP, I, IBP, IBBP, ...");
  cmd->add_option("--gop-mode", set.gopMode, "Normal, Pyramidal, LowDelayP, ...");
  cmd->add_option("--rate-control", set.rateControl, "CBR, CVBR or LowLatencyVBR");
  cmd->add_option("--max-bitrate", set.maxBitrate, "Maximum bit rate (variable rate), kbit/s");
  cmd->add_option("--chroma", set.chroma, "4:2:0 8-bit, 4:2:0 10-bit, 4:2:2 8-bit, 4:2:2 10-bit");
  cmd->add_option("--slices", set.slices, "Slices per picture");
  cmd->add_option("--picture-rate", set.pictureRate, "Encoded pictures per second (0: as the input)");
  cmd->add_option("--input", set.input, "Input: BNC-1..BNC-4 (1..4 on ST 2110) or 0..3");
  cmd->callback([&status, &set] { status = RunSet(set); });

  struct Control {
    const char* name;
    const char* help;
    ControlFn fn;
    const char* done;
  };
  static const Control kControls[] = {
      {"start", "Start an encoder", SessMgr_StartVideoEncoder, "started"},
      {"stop", "Stop an encoder", SessMgr_StopVideoEncoder, "stopped"},
      {"reset", "Reset an encoder", SessMgr_ResetVideoEncoder, "reset"},
      {"reset-stats", "Zero an encoder's counters", SessMgr_ResetVideoEncoderStats, "counters reset"},
  };
  for (const Control& control : kControls) {
    std::string& target = command.keep<std::string>();
    auto* sub = venc->add_subcommand(control.name, control.help);
    sub->add_option("encoder", target, "Encoder ID or name")->required();
    sub->callback([&status, &control, &target] {
      status = RunControl(control.name, control.fn, target, control.done);
    });
  }

  std::string& spropTarget = command.keep<std::string>();
  auto* sprop = venc->add_subcommand("sprop", "sprop-parameter-sets of an encoder (base64 SPS,PPS)");
  sprop->add_option("encoder", spropTarget, "Encoder ID or name")->required();
  sprop->callback([&status, &spropTarget] { status = RunSprop(spropTarget); });

  struct ControlArgs {
    std::string target;
    int command = 1;
  };
  ControlArgs& controlArgs = command.keep<ControlArgs>();
  auto* control = venc->add_subcommand("control", "Send a control command (1: force an IDR picture)");
  control->add_option("encoder", controlArgs.target, "Encoder ID or name")->required();
  control->add_option("command", controlArgs.command, "Command number")->capture_default_str();
  control->callback(
      [&status, &controlArgs] { status = RunCommand(controlArgs.target, controlArgs.command); });

  struct StatsArgs {
    std::vector<std::string> targets;
    double watch = 0;
    int count = 0;
  };
  StatsArgs& statsArgs = command.keep<StatsArgs>();
  auto* stats = venc->add_subcommand("stats", "Counters of encoders (all when none is named)");
  stats->add_option("encoders", statsArgs.targets, "Encoder IDs or names");
  AddWatchOptions(stats, statsArgs.watch, statsArgs.count);
  stats->callback(
      [&status, &statsArgs] { status = RunStats(statsArgs.targets, statsArgs.watch, statsArgs.count); });
}

const CommandGroup kVideoEncoderCommands{"video-encoder", AddVideoEncoderCommands};

}  // namespace
}  // namespace smgrctl
