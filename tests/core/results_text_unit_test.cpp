// SessMgr_GetErrorString: the lookup at both ends of every code range, the
// number of codes with a text (a dropped or duplicated row shows), the
// unknown-code form, errno-carrying codes and truncation. Bad buffers are
// swept by the operation table.
#include <errno.h>
#include <string.h>

#include <string>

#include "gtest/gtest.h"
#include "sessmgr/sm_results.h"

namespace {

std::string TextOf(SMGR_RESULT code, size_t nSize = 256) {
  std::string buffer(nSize, '\x7f');
  const char* szResult = SessMgr_GetErrorString(code, buffer.data(), nSize);
  EXPECT_EQ(szResult, buffer.data()) << "code " << code;
  return szResult;
}

std::string UnknownForm(SMGR_RESULT code) { return "(Unknown:" + std::to_string(code) + ")"; }

TEST(ResultTextTest, FirstAndLastOfEveryRange) {
  EXPECT_EQ(TextOf(SMGR_ERROR_SUCCESS), "Success");
  EXPECT_EQ(TextOf(305), "A different analog audio sample rate is currently used by another active encoder");
  EXPECT_EQ(TextOf(0x10000001u), "Invalid relay address");
  EXPECT_EQ(TextOf(0x10000011u), "Invalid sample rate for SDI audio");
  EXPECT_EQ(TextOf(SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE),
            "Some content sources of this stream are not started");
  EXPECT_EQ(TextOf(SMGR_WARNING_TOO_MANY_ESSENCES_TO_START),
            "Essence not started, there is already an active essence of this media type using this input");
}

TEST(ResultTextTest, CodesWithoutTextGiveTheUnknownForm) {
  // 302 numbered plain codes (0..305 without 218, 255..257), 16 of them without text.
  int nWithText = 0;
  for (SMGR_RESULT code = 0; code <= 305; ++code)
    if (TextOf(code) != UnknownForm(code)) ++nWithText;
  EXPECT_EQ(nWithText, 286);
  for (SMGR_RESULT code : {12u, 13u, 218u, 306u, 0x10000000u, 0x10000009u, 0x10000012u, 0x80000000u,
                           0x80000005u, 0xFFFFFFFFu & ~SMGR_IS_ERRNO_ERROR})
    EXPECT_EQ(TextOf(code), UnknownForm(code));
}

TEST(ResultTextTest, ErrnoCodesAndTruncation) {
  EXPECT_EQ(TextOf(SMGR_ERRNO_RESULT(EAGAIN)), strerror(EAGAIN));
  EXPECT_EQ(TextOf(SMGR_IS_ERRNO_ERROR | 9999), strerror(9999));
  EXPECT_EQ(TextOf(SMGR_IS_ERRNO_ERROR | ENOENT, 4), std::string(strerror(ENOENT)).substr(0, 3));
  EXPECT_EQ(TextOf(SMGR_ERROR_NO_MATCHING_STREAM_FOUND, 5), "No m");
  EXPECT_EQ(TextOf(SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_TYPE_ERROR, 5), "(Unk");
  EXPECT_EQ(TextOf(SMGR_ERROR_SUCCESS, 1), "");
}

}  // namespace
