// The deliberate quirks of the video encoder value names and of the
// VIDEO_FORMAT accessors and texts (the tables themselves are not restated).
#include <gtest/gtest.h>

#include <string>

#include "lib_state.h"
#include "sessmgr_api.h"
#include "util_cfgfile.h"

namespace {

std::string Text(char* (*fn)(int, char*, size_t), int nValue, size_t nSize = 64) {
  char sz[64];
  return fn(nValue, sz, nSize);
}

std::string Format(char* (*fn)(long, char*, size_t), VIDEO_FORMAT lFormat) {
  char sz[64];
  return fn(static_cast<long>(lFormat), sz, sizeof(sz));
}

TEST(VideoEncoderNames, QuirksAreKept) {
  EXPECT_EQ(Text(SessMgr_GetVideoEncoderStateString, 5), "AWAIT FRAMING");
  EXPECT_EQ(Text(SessMgr_GetVideoEncoderStateString, 6), "(Invalid:6)");
  EXPECT_EQ(Text(SessMgr_GetVideoEncoderH265LevelString, 90), "3.0");
  EXPECT_EQ(Text(SessMgr_GetVideoEncoderH265LevelString, 120), "4");
  EXPECT_EQ(Text(SessMgr_GetVideoEncoderH264LevelString, SMGR_H264_LEVELUNKNOWN), "(N/A)");
  EXPECT_EQ(Text(SessMgr_GetVideoEncoderCodecAlgorithmString, 7), "<unknown>");
  EXPECT_EQ(Text(SessMgr_GetVideoEncoderRateControlModeString, 1), "CVBR");
  EXPECT_EQ(Text(SessMgr_GetVideoEncoderRateControlModeString, 2), "LowLatencyVBR");
  char sz[64];
  EXPECT_STREQ(SessMgr_GetVideoEncoderInputTransferCharacteristicsString(15, sz, sizeof(sz)), "BT.2020");
  EXPECT_STREQ(SessMgr_GetVideoEncoderInputTransferCharacteristicsString(13, sz, sizeof(sz)), "(Unknown:13)");
}

TEST(VideoEncoderNames, InputTypeFollowsThePersonalityAndCutsItsFallbackTo8Bytes) {
  const int nSaved = g_enPersonality;
  g_enPersonality = VDR2_PERSONALITY_SDI;
  EXPECT_EQ(Text(SessMgr_GetVideoEncoderInputTypeString, 1), "BNC-2");
  g_enPersonality = VDR2_PERSONALITY_2110;
  EXPECT_EQ(Text(SessMgr_GetVideoEncoderInputTypeString, 1), "2");
  g_enPersonality = nSaved;
  EXPECT_EQ(Text(SessMgr_GetVideoEncoderInputTypeString, 4), "(Invali");
  EXPECT_EQ(Text(SessMgr_GetVideoEncoderInputTypeString, 4, 3), "(I");
}

TEST(VideoFormats, CustomDecodesAsItsRasterOtherSpecialValuesAsNone) {
  EXPECT_EQ(GET_VIDEO_FORMAT_HSIZE(VIDEO_FORMAT_CUSTOM), 720u);
  EXPECT_EQ(GET_VIDEO_FORMAT_VSIZE(VIDEO_FORMAT_CUSTOM), 480u);
  EXPECT_EQ(GET_VIDEO_FORMAT_FRATE(VIDEO_FORMAT_CUSTOM), 29u);
  EXPECT_TRUE(IS_VIDEO_FORMAT_INTERLACED(VIDEO_FORMAT_CUSTOM));
  EXPECT_TRUE(IS_VIDEO_FORMAT_PROGRESSIVE(VIDEO_FORMAT_AUTO_DETECT));
  EXPECT_FALSE(IS_VIDEO_FORMAT_INTERLACED(VIDEO_FORMAT_AUTO_DETECT));
  EXPECT_EQ(GET_VIDEO_FORMAT_HSIZE(VIDEO_FORMAT_NATIVE), 0u);
  const VIDEO_FORMAT lReserved = VIDEO_FORMAT_1920_1080_29I | (0x0FFFFFFFull << 35);
  EXPECT_EQ(Format(SessMgr_GetVideoFormatString, lReserved), "1920x1080i29");
  EXPECT_EQ(SMGR_VIDENC_OUT_RESOLUTION_720_480, SMGR_VIDENC_OUT_RESOLUTION_480P);
}

TEST(VideoFormats, FallbacksDifferPerOperation) {
  char sz[64];
  EXPECT_EQ(Format(SessMgr_GetVideoFormatString, VIDEO_FORMAT_NATIVE), "(Invalid:9)");
  EXPECT_STREQ(SessMgr_GetVideoEncoderInputFormatString(9, FALSE, sz, sizeof(sz)), "(Invalid:0x9)");
  EXPECT_EQ(Format(SessMgr_GetVideoEncoderOutputResolutionString, VIDEO_FORMAT_UNKNOWN), "(Invalid:1)");
  EXPECT_EQ(Format(SessMgr_GetVideoEncoderOutputResolutionString, VIDEO_FORMAT_CUSTOM), "720x480i29");
  EXPECT_EQ(Format(SessMgr_GetVideoEncoderOutputResolutionString, VIDEO_FORMAT_1920_1080_29I), "1920x1080i");
  EXPECT_EQ(Format(SessMgr_GetVideoEncoderOutputResolutionString, 0), "Input/Auto");
  EXPECT_EQ(Format(SessMgr_GetVideoFormatString, VIDEO_FORMAT_352_144_0P), "352x144p0");
  EXPECT_EQ(Format(SessMgr_GetVideoFormatString, 0x100000009ull), "(Invalid:9)");  // low 32 bits
}

TEST(VideoFormats, AbbreviationsOnlyWhenAsked) {
  char sz[64];
  EXPECT_STREQ(SessMgr_GetVideoEncoderInputFormatString(VIDEO_FORMAT_CUSTOM, FALSE, sz, sizeof(sz)),
               "720x480i29");
  EXPECT_STREQ(SessMgr_GetVideoEncoderInputFormatString(static_cast<long>(VIDEO_FORMAT_720_480_29I), FALSE,
                                                        sz, sizeof(sz)),
               "720x480i29");
  EXPECT_STREQ(SessMgr_GetVideoEncoderInputFormatString(VIDEO_FORMAT_CUSTOM, TRUE, sz, sizeof(sz)),
               "720x480i29 (PAL-M)");
  EXPECT_STREQ(SessMgr_GetVideoEncoderInputFormatString(static_cast<long>(VIDEO_FORMAT_720_480_29I), TRUE, sz,
                                                        sizeof(sz)),
               "720x480i29 (NTSC)");
  EXPECT_STREQ(SessMgr_GetVideoEncoderInputFormatString(static_cast<long>(VIDEO_FORMAT_1280_960_59P), TRUE,
                                                        sz, sizeof(sz)),
               "1280x960p59 (Embraer)");
  EXPECT_STREQ(SessMgr_GetVideoEncoderInputFormatString(static_cast<long>(VIDEO_FORMAT_1920_540_50P), TRUE,
                                                        sz, sizeof(sz)),
               "1920x540p50");
  EXPECT_STREQ(
      SessMgr_GetVideoEncoderInputFormatString(static_cast<long>(VIDEO_FORMAT_720_480_29I), TRUE, sz, 12),
      "720x480i29 ");
}

}  // namespace
