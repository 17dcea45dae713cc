// Rules of the stream model: validation of a new stream (the result codes the
// daemon answers), the start/stop/pause/resume state machine with its SRT and
// publishing phases, and counters computed from a bit-rate model.
#include "stream_model.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <set>

#include "sim_log.h"

namespace sim {
namespace {

constexpr int kTsPayloadBytes = 7 * 188;
constexpr int kDefaultMtu = 1500;
constexpr int kDefaultTtl = 64;
constexpr int kDefaultSrtLatencyMs = 120;
constexpr int kSrtVersion = 0x010502;
constexpr int kPmtPidBase = 0x20;
constexpr int kFirstElementaryPid = 0x21;

bool IsTransportStream(int encapsulation) {
  return encapsulation == SMGR_STREAM_ENCAPS_TS_UDP || encapsulation == SMGR_STREAM_ENCAPS_TS_RTP ||
         encapsulation == SMGR_STREAM_ENCAPS_TS_SRT;
}

bool IsRtp(int encapsulation) {
  return encapsulation == SMGR_STREAM_ENCAPS_DIRECT_RTP || encapsulation == SMGR_STREAM_ENCAPS_TS_RTP;
}

bool IsKnownEncapsulation(int encapsulation) {
  switch (encapsulation) {
    case SMGR_STREAM_ENCAPS_DIRECT_RTP:
    case SMGR_STREAM_ENCAPS_TS_UDP:
    case SMGR_STREAM_ENCAPS_TS_RTP:
    case SMGR_STREAM_ENCAPS_QUICKTIME:
    case SMGR_STREAM_ENCAPS_CDN_PUBLISHING:
    case SMGR_STREAM_ENCAPS_TS_SRT:
      return true;
    default:
      return false;
  }
}

bool AllZero(const BYTE* bytes, size_t size) {
  return std::all_of(bytes, bytes + size, [](BYTE b) { return b == 0; });
}

bool IsIpv4Type(int type) {
  return type == SMGR_IPV4_ADDRESS || type == SMGR_IPV4_HOSTNAME || type == SMGR_HOSTNAME_RESOLVED_AS_IPV4;
}

bool IsIpv6Type(int type) { return type == SMGR_IPV6_ADDRESS || type == SMGR_HOSTNAME_RESOLVED_AS_IPV6; }

bool IsMulticast(const SMGR_IP_ADDRESS& address) {
  if (IsIpv4Type(address.enType)) return address.acAddress[0] >= 224 && address.acAddress[0] <= 239;
  if (IsIpv6Type(address.enType)) return address.acAddress[0] == 0xff;
  return false;
}

bool IsValidPid(int pid) { return pid >= 16 && pid <= 8190; }

SMGR_RESULT PidError(int kind) {
  switch (kind) {
    case kContentVideo:
      return SMGR_ERROR_INVALID_STREAM_VIDEO_PID;
    case kContentAudio:
      return SMGR_ERROR_INVALID_STREAM_AUDIO_PID;
    default:
      return SMGR_ERROR_INVALID_STREAM_DATA_PID;
  }
}

}  // namespace

std::string StreamModel::label(const Stream& stream) {
  char text[96];
  snprintf(text, sizeof text, "Stream %d (\"%s\")", stream.info.nIndex, stream.info.szName);
  return text;
}

StreamModel::Stream* StreamModel::find(const ObjectSelector& selector) {
  if (!selector.byName) {
    auto it = streams_.find(selector.id);
    return it == streams_.end() ? nullptr : &it->second;
  }
  for (auto& [id, stream] : streams_) {
    if (selector.name == stream.info.szName) return &stream;
  }
  return nullptr;
}

int StreamModel::allocateId() {
  // IDs go up and are not reused at once, so that a client holding the ID of a
  // deleted stream does not reach another client's new stream by it.
  for (int tries = 0; tries < kMaxStreamId; ++tries) {
    const int id = nextId_;
    nextId_ = nextId_ >= kMaxStreamId ? 1 : nextId_ + 1;
    if (!streams_.count(id)) return id;
  }
  return 0;  // unreachable: the stream limit is far below kMaxStreamId
}

SMGR_RESULT StreamModel::validate(const SMGR_STREAM_CFG& cfg, const SMGRPROT_OBJECT_SELECTOR* sources,
                                  size_t sourceCount, Stream* stream, std::string* why) {
  SMGR_STREAM_INFO& info = stream->info;
  const int encaps = cfg.enEncapsulation;
  const bool isSrt = encaps == SMGR_STREAM_ENCAPS_TS_SRT;
  const SMGR_SRT_CFG& srt = cfg.EncapSpecCfg.SRT;

  // Identity, direction and the stream limit.
  if (cfg.nNumOfSources == 0) return *why = "no content sources", SMGR_ERROR_INVALID_STREAM_CONTENTS;
  if (cfg.nNumOfSources > SMGR_MAX_STREAM_CONTENT_SOURCES || cfg.nNumOfSources > sourceCount) {
    return *why = "more than 24 content sources", SMGR_ERROR_INVALID_PARAMETERS;
  }
  if (cfg.enType != SMGR_STREAM_TYPE_TX && cfg.enType != SMGR_STREAM_TYPE_REC) {
    return *why = "only TX and REC streams exist on an encoder", SMGR_ERROR_INVALID_STREAM_TYPE;
  }
  if (!Terminated(cfg.szName, sizeof cfg.szName))
    return *why = "unterminated name", SMGR_ERROR_INVALID_STREAM_NAME;
  for (const char* c = cfg.szName; *c; ++c) {
    if (*c < 0x20 || *c == 0x7f) return *why = "control character in name", SMGR_ERROR_INVALID_STREAM_NAME;
  }
  if (cfg.nIndex > kMaxStreamId) return *why = "ID out of range", SMGR_ERROR_INVALID_STREAM_ID;
  if (cfg.nIndex > 0 && streams_.count(cfg.nIndex)) return *why = "ID in use", SMGR_ERROR_ID_IN_USE;
  if (cfg.szName[0]) {
    for (const auto& [id, other] : streams_) {
      if (strcmp(other.info.szName, cfg.szName) == 0) return *why = "name in use", SMGR_STREAM_NAME_IN_USE;
    }
  }
  if (static_cast<int>(streams_.size()) >= appliance_.profile().streamLimit) {
    return *why = "stream limit reached", SMGR_ERROR_TOO_MANY_STREAMS;
  }

  // Transport, address and port.
  if (!IsKnownEncapsulation(encaps))
    return *why = "unknown encapsulation", SMGR_ERROR_INVALID_STREAM_ENCAPSULATION;
  const SMGR_IP_ADDRESS& address = cfg.Address;
  if (!Terminated(address.szHostName, sizeof address.szHostName)) {
    return *why = "unterminated host name", SMGR_ERROR_INVALID_STREAM_ADDRESS;
  }
  switch (address.enType) {
    case SMGR_IPV4_ADDRESS:
    case SMGR_IPV4_HOSTNAME:
    case SMGR_HOSTNAME_RESOLVED_AS_IPV4: {
      const bool any = AllZero(address.acAddress, 4);
      const bool broadcast = address.acAddress[0] == 255 && address.acAddress[1] == 255 &&
                             address.acAddress[2] == 255 && address.acAddress[3] == 255;
      const bool listener = isSrt && srt.enMode == SMGR_SRT_MODE_SERVER;
      if (broadcast || (any && !listener))
        return *why = "unusable IPv4 address", SMGR_ERROR_INVALID_STREAM_ADDRESS;
      if (listener && !any)
        return *why = "listener with address", SMGR_ERROR_ADDRESS_SPECIFIED_FOR_SRT_LISTENER_STREAM;
      break;
    }
    case SMGR_IPV6_ADDRESS:
    case SMGR_HOSTNAME_RESOLVED_AS_IPV6:
      if (AllZero(address.acAddress, 16))
        return *why = "unspecified IPv6 address", SMGR_ERROR_INVALID_STREAM_ADDRESS;
      break;
    case SMGR_URL:
      if (encaps != SMGR_STREAM_ENCAPS_CDN_PUBLISHING || !address.szHostName[0]) {
        return *why = "URL outside a publishing stream", SMGR_ERROR_INVALID_STREAM_ADDRESS;
      }
      break;
    case SMGR_UNRESOLVED_HOSTNAME:
      if (!address.szHostName[0]) return *why = "empty host name", SMGR_ERROR_INVALID_STREAM_ADDRESS;
      break;
    case SMGR_ANY_ADDRESS:
      if (!(isSrt && srt.enMode == SMGR_SRT_MODE_SERVER)) {
        return *why = "ANY is for SRT listeners", SMGR_ERROR_INVALID_STREAM_ADDRESS;
      }
      break;
    default:
      return *why = "unknown address type", SMGR_ERROR_INVALID_STREAM_ADDRESS;
  }
  if (isSrt && IsMulticast(address)) {
    return *why = "multicast SRT destination", SMGR_ERROR_MCAST_ADDRESS_UNSUPPORTED_ON_SRT_STREAMS;
  }
  if (cfg.usPort == 0 && encaps != SMGR_STREAM_ENCAPS_CDN_PUBLISHING) {
    return *why = "port 0", SMGR_ERROR_INVALID_STREAM_UDP_PORT;
  }
  if (encaps == SMGR_STREAM_ENCAPS_TS_RTP && (cfg.usPort % 2) != 0) {
    return *why = "odd RTP port", SMGR_ERROR_INVALID_STREAM_ODD_RTP_PORT;
  }
  if (cfg.IpMTU != 0 && (cfg.IpMTU < 576 || cfg.IpMTU > kDefaultMtu)) {
    return *why = "MTU outside 576..1500", SMGR_ERROR_INVALID_STREAM_MTU;
  }
  if (!Terminated(cfg.szNetworkInterface, sizeof cfg.szNetworkInterface)) {
    return *why = "unterminated interface", SMGR_ERROR_INVALID_STREAM_NETWORK_INTERFACE;
  }

  // Features that belong to some transports only.
  if (cfg.bUseRTCP && !IsRtp(encaps)) {
    return *why = "RTCP without RTP", SMGR_ERROR_RTCP_ENABLED_ON_TS_UDP_STREAM;
  }
  if (cfg.bEncrypted) {
    if (encaps == SMGR_STREAM_ENCAPS_TS_UDP) {
      const int key = cfg.CryptoCfg.nKeySize;
      if (key != 16 && key != 24 && key != 32)
        return *why = "AES key size", SMGR_ERROR_INVALID_STREAM_ENCRYPTION;
    } else if (isSrt) {
      const char* phrase = cfg.CryptoCfg.szPassphrase;
      const size_t length = strnlen(phrase, sizeof cfg.CryptoCfg.szPassphrase);
      if (length == 0) return *why = "no passphrase", SMGR_ERROR_STREAM_NEEDS_PASSPHRASE;
      if (length < 10) return *why = "short passphrase", SMGR_ERROR_STREAM_PASSPHRASE_TOO_SHORT;
      if (length >= sizeof cfg.CryptoCfg.szPassphrase) {
        return *why = "unterminated passphrase", SMGR_ERROR_INVALID_STREAM_ENCRYPTION;
      }
    } else {
      return *why = "AES outside TS-UDP", SMGR_ERROR_AES_ENABLED_ON_NON_TS_UDP_STREAM;
    }
  }
  switch (cfg.enFECType) {
    case SMGR_FEC_TYPE_NONE:
      break;
    case SMGR_FEC_TYPE_QX:
      if (encaps != SMGR_STREAM_ENCAPS_TS_UDP)
        return *why = "FEC outside TS-UDP", SMGR_ERROR_FEC_ENABLED_ON_NON_TS_UDP_STREAM;
      break;
    case SMGR_FEC_TYPE_PRO_MPEG: {
      if (encaps != SMGR_STREAM_ENCAPS_TS_RTP) {
        return *why = "Pro-MPEG outside TS-RTP", SMGR_ERROR_PRO_MPEG_FEC_ENABLED_ON_NON_TS_RTP_STREAM;
      }
      const SMGR_PRO_MPEG_FEC_CFG& fec = cfg.FECCfg.ProMPEG;
      if (fec.enLevel != SMGR_FEC_LEVEL_A && fec.enLevel != SMGR_FEC_LEVEL_B) {
        return *why = "FEC level", SMGR_ERROR_INVALID_PARAMETERS;
      }
      if (fec.nNumOfColumns < 1 || fec.nNumOfColumns > 20)
        return *why = "FEC columns", SMGR_ERROR_INVALID_NUM_OF_FEC_COLUMNS;
      if (fec.nNumOfRows < 4 || fec.nNumOfRows > 20)
        return *why = "FEC rows", SMGR_ERROR_INVALID_NUM_OF_FEC_ROWS;
      if (fec.nNumOfRows * fec.nNumOfColumns > 100)
        return *why = "FEC group", SMGR_ERROR_INVALID_NUM_OF_FEC_PKTS_PER_GROUP;
      if (fec.enLevel == SMGR_FEC_LEVEL_A && cfg.usPort > 65535 - 2) {
        return *why = "no room for the FEC port",
               SMGR_ERROR_STREAM_UDP_PORT_TOO_HIGH_FOR_MPEG_PRO_FEC_LEVEL_A;
      }
      if (fec.enLevel == SMGR_FEC_LEVEL_B && cfg.usPort > 65535 - 4) {
        return *why = "no room for the FEC ports",
               SMGR_ERROR_STREAM_UDP_PORT_TOO_HIGH_FOR_MPEG_PRO_FEC_LEVEL_B;
      }
      break;
    }
    default:
      return *why = "unknown FEC type", SMGR_ERROR_INVALID_PARAMETERS;
  }
  if (cfg.bUseShaping) {
    if (isSrt) return *why = "shaping on SRT", SMGR_ERROR_TRAFFIC_SHAPING_UNSUPPORTED_FOR_SRT;
    if (cfg.nOverheadPercentage < 0 || cfg.nOverheadPercentage > 100) {
      return *why = "shaping overhead", SMGR_ERROR_INVALID_STREAM_OVERHEAD;
    }
  }
  if (encaps == SMGR_STREAM_ENCAPS_CDN_PUBLISHING) {
    const SMGR_CDN_CFG& cdn = cfg.EncapSpecCfg.CDN;
    if (!Terminated(cdn.szPublishName, sizeof cdn.szPublishName) || !cdn.szPublishName[0]) {
      return *why = "no publish name", SMGR_ERROR_NO_PUBLISH_NAME;
    }
  }

  // SRT.
  if (isSrt) {
    if (srt.enMode < SMGR_SRT_MODE_CLIENT || srt.enMode > SMGR_SRT_MODE_RENDEZ_VOUS) {
      return *why = "SRT mode", SMGR_ERROR_INVALID_PARAMETERS;
    }
    if (srt.nLatencyInMS != 0 && (srt.nLatencyInMS < 20 || srt.nLatencyInMS > 8000)) {
      return *why = "SRT latency", SMGR_ERROR_INVALID_STREAM_LATENCY;
    }
    if (srt.enLinkRedundancyMode < SMGR_SRT_REDUNDANCY_OPTIONAL ||
        srt.enLinkRedundancyMode > SMGR_SRT_REDUNDANCY_ACTIVE_BACKUP) {
      return *why = "SRT redundancy", SMGR_ERROR_SRT_INVALID_REDUNDANCY_MODE;
    }
    if (!Terminated(srt.szPublishingID, sizeof srt.szPublishingID)) {
      return *why = "unterminated publishing ID", SMGR_ERROR_INVALID_PARAMETERS;
    }
    if (srt.szPublishingID[0]) {
      if (srt.enMode == SMGR_SRT_MODE_SERVER) {
        return *why = "publishing ID on a listener",
               SMGR_ERROR_UNSUPPORTED_PUBLISHING_ID_ON_LISTENER_SRT_STREAM;
      }
      if (srt.enMode == SMGR_SRT_MODE_RENDEZ_VOUS) {
        return *why = "publishing ID on rendezvous",
               SMGR_ERROR_UNSUPPORTED_PUBLISHING_ID_ON_RENDEZVOUS_SRT_STREAM;
      }
      for (const auto& [id, other] : streams_) {
        if (other.info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT &&
            strcmp(other.info.EncapSpecCfg.SRT.szPublishingID, srt.szPublishingID) == 0) {
          return *why = "publishing ID in use", SMGR_ERROR_SRT_PUBLISHING_ID_IN_USE;
        }
      }
    }
  }

  // Transport-stream identifiers.
  if (IsTransportStream(encaps)) {
    if (cfg.TsCfg.iPcrPID != 0 && !IsValidPid(cfg.TsCfg.iPcrPID))
      return *why = "PCR PID", SMGR_ERROR_INVALID_STREAM_PCR_PID;
    if (cfg.TsCfg.iPmtPID != 0 && !IsValidPid(cfg.TsCfg.iPmtPID))
      return *why = "PMT PID", SMGR_ERROR_INVALID_STREAM_PMT_PID;
    if (cfg.TsCfg.iProgNum < 0 || cfg.TsCfg.iProgNum > 65535) {
      return *why = "program number", SMGR_ERROR_INVALID_STREAM_PROGRAM_NUMBER;
    }
    if (cfg.TsCfg.iStreamID < 0 || cfg.TsCfg.iStreamID > 65535)
      return *why = "TS ID", SMGR_ERROR_INVALID_TS_STREAM_ID;
  }

  // Content sources: they must exist; PIDs are checked and assigned.
  uint32_t uncovered = cfg.enContents & 7u;
  int videoCount = 0, audioCount = 0, dataCount = 0;
  std::set<int> audioIds, dataIds, pids;
  int totalKbps = 0, dataKbps = 0;
  bool networkAdaptiveVideo = false;
  int adaptiveVideoId = 0;
  info.nNumOfSources = static_cast<int32_t>(cfg.nNumOfSources);
  for (uint32_t i = 0; i < cfg.nNumOfSources; ++i) {
    const SMGR_CONTENT_SRC& source = cfg.ContentSources[i];
    const int kind = source.enType;
    if (kind != kContentVideo && kind != kContentAudio && kind != kContentData) {
      return *why = "unknown content kind", SMGR_ERROR_INVALID_STREAM_CONTENTS;
    }
    uncovered &= ~static_cast<uint32_t>(kind);
    std::optional<ContentSourceRef> ref;
    if (source.Selector.enType == SMGR_SELECTBY_OBJECT_NAME) {
      if (!Terminated(sources[i].Via.szName, sizeof sources[i].Via.szName)) {
        return *why = "unterminated source name", SMGR_ERROR_INVALID_PARAMETERS;
      }
      ref = appliance_.sources().findByName(static_cast<ContentKind>(kind), sources[i].Via.szName);
    } else if (source.Selector.enType == SMGR_SELECTBY_OBJECT_ID) {
      ref = appliance_.sources().findById(static_cast<ContentKind>(kind), sources[i].Via.ID);
    } else {
      return *why = "content source selected by handle", SMGR_ERROR_INVALID_PARAMETERS;
    }
    if (!ref) {
      *why = "content source " + std::to_string(i + 1) + " does not exist";
      return kind == kContentData ? SMGR_ERROR_NO_MATCHING_METADATA_FOUND
                                  : SMGR_ERROR_NO_MATCHING_CODEC_FOUND;
    }
    if (kind == kContentVideo) {
      ++videoCount;
      adaptiveVideoId = ref->id;
      networkAdaptiveVideo = true;
    } else if (kind == kContentAudio) {
      ++audioCount;
      if (!audioIds.insert(ref->id).second)
        return *why = "audio twice", SMGR_ERROR_DUPLICATE_AUDIO_ENCODERS_IN_STREAM;
    } else {
      ++dataCount;
      dataKbps += ref->bitRateKbps;
      if (!dataIds.insert(ref->id).second)
        return *why = "data twice", SMGR_ERROR_DUPLICATE_METADATA_SOURCES_IN_STREAM;
    }
    totalKbps += ref->bitRateKbps;
    if (IsTransportStream(encaps) && source.iTsPid != 0) {
      if (!IsValidPid(source.iTsPid)) return *why = "source PID", PidError(kind);
      if (!pids.insert(source.iTsPid).second)
        return *why = "duplicate PIDs", SMGR_ERROR_INVALID_STREAM_DUPLICATE_PIDS;
    }
    SMGR_CONTENT_INFO& entry = info.ContentSources[i];
    entry.enType = kind;
    entry.ID = ref->id;
    snprintf(entry.szName, sizeof entry.szName, "%s", ref->name.c_str());
    entry.iTsPid = source.iTsPid;
  }
  if (uncovered) return *why = "a content kind has no source", SMGR_ERROR_INVALID_STREAM_CONTENTS;
  if (videoCount > 1) return *why = "several videos", SMGR_ERROR_MULTI_VIDEO_STREAMING_UNSUPPORTED;
  if (audioCount > 8) return *why = "more than 8 audios", SMGR_ERROR_TOO_MANY_AUDIO_ENCODERS_IN_STREAM;
  if (encaps == SMGR_STREAM_ENCAPS_DIRECT_RTP && audioCount > 1) {
    return *why = "multi-audio on Direct-RTP", SMGR_ERROR_MULTI_AUDIO_UNSUPPORTED_FOR_ENCAPSULATION;
  }
  if (encaps == SMGR_STREAM_ENCAPS_DIRECT_RTP && dataCount > 1) {
    return *why = "multi-data on Direct-RTP", SMGR_ERROR_MULTI_DATA_UNSUPPORTED_FOR_ENCAPSULATION;
  }
  if (isSrt && srt.bNetworkAdaptive && networkAdaptiveVideo) {
    for (const auto& [id, other] : streams_) {
      if (other.info.enEncapsulation != SMGR_STREAM_ENCAPS_TS_SRT ||
          !other.info.EncapSpecCfg.SRT.bNetworkAdaptive) {
        continue;
      }
      for (int k = 0; k < other.info.nNumOfSources; ++k) {
        if (other.info.ContentSources[k].enType == kContentVideo &&
            other.info.ContentSources[k].ID == adaptiveVideoId) {
          return *why = "encoder already adapted by " + label(other),
                 SMGR_ERROR_VIDEO_ENCODER_ALREADY_CONTROLLED_BY_ANOTHER_STREAM;
        }
      }
    }
  }
  if (IsTransportStream(encaps) && cfg.TsCfg.iPmtPID != 0 && pids.count(cfg.TsCfg.iPmtPID)) {
    return *why = "PMT PID used by content", SMGR_ERROR_INVALID_STREAM_DUPLICATE_PIDS;
  }

  // Still image: a file in the still-image folder.
  if (!Terminated(cfg.szStillImageFName, sizeof cfg.szStillImageFName)) {
    return *why = "unterminated still image name", SMGR_ERROR_FILENAME_TOO_LONG;
  }
  if (cfg.szStillImageFName[0]) {
    if (strchr(cfg.szStillImageFName, '/'))
      return *why = "still image with a folder", SMGR_ERROR_INVALID_FILENAME_PATH;
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(appliance_.stillImageDir() / cfg.szStillImageFName, ignored)) {
      return *why = std::string("no still image ") + cfg.szStillImageFName, SMGR_ERROR_NO_SUCH_STILL_IMAGE;
    }
  }

