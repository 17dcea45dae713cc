// smgrctl essence commands (ST 2110 received flows): list, show, create, set,
// start, stop, delete, stats (with --watch), reset-stats.
#include <arpa/inet.h>
#include <signal.h>

#include <CLI/CLI.hpp>
#include <atomic>
#include <chrono>
#include <cstring>
#include <ctime>
#include <iostream>
#include <thread>

#include "commands.h"
#include "output.h"
#include "paging.h"
#include "watch.h"

namespace smgrctl {
namespace {

using nlohmann::json;

std::atomic<bool> g_interrupted{false};
void OnInterrupt(int) { g_interrupted = true; }

// ---- Video format codes (packed: 1 | width << 22 | height << 9 | rate << 1 | interlaced) ------------

constexpr uint64_t kPackedFlag = 0x8000000000000000ull;

std::string FormatText(uint64_t format) {
  char text[48];
  if (format & kPackedFlag) {
    snprintf(text, sizeof text, "%ux%u%c%u", static_cast<unsigned>((format >> 22) & 0x1FFF),
             static_cast<unsigned>((format >> 9) & 0x1FFF), (format & 1) ? 'i' : 'p',
             static_cast<unsigned>((format >> 1) & 0xFF));
    return text;
  }
  if (format == 0) return "Auto-Detect";
  if (format == 1) return "Unknown";
  if (format == 10) return "720x480i29";
  snprintf(text, sizeof text, "(Invalid:%d)", static_cast<int>(static_cast<uint32_t>(format)));
  return text;
}

// "1920x1080i30", "1280x720p59" or a code in hexadecimal ("0x80000001E008703D").
bool ParseFormat(const std::string& text, uint64_t* format) {
  unsigned width = 0, height = 0, rate = 0;
  char scan = 0;
  int used = 0;
  if (sscanf(text.c_str(), "%ux%u%c%u%n", &width, &height, &scan, &rate, &used) == 4 &&
      used == static_cast<int>(text.size()) && (scan == 'i' || scan == 'p') && width < 8192 &&
      height < 8192 && rate < 256) {
    *format = kPackedFlag | (uint64_t{width} << 22) | (uint64_t{height} << 9) | (uint64_t{rate} << 1) |
              (scan == 'i' ? 1u : 0u);
    return true;
  }
  try {
    size_t end = 0;
    *format = std::stoull(text, &end, 16);
    return end == text.size() && text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  } catch (...) {
    return false;
  }
}

bool ParseIp(const std::string& text, SMGR_IP_ADDRESS* address) {
  *address = SMGR_IP_ADDRESS{};
  if (inet_pton(AF_INET, text.c_str(), address->acAddress) == 1)
    return address->enType = SMGR_IPV4_ADDRESS, true;
  if (inet_pton(AF_INET6, text.c_str(), address->acAddress) == 1)
    return address->enType = SMGR_IPV6_ADDRESS, true;
  return false;
}

std::string MediaName(int media) { return ValueText(SessMgr_GetEssenceMediaTypeString, media); }
std::string StateName(int state) { return ValueText(SessMgr_GetEssenceStateString, state); }
std::string SourceText(const SMGR_IP_ADDRESS& address) {
  static const BYTE zero[16] = {};
  return memcmp(address.acAddress, zero, sizeof zero) == 0 ? "-" : AddressText(address);
}

std::string MediaText(const SMGR_ESSENCE_INFO& info) {
  if (info.enMediaType == SMGR_ESSENCE_MEDIA_TYPE_VIDEO)
    return FormatText(Val(info.Media.Video.enInputFormat));
  if (info.enMediaType == SMGR_ESSENCE_MEDIA_TYPE_AUDIO)
    return std::to_string(info.Media.Audio.nNumOfChannels) + " ch, " +
           ValueText(SessMgr_GetEssenceAudioPacketTimeString, info.Media.Audio.enPacketTime);
  return "-";
}

json InfoJson(const SMGR_ESSENCE_INFO& info) {
  json value = {{"id", info.nIndex},
                {"name", info.szName},
                {"media", MediaName(info.enMediaType)},
                {"media_value", info.enMediaType},
                {"input", info.nInputChannel},
                {"auto_start", info.bAutoStart != 0},
                {"payload", info.nRTPPayload},
                {"address", AddressText(info.Address)},
                {"port", info.usPort},
                {"source", SourceText(info.SourceAddress)}};
  if (info.enMediaType == SMGR_ESSENCE_MEDIA_TYPE_VIDEO) {
    value["format"] = FormatText(Val(info.Media.Video.enInputFormat));
    value["format_value"] = Val(info.Media.Video.enInputFormat);
  } else if (info.enMediaType == SMGR_ESSENCE_MEDIA_TYPE_AUDIO) {
    const SMGR_AUDIO_ESSENCE_INFO& audio = info.Media.Audio;
    value["channels"] = audio.nNumOfChannels;
    value["packet_time"] = ValueText(SessMgr_GetEssenceAudioPacketTimeString, audio.enPacketTime);
    value["sample_mode"] = ValueText(SessMgr_GetEssenceAudioSampleModeString, audio.enSampleMode);
    value["sample_frequency"] =
        ValueText(SessMgr_GetEssenceAudioSampleFrequencyString, audio.enSampleFrequency);
  }
  return value;
}

json StatsJson(const SMGR_ESSENCE_INFO& info, const SMGR_ESSENCE_STATS& stats) {
  return {{"id", info.nIndex},
          {"name", info.szName},
          {"state", StateName(stats.enState)},
          {"stream_sync", stats.bStreamSync != 0},
          {"rx_packets", Val(stats.nRxPackets)},
          {"rx_discarded_packets", Val(stats.nRxDiscardedPackets)},
          {"rx_lost_packets", Val(stats.nRxLostPackets)},
          {"detection",
           ValueText(SessMgr_GetEssenceVideoFormatDetectionStateString, stats.enVideoFormatDetectionState)},
          {"detected_format", FormatText(Val(stats.enDetectedVideoFormat))}};
}

bool Info(const std::string& target, SMGR_ESSENCE_INFO* info) {
  SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
  *info = SMGR_ESSENCE_INFO{};
  info->nSize = sizeof *info;
  return SessMgr_GetEssenceInfo(&selector, info);
}

bool Stats(int id, SMGR_ESSENCE_STATS* stats) {
  SMGR_OBJECT_SELECTOR selector{};
  selector.enType = SMGR_SELECTBY_OBJECT_ID;
  selector.Via.ID = id;
  *stats = SMGR_ESSENCE_STATS{};
  stats->nSize = sizeof *stats;
  return SessMgr_GetEssenceStats(&selector, stats);
}

int RunList() {
  if (!Connect()) return 1;
  std::vector<SMGR_ESSENCE_INFO> essences;
  if (!CollectPages<SMGR_ESSENCE_INFO>(SessMgr_EnumerateEssences, &essences, 1)) return Fail("essence list");
  json array = json::array();
  Table table({"ID", "NAME", "MEDIA", "INPUT", "STATE", "ADDRESS", "PORT", "FORMAT"});
  for (const char* column : {"ID", "INPUT", "PORT"}) table.alignRight(column);
  for (const SMGR_ESSENCE_INFO& info : essences) {
    SMGR_ESSENCE_STATS stats;
    if (!Stats(info.nIndex, &stats)) return Fail("essence stats " + std::to_string(info.nIndex));
    json entry = InfoJson(info);
    entry["state"] = StateName(stats.enState);
    array.push_back(entry);
    table.add({std::to_string(info.nIndex), info.szName, MediaName(info.enMediaType),
               std::to_string(info.nInputChannel), StateName(stats.enState), AddressText(info.Address),
               std::to_string(info.usPort), MediaText(info)});
  }
  if (Globals().json)
    PrintJson(array);
  else if (table.empty())
    std::cout << "No essences.\n";
  else
    std::cout << table.render();
  return 0;
}

int RunShow(const std::string& target) {
  if (!Connect()) return 1;
  SMGR_ESSENCE_INFO info;
  if (!Info(target, &info)) return Fail("essence show " + target);
  SMGR_ESSENCE_STATS stats;
  if (!Stats(info.nIndex, &stats)) return Fail("essence stats " + target);
  json value = InfoJson(info);
  value["stats"] = StatsJson(info, stats);
  if (Globals().json) return PrintJson(value), 0;
  Table fields({"FIELD", "VALUE"});
  auto add = [&](const std::string& field, const json& v) {
    fields.add({field, v.is_string() ? v.get<std::string>() : v.dump()});
  };
  add("ID", value["id"]);
  add("Name", value["name"]);
  add("Media", value["media"]);
  add("Input channel", value["input"]);
  add("Auto-start", info.bAutoStart ? "Yes" : "No");
  add("RTP payload", value["payload"]);
  add("Address", value["address"]);
  add("Port", value["port"]);
  add("Source", value["source"]);
  for (const char* key : {"format", "channels", "packet_time", "sample_mode", "sample_frequency"})
    if (value.contains(key)) add(key, value[key]);
  const json& s = value["stats"];
  add("State", s["state"]);
  add("Stream sync", stats.bStreamSync ? "Yes" : "No");
  add("Packets received / lost",
      std::to_string(Val(stats.nRxPackets)) + " / " + std::to_string(Val(stats.nRxLostPackets)));
  if (info.enMediaType == SMGR_ESSENCE_MEDIA_TYPE_VIDEO) {
    add("Format detection", s["detection"]);
    add("Detected format", s["detected_format"]);
  }
  std::cout << fields.render();
  return 0;
}

struct EssenceArgs {
  std::string target, name;
  std::string video, ptime = "1ms", address, source, autoStartText;
  int audio = 0, port = 0, payload = 0, input = 0;
  bool data = false, autoStart = false;
  CLI::App* cmd = nullptr;
  bool given(const char* option) const { return cmd->count(option) > 0; }
};

// Fills the configuration from the options given; in `set` each sets its field's bit.
int FillConfig(const std::string& operation, const EssenceArgs& args, bool create, SMGR_ESSENCE_CFG* cfg) {
  cfg->nSize = sizeof *cfg;
  uint64_t flags = 0;
  const int medias = args.given("--video") + args.given("--audio") + args.given("--data");
  if (medias > 1) return Usage(operation, "give one of --video, --audio, --data");
  if (create && medias == 0) return Usage(operation, "give one of --video FORMAT, --audio CHANNELS, --data");
  if (args.given("--video")) {
    uint64_t format = 0;
    if (!ParseFormat(args.video, &format)) return Usage(operation, "bad video format \"" + args.video + "\"");
    cfg->enMediaType = SMGR_ESSENCE_MEDIA_TYPE_VIDEO;
    cfg->Media.Video.enInputFormat = format;
    flags |= SMGR_ESSENCE_SET_MEDIA_TYPE | SMGR_ESSENCE_SET_VIDEO_FORMAT;
  } else if (args.given("--audio") || args.given("--ptime")) {
    cfg->enMediaType = SMGR_ESSENCE_MEDIA_TYPE_AUDIO;
    if (args.ptime != "1ms" && args.ptime != "125us") return Usage(operation, "--ptime is 1ms or 125us");
    cfg->Media.Audio.enPacketTime =
        args.ptime == "1ms" ? SMGR_AUDIO_ESSENCE_PACKET_TIME_1MS : SMGR_AUDIO_ESSENCE_PACKET_TIME_125US;
    cfg->Media.Audio.nNumOfChannels = static_cast<uint32_t>(args.audio);
    if (create || args.given("--ptime")) flags |= SMGR_ESSENCE_SET_AUDIO_PACKET_TIME;
    if (args.given("--audio")) flags |= SMGR_ESSENCE_SET_MEDIA_TYPE | SMGR_ESSENCE_SET_AUDIO_NUM_CHANNELS;
  } else if (args.data) {
    cfg->enMediaType = SMGR_ESSENCE_MEDIA_TYPE_DATA;
    flags |= SMGR_ESSENCE_SET_MEDIA_TYPE;
  }
  if (args.given("--address")) {
    if (!ParseIp(args.address, &cfg->Address))
      return Usage(operation, "bad address \"" + args.address + "\"");
    flags |= SMGR_ESSENCE_SET_ADDRESS;
  } else if (create) {
    return Usage(operation, "--address is required");
  }
  if (args.given("--source")) {
    if (!ParseIp(args.source, &cfg->SourceAddress))
      return Usage(operation, "bad source \"" + args.source + "\"");
    flags |= SMGR_ESSENCE_SET_SOURCE_ADDRESS;
  }
  cfg->usPort = static_cast<uint16_t>(args.port);
  if (args.given("--port")) flags |= SMGR_ESSENCE_SET_PORT;
  cfg->nRTPPayload = static_cast<uint32_t>(args.payload);
  if (args.given("--payload")) flags |= SMGR_ESSENCE_SET_RTP_PAYLOAD;
  if (create && !args.given("--payload"))
    cfg->nRTPPayload = cfg->enMediaType == SMGR_ESSENCE_MEDIA_TYPE_VIDEO   ? 96
                       : cfg->enMediaType == SMGR_ESSENCE_MEDIA_TYPE_AUDIO ? 97
                                                                           : 100;
  cfg->nInputChannel = static_cast<uint32_t>(args.input);
  if (args.given("--input")) flags |= SMGR_ESSENCE_SET_INPUT_CHANNEL;
  if (create) {
    cfg->bAutoStart = args.autoStart;
  } else if (args.given("--auto-start")) {
    if (args.autoStartText != "on" && args.autoStartText != "off")
      return Usage(operation, "--auto-start is on or off");
    cfg->bAutoStart = args.autoStartText == "on";
    flags |= SMGR_ESSENCE_SET_AUTO_START;
  }
  if (args.name.size() >= sizeof cfg->szName) return Usage(operation, "name longer than 63 characters");
  snprintf(cfg->szName, sizeof cfg->szName, "%s", args.name.c_str());
  if (!create && args.given("--name")) flags |= SMGR_ESSENCE_SET_NAME;
  if (!create && flags == 0) return Usage(operation, "nothing to change");
  cfg->SetFieldsFlag = create ? 0 : flags;
  return 0;
}

void ReportWarning(const std::string& operation) {
  if (!(SessMgr_GetLastError() & SMGR_IS_SUCCESS_WITH_WARNING)) return;
  char text[256];
  std::cerr << "smgrctl: " << operation << ": warning: " << SessMgr_GetLastErrorString(text, sizeof text)
            << "\n";
}

int RunCreate(const EssenceArgs& args) {
  const std::string operation = "essence create " + args.name;
  SMGR_ESSENCE_CFG cfg{};
  if (int status = FillConfig(operation, args, true, &cfg)) return status;
  if (!Connect()) return 1;
  HESSENCE essence = nullptr;
  if (!SessMgr_CreateEssence(&cfg, &essence)) return Fail(operation);
  ReportWarning(operation);
  int id = 0;
  SessMgr_GetEssenceID(essence, &id);
  SessMgr_CloseEssence(&essence);
  SMGR_ESSENCE_INFO info;
  const bool haveInfo = Info(std::to_string(id), &info);
  if (Globals().json)
    PrintJson(haveInfo ? InfoJson(info) : json{{"id", id}});
  else
    std::cout << "Created essence " << id << " \"" << (haveInfo ? info.szName : args.name.c_str()) << "\"\n";
  return 0;
}

int RunSet(const EssenceArgs& args) {
  const std::string operation = "essence set " + args.target;
  SMGR_ESSENCE_CFG cfg{};
  if (int status = FillConfig(operation, args, false, &cfg)) return status;
  if (!Connect()) return 1;
  SMGR_OBJECT_SELECTOR selector = ParseSelector(args.target);
  if (!SessMgr_ConfigureEssence(&selector, &cfg)) return Fail(operation);
  if (!Globals().json) std::cout << "Essence " << args.target << " changed.\n";
  return 0;
}

using ControlFn = BOOL (*)(const SMGR_OBJECT_SELECTOR*);

int RunControl(const char* verb, ControlFn control, const std::string& target, const char* done) {
  if (!Connect()) return 1;
  SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
  const std::string operation = std::string("essence ") + verb + " " + target;
  if (!control(&selector)) return Fail(operation);
  ReportWarning(operation);
  if (!Globals().json) std::cout << "Essence " << target << " " << done << ".\n";
  return 0;
}

int PrintStatsOnce(const std::vector<std::string>& targets) {
  std::vector<SMGR_ESSENCE_INFO> essences;
  if (targets.empty()) {
    if (!CollectPages<SMGR_ESSENCE_INFO>(SessMgr_EnumerateEssences, &essences, 1))
      return Fail("essence stats");
  }
  for (const std::string& target : targets) {
    SMGR_ESSENCE_INFO info;
    if (!Info(target, &info)) return Fail("essence stats " + target);
    essences.push_back(info);
  }
  json array = json::array();
  Table table({"ID", "NAME", "STATE", "SYNC", "PACKETS", "LOST", "DETECTION"});
  for (const char* column : {"ID", "PACKETS", "LOST"}) table.alignRight(column);
  for (const SMGR_ESSENCE_INFO& info : essences) {
    SMGR_ESSENCE_STATS stats;
    if (!Stats(info.nIndex, &stats)) return Fail("essence stats " + std::to_string(info.nIndex));
    json value = StatsJson(info, stats);
    array.push_back(value);
    table.add({std::to_string(info.nIndex), info.szName, value["state"], stats.bStreamSync ? "Yes" : "No",
               std::to_string(Val(stats.nRxPackets)), std::to_string(Val(stats.nRxLostPackets)),
               value["detection"]});
  }
  if (Globals().json)
    PrintJson(array);
  else if (table.empty())
    std::cout << "No essences.\n";
  else
    std::cout << table.render();
  std::cout.flush();
  return 0;
}

int RunStats(const std::vector<std::string>& targets, double watchSeconds, int count) {
  if (!Connect()) return 1;
  if (watchSeconds <= 0) return PrintStatsOnce(targets);
  struct sigaction action {};
  action.sa_handler = OnInterrupt;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  for (int round = 0; !g_interrupted && (count <= 0 || round < count); ++round) {
    if (round) {
      const auto until = std::chrono::steady_clock::now() + std::chrono::duration<double>(watchSeconds);
      while (!g_interrupted && std::chrono::steady_clock::now() < until)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
      if (g_interrupted) break;
      if (!Globals().json) std::cout << "\n";
    }
    if (int status = PrintStatsOnce(targets)) return status;
  }
  return 0;
}

void AddOptions(CLI::App* cmd, EssenceArgs& args, bool create) {
  args.cmd = cmd;
  cmd->add_option("--video", args.video,
                  "Video essence of this format (1920x1080i30, 1280x720p59 or hex code)");
  cmd->add_option("--audio", args.audio, "Audio essence of this many channels")->check(CLI::Range(0, 1000));
  cmd->add_option("--ptime", args.ptime, "Audio packet time: 1ms or 125us");
  cmd->add_flag("--data", args.data, "ANC data essence");
  cmd->add_option("--address", args.address, "Multicast group, or the unit's own address (unicast)");
  cmd->add_option("--port", args.port, "UDP destination port")->check(CLI::Range(0, 65535));
  cmd->add_option("--source", args.source, "Source address to accept");
  cmd->add_option("--payload", args.payload, "RTP payload type (default 96 video, 97 audio, 100 data)")
      ->check(CLI::Range(0, 255));
  cmd->add_option("--input", args.input, "Encoder input channel fed (0 first)")->check(CLI::Range(0, 1000));
  if (create) {
    cmd->add_flag("--auto-start", args.autoStart, "Start the essence with the unit");
  } else {
    cmd->add_option("--name", args.name, "New name");
    cmd->add_option("--auto-start", args.autoStartText, "on or off");
  }
}

void AddEssenceCommands(Command& command) {
  int& status = command.status();
  CLI::App* essence = command.app().add_subcommand("essence", "ST 2110 essences (received flows)");
  essence->require_subcommand(1);
  essence->add_subcommand("list", "List every essence with its state")->callback([&status] {
    status = RunList();
  });

  std::string& showTarget = command.keep<std::string>();
  auto* show = essence->add_subcommand("show", "Configuration, state and counters of one essence");
  show->add_option("essence", showTarget, "Essence ID or name")->required();
  show->callback([&status, &showTarget] { status = RunShow(showTarget); });

  EssenceArgs& create = command.keep<EssenceArgs>();
  auto* cmd = essence->add_subcommand("create", "Create an essence");
  cmd->add_option("name", create.name, "Essence name (empty lets the daemon choose)")->required();
  AddOptions(cmd, create, true);
  cmd->callback([&status, &create] { status = RunCreate(create); });

  EssenceArgs& set = command.keep<EssenceArgs>();
  auto* setCmd = essence->add_subcommand("set", "Change the given fields of an essence");
  setCmd->add_option("essence", set.target, "Essence ID or name")->required();
  AddOptions(setCmd, set, false);
  setCmd->callback([&status, &set] { status = RunSet(set); });

  struct Control {
    const char* name;
    const char* help;
    ControlFn fn;
    const char* done;
  };
  static const Control kControls[] = {
      {"start", "Start receiving an essence", SessMgr_StartEssence, "started"},
      {"stop", "Stop receiving an essence", SessMgr_StopEssence, "stopped"},
      {"delete", "Delete a stopped essence", SessMgr_DeleteEssence, "deleted"},
      {"reset-stats", "Zero an essence's counters", SessMgr_ResetEssenceStats, "counters reset"},
  };
  for (const Control& control : kControls) {
    std::string& target = command.keep<std::string>();
    auto* sub = essence->add_subcommand(control.name, control.help);
    sub->add_option("essence", target, "Essence ID or name")->required();
    sub->callback([&status, &control, &target] {
      status = RunControl(control.name, control.fn, target, control.done);
    });
  }

  struct StatsArgs {
    std::vector<std::string> targets;
    double watch = 0;
    int count = 0;
  };
  StatsArgs& statsArgs = command.keep<StatsArgs>();
  auto* stats = essence->add_subcommand("stats", "Counters of essences (all when none is named)");
  stats->add_option("essences", statsArgs.targets, "Essence IDs or names");
  AddWatchOptions(stats, statsArgs.watch, statsArgs.count);
  stats->callback(
      [&status, &statsArgs] { status = RunStats(statsArgs.targets, statsArgs.watch, statsArgs.count); });
}

const CommandGroup kEssenceCommands{"essence", AddEssenceCommands};

}  // namespace
}  // namespace smgrctl
