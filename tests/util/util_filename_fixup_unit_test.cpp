// File-name completion of the library (standard folder and extension, length
// limits, path checks with their error codes and traces) and the selector text.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "library_channel.h"
#include "sessmgr_api.h"
#include "trace_capture.h"
#include "util_string.h"

namespace {

using smgr::test::TraceCapture;

constexpr const char* kConfigDir = "/usr/share/ostrelle/config/";
constexpr const char* kStillDir = "/usr/share/ostrelle/still_images/";

class FileNameTest : public ::testing::Test {
 protected:
  void SetUp() override { smgr::test::AttachLibraryChannel(); }

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
};

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

TEST_F(FileNameTest, ExtensionKeptFoldersKeptOrStandard) {
  TraceCapture capture;
  EXPECT_EQ(fixUp("day.cfg").name, "/usr/share/ostrelle/config/day.cfg");
  EXPECT_FALSE(capture.hasFragment("Need to provide extension"));
  EXPECT_EQ(fixUp("./day.cfg").name, "/usr/share/ostrelle/config/day.cfg");
  EXPECT_EQ(fixUp("").name, "") << "empty names are accepted unchanged";
  EXPECT_EQ(fixUp("/tmp/x").name, "/tmp/x.cfg");
  EXPECT_EQ(fixUp("rel/dir/x.cfg").name, "rel/dir/x.cfg");
  // The root folder loses its one "/" and so counts as no folder at all.
  EXPECT_EQ(fixUp("/x").name, "/usr/share/ostrelle/config/x.cfg");
  // A name ending in "/" has an empty base name; its folder is the parent.
  EXPECT_EQ(fixUp("/tmp/sub/").name, "/tmp/.cfg");
}

// Refused names are left as they were, with the reason traced.
TEST_F(FileNameTest, LengthLimitsOfTheNameTheFolderAndTheCaller) {
  TraceCapture capture;
  const std::string name287 = "/t/" + std::string(280, 'a') + ".cfg";
  EXPECT_EQ(fixUp(name287).name, name287);
  EXPECT_TRUE(fixUp(name287).bOk);
  EXPECT_TRUE(fixUp("/tmp/abc", 13).bOk);
  const struct {
    std::string name;
    int nSize;
    const char* szTrace;
  } refused[] = {
      {name287 + "x", 400, "File name is too long.\n"},
      {"/t/" + std::string(284, 'a'), SMGR_MAX_API_FNAME_SIZE,
       "File name is too long.\n"},  // 288 with ".cfg"
      {std::string(270, 'b'), SMGR_MAX_API_FNAME_SIZE, "Adding standard path would bust file name limit.\n"},
      {"/tmp/abc", 12, "File name is too long.\n"},  // "/tmp/abc.cfg" needs 13
  };
  for (const auto& c : refused) {
    capture.clear();
    Outcome outcome = fixUp(c.name, c.nSize);
    EXPECT_FALSE(outcome.bOk) << c.name;
    EXPECT_EQ(outcome.name, c.name);
    EXPECT_TRUE(capture.has(c.szTrace)) << c.name;
    EXPECT_TRUE(capture.has("Resulting FALSE.\n")) << c.name;
  }
}

TEST_F(FileNameTest, NoPathReducesToBaseNameWithExtension) {
  NoPathOutcome outcome = noPath("logo");
  EXPECT_TRUE(outcome.bOk);
  EXPECT_EQ(outcome.name, "logo.mp4");
  EXPECT_EQ(outcome.nErrCode, -1);
  EXPECT_EQ(noPath(std::string(kStillDir) + "logo.mp4").name, "logo.mp4");
  EXPECT_EQ(noPath("./logo.mp4").name, "logo.mp4");
  EXPECT_TRUE(noPath("").bOk);
  EXPECT_EQ(noPath("").nErrCode, -1);
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

TEST_F(FileNameTest, NoPathAssertsTheBufferSizeAndGoesOn) {
  smgr::util::SetAssertAbortEnabled(false);
  TraceCapture capture;
  char acBuffer[SMGR_MAX_API_FNAME_SIZE] = "logo";
  EXPECT_TRUE(FixUpInputFileNameNoPath(acBuffer, 100, kStillDir, ".mp4", nullptr));
  EXPECT_TRUE(capture.has("Assertion failed: nSize == SMGR_MAX_API_FNAME_SIZE\n"));
  smgr::util::SetAssertAbortEnabled(true);
}

std::string SelectorText(SMGR_OBJECT_SELECTOR selector, size_t nSize = 80) {
  char acBuffer[80];
  EXPECT_EQ(GetObjectSelectorInfoText(&selector, acBuffer, nSize), acBuffer);
  return acBuffer;
}

TEST(SelectorTextTest, EachKindAndTruncation) {
  EXPECT_EQ(SelectorText({SMGR_SELECTBY_OBJECT_ID, {-3}}), "By ID: -3");
  SMGR_OBJECT_SELECTOR selector{SMGR_SELECTBY_OBJECT_NAME, {}};
  selector.Via.szName = "cam one";
  EXPECT_EQ(SelectorText(selector), "By NAME: \"cam one\"");
  selector.enType = SMGR_SELECTBY_OBJECT_HANDLE;
  selector.Via.Handle = reinterpret_cast<HSMGR>(0x1234);
  EXPECT_EQ(SelectorText(selector), "By HANDLE: 0x1234");
  EXPECT_EQ(SelectorText({7, {0}}), "Invalid type 7");
  EXPECT_EQ(SelectorText({SMGR_SELECTBY_OBJECT_ID, {12345}}, 6), "By ID");
}

}  // namespace
