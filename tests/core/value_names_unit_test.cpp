// The value-name mechanism every Get...String operation is built on, on a
// table of its own: the three unknown-value forms, truncation, the checked
// generation's bad-buffer answer and when calls are traced. The operation
// table sweeps each family's operations for the buffer rules.
#include <gtest/gtest.h>

#include "library_channel.h"
#include "trace_capture.h"
#include "value_names.h"

namespace {

using namespace smgr;

constexpr ValueName kColours[] = {{-1, "Auto"}, {0, "Red"}, {7, "Seven colours"}};

TEST(ValueNames, KnownValuesUnknownFormsAndTruncation) {
  char sz[32];
  const auto bare = MakeValueNameTable("Bare", kColours, NameGeneration::Plain, UnknownValueForm::Bare);
  const auto withValue =
      MakeValueNameTable("WithValue", kColours, NameGeneration::Plain, UnknownValueForm::WithValue);
  const auto described =
      MakeValueNameTable("Described", kColours, NameGeneration::Plain, UnknownValueForm::Described);
  EXPECT_STREQ(NameOfValue(bare, -1, sz, sizeof(sz)), "Auto");
  EXPECT_STREQ(NameOfValue(bare, 7, sz, 6), "Seven");
  EXPECT_STREQ(NameOfValue(bare, 1, sz, sizeof(sz)), "(Invalid)");
  EXPECT_STREQ(NameOfValue(withValue, -5, sz, sizeof(sz)), "(Invalid:-5)");
  EXPECT_STREQ(NameOfValue(described, 6, sz, sizeof(sz)), "Invalid (6)");
  EXPECT_EQ(NameOfValue(bare, 0, nullptr, 8), nullptr) << "the plain generation writes nothing";
  const auto checked =
      MakeValueNameTable("Checked", kColours, NameGeneration::Checked, UnknownValueForm::Bare);
  util::SetAssertAbortEnabled(false);
  EXPECT_STREQ(NameOfValue(checked, 0, nullptr, 8), "Invalid input buffer");
  util::SetAssertAbortEnabled(true);
}

TEST(ValueNames, CallsTraceByTheTablesRuleAndTheSwitch) {
  test::AttachLibraryChannel();
  const BOOL bSaved = g_bDoStringAPITrace;
  char sz[16];
  for (BOOL bSwitch : {FALSE, TRUE}) {
    g_bDoStringAPITrace = bSwitch;
    for (NameCallTrace rule : {NameCallTrace::WhileSwitchOn, NameCallTrace::AtLevel6, NameCallTrace::Never}) {
      test::TraceCapture capture(6);
      NameOfValue(MakeValueNameTable("Traced", kColours, NameGeneration::Plain, UnknownValueForm::Bare, rule),
                  0, sz, sizeof(sz));
      const bool bExpected =
          rule == NameCallTrace::AtLevel6 || (rule == NameCallTrace::WhileSwitchOn && bSwitch);
      EXPECT_EQ(capture.hasFragment("Called (value=0"), bExpected) << bSwitch << static_cast<int>(rule);
      EXPECT_EQ(capture.hasFragment("Done (returning 0x"), bExpected);
    }
  }
  g_bDoStringAPITrace = bSaved;
}

}  // namespace
