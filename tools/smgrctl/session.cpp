// smgrctl session commands: list, show, create, start, stop, delete, stats
// (with --watch).
#include <arpa/inet.h>

#include <CLI/CLI.hpp>
#include <cstring>
#include <iostream>

#include "commands.h"
#include "output.h"
#include "paging.h"
#include "watch.h"

namespace smgrctl {
namespace {

using nlohmann::json;

json SessionJson(const SMGR_SESSION_INFO& info) {
  json members = json::array();
  for (int i = 0; i < info.nNumOfStreams && i < SMGR_MAX_SESSION_STREAMS; ++i)
    members.push_back(info.Streams[i].Via.ID);
  return {{"id", info.nIndex},
          {"name", info.szName},
          {"description", info.szDescription},
          {"author", info.szAuthor},
          {"keywords", info.szKeywords},
          {"copyright", info.szCopyright},
          {"streams", members},
          {"advertise", info.bAdvertise != 0},
          {"advert_address", AddressText(info.ActualAdvertAddress)},
          {"advert_port", info.usAdvertPort}};
}

std::string MembersText(const SMGR_SESSION_INFO& info) {
  std::string text;
  for (int i = 0; i < info.nNumOfStreams && i < SMGR_MAX_SESSION_STREAMS; ++i)
    text += (text.empty() ? "" : ",") + std::to_string(info.Streams[i].Via.ID);
  return text.empty() ? "-" : text;
}

int RunList() {
  if (!Connect()) return 1;
  std::vector<SMGR_SESSION_INFO> sessions;
  if (!CollectPages<SMGR_SESSION_INFO>(SessMgr_EnumerateSessions, &sessions, 8)) return Fail("session list");
  json array = json::array();
  Table table({"ID", "NAME", "STREAMS", "ADVERTISED ON"});
  table.alignRight("ID");
  for (const auto& info : sessions) {
    array.push_back(SessionJson(info));
    table.add({std::to_string(info.nIndex), info.szName, MembersText(info),
               info.bAdvertise
                   ? AddressText(info.ActualAdvertAddress) + ":" + std::to_string(info.usAdvertPort)
                   : "-"});
  }
  if (Globals().json)
    PrintJson(array);
  else
    std::cout << (table.empty() ? "No sessions.\n" : table.render());
  return 0;
}

int RunShow(const std::string& target) {
  if (!Connect()) return 1;
  SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
  SMGR_SESSION_INFO info{};
  info.nSize = sizeof info;
  if (!SessMgr_GetSessionInfo(&selector, &info)) return Fail("session show " + target);
  json value = SessionJson(info);
  if (Globals().json) {
    PrintJson(value);
    return 0;
  }
  for (auto& [key, field] : value.items())
    std::cout << key << ": " << (field.is_string() ? field.get<std::string>() : field.dump()) << "\n";
  return 0;
}

// A port number of 1..65535 written in full ("9875x" and "70000" are refused).
bool ParsePort(const std::string& text, uint16_t* port) {
  size_t used = 0;
  const int value = std::stoi(text, &used);
  if (used != text.size() || value < 1 || value > 65535) return false;
  *port = static_cast<uint16_t>(value);
  return true;
}

// "239.1.1.1", "239.1.1.1:9875", "ff0e::1", "[ff0e::1]:9875" or "any".
bool ParseAdvert(const std::string& text, SMGR_IP_ADDRESS* address, uint16_t* port) {
  std::string host = text;
  if (!text.empty() && text[0] == '[') {
    const size_t close = text.find(']');
    if (close == std::string::npos) return false;
    host = text.substr(1, close - 1);
    if (close + 1 < text.size()) {
      if (text[close + 1] != ':' || !ParsePort(text.substr(close + 2), port)) return false;
    }
  } else if (std::count(text.begin(), text.end(), ':') == 1) {
    host = text.substr(0, text.find(':'));
    if (!ParsePort(text.substr(text.find(':') + 1), port)) return false;
  }
  *address = SMGR_IP_ADDRESS{};
  if (host == "any")
    address->enType = SMGR_ANY_ADDRESS;
  else if (inet_pton(AF_INET, host.c_str(), address->acAddress) == 1)
    address->enType = SMGR_IPV4_ADDRESS;
  else if (inet_pton(AF_INET6, host.c_str(), address->acAddress) == 1)
    address->enType = SMGR_IPV6_ADDRESS;
  else
    return false;
  return true;
}

struct CreateArgs {
  std::string name;
  std::vector<std::string> streams;
  std::string advertise;
  std::string description;
};

int RunCreate(const CreateArgs& args) {
  const std::string operation = "session create " + args.name;
  SMGR_SESSION_CFG cfg{};
  cfg.nSize = sizeof cfg;
  snprintf(cfg.szName, sizeof cfg.szName, "%s", args.name.c_str());
  snprintf(cfg.szDescription, sizeof cfg.szDescription, "%s", args.description.c_str());
  if (args.streams.size() > SMGR_MAX_SESSION_STREAMS)
    return Usage(operation, "a session holds three streams at most");
  for (const std::string& member : args.streams) cfg.Streams[cfg.nNumOfStreams++] = ParseSelector(member);
  cfg.AdvertAddress.enType = SMGR_ANY_ADDRESS;
  try {
    if (!args.advertise.empty() && !ParseAdvert(args.advertise, &cfg.AdvertAddress, &cfg.usAdvertPort))
      return Usage(operation, "bad advertisement address or port " + args.advertise);
  } catch (const std::exception&) {
    return Usage(operation, "bad advertisement port in " + args.advertise);
  }
  cfg.bAdvertise = args.advertise.empty() ? FALSE : TRUE;
  if (!Connect()) return 1;
  HSESSION session = nullptr;
  if (!SessMgr_CreateSession(&cfg, &session)) return Fail(operation);
  int id = 0;
  SessMgr_GetSessionID(session, &id);
  SessMgr_CloseSession(&session);
  if (Globals().json)
    PrintJson({{"id", id}});
  else
    std::cout << "Created session " << id << ".\n";
  return 0;
}

int RunControl(const char* verb, BOOL (*control)(const SMGR_OBJECT_SELECTOR*), const std::string& target,
               const char* done) {
  if (!Connect()) return 1;
  SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
  if (!control(&selector)) return Fail(std::string("session ") + verb + " " + target);
  if (!Globals().json) std::cout << "Session " << target << " " << done << ".\n";
  return 0;
}

int PrintStats(const std::string& target) {
  SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
  SMGR_SESSION_STATS stats{};
  stats.nSize = sizeof stats;
  if (!SessMgr_GetSessionStats(&selector, &stats)) return Fail("session stats " + target);
  json value = {
      {"advertising", stats.bAdvertising != 0},       {"tx_ok_packets", Val(stats.nTxOkPackets)},
      {"tx_ok_bytes", Val(stats.nTxOkBytes)},         {"tx_failed_packets", Val(stats.nTxFailedPackets)},
      {"tx_failed_bytes", Val(stats.nTxFailedBytes)}, {"last_tx_errno", stats.iLastTxErrno}};
  if (Globals().json)
    PrintJson(value);
  else
    for (auto& [key, field] : value.items()) std::cout << key << ": " << field.dump() << "\n";
  return 0;
}

void AddSessionCommands(Command& command) {
  int& status = command.status();
  CLI::App* session = command.app().add_subcommand("session", "Sessions: advertised groups of streams");
  session->require_subcommand(1);
  session->add_subcommand("list", "List every session")->callback([&status] { status = RunList(); });

  std::string& showTarget = command.keep<std::string>();
  auto* show = session->add_subcommand("show", "Configuration of one session");
  show->add_option("session", showTarget, "Session ID or name")->required();
  show->callback([&status, &showTarget] { status = RunShow(showTarget); });

  CreateArgs& create = command.keep<CreateArgs>();
  auto* cmd = session->add_subcommand("create", "Create a session of up to three streams");
  cmd->add_option("name", create.name, "Session name")->required();
  cmd->add_option("-s,--stream", create.streams, "Member stream ID or name (repeatable)");
  cmd->add_option("--advertise", create.advertise, "Announce on ADDR[:PORT] (multicast, or any)");
  cmd->add_option("--description", create.description, "Description text");
  cmd->callback([&status, &create] { status = RunCreate(create); });

  struct Control {
    const char* name;
    const char* help;
    BOOL (*fn)(const SMGR_OBJECT_SELECTOR*);
    const char* done;
  };
  static const Control kControls[] = {
      {"start", "Start a session and its streams", SessMgr_StartSession, "started"},
      {"stop", "Stop a session", SessMgr_StopSession, "stopped"},
      {"delete", "Delete a stopped session", SessMgr_DeleteSession, "deleted"},
  };
  for (const Control& control : kControls) {
    std::string& target = command.keep<std::string>();
    auto* sub = session->add_subcommand(control.name, control.help);
    sub->add_option("session", target, "Session ID or name")->required();
    sub->callback([&status, &control, &target] {
      status = RunControl(control.name, control.fn, target, control.done);
    });
  }

  struct StatsArgs {
    std::string target;
    double watch = 0;
    int count = 0;
  };
  StatsArgs& statsArgs = command.keep<StatsArgs>();
  auto* stats = session->add_subcommand("stats", "Announcement counters of a session");
  stats->add_option("session", statsArgs.target, "Session ID or name")->required();
  AddWatchOptions(stats, statsArgs.watch, statsArgs.count);
  stats->callback([&status, &statsArgs] {
    if (!Connect()) {
      status = 1;
      return;
    }
    status = Watch(statsArgs.watch, statsArgs.count, [&] { return PrintStats(statsArgs.target); });
  });
}

const CommandGroup kSessionCommands{"session", AddSessionCommands};

}  // namespace
}  // namespace smgrctl