  // Accepted: assign what the caller left to the daemon.
  if (IsTransportStream(encaps)) {
    int nextPid = kFirstElementaryPid;
    auto takePid = [&]() {
      while (pids.count(nextPid) || nextPid == (cfg.TsCfg.iPmtPID ? cfg.TsCfg.iPmtPID : kPmtPidBase))
        ++nextPid;
      pids.insert(nextPid);
      return nextPid;
    };
    for (int i = 0; i < info.nNumOfSources; ++i) {
      if (info.ContentSources[i].iTsPid == 0) {
        info.ContentSources[i].iTsPid = takePid();
        info.ContentSources[i].bTsPidWasAutoAssigned = TRUE;
      }
    }
    SMGR_TS_INFO& ts = info.TsInfo;
    ts.iPmtPID = cfg.TsCfg.iPmtPID ? cfg.TsCfg.iPmtPID : kPmtPidBase;
    ts.bPmtPIDWasAutoAssigned = cfg.TsCfg.iPmtPID == 0;
    int firstPid = info.ContentSources[0].iTsPid;
    for (int i = 0; i < info.nNumOfSources; ++i) {
      if (info.ContentSources[i].enType == kContentVideo) firstPid = info.ContentSources[i].iTsPid;
    }
    ts.iPcrPID = cfg.TsCfg.iPcrPID ? cfg.TsCfg.iPcrPID : firstPid;
    ts.bPcrPIDWasAutoAssigned = cfg.TsCfg.iPcrPID == 0;
    ts.iProgNum = cfg.TsCfg.iProgNum ? cfg.TsCfg.iProgNum : 1;
    ts.bProgNumWasAutoAssigned = cfg.TsCfg.iProgNum == 0;
    ts.iStreamID = cfg.TsCfg.iStreamID;
  }
  int overheadPercent = IsTransportStream(encaps) ? 5 : 2;
  if (cfg.bUseShaping) overheadPercent += cfg.nOverheadPercentage;
  stream->bitRateKbps = totalKbps + totalKbps * overheadPercent / 100;
  if (isSrt && srt.nMaxBwInKbps > 0) stream->bitRateKbps = std::min(stream->bitRateKbps, srt.nMaxBwInKbps);
  info.bDataBitRateWasAutoAssigned = cfg.bAutoDetectDataBitRate;
  info.nDataBitRateInKbps =
      cfg.bAutoDetectDataBitRate ? static_cast<uint32_t>(dataKbps) : cfg.nDataBitRateInKbps;
  return SMGR_ERROR_SUCCESS;
}

