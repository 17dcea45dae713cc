// smgrctl metadata (alias meta) commands: list, show, create, set, start,
// stop, delete, stats (with --watch) and reset-stats of metadata sources.
#include <arpa/inet.h>
#include <signal.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <iostream>
#include <sstream>
#include <thread>

#include "commands.h"
#include "output.h"
#include "paging.h"

namespace smgrctl {
namespace {

using nlohmann::json;

std::atomic<bool> g_interrupted{false};
void OnInterrupt(int) { g_interrupted = true; }

std::string TypeName(int type) { return ValueText(SessMgr_GetMetaDataInputTypeString, type); }
std::string FormatName(int format) { return ValueText(SessMgr_GetMetaDataInputFormatString, format); }
std::string StatusName(int status) { return ValueText(SessMgr_GetMetaDataSourceStatusString, status); }
std::string StateName(int state) { return ValueText(SessMgr_GetMetaDataSourceStateString, state); }

std::string FilterText(const uint32_t* filter, UINT first, UINT last) {
  char text[600];
  _GenerateTagFilterString(filter, first, last, text, sizeof text);
  return text;
}

std::string InputText(const SMGR_METADATA_INFO& info) {
  switch (info.enInputType) {
    case SMGR_METADATA_IN_TYPE_SERIAL:
      return std::string(info.in.Serial.szInputDeviceName, strnlen(info.in.Serial.szInputDeviceName, 288)) +
             " @" + std::to_string(info.in.Serial.nBaudRate);
    case SMGR_METADATA_IN_TYPE_INET:
      return AddressText(info.in.Network.Address) + ":" + std::to_string(info.in.Network.usPort);
    default:
      return "input " + std::to_string(info.in.Video.enInputInterface);
  }
}

json InfoJson(const SMGR_METADATA_INFO& info) {
  json relays = json::array();
  for (uint32_t i = 0; i < info.nNumOfRelays && i < SMGR_METADATA_MAX_RELAYS; ++i) {
    const SMGR_METADATA_RELAY_CFG& relay = info.Relays[i];
    relays.push_back({{"address", AddressText(relay.Address)},
                      {"port", Val(relay.usPort)},
                      {"ttl", Val(relay.iTTL)},
                      {"tos", Val(relay.iTOS)}});
  }
  return {
      {"id", info.nIndex},
      {"name", info.szName},
      {"input_type", TypeName(info.enInputType)},
      {"input", InputText(info)},
      {"format", FormatName(info.enInputFormat)},
      {"status", StatusName(info.enStatus)},
      {"relaying", info.bEnableRelaying != 0},
      {"relays", relays},
      {"mission_id", std::string(info.szMissionID, strnlen(info.szMissionID, sizeof info.szMissionID))},
      {"classify", info.bClassifyMission != 0},
      {"classification", ValueText(SessMgr_GetMetaDataMissionClassificationString, info.enClassification)},
      {"decimation_type", info.DecimationCfg.enType},
      {"decimation_by", Val(info.DecimationCfg.By.nFactor)},
      {"uas_tags", info.bFilterUASTags ? FilterText(info.UASTagFilter, 1, SMGR_METADATA_MAX_UAS_TAG) : ""},
      {"security_tags", info.bFilterUASSecurityTags
                            ? FilterText(info.UASSecurityTagFilter, 1, SMGR_METADATA_MAX_SECURITY_TAG)
                            : ""}};
}

json StatsJson(const SMGR_METADATA_INFO& info, const SMGR_METADATA_STATS& stats) {
  json value = {{"id", info.nIndex},
                {"name", info.szName},
                {"state", StateName(stats.enState)},
                {"rx_bytes", Val(stats.nRxBytes)},
                {"rx_messages", Val(stats.nRxOkMessages)},
                {"rx_corrupt", Val(stats.nRxCorruptMessages)},
                {"bitrate_kbps", stats.nBitRateInKbps}};
  if (stats.bLatencyMeasured)
    value["latency_ms"] = {stats.nMinLatencyInMS, stats.nAverageLatencyInMS, stats.nMaxLatencyInMS};
  if (stats.enInputFormat == SMGR_METADATA_IN_FORMAT_COT) {
    json sensors = json::array();
    for (uint32_t i = 0; i < stats.format.CoT.nDiscoveredSensorsCount && i < SMGR_METADATA_MAX_SENSORS; ++i)
      sensors.push_back(
          std::string(stats.format.CoT.aszSensorUIDs[i], strnlen(stats.format.CoT.aszSensorUIDs[i], 128)));
    value["sensors"] = sensors;
    value["converted_klv_messages"] = Val(stats.format.CoT.nConvertedKLVMessages);
  } else {
    value["uas_messages"] = Val(stats.format.KLV.nRxUASMessages);
  }
  json relays = json::array();
  for (int i = 0; i < stats.nNumOfRelays && i < SMGR_METADATA_MAX_RELAYS; ++i)
    relays.push_back(
        {{"tx_bytes", Val(stats.Relays[i].nTxBytes)}, {"tx_messages", Val(stats.Relays[i].nTxMessages)}});
  value["relays"] = relays;
  return value;
}

bool Stats(const SMGR_OBJECT_SELECTOR& selector, SMGR_METADATA_STATS* stats) {
  *stats = SMGR_METADATA_STATS{};
  stats->nSize = sizeof *stats;
  return SessMgr_GetMetaDataSourceStats(&selector, stats);
}

bool Info(const SMGR_OBJECT_SELECTOR& selector, SMGR_METADATA_INFO* info) {
  *info = SMGR_METADATA_INFO{};
  info->nSize = sizeof *info;
  return SessMgr_GetMetaDataSourceInfo(&selector, info);
}

SMGR_OBJECT_SELECTOR ById(int id) {
  SMGR_OBJECT_SELECTOR selector{};
  selector.Via.ID = id;
  return selector;
}

int RunList() {
  if (!Connect()) return 1;
  std::vector<SMGR_METADATA_INFO> sources;
  if (!CollectPages<SMGR_METADATA_INFO>(SessMgr_EnumerateMetaDataSources, &sources, 1))
    return Fail("metadata list");
  json array = json::array();
  Table table({"ID", "NAME", "TYPE", "FORMAT", "INPUT", "STATUS", "RELAYS"});
  table.alignRight("ID");
  for (const SMGR_METADATA_INFO& info : sources) {
    array.push_back(InfoJson(info));
    table.add({std::to_string(info.nIndex), info.szName, TypeName(info.enInputType),
               FormatName(info.enInputFormat), InputText(info), StatusName(info.enStatus),
               std::to_string(info.nNumOfRelays)});
  }
  if (Globals().json)
    PrintJson(array);
  else if (table.empty())
    std::cout << "No metadata sources.\n";
  else
    std::cout << table.render();
  return 0;
}

int RunShow(const std::string& target) {
  if (!Connect()) return 1;
  SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
  SMGR_METADATA_INFO info;
  SMGR_METADATA_STATS stats;
  if (!Info(selector, &info)) return Fail("metadata show " + target);
  if (!Stats(ById(info.nIndex), &stats)) return Fail("metadata stats " + target);
  json value = InfoJson(info);
  value["stats"] = StatsJson(info, stats);
  if (Globals().json) {
    PrintJson(value);
    return 0;
  }
  Table fields({"FIELD", "VALUE"});
  auto add = [&](const std::string& field, const std::string& text) { fields.add({field, text}); };
  auto yes = [](BOOL b) { return std::string(b ? "Yes" : "No"); };
  add("ID", std::to_string(info.nIndex));
  add("Name", info.szName);
  add("Input", TypeName(info.enInputType) + " " + InputText(info));
  add("Format", FormatName(info.enInputFormat));
  add("Status", StatusName(info.enStatus));
  add("Relaying", yes(info.bEnableRelaying));
  for (const json& relay : value["relays"])
    add("Relay", relay["address"].get<std::string>() + ":" + relay["port"].dump() + " ttl " +
                     relay["ttl"].dump() + " tos " + relay["tos"].dump());
  if (info.szMissionID[0]) add("Mission ID", value["mission_id"]);
  if (info.bClassifyMission) add("Classification", value["classification"]);
  if (info.bFilterUASTags) add("UAS tags", value["uas_tags"]);
  if (info.bFilterUASSecurityTags) add("Security tags", value["security_tags"]);
  add("State", StateName(stats.enState));
  add("Bytes / messages",
      std::to_string(Val(stats.nRxBytes)) + " / " + std::to_string(Val(stats.nRxOkMessages)));
  add("Bit rate", std::to_string(stats.nBitRateInKbps) + " kbit/s");
  if (stats.bLatencyMeasured)
    add("Latency min / avg / max", std::to_string(stats.nMinLatencyInMS) + " / " +
                                       std::to_string(stats.nAverageLatencyInMS) + " / " +
                                       std::to_string(stats.nMaxLatencyInMS) + " ms");
  if (value["stats"].contains("sensors"))
    for (const json& sensor : value["stats"]["sensors"]) add("Sensor", sensor);
  std::cout << fields.render();
  return 0;
}

// ---- create and set ----------------------------------------------------------

struct SourceArgs {
  std::string target;  // set: the source; create: the name
  std::string serial;
  int baud = 0;
  bool rs422 = false;
  std::string udp;
  int videoInput = 0;
  bool cot = false;
  std::string spiUid;
  bool sensorDiscovery = false;
  std::vector<std::string> relays;
  bool relaying = false;
  std::string mission;
  std::string classify;
  std::string country;
  std::string objectCountry;
  int decimate = 0;
  int decimateBy = 0;
  std::string uasTags;
  std::string securityTags;
  bool autoStart = false;
  CLI::App* app = nullptr;
  bool given(const char* option) const { return app->count(option) > 0; }
};

// "2,5-10" into a bit set; false for a tag outside 1..nMax or bad text.
bool ParseTags(const std::string& text, UINT nMax, uint32_t* filter) {
  std::stringstream list(text);
  std::string item;
  while (std::getline(list, item, ',')) {
    try {
      size_t dash = item.find('-');
      const unsigned first = std::stoul(item.substr(0, dash));
      const unsigned last = dash == std::string::npos ? first : std::stoul(item.substr(dash + 1));
      if (first < 1 || last > nMax || first > last) return false;
      for (unsigned tag = first; tag <= last; ++tag) filter[tag / 32] |= 1u << (tag % 32);
    } catch (...) {
      return false;
    }
  }
  return true;
}

// "[ADDR:]PORT": a numeric IPv4 address or a host name the library resolves.
bool ParseAddressPort(const std::string& text, SMGR_IP_ADDRESS* address, uint16_t* port) {
  *address = SMGR_IP_ADDRESS{};
  const size_t colon = text.rfind(':');
  try {
    const unsigned long number = std::stoul(colon == std::string::npos ? text : text.substr(colon + 1));
    if (number == 0 || number > 65535) return false;
    *port = static_cast<uint16_t>(number);
  } catch (...) {
    return false;
  }
  if (colon == std::string::npos) return true;
  const std::string host = text.substr(0, colon);
  if (inet_pton(AF_INET, host.c_str(), address->acAddress) == 1) return true;
  if (host.empty() || host.size() >= sizeof address->szHostName) return false;
  address->enType = SMGR_UNRESOLVED_HOSTNAME;
  snprintf(address->szHostName, sizeof address->szHostName, "%s", host.c_str());
  return true;
}

// "ADDR:PORT[,ttl=N][,tos=N]".
bool ParseRelay(const std::string& text, SMGR_METADATA_RELAY_CFG* relay) {
  *relay = SMGR_METADATA_RELAY_CFG{};
  relay->iTTL = 16;
  std::stringstream parts(text);
  std::string part;
  std::getline(parts, part, ',');
  if (!ParseAddressPort(part, &relay->Address, &relay->usPort) || part.find(':') == std::string::npos)
    return false;
  while (std::getline(parts, part, ',')) {
    try {
      if (part.rfind("ttl=", 0) == 0)
        relay->iTTL = std::stoi(part.substr(4));
      else if (part.rfind("tos=", 0) == 0)
        relay->iTOS = std::stoi(part.substr(4));
      else
        return false;
    } catch (...) {
      return false;
    }
  }
  return true;
}

int ClassificationOf(const std::string& text) {
  for (int level = SMGR_METADATA_CLASSIFICATION_UNCLASSIFIED;
       level <= SMGR_METADATA_CLASSIFICATION_TOP_SECRET; ++level) {
    std::string name = ValueText(SessMgr_GetMetaDataMissionClassificationString, level);
    std::string given = text;
    std::transform(given.begin(), given.end(), given.begin(), ::toupper);
    std::replace(given.begin(), given.end(), '-', ' ');
    if (given == name || given == std::to_string(level)) return level;
  }
  return -1;
}

// Fills cfg from the options given and flags what they set; an error text when they do not fit.
std::string BuildConfig(const SourceArgs& args, SMGR_METADATA_CFG* cfg) {
  // A packed field: work on a copy and write it back on every way out.
  uint64_t flags = cfg->SetFieldsFlag;
  struct WriteBack {
    decltype(cfg) record;
    const uint64_t& value;
    ~WriteBack() { record->SetFieldsFlag = value; }
  } writeBack{cfg, flags};
  const int inputs = args.given("--serial") + args.given("--udp") + args.given("--video-input");
  if (inputs > 1) return "give one of --serial, --udp and --video-input";
  if (args.given("--serial")) {
    cfg->enInputType = SMGR_METADATA_IN_TYPE_SERIAL;
    snprintf(cfg->in.Serial.szInputDeviceName, sizeof cfg->in.Serial.szInputDeviceName, "%s",
             args.serial.c_str());
    flags |= SMGR_METADATA_SET_INPUT_TYPE | SMGR_METADATA_SET_SERIAL_DEVICE;
  }
  if (args.given("--baud")) cfg->in.Serial.nBaudRate = args.baud, flags |= SMGR_METADATA_SET_SERIAL_BAUDRATE;
  if (args.given("--rs422"))
    cfg->in.Serial.enStandard = SMGR_METADATA_SERIAL_STD_RS422, flags |= SMGR_METADATA_SET_SERIAL_STANDARD;
  if (args.given("--udp")) {
    cfg->enInputType = SMGR_METADATA_IN_TYPE_INET;
    if (!ParseAddressPort(args.udp, &cfg->in.Network.Address, &cfg->in.Network.usPort))
      return "bad --udp " + args.udp;
    flags |= SMGR_METADATA_SET_INPUT_TYPE | SMGR_METADATA_SET_INET_PORT;
    if (args.udp.find(':') != std::string::npos)
      flags |= SMGR_METADATA_SET_INET_ADDRESS;  // PORT alone keeps it
  }
  if (args.given("--video-input")) {
    cfg->enInputType = SMGR_METADATA_IN_TYPE_VIDEO_INPUT;
    cfg->in.Video.enInputInterface = args.videoInput;
    flags |= SMGR_METADATA_SET_VIDEO_INPUT;
  }
  if (args.given("--cot"))
    cfg->enInputFormat = SMGR_METADATA_IN_FORMAT_COT, flags |= SMGR_METADATA_SET_INPUT_FORMAT;
  if (args.given("--spi-uid")) {
    snprintf(cfg->format.CoT.szSpiUid, sizeof cfg->format.CoT.szSpiUid, "%s", args.spiUid.c_str());
    flags |= SMGR_METADATA_SET_COT_SPI_UID;
  }
  if (args.given("--sensor-discovery"))
    cfg->format.CoT.bSensorDiscovery = TRUE, flags |= SMGR_METADATA_SET_COT_SENSOR_DISCOVERY;
  if (args.relays.size() > SMGR_METADATA_MAX_RELAYS) return "at most 8 relays";
  if (args.given("--relay")) {
    for (size_t i = 0; i < args.relays.size(); ++i) {
      if (!ParseRelay(args.relays[i], &cfg->Relays[i])) return "bad --relay " + args.relays[i];
    }
    cfg->nNumOfRelays = static_cast<uint32_t>(args.relays.size());
    cfg->bEnableRelaying = TRUE;
    flags |= SMGR_METADATA_SET_RELAYS | SMGR_METADATA_SET_RELAYING;
  }
  if (args.given("--mission")) {
    snprintf(cfg->szMissionID, sizeof cfg->szMissionID, "%s", args.mission.c_str());
    flags |= SMGR_METADATA_SET_MISSION_ID;
  }
  if (args.given("--classify")) {
    cfg->enClassification = ClassificationOf(args.classify);
    if (cfg->enClassification < 0) return "bad --classify " + args.classify;
    cfg->bClassifyMission = TRUE;
    flags |= SMGR_METADATA_SET_CLASSIFY_MISSION | SMGR_METADATA_SET_CLASSIFICATION;
  }
  if (args.given("--country")) {
    snprintf(cfg->szClassifyingCountry, sizeof cfg->szClassifyingCountry, "%s", args.country.c_str());
    flags |= SMGR_METADATA_SET_CLASSIFYING_COUNTRY;
  }
  if (args.given("--object-country")) {
    snprintf(cfg->szObjectCountry, sizeof cfg->szObjectCountry, "%s", args.objectCountry.c_str());
    flags |= SMGR_METADATA_SET_OBJECT_COUNTRY;
  }
  if (args.given("--decimate") && args.given("--decimate-by")) return "give --decimate or --decimate-by";
  if (args.given("--decimate"))
    cfg->DecimationCfg = {SMGR_METADATA_DECIMATION_TYPE_FACTOR, {static_cast<uint32_t>(args.decimate)}};
  if (args.given("--decimate-by")) {
    cfg->DecimationCfg.enType = SMGR_METADATA_DECIMATION_TYPE_VIDENC;
    cfg->DecimationCfg.By.nEncoderID = args.decimateBy;
  }
  if (args.given("--decimate") || args.given("--decimate-by")) flags |= SMGR_METADATA_SET_DECIMATION;
  if (args.given("--uas-tags")) {
    if (!ParseTags(args.uasTags, SMGR_METADATA_MAX_UAS_TAG, cfg->UASTagFilter))
      return "UAS tags are 1 to 141";
    cfg->bFilterUASTags = TRUE;
    flags |= SMGR_METADATA_SET_UAS_TAG_FILTER;
  }
  if (args.given("--security-tags")) {
    if (!ParseTags(args.securityTags, SMGR_METADATA_MAX_SECURITY_TAG, cfg->UASSecurityTagFilter))
      return "security tags are 1 to 24";
    cfg->bFilterUASSecurityTags = TRUE;
    flags |= SMGR_METADATA_SET_SECURITY_TAG_FILTER;
  }
  if (args.given("--auto-start")) cfg->bAutoStart = TRUE, flags |= SMGR_METADATA_SET_AUTO_START;
  return {};
}

int RunCreate(const SourceArgs& args) {
  SMGR_METADATA_CFG cfg{};
  cfg.nSize = sizeof cfg;
  snprintf(cfg.szName, sizeof cfg.szName, "%s", args.target.c_str());
  if (std::string error = BuildConfig(args, &cfg); !error.empty()) return Usage("metadata create", error);
  if (!args.given("--serial") && !args.given("--udp") && !args.given("--video-input"))
    return Usage("metadata create", "give --serial, --udp or --video-input");
  if (!Connect()) return 1;
  HMETADATA handle = nullptr;
  if (!SessMgr_CreateMetaDataSource(&cfg, &handle)) return Fail("metadata create " + args.target);
  int id = 0;
  SessMgr_GetMetaDataSourceID(handle, &id);
  SessMgr_CloseMetaDataSource(&handle);
  if (Globals().json)
    PrintJson({{"id", id}});
  else
    std::cout << "Created metadata source " << id << ".\n";
  return 0;
}

int RunSet(const SourceArgs& args) {
  SMGR_METADATA_CFG cfg{};
  cfg.nSize = sizeof cfg;
  if (std::string error = BuildConfig(args, &cfg); !error.empty()) return Usage("metadata set", error);
  if (cfg.SetFieldsFlag == 0) return Usage("metadata set", "nothing to change");
  if (!Connect()) return 1;
  SMGR_OBJECT_SELECTOR selector = ParseSelector(args.target);
  if (!SessMgr_ConfigureMetaDataSource(&selector, &cfg)) return Fail("metadata set " + args.target);
  if (!Globals().json) std::cout << "Changed metadata source " << args.target << ".\n";
  return 0;
}

using ControlFn = BOOL (*)(const SMGR_OBJECT_SELECTOR*);

int RunControl(const char* name, ControlFn fn, const std::string& target, const char* done) {
  if (!Connect()) return 1;
  SMGR_OBJECT_SELECTOR selector = ParseSelector(target);
  if (!fn(&selector)) return Fail(std::string("metadata ") + name + " " + target);
  if (!Globals().json) std::cout << "Metadata source " << target << " " << done << ".\n";
  return 0;
}

int PrintStatsOnce(const std::vector<std::string>& targets) {
  std::vector<SMGR_METADATA_INFO> sources;
  if (targets.empty()) {
    if (!CollectPages<SMGR_METADATA_INFO>(SessMgr_EnumerateMetaDataSources, &sources, 1))
      return Fail("metadata stats");
  }
  for (const std::string& target : targets) {
    SMGR_METADATA_INFO info;
    if (!Info(ParseSelector(target), &info)) return Fail("metadata stats " + target);
    sources.push_back(info);
  }
  json array = json::array();
  Table table({"ID", "NAME", "STATE", "BYTES", "MESSAGES", "KBIT/S"});
  for (const char* number : {"ID", "BYTES", "MESSAGES", "KBIT/S"}) table.alignRight(number);
  for (const SMGR_METADATA_INFO& info : sources) {
    SMGR_METADATA_STATS stats;
    if (!Stats(ById(info.nIndex), &stats)) return Fail("metadata stats " + std::to_string(info.nIndex));
    array.push_back(StatsJson(info, stats));
    table.add({std::to_string(info.nIndex), info.szName, StateName(stats.enState),
               std::to_string(Val(stats.nRxBytes)), std::to_string(Val(stats.nRxOkMessages)),
               std::to_string(stats.nBitRateInKbps)});
  }
  if (Globals().json)
    PrintJson(array);
  else
    std::cout << table.render();
  std::cout.flush();
  return 0;
}

int RunStats(const std::vector<std::string>& targets, double watchSeconds) {
  if (!Connect()) return 1;
  if (watchSeconds <= 0) return PrintStatsOnce(targets);
  struct sigaction action {};
  action.sa_handler = OnInterrupt;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  while (!g_interrupted) {
    if (int status = PrintStatsOnce(targets)) return status;
    const auto until = std::chrono::steady_clock::now() + std::chrono::duration<double>(watchSeconds);
    while (!g_interrupted && std::chrono::steady_clock::now() < until)
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return 0;
}

void AddSourceOptions(CLI::App* cmd, SourceArgs& args) {
  args.app = cmd;
  cmd->add_option("--serial", args.serial, "Serial device (e.g. /dev/ttyS1)");
  cmd->add_option("--baud", args.baud, "Serial baud rate");
  cmd->add_flag("--rs422", args.rs422, "RS-422 instead of RS-232");
  cmd->add_option("--udp", args.udp, "UDP input: [ADDR:]PORT");
  cmd->add_option("--video-input", args.videoInput, "KLV from this video input");
  cmd->add_flag("--cot", args.cot, "The input is CoT (converted to KLV)");
  cmd->add_option("--spi-uid", args.spiUid, "CoT: UID of the SPI sensor to follow");
  cmd->add_flag("--sensor-discovery", args.sensorDiscovery, "CoT: collect the UIDs of the sensors seen");
  cmd->add_option("--relay", args.relays, "Relay to ADDR:PORT[,ttl=N][,tos=N] (repeatable, up to 8)");
  cmd->add_option("--mission", args.mission, "Mission ID stamped into the UAS local set");
  cmd->add_option("--classify", args.classify,
                  "Insert a security local set: UNCLASSIFIED .. TOP-SECRET or 1..5");
  cmd->add_option("--country", args.country, "Classifying country code");
  cmd->add_option("--object-country", args.objectCountry, "Object country code(s), ';' separated");
  cmd->add_option("--decimate", args.decimate, "Keep one message in N (video-input sources)");
  cmd->add_option("--decimate-by", args.decimateBy, "Pace by this video encoder's frame rate");
  cmd->add_option("--uas-tags", args.uasTags, "Keep only these UAS tags, e.g. 2,5-10 (1..141)");
  cmd->add_option("--security-tags", args.securityTags, "Keep only these security tags (1..24)");
  cmd->add_flag("--auto-start", args.autoStart, "Start the source when the daemon starts");
}

void AddMetaDataCommands(Command& command) {
  int& status = command.status();
  CLI::App* meta = command.app().add_subcommand("metadata", "Metadata sources (KLV, CoT)");
  meta->alias("meta");
  meta->require_subcommand(1);

  meta->add_subcommand("list", "List every metadata source")->callback([&status] { status = RunList(); });

  std::string& showTarget = command.keep<std::string>();
  auto* show = meta->add_subcommand("show", "Configuration, status and counters of one source");
  show->add_option("source", showTarget, "Source ID or name")->required();
  show->callback([&status, &showTarget] { status = RunShow(showTarget); });

  SourceArgs& create = command.keep<SourceArgs>();
  auto* createCmd = meta->add_subcommand("create", "Create a serial or network source");
  createCmd->add_option("name", create.target, "Source name (empty lets the daemon choose)")->required();
  AddSourceOptions(createCmd, create);
  createCmd->callback([&status, &create] { status = RunCreate(create); });

  SourceArgs& set = command.keep<SourceArgs>();
  auto* setCmd = meta->add_subcommand("set", "Change the given fields of a source");
  setCmd->add_option("source", set.target, "Source ID or name")->required();
  AddSourceOptions(setCmd, set);
  setCmd->callback([&status, &set] { status = RunSet(set); });

  struct Control {
    const char* name;
    const char* help;
    ControlFn fn;
    const char* done;
  };
  static const Control kControls[] = {
      {"start", "Start a source", SessMgr_StartMetaDataSource, "started"},
      {"stop", "Stop a source", SessMgr_StopMetaDataSource, "stopped"},
      {"delete", "Delete a source no stream uses", SessMgr_DeleteMetaDataSource, "deleted"},
      {"reset-stats", "Zero a source's counters", SessMgr_ResetMetaDataSourceStats, "reset"},
  };
  for (const Control& control : kControls) {
    std::string& target = command.keep<std::string>();
    auto* sub = meta->add_subcommand(control.name, control.help);
    sub->add_option("source", target, "Source ID or name")->required();
    sub->callback([&status, &control, &target] {
      status = RunControl(control.name, control.fn, target, control.done);
    });
  }

  struct StatsArgs {
    std::vector<std::string> targets;
    double watch = 0;
  };
  StatsArgs& statsArgs = command.keep<StatsArgs>();
  auto* stats = meta->add_subcommand("stats", "Counters of sources (all when none is named)");
  stats->add_option("sources", statsArgs.targets, "Source IDs or names");
  stats->add_option("-w,--watch", statsArgs.watch, "Repeat every SECONDS until interrupted")
      ->check(CLI::Range(0.1, 3600.0));
  stats->callback([&status, &statsArgs] { status = RunStats(statsArgs.targets, statsArgs.watch); });
}

const CommandGroup kMetaDataCommands{"metadata", AddMetaDataCommands};

}  // namespace
}  // namespace smgrctl
