// smgrctl led commands: show, blink SECONDS, blink --stop.
#include <CLI/CLI.hpp>
#include <iostream>

#include "commands.h"
#include "output.h"

namespace smgrctl {
namespace {

using nlohmann::json;

int RunShow() {
  if (!Connect()) return 1;
  SMGR_LEDS_INFO info{};
  info.nSize = sizeof info;
  if (!SessMgr_GetLEDsInfo(&info)) return Fail("led show");
  const struct {
    const char* name;
    int state;
    uint32_t transitions;
  } leds[] = {{"Status", info.enStatusLED, info.nStatusLEDTransitions},
              {"4k", info.en4kLED, info.n4kLEDTransitions},
              {"Error", info.enErrorLED, info.nErrorLEDTransitions},
              {"Status1", info.enStatus1LED, info.nStatus1LEDTransitions},
              {"Status2", info.enStatus2LED, info.nStatus2LEDTransitions},
              {"Status3", info.enStatus3LED, info.nStatus3LEDTransitions},
              {"Status4", info.enStatus4LED, info.nStatus4LEDTransitions}};
  json array = json::array();
  Table table({"LED", "STATE", "TRANSITIONS"});
  table.alignRight("TRANSITIONS");
  for (const auto& led : leds) {
    const std::string state = ValueText(SessMgr_GetLEDStateString, led.state);
    array.push_back({{"led", led.name}, {"state", state}, {"transitions", led.transitions}});
    table.add({led.name, state, std::to_string(led.transitions)});
  }
  if (Globals().json) {
    PrintJson({{"leds", array}, {"blink_stop_uptime", info.nBlinkStopUpTime}});
    return 0;
  }
  std::cout << table.render();
  if (info.nBlinkStopUpTime)
    std::cout << "Blinking until up-time " << DurationText(info.nBlinkStopUpTime) << ".\n";
  return 0;
}

int RunBlink(unsigned seconds, bool stop) {
  if (!stop && seconds == 0) return Usage("led blink", "give SECONDS or --stop");
  if (!Connect()) return 1;
  if (stop ? !SessMgr_StopBlinkingLEDs() : !SessMgr_StartBlinkingLEDs(seconds))
    return Fail(stop ? "led blink --stop" : "led blink");
  if (!Globals().json) std::cout << (stop ? "LEDs stopped blinking.\n" : "LEDs blinking.\n");
  return 0;
}

void AddLedCommands(Command& command) {
  int& status = command.status();
  CLI::App* led = command.app().add_subcommand("led", "Front-panel LEDs");
  led->require_subcommand(1);
  led->add_subcommand("show", "States and transition counts of the LEDs")->callback([&status] {
    status = RunShow();
  });
  struct BlinkArgs {
    unsigned seconds = 0;
    bool stop = false;
  };
  BlinkArgs& blink = command.keep<BlinkArgs>();
  auto* cmd = led->add_subcommand("blink", "Blink the status LEDs to find the unit");
  auto* seconds = cmd->add_option("seconds", blink.seconds, "How long (1 to 86400 s)");
  cmd->add_flag("--stop", blink.stop, "Stop blinking")->excludes(seconds);
  cmd->callback([&status, &blink] { status = RunBlink(blink.seconds, blink.stop); });
}

const CommandGroup kLedCommands{"led", AddLedCommands};

}  // namespace
}  // namespace smgrctl