Outcome StreamModel::create(const SMGR_STREAM_CFG& cfg, const SMGRPROT_OBJECT_SELECTOR* sources,
                            size_t sourceCount, pid_t client) {
  Stream stream;
  std::string why;
  Outcome outcome;
  outcome.result = validate(cfg, sources, sourceCount, &stream, &why);
  if (outcome.result != SMGR_ERROR_SUCCESS) {
    outcome.description = "Stream not created: " + why;
    return outcome;
  }

  const int id = cfg.nIndex > 0 ? cfg.nIndex : allocateId();
  SMGR_STREAM_INFO& info = stream.info;
  info.nSize = sizeof(SMGR_STREAM_INFO);
  info.nIndex = id;
  if (cfg.szName[0]) {
    memcpy(info.szName, cfg.szName, sizeof info.szName);
  } else {
    // The daemon names unnamed streams after their ID, avoiding names in use.
    for (int suffix = 0;; ++suffix) {
      snprintf(info.szName, sizeof info.szName, suffix ? "Stream%d-%d" : "Stream%d", id, suffix);
      bool clash = false;
      for (const auto& [otherId, other] : streams_) clash |= strcmp(other.info.szName, info.szName) == 0;
      if (!clash) break;
    }
  }
  info.enType = cfg.enType;
  info.SSRC = IsRtp(cfg.enEncapsulation) ? (0x5D000000u ^ (static_cast<uint32_t>(id) * 2654435761u)) : 0;
  info.enContents = cfg.enContents;
  info.bUseRTCP = cfg.bUseRTCP;
  info.Address = cfg.Address;
  info.usPort = cfg.usPort;
  info.enEncapsulation = cfg.enEncapsulation;
  info.nBandwithEstimateInKbps = stream.bitRateKbps;
  info.RtcpCfg = cfg.RtcpCfg;
  if (cfg.bUseRTCP && info.RtcpCfg.usPort == 0) info.RtcpCfg.usPort = static_cast<uint16_t>(cfg.usPort + 1);
  if (IsTransportStream(cfg.enEncapsulation) && info.TsInfo.iStreamID == 0) info.TsInfo.iStreamID = id;
  info.IpMTU = cfg.IpMTU ? cfg.IpMTU : kDefaultMtu;
  info.IpTOS = cfg.IpTOS;
  info.IpTTL = cfg.IpTTL ? cfg.IpTTL : kDefaultTtl;
  info.bUseShaping = cfg.bUseShaping;
  info.nOverheadPercentage = cfg.nOverheadPercentage;
  info.bEncrypted = cfg.bEncrypted;
  info.CryptoCfg = cfg.CryptoCfg;
  info.enFECType = cfg.enFECType;
  memcpy(info.szStillImageFName, cfg.szStillImageFName, sizeof info.szStillImageFName);
  info.bNonPersistent = cfg.bNonPersistent;
  info.bSendIdleCells = cfg.bSendIdleCells;
  info.EncapSpecCfg = cfg.EncapSpecCfg;
  if (cfg.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT && info.EncapSpecCfg.SRT.nLatencyInMS == 0) {
    info.EncapSpecCfg.SRT.nLatencyInMS = kDefaultSrtLatencyMs;
  }
  info.enMetaDataEncaps = cfg.enMetaDataEncaps;
  memcpy(info.szUserData, cfg.szUserData, sizeof info.szUserData);
  info.szUserData[sizeof info.szUserData - 1] = '\0';
  info.usSourcePort = cfg.usSourcePort;
  info.FECCfg = cfg.FECCfg;
  info.bDelayAudio = cfg.bDelayAudio;
  memcpy(info.szNetworkInterface, cfg.szNetworkInterface, sizeof info.szNetworkInterface);
  stream.autoStart = cfg.bAutoStart;
  if (client) stream.opens[client] = 1;

  auto [it, inserted] = streams_.emplace(id, stream);
  if (cfg.bAutoStart) doStart(it->second, appliance_.nowMs());
  outcome.id = id;
  outcome.name = it->second.info.szName;
  appliance_.persist();
  return outcome;
}

