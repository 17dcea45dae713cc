// The handle-family mechanism as streams use it: lookup by selector and by
// configuration, and the drain at shutdown. The API mutex is not needed:
// nothing else runs here.
#include <gtest/gtest.h>

#include <cstring>

#include "library_channel.h"
#include "stream_internal.h"
#include "trace_capture.h"

namespace {

class StreamHandlesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    smgr::test::AttachLibraryChannel();
    smgr::util::SetAssertAbortEnabled(false);
    CleanupSessMgrStreams();
  }
  void TearDown() override {
    CleanupSessMgrStreams();
    smgr::util::SetAssertAbortEnabled(true);
  }
  static SMGR_STREAM_HANDLE* Linked(int nID, const char* szName) {
    SMGR_STREAM_HANDLE* pHandle = nullptr;
    EXPECT_TRUE(_AllocStreamHandle(&pHandle, nID, szName));
    smgr::StreamHandles::Link(pHandle);
    return pHandle;
  }
};

// Reference counts and validation are seen through the API by the peer tests
// and the operation table; lookups and the drain are not.
TEST_F(StreamHandlesTest, LocateBySelectorIsExactAndInListOrder) {
  SMGR_STREAM_HANDLE* pFirst = Linked(7, "Cam");
  SMGR_STREAM_HANDLE* pSecond = Linked(7, "cam");
  SMGR_OBJECT_SELECTOR byId{SMGR_SELECTBY_OBJECT_ID, {7}};
  EXPECT_EQ(_LocateStreamBySelector(&byId), pFirst);
  SMGR_OBJECT_SELECTOR byName{SMGR_SELECTBY_OBJECT_NAME, {}};
  byName.Via.szName = "cam";
  EXPECT_EQ(_LocateStreamBySelector(&byName), pSecond);
  byName.Via.szName = "CAM";
  EXPECT_EQ(_LocateStreamBySelector(&byName), nullptr);
  SMGR_OBJECT_SELECTOR byHandle{SMGR_SELECTBY_OBJECT_HANDLE, {}};
  byHandle.Via.Handle = pFirst;
  EXPECT_EQ(_LocateStreamBySelector(&byHandle), nullptr);  // a handle selector matches nothing
}

TEST_F(StreamHandlesTest, LocateByConfigReportsEitherClashAsIdInUse) {
  Linked(4, "left");
  SMGR_STREAM_CFG cfg{};
  cfg.nIndex = 0;
  std::strcpy(cfg.szName, "left");
  SessMgr_SetLastError(0);
  EXPECT_NE(_LocateStreamByConfig(&cfg), nullptr);
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_ID_IN_USE);

  cfg.szName[0] = '\0';
  cfg.nIndex = 4;
  EXPECT_NE(_LocateStreamByConfig(&cfg), nullptr);

  SessMgr_SetLastError(0);
  cfg.nIndex = -4;  // 0 or less requests no ID; an empty name names nothing
  EXPECT_EQ(_LocateStreamByConfig(&cfg), nullptr);
  EXPECT_EQ(SessMgr_GetLastError(), 0u);
}

TEST_F(StreamHandlesTest, CleanupFreesWhateverTheCountAndTracesTheNumber) {
  Linked(1, "a")->nRefCount = 3;
  Linked(2, "b");
  smgr::test::TraceCapture capture(6);
  CleanupSessMgrStreams();
  EXPECT_TRUE(capture.has("2 stream handles were released.\n"));
  EXPECT_EQ(smgr::StreamHandles::List().pHead, nullptr);
  capture.clear();
  CleanupSessMgrStreams();
  EXPECT_FALSE(capture.hasFragment("handles were released"));
}

}  // namespace
