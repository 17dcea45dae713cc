// smgrctl still commands: list the still images of the appliance's folder (with
// the streams that show them) and delete one or all of them through the daemon.
#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <map>

#include "commands.h"
#include "exit_codes.h"
#include "output.h"
#include "paging.h"

namespace smgrctl {
namespace {

using nlohmann::json;
namespace fs = std::filesystem;

constexpr const char* kDefaultStillFolder = "/usr/share/ostrelle/still_images/";

struct StillArgs {
  std::string name;
  bool all = false;
  std::string folder;
};

std::string StillFolder(const std::string& given) {
  if (!given.empty()) return given;
  const char* env = getenv("SESSMGR_STILL_IMAGE_DIR");
  return env && *env ? env : kDefaultStillFolder;
}

// Which streams show each still image (by file name, folder dropped).
std::multimap<std::string, std::string> StreamsByStill() {
  std::multimap<std::string, std::string> users;
  std::vector<SMGR_STREAM_INFO> streams;
  if (!CollectPages<SMGR_STREAM_INFO>(SessMgr_EnumerateStreams, &streams, 8)) return users;
  for (const SMGR_STREAM_INFO& info : streams) {
    if (!info.szStillImageFName[0]) continue;
    const std::string file = fs::path(info.szStillImageFName).filename().string();
    users.emplace(file, std::to_string(info.nIndex) + " \"" + info.szName + "\"");
  }
  return users;
}

std::string Users(const std::multimap<std::string, std::string>& users, const std::string& file) {
  std::string text;
  auto [begin, end] = users.equal_range(file);
  for (auto it = begin; it != end; ++it) text += (text.empty() ? "" : ", ") + it->second;
  return text;
}

int RunList(const std::string& folderOption) {
  const std::string folder = StillFolder(folderOption);
  std::error_code error;
  fs::directory_iterator entries(folder, error);
  if (error)
    return FailWith("still list", SMGR_ERROR_INVALID_FILENAME_PATH, folder + ": " + error.message(),
                    kExitRefused);
  if (!Connect()) return 1;
  const auto users = StreamsByStill();
  std::vector<fs::directory_entry> files;
  for (const auto& entry : entries)
    if (entry.is_regular_file(error) && entry.path().extension() == ".mp4") files.push_back(entry);
  std::sort(files.begin(), files.end());
  json array = json::array();
  Table table({"FILE", "BYTES", "USED BY"});
  table.alignRight("BYTES");
  for (const auto& entry : files) {
    const std::string file = entry.path().filename().string();
    const uintmax_t size = entry.file_size(error);
    const std::string usedBy = Users(users, file);
    array.push_back({{"file", file}, {"bytes", size}, {"used_by", usedBy}});
    table.add({file, std::to_string(size), usedBy.empty() ? "-" : usedBy});
  }
  if (Globals().json) {
    PrintJson(array);
  } else if (table.empty()) {
    std::cout << "No still images in " << folder << ".\n";
  } else {
    std::cout << table.render();
  }
  return 0;
}

int RunDelete(const std::string& name, bool all) {
  if (!Connect()) return 1;
  if (all) {
    ULONG deleted = 0, skipped = 0;
    const BOOL ok = SessMgr_DeleteAllStillImages(&deleted, &skipped);
    if (!ok) return Fail("still delete --all");
    if (Globals().json) {
      PrintJson({{"deleted", deleted}, {"skipped", skipped}});
    } else {
      std::cout << "Deleted " << deleted << " still image(s), skipped " << skipped << " in use.\n";
    }
    return 0;
  }
  if (name.empty()) return Usage("still delete", "give a file name or --all");
  if (!SessMgr_DeleteStillImage(name.c_str())) {
    if (SessMgr_GetLastError() != SMGR_ERROR_STILL_IMAGE_IN_USE) return Fail("still delete " + name);
    std::string file = fs::path(name).filename().string();
    if (fs::path(file).extension() != ".mp4") file += ".mp4";
    char text[256];
    SessMgr_GetLastErrorString(text, sizeof text);
    const std::string usedBy = Users(StreamsByStill(), file);
    return FailWith("still delete " + name, SMGR_ERROR_STILL_IMAGE_IN_USE,
                    std::string(text) + (usedBy.empty() ? "" : " (stream " + usedBy + ")"), kExitRefused);
  }
  if (Globals().json) {
    PrintJson({{"deleted", name}});
  } else {
    std::cout << "Deleted still image " << name << ".\n";
  }
  return 0;
}

void AddStillCommands(Command& command) {
  int& status = command.status();
  CLI::App* still = command.app().add_subcommand("still", "Still images");
  still->require_subcommand(1);
  StillArgs& args = command.keep<StillArgs>();
  auto* list =
      still->add_subcommand("list", "The still images of the folder, their size and the streams using them");
  list->add_option(
      "--folder", args.folder,
      "Still-image folder (default: $SESSMGR_STILL_IMAGE_DIR, else /usr/share/ostrelle/still_images/)");
  list->callback([&status, &args] { status = RunList(args.folder); });
  auto* del = still->add_subcommand("delete", "Delete one still image, or all that no stream uses");
  auto* nameOption = del->add_option("name", args.name, "File name (\".mp4\" is added when missing)");
  del->add_flag("--all", args.all, "Delete every still image")->excludes(nameOption);
  del->callback([&status, &args] { status = RunDelete(args.name, args.all); });
}

const CommandGroup kStillCommands{"still", AddStillCommands};

}  // namespace
}  // namespace smgrctl