int StreamModel::setupDelayMs(const Stream& stream) const {
  const SMGR_STREAM_INFO& info = stream.info;
  int delay = 0;
  if (info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT) {
    delay = info.EncapSpecCfg.SRT.enMode == SMGR_SRT_MODE_SERVER ? 2000 : 1000;
    if (info.bEncrypted) delay += 500;
  } else if (info.enEncapsulation == SMGR_STREAM_ENCAPS_CDN_PUBLISHING) {
    delay = 1000;
  }
  return delay;
}

int StreamModel::reportedState(const Stream& stream, int64_t now) const {
  switch (stream.run) {
    case Run::kStopped:
      return SMGR_STREAM_STATE_STOPPED;
    case Run::kPaused:
      return SMGR_STREAM_STATE_PAUSED;
    case Run::kRunning:
      break;
  }
  const SMGR_STREAM_INFO& info = stream.info;
  if (info.Address.enType == SMGR_UNRESOLVED_HOSTNAME) return SMGR_STREAM_STATE_RESOLVING;
  const int64_t since = now - stream.startedAtMs;
  const int delay = setupDelayMs(stream);
  if (info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT && since < delay) {
    const int handshake = info.EncapSpecCfg.SRT.enMode == SMGR_SRT_MODE_SERVER ? 2000 : 1000;
    if (since < handshake) {
      return info.EncapSpecCfg.SRT.enMode == SMGR_SRT_MODE_SERVER ? SMGR_STREAM_STATE_LISTENING
                                                                  : SMGR_STREAM_STATE_CONNECTING;
    }
    return SMGR_STREAM_STATE_SECURING;
  }
  if (info.enEncapsulation == SMGR_STREAM_ENCAPS_CDN_PUBLISHING) {
    return since < delay ? SMGR_STREAM_STATE_CONNECTING : SMGR_STREAM_STATE_PUBLISHING;
  }
  return SMGR_STREAM_STATE_RUNNING;
}

