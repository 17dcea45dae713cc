// Every handler row of every family against the wire headers, the one source
// of truth: the request is a <NAME>_REQ of include/sessmgr/smgrprot_*.h, the
// response its <NAME>_RSP, and the sizes those of SMGRPROT_MSG_<NAME>_REQ/_RSP.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "dispatch.h"
#include "smgr_protocol.h"

namespace sim::test {
namespace {

std::map<std::string, size_t> RecordSizes() {
  std::map<std::string, size_t> sizes;
#define SMGR_CATALOGUE_MESSAGE(name)
#define SMGR_CATALOGUE_RECORD(name) sizes[#name] = sizeof(name);
#include "protocol_catalogue.inc"
#undef SMGR_CATALOGUE_MESSAGE
#undef SMGR_CATALOGUE_RECORD
  return sizes;
}

// "STREAM_CREATE" for 500: the name of a request type without prefix and suffix.
std::string RequestName(unsigned type) {
  for (const ProtocolMessage& message : ProtocolMessages()) {
    const std::string name(message.name);
    if (message.type == type && name.ends_with("_REQ") && !name.ends_with("_LAST_REQ"))
      return name.substr(9, name.size() - 13);
  }
  return {};
}

TEST(ProtocolCatalogueTest, EveryHandlerRowMatchesTheWireHeaders) {
  const std::map<std::string, size_t> sizes = RecordSizes();
  ASSERT_GT(HandlerRegistry::Global().size(), 0u);
  for (const auto& [type, entry] : HandlerRegistry::Global().entries()) {
    SCOPED_TRACE(std::string(entry.name) + " (" + std::to_string(type) + ")");
    const std::string name = RequestName(type);
    EXPECT_FALSE(name.empty()) << "not a request of the wire headers";
    if (name.empty()) continue;
    EXPECT_EQ(entry.response, ResponseTypeOf(type)) << "the response is SMGRPROT_" << name << "_RSP";
    auto request = sizes.find("SMGRPROT_MSG_" + name + "_REQ");
    EXPECT_NE(request, sizes.end()) << "no record SMGRPROT_MSG_" << name << "_REQ";
    if (request == sizes.end()) continue;
    EXPECT_EQ(entry.requestSize, request->second);
    if (!entry.response) continue;
    auto response = sizes.find("SMGRPROT_MSG_" + name + "_RSP");
    EXPECT_NE(response, sizes.end()) << "no record SMGRPROT_MSG_" << name << "_RSP";
    if (response == sizes.end()) continue;
    // A paged enumeration's reply starts as its head; its record declares one element.
    const bool pagedHead =
        entry.responseSize == SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET && response->second > entry.responseSize;
    EXPECT_TRUE(entry.responseSize == response->second || pagedHead)
        << entry.responseSize << " bytes, the record has " << response->second;
  }
}

TEST(ProtocolCatalogueTest, RequestsAreTheHeadersPairsNotTheNumberingRule) {
  EXPECT_EQ(ResponseTypeOf(SMGRPROT_MUTEX_ENUMERATE_REQ), SMGRPROT_MUTEX_ENUMERATE_RSP);  // odd request
  EXPECT_EQ(ResponseTypeOf(SMGRPROT_DEBUG_REQ), SMGRPROT_DEBUG_RSP);
  EXPECT_FALSE(IsCataloguedRequest(SMGRPROT_STREAM_LAST_REQ));
  EXPECT_FALSE(IsCataloguedRequest(SMGRPROT_SYSTEM_SHUTDOWN_REQ));  // no response
  EXPECT_FALSE(IsCataloguedRequest(SMGRPROT_STREAM_CREATE_RSP));
}

}  // namespace
}  // namespace sim::test
