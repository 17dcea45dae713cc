// smgrctl audio-encoder (alias aenc) commands: list, show, start, stop, mute,
// unmute, set, stats (with --watch) and reset-stats. Encoders open by name;
// an ID is turned into its name through the enumeration.
#include <strings.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <optional>

#include "commands.h"
#include "output.h"
#include "paging.h"
#include "watch.h"

namespace smgrctl {
namespace {

using nlohmann::json;

// SetFieldsFlag bits the daemon gives the PTS offset and the capture (the library names none).
constexpr uint64_t kSetPtsOffset = 0x80, kSetCaptureToDisk = 0x100, kSetCaptureSize = 0x200;

bool ListEncoders(std::vector<SMGR_AUDIO_ENCODER_INFO>* encoders) {
  return CollectPages<SMGR_AUDIO_ENCODER_INFO>(SessMgr_EnumerateAudioEncoders, encoders, 8);
}

std::string Text(char* (*nameOf)(int, char*, size_t), int value) { return ValueText(nameOf, value); }
std::string Language(const char* tag) {
  char text[64] = "";
  const char* name = SessMgr_GetAudioEncoderLanguageString(tag, text, sizeof text);
  return name ? name : text[0] ? text : std::string(tag);
}

// An open encoder for the length of one command.
class Encoder {
 public:
  ~Encoder() {
    if (handle_) SessMgr_CloseAudioEncoder(&handle_);
  }
  // ID or name; false after printing the failure.
  bool open(const std::string& target, const std::string& operation) {
    std::string name = target;
    if (!target.empty() && std::all_of(target.begin(), target.end(), ::isdigit)) {
      std::vector<SMGR_AUDIO_ENCODER_INFO> all;
      if (!ListEncoders(&all)) return Fail(operation), false;
      auto it = std::find_if(all.begin(), all.end(),
                             [&](const auto& info) { return std::to_string(info.nID) == target; });
      if (it == all.end()) {
        SessMgr_SetLastError(SMGR_ERROR_NO_MATCHING_CODEC_FOUND);
        return Fail(operation), false;
      }
      name = it->szName;
    }
    if (!SessMgr_OpenAudioEncoder(name.c_str(), &handle_)) return Fail(operation), false;
    return true;
  }
  HAUDENC get() const { return handle_; }

