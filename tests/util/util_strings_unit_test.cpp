// Bounded string services: nothing is written past the caller's size, results are
// always terminated; Base64 against the RFC 4648 vectors; language names.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "util_string.h"

namespace {

constexpr char kGuard = '#';

TEST(BoundedStringsTest, CopyAndPrintTruncateToSizeMinusOneAndTerminate) {
  char acBuffer[8];
  memset(acBuffer, kGuard, sizeof(acBuffer));
  EXPECT_EQ(CopyString(acBuffer, "abcdefgh", 4), acBuffer);
  EXPECT_STREQ(acBuffer, "abc");
  EXPECT_EQ(acBuffer[4], kGuard);
  CopyString(acBuffer, nullptr, 4);
  EXPECT_STREQ(acBuffer, "") << "NULL copies the empty string";

  memset(acBuffer, kGuard, sizeof(acBuffer));
  EXPECT_EQ(PrintToString(acBuffer, 5, "%d-%s", 42, "hello"), 8) << "the full length";
  EXPECT_STREQ(acBuffer, "42-h");
  EXPECT_EQ(acBuffer[5], kGuard);

  for (size_t nSize : {size_t{1}, size_t{0}}) {
    memset(acBuffer, kGuard, sizeof(acBuffer));
    CopyString(acBuffer, "abc", nSize);
    EXPECT_EQ(PrintToString(acBuffer + 4, nSize, "%s", "abc"), 3);
    EXPECT_EQ(acBuffer[0], nSize ? '\0' : kGuard);
    EXPECT_EQ(acBuffer[4], nSize ? '\0' : kGuard);
    EXPECT_EQ(acBuffer[1], kGuard);
  }
}

TEST(BoundedStringsTest, StringCatStaysWithinAndTerminated) {
  char acBuffer[10] = "abc";
  StringCat(acBuffer, "def", sizeof(acBuffer));
  EXPECT_STREQ(acBuffer, "abcdef");
  StringCat(acBuffer, "ghijkl", sizeof(acBuffer));
  EXPECT_STREQ(acBuffer, "abcdefghi");
  char acFull[5] = {'a', 'b', 'c', 'd', 'e'};  // unterminated
  StringCat(acFull, "x", sizeof(acFull));
  EXPECT_STREQ(acFull, "abcd");
  char acGuarded[3] = {'a', kGuard, kGuard};
  StringCat(acGuarded, "x", 0);
  EXPECT_EQ(acGuarded[1], kGuard);
}

TEST(BoundedStringsTest, LengthSuffixAndBaseName) {
  EXPECT_EQ(StringLength("hello", 10), 5u);
  EXPECT_EQ(StringLength("hello", 3), 3u);
  EXPECT_EQ(StringLength(nullptr, 3), 0u);
  EXPECT_TRUE(IsStringTerminatedBy("clip.mp4", ".mp4"));
  EXPECT_FALSE(IsStringTerminatedBy("clip.mp4x", ".mp4"));
  EXPECT_FALSE(IsStringTerminatedBy("mp4", ".mp4"));
  EXPECT_FALSE(IsStringTerminatedBy(nullptr, "x"));
  EXPECT_STREQ(GetBaseName("/usr/share/file.cfg"), "file.cfg");
  EXPECT_STREQ(GetBaseName("file.cfg"), "file.cfg");
  EXPECT_STREQ(GetBaseName("dir/"), "");
}

std::string Encode(const std::string& source) {
  char acBuffer[64];
  size_t nLength = 999;
  EXPECT_TRUE(Base64Encode(reinterpret_cast<const BYTE*>(source.data()), source.size(), acBuffer,
                           sizeof(acBuffer), &nLength));
  EXPECT_EQ(nLength, strlen(acBuffer));
  return acBuffer;
}

TEST(Base64Test, Rfc4648VectorsAndHighValues) {
  EXPECT_EQ(Encode(""), "");
  EXPECT_EQ(Encode("f"), "Zg==");
  EXPECT_EQ(Encode("fo"), "Zm8=");
  EXPECT_EQ(Encode("foobar"), "Zm9vYmFy");
  EXPECT_EQ(Encode("\xfb\xff\xbf"), "+/+/");
}

TEST(Base64Test, TooSmallDestinationFailsAndReportsNeededLength) {
  const BYTE abBytes[] = {'f', 'o', 'o'};
  char acBuffer[5] = {kGuard, kGuard, kGuard, kGuard, kGuard};
  size_t nLength = 0;
  EXPECT_FALSE(Base64Encode(abBytes, sizeof(abBytes), acBuffer, 4, &nLength));  // no room for the terminator
  EXPECT_EQ(nLength, 4u);
  EXPECT_EQ(acBuffer[0], '\0');
  EXPECT_TRUE(Base64Encode(abBytes, sizeof(abBytes), acBuffer, 5, &nLength));
  EXPECT_STREQ(acBuffer, "Zm9v");
}

TEST(LanguageTagTest, BothFormsAnyCaseOrNull) {
  EXPECT_STREQ(GetLanguageFromTag("fre"), "French");
  EXPECT_STREQ(GetLanguageFromTag("fra"), "French");
  EXPECT_STREQ(GetLanguageFromTag("NLD"), "Dutch");
  EXPECT_EQ(GetLanguageFromTag("xyz"), nullptr);
  EXPECT_EQ(GetLanguageFromTag(nullptr), nullptr);
}

}  // namespace
