// The wire protocol as the simulator sees it: the shared protocol and result
// headers plus the offsets of the generic response head, and the catalogue of
// message types read from the wire headers (to tell an unmodelled request
// from garbage and to check every family's handler rows against the headers).
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "sessmgr/sm_results.h"
#include "smgr_protocol.h"

namespace sim {

constexpr size_t kHeaderSize = sizeof(SMGRPROT_HEADER);
static_assert(kHeaderSize == 16);
// Generic response head: Result at 16, then (for most families) a 160-byte description.
constexpr size_t kResultOffset = 16;
constexpr size_t kDescriptionOffset = 20;
constexpr size_t kDescriptionSize = 160;
constexpr size_t kResultOnlyResponseSize = 20;
constexpr size_t kDescribedResponseSize = 180;

// A message type of the wire headers: its macro name and value.
struct ProtocolMessage {
  std::string_view name;
  unsigned type;
};
// Every SMGRPROT_..._REQ/_RSP/_IND of include/sessmgr/smgrprot_*.h, read at build time.
std::span<const ProtocolMessage> ProtocolMessages();
// The response type of a request type (the <NAME>_RSP of its <NAME>_REQ), 0 when it has none.
unsigned ResponseTypeOf(unsigned request);
// True when wType is a request of the message catalogue that has a response.
bool IsCataloguedRequest(unsigned wType);

}  // namespace sim
