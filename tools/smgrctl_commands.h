// The command groups of smgrctl; each adds its subcommands to the application
// and stores the exit status of the command that ran.
#pragma once

#include <CLI/CLI.hpp>

namespace smgrctl {

void AddStreamCommands(CLI::App& app, int& status);
void AddDebugCommands(CLI::App& app, int& status);
void AddErrorCommand(CLI::App& app, int& status);

}  // namespace smgrctl
