// smgrctl roi commands: list, show, create, set, enable, disable, delete.
#include <CLI/CLI.hpp>
#include <iostream>

#include "choices.h"
#include "commands.h"
#include "exit_codes.h"
#include "output.h"
#include "paging.h"

namespace smgrctl {
namespace {

using nlohmann::json;

const Choices kPositionings = {
    {"bottom-right", SMGR_ROI_POS_BOTTOM_RIGHT}, {"top-right", SMGR_ROI_POS_TOP_RIGHT},
    {"bottom-left", SMGR_ROI_POS_BOTTOM_LEFT},   {"top-left", SMGR_ROI_POS_TOP_LEFT},
    {"centered", SMGR_ROI_POS_CENTERED},         {"absolute", SMGR_ROI_POS_ABSOLUTE}};
const Choices kBorders = {{"none", SMGR_ROI_BORDER_TYPE_NONE}, {"box", SMGR_ROI_BORDER_TYPE_DASHED_BOX}};
const Choices kOnOff = {{"on", 1}, {"off", 0}};

// What create and set may give; an option left out is not sent (set) or zero (create).
struct RoiArgs {
  std::string target;
  std::string name;
  int id = 0;
  int encoder = -1;
  int x = -1, y = -1, width = -1, height = -1, priority = INT32_MIN;
  std::string positioning, border, enable;
};

json InfoJson(const SMGR_ROI_INFO& info) {
  return {{"id", info.nIndex},
          {"name", info.szName},
          {"encoder", info.nEncoderID},
          {"x", info.Origin.X},
          {"y", info.Origin.Y},
          {"width", info.nWidth},
          {"height", info.nHeight},
          {"positioning", ValueText(SessMgr_GetROIPositioningString, info.enPositioning)},
          {"border", ValueText(SessMgr_GetROIBorderTypeString, info.enBorderType)},
          {"priority", info.nPriority},
          {"enabled", info.bEnableRegion != FALSE},
          {"type", info.enType},
          {"movement", info.enMovement}};
}

int RunList() {
  if (!Connect()) return kExitUnreachable;
  std::vector<SMGR_ROI_INFO> regions;
  if (!CollectPages<SMGR_ROI_INFO>(SessMgr_EnumerateROIs, &regions, 8)) return Fail("roi list");
  json array = json::array();
  Table table({"ID", "NAME", "ENCODER", "ORIGIN", "SIZE", "POSITIONING", "BORDER", "PRIORITY", "ENABLED"});
  table.alignRight("ID");
  table.alignRight("ENCODER");
  table.alignRight("PRIORITY");
  for (const auto& info : regions) {
    array.push_back(InfoJson(info));
    table.add({std::to_string(info.nIndex), info.szName, std::to_string(info.nEncoderID),
               std::to_string(info.Origin.X) + "," + std::to_string(info.Origin.Y),
               std::to_string(info.nWidth) + "x" + std::to_string(info.nHeight),
               ValueText(SessMgr_GetROIPositioningString, info.enPositioning),
               ValueText(SessMgr_GetROIBorderTypeString, info.enBorderType), std::to_string(info.nPriority),
               info.bEnableRegion ? "yes" : "no"});
  }
  if (Globals().json)
    PrintJson(array);
  else if (table.empty())
    std::cout << "No regions of interest.\n";
  else
    std::cout << table.render();
  return 0;
}

int RunShow(const std::string& target) {
  if (!Connect()) return kExitUnreachable;
  SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
  SMGR_ROI_INFO info{};
  info.nSize = sizeof info;
  if (!SessMgr_GetROIInfo(&selector, &info)) return Fail("roi show " + target);
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
}

// Fills cfg from the given options and the bits saying which were given; false after a usage report.
bool FillConfig(const RoiArgs& args, const std::string& operation, SMGR_ROI_CFG* cfg) {
  // A packed field: work on a copy and write it back on every way out.
  uint64_t flags = cfg->SetFieldsFlag;
  struct WriteBack {
    decltype(cfg) record;
    const uint64_t& value;
    ~WriteBack() { record->SetFieldsFlag = value; }
  } writeBack{cfg, flags};
  if (!args.name.empty()) {
    if (args.name.size() > SMGR_MAX_OBJECT_NAME_LENGTH)
      return Usage(operation, "the name is too long"), false;
    snprintf(cfg->szName, sizeof cfg->szName, "%s", args.name.c_str());
    flags |= SMGR_ROI_SET_NAME;
  }
  if (args.x >= 0) cfg->Origin.X = static_cast<UINT>(args.x), flags |= SMGR_ROI_SET_ORIGIN_X;
  if (args.y >= 0) cfg->Origin.Y = static_cast<UINT>(args.y), flags |= SMGR_ROI_SET_ORIGIN_Y;
  if (args.width >= 0) cfg->nWidth = static_cast<UINT>(args.width), flags |= SMGR_ROI_SET_WIDTH;
  if (args.height >= 0) cfg->nHeight = static_cast<UINT>(args.height), flags |= SMGR_ROI_SET_HEIGHT;
  if (args.encoder >= 0) cfg->nEncoderID = args.encoder, flags |= SMGR_ROI_SET_ENCODER_ID;
  if (args.priority != INT32_MIN) cfg->nPriority = args.priority, flags |= SMGR_ROI_SET_PRIORITY;
  if (!args.positioning.empty()) {
    if (!ParseChoice(args.positioning, kPositionings, &cfg->enPositioning))
      return Usage(operation, "--positioning takes " + ChoiceWords(kPositionings)), false;
    flags |= SMGR_ROI_SET_POSITIONING;
  }
  if (!args.border.empty()) {
    if (!ParseChoice(args.border, kBorders, &cfg->enBorderType))
      return Usage(operation, "--border takes " + ChoiceWords(kBorders)), false;
    flags |= SMGR_ROI_SET_BORDER_TYPE;
  }
  if (!args.enable.empty()) {
    if (!ParseChoice(args.enable, kOnOff, &cfg->bEnableRegion))
      return Usage(operation, "--enable takes on or off"), false;
    flags |= SMGR_ROI_SET_ENABLE;
  }
  return true;
}

int RunCreate(const RoiArgs& args) {
  SMGR_ROI_CFG cfg{};
  cfg.nSize = sizeof cfg;
  cfg.nIndex = args.id;
  cfg.enPositioning = SMGR_ROI_POS_CENTERED;
  if (!FillConfig(args, "roi create", &cfg)) return kExitUsage;
  if (!Connect()) return kExitUnreachable;
  HROI region = nullptr;
  if (!SessMgr_CreateROI(&cfg, &region)) return Fail("roi create");
  UINT id = 0;
  SessMgr_GetROIIndex(region, &id);
  SessMgr_CloseROI(&region);  // the region stays in the daemon
  if (Globals().json)
    PrintJson({{"id", id}});
  else
    std::cout << "Created region of interest " << id << ".\n";
  return 0;
}

int RunSet(const RoiArgs& args) {
  SMGR_ROI_CFG cfg{};
  cfg.nSize = sizeof cfg;
  if (!FillConfig(args, "roi set", &cfg)) return kExitUsage;
  if (cfg.SetFieldsFlag == 0) return Usage("roi set", "nothing to set");
  if (!Connect()) return kExitUnreachable;
  SMGR_OBJECT_SELECTOR selector = ParseSelector(args.target);
  if (!SessMgr_ConfigureROI(&selector, &cfg)) return Fail("roi set " + args.target);
  if (!Globals().json) std::cout << "Region of interest " << args.target << " configured.\n";
  return 0;
}

int RunControl(const std::string& verb, BOOL (*control)(const SMGR_OBJECT_SELECTOR*),
               const std::string& target) {
  if (!Connect()) return kExitUnreachable;
  SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
  if (!control(&selector)) return Fail("roi " + verb + " " + target);
  if (!Globals().json) std::cout << "Region of interest " << target << " " << verb << "d.\n";
  return 0;
}

void AddShapeOptions(CLI::App* app, RoiArgs& args) {
  app->add_option("--name", args.name, "Region name");
  app->add_option("--encoder", args.encoder, "Video encoder ID");
  app->add_option("--x", args.x, "Origin X (absolute positioning)");
  app->add_option("--y", args.y, "Origin Y (absolute positioning)");
  app->add_option("--width", args.width, "Width in pixels");
  app->add_option("--height", args.height, "Height in pixels");
  app->add_option("--positioning", args.positioning, ChoiceWords(kPositionings));
  app->add_option("--border", args.border, "none or box");
  app->add_option("--priority", args.priority, "Quality priority");
  app->add_option("--enable", args.enable, "on or off");
}

void AddRoiCommands(Command& command) {
  int& status = command.status();
  CLI::App* roi = command.app().add_subcommand("roi", "Regions of interest");
  roi->require_subcommand(1);
  RoiArgs& args = command.keep<RoiArgs>();
  roi->add_subcommand("list", "Every region")->callback([&status] { status = RunList(); });
  auto* show = roi->add_subcommand("show", "One region in detail");
  show->add_option("region", args.target, "ID or name (id:N, name:TEXT)")->required();
  show->callback([&status, &args] { status = RunShow(args.target); });
  auto* create = roi->add_subcommand("create", "Create a region on a video encoder");
  AddShapeOptions(create, args);
  create->get_option("--encoder")->required();
  create->add_option("--id", args.id, "Region ID (default: the daemon chooses)");
  create->callback([&status, &args] { status = RunCreate(args); });
  auto* set = roi->add_subcommand("set", "Change the given fields of a region");
  set->add_option("region", args.target, "ID or name")->required();
  AddShapeOptions(set, args);
  set->callback([&status, &args] { status = RunSet(args); });
  const std::pair<const char*, BOOL (*)(const SMGR_OBJECT_SELECTOR*)> kControls[] = {
      {"enable", SessMgr_EnableROI}, {"disable", SessMgr_DisableROI}, {"delete", SessMgr_DeleteROI}};
  for (const auto& [verb, control] : kControls) {
    auto* sub = roi->add_subcommand(verb, std::string(verb) + " a region");
    sub->add_option("region", args.target, "ID or name")->required();
    sub->callback([&status, &args, verb = std::string(verb), control = control] {
      status = RunControl(verb, control, args.target);
    });
  }
}

const CommandGroup kRoiCommands{"roi", AddRoiCommands};

}  // namespace
}  // namespace smgrctl
