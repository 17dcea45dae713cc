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

TEST(IniReaderTest, BlanksCaseCommentsCrlfAndByteOrderMark) {
  TempFile file(
      "\xEF\xBB\xBF; leading comment\r\n# another\n  [  api library ]  \n\t responsetimeout   =\t 1200  \n"
      ";Key=1\n#Key=2\nKey = 3 ; trailing\r\nOther=4# tight\n");
  EXPECT_EQ(lookup(file, "API Library", "ResponseTimeout").nValue, 1200);
  EXPECT_EQ(lookup(file, "API Library", "Key").nValue, 3);
  EXPECT_EQ(lookup(file, "API Library", "Other").nValue, 4);
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
  TempFile before("A=1\n[S]\nB=2\n");
  EXPECT_FALSE(lookup(before, "S", "A").bFound) << "a key before any section belongs to none";
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

// The environment first (any case), then key Personality of [System] as text or
// number, else SDI; unknown values are ignored at either place.
TEST(PersonalityTest, EnvironmentThenSettingsFileThenSdi) {
  struct Case {
    std::optional<std::string> env;
    const char* szSettings;
    int expected;
  };
  const Case cases[] = {
      {"2110", "[System]\nPersonality=SDI\n", VDR2_PERSONALITY_2110},
      {"sdi", "[System]\nPersonality=2110\n", VDR2_PERSONALITY_SDI},
      {std::nullopt, "[system]\npersonality = 2110\n", VDR2_PERSONALITY_2110},
      {std::nullopt, "[System]\nPersonality=1\n", VDR2_PERSONALITY_2110},
      {"bogus", "[System]\nPersonality=2110\n", VDR2_PERSONALITY_2110},
      {"bogus", "[System]\nPersonality=analog\n", VDR2_PERSONALITY_SDI},
      {std::nullopt, "[Other]\nPersonality=2110\n", VDR2_PERSONALITY_SDI},
  };
  for (const Case& c : cases) {
    ScopedEnv env("SESSMGR_PERSONALITY", c.env);
    ScopedSettingsFile settings(c.szSettings);
    EXPECT_EQ(GetSystemPersonality(), c.expected) << c.env.value_or("(unset)") << " / " << c.szSettings;
  }
}

}  // namespace
