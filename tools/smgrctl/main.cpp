// smgrctl: command-line control of the session manager daemon through the
// client library, for operators (aligned tables) and scripts (--json, the exit
// statuses of exit_codes.h).
#include <CLI/CLI.hpp>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "commands.h"
#include "exit_codes.h"
#include "output.h"

namespace {

constexpr const char* kShortUsage =
    "Usage: smgrctl [--json] [--queue NAME] COMMAND ...\n"
    "Run 'smgrctl --help' for the commands, 'smgrctl COMMAND --help' for one of them.\n";

// Every parse error, a missing command and help requested after a word that is
// no command: a short usage on stderr (or the JSON error object) and exit 2.
int UsageError(const std::string& message) {
  if (smgrctl::Globals().json) {
    smgrctl::Usage("smgrctl", message);
  } else {
    std::cerr << "smgrctl: " << message << "\n" << kShortUsage;
  }
  return smgrctl::kExitUsage;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"smgrctl: control the appliance's session manager daemon (sessmgrd)"};
  app.require_subcommand(1);
  app.fallthrough();
  app.add_flag("--json", smgrctl::Globals().json,
               "Print JSON: reads print their records, writes what they did, failures an error object");
  // The queue must be in the environment before the library starts (in the command callbacks).
  app.add_option_function<std::string>(
      "--queue", [](const std::string& queue) { setenv("SESSMGR_DAEMON_QUEUE", queue.c_str(), 1); },
      "Daemon request queue (sets SESSMGR_DAEMON_QUEUE)");
  app.set_version_flag(
      "--version", [] { return smgrctl::VersionText(); }, "Print the CLI's and the library's version");
  app.footer(
      "Exit status: 0 success, 1 the daemon refused, 2 usage, 3 time-out, 4 daemon not reachable, "
      "5 not found.");

  smgrctl::Command command(app);
  smgrctl::AddRegisteredCommands(command);
  for (CLI::App* sub : app.get_subcommands({})) {
    sub->fallthrough();
    for (CLI::App* leaf : sub->get_subcommands({})) leaf->fallthrough();
  }

  if (argc >= 2 && strcmp(argv[1], "__complete") == 0) {
    std::cout << smgrctl::CompletionWords(app, std::vector<std::string>(argv + 2, argv + argc));
    return 0;
  }

  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    if (!app.remaining().empty())
      return UsageError("unknown command or argument \"" + app.remaining().front() + "\"");
    return app.exit(e);
  } catch (const CLI::CallForAllHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForVersion& e) {
    return app.exit(e);
  } catch (const CLI::RequiredError& e) {
    if (!app.remaining().empty()) return UsageError("unknown command \"" + app.remaining().front() + "\"");
    return UsageError(app.get_subcommands().empty() ? "a command is required" : e.what());
  } catch (const CLI::ParseError& e) {
    return UsageError(e.what());
  } catch (const std::exception& e) {
    std::cerr << "smgrctl: " << e.what() << "\n";
    smgrctl::Disconnect();
    return smgrctl::kExitRefused;
  }
  smgrctl::Disconnect();
  const int status = command.status();
  const int reported = smgrctl::ReportedFailureStatus();
  return status != 0 && reported != 0 ? reported : status;
}
