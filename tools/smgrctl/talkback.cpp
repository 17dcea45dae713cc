// smgrctl talkback commands: show, stats (with --watch), start, stop, enable,
// disable, reset-stats and set for the appliance's return-audio channel.
#include <CLI/CLI.hpp>
#include <ctime>
#include <iostream>
#include <optional>

#include "commands.h"
#include "output.h"
#include "watch.h"

namespace smgrctl {
namespace {

using nlohmann::json;

// SetFieldsFlag bits of the daemon, in record order (the library names none).
constexpr uint64_t kSetIndex = 0x1, kSetName = 0x2, kSetAutoStart = 0x4, kSetPort = 0x8, kSetVolume = 0x10;

std::string StateText(int state) { return ValueText(SessMgr_GetTalkBackStateString, state); }

std::string TimeText(int32_t seconds) {
  if (seconds == 0) return "-";
  const time_t when = seconds;
  char text[32];
  strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", localtime(&when));
  return text;
}

bool ReadStats(SMGR_TALKBACK_STATS* stats) {
  *stats = SMGR_TALKBACK_STATS{};
  stats->nSize = sizeof *stats;
  return SessMgr_GetTalkBackStats(stats);
}

json StatsJson(const SMGR_TALKBACK_STATS& s) {
  return {{"state", StateText(s.enState)},
          {"packets", Val(s.nRxOkPackets)},
          {"bytes", Val(s.nRxOkBytes)},
          {"source", s.nRxOkPackets ? AddressText(s.SourceAddress) : ""},
          {"last_rx", s.iLastRxTime},
          {"discarded_packets", Val(s.nRxDiscardedPackets)},
          {"discarded_bytes", Val(s.nRxDiscardedBytes)},
          {"last_discarded_source", s.nRxDiscardedPackets ? AddressText(s.LastDiscardedSourceAddress) : ""},
          {"last_discard", s.iLastRxDiscardTime}};
}

int RunShow() {
  if (!Connect()) return 1;
  SMGR_TALKBACK_INFO info{};
  info.nSize = sizeof info;
  SMGR_TALKBACK_STATS stats;
  // Information and statistics leave the last error alone on a refusal: clear it first.
  SessMgr_SetLastError(SMGR_ERROR_SUCCESS);
  if (!SessMgr_GetTalkBackInfo(&info) || !ReadStats(&stats)) return Fail("talkback show");
  if (Globals().json) {
    PrintJson({{"index", info.nIndex},
               {"name", info.szName},
               {"port", info.usPort},
               {"volume", info.nVolume},
               {"state", StateText(stats.enState)}});
    return 0;
  }
  Table fields({"FIELD", "VALUE"});
  fields.add({"Index", std::to_string(info.nIndex)});
  fields.add({"Name", info.szName});
  fields.add({"UDP port", std::to_string(info.usPort)});
  fields.add({"Volume", std::to_string(info.nVolume)});
  fields.add({"State", StateText(stats.enState)});
  std::cout << fields.render();
  return 0;
}

int PrintStats() {
  SMGR_TALKBACK_STATS s;
  SessMgr_SetLastError(SMGR_ERROR_SUCCESS);
  if (!ReadStats(&s)) return Fail("talkback stats");
  if (Globals().json) {
    PrintJson(StatsJson(s));
    return 0;
  }
  Table table({"STATE", "PACKETS", "BYTES", "SOURCE", "LAST RX", "DISCARDED", "LAST DISCARDED FROM"});
  for (const char* column : {"PACKETS", "BYTES", "DISCARDED"}) table.alignRight(column);
  const json j = StatsJson(s);
  table.add({j["state"], std::to_string(Val(s.nRxOkPackets)), std::to_string(Val(s.nRxOkBytes)),
             s.nRxOkPackets ? j["source"].get<std::string>() : "-", TimeText(s.iLastRxTime),
             std::to_string(Val(s.nRxDiscardedPackets)),
             s.nRxDiscardedPackets ? j["last_discarded_source"].get<std::string>() : "-"});
  std::cout << table.render();
  return 0;
}

int RunControl(const std::string& verb, BOOL (*operation)()) {
  if (!Connect()) return 1;
  if (!operation()) return Fail("talkback " + verb);
  if (!Globals().json) std::cout << "Talkback: " << verb << " done.\n";
  return 0;
}

struct SetArgs {
  std::optional<int> port, volume, index;
  std::optional<std::string> name, autoStart;
};

int RunSet(const SetArgs& args) {
  SMGR_TALKBACK_CFG cfg{};
  cfg.nSize = sizeof cfg;
  if (args.port) {
    if (*args.port < 0 || *args.port > 65535) return Usage("talkback set", "a port is 0 to 65535");
    cfg.usPort = static_cast<WORD>(*args.port);
    cfg.SetFieldsFlag |= kSetPort;
  }
  if (args.volume) cfg.nVolume = *args.volume, cfg.SetFieldsFlag |= kSetVolume;
  if (args.index) cfg.nIndex = *args.index, cfg.SetFieldsFlag |= kSetIndex;
  if (args.name) {
    if (args.name->size() > SMGR_MAX_OBJECT_NAME_LENGTH)
      return Usage("talkback set", "name longer than 63 characters");
    snprintf(cfg.szName, sizeof cfg.szName, "%s", args.name->c_str());
    cfg.SetFieldsFlag |= kSetName;
  }
  if (args.autoStart) {
    if (*args.autoStart != "on" && *args.autoStart != "off")
      return Usage("talkback set", "--auto-start takes on or off");
    cfg.bAutoStart = *args.autoStart == "on";
    cfg.SetFieldsFlag |= kSetAutoStart;
  }
  if (cfg.SetFieldsFlag == 0) return Usage("talkback set", "nothing to set");
  if (!Connect()) return 1;
  SessMgr_SetLastError(SMGR_ERROR_SUCCESS);
  if (!SessMgr_ConfigureTalkBack(&cfg)) return Fail("talkback set");
  if (!Globals().json) std::cout << "Talkback configured.\n";
  return 0;
}

void AddTalkBackCommands(Command& command) {
  int& status = command.status();
  CLI::App* talkback = command.app().add_subcommand("talkback", "The return-audio channel");
  talkback->require_subcommand(1);
  talkback->add_subcommand("show", "Configuration and state of the channel")->callback([&status] {
    status = RunShow();
  });
  struct Control {
    const char* verb;
    const char* help;
    BOOL (*operation)();
  };
  static const Control kControls[] = {
      {"start", "Start listening for the remote sender", SessMgr_StartTalkBack},
      {"stop", "Stop the channel", SessMgr_StopTalkBack},
      {"enable", "Enable the channel administratively", SessMgr_EnableTalkBack},
      {"disable", "Disable (and stop) the channel", SessMgr_DisableTalkBack},
      {"reset-stats", "Zero the channel's counters", SessMgr_ResetTalkBackStats}};
  for (const Control& control : kControls) {
    talkback->add_subcommand(control.verb, control.help)->callback([&status, &control] {
      status = RunControl(control.verb, control.operation);
    });
  }
  struct StatsArgs {
    double watch = 0;
    int count = 0;
  };
  StatsArgs& stats = command.keep<StatsArgs>();
  auto* sub = talkback->add_subcommand("stats", "Packets received and discarded");
  AddWatchOptions(sub, stats.watch, stats.count);
  sub->callback([&status, &stats] { status = Connect() ? Watch(stats.watch, stats.count, PrintStats) : 1; });

  SetArgs& set = command.keep<SetArgs>();
  auto* cmd = talkback->add_subcommand("set", "Change the given settings of the channel (only those)");
  cmd->add_option("--port", set.port, "UDP port of the return audio");
  cmd->add_option("--volume", set.volume, "Play-out volume");
  cmd->add_option("--name", set.name, "Channel name");
  cmd->add_option("--index", set.index, "Channel index");
  cmd->add_option("--auto-start", set.autoStart, "Start by itself: on or off");
  cmd->callback([&status, &set] { status = RunSet(set); });
}

const CommandGroup kTalkBackCommands{"talkback", AddTalkBackCommands};

}  // namespace
}  // namespace smgrctl
