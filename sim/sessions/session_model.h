// The session model of the simulated appliance: named groups of up to three
// streams, started and stopped together and announced on a multicast address.
// Pure model code over the appliance clock; member streams are read from the
// stream model (and started or stopped through it, never changed otherwise).
#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <vector>

#include "appliance.h"
#include "objects.h"
#include "sim_protocol.h"

namespace sim {

class SessionModel {
 public:
  static constexpr int kMaxSessionId = 1024;
  static constexpr int64_t kAnnouncePeriodMs = 5000;
  static constexpr uint64_t kAnnouncementBytes = 320;

  // Installs the stream family's delete guard for member streams.
  explicit SessionModel(Appliance& appliance);

  // Create: cfg as received, members the three wire entries.
  Outcome create(const SMGR_SESSION_CFG& cfg, const SMGRPROT_OBJECT_SELECTOR* members);
  Outcome remove(const ObjectSelector& selector);
  Outcome start(const ObjectSelector& selector);
  Outcome stop(const ObjectSelector& selector);
  Outcome close(int id);
  SMGR_RESULT info(const ObjectSelector& selector, SMGR_SESSION_INFO* info);
  SMGR_RESULT stats(const ObjectSelector& selector, SMGR_SESSION_STATS* stats);
  std::vector<SMGR_SESSION_INFO> list();

  // The session a stream belongs to, 0 for none.
  int sessionOfStream(int streamId) const;

  nlohmann::json save() const;
  void load(const nlohmann::json& section);

 private:
  struct Session {
    SMGR_SESSION_INFO info{};
    std::vector<int> members;  // stream IDs
    bool started = false;
    int64_t startedAtMs = 0;
    uint64_t sentBefore = 0;  // announcements of earlier runs
  };

  Session* find(const ObjectSelector& selector);
  SMGR_RESULT resolveMembers(const SMGR_SESSION_CFG& cfg, const SMGRPROT_OBJECT_SELECTOR* wire,
                             std::vector<int>* members);
  uint64_t announcements(const Session& session, int64_t now) const;
  int allocateId() const;

  Appliance& appliance_;
  std::map<int, Session> sessions_;
};

}  // namespace sim
