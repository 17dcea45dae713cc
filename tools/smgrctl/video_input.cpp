// smgrctl video-input (vin) commands: list, show, set, reset-stats. Inputs are
// named by ID or name (ParseSelector's rule); an ID is mapped to its name by
// enumerating, since the library opens inputs by name only.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "choices.h"
#include "commands.h"
#include "exit_codes.h"
#include "output.h"
#include "paging.h"

namespace smgrctl {
namespace {

using nlohmann::json;

// The SetFieldsFlag bits the daemon takes for an input's settings.
constexpr uint64_t kSetInterface = 0x1, kSetColorSpace = 0x2, kSetFirFilter = 0x4;

const Choices kInterfaces = {
    {"auto", SMGR_VIF_TYPE_AUTO_DETECT}, {"sdi", SMGR_VIF_TYPE_SDI}, {"composite", SMGR_VIF_TYPE_COMPOSITE}};
const Choices kOnOff = {{"on", 1}, {"off", 0}};

struct InputArgs {
  std::string name;
  std::string interface;
  int colorSpace = -1;
  std::string fir;
};

std::string CapabilityText(DWORD bits) {
  static const std::pair<DWORD, const char*> kWords[] = {
      {0x2, "SDI"}, {0x4, "HD"}, {0x8, "UHD"}, {0x10, "AUDIO"}, {0x20, "COMPOSITE"}};
  std::string text;
  for (const auto& [bit, word] : kWords)
    if (bits & bit) text += (text.empty() ? "" : ", ") + std::string(word);
  return text;
}

json InfoJson(const SMGR_VIDEO_INPUT_INFO& info) {
  return {{"id", info.nID},
          {"name", info.szName},
          {"state", ValueText(SessMgr_GetVideoInputStateString, info.enState)},
          {"format", VideoFormatText(Val(info.enInputFormat))},
          {"interface", ValueText(SessMgr_GetVideoInterfaceTypeString, info.enInterfaceType)},
          {"configured_interface", ValueText(SessMgr_GetVideoInterfaceTypeString, info.enCfgInterfaceType)},
          {"capabilities", CapabilityText(info.dwCapabilities)},
          {"audio_channels", info.nNumOfAudioChannels},
          {"lock_changes", Val(info.nFormatLockStateChanges)},
          {"last_lock_change_uptime_s", info.nLastFormatLockStateChangeUPTimeInSecs},
          {"input_checks", Val(info.nInputChecks)},
          {"fir_filter", info.bEnableFIRFilter != FALSE},
          {"color_primaries", info.ColorPrimaries},
          {"transfer_characteristics", info.TransferCharacteristics},
          {"matrix_coefficients", info.MatrixCoefficients}};
}

bool ListInputs(std::vector<SMGR_VIDEO_INPUT_INFO>* inputs) {
  return CollectPages<SMGR_VIDEO_INPUT_INFO>(SessMgr_EnumerateVideoInputs, inputs, 8);
}

int RunList() {
  if (!Connect()) return kExitUnreachable;
  std::vector<SMGR_VIDEO_INPUT_INFO> inputs;
  if (!ListInputs(&inputs)) return Fail("video-input list");
  json array = json::array();
  Table table({"ID", "NAME", "STATE", "FORMAT", "AUDIO", "CAPABILITIES"});
  table.alignRight("ID");
  table.alignRight("AUDIO");
  for (const auto& info : inputs) {
    array.push_back(InfoJson(info));
    table.add({std::to_string(info.nID), info.szName,
               ValueText(SessMgr_GetVideoInputStateString, info.enState),
               VideoFormatText(Val(info.enInputFormat)), std::to_string(info.nNumOfAudioChannels),
               CapabilityText(info.dwCapabilities)});
  }
  if (Globals().json)
    PrintJson(array);
  else if (table.empty())
    std::cout << "No video inputs.\n";
  else
    std::cout << table.render();
  return 0;
}

// Info and reset-stats leave the last error as it was when the daemon refuses.
int FailKeptError(const std::string& operation) {
  return FailWith(operation, SMGR_ERROR_SUCCESS, "the daemon refused (it gives no code here)", kExitRefused);
}

// Runs action on the opened input, closing it afterwards.
template <typename Action>
int WithInput(const std::string& target, const std::string& operation, Action action) {
  if (!Connect()) return kExitUnreachable;
  const SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
  std::string name;
  if (selector.enType == SMGR_SELECTBY_OBJECT_ID) {
    std::vector<SMGR_VIDEO_INPUT_INFO> inputs;
    if (!ListInputs(&inputs)) return Fail(operation);
    auto it = std::find_if(inputs.begin(), inputs.end(), [&](const SMGR_VIDEO_INPUT_INFO& info) {
      return static_cast<int>(info.nID) == selector.Via.ID;
    });
    if (it == inputs.end()) {
      SessMgr_SetLastError(SMGR_ERROR_NO_MATCHING_INPUT_FOUND);
      return Fail(operation);
    }
    name = it->szName;
  } else {
    name = selector.Via.szName;
  }
  HVIDIN input = nullptr;
  if (!SessMgr_OpenVideoInput(name.c_str(), &input)) return Fail(operation);
  const int status = action(input);
  SessMgr_CloseVideoInput(&input);
  return status;
}

int RunShow(const std::string& name) {
  return WithInput(name, "video-input show " + name, [&](HVIDIN input) {
    SMGR_VIDEO_INPUT_INFO info{};
    info.nSize = sizeof info;
    if (!SessMgr_GetVideoInputInfo(input, &info)) return FailKeptError("video-input show " + name);
    const json value = InfoJson(info);
    if (Globals().json) {
      PrintJson(value);
      return 0;
    }
    Table fields({"FIELD", "VALUE"});
    for (auto it = value.begin(); it != value.end(); ++it)
      fields.add({it.key(), it->is_string() ? it->get<std::string>() : it->dump()});
    std::cout << fields.render();
    return 0;
  });
}

int RunSet(const InputArgs& args) {
  SMGR_VIDEO_INPUT_CFG cfg{};
  cfg.nSize = sizeof cfg;
  if (!args.interface.empty()) {
    if (!ParseChoice(args.interface, kInterfaces, &cfg.enInterfaceType))
      return Usage("video-input set", "--interface takes " + ChoiceWords(kInterfaces) + " or a number");
    cfg.SetFieldsFlag |= kSetInterface;
  }
  if (args.colorSpace >= 0) {
    cfg.enColorSpace = args.colorSpace;
    cfg.SetFieldsFlag |= kSetColorSpace;
  }
  if (!args.fir.empty()) {
    if (!ParseChoice(args.fir, kOnOff, &cfg.bEnableFIRFilter))
      return Usage("video-input set", "--fir takes on or off");
    cfg.SetFieldsFlag |= kSetFirFilter;
  }
  if (cfg.SetFieldsFlag == 0) return Usage("video-input set", "nothing to set");
  return WithInput(args.name, "video-input set " + args.name, [&](HVIDIN input) {
    if (!SessMgr_ConfigureVideoInput(input, &cfg)) return Fail("video-input set " + args.name);
    if (!Globals().json) std::cout << "Video input " << args.name << " configured.\n";
    return 0;
  });
}

int RunResetStats(const std::string& name) {
  return WithInput(name, "video-input reset-stats " + name, [&](HVIDIN input) {
    if (!SessMgr_ResetVideoInputStats(input)) return FailKeptError("video-input reset-stats " + name);
    if (!Globals().json) std::cout << "Counters of video input " << name << " reset.\n";
    return 0;
  });
}

void AddVideoInputCommands(Command& command) {
  int& status = command.status();
  CLI::App* vin = command.app().add_subcommand("video-input", "Video inputs");
  vin->alias("vin");
  vin->require_subcommand(1);
  InputArgs& args = command.keep<InputArgs>();
  vin->add_subcommand("list", "Every input with its state, format and capabilities")->callback([&status] {
    status = RunList();
  });
  auto* show = vin->add_subcommand("show", "One input in detail");
  show->add_option("name", args.name, "Input ID or name (sdi1, ...)")->required();
  show->callback([&status, &args] { status = RunShow(args.name); });
  auto* set = vin->add_subcommand("set", "Change an input's settings");
  set->add_option("name", args.name, "Input ID or name")->required();
  set->add_option("--interface", args.interface, "auto, sdi, composite or a number");
  set->add_option("--color-space", args.colorSpace, "Colour space number");
  set->add_option("--fir", args.fir, "Input FIR filter: on or off");
  set->callback([&status, &args] { status = RunSet(args); });
  auto* reset = vin->add_subcommand("reset-stats", "Reset an input's lock and check counters");
  reset->add_option("name", args.name, "Input ID or name")->required();
  reset->callback([&status, &args] { status = RunResetStats(args.name); });
}

const CommandGroup kVideoInputCommands{"video-input", AddVideoInputCommands};

}  // namespace
}  // namespace smgrctl
