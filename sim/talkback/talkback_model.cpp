// Rules and traffic of the simulated talkback channel (see talkback_model.h).
#include "talkback_model.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "objects.h"
#include "sim_log.h"

namespace sim {
namespace {

SMGR_TALKBACK_CFG DefaultConfig() {
  SMGR_TALKBACK_CFG cfg{};
  cfg.nSize = sizeof cfg;
  cfg.nIndex = 1;
  snprintf(cfg.szName, sizeof cfg.szName, "talkback");
  cfg.bAutoStart = TRUE;
  cfg.usPort = 5004;
  cfg.nVolume = 50;
  return cfg;
}

void ReadAddress(const nlohmann::json& node, const char* key, uint8_t (&address)[4]) {
  if (node.contains(key)) inet_pton(AF_INET, node.at(key).get<std::string>().c_str(), address);
}

void SetAddress(SMGR_IP_ADDRESS* target, const uint8_t (&address)[4]) {
  target->enType = SMGR_IPV4_ADDRESS;
  memcpy(target->acAddress, address, sizeof address);
}

// Packets of a source that sends one every periodMs from firstMs on, up to and including ms.
struct Periodic {
  int64_t firstMs, periodMs;
  int64_t upTo(int64_t ms) const { return ms < firstMs ? 0 : (ms - firstMs) / periodMs + 1; }
};

}  // namespace

TalkBackModel::TalkBackModel(Appliance& appliance) : appliance_(appliance), cfg_(DefaultConfig()) {
  try {
    readProfile(appliance.profile().document);
  } catch (const nlohmann::json::exception& e) {
    traffic_ = Traffic{};
    SIM_LOG_WARN("profile section \"talkback\" ignored: %s", e.what());
  }
}

void TalkBackModel::readProfile(const nlohmann::json& document) {
  if (!document.contains("talkback") || !document.at("talkback").is_object()) return;
  const nlohmann::json& section = document.at("talkback");
  if (section.contains("sender")) {
    const nlohmann::json& sender = section.at("sender");
    traffic_.senderPresent = sender.is_object();
    if (sender.is_object()) {
      ReadAddress(sender, "address", traffic_.senderAddress);
      traffic_.senderDelayMs = sender.value("delay_ms", traffic_.senderDelayMs);
      traffic_.packetsPerSecond = std::max(1, sender.value("packets_per_second", traffic_.packetsPerSecond));
      traffic_.packetBytes = sender.value("packet_bytes", traffic_.packetBytes);
    }
  }
  ReadAddress(section, "intruder_address", traffic_.intruderAddress);
  traffic_.intruderPeriodMs =
      std::max<int64_t>(1, section.value("intruder_period_ms", traffic_.intruderPeriodMs));
}

TalkBackModel::Count TalkBackModel::accepted(int64_t untilMs) const {
  if (!startedMs_ || !traffic_.senderPresent) return {};
  const Periodic sender{*startedMs_ + traffic_.senderDelayMs, 1000 / traffic_.packetsPerSecond};
  const int64_t packets = sender.upTo(untilMs) - sender.upTo(countedFromMs_);
  if (packets <= 0) return {};
  return {packets, sender.firstMs + (sender.upTo(untilMs) - 1) * sender.periodMs};
}

TalkBackModel::Count TalkBackModel::discarded(int64_t untilMs) const {
  if (!startedMs_) return {};
  const Periodic intruder{*startedMs_ + traffic_.intruderPeriodMs, traffic_.intruderPeriodMs};
  const int64_t packets = intruder.upTo(untilMs) - intruder.upTo(countedFromMs_);
  if (packets <= 0) return {};
  return {packets, intruder.firstMs + (intruder.upTo(untilMs) - 1) * intruder.periodMs};
}

int64_t TalkBackModel::unixSeconds(int64_t ms) const {
  return static_cast<int64_t>(time(nullptr)) - (appliance_.nowMs() - ms) / 1000;
}

void TalkBackModel::fold() {
  const int64_t now = appliance_.nowMs();
  for (auto [running, total] :
       {std::pair{accepted(now), &acceptedTotal_}, std::pair{discarded(now), &discardedTotal_}}) {
    total->packets += running.packets;
    if (running.packets > 0) total->lastMs = running.lastMs;
  }
  countedFromMs_ = now;
}

int TalkBackModel::state() const {
  if (!adminEnabled_) return SMGR_TALKBACK_STATE_ADMIN_DISABLED;
  if (!startedMs_) return SMGR_TALKBACK_STATE_STOPPED;
  const bool senderBegun =
      traffic_.senderPresent && appliance_.nowMs() >= *startedMs_ + traffic_.senderDelayMs;
  return senderBegun ? SMGR_TALKBACK_STATE_RUNNING : SMGR_TALKBACK_STATE_LISTENING;
}

SMGR_RESULT TalkBackModel::configure(const SMGR_TALKBACK_CFG& cfg) {
  const uint64_t flags = cfg.SetFieldsFlag;
  if ((flags & kSetName) && !Terminated(cfg.szName, sizeof cfg.szName)) return SMGR_ERROR_INVALID_PARAMETERS;
  if ((flags & kSetPort) && cfg.usPort == 0) return SMGR_ERROR_INVALID_STREAM_UDP_PORT;
  if ((flags & kSetVolume) && (cfg.nVolume < 0 || cfg.nVolume > 100)) return SMGR_ERROR_INVALID_AUDIO_LEVEL;
  if (flags & kSetIndex) cfg_.nIndex = cfg.nIndex;
  if (flags & kSetName) memcpy(cfg_.szName, cfg.szName, sizeof cfg_.szName);
  if (flags & kSetAutoStart) cfg_.bAutoStart = cfg.bAutoStart ? TRUE : FALSE;
  if (flags & kSetVolume) cfg_.nVolume = cfg.nVolume;
  if ((flags & kSetPort) && cfg.usPort != cfg_.usPort) {
    cfg_.usPort = cfg.usPort;
    if (startedMs_) {  // listening on the new port: the sender has to find it again
      fold();
      startedMs_ = appliance_.nowMs();
    }
  }
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT TalkBackModel::start() {
  if (!adminEnabled_) return SMGR_ERROR_TALKBACK_SERVICE_ADMINISTRATIVELY_DISABLED;
  if (startedMs_) return SMGR_ERROR_TALKBACK_ALREADY_STARTED;
  startedMs_ = countedFromMs_ = appliance_.nowMs();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT TalkBackModel::stop() {
  if (!startedMs_) return SMGR_ERROR_TALKBACK_NOT_STARTED;
  fold();
  startedMs_.reset();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT TalkBackModel::enable() {
  if (adminEnabled_) return SMGR_ERROR_SUCCESS;
  adminEnabled_ = true;
  if (cfg_.bAutoStart) start();
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT TalkBackModel::disable() {
  if (!adminEnabled_) return SMGR_ERROR_SUCCESS;
  if (startedMs_) stop();
  adminEnabled_ = false;
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT TalkBackModel::resetStats() {
  acceptedTotal_ = discardedTotal_ = {};
  countedFromMs_ = appliance_.nowMs();
  return SMGR_ERROR_SUCCESS;
}

void TalkBackModel::info(SMGR_TALKBACK_INFO* info) const {
  *info = SMGR_TALKBACK_INFO{};
  info->nSize = sizeof *info;
  info->nIndex = cfg_.nIndex;
  memcpy(info->szName, cfg_.szName, sizeof info->szName);
  info->usPort = cfg_.usPort;
  info->nVolume = cfg_.nVolume;
}

void TalkBackModel::stats(SMGR_TALKBACK_STATS* stats) const {
  const int64_t now = appliance_.nowMs();
  Count ok = accepted(now), bad = discarded(now);
  ok = {acceptedTotal_.packets + ok.packets, ok.packets > 0 ? ok.lastMs : acceptedTotal_.lastMs};
  bad = {discardedTotal_.packets + bad.packets, bad.packets > 0 ? bad.lastMs : discardedTotal_.lastMs};
  *stats = SMGR_TALKBACK_STATS{};
  stats->nSize = sizeof *stats;
  stats->enState = state();
  stats->nRxOkPackets = static_cast<SMGR_COUNTER>(ok.packets);
  stats->nRxOkBytes = static_cast<SMGR_COUNTER>(ok.packets * traffic_.packetBytes);
  stats->nRxDiscardedPackets = static_cast<SMGR_COUNTER>(bad.packets);
  stats->nRxDiscardedBytes = static_cast<SMGR_COUNTER>(bad.packets * traffic_.packetBytes);
  if (ok.packets > 0) {
    SetAddress(&stats->SourceAddress, traffic_.senderAddress);
    stats->iLastRxTime = static_cast<int32_t>(unixSeconds(ok.lastMs));
  }
  if (bad.packets > 0) {
    SetAddress(&stats->LastDiscardedSourceAddress, traffic_.intruderAddress);
    stats->iLastRxDiscardTime = static_cast<int32_t>(unixSeconds(bad.lastMs));
  }
}

nlohmann::json TalkBackModel::save() const {
  return {{"index", cfg_.nIndex}, {"name", cfg_.szName},    {"auto_start", cfg_.bAutoStart != 0},
          {"port", cfg_.usPort},  {"volume", cfg_.nVolume}, {"enabled", adminEnabled_}};
}

void TalkBackModel::load(const nlohmann::json& saved) {
  cfg_ = DefaultConfig();
  adminEnabled_ = true;
  if (saved.is_object()) {
    cfg_.nIndex = saved.value("index", cfg_.nIndex);
    snprintf(cfg_.szName, sizeof cfg_.szName, "%s", saved.value("name", std::string(cfg_.szName)).c_str());
    cfg_.bAutoStart = saved.value("auto_start", true) ? TRUE : FALSE;
    cfg_.usPort = saved.value("port", cfg_.usPort);
    cfg_.nVolume = saved.value("volume", cfg_.nVolume);
    adminEnabled_ = saved.value("enabled", true);
  }
  if (startedMs_) stop();
  if (adminEnabled_ && cfg_.bAutoStart) start();
}

}  // namespace sim
