// File-name completion of the library (standard folder and extension, length
// limits, path checks with their error codes and traces) and the selector text.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "lib_trace.h"
#include "sessmgr/sm_utils.h"
#include "trace_capture.h"
#include "util_string.h"

namespace {

using smgr::test::TraceCapture;

constexpr const char* kConfigDir = "/usr/share/ostrelle/config/";
constexpr const char* kStillDir = "/usr/share/ostrelle/still_images/";

// Attaches the library's channel for the test so that its traces can be captured.
class FileNameTest : public ::testing::Test {
 protected:
  void SetUp() override {
    hSaved_ = g_hSMGRApiDbg;
    ASSERT_TRUE(_DoDbgInit("SESSMGRLIB", &g_hSMGRApiDbg));
  }
  void TearDown() override {
    _DoDbgUninitEx(g_hSMGRApiDbg, __func__, __FILE__, __LINE__);
    g_hSMGRApiDbg = hSaved_;
  }

  struct Outcome {
    BOOL bOk;
    std::string name;
  };
  static Outcome fixUp(const std::string& name, int nSize = SMGR_MAX_API_FNAME_SIZE,
                       const char* szDir = kConfigDir) {
    char acBuffer[512];
    CopyString(acBuffer, name.c_str(), sizeof(acBuffer));
    BOOL bOk = FixUpInputFileName(acBuffer, nSize, szDir, ".cfg");
    return {bOk, acBuffer};
  }
  struct NoPathOutcome {
    BOOL bOk;
    int nErrCode;
    std::string name;
  };
  static NoPathOutcome noPath(const std::string& name) {
    char acBuffer[512];
    CopyString(acBuffer, name.c_str(), sizeof(acBuffer));
    int nErrCode = -1;
    BOOL bOk = FixUpInputFileNameNoPath(acBuffer, SMGR_MAX_API_FNAME_SIZE, kStillDir, ".mp4", &nErrCode);
    return {bOk, nErrCode, acBuffer};
  }

