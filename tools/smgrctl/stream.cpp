// smgrctl stream commands: list, show, create, start, stop, pause, resume,
// delete, stats (with --watch).
#include <arpa/inet.h>
#include <netdb.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstring>
#include <ctime>
#include <iostream>

#include "commands.h"
#include "exit_codes.h"
#include "output.h"
#include "paging.h"
#include "watch.h"

namespace smgrctl {
namespace {

using nlohmann::json;

bool IsWarning(SMGR_RESULT result) { return (result & SMGR_IS_SUCCESS_WITH_WARNING) != 0; }

void ReportWarning(const std::string& operation) {
  if (!IsWarning(SessMgr_GetLastError())) return;
  char text[256];
  SessMgr_GetLastErrorString(text, sizeof text);
  std::cerr << "smgrctl: " << operation << ": warning: " << text << "\n";
}

// Every stream, paging through the enumeration.
bool ListStreams(std::vector<SMGR_STREAM_INFO>* streams) {
  return CollectPages<SMGR_STREAM_INFO>(SessMgr_EnumerateStreams, streams, 8);
}

// The library's value names of streams.
std::string StateName(int state) { return ValueText(SessMgr_GetStreamStateString, state); }
std::string EncapsulationName(int encapsulation) {
  return ValueText(SessMgr_GetStreamEncapsulationString, encapsulation);
}
std::string StreamTypeName(int type) { return ValueText(SessMgr_GetStreamTypeString, type); }
std::string SrtModeName(int mode) { return ValueText(SessMgr_GetStreamModeString, mode); }
std::string SrtVersionText(int version) { return ValueText(SessMgr_GetSRTVersionString, version); }
std::string FecTypeName(int type) { return ValueText(SessMgr_GetFECTypeString, type); }

bool StreamStats(int id, SMGR_STREAM_STATS* stats) {
  SMGR_OBJECT_SELECTOR selector{};
  selector.enType = SMGR_SELECTBY_OBJECT_ID;
  selector.Via.ID = id;
  *stats = SMGR_STREAM_STATS{};
  stats->nSize = sizeof *stats;
  return SessMgr_GetStreamStats(&selector, stats);
}

const char* KindName(int kind) {
  switch (kind) {
    case SMGR_CONTENT_SRC_VIDEO:
      return "video";
    case SMGR_CONTENT_SRC_AUDIO:
      return "audio";
    case SMGR_CONTENT_SRC_DATA:
      return "data";
    default:
      return "?";
  }
}

std::string SourcesText(const SMGR_STREAM_INFO& info) {
  std::string text;
  for (int i = 0; i < info.nNumOfSources && i < SMGR_MAX_STREAM_CONTENT_SOURCES; ++i) {
    if (!text.empty()) text += ",";
    text += info.ContentSources[i].szName;
  }
  return text;
}

json SourcesJson(const SMGR_STREAM_INFO& info) {
  json sources = json::array();
  for (int i = 0; i < info.nNumOfSources && i < SMGR_MAX_STREAM_CONTENT_SOURCES; ++i) {
    const SMGR_CONTENT_INFO& source = info.ContentSources[i];
    sources.push_back({{"kind", KindName(source.enType)},
                       {"id", source.ID},
                       {"name", source.szName},
                       {"pid", source.iTsPid},
                       {"pid_auto_assigned", source.bTsPidWasAutoAssigned != 0}});
  }
  return sources;
}

json InfoJson(const SMGR_STREAM_INFO& info) {
  json value = {{"id", info.nIndex},
                {"name", info.szName},
                {"type", StreamTypeName(info.enType)},
                {"encapsulation", EncapsulationName(info.enEncapsulation)},
                {"encapsulation_value", info.enEncapsulation},
                {"address", AddressText(info.Address)},
                {"port", info.usPort},
                {"source_port", info.usSourcePort},
                {"mtu", info.IpMTU},
                {"ttl", info.IpTTL},
                {"tos", info.IpTOS},
                {"bandwidth_estimate_kbps", info.nBandwithEstimateInKbps},
                {"rtcp", info.bUseRTCP != 0},
                {"encrypted", info.bEncrypted != 0},
                {"fec", FecTypeName(info.enFECType)},
                {"still_image", info.szStillImageFName},
                {"user_data", info.szUserData},
                {"sources", SourcesJson(info)}};
  if (info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_UDP ||
      info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_RTP ||
      info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT) {
    value["ts"] = {{"pcr_pid", info.TsInfo.iPcrPID},
                   {"pmt_pid", info.TsInfo.iPmtPID},
                   {"program_number", info.TsInfo.iProgNum},
                   {"ts_id", info.TsInfo.iStreamID}};
  }
  if (info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT) {
    const SMGR_SRT_CFG& srt = info.EncapSpecCfg.SRT;
    value["srt"] = {{"mode", SrtModeName(srt.enMode)},
                    {"latency_ms", srt.nLatencyInMS},
                    {"max_bw_kbps", srt.nMaxBwInKbps},
                    {"network_adaptive", srt.bNetworkAdaptive != 0},
                    {"publishing_id", srt.szPublishingID}};
  }
  return value;
}

json StatsJson(const SMGR_STREAM_INFO& info, const SMGR_STREAM_STATS& stats) {
  const SMGR_SENDER_STREAM_STATS& sender = stats.Counters.Sender;
  json value = {{"id", info.nIndex},
                {"name", info.szName},
                {"state", StateName(stats.enState)},
                {"state_value", stats.enState},
                {"uptime_s", Val(stats.nUpTimeInSecs)},
                {"tx_packets", Val(sender.nTxOkPackets)},
                {"tx_bytes", Val(sender.nTxOkBytes)},
                {"tx_failed_packets", Val(sender.nTxFailedPackets)},
                {"bitrate_kbps", stats.nBitRateInKbps},
                {"max_packet_payload", stats.nMaxPacketPayload}};
  if (info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT) {
    const SMGR_STREAM_SRT_STATS& conn = stats.EncapSpecStats.SRT.Conn;
    value["srt"] = {{"links", stats.EncapSpecStats.SRT.nLinks},
                    {"sent_packets", Val(conn.Dir.Tx.nSentPkts)},
                    {"resent_packets", Val(conn.Dir.Tx.nResentPkts)},
                    {"lost_packets", Val(conn.nLostPkts)},
                    {"rtt_ms", conn.iRTT},
                    {"latency_ms", conn.iLatency},
                    {"version", SrtVersionText(conn.iVersion)},
                    {"peer_version", SrtVersionText(conn.iPeerVersion)}};
  }
  return value;
}

int RunList() {
  if (!Connect()) return 1;
  std::vector<SMGR_STREAM_INFO> streams;
  if (!ListStreams(&streams)) return Fail("stream list");
  json array = json::array();
  Table table({"ID", "NAME", "STATE", "ENCAPS", "DESTINATION", "PORT", "SOURCES", "EST KBIT/S"});
  table.alignRight("ID");
  table.alignRight("PORT");
  table.alignRight("EST KBIT/S");
  for (const SMGR_STREAM_INFO& info : streams) {
    SMGR_STREAM_STATS stats;
    if (!StreamStats(info.nIndex, &stats)) {
      // Deleted between the enumeration and its statistics: not there any more.
      if (SessMgr_GetLastError() == SMGR_ERROR_NO_MATCHING_STREAM_FOUND) continue;
      return Fail("stream stats " + std::to_string(info.nIndex));
    }
    json entry = InfoJson(info);
    entry["state"] = StateName(stats.enState);
    array.push_back(entry);
    table.add({std::to_string(info.nIndex), info.szName, StateName(stats.enState),
               EncapsulationName(info.enEncapsulation), AddressText(info.Address),
               std::to_string(info.usPort), SourcesText(info), std::to_string(info.nBandwithEstimateInKbps)});
  }
  if (Globals().json) {
    PrintJson(array);
  } else if (table.empty()) {
    std::cout << "No streams.\n";
  } else {
    std::cout << table.render();
  }
  return 0;
}

int RunShow(const std::string& target) {
  if (!Connect()) return 1;
  SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
  SMGR_STREAM_INFO info{};
  info.nSize = sizeof info;
  if (!SessMgr_GetStreamInfo(&selector, &info)) return Fail("stream show " + target);
  SMGR_STREAM_STATS stats;
  if (!StreamStats(info.nIndex, &stats)) return Fail("stream stats " + target);
  if (Globals().json) {
    json value = InfoJson(info);
    value["state"] = StateName(stats.enState);
    value["stats"] = StatsJson(info, stats);
    PrintJson(value);
    return 0;
  }
  Table fields({"FIELD", "VALUE"});
  auto add = [&](const std::string& field, const std::string& value) { fields.add({field, value}); };
  add("ID", std::to_string(info.nIndex));
  add("Name", info.szName);
  add("Type", StreamTypeName(info.enType));
  add("State", StateName(stats.enState));
  add("Encapsulation", EncapsulationName(info.enEncapsulation));
  add("Destination", AddressText(info.Address));
  add("Port", std::to_string(info.usPort));
  add("MTU / TTL / TOS",
      std::to_string(info.IpMTU) + " / " + std::to_string(info.IpTTL) + " / " + std::to_string(info.IpTOS));
  add("Bandwidth estimate", std::to_string(info.nBandwithEstimateInKbps) + " kbit/s");
  add("RTCP", info.bUseRTCP ? "Yes" : "No");
  add("Encrypted", info.bEncrypted ? "Yes" : "No");
  add("FEC", FecTypeName(info.enFECType));
  if (info.szStillImageFName[0]) add("Still image", info.szStillImageFName);
  if (info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_UDP ||
      info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_RTP ||
      info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT) {
    add("PCR / PMT PID", std::to_string(info.TsInfo.iPcrPID) + " / " + std::to_string(info.TsInfo.iPmtPID));
    add("Program / TS ID",
        std::to_string(info.TsInfo.iProgNum) + " / " + std::to_string(info.TsInfo.iStreamID));
  }
  if (info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT) {
    const SMGR_SRT_CFG& srt = info.EncapSpecCfg.SRT;
    add("SRT mode", SrtModeName(srt.enMode));
    add("SRT latency", std::to_string(srt.nLatencyInMS) + " ms");
    if (srt.szPublishingID[0]) add("SRT publishing ID", srt.szPublishingID);
  }
  add("Up time", DurationText(Val(stats.nUpTimeInSecs)));
  add("Packets / bytes", std::to_string(Val(stats.Counters.Sender.nTxOkPackets)) + " / " +
                             std::to_string(Val(stats.Counters.Sender.nTxOkBytes)));
  add("Bit rate", std::to_string(stats.nBitRateInKbps) + " kbit/s");
  if (info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT) {
    const SMGR_STREAM_SRT_STATS& conn = stats.EncapSpecStats.SRT.Conn;
    add("SRT RTT", std::to_string(conn.iRTT) + " ms");
    add("SRT sent / resent / lost", std::to_string(Val(conn.Dir.Tx.nSentPkts)) + " / " +
                                        std::to_string(Val(conn.Dir.Tx.nResentPkts)) + " / " +
                                        std::to_string(Val(conn.nLostPkts)));
    add("SRT version (local / peer)",
        SrtVersionText(conn.iVersion) + " / " + SrtVersionText(conn.iPeerVersion));
  }
  std::cout << fields.render();

  Table sources({"KIND", "ID", "NAME", "PID"});
  sources.alignRight("ID");
  sources.alignRight("PID");
  for (int i = 0; i < info.nNumOfSources && i < SMGR_MAX_STREAM_CONTENT_SOURCES; ++i) {
    const SMGR_CONTENT_INFO& source = info.ContentSources[i];
    sources.add(
        {KindName(source.enType), std::to_string(source.ID), source.szName, std::to_string(source.iTsPid)});
  }
  std::cout << "\n" << sources.render();
  return 0;
}

struct CreateArgs {
  std::string name;
  int id = 0;
  std::string encapsulation = "TS-UDP";
  std::string address;
  int port = 0;
  std::vector<std::string> video, audio, data;
  bool autoStart = false;
  int ttl = 0, mtu = 0, tos = 0;
  bool rtcp = false;
  std::string srtMode = "caller";
  int latency = 0;
  std::string passphrase;
  std::string publishingId;
  std::string still;
  std::string userData;
  // The SRT-only options, to refuse them for other encapsulations.
  std::vector<const CLI::Option*> srtOnly;
};

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

bool ParseEncapsulation(const std::string& text, int* value) {
  static const std::pair<const char*, int> kNames[] = {{"direct-rtp", SMGR_STREAM_ENCAPS_DIRECT_RTP},
                                                       {"ts-udp", SMGR_STREAM_ENCAPS_TS_UDP},
                                                       {"ts-rtp", SMGR_STREAM_ENCAPS_TS_RTP},
                                                       {"quicktime", SMGR_STREAM_ENCAPS_QUICKTIME},
                                                       {"ts-srt", SMGR_STREAM_ENCAPS_TS_SRT}};
  const std::string lower = Lower(text);
  for (const auto& [name, number] : kNames) {
    if (lower == name) return *value = number, true;
  }
  try {
    size_t used = 0;
    *value = std::stoi(text, &used);
    return used == text.size();
  } catch (...) {
    return false;
  }
}

bool Resolves(const std::string& host) {
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  addrinfo* found = nullptr;
  if (getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0) return false;
  freeaddrinfo(found);
  return true;
}

bool ParseAddress(const std::string& text, SMGR_IP_ADDRESS* address) {
  *address = SMGR_IP_ADDRESS{};
  if (text.empty() || Lower(text) == "any") {
    address->enType = SMGR_ANY_ADDRESS;
    return true;
  }
  if (inet_pton(AF_INET, text.c_str(), address->acAddress) == 1) {
    address->enType = SMGR_IPV4_ADDRESS;
    return true;
  }
  if (inet_pton(AF_INET6, text.c_str(), address->acAddress) == 1) {
    address->enType = SMGR_IPV6_ADDRESS;
    return true;
  }
  // Digits and dots only: an IPv4 address, and inet_pton said it is not one
  // ("1.2.3" would otherwise reach the resolver, which reads it as 1.2.0.3).
  if (text.find_first_not_of("0123456789.") == std::string::npos) return false;
  if (text.size() >= sizeof address->szHostName) return false;
  address->enType = SMGR_IPV4_HOSTNAME;  // the library resolves it before sending
  snprintf(address->szHostName, sizeof address->szHostName, "%s", text.c_str());
  return true;
}

int RunCreate(const CreateArgs& args) {
  const std::string operation = "stream create";
  SMGR_STREAM_CFG cfg{};
  cfg.nSize = sizeof cfg;
  cfg.nIndex = args.id;
  if (args.name.size() >= sizeof cfg.szName) return Usage(operation, "name longer than 63 characters");
  snprintf(cfg.szName, sizeof cfg.szName, "%s", args.name.c_str());
  cfg.enType = SMGR_STREAM_TYPE_TX;
  cfg.bAutoStart = args.autoStart;
  if (!ParseEncapsulation(args.encapsulation, &cfg.enEncapsulation)) {
    return Usage(operation, "unknown encapsulation \"" + args.encapsulation + "\"");
  }
  const bool srt = cfg.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT;
  for (const CLI::Option* option : args.srtOnly) {
    if (!srt && option->count() > 0)
      return Usage(operation, option->get_name() + " applies to TS-SRT streams only");
  }
  int srtMode = SMGR_SRT_MODE_CLIENT;
  if (srt) {
    const std::string mode = Lower(args.srtMode);
    if (mode == "caller") {
      srtMode = SMGR_SRT_MODE_CLIENT;
    } else if (mode == "listener") {
      srtMode = SMGR_SRT_MODE_SERVER;
    } else if (mode == "rendezvous") {
      srtMode = SMGR_SRT_MODE_RENDEZ_VOUS;
    } else {
      return Usage(operation, "SRT mode must be caller, listener or rendezvous");
    }
  }
  std::string address = args.address;
  if (address.empty() && !(srt && srtMode == SMGR_SRT_MODE_SERVER)) {
    return Usage(operation, "--address is required (except for SRT listeners)");
  }
  if (!ParseAddress(address, &cfg.Address)) return Usage(operation, "bad address \"" + address + "\"");
  if (cfg.Address.enType == SMGR_IPV4_HOSTNAME && !Resolves(address)) {
    // The library would send it unresolved (warning 0x80000003) and the daemon refuse the
    // empty address: say what happened.
    char text[256];
    SessMgr_GetErrorString(SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME, text, sizeof text);
    return FailWith(operation, SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME,
                    std::string(text) + " \"" + address + "\"", kExitRefused);
  }
  if (args.port < 0 || args.port > 65535) return Usage(operation, "port must be 0 to 65535");
  cfg.usPort = static_cast<uint16_t>(args.port);
  cfg.IpTTL = static_cast<uint8_t>(args.ttl);
  cfg.IpMTU = static_cast<uint16_t>(args.mtu);
  cfg.IpTOS = static_cast<uint8_t>(args.tos);
  cfg.bUseRTCP = args.rtcp;
  if (args.still.size() >= sizeof cfg.szStillImageFName) return Usage(operation, "still image name too long");
  snprintf(cfg.szStillImageFName, sizeof cfg.szStillImageFName, "%s", args.still.c_str());
  snprintf(cfg.szUserData, sizeof cfg.szUserData, "%s", args.userData.c_str());

  // Content sources: numbers select by ID, anything else by name.
  std::vector<std::pair<int, std::string>> sources;
  for (const auto& v : args.video) sources.emplace_back(SMGR_CONTENT_SRC_VIDEO, v);
  for (const auto& a : args.audio) sources.emplace_back(SMGR_CONTENT_SRC_AUDIO, a);
  for (const auto& d : args.data) sources.emplace_back(SMGR_CONTENT_SRC_DATA, d);
  if (sources.empty()) {
    sources.emplace_back(SMGR_CONTENT_SRC_VIDEO, "1");
    sources.emplace_back(SMGR_CONTENT_SRC_AUDIO, "1");
  }
  if (sources.size() > SMGR_MAX_STREAM_CONTENT_SOURCES) return Usage(operation, "at most 24 content sources");
  for (size_t i = 0; i < sources.size(); ++i) {
    SMGR_CONTENT_SRC& source = cfg.ContentSources[i];
    source.enType = sources[i].first;
    source.Selector = ParseSelector(sources[i].second);
    cfg.enContents |= static_cast<uint32_t>(sources[i].first);
  }
  cfg.nNumOfSources = static_cast<uint32_t>(sources.size());

  if (srt) {
    SMGR_SRT_CFG& srtCfg = cfg.EncapSpecCfg.SRT;
    srtCfg.enMode = srtMode;
    srtCfg.nLatencyInMS = args.latency;
    snprintf(srtCfg.szPublishingID, sizeof srtCfg.szPublishingID, "%s", args.publishingId.c_str());
    if (!args.passphrase.empty()) {
      cfg.bEncrypted = TRUE;
      snprintf(cfg.CryptoCfg.szPassphrase, sizeof cfg.CryptoCfg.szPassphrase, "%s", args.passphrase.c_str());
    }
  }

  if (!Connect()) return 1;
  HSTREAM stream = nullptr;
  if (!SessMgr_CreateStream(&cfg, &stream)) return Fail(operation + " " + args.name);
  ReportWarning(operation);
  int id = 0;
  SessMgr_GetStreamID(stream, &id);
  SMGR_OBJECT_SELECTOR selector{};
  selector.enType = SMGR_SELECTBY_OBJECT_ID;
  selector.Via.ID = id;
  SMGR_STREAM_INFO info{};
  info.nSize = sizeof info;
  const bool haveInfo = SessMgr_GetStreamInfo(&selector, &info);
  SessMgr_CloseStream(&stream);
  if (Globals().json) {
    PrintJson(haveInfo ? InfoJson(info) : json{{"id", id}});
  } else {
    std::cout << "Created stream " << id << " \"" << (haveInfo ? info.szName : args.name.c_str()) << "\"\n";
  }
  return 0;
}

using ControlFn = BOOL (*)(const SMGR_OBJECT_SELECTOR*);

int RunControl(const char* verb, ControlFn control, const std::string& target, const char* done) {
  if (!Connect()) return 1;
  SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
  const std::string operation = std::string("stream ") + verb + " " + target;
  if (!control(&selector)) return Fail(operation);
  ReportWarning(operation);
  if (Globals().json) {
    PrintJson({{"stream", target}, {"done", done}, {"result", SessMgr_GetLastError()}});
  } else {
    std::cout << "Stream " << target << " " << done << ".\n";
  }
  return 0;
}

// One sample of the counters. Targets that do not exist are reported and the others
// shown; the status is then the failure's. With --json, one array, or with ndjson
// one compact object {"time", "streams"} on a line of its own (--watch).
int PrintStatsOnce(const std::vector<std::string>& targets, bool ndjson) {
  std::vector<SMGR_STREAM_INFO> streams;
  int status = 0;
  if (targets.empty()) {
    if (!ListStreams(&streams)) return Fail("stream stats");
  } else {
    for (const std::string& target : targets) {
      SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
      SMGR_STREAM_INFO info{};
      info.nSize = sizeof info;
      if (SessMgr_GetStreamInfo(&selector, &info)) {
        streams.push_back(info);
      } else {
        status = Fail("stream stats " + target);
      }
    }
  }
  json array = json::array();
  Table table({"ID", "NAME", "STATE", "UPTIME", "PACKETS", "BYTES", "KBIT/S", "SRT RTT", "SRT LOST"});
  for (const char* column : {"ID", "PACKETS", "BYTES", "KBIT/S", "SRT RTT", "SRT LOST"})
    table.alignRight(column);
  for (const SMGR_STREAM_INFO& info : streams) {
    SMGR_STREAM_STATS stats;
    if (!StreamStats(info.nIndex, &stats)) {
      if (SessMgr_GetLastError() == SMGR_ERROR_NO_MATCHING_STREAM_FOUND && targets.empty()) continue;
      return Fail("stream stats " + std::to_string(info.nIndex));
    }
    array.push_back(StatsJson(info, stats));
    const bool srt = info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT;
    const SMGR_STREAM_SRT_STATS& conn = stats.EncapSpecStats.SRT.Conn;
    table.add(
        {std::to_string(info.nIndex), info.szName, StateName(stats.enState),
         DurationText(Val(stats.nUpTimeInSecs)), std::to_string(Val(stats.Counters.Sender.nTxOkPackets)),
         std::to_string(Val(stats.Counters.Sender.nTxOkBytes)), std::to_string(stats.nBitRateInKbps),
         srt ? std::to_string(conn.iRTT) + " ms" : "-", srt ? std::to_string(Val(conn.nLostPkts)) : "-"});
  }
  if (ndjson) {
    std::cout << json{{"time", TimestampText()}, {"streams", array}}.dump() << "\n";
  } else if (Globals().json) {
    PrintJson(array);
  } else if (table.empty()) {
    if (status == 0) std::cout << "No streams.\n";
  } else {
    std::cout << table.render();
  }
  std::cout.flush();
  return status;
}

int RunStats(const std::vector<std::string>& targets, double watchSeconds, int count) {
  if (!Connect()) return 1;
  const bool ndjson = watchSeconds > 0 && Globals().json;
  return Watch(watchSeconds, count, [&] { return PrintStatsOnce(targets, ndjson); });
}

void AddStreamCommands(Command& command) {
  int& status = command.status();
  CLI::App* stream = command.app().add_subcommand("stream", "Network output streams");
  stream->require_subcommand(1);

  stream->add_subcommand("list", "List every stream with its state")->callback([&status] {
    status = RunList();
  });

  auto* show = stream->add_subcommand("show", "Configuration, state and counters of one stream");
  std::string& showTarget = command.keep<std::string>();
  show->add_option("stream", showTarget, "Stream ID or name")->required();
  show->callback([&status, &showTarget] { status = RunShow(showTarget); });

  CreateArgs& create = command.keep<CreateArgs>();
  auto* cmd = stream->add_subcommand("create", "Create a stream");
  cmd->add_option("name", create.name, "Stream name (empty lets the daemon choose)")->required();
  cmd->add_option("--id", create.id, "Stream ID (default: the daemon chooses)");
  cmd->add_option("-e,--encaps", create.encapsulation,
                  "TS-UDP, TS-RTP, TS-SRT, Direct-RTP, QuickTime or a number")
      ->capture_default_str();
  cmd->add_option("-a,--address", create.address,
                  "Destination: IPv4, IPv6, host name, or any (SRT listener)");
  cmd->add_option("-p,--port", create.port, "Destination (or listening) port")->required();
  cmd->add_option("--video", create.video, "Video encoder ID or name (default: video 1 and audio 1)");
  cmd->add_option("--audio", create.audio, "Audio encoder ID or name (repeatable)");
  cmd->add_option("--data", create.data, "Metadata source ID or name (repeatable)");
  cmd->add_flag("--auto-start", create.autoStart, "Start the stream as soon as it is created");
  cmd->add_option("--ttl", create.ttl, "IP time-to-live (0: the daemon's default)")
      ->check(CLI::Range(0, 255));
  cmd->add_option("--mtu", create.mtu, "IP MTU (0: the daemon's default)")->check(CLI::Range(0, 65535));
  cmd->add_option("--tos", create.tos, "IP type of service")->check(CLI::Range(0, 255));
  cmd->add_flag("--rtcp", create.rtcp, "Use RTCP (RTP encapsulations)");
  create.srtOnly = {
      cmd->add_option("--srt-mode", create.srtMode, "SRT: caller, listener or rendezvous (any case)")
          ->capture_default_str(),
      cmd->add_option("--latency", create.latency, "SRT latency in ms (0: the daemon's default)"),
      cmd->add_option("--passphrase", create.passphrase, "SRT: encrypt with this pass phrase"),
      cmd->add_option("--publishing-id", create.publishingId, "SRT stream publishing ID (caller mode)")};
  cmd->add_option("--still", create.still, "Still image file shown when there is no video");
  cmd->add_option("--user-data", create.userData, "Free text kept with the stream");
  cmd->callback([&status, &create] { status = RunCreate(create); });

  struct Control {
    const char* name;
    const char* help;
    ControlFn fn;
    const char* done;
  };
  static const Control kControls[] = {
      {"start", "Start a stream", SessMgr_StartStream, "started"},
      {"stop", "Stop a stream", SessMgr_StopStream, "stopped"},
      {"pause", "Pause a running stream", SessMgr_PauseStream, "paused"},
      {"resume", "Resume a paused stream", SessMgr_ResumeStream, "resumed"},
      {"delete", "Delete a stopped stream", SessMgr_DeleteStream, "deleted"},
  };
  for (const Control& control : kControls) {
    std::string& controlTarget = command.keep<std::string>();
    auto* sub = stream->add_subcommand(control.name, control.help);
    sub->add_option("stream", controlTarget, "Stream ID or name")->required();
    sub->callback([&status, &control, &controlTarget] {
      status = RunControl(control.name, control.fn, controlTarget, control.done);
    });
  }

  struct StatsArgs {
    std::vector<std::string> targets;
    double watch = 0;
    int count = 0;
  };
  StatsArgs& statsArgs = command.keep<StatsArgs>();
  auto* stats = stream->add_subcommand("stats", "Counters of streams (all when none is named)");
  stats->add_option("streams", statsArgs.targets, "Stream IDs or names");
  AddWatchOptions(stats, statsArgs.watch, statsArgs.count);
  stats->callback(
      [&status, &statsArgs] { status = RunStats(statsArgs.targets, statsArgs.watch, statsArgs.count); });
}

const CommandGroup kStreamCommands{"stream", AddStreamCommands};

}  // namespace

}  // namespace smgrctl