int64_t StreamModel::flowMs(const Stream& stream, int64_t now) const {
  int64_t flow = stream.accumulatedMs;
  if (stream.segmentStartMs && now > *stream.segmentStartMs) flow += now - *stream.segmentStartMs;
  return flow;
}

void StreamModel::doStart(Stream& stream, int64_t now) {
  stream.run = Run::kRunning;
  stream.startedAtMs = now;
  if (stream.info.Address.enType == SMGR_UNRESOLVED_HOSTNAME) {
    stream.segmentStartMs.reset();  // nothing flows to a name that never resolves
  } else {
    stream.segmentStartMs = now + setupDelayMs(stream);
  }
}

void StreamModel::closeSegment(Stream& stream, int64_t now) {
  stream.accumulatedMs = flowMs(stream, now);
  stream.segmentStartMs.reset();
}

Outcome StreamModel::remove(const ObjectSelector& selector) {
  Outcome outcome;
  Stream* stream = find(selector);
  if (!stream) return {SMGR_ERROR_NO_MATCHING_STREAM_FOUND, "No such stream"};
  if (stream->run != Run::kStopped) {
    outcome.result = SMGR_ERROR_STREAM_IN_USE;
    outcome.description = label(*stream) + " is still running; stop it first";
    return outcome;
  }
  for (const DeleteGuard& guard : deleteGuards_) {
    if (std::string why = guard(stream->info.nIndex); !why.empty())
      return {SMGR_ERROR_STREAM_IN_USE, label(*stream) + " " + why};
  }
  outcome.id = stream->info.nIndex;
  streams_.erase(stream->info.nIndex);
  appliance_.persist();
  return outcome;
}

