// Rules of the simulated essences and clock. Where the daemon's behaviour is
// not known, the choices are the simulator's own and are listed in
// docs/essences.md (media checks, packet rates, detection and lock timing).
#include "essence_model.h"

#include <arpa/inet.h>
#include <strings.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <ctime>

#include "persistence.h"
#include "sim_log.h"

namespace sim {
namespace {

constexpr int kDetectionBusyMs = 1000;
constexpr int kDetectionDoneMs = 2000;
constexpr int kLockAfterMs = 3000;
constexpr uint64_t kStcHz = 27000000;
constexpr int kTaiOffsetSeconds = 37;

// The named formats of the video format codes: width, height and the rates
// with their scan ('p' or 'i').
struct NamedRaster {
  unsigned width, height;
  const char* rates;  // "23p 24p ..."
};
constexpr NamedRaster kNamedFormats[] = {
    {3840, 2160, "23p 24p 25p 29p 30p 50p 59p 60p"},
    {1920, 1080, "23p 24p 25p 29p 30p 50p 59p 60p 24i 25i 29i 30i"},
    {1280, 720, "23p 24p 25p 29p 30p 50p 59p 60p"},
    {720, 480, "29i 30i 59p 60p"},
    {720, 576, "25i 50p"},
    {704, 576, "25i 50p"},
    {1920, 540, "0p 48p 50p 59p 60p"},
    {1440, 540, "0p"},
    {960, 540, "0p"},
    {720, 288, "0p 50p"},
    {704, 288, "0p 50p"},
    {720, 240, "0p 59p 60p"},
    {540, 288, "0p"},
    {540, 240, "0p"},
    {352, 288, "0p"},
    {352, 240, "0p"},
    {352, 144, "0p"},
    {640, 480, "60p 75p 85p"},
    {800, 600, "60p 75p 85p"},
    {1024, 768, "60p 75p 85p"},
    {1152, 864, "60p 75p 85p"},
    {1280, 768, "60p 75p 85p"},
    {1280, 800, "60p 75p 85p"},
    {1280, 960, "59p"},
    {1280, 1024, "60p 75p 85p"},
    {1360, 768, "60p 75p"},
    {1400, 1050, "60p 75p"},
    {1440, 900, "60p 75p"},
    {1600, 900, "60p"},
    {1600, 1200, "60p"},
    {1680, 1050, "60p"},
    {1920, 1200, "60p"},
};

struct Raster {
  unsigned width = 0, height = 0, rate = 0;
  bool interlaced = false;
};

// Packed codes only; the custom format 10 is 720x480i29.
std::optional<Raster> Decode(uint64_t format) {
  if (format == 10) return Raster{720, 480, 29, true};
  if (!(format & 0x8000000000000000ull)) return std::nullopt;
  return Raster{static_cast<unsigned>((format >> 22) & 0x1FFF), static_cast<unsigned>((format >> 9) & 0x1FFF),
                static_cast<unsigned>((format >> 1) & 0xFF), (format & 1) != 0};
}

bool IsNamedFormat(uint64_t format) {
  if (format == 10) return true;
  auto raster = Decode(format);
  if (!raster || (format & 0x7FFFFFF800000000ull)) return false;
  const std::string wanted = std::to_string(raster->rate) + (raster->interlaced ? "i" : "p");
  for (const auto& named : kNamedFormats) {
    if (named.width != raster->width || named.height != raster->height) continue;
    std::string rates = std::string(" ") + named.rates + " ";
    if (rates.find(" " + wanted + " ") != std::string::npos) return true;
  }
  return false;
}

bool IsIpv4(const SMGR_IP_ADDRESS& a) { return a.enType == SMGR_IPV4_ADDRESS; }
bool IsMulticast(const SMGR_IP_ADDRESS& a) {
  if (a.enType == SMGR_IPV6_ADDRESS) return a.acAddress[0] == 0xFF;
  return IsIpv4(a) && (a.acAddress[0] & 0xF0) == 0xE0;
}
bool IsUnset(const SMGR_IP_ADDRESS& a) {
  static const BYTE zero[16] = {};
  return (a.enType == SMGR_IPV4_ADDRESS || a.enType == SMGR_IPV6_ADDRESS) &&
         std::memcmp(a.acAddress, zero, sizeof zero) == 0;
}
bool SameAddress(const SMGR_IP_ADDRESS& a, const SMGR_IP_ADDRESS& b) {
  return a.enType == b.enType && std::memcmp(a.acAddress, b.acAddress, sizeof a.acAddress) == 0;
}

std::string Hex(const void* data, size_t size) {
  static const char digits[] = "0123456789abcdef";
  std::string out;
  const auto* p = static_cast<const uint8_t*>(data);
  for (size_t i = 0; i < size; ++i) out += {digits[p[i] >> 4], digits[p[i] & 15]};
  return out;
}
bool Unhex(const std::string& text, void* data, size_t size) {
  if (text.size() != 2 * size) return false;
  auto* p = static_cast<uint8_t*>(data);
  for (size_t i = 0; i < size; ++i) {
    char* end = nullptr;
    const std::string pair = text.substr(2 * i, 2);
    p[i] = static_cast<uint8_t>(strtoul(pair.c_str(), &end, 16));
    if (end != pair.c_str() + 2) return false;
  }
  return true;
}

const nlohmann::json& Section(const Appliance& appliance) {
  static const nlohmann::json empty = nlohmann::json::object();
  const auto& doc = appliance.profile().document;
  return doc.contains("essences") && doc["essences"].is_object() ? doc["essences"] : empty;
}

SMGR_IP_ADDRESS UnitAddress(const Appliance& appliance) {
  SMGR_IP_ADDRESS address{};
  address.enType = SMGR_IPV4_ADDRESS;
  const std::string text = Section(appliance).value("unit_address", std::string("192.168.1.10"));
  inet_pton(AF_INET, text.c_str(), address.acAddress);
  return address;
}

}  // namespace

EssenceModel::EssenceModel(Appliance& appliance) : appliance_(appliance) {
  clockModeSinceMs_ = appliance_.nowMs();
}

bool EssenceModel::supported() const { return appliance_.profile().personality == 1; }

EssenceModel::Essence* EssenceModel::find(const ObjectSelector& selector) {
  if (!selector.byName) {
    auto it = essences_.find(selector.id);
    return it == essences_.end() ? nullptr : &it->second;
  }
  for (auto& [id, essence] : essences_)
    if (selector.name == essence.cfg.szName) return &essence;
  return nullptr;
}

// Every rule a configuration must pass, the input channel's occupancy aside.
SMGR_RESULT EssenceModel::check(const SMGR_ESSENCE_CFG& cfg, int selfId, std::string* why) const {
  const int inputs = static_cast<int>(appliance_.profile().videoInputs.size());
  if (cfg.enMediaType < SMGR_ESSENCE_MEDIA_TYPE_VIDEO || cfg.enMediaType > SMGR_ESSENCE_MEDIA_TYPE_DATA)
    return *why = "unknown media type", SMGR_ERROR_INVALID_ESSENCE_MEDIA_TYPE;
  if (static_cast<int64_t>(cfg.nInputChannel) >= inputs)
    return *why = "input channel " + std::to_string(cfg.nInputChannel) + " does not exist",
           SMGR_ERROR_INVALID_ESSENCE_INPUT_CHANNEL;
  if (cfg.nRTPPayload < 96 || cfg.nRTPPayload > 127)
    return *why = "RTP payload type must be 96 to 127", SMGR_ERROR_INVALID_ESSENCE_RTP_PAYLOAD;
  if (cfg.usPort == 0) return *why = "UDP port 0", SMGR_ERROR_INVALID_ESSENCE_UDP_PORT;
  const SMGR_IP_ADDRESS unit = UnitAddress(appliance_);
  const bool unicast = SameAddress(cfg.Address, unit);
  if (!IsMulticast(cfg.Address) && !unicast)
    return *why = "address is neither multicast nor the unit's own", SMGR_ERROR_INVALID_ESSENCE_ADDRESS;
  if (unicast && IsUnset(cfg.SourceAddress))
    return *why = "a unicast essence needs a source address",
           SMGR_ERROR_SOURCE_ADDRESS_REQUIRED_FOR_UNICAST_ESSENCE;
  if (IsMulticast(cfg.SourceAddress))
    return *why = "source address is multicast", SMGR_ERROR_SOURCE_ADDRESS_IS_MULTICAST;
  if (SameAddress(cfg.SourceAddress, unit))
    return *why = "source address is the unit's own", SMGR_ERROR_SOURCE_ADDRESS_IS_OURS;
  for (const auto& [id, other] : essences_)
    if (id != selfId && other.cfg.usPort == cfg.usPort && SameAddress(other.cfg.Address, cfg.Address))
      return *why = "address and port used by essence " + std::to_string(id), 0x10000003u;
  switch (cfg.enMediaType) {
    case SMGR_ESSENCE_MEDIA_TYPE_DATA: {
      static const BYTE zero[sizeof cfg.Media] = {};
      if (std::memcmp(&cfg.Media, zero, sizeof zero) != 0)
        return *why = "media values on a data essence", SMGR_ERROR_INVALID_PARAMETER_FOR_ESSENCE_MEDIA_TYPE;
      break;
    }
    case SMGR_ESSENCE_MEDIA_TYPE_AUDIO: {
      const auto& audio = cfg.Media.Audio;
      if (audio.enPacketTime != SMGR_AUDIO_ESSENCE_PACKET_TIME_1MS &&
          audio.enPacketTime != SMGR_AUDIO_ESSENCE_PACKET_TIME_125US)
        return *why = "unknown packet time", SMGR_ERROR_INVALID_AUDIO_PACKET_TIME_FOR_ESSENCE;
      const unsigned most = audio.enPacketTime == SMGR_AUDIO_ESSENCE_PACKET_TIME_125US ? 8 : 16;
      if (audio.nNumOfChannels < 1 || audio.nNumOfChannels > most)
        return *why = "1 to " + std::to_string(most) + " channels at this packet time",
               SMGR_ERROR_INVALID_NUMBER_OF_AUDIO_CHANNELS_FOR_ESSENCE;
      break;
    }
    default:
      if (!IsNamedFormat(cfg.Media.Video.enInputFormat))
        return *why = "unknown video format", SMGR_ERROR_INVALID_ESSENCE_VIDEO_FORMAT;
  }
  return SMGR_ERROR_SUCCESS;
}

// Another running essence of the same media type feeds the same input.
bool EssenceModel::inputBusy(const SMGR_ESSENCE_CFG& cfg, int selfId) const {
  for (const auto& [id, other] : essences_)
    if (id != selfId && other.running && other.cfg.enMediaType == cfg.enMediaType &&
        other.cfg.nInputChannel == cfg.nInputChannel)
      return true;
  return false;
}

Outcome EssenceModel::create(const SMGR_ESSENCE_CFG& request) {
  SMGR_ESSENCE_CFG cfg = request;
  cfg.nSize = sizeof cfg;
  cfg.SetFieldsFlag = 0;
  if (!Terminated(cfg.szName, sizeof cfg.szName))
    return {SMGR_ERROR_INVALID_PARAMETERS, "name not terminated"};
  std::string why;
  if (SMGR_RESULT result = check(cfg, 0, &why)) return {result, why};
  const int id = cfg.nIndex > 0 ? cfg.nIndex : nextId_;
  if (essences_.count(id)) return {SMGR_ERROR_ID_IN_USE, "essence " + std::to_string(id) + " exists"};
  if (cfg.szName[0] == '\0') snprintf(cfg.szName, sizeof cfg.szName, "Essence%d", id);
  for (const auto& [other, essence] : essences_)
    if (strcasecmp(essence.cfg.szName, cfg.szName) == 0) return {SMGR_ERROR_ID_IN_USE, "name in use"};
  cfg.nIndex = id;
  nextId_ = std::max(nextId_, id + 1);
  Essence& essence = essences_[id];
  essence.cfg = cfg;
  Outcome outcome{SMGR_ERROR_SUCCESS, "", id, cfg.szName};
  if (cfg.bAutoStart) {
    if (inputBusy(cfg, id))
      outcome.result = SMGR_WARNING_TOO_MANY_ESSENCES_TO_START;
    else
      startNow(essence);
  }
  appliance_.persist();
  return outcome;
}

Outcome EssenceModel::configure(const ObjectSelector& selector, const SMGR_ESSENCE_CFG& request) {
  Essence* essence = find(selector);
  if (!essence) return {SMGR_ERROR_NO_MATCHING_ESSENCE_FOUND, "no such essence"};
  SMGR_ESSENCE_CFG cfg = essence->cfg;
  const uint64_t flags = request.SetFieldsFlag;
  if (flags & SMGR_ESSENCE_SET_INDEX && request.nIndex != cfg.nIndex)
    return {SMGR_ERROR_INVALID_PARAMETERS, "the index of an essence cannot change"};
  if (flags & SMGR_ESSENCE_SET_NAME) {
    if (!Terminated(request.szName, sizeof request.szName) || request.szName[0] == '\0')
      return {SMGR_ERROR_INVALID_PARAMETERS, "invalid name"};
    for (const auto& [id, other] : essences_)
      if (id != cfg.nIndex && strcasecmp(other.cfg.szName, request.szName) == 0)
        return {SMGR_ERROR_ID_IN_USE, "name in use"};
    memcpy(cfg.szName, request.szName, sizeof cfg.szName);
  }
  if (flags & SMGR_ESSENCE_SET_AUTO_START) cfg.bAutoStart = request.bAutoStart;
  if (flags & SMGR_ESSENCE_SET_MEDIA_TYPE) {
    if (cfg.enMediaType != request.enMediaType) memset(&cfg.Media, 0, sizeof cfg.Media);
    cfg.enMediaType = request.enMediaType;
  }
  if (flags & SMGR_ESSENCE_SET_RTP_PAYLOAD) cfg.nRTPPayload = request.nRTPPayload;
  if (flags & SMGR_ESSENCE_SET_ADDRESS) cfg.Address = request.Address;
  if (flags & SMGR_ESSENCE_SET_PORT) cfg.usPort = request.usPort;
  if (flags & SMGR_ESSENCE_SET_VIDEO_FORMAT)
    cfg.Media.Video.enInputFormat = request.Media.Video.enInputFormat;
  if (flags & SMGR_ESSENCE_SET_INPUT_CHANNEL) cfg.nInputChannel = request.nInputChannel;
  if (flags & SMGR_ESSENCE_SET_AUDIO_NUM_CHANNELS)
    cfg.Media.Audio.nNumOfChannels = request.Media.Audio.nNumOfChannels;
  if (flags & SMGR_ESSENCE_SET_AUDIO_PACKET_TIME)
    cfg.Media.Audio.enPacketTime = request.Media.Audio.enPacketTime;
  if (flags & SMGR_ESSENCE_SET_SOURCE_ADDRESS) cfg.SourceAddress = request.SourceAddress;
  std::string why;
  if (SMGR_RESULT result = check(cfg, cfg.nIndex, &why)) return {result, why};
  if (essence->running && inputBusy(cfg, cfg.nIndex))
    return {SMGR_ERROR_ESSENCE_INPUT_CHANNEL_IN_USE, "another running essence of this media feeds the input"};
  essence->cfg = cfg;
  appliance_.persist();
  return {SMGR_ERROR_SUCCESS, "", cfg.nIndex, cfg.szName};
}

Outcome EssenceModel::remove(const ObjectSelector& selector) {
  Essence* essence = find(selector);
  if (!essence) return {SMGR_ERROR_NO_MATCHING_ESSENCE_FOUND, "no such essence"};
  if (essence->running) return {SMGR_ERROR_ESSENCE_IN_USE, "essence is running"};
  const int id = essence->cfg.nIndex;
  essences_.erase(id);
  appliance_.persist();
  return {SMGR_ERROR_SUCCESS, "", id};
}

void EssenceModel::startNow(Essence& essence) {
  const int64_t now = appliance_.nowMs();
  essence.running = true;
  essence.startedMs = now;
  essence.countedFromMs = now;
}

Outcome EssenceModel::start(const ObjectSelector& selector) {
  Essence* essence = find(selector);
  if (!essence) return {SMGR_ERROR_NO_MATCHING_ESSENCE_FOUND, "no such essence"};
  if (essence->running) return {SMGR_ERROR_ESSENCE_ALREADY_STARTED, "essence already started"};
  if (inputBusy(essence->cfg, essence->cfg.nIndex))
    return {SMGR_ERROR_TOO_MANY_ESSENCES,
            "another essence of this media runs on input " + std::to_string(essence->cfg.nInputChannel)};
  startNow(*essence);
  return {SMGR_ERROR_SUCCESS, "", essence->cfg.nIndex};
}

Outcome EssenceModel::stop(const ObjectSelector& selector) {
  Essence* essence = find(selector);
  if (!essence) return {SMGR_ERROR_NO_MATCHING_ESSENCE_FOUND, "no such essence"};
  if (!essence->running) return {SMGR_ERROR_ESSENCE_NOT_STARTED, "essence not started"};
  const int64_t now = appliance_.nowMs();
  essence->packetsBefore = packets(*essence, now);
  essence->running = false;
  return {};
}

Outcome EssenceModel::resetStats(const ObjectSelector& selector) {
  Essence* essence = find(selector);
  if (!essence) return {SMGR_ERROR_NO_MATCHING_ESSENCE_FOUND, "no such essence"};
  essence->packetsBefore = 0;
  essence->countedFromMs = appliance_.nowMs();
  return {};
}

Outcome EssenceModel::open(const ObjectSelector& selector, pid_t client) {
  Essence* essence = find(selector);
  if (!essence) return {SMGR_ERROR_NO_MATCHING_ESSENCE_FOUND, "no such essence"};
  ++essence->opens[client];
  return {SMGR_ERROR_SUCCESS, "", essence->cfg.nIndex, essence->cfg.szName};
}

Outcome EssenceModel::close(int id, pid_t client) {
  auto it = essences_.find(id);
  if (it == essences_.end()) return {SMGR_ERROR_NO_MATCHING_ESSENCE_FOUND, "no such essence"};
  auto open = it->second.opens.find(client);
  if (open != it->second.opens.end() && --open->second <= 0) it->second.opens.erase(open);
  return {};
}

void EssenceModel::clientGone(pid_t client) {
  for (auto& [id, essence] : essences_) essence.opens.erase(client);
}

int EssenceModel::openCount(int id) const {
  auto it = essences_.find(id);
  if (it == essences_.end()) return 0;
  int count = 0;
  for (const auto& [pid, n] : it->second.opens) count += n;
  return count;
}

double EssenceModel::packetsPerSecond(const SMGR_ESSENCE_CFG& cfg) const {
  switch (cfg.enMediaType) {
    case SMGR_ESSENCE_MEDIA_TYPE_AUDIO:
      return cfg.Media.Audio.enPacketTime == SMGR_AUDIO_ESSENCE_PACKET_TIME_125US ? 8000 : 1000;
    case SMGR_ESSENCE_MEDIA_TYPE_VIDEO: {
      auto raster = Decode(cfg.Media.Video.enInputFormat);
      if (!raster) return 0;
      // 4:2:2 10-bit samples (2.5 bytes a pixel) in 1200-byte payloads.
      const double perFrame = std::ceil(raster->width * raster->height * 2.5 / 1200.0);
      return perFrame * std::max(1u, raster->rate);
    }
    default:
      for (const auto& [id, other] : essences_)
        if (other.cfg.enMediaType == SMGR_ESSENCE_MEDIA_TYPE_VIDEO &&
            other.cfg.nInputChannel == cfg.nInputChannel)
          if (auto raster = Decode(other.cfg.Media.Video.enInputFormat)) return std::max(1u, raster->rate);
      return 30;  // one ANC packet a frame
  }
}

uint64_t EssenceModel::packets(const Essence& essence, int64_t now) const {
  if (!essence.running) return essence.packetsBefore;
  const double seconds = static_cast<double>(now - essence.countedFromMs) / 1000.0;
  return essence.packetsBefore + static_cast<uint64_t>(seconds * packetsPerSecond(essence.cfg));
}

SMGR_ESSENCE_INFO EssenceModel::infoOf(const Essence& essence) const {
  const SMGR_ESSENCE_CFG& cfg = essence.cfg;
  SMGR_ESSENCE_INFO info{};
  info.nSize = sizeof info;
  info.nIndex = cfg.nIndex;
  memcpy(info.szName, cfg.szName, sizeof info.szName);
  info.bAutoStart = cfg.bAutoStart;
  info.nInputChannel = cfg.nInputChannel;
  info.enMediaType = cfg.enMediaType;
  if (cfg.enMediaType == SMGR_ESSENCE_MEDIA_TYPE_VIDEO) {
    info.Media.Video.enInputFormat = cfg.Media.Video.enInputFormat;
  } else if (cfg.enMediaType == SMGR_ESSENCE_MEDIA_TYPE_AUDIO) {
    info.Media.Audio.nNumOfChannels = cfg.Media.Audio.nNumOfChannels;
    info.Media.Audio.enSampleMode = SMGR_AUDIO_ESSENCE_SAMPLE_MODE_L24;
    info.Media.Audio.enSampleFrequency = SMGR_AUDIO_ESSENCE_SAMPLE_FREQUENCY_48000HZ;
    info.Media.Audio.enPacketTime = cfg.Media.Audio.enPacketTime;
  }
  info.nRTPPayload = cfg.nRTPPayload;
  info.Address = cfg.Address;
  info.usPort = cfg.usPort;
  info.SourceAddress = cfg.SourceAddress;
  return info;
}

SMGR_RESULT EssenceModel::info(const ObjectSelector& selector, SMGR_ESSENCE_INFO* info) {
  Essence* essence = find(selector);
  if (!essence) return SMGR_ERROR_NO_MATCHING_ESSENCE_FOUND;
  *info = infoOf(*essence);
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT EssenceModel::stats(const ObjectSelector& selector, SMGR_ESSENCE_STATS* stats) {
  Essence* essence = find(selector);
  if (!essence) return SMGR_ERROR_NO_MATCHING_ESSENCE_FOUND;
  const int64_t now = appliance_.nowMs();
  *stats = SMGR_ESSENCE_STATS{};
  stats->nSize = sizeof *stats;
  stats->enState = essence->running ? SMGR_ESSENCE_STATE_RUNNING : SMGR_ESSENCE_STATE_STOPPED;
  stats->bStreamSync = essence->running && clockLocked();
  const uint64_t total = packets(*essence, now);
  const auto lossPerMillion = Section(appliance_).value("loss_per_million", uint64_t{0});
  stats->nRxLostPackets = total * lossPerMillion / 1000000;
  stats->nRxPackets = total - stats->nRxLostPackets;
  if (essence->running && essence->cfg.enMediaType == SMGR_ESSENCE_MEDIA_TYPE_VIDEO) {
    const int64_t running = now - essence->startedMs;
    stats->enVideoFormatDetectionState =
        running < kDetectionBusyMs   ? SMGR_ESSENCE_VIDEO_FORMAT_DETECT_STATE_STREAM_DETECTED
        : running < kDetectionDoneMs ? SMGR_ESSENCE_VIDEO_FORMAT_DETECT_STATE_BUSY
                                     : SMGR_ESSENCE_VIDEO_FORMAT_DETECT_STATE_COMPLETED;
    if (stats->enVideoFormatDetectionState == SMGR_ESSENCE_VIDEO_FORMAT_DETECT_STATE_COMPLETED)
      stats->enDetectedVideoFormat = essence->cfg.Media.Video.enInputFormat;
  }
  return SMGR_ERROR_SUCCESS;
}

std::vector<SMGR_ESSENCE_INFO> EssenceModel::list() {
  std::vector<SMGR_ESSENCE_INFO> out;
  for (const auto& [id, essence] : essences_) out.push_back(infoOf(essence));
  return out;
}

std::optional<int> EssenceModel::runningEssence(int mediaType, unsigned inputChannel) const {
  for (const auto& [id, essence] : essences_)
    if (essence.running && essence.cfg.enMediaType == mediaType && essence.cfg.nInputChannel == inputChannel)
      return id;
  return std::nullopt;
}

SMGR_RESULT EssenceModel::setClockMode(int mode) {
  if (mode != 0 && mode != 1) return SMGR_ERROR_INVALID_PARAMETERS;
  if (mode != clockMode_) {
    clockMode_ = mode;
    clockModeSinceMs_ = appliance_.nowMs();
  }
  appliance_.persist();
  return SMGR_ERROR_SUCCESS;
}

bool EssenceModel::clockLocked() {
  return clockMode_ == 1 && appliance_.nowMs() - clockModeSinceMs_ >= kLockAfterMs;
}

SMGR_2110_SYNC_INFO EssenceModel::syncInfo() {
  const int64_t now = appliance_.nowMs();
  SMGR_2110_SYNC_INFO info{};
  info.nSize = sizeof info;
  info.enSyncMode = clockMode_;
  info.bSynchronized = clockLocked();
  info.nCurrentSTC = static_cast<uint64_t>(now) * (kStcHz / 1000);
  if (clockMode_ == 1) {
    std::string id = Section(appliance_).value("ptp_grandmaster", std::string("ac-1f-6b-ff-fe-00-20-10"));
    unsigned bytes[8] = {};
    if (sscanf(id.c_str(), "%x-%x-%x-%x-%x-%x-%x-%x", &bytes[0], &bytes[1], &bytes[2], &bytes[3], &bytes[4],
               &bytes[5], &bytes[6], &bytes[7]) == 8)
      for (int i = 0; i < 8; ++i) info.acPTPClockID[i] = static_cast<BYTE>(bytes[i]);
    if (info.bSynchronized) {
      info.nPrecisionInNanoSecs = 20 + static_cast<uint64_t>((now / 1000) * 37 % 61);
      info.nPTPTime = static_cast<uint32_t>(time(nullptr) + kTaiOffsetSeconds);
    }
  }
  return info;
}

nlohmann::json EssenceModel::save() const {
  nlohmann::json out;
  out["clock_mode"] = clockMode_;
  out["next_id"] = nextId_;
  out["essences"] = nlohmann::json::array();
  for (const auto& [id, essence] : essences_)
    out["essences"].push_back(Hex(&essence.cfg, sizeof essence.cfg));
  return out;
}

void EssenceModel::load(const nlohmann::json& saved) {
  essences_.clear();
  clockMode_ = Section(appliance_).value("clock_mode", 0);
  nextId_ = 1;
  clockModeSinceMs_ = appliance_.nowMs();
  if (saved.is_object()) {
    clockMode_ = saved.value("clock_mode", clockMode_);
    nextId_ = saved.value("next_id", 1);
    for (const auto& item : saved.value("essences", nlohmann::json::array())) {
      SMGR_ESSENCE_CFG cfg{};
      if (!item.is_string() || !Unhex(item.get<std::string>(), &cfg, sizeof cfg) || cfg.nIndex <= 0) continue;
      essences_[cfg.nIndex].cfg = cfg;
      nextId_ = std::max(nextId_, cfg.nIndex + 1);
    }
  }
  for (auto& [id, essence] : essences_)
    if (essence.cfg.bAutoStart && !inputBusy(essence.cfg, id)) startNow(essence);
}

namespace {

const PersistedSection kEssenceSection{
    "essences", 40, [](Appliance& appliance) { return appliance.family<EssenceModel>().save(); },
    [](Appliance& appliance, const nlohmann::json& saved) { appliance.family<EssenceModel>().load(saved); }};

const ClientDepartureHook kEssenceOpens{
    "essences", [](Appliance& appliance, pid_t pid) { appliance.family<EssenceModel>().clientGone(pid); }};

}  // namespace
}  // namespace sim