 private:
  HDBG hSaved_ = nullptr;
};

TEST_F(FileNameTest, EmptyNameIsAcceptedUnchanged) {
  EXPECT_TRUE(fixUp("").bOk);
  EXPECT_EQ(fixUp("").name, "");
  NoPathOutcome outcome = noPath("");
  EXPECT_TRUE(outcome.bOk);
  EXPECT_EQ(outcome.nErrCode, -1);
}

TEST_F(FileNameTest, BareNameGetsExtensionAndStandardFolder) {
  TraceCapture capture;
  Outcome outcome = fixUp("night");
  EXPECT_TRUE(outcome.bOk);
  EXPECT_EQ(outcome.name, "/usr/share/ostrelle/config/night.cfg");
  EXPECT_TRUE(
      capture.has("Need to provide extension since standard one \".cfg\" is not present in \"night\".\n"));
  EXPECT_TRUE(capture.has("No path information provided, adding standard location.\n"));
  for (const auto& trace : capture.traces()) EXPECT_EQ(trace.function, "FixUpInputFileName");
}

TEST_F(FileNameTest, ExistingExtensionIsKeptAndDotFolderMeansStandard) {
  TraceCapture capture;
  EXPECT_EQ(fixUp("day.cfg").name, "/usr/share/ostrelle/config/day.cfg");
  EXPECT_FALSE(capture.hasFragment("Need to provide extension"));
  EXPECT_EQ(fixUp("./day.cfg").name, "/usr/share/ostrelle/config/day.cfg");
}

TEST_F(FileNameTest, NameWithFolderKeepsIt) {
  EXPECT_EQ(fixUp("/tmp/x").name, "/tmp/x.cfg");
  EXPECT_EQ(fixUp("rel/dir/x.cfg").name, "rel/dir/x.cfg");
}

TEST_F(FileNameTest, TrailingSlashOfFolderIsDropped) {
  // The root folder loses its one "/" and so counts as no folder at all.
  EXPECT_EQ(fixUp("/x").name, "/usr/share/ostrelle/config/x.cfg");
  // A name ending in "/" has an empty base name; its folder is the parent.
  EXPECT_EQ(fixUp("/tmp/sub/").name, "/tmp/.cfg");
}

TEST_F(FileNameTest, LengthLimitsOfTheName) {
  TraceCapture capture;
  std::string name287 = "/t/" + std::string(280, 'a') + ".cfg";
  ASSERT_EQ(name287.size(), 287u);
  Outcome outcome = fixUp(name287);
  EXPECT_TRUE(outcome.bOk);
  EXPECT_EQ(outcome.name, name287);

  std::string name288 = name287 + "x";
  outcome = fixUp(name288, 400);
  EXPECT_FALSE(outcome.bOk);
  EXPECT_EQ(outcome.name, name288);  // refused names are left as they were
  EXPECT_TRUE(capture.has("File name is too long.\n"));
  EXPECT_TRUE(capture.has("Resulting FALSE.\n"));
}

TEST_F(FileNameTest, ExtensionThatBustsTheLimit) {
  std::string name = "/t/" + std::string(284, 'a');  // base name 284 + ".cfg" = 288
  Outcome outcome = fixUp(name);
  EXPECT_FALSE(outcome.bOk);
  EXPECT_EQ(outcome.name, name);
  std::string fits = "/t/" + std::string(280, 'a');  // 284 + ".cfg" = 287 characters
  EXPECT_TRUE(fixUp(fits).bOk);
}

TEST_F(FileNameTest, StandardFolderThatBustsTheLimit) {
  TraceCapture capture;
  std::string name(270, 'b');
  Outcome outcome = fixUp(name);
  EXPECT_FALSE(outcome.bOk);
  EXPECT_EQ(outcome.name, name);
  EXPECT_TRUE(capture.has("Adding standard path would bust file name limit.\n"));
}

TEST_F(FileNameTest, CallerSizeLimitsTheResult) {
  TraceCapture capture;
  EXPECT_FALSE(fixUp("/tmp/abc", 12).bOk);  // "/tmp/abc.cfg" needs 13
  EXPECT_TRUE(capture.has("File name is too long.\n"));
  Outcome outcome = fixUp("/tmp/abc", 13);
  EXPECT_TRUE(outcome.bOk);
  EXPECT_EQ(outcome.name, "/tmp/abc.cfg");
}

TEST_F(FileNameTest, NoPathReducesToBaseNameWithExtension) {
  NoPathOutcome outcome = noPath("logo");
  EXPECT_TRUE(outcome.bOk);
  EXPECT_EQ(outcome.name, "logo.mp4");
  EXPECT_EQ(outcome.nErrCode, -1);
  EXPECT_EQ(noPath(std::string(kStillDir) + "logo.mp4").name, "logo.mp4");
  EXPECT_EQ(noPath("./logo.mp4").name, "logo.mp4");
}

TEST_F(FileNameTest, NoPathRefusesOtherFolders) {
  TraceCapture capture;
  NoPathOutcome outcome = noPath("/tmp/logo.mp4");
  EXPECT_FALSE(outcome.bOk);
  EXPECT_EQ(outcome.nErrCode, 209);
  EXPECT_EQ(outcome.name, "/tmp/logo.mp4");
  EXPECT_TRUE(capture.has(
      "Provided path \"/tmp/\" does not match standard location \"/usr/share/ostrelle/still_images/\".\n"));
  EXPECT_EQ(capture.traces().front().function, "FixUpInputFileNameNoPath");
  EXPECT_EQ(noPath("still_images/logo").nErrCode, 209);
  EXPECT_EQ(noPath("/logo").nErrCode, 209);
}

TEST_F(FileNameTest, NoPathLengthLimits) {
  TraceCapture capture;
  NoPathOutcome outcome = noPath(std::string(283, 'c'));  // 287 with ".mp4"
  EXPECT_TRUE(outcome.bOk);
  EXPECT_EQ(outcome.name.size(), 287u);

  outcome = noPath(std::string(284, 'c'));  // 288 with ".mp4"
  EXPECT_FALSE(outcome.bOk);
  EXPECT_EQ(outcome.nErrCode, 210);
  EXPECT_TRUE(capture.has("File name after adding extension is too long.\n"));

  char acLong[400];
  memset(acLong, 'd', sizeof(acLong));
  acLong[sizeof(acLong) - 1] = '\0';
  int nErrCode = 0;
  EXPECT_FALSE(FixUpInputFileNameNoPath(acLong, SMGR_MAX_API_FNAME_SIZE, kStillDir, ".mp4", &nErrCode));
  EXPECT_EQ(nErrCode, 210);
  EXPECT_TRUE(capture.has("File name is too long.\n"));
}

TEST_F(FileNameTest, NoPathWithoutErrorCodePointer) {
  char acBuffer[SMGR_MAX_API_FNAME_SIZE] = "/tmp/logo";
  EXPECT_FALSE(FixUpInputFileNameNoPath(acBuffer, SMGR_MAX_API_FNAME_SIZE, kStillDir, ".mp4", nullptr));
  std::string tooLong(284, 'e');
  CopyString(acBuffer, tooLong.c_str(), sizeof(acBuffer));
  EXPECT_FALSE(FixUpInputFileNameNoPath(acBuffer, SMGR_MAX_API_FNAME_SIZE, kStillDir, ".mp4", nullptr));
}

TEST_F(FileNameTest, NoPathAssertsTheBufferSize) {
  smgr::util::SetAssertAbortEnabled(false);
  TraceCapture capture;
  char acBuffer[SMGR_MAX_API_FNAME_SIZE] = "logo";
  EXPECT_TRUE(FixUpInputFileNameNoPath(acBuffer, 100, kStillDir, ".mp4", nullptr));
  EXPECT_TRUE(capture.has("Assertion failed: nSize == SMGR_MAX_API_FNAME_SIZE\n"));
  smgr::util::SetAssertAbortEnabled(true);
}

TEST_F(FileNameTest, MissingArgumentsAreRefusedWithTheExpressionAsWritten) {
  smgr::util::SetAssertAbortEnabled(false);
  TraceCapture capture;
  EXPECT_FALSE(FixUpInputFileName(nullptr, SMGR_MAX_API_FNAME_SIZE, kConfigDir, ".cfg"));
  EXPECT_TRUE(capture.has("Assertion failed: szInOutFName != NULL\n"));
  char acBuffer[SMGR_MAX_API_FNAME_SIZE] = "x";
  EXPECT_FALSE(FixUpInputFileNameNoPath(acBuffer, SMGR_MAX_API_FNAME_SIZE, nullptr, ".mp4", nullptr));
  EXPECT_STREQ(acBuffer, "x");
  smgr::util::SetAssertAbortEnabled(true);
}

// Same layout as the public selector record.
#pragma pack(push, 4)
struct Selector {
  int32_t enType;
  union {
    int32_t ID;
    char* szName;
    void* Handle;
  } Via;
};
#pragma pack(pop)

std::string selectorText(const Selector& selector, size_t nSize = 80) {
  char acBuffer[80];
  char* szResult = GetObjectSelectorInfoText(
      reinterpret_cast<const struct tagSMGR_OBJECT_SELECTOR*>(&selector), acBuffer, nSize);
  EXPECT_EQ(szResult, acBuffer);
  return acBuffer;
}

TEST(SelectorTextTest, EachKind) {
  Selector selector{};
  selector.enType = 0;
  selector.Via.ID = -3;
  EXPECT_EQ(selectorText(selector), "By ID: -3");
  char acName[] = "cam one";
  selector.enType = 1;
  selector.Via.szName = acName;
  EXPECT_EQ(selectorText(selector), "By NAME: \"cam one\"");
  selector.enType = 2;
  selector.Via.Handle = reinterpret_cast<void*>(0x1234);
  EXPECT_EQ(selectorText(selector), "By HANDLE: 0x1234");
  selector.enType = 7;
  EXPECT_EQ(selectorText(selector), "Invalid type 7");
}

TEST(SelectorTextTest, TruncatedToBufferSize) {
  Selector selector{};
  selector.Via.ID = 12345;
  EXPECT_EQ(selectorText(selector, 6), "By ID");
  EXPECT_EQ(selectorText(selector, 1), "");
}

// A caller's buffer of nSize bytes is all the library may read: a name that
// fills it without a terminator is refused and left as it was (exact-size heap
// buffers make any read past it an AddressSanitizer report).
TEST_F(FileNameTest, UnterminatedNameFillingTheCallerBufferIsRefusedWithoutReadingPastIt) {
  std::vector<char> name(8, 'a');
  EXPECT_FALSE(FixUpInputFileName(name.data(), static_cast<int>(name.size()), kStillDir, ".mp4"));
  EXPECT_EQ(std::string(name.begin(), name.end()), "aaaaaaaa");
  int nErrCode = -1;
  EXPECT_FALSE(
      FixUpInputFileNameNoPath(name.data(), static_cast<int>(name.size()), kStillDir, ".mp4", &nErrCode));
  EXPECT_EQ(nErrCode, 210);
  EXPECT_EQ(std::string(name.begin(), name.end()), "aaaaaaaa");
}

TEST_F(FileNameTest, NoPathRefusesAResultThatDoesNotFitTheCallerBufferInsteadOfCuttingIt) {
  char acName[8] = "abcd";  // "abcd.mp4" needs 9 bytes
  int nErrCode = -1;
  EXPECT_FALSE(FixUpInputFileNameNoPath(acName, sizeof(acName), kStillDir, ".mp4", &nErrCode));
  EXPECT_EQ(nErrCode, 210);
  EXPECT_STREQ(acName, "abcd");
  char acFits[9] = "abcd";
  EXPECT_TRUE(FixUpInputFileNameNoPath(acFits, sizeof(acFits), kStillDir, ".mp4", &nErrCode));
  EXPECT_STREQ(acFits, "abcd.mp4");
}

}  // namespace
