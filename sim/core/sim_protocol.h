// The wire protocol as the simulator sees it: the shared protocol and result
// headers plus the offsets of the generic response head, and the catalogue of
// request numbers (to tell an unmodelled request from garbage).
#pragma once

#include <cstddef>

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

// True when wType is a request of the message catalogue (even or odd by block),
// so that a response type (wType + 1) exists for it.
bool IsCataloguedRequest(unsigned wType);

}  // namespace sim
