// Address text forms and host-name resolution without external DNS: numeric
// names, localhost, and a reserved .invalid name that must fail at once.
#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>

#include "util_netaddr.h"

namespace {

TEST(AddressFormattingTest, Ipv4Ipv6AndUnknownFamilies) {
  const BYTE abAddress[4] = {192, 168, 1, 20};
  char acText[IP_ADDRESS_STRING_SIZE];
  EXPECT_EQ(GetIPv4AddressString(abAddress, acText, sizeof(acText)), acText);
  EXPECT_STREQ(acText, "192.168.1.20");
  const BYTE abDoc[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x12, 0x34};
  EXPECT_STREQ(GetIPAddressString(abDoc, AF_INET6, acText, sizeof(acText)), "2001:db8::1234");
  // The longest text (IPv4-mapped with a full dotted part) fits 46 bytes exactly.
  const BYTE abMapped[16] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff, 255, 255, 255, 255};
  EXPECT_STREQ(GetIPv6AddressString(abMapped, acText, sizeof(acText)), "::ffff:255.255.255.255");
  EXPECT_STREQ(GetIPAddressString(abDoc, 99, acText, sizeof(acText)), "(Invalid)");
}

TEST(AddressFormattingTest, TooSmallBufferFailsWithoutCuttingTheAddress) {
  const BYTE abAddress[4] = {10, 0, 0, 5};
  char acText[9];
  memset(acText, '#', sizeof(acText));
  EXPECT_EQ(GetIPv4AddressString(abAddress, acText, 8), nullptr);  // "10.0.0.5" needs 9
  EXPECT_STREQ(acText, "");
  EXPECT_STREQ(GetIPv4AddressString(abAddress, acText, 9), "10.0.0.5");
  EXPECT_EQ(GetIPv4AddressString(nullptr, acText, sizeof(acText)), nullptr);
  EXPECT_EQ(GetIPv4AddressString(abAddress, acText, 0), nullptr);
}

struct Resolved {
  BOOL bOk;
  int nFamily;
  char acText[IP_ADDRESS_STRING_SIZE];
};

Resolved resolve(const char* szName) {
  Resolved result{};
  BYTE abAddress[16];
  memset(abAddress, 0xee, sizeof(abAddress));
  result.nFamily = -1;
  result.bOk = GetHostIPAddress(szName, abAddress, sizeof(abAddress), &result.nFamily);
  if (result.bOk) GetIPAddressString(abAddress, result.nFamily, result.acText, sizeof(result.acText));
  if (result.bOk && result.nFamily == AF_INET) {
    for (int i = 4; i < 16; ++i) EXPECT_EQ(abAddress[i], 0) << "byte " << i;
  }
  return result;
}

TEST(HostResolutionTest, NumericNamesAndLocalhostPreferringIpv4) {
  for (const char* szName : {"127.0.0.1", "::1", "localhost"}) {
    Resolved resolved = resolve(szName);
    ASSERT_TRUE(resolved.bOk) << szName;
    EXPECT_EQ(resolved.nFamily, szName[0] == ':' ? AF_INET6 : AF_INET) << szName;
    EXPECT_STREQ(resolved.acText, szName[0] == ':' ? "::1" : "127.0.0.1");
  }
}

TEST(HostResolutionTest, ReservedInvalidNamesFailAtOnce) {
  auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(resolve("no-such-host.invalid").bOk);
  EXPECT_FALSE(resolve("camera.INVALID.").bOk);
  EXPECT_FALSE(resolve("invalid").bOk);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST(HostResolutionTest, BadArguments) {
  BYTE abAddress[16];
  int nFamily = 0;
  EXPECT_FALSE(GetHostIPAddress("", abAddress, sizeof(abAddress), &nFamily));
  EXPECT_FALSE(GetHostIPAddress(nullptr, abAddress, sizeof(abAddress), &nFamily));
  EXPECT_FALSE(GetHostIPAddress("127.0.0.1", nullptr, sizeof(abAddress), &nFamily));
  // An IPv6 answer needs 16 bytes.
  EXPECT_FALSE(GetHostIPAddress("::1", abAddress, 4, &nFamily));
  EXPECT_TRUE(GetHostIPAddress("127.0.0.1", abAddress, 4, nullptr));
}

}  // namespace
