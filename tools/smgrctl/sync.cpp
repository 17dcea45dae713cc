// smgrctl sync commands: the ST 2110 clock's synchronisation (show) and its
// clock mode (mode N; the simulator knows 0 free-run and 1 PTP).
#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>

#include "commands.h"
#include "output.h"

namespace smgrctl {
namespace {

using nlohmann::json;

std::string ClockIdText(const BYTE* id) {
  char text[32];
  snprintf(text, sizeof text, "%02x-%02x-%02x-%02x-%02x-%02x-%02x-%02x", id[0], id[1], id[2], id[3], id[4],
           id[5], id[6], id[7]);
  return text;
}

int RunShow() {
  if (!Connect()) return 1;
  SMGR_2110_SYNC_INFO info{};
  info.nSize = sizeof info;
  if (!SessMgr_Get2110SyncInfo(&info)) return Fail("sync show");
  const json value = {{"mode", info.enSyncMode},
                      {"synchronized", info.bSynchronized != 0},
                      {"precision_ns", Val(info.nPrecisionInNanoSecs)},
                      {"stc", Val(info.nCurrentSTC)},
                      {"ptp_clock_id", ClockIdText(info.acPTPClockID)},
                      {"ptp_time", info.nPTPTime}};
  if (Globals().json) return PrintJson(value), 0;
  Table fields({"FIELD", "VALUE"});
  fields.add({"Clock mode", std::to_string(info.enSyncMode)});
  fields.add({"Synchronized", info.bSynchronized ? "Yes" : "No"});
  fields.add({"Precision", std::to_string(Val(info.nPrecisionInNanoSecs)) + " ns"});
  fields.add({"System time clock", std::to_string(Val(info.nCurrentSTC))});
  fields.add({"PTP clock ID", value["ptp_clock_id"]});
  fields.add({"PTP time", std::to_string(info.nPTPTime)});
  std::cout << fields.render();
  return 0;
}

int RunMode(int mode) {
  if (!Connect()) return 1;
  if (!SessMgr_Set2110ClockMode(mode)) return Fail("sync mode " + std::to_string(mode));
  if (!Globals().json) std::cout << "Clock mode " << mode << " set.\n";
  return 0;
}

void AddSyncCommands(Command& command) {
  int& status = command.status();
  CLI::App* sync = command.app().add_subcommand("sync", "ST 2110 clock synchronisation (PTP)");
  sync->require_subcommand(1);
  sync->add_subcommand("show", "State of the clock's synchronisation")->callback([&status] {
    status = RunShow();
  });
  int& mode = command.keep<int>();
  auto* modeCmd = sync->add_subcommand("mode", "Choose the clock mode (0 free-run, 1 PTP)");
  modeCmd->add_option("mode", mode, "Clock mode")->required();
  modeCmd->callback([&status, &mode] { status = RunMode(mode); });
}

const CommandGroup kSyncCommands{"sync", AddSyncCommands};

}  // namespace
}  // namespace smgrctl
