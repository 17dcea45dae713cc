// smgrctl temperature command: show (with --watch).
#include <CLI/CLI.hpp>
#include <ctime>
#include <iostream>

#include "commands.h"
#include "output.h"
#include "watch.h"

namespace smgrctl {
namespace {

std::string TimeText(int32_t epochSeconds) {
  if (epochSeconds == 0) return "-";
  time_t when = epochSeconds;
  char text[32];
  strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", localtime(&when));
  return text;
}

int PrintOnce() {
  SMGR_TEMPERATURE_INFO info{};
  info.nSize = sizeof info;
  if (!SessMgr_GetTemperatureInfo(&info)) return Fail("temperature show");
  if (Globals().json) {
    PrintJson({{"current_celsius", info.nCurrentInCelsius},
               {"current_time", info.iCurrentMeasurementTime},
               {"max_celsius", info.nMaxInCelsius},
               {"max_time", info.iMaxMeasurementTime},
               {"min_celsius", info.nMinInCelsius},
               {"min_time", info.iMinMeasurementTime},
               {"invalid_measurements", Val(info.nInvalidMeasurements)},
               {"invalid_time", info.iInvalidMeasurementTime},
               {"discarded_large_deltas", Val(info.nDiscardedLargeDeltas)},
               {"discarded_time", info.iDiscardedLargeDeltaMeasurementTime}});
    return 0;
  }
  Table table({"READING", "CELSIUS", "AT"});
  table.alignRight("CELSIUS");
  table.add({"current", std::to_string(info.nCurrentInCelsius), TimeText(info.iCurrentMeasurementTime)});
  table.add({"highest", std::to_string(info.nMaxInCelsius), TimeText(info.iMaxMeasurementTime)});
  table.add({"lowest", std::to_string(info.nMinInCelsius), TimeText(info.iMinMeasurementTime)});
  std::cout << table.render() << "Invalid readings: " << Val(info.nInvalidMeasurements)
            << ", discarded jumps: " << Val(info.nDiscardedLargeDeltas) << "\n";
  return 0;
}

void AddTemperatureCommands(Command& command) {
  int& status = command.status();
  CLI::App* temperature = command.app().add_subcommand("temperature", "The unit's temperature sensor");
  temperature->require_subcommand(1);
  struct ShowArgs {
    double watch = 0;
    int count = 0;
  };
  ShowArgs& args = command.keep<ShowArgs>();
  auto* show = temperature->add_subcommand("show", "Current, highest and lowest temperature");
  AddWatchOptions(show, args.watch, args.count);
  show->callback([&status, &args] { status = Connect() ? Watch(args.watch, args.count, PrintOnce) : 1; });
}

const CommandGroup kTemperatureCommands{"temperature", AddTemperatureCommands};

}  // namespace
}  // namespace smgrctl
