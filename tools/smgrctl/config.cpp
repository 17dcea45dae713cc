// smgrctl config commands: save, load, delete (one or --all), status and
// autosave on|off.
#include <CLI/CLI.hpp>
#include <iostream>

#include "commands.h"
#include "output.h"

namespace smgrctl {
namespace {

using nlohmann::json;

struct SaveArgs {
  std::string name;
  int startupMode = 0;
};

int RunSave(const SaveArgs& args) {
  if (!Connect()) return 1;
  const char* name = args.name.empty() ? nullptr : args.name.c_str();
  if (!SessMgr_SaveConfig(name, args.startupMode)) return Fail("config save " + args.name);
  if (!Globals().json) std::cout << "Configuration saved" << (name ? " as " + args.name : "") << ".\n";
  return 0;
}

int RunLoad(const std::string& name) {
  if (!Connect()) return 1;
  const std::string operation = name.empty() ? "config load" : "config load " + name;
  SessMgr_SetLastError(SMGR_ERROR_SUCCESS);  // success leaves it; a warning replaces it
  if (!SessMgr_LoadConfig(name.empty() ? nullptr : name.c_str())) return Fail(operation);
  if (SessMgr_GetLastError() & SMGR_IS_SUCCESS_WITH_WARNING) {
    char text[256];
    std::cerr << "smgrctl: " << operation << ": warning: " << SessMgr_GetLastErrorString(text, sizeof text)
              << "\n";
  }
  if (!Globals().json) std::cout << "Configuration loaded.\n";
  return 0;
}

int RunDelete(const std::string& name, bool all) {
  if (!Connect()) return 1;
  if (!all) {
    if (name.empty()) return Usage("config delete", "give a name or --all");
    if (!SessMgr_DeleteConfig(name.c_str())) return Fail("config delete " + name);
    if (!Globals().json) std::cout << "Deleted configuration " << name << ".\n";
    return 0;
  }
  ULONG deleted = 0;
  if (!SessMgr_DeleteAllConfigs(&deleted)) {
    // The count so far still tells what went; with --json the error object is the only output.
    if (!Globals().json) std::cout << "Deleted " << deleted << " configuration(s) before the failure.\n";
    return Fail("config delete --all");
  }
  if (Globals().json)
    PrintJson({{"deleted", deleted}});
  else
    std::cout << "Deleted " << deleted << " configuration(s).\n";
  return 0;
}

int RunStatus() {
  if (!Connect()) return 1;
  BOOL saved = FALSE, autoSave = FALSE;
  if (!SessMgr_IsCurrentConfigSaved(&saved)) return Fail("config status");
  if (!SessMgr_GetConfigAutoSaveState(&autoSave)) return Fail("config status");
  if (Globals().json)
    PrintJson({{"saved", saved != 0}, {"auto_save", autoSave != 0}});
  else
    std::cout << "Saved: " << (saved ? "yes" : "no") << "\nAuto-save: " << (autoSave ? "on" : "off") << "\n";
  return 0;
}

int RunAutoSave(const std::string& state) {
  if (state != "on" && state != "off") return Usage("config autosave", "say on or off");
  if (!Connect()) return 1;
  if (!SessMgr_SetConfigAutoSaveState(state == "on")) return Fail("config autosave " + state);
  if (!Globals().json) std::cout << "Auto-save " << state << ".\n";
  return 0;
}

void AddConfigCommands(Command& command) {
  int& status = command.status();
  CLI::App* config = command.app().add_subcommand("config", "Saved configurations of the unit");
  config->require_subcommand(1);

  SaveArgs& save = command.keep<SaveArgs>();
  auto* saveCmd =
      config->add_subcommand("save", "Save the running configuration (default: the start-up one)");
  saveCmd->add_option("name", save.name, "Configuration name (\".cfg\" is added)");
  saveCmd->add_option("--startup-mode", save.startupMode,
                      "Start-up mode passed to the daemon (1: also start-up)");
  saveCmd->callback([&status, &save] { status = RunSave(save); });

  std::string& loadName = command.keep<std::string>();
  auto* load = config->add_subcommand("load", "Load a saved configuration (default: the start-up one)");
  load->add_option("name", loadName, "Configuration name");
  load->callback([&status, &loadName] { status = RunLoad(loadName); });

  struct DeleteArgs {
    std::string name;
    bool all = false;
  };
  DeleteArgs& del = command.keep<DeleteArgs>();
  auto* delCmd =
      config->add_subcommand("delete", "Delete a saved configuration, or all but the start-up one");
  auto* nameOption = delCmd->add_option("name", del.name, "Configuration name");
  delCmd->add_flag("--all", del.all, "Delete every saved configuration but the start-up one")
      ->excludes(nameOption);
  delCmd->callback([&status, &del] { status = RunDelete(del.name, del.all); });

  config->add_subcommand("status", "Whether the running configuration is saved, and auto-save")
      ->callback([&status] { status = RunStatus(); });

  std::string& autoSave = command.keep<std::string>();
  auto* autoCmd = config->add_subcommand("autosave", "Save the start-up configuration on every change");
  autoCmd->add_option("state", autoSave, "on or off")->required();
  autoCmd->callback([&status, &autoSave] { status = RunAutoSave(autoSave); });
}

const CommandGroup kConfigCommands{"config", AddConfigCommands};

}  // namespace
}  // namespace smgrctl
