// Selector translation into the wire form: the daemon always sees an ID or a
// name, names are cut to 63 characters, and refused selectors leave the last
// error alone.
#include <gtest/gtest.h>

#include <string>

#include "library_channel.h"
#include "object_selectors.h"
#include "trace_capture.h"

namespace {

constexpr auto kNoHandles = [](HSMGR, int*) { return false; };

TEST(ObjectSelectors, IdAndNameAndHandleBecomeIdOrName) {
  SMGRPROT_OBJECT_SELECTOR wire{};
  SMGR_OBJECT_SELECTOR selector{SMGR_SELECTBY_OBJECT_ID, {42}};
  ASSERT_TRUE(smgr::TranslateSelector("op", selector, smgr::kIdNameOrHandle, kNoHandles, &wire));
  EXPECT_EQ(wire.enType, SMGR_SELECTBY_OBJECT_ID);
  EXPECT_EQ(wire.Via.ID, 42);

  const std::string longName(70, 'n');
  SMGRPROT_OBJECT_SELECTOR named{};
  selector.enType = SMGR_SELECTBY_OBJECT_NAME;
  selector.Via.szName = longName.c_str();
  ASSERT_TRUE(smgr::TranslateSelector("op", selector, smgr::kIdOrName, kNoHandles, &named));
  EXPECT_EQ(named.enType, SMGR_SELECTBY_OBJECT_NAME);
  EXPECT_EQ(std::string(named.Via.szName), longName.substr(0, 63));

  int token = 0;
  SMGRPROT_OBJECT_SELECTOR byHandle{};
  selector.enType = SMGR_SELECTBY_OBJECT_HANDLE;
  selector.Via.Handle = &token;
  auto resolve = [&](HSMGR h, int* pID) {
    *pID = 17;
    return h == &token;
  };
  ASSERT_TRUE(smgr::TranslateSelector("op", selector, smgr::kIdNameOrHandle, resolve, &byHandle));
  EXPECT_EQ(byHandle.enType, SMGR_SELECTBY_OBJECT_ID);
  EXPECT_EQ(byHandle.Via.ID, 17);
}

TEST(ObjectSelectors, RefusedSelectorsLeaveTheLastErrorAsItWas) {
  smgr::test::AttachLibraryChannel();
  smgr::test::TraceCapture capture(3);
  SessMgr_SetLastError(1234);
  SMGRPROT_OBJECT_SELECTOR wire{};
  SMGR_OBJECT_SELECTOR selector{5, {0}};
  EXPECT_FALSE(smgr::TranslateSelector("op", selector, smgr::kIdNameOrHandle, kNoHandles, &wire));
  EXPECT_TRUE(capture.has("Invalid selector type (5) detected.\n"));

  int token = 0;
  selector.enType = SMGR_SELECTBY_OBJECT_HANDLE;
  selector.Via.Handle = &token;
  EXPECT_FALSE(smgr::TranslateSelector("op", selector, smgr::kIdOrName, kNoHandles, &wire));  // not accepted
  EXPECT_TRUE(capture.has("Invalid selector type (2) detected.\n"));
  EXPECT_FALSE(smgr::TranslateSelector("op", selector, smgr::kIdNameOrHandle, kNoHandles, &wire));
  EXPECT_TRUE(capture.has("Invalid handle in selector.\n"));
  EXPECT_EQ(SessMgr_GetLastError(), 1234u);

  selector.enType = SMGR_SELECTBY_OBJECT_NAME;
  selector.Via.szName = nullptr;
  EXPECT_FALSE(smgr::TranslateSelector("op", selector, smgr::kIdOrName, kNoHandles, &wire));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
}

}  // namespace