Outcome StreamModel::start(const ObjectSelector& selector) {
  Stream* stream = find(selector);
  if (!stream) return {SMGR_ERROR_NO_MATCHING_STREAM_FOUND, "No such stream"};
  if (stream->run != Run::kStopped) {
    return {SMGR_ERROR_STREAM_ALREADY_STARTED, label(*stream) + " is already started"};
  }
  doStart(*stream, appliance_.nowMs());
  appliance_.persist();
  // Content sources that are not running make the start a success with a warning.
  if (const std::string idle = unstartedSources(*stream); !idle.empty()) {
    return {SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE, "Not started: " + idle, stream->info.nIndex};
  }
  return {SMGR_ERROR_SUCCESS, "", stream->info.nIndex};
}

std::string StreamModel::unstartedSources(const Stream& stream) const {
  std::string idle;
  for (int i = 0; i < stream.info.nNumOfSources; ++i) {
    const SMGR_CONTENT_INFO& source = stream.info.ContentSources[i];
    auto ref = appliance_.sources().findById(static_cast<ContentKind>(source.enType), source.ID);
    if (ref && !ref->started) idle += (idle.empty() ? "" : ", ") + ref->name;
  }
  return idle;
}

SMGR_RESULT StreamModel::startAutoStartStreams() {
  SMGR_RESULT result = SMGR_ERROR_SUCCESS;
  bool started = false;
  for (auto& [id, stream] : streams_) {
    if (!stream.autoStart || stream.run != Run::kStopped) continue;
    doStart(stream, appliance_.nowMs());
    started = true;
    if (const std::string idle = unstartedSources(stream); !idle.empty()) {
      SIM_LOG_INFO("auto-start %s: not started: %s", label(stream).c_str(), idle.c_str());
      result = SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE;
    }
  }
  if (started) appliance_.persist();
  return result;
}

