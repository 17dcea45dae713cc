// Settings file reader: sections, blanks, comments, CRLF, missing pieces, number
// forms; and the appliance personality from the environment or the settings file.
#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "test_env.h"
#include "util_cfgfile.h"

namespace {

using smgr::test::ScopedEnv;
using smgr::test::ScopedSettingsFile;
using smgr::test::TempFile;

constexpr int kDefault = -777;

struct Lookup {
  BOOL bFound;
  int nValue;
};

Lookup lookup(const TempFile& file, const char* szSection, const char* szKey) {
  Lookup result{FALSE, 0};
  result.bFound = CfgFile_GetIntValue(file.path().c_str(), szSection, szKey, &result.nValue, kDefault);
  return result;
}

TEST(IniReaderTest, ReadsKeyOfNamedSectionOnly) {
  TempFile file(
      "[Other]\nResponseTimeout=1\n"
      "[API Library]\nResponseTimeout=2500\nInitIPCTimeout=3\n"
      "[Later]\nInitIPCTimeout=9\n");
  EXPECT_EQ(lookup(file, "API Library", "ResponseTimeout").nValue, 2500);
  EXPECT_EQ(lookup(file, "API Library", "InitIPCTimeout").nValue, 3);
  EXPECT_EQ(lookup(file, "Other", "ResponseTimeout").nValue, 1);
  EXPECT_TRUE(lookup(file, "API Library", "ResponseTimeout").bFound);
}

TEST(IniReaderTest, BlanksAroundNamesKeysAndValues) {
  TempFile file("  [  API Library ]  \n\t ResponseTimeout   =\t 1200  \n");
  Lookup result = lookup(file, "API Library", "ResponseTimeout");
  EXPECT_TRUE(result.bFound);
  EXPECT_EQ(result.nValue, 1200);
}

TEST(IniReaderTest, SectionAndKeyNamesIgnoreCase) {
  TempFile file("[api library]\nresponsetimeout=42\n");
  EXPECT_EQ(lookup(file, "API Library", "ResponseTimeout").nValue, 42);
}

TEST(IniReaderTest, CommentsWholeLineAndTrailing) {
  TempFile file("; leading comment\n# another\n[S]\n;Key=1\n#Key=2\nKey = 3 ; trailing\nOther=4# tight\n");
  EXPECT_EQ(lookup(file, "S", "Key").nValue, 3);
  EXPECT_EQ(lookup(file, "S", "Other").nValue, 4);
}

TEST(IniReaderTest, CrlfLineEndsAndByteOrderMark) {
  TempFile file("\xEF\xBB\xBF[S]\r\nA=5\r\nB = 0x10 \r\n");
  EXPECT_EQ(lookup(file, "S", "A").nValue, 5);
  EXPECT_EQ(lookup(file, "S", "B").nValue, 16);
}

TEST(IniReaderTest, MissingFileSectionOrKeyGiveDefault) {
  TempFile file("[S]\nA=5\n");
  Lookup result = lookup(file, "T", "A");
  EXPECT_FALSE(result.bFound);
  EXPECT_EQ(result.nValue, kDefault);
  result = lookup(file, "S", "B");
  EXPECT_FALSE(result.bFound);
  EXPECT_EQ(result.nValue, kDefault);
  int nValue = 0;
  EXPECT_FALSE(CfgFile_GetIntValue("/nonexistent/dir/settings.ini", "S", "A", &nValue, 60));
  EXPECT_EQ(nValue, 60);
}

TEST(IniReaderTest, KeyBeforeAnySectionBelongsToNone) {
  TempFile file("A=1\n[S]\nB=2\n");
  EXPECT_FALSE(lookup(file, "S", "A").bFound);
  EXPECT_FALSE(lookup(file, "", "A").bFound);
}

TEST(IniReaderTest, NumberForms) {
  TempFile file("[N]\nneg=-12\nplus=+7\nhex=0x7FfFfFfF\nneghex=-0x10\nmin=-2147483648\nleadzero=010\n");
  EXPECT_EQ(lookup(file, "N", "neg").nValue, -12);
  EXPECT_EQ(lookup(file, "N", "plus").nValue, 7);
  EXPECT_EQ(lookup(file, "N", "hex").nValue, INT_MAX);
  EXPECT_EQ(lookup(file, "N", "neghex").nValue, -16);
  EXPECT_EQ(lookup(file, "N", "min").nValue, INT_MIN);
  EXPECT_EQ(lookup(file, "N", "leadzero").nValue, 10);  // decimal, not octal
}

TEST(IniReaderTest, MalformedNumbersGiveDefault) {
  TempFile file(
      "[N]\nempty=\nword=ten\ntrailing=12ms\nspaceinside=1 2\nhexonly=0x\nbadhex=0xZZ\n"
      "toobig=2147483648\ntoosmall=-2147483649\nhuge=0x100000000\nsigns=--1\nnoequals\n");
  for (const char* szKey : {"empty", "word", "trailing", "spaceinside", "hexonly", "badhex", "toobig",
                            "toosmall", "huge", "signs", "noequals"}) {
    Lookup result = lookup(file, "N", szKey);
    EXPECT_FALSE(result.bFound) << szKey;
    EXPECT_EQ(result.nValue, kDefault) << szKey;
  }
}

TEST(IniReaderTest, LastOccurrenceWinsAcrossRepeatedSections) {
  TempFile file("[S]\nA=1\n[T]\nA=2\n[S]\nA=3\n");
  EXPECT_EQ(lookup(file, "S", "A").nValue, 3);
}

TEST(IniReaderTest, StringValues) {
  TempFile file("[System]\nPersonality =  2110 ; the device kind\n");
  char acValue[8];
  EXPECT_TRUE(
      CfgFile_GetStringValue(file.path().c_str(), "System", "Personality", acValue, sizeof(acValue), "x"));
  EXPECT_STREQ(acValue, "2110");
  EXPECT_FALSE(
      CfgFile_GetStringValue(file.path().c_str(), "System", "Missing", acValue, sizeof(acValue), "dflt"));
  EXPECT_STREQ(acValue, "dflt");
  EXPECT_TRUE(CfgFile_GetStringValue(file.path().c_str(), "System", "Personality", acValue, 3, nullptr));
  EXPECT_STREQ(acValue, "21");
}

TEST(SettingsFileTest, EnvironmentOverridesDefault) {
  {
    ScopedEnv env("SESSMGR_SETTINGS_FILE", std::nullopt);
    EXPECT_STREQ(GetSettingsFileName(), "/etc/qelos.ini");
  }
  ScopedEnv env("SESSMGR_SETTINGS_FILE", "/tmp/elsewhere.ini");
  EXPECT_STREQ(GetSettingsFileName(), "/tmp/elsewhere.ini");
}

TEST(PersonalityTest, FromEnvironmentCaseInsensitive) {
  ScopedSettingsFile settings("[System]\nPersonality=SDI\n");
  {
    ScopedEnv env("SESSMGR_PERSONALITY", "2110");
    EXPECT_EQ(GetSystemPersonality(), VDR2_PERSONALITY_2110);
  }
  ScopedEnv env("SESSMGR_PERSONALITY", "sdi");
  EXPECT_EQ(GetSystemPersonality(), VDR2_PERSONALITY_SDI);
}

TEST(PersonalityTest, FromSettingsFileAsTextOrNumber) {
  ScopedEnv env("SESSMGR_PERSONALITY", std::nullopt);
  {
    ScopedSettingsFile settings("[system]\npersonality = 2110\n");
    EXPECT_EQ(GetSystemPersonality(), VDR2_PERSONALITY_2110);
  }
  {
    ScopedSettingsFile settings("[System]\nPersonality=1\n");
    EXPECT_EQ(GetSystemPersonality(), VDR2_PERSONALITY_2110);
  }
  {
    ScopedSettingsFile settings("[System]\nPersonality=Sdi\n");
    EXPECT_EQ(GetSystemPersonality(), VDR2_PERSONALITY_SDI);
  }
}

TEST(PersonalityTest, DefaultsToSdi) {
  ScopedEnv env("SESSMGR_PERSONALITY", "bogus");  // unknown values are ignored
  {
    ScopedSettingsFile settings("[System]\nPersonality=analog\n");
    EXPECT_EQ(GetSystemPersonality(), VDR2_PERSONALITY_SDI);
  }
  ScopedSettingsFile settings("[Other]\nPersonality=2110\n");
  EXPECT_EQ(GetSystemPersonality(), VDR2_PERSONALITY_SDI);
}

TEST(PersonalityTest, UnknownEnvironmentValueFallsBackToFile) {
  ScopedEnv env("SESSMGR_PERSONALITY", "bogus");
  ScopedSettingsFile settings("[System]\nPersonality=2110\n");
  EXPECT_EQ(GetSystemPersonality(), VDR2_PERSONALITY_2110);
}

}  // namespace
