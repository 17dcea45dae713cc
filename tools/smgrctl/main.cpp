// smgrctl: command-line control of the session manager daemon through the
// client library, for operators (aligned tables) and scripts (--json).
#include <CLI/CLI.hpp>
#include <cstdlib>
#include <iostream>

#include "commands.h"
#include "output.h"

int main(int argc, char** argv) {
  CLI::App app{"smgrctl: control the appliance's session manager daemon (sessmgrd)"};
  app.require_subcommand(1);
  app.fallthrough();
  app.add_flag("--json", smgrctl::Globals().json, "Print JSON instead of tables (every read command)");
  // The queue must be in the environment before the library starts (in the command callbacks).
  app.add_option_function<std::string>(
      "--queue", [](const std::string& queue) { setenv("SESSMGR_DAEMON_QUEUE", queue.c_str(), 1); },
      "Daemon request queue (sets SESSMGR_DAEMON_QUEUE)");

  smgrctl::Command command(app);
  smgrctl::AddRegisteredCommands(command);
  for (CLI::App* sub : app.get_subcommands({})) {
    sub->fallthrough();
    for (CLI::App* leaf : sub->get_subcommands({})) leaf->fallthrough();
  }

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e);
  } catch (const std::exception& e) {
    std::cerr << "smgrctl: " << e.what() << "\n";
    smgrctl::Disconnect();
    return 1;
  }
  smgrctl::Disconnect();
  return command.status();
}