Outcome StreamModel::stop(const ObjectSelector& selector) {
  Stream* stream = find(selector);
  if (!stream) return {SMGR_ERROR_NO_MATCHING_STREAM_FOUND, "No such stream"};
  if (stream->run == Run::kStopped)
    return {SMGR_ERROR_STREAM_NOT_STARTED, label(*stream) + " is not started"};
  closeSegment(*stream, appliance_.nowMs());
  stream->run = Run::kStopped;
  appliance_.persist();
  return {};
}

Outcome StreamModel::pause(const ObjectSelector& selector) {
  Stream* stream = find(selector);
  if (!stream) return {SMGR_ERROR_NO_MATCHING_STREAM_FOUND, "No such stream"};
  if (stream->run == Run::kStopped)
    return {SMGR_ERROR_STREAM_NOT_STARTED, label(*stream) + " is not started"};
  if (stream->run == Run::kPaused)
    return {SMGR_ERROR_STREAM_ALREADY_PAUSED, label(*stream) + " is already paused"};
  closeSegment(*stream, appliance_.nowMs());
  stream->run = Run::kPaused;
  appliance_.persist();
  return {};
}

Outcome StreamModel::resume(const ObjectSelector& selector) {
  Stream* stream = find(selector);
  if (!stream) return {SMGR_ERROR_NO_MATCHING_STREAM_FOUND, "No such stream"};
  if (stream->run == Run::kStopped)
    return {SMGR_ERROR_STREAM_NOT_STARTED, label(*stream) + " is not started"};
  if (stream->run != Run::kPaused) return {SMGR_ERROR_STREAM_NOT_PAUSED, label(*stream) + " is not paused"};
  stream->run = Run::kRunning;
  const int64_t now = appliance_.nowMs();
  if (stream->info.Address.enType != SMGR_UNRESOLVED_HOSTNAME) {
    // Resuming continues an established connection: data flows again at once,
    // unless the connection was still being set up when the stream was paused.
    int64_t setupEnd = stream->startedAtMs + setupDelayMs(*stream);
    stream->segmentStartMs = std::max(now, setupEnd);
  }
  appliance_.persist();
  return {};
}

Outcome StreamModel::resetStats(const ObjectSelector& selector) {
  Stream* stream = find(selector);
  if (!stream) return {SMGR_ERROR_NO_MATCHING_STREAM_FOUND, "No such stream"};
  const int64_t now = appliance_.nowMs();
  stream->accumulatedMs = 0;
  if (stream->segmentStartMs) stream->segmentStartMs = std::max(*stream->segmentStartMs, now);
  return {};
}

Outcome StreamModel::open(const ObjectSelector& selector, pid_t client) {
  Stream* stream = find(selector);
  if (!stream) return {SMGR_ERROR_NO_MATCHING_STREAM_FOUND, "No such stream"};
  if (client) ++stream->opens[client];
  return {SMGR_ERROR_SUCCESS, "", stream->info.nIndex, stream->info.szName};
}

Outcome StreamModel::close(int id, pid_t client) {
  auto it = streams_.find(id);
  if (it == streams_.end()) return {SMGR_ERROR_NO_MATCHING_STREAM_FOUND, "No such stream"};
  // The library sends a close for every handle release, also for handles it
  // shares between opens: a close without an open of this client is answered 0.
  auto open = it->second.opens.find(client);
  if (open != it->second.opens.end() && --open->second <= 0) it->second.opens.erase(open);
  return {};
}

int StreamModel::openCount(int id) const {
  auto it = streams_.find(id);
  int count = 0;
  if (it != streams_.end()) {
    for (const auto& [client, opens] : it->second.opens) count += opens;
  }
  return count;
}

int StreamModel::dropClient(pid_t client) {
  int dropped = 0;
  for (auto& [id, stream] : streams_) {
    auto open = stream.opens.find(client);
    if (open == stream.opens.end()) continue;
    dropped += open->second;
    stream.opens.erase(open);
  }
  return dropped;
}

SMGR_RESULT StreamModel::info(const ObjectSelector& selector, SMGR_STREAM_INFO* info) {
  Stream* stream = find(selector);
  if (!stream) return SMGR_ERROR_NO_MATCHING_STREAM_FOUND;
  *info = stream->info;
  return SMGR_ERROR_SUCCESS;
}

std::vector<SMGR_STREAM_INFO> StreamModel::list() {
  std::vector<SMGR_STREAM_INFO> out;
  out.reserve(streams_.size());
  for (auto& [id, stream] : streams_) out.push_back(stream.info);
  return out;
}

bool StreamModel::usesStillImage(const std::string& baseName) const {
  for (const auto& [id, stream] : streams_) {
    if (baseName == stream.info.szStillImageFName) return true;
  }
  return false;
}

int StreamModel::stateOf(int id) {
  auto it = streams_.find(id);
  return it == streams_.end() ? -1 : reportedState(it->second, appliance_.nowMs());
}

