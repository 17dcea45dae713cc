// Bounded string services: nothing is written past the caller's size, results are
// always terminated; Base64 against the RFC 4648 vectors; language names.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "util_string.h"

namespace {

constexpr char kGuard = '#';

TEST(CopyStringTest, CopiesWholeStringWhenItFits) {
  char acBuffer[8];
  EXPECT_EQ(CopyString(acBuffer, "abc", sizeof(acBuffer)), acBuffer);
  EXPECT_STREQ(acBuffer, "abc");
}

TEST(CopyStringTest, TruncatesToSizeMinusOneAndTerminates) {
  char acBuffer[6];
  memset(acBuffer, kGuard, sizeof(acBuffer));
  CopyString(acBuffer, "abcdefgh", 4);
  EXPECT_STREQ(acBuffer, "abc");
  EXPECT_EQ(acBuffer[4], kGuard);
}

TEST(CopyStringTest, SizeOneWritesOnlyTheTerminatorAndSizeZeroWritesNothing) {
  char acBuffer[4] = {kGuard, kGuard, kGuard, kGuard};
  CopyString(acBuffer, "abc", 1);
  EXPECT_EQ(acBuffer[0], '\0');
  EXPECT_EQ(acBuffer[1], kGuard);
  acBuffer[0] = kGuard;
  CopyString(acBuffer, "abc", 0);
  EXPECT_EQ(acBuffer[0], kGuard);
}

TEST(CopyStringTest, NullSourceCopiesEmptyString) {
  char acBuffer[4] = "xy";
  CopyString(acBuffer, nullptr, sizeof(acBuffer));
  EXPECT_STREQ(acBuffer, "");
}

TEST(PrintToStringTest, ReturnsFullLengthAndTruncates) {
  char acBuffer[8];
  memset(acBuffer, kGuard, sizeof(acBuffer));
  EXPECT_EQ(PrintToString(acBuffer, 5, "%d-%s", 42, "hello"), 8);
  EXPECT_STREQ(acBuffer, "42-h");
  EXPECT_EQ(acBuffer[5], kGuard);
}

TEST(PrintToStringTest, SizeOneAndZero) {
  char acBuffer[4] = {kGuard, kGuard, kGuard, kGuard};
  EXPECT_EQ(PrintToString(acBuffer, 1, "%s", "abc"), 3);
  EXPECT_EQ(acBuffer[0], '\0');
  EXPECT_EQ(acBuffer[1], kGuard);
  acBuffer[0] = kGuard;
  EXPECT_EQ(PrintToString(acBuffer, 0, "%s", "abc"), 3);
  EXPECT_EQ(acBuffer[0], kGuard);
}

TEST(StringCatTest, AppendsWithinBuffer) {
  char acBuffer[10] = "abc";
  StringCat(acBuffer, "def", sizeof(acBuffer));
  EXPECT_STREQ(acBuffer, "abcdef");
  StringCat(acBuffer, "ghijkl", sizeof(acBuffer));
  EXPECT_STREQ(acBuffer, "abcdefghi");
}

TEST(StringCatTest, FullOrUnterminatedBufferStaysTerminated) {
  char acBuffer[5] = {'a', 'b', 'c', 'd', 'e'};
  StringCat(acBuffer, "x", sizeof(acBuffer));
  EXPECT_STREQ(acBuffer, "abcd");
  StringCat(acBuffer, "x", sizeof(acBuffer));
  EXPECT_STREQ(acBuffer, "abcd");
  char acGuarded[3] = {'a', kGuard, kGuard};
  StringCat(acGuarded, "x", 0);
  EXPECT_EQ(acGuarded[1], kGuard);
}

TEST(StringLengthTest, BoundedByMax) {
  EXPECT_EQ(StringLength("hello", 10), 5u);
  EXPECT_EQ(StringLength("hello", 3), 3u);
  EXPECT_EQ(StringLength(nullptr, 3), 0u);
}

TEST(StringSuffixTest, IsStringTerminatedBy) {
  EXPECT_TRUE(IsStringTerminatedBy("clip.mp4", ".mp4"));
  EXPECT_FALSE(IsStringTerminatedBy("clip.mp4x", ".mp4"));
  EXPECT_FALSE(IsStringTerminatedBy("mp4", ".mp4"));
  EXPECT_TRUE(IsStringTerminatedBy("abc", ""));
  EXPECT_FALSE(IsStringTerminatedBy(nullptr, "x"));
}

TEST(BaseNameTest, PartAfterLastSlash) {
  EXPECT_STREQ(GetBaseName("/usr/share/file.cfg"), "file.cfg");
  EXPECT_STREQ(GetBaseName("file.cfg"), "file.cfg");
  EXPECT_STREQ(GetBaseName("dir/"), "");
  const char* szPath = "a/b";
  EXPECT_EQ(GetBaseName(szPath), szPath + 2);
}

std::string encode(const std::string& source) {
  char acBuffer[64];
  size_t nLength = 999;
  EXPECT_TRUE(Base64Encode(reinterpret_cast<const BYTE*>(source.data()), source.size(), acBuffer,
                           sizeof(acBuffer), &nLength));
  EXPECT_EQ(nLength, strlen(acBuffer));
  return acBuffer;
}

TEST(Base64Test, Rfc4648Vectors) {
  EXPECT_EQ(encode(""), "");
  EXPECT_EQ(encode("f"), "Zg==");
  EXPECT_EQ(encode("fo"), "Zm8=");
  EXPECT_EQ(encode("foo"), "Zm9v");
  EXPECT_EQ(encode("foob"), "Zm9vYg==");
  EXPECT_EQ(encode("fooba"), "Zm9vYmE=");
  EXPECT_EQ(encode("foobar"), "Zm9vYmFy");
}

TEST(Base64Test, UsesPlusAndSlashForHighValues) {
  const BYTE abBytes[] = {0xfb, 0xff, 0xbf};
  char acBuffer[8];
  ASSERT_TRUE(Base64Encode(abBytes, sizeof(abBytes), acBuffer, sizeof(acBuffer), nullptr));
  EXPECT_STREQ(acBuffer, "+/+/");
}

TEST(Base64Test, TooSmallDestinationFailsAndReportsNeededLength) {
  const BYTE abBytes[] = {'f', 'o', 'o'};
  char acBuffer[4] = {kGuard, kGuard, kGuard, kGuard};
  size_t nLength = 0;
  EXPECT_FALSE(Base64Encode(abBytes, sizeof(abBytes), acBuffer, 4, &nLength));  // no room for the terminator
  EXPECT_EQ(nLength, 4u);
  EXPECT_EQ(acBuffer[0], '\0');
  char acExact[5];
  EXPECT_TRUE(Base64Encode(abBytes, sizeof(abBytes), acExact, sizeof(acExact), &nLength));
  EXPECT_STREQ(acExact, "Zm9v");
}

TEST(LanguageTagTest, KnownTagsBothForms) {
  EXPECT_STREQ(GetLanguageFromTag("fre"), "French");
  EXPECT_STREQ(GetLanguageFromTag("fra"), "French");
  EXPECT_STREQ(GetLanguageFromTag("NLD"), "Dutch");
}

TEST(LanguageTagTest, UnknownOrMissingTagGivesNull) {
  EXPECT_EQ(GetLanguageFromTag("xyz"), nullptr);
  EXPECT_EQ(GetLanguageFromTag(""), nullptr);
  EXPECT_EQ(GetLanguageFromTag(nullptr), nullptr);
}

}  // namespace