 private:
  HAUDENC handle_ = nullptr;
};

bool ReadStats(HAUDENC encoder, SMGR_AUDIO_ENCODER_STATS* stats) {
  *stats = SMGR_AUDIO_ENCODER_STATS{};
  stats->nSize = sizeof *stats;
  return SessMgr_GetAudioEncoderStats(encoder, stats);
}

json InfoJson(const SMGR_AUDIO_ENCODER_INFO& info) {
  return {{"id", info.nID},
          {"name", info.szName},
          {"input", Text(SessMgr_GetAudioEncoderInputTypeString, info.enInputInterface)},
          {"algorithm", Text(SessMgr_GetAudioEncoderAlgorithmString, info.enAlgorithm)},
          {"bitrate_kbps", info.nBitRateInKbps},
          {"sample_rate_khz", info.enSampleRate},
          {"mode", Text(SessMgr_GetAudioEncoderModeString, info.enMode)},
          {"crc", info.bEnableCRCs != 0},
          {"delay_ms", info.nDelayInMS},
          {"pts_offset", info.nPTSOffset},
          {"capture", info.bCaptureToDisk != 0},
          {"capture_kb", info.nMaxCaptureSizeInKBytes},
          {"capture_file", info.szCaptureFileName},
          {"level", info.nInputLevel},
          {"stc", Text(SessMgr_GetAudioEncoderSTCSourceInterfaceString, info.enSTCSourceInterface)},
          {"language", std::string(info.szLanguage, strnlen(info.szLanguage, sizeof info.szLanguage))}};
}

json StatsJson(const SMGR_AUDIO_ENCODER_INFO& info, const SMGR_AUDIO_ENCODER_STATS& s) {
  return {{"id", info.nID},
          {"name", info.szName},
          {"state", Text(SessMgr_GetAudioEncoderStateString, s.enState)},
          {"frames", Val(s.nEncodedFrames)},
          {"bytes", Val(s.nEncodedBytes)},
          {"errors", Val(s.nErrors)},
          {"pts", Val(s.nCurrentPTS)},
          {"capture", Text(SessMgr_GetAudioEncoderCaptureStateString, s.enCaptureState)},
          {"capture_bytes", Val(s.nCaptureSize)},
          {"bitrate_kbps", s.nBitRateInKbps},
          {"stc", Text(SessMgr_GetAudioEncoderSTCSourceInterfaceString, s.enSTCSourceInterface)},
          {"max_sample", s.nMaxSampleValue}};
}

int RunList() {
  if (!Connect()) return 1;
  std::vector<SMGR_AUDIO_ENCODER_INFO> encoders;
  if (!ListEncoders(&encoders)) return Fail("audio-encoder list");
  json array = json::array();
  Table table({"ID", "NAME", "STATE", "INPUT", "ALGORITHM", "KBIT/S", "KHZ", "MODE", "LANGUAGE"});
  for (const char* column : {"ID", "KBIT/S", "KHZ"}) table.alignRight(column);
  for (const SMGR_AUDIO_ENCODER_INFO& info : encoders) {
    Encoder encoder;
    SMGR_AUDIO_ENCODER_STATS stats;
    if (!encoder.open(info.szName, "audio-encoder list")) return 1;  // open reported it
    if (!ReadStats(encoder.get(), &stats)) return Fail("audio-encoder stats " + std::string(info.szName));
    json entry = InfoJson(info);
    entry["state"] = Text(SessMgr_GetAudioEncoderStateString, stats.enState);
    array.push_back(entry);
    table.add({std::to_string(info.nID), info.szName, entry["state"], entry["input"], entry["algorithm"],
               std::to_string(info.nBitRateInKbps), std::to_string(info.enSampleRate),
               Text(SessMgr_GetAudioEncoderShortModeString, info.enMode), Language(info.szLanguage)});
  }
  if (Globals().json)
    PrintJson(array);
  else if (table.empty())
    std::cout << "No audio encoders.\n";
  else
    std::cout << table.render();
  return 0;
}

int RunShow(const std::string& target) {
  if (!Connect()) return 1;
  const std::string operation = "audio-encoder show " + target;
  Encoder encoder;
  if (!encoder.open(target, operation)) return 1;
  SMGR_AUDIO_ENCODER_INFO info{};
  info.nSize = sizeof info;
  SMGR_AUDIO_ENCODER_STATS stats;
  if (!SessMgr_GetAudioEncoderInfo(encoder.get(), &info) || !ReadStats(encoder.get(), &stats))
    return Fail(operation);
  if (Globals().json) {
    json value = InfoJson(info);
    value["stats"] = StatsJson(info, stats);
    PrintJson(value);
    return 0;
  }
  Table fields({"FIELD", "VALUE"});
  auto add = [&](const std::string& field, const std::string& value) { fields.add({field, value}); };
  add("ID", std::to_string(info.nID));
  add("Name", info.szName);
  add("State", Text(SessMgr_GetAudioEncoderStateString, stats.enState));
  add("Input", Text(SessMgr_GetAudioEncoderInputTypeString, info.enInputInterface));
  add("Algorithm", Text(SessMgr_GetAudioEncoderAlgorithmString, info.enAlgorithm));
  add("Bit rate", std::to_string(info.nBitRateInKbps) + " kbit/s");
  add("Sample rate", std::to_string(info.enSampleRate) + " kHz");
  add("Mode", Text(SessMgr_GetAudioEncoderModeString, info.enMode));
  add("CRCs", info.bEnableCRCs ? "Yes" : "No");
  add("Delay", std::to_string(info.nDelayInMS) + " ms");
  add("PTS offset", std::to_string(info.nPTSOffset));
  add("Input level", std::to_string(info.nInputLevel));
  add("Clock source", Text(SessMgr_GetAudioEncoderSTCSourceInterfaceString, info.enSTCSourceInterface));
  add("Language", Language(info.szLanguage));
  add("Capture", info.bCaptureToDisk
                     ? std::to_string(info.nMaxCaptureSizeInKBytes) + " KB to " + info.szCaptureFileName
                     : std::string("No"));
  add("Frames / bytes",
      std::to_string(Val(stats.nEncodedFrames)) + " / " + std::to_string(Val(stats.nEncodedBytes)));
  add("Level meter", std::to_string(stats.nMaxSampleValue));
  std::cout << fields.render();
  return 0;
}

int RunControl(const std::string& verb, const std::string& target) {
  if (!Connect()) return 1;
  const std::string operation = "audio-encoder " + verb + " " + target;
  Encoder encoder;
  if (!encoder.open(target, operation)) return 1;
  BOOL ok = FALSE;
  if (verb == "start")
    ok = SessMgr_StartAudioEncoder(encoder.get());
  else if (verb == "stop")
    ok = SessMgr_StopAudioEncoder(encoder.get());
  else if (verb == "mute" || verb == "unmute")
    ok = SessMgr_MuteAudioEncoder(encoder.get(), verb == "mute");
  else
    ok = SessMgr_ResetAudioEncoderStats(encoder.get());
  if (!ok) return Fail(operation);
  if (!Globals().json) std::cout << "Audio encoder " << target << ": " << verb << " done.\n";
  return 0;
}

// A value by the library's own text (any case) or as a number.
std::optional<int> ByName(char* (*nameOf)(int, char*, size_t), const std::string& text, int from, int to) {
  for (int value = from; value <= to; ++value)
    if (strcasecmp(ValueText(nameOf, value).c_str(), text.c_str()) == 0) return value;
  try {
    size_t used = 0;
    const int value = std::stoi(text, &used);
    if (used == text.size()) return value;
  } catch (const std::exception&) {
  }
  return std::nullopt;
}

// "analog", "SDI2CH34", "SDI1CH9_10", the library's "SDI2Ch3+4", or a number.
std::optional<int> ParseInput(std::string text) {
  if (auto value = ByName(SessMgr_GetAudioEncoderInputTypeString, text, 0, 32)) return value;
  std::transform(text.begin(), text.end(), text.begin(), ::toupper);
  unsigned input = 0, first = 0;
  char rest[8] = "";
  if (sscanf(text.c_str(), "SDI%1uCH%2u%7s", &input, &first, rest) < 2 || input < 1 || input > 4)
    return std::nullopt;
  if (first >= 10 && first % 10 == first / 10 + 1 && rest[0] == '\0') first /= 10;  // CH12, CH34, CH56, CH78
  if (first < 1 || first > 15 || first % 2 == 0) return std::nullopt;
  return static_cast<int>(8 * (input - 1) + (first + 1) / 2);
}

struct SetArgs {
  std::string target, input, algorithm, mode, stc, language, crc;
  std::optional<unsigned> bitrate, delay;
  std::optional<int> sampleRate, level, ptsOffset, captureKb;
};

int RunSet(const SetArgs& args) {
  const std::string operation = "audio-encoder set " + args.target;
  SMGR_AUDIO_ENCODER_CFG cfg{};
  cfg.nSize = sizeof cfg;
  auto choose = [&](const std::string& text, uint64_t bit, int32_t* field, std::optional<int> value) {
    if (text.empty()) return true;
    if (!value) return false;
    *field = *value;
    cfg.SetFieldsFlag |= bit;
    return true;
  };
  if (!choose(args.input, SMGR_AUDENC_SET_INPUT_INTERFACE, &cfg.enInputInterface, ParseInput(args.input)))
    return Usage(operation, "unknown input " + args.input);
  if (!choose(args.algorithm, SMGR_AUDENC_SET_ALGORITHM, &cfg.enAlgorithm,
              ByName(SessMgr_GetAudioEncoderAlgorithmString, args.algorithm, 0, 23)))
    return Usage(operation, "unknown algorithm " + args.algorithm);
  if (!choose(args.mode, SMGR_AUDENC_SET_MODE, &cfg.enMode,
              ByName(SessMgr_GetAudioEncoderShortModeString, args.mode, 0, 2)))
    return Usage(operation, "unknown mode " + args.mode);
  if (!choose(args.stc, SMGR_AUDENC_SET_STC_SOURCE_IF, &cfg.enSTCSourceInterface,
              strcasecmp(args.stc.c_str(), "auto") == 0
                  ? std::optional<int>(SMGR_AUDENC_STC_AUTOMATIC)
                  : ByName(SessMgr_GetAudioEncoderSTCSourceInterfaceString, args.stc, -1, 3)))
    return Usage(operation, "unknown clock source " + args.stc);
  if (!args.crc.empty()) {
    if (args.crc != "on" && args.crc != "off") return Usage(operation, "--crc takes on or off");
    cfg.bEnableCRCs = args.crc == "on";
    cfg.SetFieldsFlag |= SMGR_AUDENC_SET_CRC;
  }
  if (!args.language.empty()) {
    if (args.language.size() > 3) return Usage(operation, "a language is a three-letter tag");
    snprintf(cfg.szLanguage, sizeof cfg.szLanguage, "%s", args.language.c_str());
    cfg.SetFieldsFlag |= SMGR_AUDENC_SET_LANGUAGE;
  }
  auto number = [&](const auto& value, uint64_t bit, auto* field) {
    if (!value) return;
    *field = *value;
    cfg.SetFieldsFlag |= bit;
  };
  number(args.bitrate, SMGR_AUDENC_SET_BITRATE, &cfg.nBitRateInKbps);
  number(args.delay, SMGR_AUDENC_SET_DELAY, &cfg.nDelayInMS);
  number(args.sampleRate, SMGR_AUDENC_SET_SAMPLE_RATE, &cfg.enSampleRate);
  number(args.level, SMGR_AUDENC_SET_INPUT_LEVEL, &cfg.nInputLevel);
  number(args.ptsOffset, kSetPtsOffset, &cfg.nPTSOffset);
  if (args.captureKb) {
    cfg.bCaptureToDisk = *args.captureKb > 0;
    cfg.nMaxCaptureSizeInKBytes = *args.captureKb;
    cfg.SetFieldsFlag |= kSetCaptureToDisk | kSetCaptureSize;
  }
  if (cfg.SetFieldsFlag == 0) return Usage(operation, "nothing to set");
  if (!Connect()) return 1;
  Encoder encoder;
  if (!encoder.open(args.target, operation)) return 1;
  if (!SessMgr_ConfigureAudioEncoder(encoder.get(), &cfg)) return Fail(operation);
  if (!Globals().json) std::cout << "Audio encoder " << args.target << " configured.\n";
  return 0;
}

int PrintStats(const std::vector<std::string>& targets) {
  std::vector<SMGR_AUDIO_ENCODER_INFO> encoders;
  if (!ListEncoders(&encoders)) return Fail("audio-encoder stats");
  json array = json::array();
  Table table({"ID", "NAME", "STATE", "FRAMES", "BYTES", "ERRORS", "KBIT/S", "CAPTURE", "LEVEL"});
  for (const char* column : {"ID", "FRAMES", "BYTES", "ERRORS", "KBIT/S", "LEVEL"}) table.alignRight(column);
  for (const SMGR_AUDIO_ENCODER_INFO& info : encoders) {
    const bool wanted =
        targets.empty() || std::any_of(targets.begin(), targets.end(), [&](const std::string& t) {
          return t == info.szName || t == std::to_string(info.nID);
        });
    if (!wanted) continue;
    Encoder encoder;
    SMGR_AUDIO_ENCODER_STATS s;
    if (!encoder.open(info.szName, "audio-encoder stats")) return 1;
    if (!ReadStats(encoder.get(), &s)) return Fail("audio-encoder stats " + std::string(info.szName));
    array.push_back(StatsJson(info, s));
    table.add({std::to_string(info.nID), info.szName, Text(SessMgr_GetAudioEncoderStateString, s.enState),
               std::to_string(Val(s.nEncodedFrames)), std::to_string(Val(s.nEncodedBytes)),
               std::to_string(Val(s.nErrors)), std::to_string(s.nBitRateInKbps),
               Text(SessMgr_GetAudioEncoderCaptureStateString, s.enCaptureState),
               std::to_string(s.nMaxSampleValue)});
  }
  if (!targets.empty() && array.size() != targets.size()) {
    SessMgr_SetLastError(SMGR_ERROR_NO_MATCHING_CODEC_FOUND);
    return Fail("audio-encoder stats");
  }
  if (Globals().json)
    PrintJson(array);
  else
    std::cout << table.render();
  return 0;
}

void AddAudioEncoderCommands(Command& command) {
  int& status = command.status();
  CLI::App* aenc = command.app().add_subcommand("audio-encoder", "Audio encoders");
  aenc->alias("aenc");
  aenc->require_subcommand(1);
  aenc->add_subcommand("list", "List every audio encoder with its state")->callback([&status] {
    status = RunList();
  });

  std::string& showTarget = command.keep<std::string>();
  auto* show = aenc->add_subcommand("show", "Configuration, state and counters of one encoder");
  show->add_option("encoder", showTarget, "Encoder ID or name")->required();
  show->callback([&status, &showTarget] { status = RunShow(showTarget); });

  static const std::pair<const char*, const char*> kControls[] = {
      {"start", "Start an encoder"},
      {"stop", "Stop an encoder"},
      {"mute", "Mute a working encoder"},
      {"unmute", "Unmute a muted encoder"},
      {"reset-stats", "Zero an encoder's counters"}};
  for (const auto& [verb, help] : kControls) {
    std::string& target = command.keep<std::string>();
    auto* sub = aenc->add_subcommand(verb, help);
    sub->add_option("encoder", target, "Encoder ID or name")->required();
    sub->callback([&status, &target, verb = std::string(verb)] { status = RunControl(verb, target); });
  }

  SetArgs& set = command.keep<SetArgs>();
  auto* cmd = aenc->add_subcommand("set", "Change the given settings of an encoder (only those)");
  cmd->add_option("encoder", set.target, "Encoder ID or name")->required();
  cmd->add_option("--input", set.input, "analog, SDI<n>CH<pair> (SDI1CH12, SDI2CH9_10) or a number");
  cmd->add_option("--algorithm", set.algorithm,
                  "PCM, Raw, MPEG2-ADTS, MPEG4-ADTS, LOAS, HE-V1-LOAS, HE-V2-LOAS");
  cmd->add_option("--bitrate", set.bitrate, "Bit rate, kbit/s");
  cmd->add_option("--sample-rate", set.sampleRate, "Sampling rate, kHz");
  cmd->add_option("--mode", set.mode, "Stereo, Mono or Mono-R");
  cmd->add_option("--crc", set.crc, "Protect frames with CRCs: on or off");
  cmd->add_option("--delay", set.delay, "Audio delay, ms");
  cmd->add_option("--level", set.level, "Input level");
  cmd->add_option("--stc", set.stc, "Clock source: auto or BNC-1 .. BNC-4");
  cmd->add_option("--language", set.language, "Three-letter language tag");
  cmd->add_option("--pts-offset", set.ptsOffset, "Offset added to the time stamps");
  cmd->add_option("--capture", set.captureKb, "Capture this many KB to disk (0: no capture)");
  cmd->callback([&status, &set] { status = RunSet(set); });

  struct StatsArgs {
    std::vector<std::string> targets;
    double watch = 0;
    int count = 0;
  };
  StatsArgs& stats = command.keep<StatsArgs>();
  auto* sub = aenc->add_subcommand("stats", "Counters of encoders (all when none is named)");
  sub->add_option("encoders", stats.targets, "Encoder IDs or names");
  AddWatchOptions(sub, stats.watch, stats.count);
  sub->callback([&status, &stats] {
    status = Connect() ? Watch(stats.watch, stats.count, [&] { return PrintStats(stats.targets); }) : 1;
  });
}

const CommandGroup kAudioEncoderCommands{"audio-encoder", AddAudioEncoderCommands};

}  // namespace
}  // namespace smgrctl
