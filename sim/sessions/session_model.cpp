// Session rules: unique IDs and names, members that exist and belong to no
// other session, announced members over UDP or RTP of the advert address's
// family, start and stop of the members with the session, and the
// announcement counters.
#include "session_model.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "persistence.h"
#include "stream_model.h"

namespace sim {
namespace {

constexpr BYTE kAnyAdvertAddress[4] = {239, 255, 255, 255};
constexpr uint16_t kSapPort = 9875;

bool IsAnnounceable(int encapsulation) {
  return encapsulation == SMGR_STREAM_ENCAPS_TS_UDP || encapsulation == SMGR_STREAM_ENCAPS_TS_RTP ||
         encapsulation == SMGR_STREAM_ENCAPS_DIRECT_RTP;
}

bool IsIPv6(const SMGR_IP_ADDRESS& address) {
  return address.enType == SMGR_IPV6_ADDRESS || address.enType == SMGR_HOSTNAME_RESOLVED_AS_IPV6;
}

std::string Hex(const void* data, size_t size) {
  std::string text;
  char digits[3];
  for (size_t i = 0; i < size; ++i) {
    snprintf(digits, sizeof digits, "%02x", static_cast<const BYTE*>(data)[i]);
    text += digits;
  }
  return text;
}

bool FromHex(const std::string& text, void* data, size_t size) {
  if (text.size() != size * 2) return false;
  for (size_t i = 0; i < size; ++i) {
    unsigned value = 0;
    if (sscanf(text.c_str() + 2 * i, "%2x", &value) != 1) return false;
    static_cast<BYTE*>(data)[i] = static_cast<BYTE>(value);
  }
  return true;
}

int SessionLimit(Appliance& appliance) {
  const auto& document = appliance.profile().document;
  if (document.contains("sessions") && document["sessions"].contains("session_limit"))
    return document["sessions"]["session_limit"].get<int>();
  return 8;
}

const PersistedSection kSessionsSection{
    "sessions", 60, [](Appliance& appliance) { return appliance.family<SessionModel>().save(); },
    [](Appliance& appliance, const nlohmann::json& section) {
      appliance.family<SessionModel>().load(section);
    }};

}  // namespace

SessionModel::SessionModel(Appliance& appliance) : appliance_(appliance) {
  appliance.family<StreamModel>().addDeleteGuard([this](int streamId) {
    const int session = sessionOfStream(streamId);
    return session ? "belongs to session " + std::to_string(session) + " (\"" +
                         sessions_.at(session).info.szName + "\")"
                   : std::string();
  });
}

SessionModel::Session* SessionModel::find(const ObjectSelector& selector) {
  for (auto& [id, session] : sessions_) {
    if (selector.byName ? selector.name == session.info.szName : selector.id == id) return &session;
  }
  return nullptr;
}

int SessionModel::allocateId() const {
  for (int id = 1; id <= kMaxSessionId; ++id)
    if (!sessions_.count(id)) return id;
  return 0;
}

int SessionModel::sessionOfStream(int streamId) const {
  for (const auto& [id, session] : sessions_)
    for (int member : session.members)
      if (member == streamId) return id;
  return 0;
}

SMGR_RESULT SessionModel::resolveMembers(const SMGR_SESSION_CFG& cfg, const SMGRPROT_OBJECT_SELECTOR* wire,
                                         std::vector<int>* members) {
  if (cfg.nNumOfStreams > SMGR_MAX_SESSION_STREAMS) return SMGR_ERROR_INVALID_PARAMETERS;
  const std::vector<SMGR_STREAM_INFO> streams = appliance_.family<StreamModel>().list();
  for (uint32_t i = 0; i < cfg.nNumOfStreams; ++i) {
    const int kind = cfg.Streams[i].enType;  // the wire entry carries the value only
    if (kind != SMGR_SELECTBY_OBJECT_ID && kind != SMGR_SELECTBY_OBJECT_NAME)
      return SMGR_ERROR_INVALID_PARAMETERS;
    if (kind == SMGR_SELECTBY_OBJECT_NAME && !Terminated(wire[i].Via.szName, sizeof wire[i].Via.szName))
      return SMGR_ERROR_INVALID_PARAMETERS;
    const SMGR_STREAM_INFO* found = nullptr;
    for (const auto& stream : streams) {
      if (kind == SMGR_SELECTBY_OBJECT_ID ? stream.nIndex == wire[i].Via.ID
                                          : strcmp(stream.szName, wire[i].Via.szName) == 0)
        found = &stream;
    }
    if (found == nullptr) return SMGR_ERROR_NO_MATCHING_STREAM_FOUND;
    if (sessionOfStream(found->nIndex) != 0) return SMGR_ERROR_STREAM_IN_USE;
    if (cfg.bAdvertise) {
      if (!IsAnnounceable(found->enEncapsulation)) return SMGR_ERROR_UNSUPPORTED_SAP_STREAM_PARAMETERS;
      if (IsIPv6(found->Address) != IsIPv6(cfg.AdvertAddress))
        return SMGR_ERROR_INCONSISTENT_SAP_ANNOUNCEMENT_ADDRESS_FAMILY;
    }
    members->push_back(found->nIndex);
  }
  return SMGR_ERROR_SUCCESS;
}

Outcome SessionModel::create(const SMGR_SESSION_CFG& cfg, const SMGRPROT_OBJECT_SELECTOR* wire) {
  if (cfg.nSize < sizeof(SMGR_SESSION_CFG)) return {SMGR_ERROR_INVALID_PARAMETERS, "record too short"};
  if (static_cast<int>(sessions_.size()) >= SessionLimit(appliance_))
    return {SMGR_ERROR_GENERIC_FAILURE, "session limit reached"};
  if (cfg.nIndex > kMaxSessionId) return {SMGR_ERROR_INVALID_STREAM_ID, "ID out of range"};
  if (cfg.nIndex > 0 && sessions_.count(cfg.nIndex)) return {SMGR_ERROR_ID_IN_USE, "ID in use"};
  if (!Terminated(cfg.szName, sizeof cfg.szName)) return {SMGR_ERROR_INVALID_PARAMETERS, "unterminated name"};
  for (const auto& [id, other] : sessions_)
    if (cfg.szName[0] && strcmp(other.info.szName, cfg.szName) == 0)
      return {SMGR_SAP_SESSION_NAME_IN_USE, "name in use"};
  Session session;
  if (SMGR_RESULT result = resolveMembers(cfg, wire, &session.members); result != SMGR_ERROR_SUCCESS)
    return {result, "member streams refused"};

  const int id = cfg.nIndex > 0 ? cfg.nIndex : allocateId();
  SMGR_SESSION_INFO& info = session.info;
  info.nSize = sizeof info;
  info.nIndex = id;
  if (cfg.szName[0])
    memcpy(info.szName, cfg.szName, sizeof info.szName);
  else
    snprintf(info.szName, sizeof info.szName, "Session%d", id);
  // The texts are the caller's; a missing terminator is cut at the last byte.
  memcpy(info.szDescription, cfg.szDescription, sizeof info.szDescription - 1);
  memcpy(info.szAuthor, cfg.szAuthor, sizeof info.szAuthor - 1);
  memcpy(info.szKeywords, cfg.szKeywords, sizeof info.szKeywords - 1);
  memcpy(info.szCopyright, cfg.szCopyright, sizeof info.szCopyright - 1);
  info.bAdvertise = cfg.bAdvertise ? TRUE : FALSE;
  info.CfgAdvertAddress = cfg.AdvertAddress;
  info.ActualAdvertAddress = cfg.AdvertAddress;
  info.usAdvertPort = cfg.usAdvertPort;
  if (cfg.AdvertAddress.enType == SMGR_ANY_ADDRESS) {
    info.ActualAdvertAddress = SMGR_IP_ADDRESS{SMGR_IPV4_ADDRESS, {}, {}};
    memcpy(info.ActualAdvertAddress.acAddress, kAnyAdvertAddress, sizeof kAnyAdvertAddress);
    info.usAdvertPort = kSapPort;
  }
  sessions_[id] = session;
  appliance_.persist();
  return {SMGR_ERROR_SUCCESS, {}, id, info.szName};
}

Outcome SessionModel::remove(const ObjectSelector& selector) {
  Session* session = find(selector);
  if (session == nullptr) return {SMGR_ERROR_NO_MATCHING_SESSION_FOUND, "no such session"};
  if (session->started) return {SMGR_ERROR_SESSION_IN_USE, "session started"};
  const int id = session->info.nIndex;
  sessions_.erase(id);
  appliance_.persist();
  return {SMGR_ERROR_SUCCESS, {}, id};
}

Outcome SessionModel::start(const ObjectSelector& selector) {
  Session* session = find(selector);
  if (session == nullptr) return {SMGR_ERROR_NO_MATCHING_SESSION_FOUND, "no such session"};
  if (session->started) return {SMGR_ERROR_SESSION_ALREADY_STARTED, "already started"};
  StreamModel& streams = appliance_.family<StreamModel>();
  std::vector<int> startedHere;
  for (int member : session->members) {
    if (streams.stateOf(member) != SMGR_STREAM_STATE_STOPPED) continue;
    Outcome outcome = streams.start(ObjectSelector{false, member, {}});
    if (outcome.result != SMGR_ERROR_SUCCESS && !(outcome.result & SMGR_IS_SUCCESS_WITH_WARNING)) {
      for (int undo : startedHere) streams.stop(ObjectSelector{false, undo, {}});
      return {outcome.result, "member stream " + std::to_string(member) + " did not start"};
    }
    startedHere.push_back(member);
  }
  session->started = true;
  session->startedAtMs = appliance_.nowMs();
  appliance_.persist();
  return {SMGR_ERROR_SUCCESS, {}, session->info.nIndex};
}

Outcome SessionModel::stop(const ObjectSelector& selector) {
  Session* session = find(selector);
  if (session == nullptr) return {SMGR_ERROR_NO_MATCHING_SESSION_FOUND, "no such session"};
  if (!session->started) return {SMGR_ERROR_SESSION_NOT_STARTED, "not started"};
  session->sentBefore = announcements(*session, appliance_.nowMs());
  session->started = false;
  for (int member : session->members)
    appliance_.family<StreamModel>().stop(ObjectSelector{false, member, {}});
  appliance_.persist();
  return {SMGR_ERROR_SUCCESS, {}, session->info.nIndex};
}

Outcome SessionModel::close(int id) {
  if (!sessions_.count(id)) return {SMGR_ERROR_NO_MATCHING_SESSION_FOUND, "no such session"};
  return {SMGR_ERROR_SUCCESS, {}, id};
}

uint64_t SessionModel::announcements(const Session& session, int64_t now) const {
  if (!session.started || !session.info.bAdvertise) return session.sentBefore;
  const uint64_t rounds = static_cast<uint64_t>((now - session.startedAtMs) / kAnnouncePeriodMs) + 1;
  return session.sentBefore + rounds * session.members.size();
}

SMGR_RESULT SessionModel::info(const ObjectSelector& selector, SMGR_SESSION_INFO* info) {
  Session* session = find(selector);
  if (session == nullptr) return SMGR_ERROR_NO_MATCHING_SESSION_FOUND;
  *info = session->info;
  info->nNumOfStreams = static_cast<int32_t>(session->members.size());
  for (size_t i = 0; i < session->members.size(); ++i) {
    info->Streams[i].enType = SMGR_SELECTBY_OBJECT_ID;  // members by ID, whatever they were created by
    info->Streams[i].Via.ID = session->members[i];
  }
  return SMGR_ERROR_SUCCESS;
}

SMGR_RESULT SessionModel::stats(const ObjectSelector& selector, SMGR_SESSION_STATS* stats) {
  Session* session = find(selector);
  if (session == nullptr) return SMGR_ERROR_NO_MATCHING_SESSION_FOUND;
  *stats = SMGR_SESSION_STATS{};
  stats->nSize = sizeof *stats;
  stats->bAdvertising = session->started && session->info.bAdvertise;
  stats->nTxOkPackets = announcements(*session, appliance_.nowMs());
  stats->nTxOkBytes = stats->nTxOkPackets * kAnnouncementBytes;
  return SMGR_ERROR_SUCCESS;
}

std::vector<SMGR_SESSION_INFO> SessionModel::list() {
  std::vector<SMGR_SESSION_INFO> all;
  for (auto& [id, session] : sessions_) {
    SMGR_SESSION_INFO record{};
    info(ObjectSelector{false, id, {}}, &record);
    all.push_back(record);
  }
  return all;
}

nlohmann::json SessionModel::save() const {
  nlohmann::json section = nlohmann::json::array();
  for (const auto& [id, session] : sessions_)
    section.push_back({{"info", Hex(&session.info, sizeof session.info)},
                       {"members", session.members},
                       {"started", session.started}});
  return section;
}

void SessionModel::load(const nlohmann::json& section) {
  sessions_.clear();
  if (!section.is_array()) return;
  for (const auto& entry : section) {
    Session session;
    try {  // a hand-edited file may hold anything: such an entry is skipped
      if (!entry.is_object() ||
          !FromHex(entry.value("info", std::string()), &session.info, sizeof session.info))
        continue;
      session.members = entry.value("members", std::vector<int>());
      session.started = entry.value("started", false);
    } catch (const nlohmann::json::exception&) {
      continue;
    }
    session.startedAtMs = appliance_.nowMs();
    if (session.info.nIndex > 0 && session.members.size() <= SMGR_MAX_SESSION_STREAMS)
      sessions_[session.info.nIndex] = session;
  }
}

}  // namespace sim
