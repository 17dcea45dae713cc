// Stream texts that are formatted rather than looked up: the SRT version and
// the caller and debug forms of SMGR_IP_ADDRESS by address kind.
#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstring>

#include "stream_internal.h"

namespace {

SMGR_IP_ADDRESS Address(int enType, const char* szIPv4, const char* szHost = "") {
  SMGR_IP_ADDRESS address{};
  address.enType = enType;
  if (szIPv4 != nullptr) inet_pton(AF_INET, szIPv4, address.acAddress);
  std::strcpy(address.szHostName, szHost);
  return address;
}

TEST(StreamTexts, SrtVersionIsThreeBytes) {
  char sz[16];
  EXPECT_STREQ(SessMgr_GetSRTVersionString(66306, sz, sizeof(sz)), "1.3.2");
  EXPECT_STREQ(SessMgr_GetSRTVersionString(0x7F0102FF, sz, 6), "1.2.2");
}

TEST(StreamTexts, AddressCallerAndDebugForms) {
  char sz[128];
  SMGR_IP_ADDRESS named = Address(SMGR_IPV4_HOSTNAME, "10.0.0.5", "cam.local");
  EXPECT_STREQ(SessMgr_GetIPAddressString(&named, sz, sizeof(sz)), "\"cam.local\":10.0.0.5");
  EXPECT_STREQ(GetIPAddressDebugString(&named, sz, sizeof(sz)), "SMGR_IPV4_HOSTNAME \"cam.local\":10.0.0.5");
  EXPECT_STREQ(SessMgr_GetIPAddressString(&named, sz, 6), "\"cam.");
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
  EXPECT_STREQ(GetIPAddressDebugString(&bogus, sz, sizeof(sz)), "INVALID");
  // Deliberately no IPv6 row among the kind names.
  EXPECT_STREQ(_GetIPAddressTypeString(SMGR_IPV6_ADDRESS, sz, sizeof(sz)), "Invalid (1)");
}

TEST(StreamTexts, HostNameWithoutTerminatorStaysInItsField) {
  SMGR_IP_ADDRESS address = Address(SMGR_URL, nullptr);
  std::memset(address.szHostName, 'h', sizeof(address.szHostName));
  char sz[600];
  SessMgr_GetIPAddressString(&address, sz, sizeof(sz));
  EXPECT_EQ(std::strlen(sz), 511u + 2u);
}

}  // namespace
