// The message catalogue, taken from the wire headers at build time
// (protocol_catalogue.inc): which types are requests and what answers them.
#include "sim_protocol.h"

#include <map>
#include <string>

namespace sim {
namespace {

constexpr ProtocolMessage kMessages[] = {
#define SMGR_CATALOGUE_MESSAGE(name) {#name, name},
#define SMGR_CATALOGUE_RECORD(name)
#include "protocol_catalogue.inc"
#undef SMGR_CATALOGUE_MESSAGE
#undef SMGR_CATALOGUE_RECORD
};

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// Request type -> response type: <NAME>_REQ is answered by <NAME>_RSP (the
// _LAST_REQ markers are never sent).
const std::map<unsigned, unsigned>& Responses() {
  static const std::map<unsigned, unsigned> responses = [] {
    std::map<std::string_view, unsigned> byName;
    for (const ProtocolMessage& message : kMessages) byName.emplace(message.name, message.type);
    std::map<unsigned, unsigned> out;
    for (const ProtocolMessage& message : kMessages) {
      if (!EndsWith(message.name, "_REQ") || EndsWith(message.name, "_LAST_REQ")) continue;
      std::string response(message.name.substr(0, message.name.size() - 4));
      auto it = byName.find(response + "_RSP");
      if (it != byName.end()) out.emplace(message.type, it->second);
    }
    return out;
  }();
  return responses;
}

}  // namespace

std::span<const ProtocolMessage> ProtocolMessages() { return kMessages; }

unsigned ResponseTypeOf(unsigned request) {
  auto it = Responses().find(request);
  return it == Responses().end() ? 0 : it->second;
}

bool IsCataloguedRequest(unsigned wType) { return ResponseTypeOf(wType) != 0; }

}  // namespace sim