SMGR_RESULT StreamModel::stats(const ObjectSelector& selector, SMGR_STREAM_STATS* stats) {
  Stream* stream = find(selector);
  if (!stream) return SMGR_ERROR_NO_MATCHING_STREAM_FOUND;
  const SMGR_STREAM_INFO& info = stream->info;
  const int64_t now = appliance_.nowMs();
  const int state = reportedState(*stream, now);
  const int64_t flow = flowMs(*stream, now);
  const bool flowing = state == SMGR_STREAM_STATE_RUNNING || state == SMGR_STREAM_STATE_PUBLISHING;

  *stats = SMGR_STREAM_STATS{};
  stats->nSize = sizeof(SMGR_STREAM_STATS);
  stats->enType = info.enType;
  stats->enState = state;
  stats->bRTCPEnabled = info.bUseRTCP;
  stats->nUpTimeInSecs =
      stream->run == Run::kStopped ? 0 : static_cast<SMGR_COUNTER>((now - stream->startedAtMs) / 1000);
  stats->SSRC = info.SSRC;
  stats->usSourcePort = info.usSourcePort ? info.usSourcePort : static_cast<uint16_t>(40000 + info.nIndex);

  const int payload =
      IsTransportStream(info.enEncapsulation) || info.enEncapsulation == SMGR_STREAM_ENCAPS_QUICKTIME
          ? kTsPayloadBytes
          : info.IpMTU - 40;
  stats->nMaxPacketPayload = payload;
  stats->nBitRateInKbps = flowing ? stream->bitRateKbps : 0;
  const uint64_t bytes = static_cast<uint64_t>(stream->bitRateKbps) * static_cast<uint64_t>(flow) / 8;
  const uint64_t packets = bytes / static_cast<uint64_t>(payload);
  SMGR_SENDER_STREAM_STATS& sender = stats->Counters.Sender;
  sender.nTxOkPackets = packets;
  sender.nTxOkBytes = packets * static_cast<uint64_t>(payload);

  if (info.bUseRTCP) {
    const uint64_t reports = static_cast<uint64_t>(flow) / 5000;
    stats->RTCP.nTxOKPackets = reports;
    stats->RTCP.nTxOKBytes = reports * 52;
    stats->RTCP.nRxOKPackets = reports;
    stats->RTCP.nRxOKBytes = reports * 32;
    stats->RTCP.nReporters = flowing ? 1 : 0;
  }

  if (info.enEncapsulation == SMGR_STREAM_ENCAPS_TS_SRT) {
    const SMGR_SRT_CFG& srt = info.EncapSpecCfg.SRT;
    SMGR_STREAM_SRT_STATS& conn = stats->EncapSpecStats.SRT.Conn;
    const uint64_t resent = packets / 1000;
    conn.Dir.Tx.nSentKbps = flowing ? static_cast<SMGR_COUNTER>(stream->bitRateKbps) : 0;
    conn.Dir.Tx.nSentPkts = packets + resent;
    conn.Dir.Tx.nSentBytes = (packets + resent) * static_cast<uint64_t>(payload);
    conn.Dir.Tx.nResentPkts = resent;
    conn.Dir.Tx.nResentBytes = resent * static_cast<uint64_t>(payload);
    conn.nLostPkts = resent / 2;
    conn.nXmitAckPkts = static_cast<uint64_t>(flow) / 10;
    conn.nXmitNakPkts = resent / 2;
    conn.iMSS = 1500;
    conn.iLatency = srt.nLatencyInMS;
    conn.iMaxBw = srt.nMaxBwInKbps > 0 ? srt.nMaxBwInKbps : -1;
    conn.iAvailBw = flowing ? 100000 - stream->bitRateKbps : 0;
    conn.iKeyState = info.bEncrypted ? 2 : 0;
    conn.iKeyLength = info.bEncrypted ? 16 : 0;
    conn.iRTT = flowing ? 12 : 0;
    conn.iBufPkts = flowing ? 4 : 0;
    conn.iBufBytes = conn.iBufPkts * payload;
    conn.iBufTimespan = flowing ? srt.nLatencyInMS / 4 : 0;
    conn.iRemotePort = srt.enMode == SMGR_SRT_MODE_SERVER ? 0 : info.usPort;
    conn.iLocalPort = srt.enMode == SMGR_SRT_MODE_SERVER ? info.usPort : stats->usSourcePort;
    conn.iVersion = kSrtVersion;
    conn.iPeerVersion = flowing ? kSrtVersion : 0;
    conn.RemoteAddress = info.Address;
    conn.enLinkRedundancyMode = srt.enLinkRedundancyMode;
    conn.enState = state;
    conn.LocalAddress.enType = SMGR_IPV4_ADDRESS;
    const BYTE local[4] = {192, 0, 2, 10};
    memcpy(conn.LocalAddress.acAddress, local, sizeof local);

    const bool redundant = srt.enLinkRedundancyMode == SMGR_SRT_REDUNDANCY_ACTIVE_ACTIVE ||
                           srt.enLinkRedundancyMode == SMGR_SRT_REDUNDANCY_ACTIVE_BACKUP;
    stats->EncapSpecStats.SRT.nLinks = redundant ? 2 : 1;
    stats->EncapSpecStats.SRT.Link[0] = conn;
    if (redundant) {
      SMGR_STREAM_SRT_STATS& second = stats->EncapSpecStats.SRT.Link[1];
      second = conn;
      second.RemoteAddress = srt.SecAddress;
      second.iRemotePort = srt.usSecPort;
      if (srt.enLinkRedundancyMode == SMGR_SRT_REDUNDANCY_ACTIVE_BACKUP) {
        // The backup link only keeps its connection alive.
        second.Dir.Tx = {};
        second.nLostPkts = second.nXmitNakPkts = 0;
      }
    }
  }
  return SMGR_ERROR_SUCCESS;
}

}  // namespace sim
