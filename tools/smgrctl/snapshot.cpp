// smgrctl snapshot commands: take, list (the files of the folder the daemon
// reports), rename, delete (one or --all), defaults [set], storage [set].
#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>

#include "choices.h"
#include "commands.h"
#include "exit_codes.h"
#include "output.h"

namespace smgrctl {
namespace {

using nlohmann::json;
namespace fs = std::filesystem;

// The SetFieldsFlag bits the daemon takes for snapshots and their defaults, and for storage.
constexpr uint64_t kFormat = 0x1, kQuality = 0x2, kOverwrite = 0x4, kWidth = 0x8, kHeight = 0x10,
                   kPalette = 0x20;
constexpr uint64_t kLimit = 0x1, kDevice = 0x2;

const Choices kFormats = {{"jpeg", SMGR_SNAPSHOT_FORMAT_JPEG},
                          {"jpg", SMGR_SNAPSHOT_FORMAT_JPEG},
                          {"png", SMGR_SNAPSHOT_FORMAT_PNG}};
const Choices kPalettes = {{"rgb", SMGR_PNG_PALETTE_RGB_TRUE_COLOR},
                           {"colorcube", SMGR_PNG_PALETTE_COLORCUBE},
                           {"lab", SMGR_PNG_PALETTE_LAB_OPTIMIZED}};
const Choices kDevices = {{"flash", SMGR_SNAPSHOT_STORAGE_LOCAL},
                          {"nfs", SMGR_SNAPSHOT_STORAGE_NFS},
                          {"custom", SMGR_SNAPSHOT_STORAGE_CUSTOM_DIRECTORY}};
const Choices kOnOff = {{"on", 1}, {"off", 0}};

struct SnapshotArgs {
  std::string name, newName;
  int encoder = -1;
  bool all = false;
  std::string format, palette, overwrite, device;
  int quality = -1, width = -1, height = -1, limitKb = -1;
};

// The picture fields given as options, with their bits; false after a usage report.
template <typename Record>
bool FillPicture(const SnapshotArgs& args, const std::string& operation, Record* record) {
  if (!args.format.empty()) {
    if (!ParseChoice(args.format, kFormats, &record->enFormat))
      return Usage(operation, "--format takes jpeg or png"), false;
    record->SetFieldsFlag |= kFormat;
  }
  if (!args.palette.empty()) {
    if (!ParseChoice(args.palette, kPalettes, &record->enPaletteSelection))
      return Usage(operation, "--palette takes " + ChoiceWords(kPalettes)), false;
    record->SetFieldsFlag |= kPalette;
  }
  if (!args.overwrite.empty()) {
    if (!ParseChoice(args.overwrite, kOnOff, &record->bOverwrite))
      return Usage(operation, "--overwrite takes on or off"), false;
    record->SetFieldsFlag |= kOverwrite;
  }
  if (args.quality >= 0) record->nQualityFactor = args.quality, record->SetFieldsFlag |= kQuality;
  if (args.width >= 0) record->Width = static_cast<UINT>(args.width), record->SetFieldsFlag |= kWidth;
  if (args.height >= 0) record->Height = static_cast<UINT>(args.height), record->SetFieldsFlag |= kHeight;
  return true;
}

int RunTake(const SnapshotArgs& args) {
  SMGR_SNAPSHOT_CFG cfg{};
  cfg.nSize = sizeof cfg;
  cfg.nVidencID = static_cast<UINT>(args.encoder);
  if (args.name.size() >= sizeof cfg.szFileName) return Usage("snapshot take", "the name is too long");
  snprintf(cfg.szFileName, sizeof cfg.szFileName, "%s", args.name.c_str());
  if (!FillPicture(args, "snapshot take", &cfg)) return kExitUsage;
  if (!Connect()) return kExitUnreachable;
  if (!SessMgr_TakeSnapshot(&cfg)) return Fail("snapshot take");
  if (Globals().json)
    PrintJson({{"file", cfg.szFileName}});
  else
    std::cout << "Snapshot written: " << cfg.szFileName << "\n";
  return 0;
}

bool AdminInfo(SMGR_SNAPSHOT_ADMIN_INFO* info) {
  *info = SMGR_SNAPSHOT_ADMIN_INFO{};
  info->nSize = sizeof *info;
  return SessMgr_GetSnapshotAdminInfo(info);
}

int RunList() {
  if (!Connect()) return kExitUnreachable;
  SMGR_SNAPSHOT_ADMIN_INFO info;
  if (!AdminInfo(&info)) return Fail("snapshot list");
  std::error_code error;
  std::vector<fs::directory_entry> files;
  for (const auto& entry : fs::directory_iterator(info.szDirectory, error))
    if (entry.is_regular_file(error)) files.push_back(entry);
  std::sort(files.begin(), files.end());
  json array = json::array();
  Table table({"FILE", "BYTES"});
  table.alignRight("BYTES");
  for (const auto& entry : files) {
    const uintmax_t size = entry.file_size(error);
    array.push_back({{"file", entry.path().filename().string()}, {"bytes", size}});
    table.add({entry.path().filename().string(), std::to_string(size)});
  }
  if (Globals().json)
    PrintJson(array);
  else if (table.empty())
    std::cout << "No snapshots in " << info.szDirectory << ".\n";
  else
    std::cout << table.render();
  return 0;
}

int RunRename(const SnapshotArgs& args) {
  if (!Connect()) return kExitUnreachable;
  if (!SessMgr_RenameSnapshot(args.name.c_str(), args.newName.c_str()))
    return Fail("snapshot rename " + args.name);
  if (!Globals().json) std::cout << "Snapshot " << args.name << " renamed to " << args.newName << ".\n";
  return 0;
}

int RunDelete(const SnapshotArgs& args) {
  if (!args.all && args.name.empty()) return Usage("snapshot delete", "give a file name or --all");
  if (!Connect()) return kExitUnreachable;
  if (args.all) {
    ULONG deleted = 0;
    if (!SessMgr_DeleteAllSnapshots(&deleted)) return Fail("snapshot delete --all");
    if (Globals().json)
      PrintJson({{"deleted", deleted}});
    else
      std::cout << "Deleted " << deleted << " snapshot(s).\n";
    return 0;
  }
  if (!SessMgr_DeleteSnapshot(args.name.c_str())) return Fail("snapshot delete " + args.name);
  if (!Globals().json) std::cout << "Deleted snapshot " << args.name << ".\n";
  return 0;
}

int RunDefaults() {
  if (!Connect()) return kExitUnreachable;
  SMGR_SNAPSHOT_DEFAULTS d{};
  d.nSize = sizeof d;
  if (!SessMgr_GetSnapshotDefaults(&d)) return Fail("snapshot defaults");
  const json value = {{"format", ValueText(SessMgr_GetSnapshotFormatString, d.enFormat)},
                      {"quality", d.nQualityFactor},
                      {"overwrite", d.bOverwrite != FALSE},
                      {"width", d.Width},
                      {"height", d.Height},
                      {"palette", ValueText(SessMgr_GetSnapshotPaletteString, d.enPaletteSelection)}};
  if (Globals().json) return PrintJson(value), 0;
  Table fields({"FIELD", "VALUE"});
  for (auto it = value.begin(); it != value.end(); ++it)
    fields.add({it.key(), it->is_string() ? it->get<std::string>() : it->dump()});
  std::cout << fields.render();
  return 0;
}

int RunDefaultsSet(const SnapshotArgs& args) {
  SMGR_SNAPSHOT_DEFAULTS d{};
  d.nSize = sizeof d;
  if (!FillPicture(args, "snapshot defaults set", &d)) return kExitUsage;
  if (d.SetFieldsFlag == 0) return Usage("snapshot defaults set", "nothing to set");
  if (!Connect()) return kExitUnreachable;
  if (!SessMgr_SetSnapshotDefaults(&d)) return Fail("snapshot defaults set");
  if (!Globals().json) std::cout << "Snapshot defaults set.\n";
  return 0;
}

int RunStorage() {
  if (!Connect()) return kExitUnreachable;
  SMGR_SNAPSHOT_ADMIN_INFO info;
  if (!AdminInfo(&info)) return Fail("snapshot storage");
  const json value = {{"device", ValueText(SessMgr_GetSnapshotStorageDeviceString, info.enStorageDevice)},
                      {"limit_kb", info.nMaxStorageInKiloBytes},
                      {"directory", info.szDirectory}};
  if (Globals().json) return PrintJson(value), 0;
  Table fields({"FIELD", "VALUE"});
  for (auto it = value.begin(); it != value.end(); ++it)
    fields.add({it.key(), it->is_string() ? it->get<std::string>() : it->dump()});
  std::cout << fields.render();
  return 0;
}

int RunStorageSet(const SnapshotArgs& args) {
  SMGR_SNAPSHOT_ADMIN_CFG cfg{};
  cfg.nSize = sizeof cfg;
  if (args.limitKb >= 0) cfg.nMaxStorageInKiloBytes = args.limitKb, cfg.SetFieldsFlag |= kLimit;
  if (!args.device.empty()) {
    if (!ParseChoice(args.device, kDevices, &cfg.enStorageDevice))
      return Usage("snapshot storage set", "--device takes " + ChoiceWords(kDevices));
    cfg.SetFieldsFlag |= kDevice;
  }
  if (cfg.SetFieldsFlag == 0) return Usage("snapshot storage set", "nothing to set");
  if (!Connect()) return kExitUnreachable;
  if (!SessMgr_SetSnapshotAdminCfg(&cfg)) return Fail("snapshot storage set");
  if (!Globals().json) std::cout << "Snapshot storage set.\n";
  return 0;
}

void AddPictureOptions(CLI::App* app, SnapshotArgs& args) {
  app->add_option("--format", args.format, "jpeg or png");
  app->add_option("--quality", args.quality, "JPEG quality 1-100");
  app->add_option("--width", args.width, "Width in pixels (0: the encoder's)");
  app->add_option("--height", args.height, "Height in pixels (0: the encoder's)");
  app->add_option("--palette", args.palette, ChoiceWords(kPalettes));
  app->add_option("--overwrite", args.overwrite, "on or off");
}

void AddSnapshotCommands(Command& command) {
  int& status = command.status();
  CLI::App* snapshot = command.app().add_subcommand("snapshot", "Snapshots");
  snapshot->require_subcommand(1);
  SnapshotArgs& args = command.keep<SnapshotArgs>();
  auto* take = snapshot->add_subcommand("take", "Take a still of a video encoder's picture");
  take->add_option("--encoder", args.encoder, "Video encoder ID")->required();
  take->add_option("name", args.name, "File name (default: the daemon makes one)");
  AddPictureOptions(take, args);
  take->callback([&status, &args] { status = RunTake(args); });
  snapshot->add_subcommand("list", "The files of the snapshot folder")->callback([&status] {
    status = RunList();
  });
  auto* rename = snapshot->add_subcommand("rename", "Rename a snapshot");
  rename->add_option("name", args.name, "Current name")->required();
  rename->add_option("new-name", args.newName, "New name")->required();
  rename->callback([&status, &args] { status = RunRename(args); });
  auto* del = snapshot->add_subcommand("delete", "Delete one snapshot, or all");
  auto* nameOption = del->add_option("name", args.name, "File name");
  del->add_flag("--all", args.all, "Delete every snapshot")->excludes(nameOption);
  del->callback([&status, &args] { status = RunDelete(args); });
  auto* defaults = snapshot->add_subcommand("defaults", "Show the snapshot defaults");
  defaults->require_subcommand(0, 1);
  auto* defaultsSet = defaults->add_subcommand("set", "Change the given defaults");
  AddPictureOptions(defaultsSet, args);
  defaultsSet->callback([&status, &args] { status = RunDefaultsSet(args); });
  defaults->callback([&status, defaults] {
    if (defaults->get_subcommands().empty()) status = RunDefaults();
  });
  auto* storage = snapshot->add_subcommand("storage", "Show the snapshot storage");
  storage->require_subcommand(0, 1);
  auto* storageSet = storage->add_subcommand("set", "Change the storage limit or device");
  storageSet->add_option("--limit-kb", args.limitKb, "Largest total size in KiB (0: unlimited)");
  storageSet->add_option("--device", args.device, ChoiceWords(kDevices));
  storageSet->callback([&status, &args] { status = RunStorageSet(args); });
  storage->callback([&status, storage] {
    if (storage->get_subcommands().empty()) status = RunStorage();
  });
}

const CommandGroup kSnapshotCommands{"snapshot", AddSnapshotCommands};

}  // namespace
}  // namespace smgrctl
