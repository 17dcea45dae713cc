// SessMgr_GetErrorString: the code -> text table (spot checks chosen so that a
// shifted, dropped or duplicated row shows), the unknown-code form, errno-carrying
// codes, truncation and bad buffers.
#include <errno.h>
#include <string.h>

#include <string>

#include "gtest/gtest.h"
#include "sessmgr/sm_results.h"
#include "util_dbg.h"

namespace {

std::string TextOf(SMGR_RESULT code, size_t nSize = 256) {
  std::string buffer(nSize, '\x7f');
  const char* szResult = SessMgr_GetErrorString(code, buffer.data(), nSize);
  EXPECT_EQ(szResult, buffer.data()) << "code " << code;
  return szResult;
}

std::string UnknownForm(SMGR_RESULT code) { return "(Unknown:" + std::to_string(code) + ")"; }

struct Row {
  SMGR_RESULT code;
  const char* text;
};

TEST(ResultTextTest, RowsAroundEveryBoundaryAndGap) {
  const Row rows[] = {
      {SMGR_ERROR_SUCCESS, "Success"},
      {1, "Generic failure"},
      {11, "Generic IPC error"},
      {14, "Library not initialized"},
      {41, "Invalid ID"},
      {42, "Logo cannot be moved"},
      {63, "Unsupported client API version"},
      {76, "Invalid GOP structure"},
      {78, "Invalid entropy coding for encoding profile"},
      {102, "Insufficient ethernet bandwith available"},
      {133, "Invalid transport stream ID"},
      {138, "Serial port is not configured for passthrough"},
      {144, "Intra refresh not supported with I-Frame GOP structure"},
      {146, "No matching recording found"},
      {148, "Recording already started"},
      {180, "No relay destinations configured"},
      {182, "Mission ID updating is not supported on CoT metadata sources"},
      {217, "Privacy type of ROI is not supported for interlaced video"},
      {220, "Status and TX LEDs already set to blink"},
      {222, "SAP announcement address family is inconsistent with advertised stream"},
      {224, "SAP listening address must be multicast"},
      {227, "Invalid SAP announcement address"},
      {231, "A stream with this name already exists"},
      {232, "A SAP session with this name already exists"},
      {234, "Insufficient permissions on NFS server"},
      {254, "CAVLC not available on H.265"},
      {258, "Invalid video encoder configuration"},
      {288, "Invalid address"},
      {303, "Functionality not supported in SDI personality"},
      {305, "A different analog audio sample rate is currently used by another active encoder"},
      {0x10000001u, "Invalid relay address"},
      {0x10000008u, "Stream publishing ID unsupported for rendezvous SRT streams"},
      {0x1000000Bu, "Invalid parameter specified for media type"},
      {0x10000011u, "Invalid sample rate for SDI audio"},
      {SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE,
       "Some content sources of this stream are not started"},
      {SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME, "Unable to resolve hostname"},
      {SMGR_WARNING_TOO_MANY_ESSENCES_TO_START,
       "Essence not started, there is already an active essence of this media type using this input"},
  };
  for (const Row& row : rows) EXPECT_EQ(TextOf(row.code), row.text) << "code 0x" << std::hex << row.code;
}

TEST(ResultTextTest, CodesWithoutTextGiveTheUnknownForm) {
  const SMGR_RESULT noText[] = {12,  13,  77,  134, 135, 136, 137, 145,        147,
                                181, 219, 223, 225, 226, 233, 304, 0x10000000u};
  for (SMGR_RESULT code : noText) EXPECT_EQ(TextOf(code), UnknownForm(code));

  // Unused numbers in and after every range.
  const SMGR_RESULT unused[] = {218,         255,         256,         257,         306,         1000,
                                0x10000009u, 0x1000000Au, 0x10000012u, 0x80000000u, 0x80000001u, 0x80000005u};
  for (SMGR_RESULT code : unused) EXPECT_EQ(TextOf(code), UnknownForm(code));
  EXPECT_EQ(TextOf(0xFFFFFFFFu & ~SMGR_IS_ERRNO_ERROR), UnknownForm(0xFFFFFFFFu & ~SMGR_IS_ERRNO_ERROR));
}

TEST(ResultTextTest, EveryPlainCodeHasTextExceptTheDeliberateOnes) {
  // 302 numbered plain codes (0..305 without 218, 255..257), 16 of them without text.
  int nWithText = 0;
  for (SMGR_RESULT code = 0; code <= 305; ++code)
    if (TextOf(code) != UnknownForm(code)) ++nWithText;
  EXPECT_EQ(nWithText, 286);
}

TEST(ResultTextTest, ErrnoCarryingCodesGiveTheSystemText) {
  EXPECT_EQ(TextOf(SMGR_IS_ERRNO_ERROR | ENOENT), strerror(ENOENT));
  EXPECT_EQ(TextOf(SMGR_ERRNO_RESULT(EAGAIN)), strerror(EAGAIN));
  EXPECT_EQ(TextOf(SMGR_IS_ERRNO_ERROR | 9999), strerror(9999));
  // Bounded by the caller's buffer.
  EXPECT_EQ(TextOf(SMGR_IS_ERRNO_ERROR | ENOENT, 4), std::string(strerror(ENOENT)).substr(0, 3));
}

TEST(ResultTextTest, TruncatesToTheBufferAndTerminates) {
  EXPECT_EQ(TextOf(SMGR_ERROR_NO_MATCHING_STREAM_FOUND, 5), "No m");
  EXPECT_EQ(TextOf(SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_TYPE_ERROR, 5), "(Unk");
  EXPECT_EQ(TextOf(SMGR_ERROR_SUCCESS, 1), "");
  EXPECT_EQ(TextOf(SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_TYPE_ERROR, 64), "(Unknown:12)");
}

TEST(ResultTextTest, BadBufferGivesTheConstantText) {
  smgr::util::SetAssertAbortEnabled(false);
  char szBuffer[8] = "keep";
  EXPECT_STREQ(SessMgr_GetErrorString(SMGR_ERROR_SUCCESS, nullptr, 64), "Invalid input buffer");
  const char* szResult = SessMgr_GetErrorString(SMGR_ERROR_SUCCESS, szBuffer, 0);
  EXPECT_STREQ(szResult, "Invalid input buffer");
  EXPECT_NE(szResult, szBuffer);
  EXPECT_STREQ(szBuffer, "keep");
  smgr::util::SetAssertAbortEnabled(true);
}

TEST(ResultTextTest, RangeMacros) {
  EXPECT_TRUE(SMGR_RESULT_IS_SUCCESS(SMGR_ERROR_SUCCESS));
  EXPECT_TRUE(SMGR_RESULT_IS_SUCCESS(SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME));
  EXPECT_FALSE(SMGR_RESULT_IS_SUCCESS(SMGR_ERROR_GENERIC_FAILURE));
  EXPECT_FALSE(SMGR_RESULT_IS_SUCCESS(SMGR_ERROR_ADDRESS_PORT_PAIR_IN_USE));
  EXPECT_TRUE(SMGR_RESULT_IS_TEXT_DESCRIBED(SMGR_ERROR_INVALID_SAMPLE_RATE_FOR_SDI_AUDIO));
  EXPECT_FALSE(SMGR_RESULT_IS_TEXT_DESCRIBED(SMGR_ERROR_CONFLICT_SAMPLE_RATE));
  EXPECT_EQ(SMGR_RESULT_ERRNO(SMGR_ERRNO_RESULT(ENOENT)), ENOENT);
}

}  // namespace
