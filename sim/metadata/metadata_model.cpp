// The metadata-source rules of the simulated daemon (see metadata_model.h).
#include "metadata_model.h"

#include <algorithm>
#include <cctype>
#include <cstring>

#include "essence_model.h"
#include "stream_model.h"

namespace sim {
namespace {

constexpr int kStandardBaudRates[] = {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200, 230400};
constexpr int kDefaultBaudRate = 9600;
constexpr uint64_t kAllFlags = 0x1FFFFFFFull;

// Byte ranges of the configuration that each set-field bit selects. Bits the
// library leaves unnamed follow the record order.
struct FlagRange {
  uint64_t flag;
  size_t offset;
  size_t length;
};
#define RANGE(flag, first, last)                                               \
  {                                                                            \
    flag, offsetof(SMGR_METADATA_CFG, first),                                  \
        offsetof(SMGR_METADATA_CFG, last) - offsetof(SMGR_METADATA_CFG, first) \
  }
#define FIELD(flag, member) \
  { flag, offsetof(SMGR_METADATA_CFG, member), sizeof(SMGR_METADATA_CFG::member) }
const FlagRange kFlagRanges[] = {
    FIELD(SMGR_METADATA_SET_NAME, szName),
    FIELD(SMGR_METADATA_SET_INPUT_TYPE, enInputType),
    FIELD(SMGR_METADATA_SET_INPUT_FORMAT, enInputFormat),
    FIELD(SMGR_METADATA_SET_AUTO_START, bAutoStart),
    RANGE(SMGR_METADATA_SET_CAPTURE, bCaptureToDisk, in),
    FIELD(SMGR_METADATA_SET_SERIAL_BAUDRATE, in.Serial.nBaudRate),
    FIELD(SMGR_METADATA_SET_SERIAL_DEVICE, in.Serial.szInputDeviceName),
    FIELD(SMGR_METADATA_SET_SERIAL_STANDARD, in.Serial.enStandard),
    FIELD(SMGR_METADATA_SET_SERIAL_FLOW_CONTROL, in.Serial.enFlowControl),
    FIELD(SMGR_METADATA_SET_SERIAL_PARITY, in.Serial.enParity),
    FIELD(SMGR_METADATA_SET_INET_ADDRESS, in.Network.Address),
    FIELD(SMGR_METADATA_SET_SERIAL_STOP_BITS, in.Serial.enStopBits),
    FIELD(SMGR_METADATA_SET_SERIAL_DATA_BITS, in.Serial.nDataBits),
    FIELD(SMGR_METADATA_SET_INET_PORT, in.Network.usPort),
    FIELD(SMGR_METADATA_SET_COT_TIME_DELTA, format.CoT.nMaxAirCraftSPITimeDeltaInMs),
    FIELD(SMGR_METADATA_SET_COT_SENSOR_DISCOVERY, format.CoT.bSensorDiscovery),
    FIELD(SMGR_METADATA_SET_COT_SPI_UID, format.CoT.szSpiUid),
    FIELD(SMGR_METADATA_SET_MISSION_ID, szMissionID),
    FIELD(SMGR_METADATA_SET_RELAYING, bEnableRelaying),
    RANGE(SMGR_METADATA_SET_RELAYS, nNumOfRelays, szMissionID),
    FIELD(SMGR_METADATA_SET_CLASSIFY_MISSION, bClassifyMission),
    FIELD(SMGR_METADATA_SET_CLASSIFICATION, enClassification),
    FIELD(SMGR_METADATA_SET_CLASSIFYING_COUNTRY, szClassifyingCountry),
    FIELD(SMGR_METADATA_SET_OBJECT_COUNTRY, szObjectCountry),
    FIELD(SMGR_METADATA_SET_DECIMATION, DecimationCfg),
    FIELD(SMGR_METADATA_SET_VIDEO_INPUT, in.Video.enInputInterface),
    RANGE(SMGR_METADATA_SET_UAS_TAG_FILTER, bFilterUASTags, bFilterUASSecurityTags),
    {SMGR_METADATA_SET_SECURITY_TAG_FILTER, offsetof(SMGR_METADATA_CFG, bFilterUASSecurityTags), 8},
};
#undef RANGE
#undef FIELD

constexpr uint64_t kSerialOnlyFlags =
    SMGR_METADATA_SET_SERIAL_DEVICE | SMGR_METADATA_SET_SERIAL_FLOW_CONTROL |
    SMGR_METADATA_SET_SERIAL_PARITY | SMGR_METADATA_SET_SERIAL_STOP_BITS | SMGR_METADATA_SET_SERIAL_DATA_BITS;
constexpr uint64_t kNetworkFlags = SMGR_METADATA_SET_INET_ADDRESS | SMGR_METADATA_SET_INET_PORT;
constexpr uint64_t kCoTFlags =
    SMGR_METADATA_SET_COT_TIME_DELTA | SMGR_METADATA_SET_COT_SENSOR_DISCOVERY | SMGR_METADATA_SET_COT_SPI_UID;

// Mixed-case, unsorted on purpose: the library sorts them.
const char* const kSensorUIDs[] = {"uav-Sensor-3", "Gimbal-EO-1", "ALPHA-ir", "beacon-7"};

std::string Text(const char* field, size_t size) { return std::string(field, strnlen(field, size)); }

// Two or three upper-case letters.
bool IsCountryCode(const std::string& code) {
  return (code.size() == 2 || code.size() == 3) &&
         std::all_of(code.begin(), code.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

// One or more codes separated by ';'.
bool IsCountryList(const std::string& list) {
  size_t start = 0;
  while (true) {
    size_t end = list.find(';', start);
    if (!IsCountryCode(list.substr(start, end == std::string::npos ? end : end - start))) return false;
    if (end == std::string::npos) return true;
    start = end + 1;
  }
}

size_t AddressLength(int type) {
  if (type == SMGR_IPV4_ADDRESS || type == SMGR_HOSTNAME_RESOLVED_AS_IPV4) return 4;
  if (type == SMGR_IPV6_ADDRESS || type == SMGR_HOSTNAME_RESOLVED_AS_IPV6) return 16;
  return 0;
}

bool SameAddress(const SMGR_IP_ADDRESS& a, const SMGR_IP_ADDRESS& b) {
  const size_t length = AddressLength(a.enType);
  return length != 0 && length == AddressLength(b.enType) && memcmp(a.acAddress, b.acAddress, length) == 0;
}

}  // namespace

MetaDataModel::MetaDataModel(Appliance& appliance) : appliance_(appliance) {
  const nlohmann::json& section = appliance.profile().document.value("metadata", nlohmann::json::object());
  limit_ = section.value("metadata_limit", kDefaultLimit);
  serialPorts_ =
      section.value("serial_ports", std::vector<std::string>{"/dev/ttyS0", "/dev/ttyS1", "/dev/ttyS2"});
}

void MetaDataModel::setupFixedSources() {
  int input = 0;
  for (const ProfileObject& object : appliance_.profile().metadataSources) {
    Source source;
    source.fixed = true;
    source.bitRateKbps = object.bitRateKbps > 0 ? object.bitRateKbps : kDefaultBitRateKbps;
    SMGR_METADATA_CFG& cfg = source.cfg;
    cfg.nSize = sizeof cfg;
    cfg.nIndex = object.id;
    snprintf(cfg.szName, sizeof cfg.szName, "%s", object.name.c_str());
    cfg.enInputType = SMGR_METADATA_IN_TYPE_VIDEO_INPUT;
    cfg.enInputFormat = SMGR_METADATA_IN_FORMAT_KLV;
    cfg.in.Video.enInputInterface = ++input;
    cfg.enClassification = SMGR_METADATA_CLASSIFICATION_UNCLASSIFIED;
    cfg.bAutoStart = TRUE;  // the inputs' KLV flows from the start, as streams have always seen it
    sources_[object.id] = source;
    nextId_ = std::max(nextId_, object.id + 1);
  }
}

MetaDataModel::Source* MetaDataModel::find(const ObjectSelector& selector) {
  for (auto& [id, source] : sources_) {
    if (selector.byName ? Text(source.cfg.szName, sizeof source.cfg.szName) == selector.name
                        : id == selector.id)
      return &source;
  }
  return nullptr;
}

SMGR_RESULT MetaDataModel::validate(const SMGR_METADATA_CFG& cfg, int selfId, std::string* why) const {
  const bool video = cfg.enInputType == SMGR_METADATA_IN_TYPE_VIDEO_INPUT;
  const std::string name = Text(cfg.szName, sizeof cfg.szName);
  for (const auto& [id, other] : sources_) {
    if (id != selfId && !name.empty() && Text(other.cfg.szName, sizeof other.cfg.szName) == name)
      return *why = "name \"" + name + "\" is taken", SMGR_ERROR_ID_IN_USE;
  }
  if (cfg.enInputFormat != SMGR_METADATA_IN_FORMAT_KLV && cfg.enInputFormat != SMGR_METADATA_IN_FORMAT_COT)
    return *why = "unknown input format", SMGR_ERROR_INVALID_PARAMETERS;
  if (cfg.enInputType == SMGR_METADATA_IN_TYPE_SERIAL) {
    const std::string device = Text(cfg.in.Serial.szInputDeviceName, sizeof cfg.in.Serial.szInputDeviceName);
    if (std::find(serialPorts_.begin(), serialPorts_.end(), device) == serialPorts_.end())
      return *why = "no serial port " + device, SMGR_ERROR_SERIAL_PORT_UNAVAILABLE_FOR_METADATA;
    for (const auto& [id, other] : sources_) {
      if (id != selfId && other.cfg.enInputType == SMGR_METADATA_IN_TYPE_SERIAL &&
          Text(other.cfg.in.Serial.szInputDeviceName, sizeof other.cfg.in.Serial.szInputDeviceName) == device)
        return *why = device + " is used by source " + std::to_string(id),
               SMGR_ERROR_SERIAL_PORT_UNAVAILABLE_FOR_METADATA;
    }
    if (std::find(std::begin(kStandardBaudRates), std::end(kStandardBaudRates), cfg.in.Serial.nBaudRate) ==
        std::end(kStandardBaudRates))
      return *why = "baud rate " + std::to_string(cfg.in.Serial.nBaudRate), SMGR_ERROR_INVALID_BAUDRATE;
  } else if (cfg.enInputType == SMGR_METADATA_IN_TYPE_INET) {
    const SMGR_IP_ADDRESS& address = cfg.in.Network.Address;
    if (cfg.in.Network.usPort == 0) return *why = "UDP port 0", SMGR_ERROR_INVALID_STREAM_UDP_PORT;
    const BYTE broadcast[4] = {255, 255, 255, 255};
    const bool usable = AddressLength(address.enType) != 0 || address.enType == SMGR_ANY_ADDRESS;
    if (!usable || (AddressLength(address.enType) == 4 && memcmp(address.acAddress, broadcast, 4) == 0))
      return *why = "unusable source address", SMGR_ERROR_INVALID_METADATA_SOURCE_ADDRESS;
    for (const auto& [id, other] : sources_) {
      if (id != selfId && other.cfg.enInputType == SMGR_METADATA_IN_TYPE_INET &&
          other.cfg.in.Network.usPort == cfg.in.Network.usPort &&
          (SameAddress(other.cfg.in.Network.Address, address) || (address.enType == SMGR_ANY_ADDRESS) ||
           other.cfg.in.Network.Address.enType == SMGR_ANY_ADDRESS))
        return *why = "address and port of source " + std::to_string(id), SMGR_ERROR_ADDRESS_PORT_PAIR_IN_USE;
    }
  } else if (!video) {
    return *why = "unknown input type", SMGR_ERROR_INVALID_PARAMETERS;
  }

  const SMGR_METADATA_DECIMATION_CFG& decimation = cfg.DecimationCfg;
  if (decimation.enType != SMGR_METADATA_DECIMATION_TYPE_NONE) {
    if (!video) return *why = "decimation", SMGR_ERROR_METADATA_DECIMATION_ONLY_SUPPORTED_ON_KLV_SDI_SOURCES;
    if (decimation.enType == SMGR_METADATA_DECIMATION_TYPE_FACTOR &&
        (decimation.By.nFactor == 0 || decimation.By.nFactor > 60))
      return *why = "factor " + std::to_string(decimation.By.nFactor),
             SMGR_ERROR_INVALID_KLV_DECIMATION_FACTOR;
    if (decimation.enType == SMGR_METADATA_DECIMATION_TYPE_VIDENC &&
        (decimation.By.nEncoderID != cfg.in.Video.enInputInterface ||
         !appliance_.sources().findById(kContentVideo, decimation.By.nEncoderID)))
      return *why = "encoder " + std::to_string(decimation.By.nEncoderID) + " is not on this input",
             SMGR_ERROR_INVALID_KLV_DECIMATION_REF_ENCODER;
    if (decimation.enType > SMGR_METADATA_DECIMATION_TYPE_VIDENC)
      return *why = "decimation type", SMGR_ERROR_INVALID_PARAMETERS;
  }

  if (cfg.nNumOfRelays > SMGR_METADATA_MAX_RELAYS)
    return *why = "too many relays", SMGR_ERROR_INVALID_PARAMETERS;
  if (video && (cfg.bEnableRelaying || cfg.nNumOfRelays > 0))
    return *why = "relaying from a video input", SMGR_ERROR_UNSUPPORTED_RELAY_FOR_KLV_METADATA;
  if (cfg.bEnableRelaying && cfg.nNumOfRelays == 0)
    return *why = "no relays", SMGR_ERROR_NO_RELAYS_CONFIGURED;
  for (uint32_t i = 0; i < cfg.nNumOfRelays; ++i) {
    const SMGR_METADATA_RELAY_CFG& relay = cfg.Relays[i];
    const std::string which = "relay #" + std::to_string(i + 1);
    if (relay.iTTL < 1 || relay.iTTL > 255)
      return *why = which + " TTL", SMGR_ERROR_INVALID_METADATA_RELAY_TTL;
    if (relay.iTOS < 0 || relay.iTOS > 255)
      return *why = which + " TOS", SMGR_ERROR_INVALID_METADATA_RELAY_TOS;
    if (relay.usPort == 0) return *why = which + " port", SMGR_ERROR_INVALID_METADATA_RELAY_UDP_PORT;
    for (uint32_t j = 0; j < i; ++j) {
      if (SameAddress(cfg.Relays[j].Address, relay.Address))
        return *why = "Relay #" + std::to_string(i + 1) + " has duplicate IP address",
               SMGR_ERROR_DUPLICATE_METADATA_RELAY_ADDRESS;
    }
  }

  if (cfg.enInputFormat == SMGR_METADATA_IN_FORMAT_COT) {
    if (cfg.szMissionID[0] != '\0')
      return *why = "mission ID", SMGR_ERROR_UNSUPPORTED_MISSION_ID_FOR_COT_METADATA;
    if (cfg.bClassifyMission)
      return *why = "classification", SMGR_ERROR_UNSUPPORTED_MISSION_RECLASSIFICATION_FOR_COT_METADATA;
  }
  if (cfg.bClassifyMission) {
    if (cfg.enClassification < SMGR_METADATA_CLASSIFICATION_UNCLASSIFIED ||
        cfg.enClassification > SMGR_METADATA_CLASSIFICATION_TOP_SECRET)
      return *why = "classification " + std::to_string(cfg.enClassification),
             SMGR_ERROR_INVALID_CLASSIFICATION;
    const std::string classifying = Text(cfg.szClassifyingCountry, sizeof cfg.szClassifyingCountry);
    const std::string object = Text(cfg.szObjectCountry, sizeof cfg.szObjectCountry);
    if (classifying.empty()) return *why = "classifying country", SMGR_ERROR_CLASSIFYING_COUNTRY_UNSPECIFIED;
    if (!IsCountryCode(classifying)) return *why = classifying, SMGR_ERROR_INVALID_CLASSIFYING_COUNTRY;
    if (object.empty()) return *why = "object country", SMGR_ERROR_OBJECT_COUNTRY_UNSPECIFIED;
    if (!IsCountryList(object)) return *why = object, SMGR_ERROR_INVALID_OBJECT_COUNTRY;
  }
  return SMGR_ERROR_SUCCESS;
}

// The flagged fields the input union or the format cannot hold for this source.
SMGR_RESULT MetaDataModel::judgeFlags(const Source& source, const SMGR_METADATA_CFG& cfg,
                                      std::string* why) const {
  const uint64_t flags = cfg.SetFieldsFlag;
  int type = source.cfg.enInputType;
  if (flags & SMGR_METADATA_SET_INPUT_TYPE) {
    if (source.fixed && cfg.enInputType != type)
      return *why = "the input of a video input's source is fixed",
             SMGR_ERROR_METADATA_SOURCE_HAS_FIXED_INPUT;
    type = cfg.enInputType;
  }
  const int format = (flags & SMGR_METADATA_SET_INPUT_FORMAT) ? cfg.enInputFormat : source.cfg.enInputFormat;
  if (type != SMGR_METADATA_IN_TYPE_SERIAL && (flags & SMGR_METADATA_SET_SERIAL_BAUDRATE))
    return *why = "baud rate", SMGR_ERROR_INVALID_BAUDRATE_FOR_NON_SERIAL_SOURCE;
  if (type != SMGR_METADATA_IN_TYPE_SERIAL &&
      (flags & (SMGR_METADATA_SET_SERIAL_STANDARD | kSerialOnlyFlags)))
    return *why = "serial parameters", SMGR_ERROR_INVALID_SERIAL_STANDARD_FOR_NON_SERIAL_SOURCE;
  if (type != SMGR_METADATA_IN_TYPE_INET && (flags & kNetworkFlags))
    return *why = "network parameters", SMGR_ERROR_INVALID_NET_PARAMETER_FOR_NON_INET_SOURCE;
  if (type != SMGR_METADATA_IN_TYPE_VIDEO_INPUT && (flags & SMGR_METADATA_SET_VIDEO_INPUT))
    return *why = "input interface", SMGR_ERROR_METADATA_INPUT_ONLY_SUPPORTED_ON_KLV_SDI_SOURCES;
  if (source.fixed && (flags & SMGR_METADATA_SET_VIDEO_INPUT) &&
      cfg.in.Video.enInputInterface != source.cfg.in.Video.enInputInterface)
    return *why = "the input of a video input's source is fixed", SMGR_ERROR_METADATA_SOURCE_HAS_FIXED_INPUT;
  if (format == SMGR_METADATA_IN_FORMAT_KLV && (flags & kCoTFlags))
    return *why = "CoT parameters", SMGR_ERROR_INVALID_COT_PARAMETER_FOR_KLV;
  return SMGR_ERROR_SUCCESS;
}

Outcome MetaDataModel::create(const SMGR_METADATA_CFG& request) {
  SMGR_METADATA_CFG cfg = request;
  cfg.SetFieldsFlag = 0;
  if (cfg.enInputType != SMGR_METADATA_IN_TYPE_SERIAL && cfg.enInputType != SMGR_METADATA_IN_TYPE_INET)
    return {SMGR_ERROR_INVALID_PARAMETERS, "Only serial and network sources can be created"};
  const int created = static_cast<int>(
      std::count_if(sources_.begin(), sources_.end(), [](const auto& entry) { return !entry.second.fixed; }));
  if (created >= limit_)
    return {SMGR_ERROR_TOO_MANY_METADATA, "At most " + std::to_string(limit_) + " metadata sources"};
  if (cfg.nIndex > 0 && sources_.count(cfg.nIndex))
    return {SMGR_ERROR_ID_IN_USE, "Metadata source " + std::to_string(cfg.nIndex) + " exists"};
  if (cfg.enInputType == SMGR_METADATA_IN_TYPE_SERIAL && cfg.in.Serial.nBaudRate == 0)
    cfg.in.Serial.nBaudRate = kDefaultBaudRate;
  std::string why;
  if (SMGR_RESULT result = validate(cfg, 0, &why); result != SMGR_ERROR_SUCCESS) return {result, why};
  const int id = cfg.nIndex > 0 ? cfg.nIndex : nextId_;
  nextId_ = std::max(nextId_, id + 1);
  cfg.nIndex = id;
  if (cfg.szName[0] == '\0') snprintf(cfg.szName, sizeof cfg.szName, "Metadata%d", id);
  Source& source = sources_[id];
  source.cfg = cfg;
  appliance_.persist();  // auto-start sources start with the simulator, not here
  return {SMGR_ERROR_SUCCESS, {}, id, Text(cfg.szName, sizeof cfg.szName)};
}

Outcome MetaDataModel::configure(const ObjectSelector& selector, const SMGR_METADATA_CFG& request) {
  Source* source = find(selector);
  if (!source) return {SMGR_ERROR_NO_MATCHING_METADATA_FOUND, "No such metadata source"};
  std::string why;
  if (SMGR_RESULT result = judgeFlags(*source, request, &why); result != SMGR_ERROR_SUCCESS)
    return {result, why};
  SMGR_METADATA_CFG candidate = source->cfg;
  auto* target = reinterpret_cast<uint8_t*>(&candidate);
  const auto* given = reinterpret_cast<const uint8_t*>(&request);
  for (const FlagRange& range : kFlagRanges) {
    if (request.SetFieldsFlag & range.flag & kAllFlags)
      memcpy(target + range.offset, given + range.offset, range.length);
  }
  if (!Terminated(candidate.szName, sizeof candidate.szName) || candidate.szName[0] == '\0')
    return {SMGR_ERROR_INVALID_PARAMETERS, "Invalid name"};
  const int id = source->cfg.nIndex;
  if (SMGR_RESULT result = validate(candidate, id, &why); result != SMGR_ERROR_SUCCESS) return {result, why};
  source->cfg = candidate;
  appliance_.persist();
  return {SMGR_ERROR_SUCCESS, {}, id, Text(candidate.szName, sizeof candidate.szName)};
}

bool MetaDataModel::usedByStream(const Source& source) {
  for (const SMGR_STREAM_INFO& stream : appliance_.family<StreamModel>().list()) {
    const int count = std::min<int>(stream.nNumOfSources, SMGR_MAX_STREAM_CONTENT_SOURCES);
    for (int i = 0; i < count; ++i) {
      if (stream.ContentSources[i].enType == kContentData && stream.ContentSources[i].ID == source.cfg.nIndex)
        return true;
    }
  }
  return false;
}

Outcome MetaDataModel::remove(const ObjectSelector& selector) {
  Source* source = find(selector);
  if (!source) return {SMGR_ERROR_NO_MATCHING_METADATA_FOUND, "No such metadata source"};
  const int id = source->cfg.nIndex;
  if (source->fixed) return {SMGR_ERROR_METADATA_UNDELETABLE_SOURCE, "A video input's source stays", id};
  if (usedByStream(*source)) return {SMGR_ERROR_METADATA_SOURCE_IN_USE, "A stream uses the source", id};
  sources_.erase(id);
  appliance_.persist();
  return {SMGR_ERROR_SUCCESS, {}, id};
}

Outcome MetaDataModel::start(const ObjectSelector& selector) {
  Source* source = find(selector);
  if (!source) return {SMGR_ERROR_NO_MATCHING_METADATA_FOUND, "No such metadata source"};
  if (source->started) return {SMGR_ERROR_METADATA_ALREADY_STARTED, "Metadata source already started"};
  source->started = true;
  source->waiting = false;
  source->segmentStartMs = appliance_.nowMs();
  followInput(*source);
  return {SMGR_ERROR_SUCCESS, {}, source->cfg.nIndex};
}

Outcome MetaDataModel::stop(const ObjectSelector& selector) {
  Source* source = find(selector);
  if (!source) return {SMGR_ERROR_NO_MATCHING_METADATA_FOUND};
  if (!source->started) return {SMGR_ERROR_METADATA_NOT_STARTED};
  followInput(*source);
  source->accumulatedMs = runMs(*source);
  source->started = false;
  source->waiting = false;
  return {SMGR_ERROR_SUCCESS, {}, source->cfg.nIndex};
}

Outcome MetaDataModel::resetStats(const ObjectSelector& selector) {
  Source* source = find(selector);
  if (!source) return {SMGR_ERROR_NO_MATCHING_METADATA_FOUND};
  source->accumulatedMs = 0;
  source->segmentStartMs = appliance_.nowMs();
  return {SMGR_ERROR_SUCCESS, {}, source->cfg.nIndex};
}

Outcome MetaDataModel::open(const ObjectSelector& selector, pid_t pid) {
  Source* source = find(selector);
  if (!source) return {SMGR_ERROR_NO_MATCHING_METADATA_FOUND};
  ++source->opens[pid];
  return {SMGR_ERROR_SUCCESS, {}, source->cfg.nIndex, Text(source->cfg.szName, sizeof source->cfg.szName)};
}

Outcome MetaDataModel::close(int id, pid_t pid) {
  auto it = sources_.find(id);
  if (it == sources_.end()) return {SMGR_ERROR_NO_MATCHING_METADATA_FOUND};
  auto open = it->second.opens.find(pid);
  if (open != it->second.opens.end() && --open->second <= 0) it->second.opens.erase(open);
  return {SMGR_ERROR_SUCCESS, {}, id};
}

int MetaDataModel::openCount(int id) const {
  auto it = sources_.find(id);
  if (it == sources_.end()) return 0;
  int count = 0;
  for (const auto& [pid, opens] : it->second.opens) count += opens;
  return count;
}

void MetaDataModel::clientGone(pid_t pid) {
  for (auto& [id, source] : sources_) source.opens.erase(pid);
}

SMGR_METADATA_INFO MetaDataModel::infoOf(const Source& source) const {
  const SMGR_METADATA_CFG& cfg = source.cfg;
  SMGR_METADATA_INFO info{};
  info.nSize = sizeof info;
  info.nIndex = cfg.nIndex;
  memcpy(info.szName, cfg.szName, sizeof info.szName);
  info.enInputType = cfg.enInputType;
  info.enInputFormat = cfg.enInputFormat;
  info.bCaptureToDisk = cfg.bCaptureToDisk;
  info.nMaxCaptureSizeInKBytes = cfg.nMaxCaptureSizeInKBytes;
  info.in = cfg.in;
  info.format = cfg.format;
  info.enStatus = source.started ? SMGR_METADATA_STATUS_STARTED : SMGR_METADATA_STATUS_STOPPED;
  // From bEnableRelaying to the end the two records agree field for field.
  memcpy(&info.bEnableRelaying, &cfg.bEnableRelaying,
         sizeof(SMGR_METADATA_CFG) - offsetof(SMGR_METADATA_CFG, bEnableRelaying));
  return info;
}

SMGR_RESULT MetaDataModel::info(const ObjectSelector& selector, SMGR_METADATA_INFO* info) {
  Source* source = find(selector);
  if (!source) return SMGR_ERROR_NO_MATCHING_METADATA_FOUND;
  *info = infoOf(*source);
  return SMGR_ERROR_SUCCESS;
}

int64_t MetaDataModel::runMs(const Source& source) const {
  return source.accumulatedMs +
         (source.started && !source.waiting ? appliance_.nowMs() - source.segmentStartMs : 0);
}

bool MetaDataModel::noKlvFlowing(const Source& source) const {
  if (source.cfg.enInputType != SMGR_METADATA_IN_TYPE_VIDEO_INPUT) return false;
  EssenceModel& essences = appliance_.family<EssenceModel>();
  const int channel = source.cfg.in.Video.enInputInterface - 1;
  return essences.supported() && (channel < 0 || !essences.runningEssence(SMGR_ESSENCE_MEDIA_TYPE_DATA,
                                                                          static_cast<unsigned>(channel)));
}

void MetaDataModel::followInput(Source& source) {
  if (!source.started) return;
  const bool waiting = noKlvFlowing(source);
  if (waiting == source.waiting) return;
  if (waiting)
    source.accumulatedMs = runMs(source);  // the run so far, then nothing until the essence returns
  else
    source.segmentStartMs = appliance_.nowMs();
  source.waiting = waiting;
}

SMGR_RESULT MetaDataModel::stats(const ObjectSelector& selector, SMGR_METADATA_STATS* stats) {
  Source* source = find(selector);
  if (!source) return SMGR_ERROR_NO_MATCHING_METADATA_FOUND;
  followInput(*source);
  const SMGR_METADATA_CFG& cfg = source->cfg;
  *stats = SMGR_METADATA_STATS{};
  stats->nSize = sizeof *stats;
  stats->enState = source->started ? SMGR_METADATA_STATE_WORKING : SMGR_METADATA_STATE_STOPPED;
  stats->enInputType = cfg.enInputType;
  stats->enInputFormat = cfg.enInputFormat;
  const int64_t ms = runMs(*source);
  const SMGR_COUNTER bytes =
      static_cast<SMGR_COUNTER>(ms) * source->bitRateKbps / 8;  // kbit/s x ms / 8 = bytes
  const SMGR_COUNTER messages = bytes / 256;
  stats->nRxBytes = bytes;
  stats->nRxOkMessages = messages;
  if (cfg.enInputType == SMGR_METADATA_IN_TYPE_INET) stats->in.Network.SourceAddress = cfg.in.Network.Address;
  if (cfg.enInputFormat == SMGR_METADATA_IN_FORMAT_COT) {
    SMGR_METADATA_COT_STATS& cot = stats->format.CoT;
    cot.nRxSPIMessages = messages / 2;
    cot.nRxAirCraftMessages = messages - messages / 2;
    cot.nConvertedKLVMessages = messages / 2;
    cot.nConvertedKLVBytes = bytes / 2;
    if (cfg.format.CoT.bSensorDiscovery && messages > 0) {
      cot.nDiscoveredSensorsCount = std::size(kSensorUIDs);
      for (size_t i = 0; i < std::size(kSensorUIDs); ++i)
        snprintf(cot.aszSensorUIDs[i], sizeof cot.aszSensorUIDs[i], "%s", kSensorUIDs[i]);
    }
  } else {
    stats->format.KLV.nRxUASMessages = messages;
    if (cfg.szMissionID[0] != '\0') stats->format.KLV.nAddedMissionIDs = messages;
    if (cfg.bClassifyMission) stats->format.KLV.nAddedSecuritySets = messages;
  }
  stats->nCurrentPTS = ms * 90;
  stats->nNumOfRelays = static_cast<int32_t>(std::min<uint32_t>(cfg.nNumOfRelays, SMGR_METADATA_MAX_RELAYS));
  for (int i = 0; cfg.bEnableRelaying && i < stats->nNumOfRelays; ++i) {
    stats->Relays[i].nTxBytes = bytes;
    stats->Relays[i].nTxMessages = messages;
  }
  stats->nBitRateInKbps = source->started && !source->waiting ? source->bitRateKbps : 0;
  if (messages > 0) {
    stats->bLatencyMeasured = TRUE;
    stats->nMinLatencyInMS = stats->nAllTimeMinLatencyInMS = 20;
    stats->nMaxLatencyInMS = stats->nAllTimeMaxLatencyInMS = 60;
    stats->nAverageLatencyInMS = 35;
  }
  return SMGR_ERROR_SUCCESS;
}

std::vector<SMGR_METADATA_INFO> MetaDataModel::list() {
  std::vector<SMGR_METADATA_INFO> all;
  for (const auto& [id, source] : sources_) all.push_back(infoOf(source));
  return all;
}

std::optional<ContentSourceRef> MetaDataModel::findContent(int id, const std::string* name) {
  Source* source = find(name ? ObjectSelector{true, 0, *name} : ObjectSelector{false, id, {}});
  if (!source) return std::nullopt;
  return ContentSourceRef{source->cfg.nIndex, Text(source->cfg.szName, sizeof source->cfg.szName),
                          source->bitRateKbps, source->started};
}

nlohmann::json MetaDataModel::save() const {
  nlohmann::json sources = nlohmann::json::array();
  for (const auto& [id, source] : sources_) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(&source.cfg);
    sources.push_back({{"id", id},
                       {"fixed", source.fixed},
                       {"bitrate_kbps", source.bitRateKbps},
                       {"config", std::vector<uint8_t>(bytes, bytes + sizeof source.cfg)}});
  }
  return {{"next_id", nextId_}, {"sources", sources}};
}

void MetaDataModel::load(const nlohmann::json& saved) {
  sources_.clear();
  nextId_ = 1;
  if (saved.is_object() && saved.contains("sources")) {
    nextId_ = saved.value("next_id", 1);
    for (const nlohmann::json& entry : saved.at("sources")) {
      const auto bytes = entry.value("config", std::vector<uint8_t>{});
      if (bytes.size() != sizeof(SMGR_METADATA_CFG)) continue;
      Source source;
      memcpy(&source.cfg, bytes.data(), bytes.size());
      source.fixed = entry.value("fixed", false);
      source.bitRateKbps = entry.value("bitrate_kbps", kDefaultBitRateKbps);
      sources_[source.cfg.nIndex] = source;
    }
  } else {
    setupFixedSources();
  }
  for (auto& [id, source] : sources_) {
    if (source.cfg.bAutoStart) start(ObjectSelector{false, id, {}});
  }
}

}  // namespace sim
