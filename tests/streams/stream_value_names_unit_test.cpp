// Stream value names and address texts: the two generations' edge forms,
// truncation, the quirks the texts keep on purpose, and which calls trace.
#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "lib_state.h"
#include "library_channel.h"
#include "stream_internal.h"
#include "trace_capture.h"

namespace {

TEST(StreamValueNames, PlainGenerationUnknownForms) {
  char sz[32];
  EXPECT_STREQ(SessMgr_GetStreamTypeString(0, sz, sizeof(sz)), "(Invalid)");
  EXPECT_STREQ(SessMgr_GetStreamTypeString(3, sz, sizeof(sz)), "REC");
  EXPECT_STREQ(SessMgr_GetStreamEncapsulationString(4, sz, sizeof(sz)), "(Invalid:4)");
  EXPECT_STREQ(SessMgr_GetStreamEncapsulationString(34, sz, sizeof(sz)), "TS-SRT");
  EXPECT_STREQ(SessMgr_GetStreamContentFormatString(2, sz, sizeof(sz)), "RAW");
  EXPECT_STREQ(SessMgr_GetStreamContentFormatString(100, sz, sizeof(sz)), "RAW");
  EXPECT_STREQ(SessMgr_GetStreamContentFormatString(6, sz, sizeof(sz)), "(Invalid:6)");
  EXPECT_STREQ(SessMgr_GetStreamDataEncapsString(2, sz, sizeof(sz)), "Async-SyncAU");
  EXPECT_EQ(SessMgr_GetStreamTypeString(1, nullptr, 8), nullptr);  // nothing written
}

TEST(StreamValueNames, CheckedGenerationBufferRulesAndTruncation) {
  smgr::util::SetAssertAbortEnabled(false);
  char sz[32];
  EXPECT_STREQ(SessMgr_GetStreamStateString(3, sz, 4), "CON");
  EXPECT_STREQ(SessMgr_GetStreamStateString(1, sz, sizeof(sz)), "STREAMING");
  EXPECT_STREQ(SessMgr_GetStreamStateString(11, sz, sizeof(sz)), "(Invalid:11)");
  EXPECT_STREQ(SessMgr_GetStreamStateString(3, nullptr, 10), "Invalid input buffer");
  std::strcpy(sz, "keep");
  const char* szResult = SessMgr_GetFECTypeString(1, sz, 0);
  EXPECT_STREQ(szResult, "Invalid input buffer");
  EXPECT_NE(szResult, sz);
  EXPECT_STREQ(sz, "keep");
  EXPECT_STREQ(SessMgr_GetFECTypeString(1, sz, sizeof(sz)), "Tolvane");
  EXPECT_STREQ(SessMgr_GetSRTStreamRedundancyString(-1, sz, sizeof(sz)), "Optional");
  EXPECT_STREQ(SessMgr_GetStreamModeString(2, sz, sizeof(sz)), "Rendezvous");
  EXPECT_STREQ(SessMgr_GetMpegProFECLevelString(1, sz, sizeof(sz)), "B (Row and Column)");
  EXPECT_STREQ(SessMgr_GetSRTVersionString(66306, sz, sizeof(sz)), "1.3.2");
  EXPECT_STREQ(SessMgr_GetSRTVersionString(1, nullptr, 0), "Invalid input buffer");
  smgr::util::SetAssertAbortEnabled(true);
}

TEST(StreamValueNames, StringTraceSwitchSparesOnlyTheStreamState) {
  smgr::test::AttachLibraryChannel();
  const BOOL bSaved = g_bDoStringAPITrace;
  g_bDoStringAPITrace = FALSE;
  smgr::test::TraceCapture capture(6);
  char sz[16];
  SessMgr_GetStreamTypeString(1, sz, sizeof(sz));
  EXPECT_TRUE(capture.traces().empty());
  SessMgr_GetStreamStateString(1, sz, sizeof(sz));
  EXPECT_TRUE(capture.hasFragment("Called ("));
  EXPECT_TRUE(capture.hasFragment("Done (returning 0x"));
  capture.clear();
  g_bDoStringAPITrace = TRUE;
  SessMgr_GetStreamTypeString(1, sz, sizeof(sz));
  EXPECT_TRUE(capture.hasFragment("Called ("));
  g_bDoStringAPITrace = bSaved;
}

SMGR_IP_ADDRESS Address(int enType, const char* szIPv4, const char* szHost = "") {
  SMGR_IP_ADDRESS address{};
  address.enType = enType;
  if (szIPv4 != nullptr) inet_pton(AF_INET, szIPv4, address.acAddress);
  std::strcpy(address.szHostName, szHost);
  return address;
}

TEST(IPAddressStrings, CallerAndDebugForms) {
  char sz[128];
  SMGR_IP_ADDRESS named = Address(SMGR_IPV4_HOSTNAME, "10.0.0.5", "cam.local");
  EXPECT_STREQ(SessMgr_GetIPAddressString(&named, sz, sizeof(sz)), "\"cam.local\":10.0.0.5");
  EXPECT_STREQ(GetIPAddressDebugString(&named, sz, sizeof(sz)), "SMGR_IPV4_HOSTNAME \"cam.local\":10.0.0.5");
  SMGR_IP_ADDRESS plain = Address(SMGR_IPV4_ADDRESS, "192.168.1.2");
  EXPECT_STREQ(SessMgr_GetIPAddressString(&plain, sz, sizeof(sz)), "192.168.1.2");
  SMGR_IP_ADDRESS v6{};
  v6.enType = SMGR_IPV6_ADDRESS;
  inet_pton(AF_INET6, "fe80::1", v6.acAddress);
  EXPECT_STREQ(GetIPAddressDebugString(&v6, sz, sizeof(sz)), "SMGR_IPV6_ADDRESS fe80::1");
  SMGR_IP_ADDRESS url = Address(SMGR_URL, nullptr, "rtmp://x/y");
  EXPECT_STREQ(SessMgr_GetIPAddressString(&url, sz, sizeof(sz)), "\"rtmp://x/y\"");
  EXPECT_STREQ(GetIPAddressDebugString(&url, sz, sizeof(sz)), "\"rtmp://x/y\"");
  SMGR_IP_ADDRESS unresolved = Address(SMGR_UNRESOLVED_HOSTNAME, nullptr, "h");
  EXPECT_STREQ(SessMgr_GetIPAddressString(&unresolved, sz, sizeof(sz)), "\"h\":UNRESOLVED");
  SMGR_IP_ADDRESS any = Address(SMGR_ANY_ADDRESS, nullptr);
  EXPECT_STREQ(SessMgr_GetIPAddressString(&any, sz, sizeof(sz)), "ANY");
  EXPECT_STREQ(GetIPAddressDebugString(&any, sz, sizeof(sz)), "SMGR_ANY_ADDRESS");
  SMGR_IP_ADDRESS unknown = Address(SMGR_UNKNOWN_ADDRESS, nullptr);
  EXPECT_STREQ(SessMgr_GetIPAddressString(&unknown, sz, sizeof(sz)), "(Unknown)");
  SMGR_IP_ADDRESS bogus = Address(9, nullptr);
  EXPECT_STREQ(SessMgr_GetIPAddressString(&bogus, sz, sizeof(sz)), "INVALID");
  EXPECT_STREQ(GetIPAddressDebugString(&bogus, sz, sizeof(sz)), "INVALID");
  EXPECT_STREQ(SessMgr_GetIPAddressString(&named, sz, 6), "\"cam.");
}

TEST(IPAddressStrings, HostNameWithoutTerminatorStaysInItsField) {
  SMGR_IP_ADDRESS address = Address(SMGR_URL, nullptr);
  std::memset(address.szHostName, 'h', sizeof(address.szHostName));
  char sz[600];
  SessMgr_GetIPAddressString(&address, sz, sizeof(sz));
  EXPECT_EQ(std::strlen(sz), 511u + 2u);
}

TEST(IPAddressStrings, AddressKindNamesHaveNoIPv6Row) {
  char sz[48];
  EXPECT_STREQ(_GetIPAddressTypeString(1, sz, sizeof(sz)), "Invalid (1)");
  EXPECT_STREQ(_GetIPAddressTypeString(-1, sz, sizeof(sz)), "SMGR_UNKNOWN_ADDRESS");
  EXPECT_STREQ(_GetIPAddressTypeString(6, sz, sizeof(sz)), "SMGR_HOSTNAME_RESOLVED_AS_IPV6");
}

}  // namespace
