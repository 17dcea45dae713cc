// What every family's model shares: the selector as the daemon receives it,
// the outcome of an operation, and the paged enumeration answer (the records
// of the requested window that fit the client's messages).
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "dispatch.h"
#include "sim_protocol.h"

namespace sim {

// A selector as the daemon receives it: an ID or a name.
struct ObjectSelector {
  bool byName = false;
  int id = 0;
  std::string name;
};

// Decodes a wire selector; false for an unknown kind or an unterminated name.
bool ParseWireSelector(const SMGRPROT_OBJECT_SELECTOR& wire, ObjectSelector* selector);

// True when a fixed-size text field of a request holds its terminator.
inline bool Terminated(const char* text, size_t size) { return memchr(text, '\0', size) != nullptr; }

// Result of an operation, with the daemon's description where it gives one and
// the object it concerns.
struct Outcome {
  Outcome() = default;
  Outcome(SMGR_RESULT r, std::string text = {}, int objectId = 0, std::string objectName = {})
      : result(r), description(std::move(text)), id(objectId), name(std::move(objectName)) {}

  SMGR_RESULT result = SMGR_ERROR_SUCCESS;
  std::string description;
  int id = 0;
  std::string name;
};

// Answers a paged enumeration: Result at 16, then total, returned and element
// size, records from SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET. The window starts at
// offset and holds at most `wanted` records and what the client's messages take.
// A negative count or offset answers 2.
template <typename Record>
void AnswerPage(Context& context, Reply& reply, int32_t wanted, int32_t offset,
                const std::vector<Record>& all) {
  constexpr size_t kRecordsOffset = SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET;
  if (wanted < 0 || offset < 0) {
    reply.result(SMGR_ERROR_INVALID_PARAMETERS);
    return;
  }
  const size_t limit = context.messageLimit();
  const size_t fit = limit > kRecordsOffset ? (limit - kRecordsOffset) / sizeof(Record) : 0;
  const size_t available = static_cast<size_t>(offset) < all.size() ? all.size() - offset : 0;
  const size_t count = std::min({static_cast<size_t>(wanted), available, fit});
  reply.resize(kRecordsOffset + count * sizeof(Record));
  const DWORD head[3] = {static_cast<DWORD>(all.size()), static_cast<DWORD>(count), sizeof(Record)};
  memcpy(reply.data() + kResultOffset + sizeof(SMGR_RESULT), head, sizeof head);
  reply.result(SMGR_ERROR_SUCCESS);
  for (size_t i = 0; i < count; ++i)
    memcpy(reply.data() + kRecordsOffset + i * sizeof(Record), &all[offset + i], sizeof(Record));
}

}  // namespace sim
