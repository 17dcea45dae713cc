/* VIDEO_FORMAT: the 64-bit video format code (raster, frame rate, scan type)
 * that inputs, encoders and essences name their formats with; its accessors,
 * the named formats, and the three operations that turn a code into text.
 * C99 and C++ clean. */
#ifndef SESSMGR_VIDEO_FORMATS_H
#define SESSMGR_VIDEO_FORMATS_H

#include "sessmgr/sm_types.h"

typedef uint64_t VIDEO_FORMAT;

/* A packed code has its top bit set (negative as a signed value); every other
 * value is special. Bits 22-34 horizontal size, 9-21 vertical size (of the
 * whole frame), 1-8 whole frames per second (29 for 30000/1001, 0 = raster
 * only), bit 0 interlaced; bits 35-62 are reserved and ignored. */
#define VIDEO_FORMAT_PACKED_FLAG ((VIDEO_FORMAT)0x8000000000000000ull)
#define VIDEO_FORMAT_CODE(nHSize, nVSize, nFrameRate, bInterlaced)                                    \
  ((VIDEO_FORMAT)(VIDEO_FORMAT_PACKED_FLAG | ((VIDEO_FORMAT)((nHSize)&0x1FFF) << 22) |                \
                  ((VIDEO_FORMAT)((nVSize)&0x1FFF) << 9) | ((VIDEO_FORMAT)((nFrameRate)&0xFF) << 1) | \
                  ((VIDEO_FORMAT)((bInterlaced) ? 1 : 0))))

/* Special values. */
#define VIDEO_FORMAT_AUTO_DETECT ((VIDEO_FORMAT)0) /* follow the input */
#define VIDEO_FORMAT_UNKNOWN ((VIDEO_FORMAT)1)     /* nothing detected */
#define VIDEO_FORMAT_NATIVE ((VIDEO_FORMAT)9)      /* the input's native format */
#define VIDEO_FORMAT_CUSTOM ((VIDEO_FORMAT)10)     /* 720x480 interlaced at 29 ("PAL-M") */

/* Named packed formats: VIDEO_FORMAT_<width>_<height>_<rate><P|I>. */
#define VIDEO_FORMAT_3840_2160_23P VIDEO_FORMAT_CODE(3840, 2160, 23, 0)
#define VIDEO_FORMAT_3840_2160_24P VIDEO_FORMAT_CODE(3840, 2160, 24, 0)
#define VIDEO_FORMAT_3840_2160_25P VIDEO_FORMAT_CODE(3840, 2160, 25, 0)
#define VIDEO_FORMAT_3840_2160_29P VIDEO_FORMAT_CODE(3840, 2160, 29, 0)
#define VIDEO_FORMAT_3840_2160_30P VIDEO_FORMAT_CODE(3840, 2160, 30, 0)
#define VIDEO_FORMAT_3840_2160_50P VIDEO_FORMAT_CODE(3840, 2160, 50, 0)
#define VIDEO_FORMAT_3840_2160_59P VIDEO_FORMAT_CODE(3840, 2160, 59, 0)
#define VIDEO_FORMAT_3840_2160_60P VIDEO_FORMAT_CODE(3840, 2160, 60, 0)
#define VIDEO_FORMAT_1920_1080_23P VIDEO_FORMAT_CODE(1920, 1080, 23, 0)
#define VIDEO_FORMAT_1920_1080_24P VIDEO_FORMAT_CODE(1920, 1080, 24, 0)
#define VIDEO_FORMAT_1920_1080_25P VIDEO_FORMAT_CODE(1920, 1080, 25, 0)
#define VIDEO_FORMAT_1920_1080_29P VIDEO_FORMAT_CODE(1920, 1080, 29, 0)
#define VIDEO_FORMAT_1920_1080_30P VIDEO_FORMAT_CODE(1920, 1080, 30, 0)
#define VIDEO_FORMAT_1920_1080_50P VIDEO_FORMAT_CODE(1920, 1080, 50, 0)
#define VIDEO_FORMAT_1920_1080_59P VIDEO_FORMAT_CODE(1920, 1080, 59, 0)
#define VIDEO_FORMAT_1920_1080_60P VIDEO_FORMAT_CODE(1920, 1080, 60, 0)
#define VIDEO_FORMAT_1920_1080_24I VIDEO_FORMAT_CODE(1920, 1080, 24, 1)
#define VIDEO_FORMAT_1920_1080_25I VIDEO_FORMAT_CODE(1920, 1080, 25, 1)
#define VIDEO_FORMAT_1920_1080_29I VIDEO_FORMAT_CODE(1920, 1080, 29, 1)
#define VIDEO_FORMAT_1920_1080_30I VIDEO_FORMAT_CODE(1920, 1080, 30, 1)
#define VIDEO_FORMAT_1280_720_23P VIDEO_FORMAT_CODE(1280, 720, 23, 0)
#define VIDEO_FORMAT_1280_720_24P VIDEO_FORMAT_CODE(1280, 720, 24, 0)
#define VIDEO_FORMAT_1280_720_25P VIDEO_FORMAT_CODE(1280, 720, 25, 0)
#define VIDEO_FORMAT_1280_720_29P VIDEO_FORMAT_CODE(1280, 720, 29, 0)
#define VIDEO_FORMAT_1280_720_30P VIDEO_FORMAT_CODE(1280, 720, 30, 0)
#define VIDEO_FORMAT_1280_720_50P VIDEO_FORMAT_CODE(1280, 720, 50, 0)
#define VIDEO_FORMAT_1280_720_59P VIDEO_FORMAT_CODE(1280, 720, 59, 0)
#define VIDEO_FORMAT_1280_720_60P VIDEO_FORMAT_CODE(1280, 720, 60, 0)
#define VIDEO_FORMAT_720_480_29I VIDEO_FORMAT_CODE(720, 480, 29, 1)
#define VIDEO_FORMAT_720_480_30I VIDEO_FORMAT_CODE(720, 480, 30, 1)
#define VIDEO_FORMAT_720_480_59P VIDEO_FORMAT_CODE(720, 480, 59, 0)
#define VIDEO_FORMAT_720_480_60P VIDEO_FORMAT_CODE(720, 480, 60, 0)
#define VIDEO_FORMAT_720_576_25I VIDEO_FORMAT_CODE(720, 576, 25, 1)
#define VIDEO_FORMAT_720_576_50P VIDEO_FORMAT_CODE(720, 576, 50, 0)
#define VIDEO_FORMAT_704_576_25I VIDEO_FORMAT_CODE(704, 576, 25, 1)
#define VIDEO_FORMAT_704_576_50P VIDEO_FORMAT_CODE(704, 576, 50, 0)
#define VIDEO_FORMAT_1920_540_0P VIDEO_FORMAT_CODE(1920, 540, 0, 0)
#define VIDEO_FORMAT_1920_540_48P VIDEO_FORMAT_CODE(1920, 540, 48, 0)
#define VIDEO_FORMAT_1920_540_50P VIDEO_FORMAT_CODE(1920, 540, 50, 0)
#define VIDEO_FORMAT_1920_540_59P VIDEO_FORMAT_CODE(1920, 540, 59, 0)
#define VIDEO_FORMAT_1920_540_60P VIDEO_FORMAT_CODE(1920, 540, 60, 0)
#define VIDEO_FORMAT_1440_540_0P VIDEO_FORMAT_CODE(1440, 540, 0, 0)
#define VIDEO_FORMAT_960_540_0P VIDEO_FORMAT_CODE(960, 540, 0, 0)
#define VIDEO_FORMAT_720_288_0P VIDEO_FORMAT_CODE(720, 288, 0, 0)
#define VIDEO_FORMAT_720_288_50P VIDEO_FORMAT_CODE(720, 288, 50, 0)
#define VIDEO_FORMAT_704_288_0P VIDEO_FORMAT_CODE(704, 288, 0, 0)
#define VIDEO_FORMAT_704_288_50P VIDEO_FORMAT_CODE(704, 288, 50, 0)
#define VIDEO_FORMAT_720_240_0P VIDEO_FORMAT_CODE(720, 240, 0, 0)
#define VIDEO_FORMAT_720_240_59P VIDEO_FORMAT_CODE(720, 240, 59, 0)
#define VIDEO_FORMAT_720_240_60P VIDEO_FORMAT_CODE(720, 240, 60, 0)
#define VIDEO_FORMAT_540_288_0P VIDEO_FORMAT_CODE(540, 288, 0, 0)
#define VIDEO_FORMAT_540_240_0P VIDEO_FORMAT_CODE(540, 240, 0, 0)
#define VIDEO_FORMAT_352_288_0P VIDEO_FORMAT_CODE(352, 288, 0, 0)
#define VIDEO_FORMAT_352_240_0P VIDEO_FORMAT_CODE(352, 240, 0, 0)
#define VIDEO_FORMAT_352_144_0P VIDEO_FORMAT_CODE(352, 144, 0, 0)
#define VIDEO_FORMAT_640_480_60P VIDEO_FORMAT_CODE(640, 480, 60, 0)
#define VIDEO_FORMAT_640_480_75P VIDEO_FORMAT_CODE(640, 480, 75, 0)
#define VIDEO_FORMAT_640_480_85P VIDEO_FORMAT_CODE(640, 480, 85, 0)
#define VIDEO_FORMAT_800_600_60P VIDEO_FORMAT_CODE(800, 600, 60, 0)
#define VIDEO_FORMAT_800_600_75P VIDEO_FORMAT_CODE(800, 600, 75, 0)
#define VIDEO_FORMAT_800_600_85P VIDEO_FORMAT_CODE(800, 600, 85, 0)
#define VIDEO_FORMAT_1024_768_60P VIDEO_FORMAT_CODE(1024, 768, 60, 0)
#define VIDEO_FORMAT_1024_768_75P VIDEO_FORMAT_CODE(1024, 768, 75, 0)
#define VIDEO_FORMAT_1024_768_85P VIDEO_FORMAT_CODE(1024, 768, 85, 0)
#define VIDEO_FORMAT_1152_864_60P VIDEO_FORMAT_CODE(1152, 864, 60, 0)
#define VIDEO_FORMAT_1152_864_75P VIDEO_FORMAT_CODE(1152, 864, 75, 0)
#define VIDEO_FORMAT_1152_864_85P VIDEO_FORMAT_CODE(1152, 864, 85, 0)
#define VIDEO_FORMAT_1280_768_60P VIDEO_FORMAT_CODE(1280, 768, 60, 0)
#define VIDEO_FORMAT_1280_768_75P VIDEO_FORMAT_CODE(1280, 768, 75, 0)
#define VIDEO_FORMAT_1280_768_85P VIDEO_FORMAT_CODE(1280, 768, 85, 0)
#define VIDEO_FORMAT_1280_800_60P VIDEO_FORMAT_CODE(1280, 800, 60, 0)
#define VIDEO_FORMAT_1280_800_75P VIDEO_FORMAT_CODE(1280, 800, 75, 0)
#define VIDEO_FORMAT_1280_800_85P VIDEO_FORMAT_CODE(1280, 800, 85, 0)
#define VIDEO_FORMAT_1280_960_59P VIDEO_FORMAT_CODE(1280, 960, 59, 0)
#define VIDEO_FORMAT_1280_1024_60P VIDEO_FORMAT_CODE(1280, 1024, 60, 0)
#define VIDEO_FORMAT_1280_1024_75P VIDEO_FORMAT_CODE(1280, 1024, 75, 0)
#define VIDEO_FORMAT_1280_1024_85P VIDEO_FORMAT_CODE(1280, 1024, 85, 0)
#define VIDEO_FORMAT_1360_768_60P VIDEO_FORMAT_CODE(1360, 768, 60, 0)
#define VIDEO_FORMAT_1360_768_75P VIDEO_FORMAT_CODE(1360, 768, 75, 0)
#define VIDEO_FORMAT_1400_1050_60P VIDEO_FORMAT_CODE(1400, 1050, 60, 0)
#define VIDEO_FORMAT_1400_1050_75P VIDEO_FORMAT_CODE(1400, 1050, 75, 0)
#define VIDEO_FORMAT_1440_900_60P VIDEO_FORMAT_CODE(1440, 900, 60, 0)
#define VIDEO_FORMAT_1440_900_75P VIDEO_FORMAT_CODE(1440, 900, 75, 0)
#define VIDEO_FORMAT_1600_900_60P VIDEO_FORMAT_CODE(1600, 900, 60, 0)
#define VIDEO_FORMAT_1600_1200_60P VIDEO_FORMAT_CODE(1600, 1200, 60, 0)
#define VIDEO_FORMAT_1680_1050_60P VIDEO_FORMAT_CODE(1680, 1050, 60, 0)
#define VIDEO_FORMAT_1920_1200_60P VIDEO_FORMAT_CODE(1920, 1200, 60, 0)

SMGR_STATIC_ASSERT(VIDEO_FORMAT_CODE(1920, 1080, 30, 1) == 0x80000001E008703Dull, video_format_1080i30);
SMGR_STATIC_ASSERT(VIDEO_FORMAT_CODE(1280, 720, 59, 0) == 0x800000014005A076ull, video_format_720p59);
SMGR_STATIC_ASSERT(VIDEO_FORMAT_1920_1080_29I == 0x80000001E008703Bull, video_format_1920_1080_29I);
SMGR_STATIC_ASSERT(VIDEO_FORMAT_720_576_25I == 0x80000000B4048033ull, video_format_720_576_25I);
SMGR_STATIC_ASSERT(VIDEO_FORMAT_3840_2160_60P == 0x80000003C010E078ull, video_format_3840_2160_60P);
SMGR_STATIC_ASSERT(VIDEO_FORMAT_352_144_0P == 0x8000000058012000ull, video_format_352_144_0P);
SMGR_STATIC_ASSERT(VIDEO_FORMAT_1920_540_48P == 0x80000001E0043860ull, video_format_1920_540_48P);

/* ---- Accessors ------------------------------------------------------------
 * VIDEO_FORMAT_CUSTOM decodes as 720x480i29 although it is not packed; any
 * other special value has no raster and counts as progressive and not
 * interlaced (the two scan tests are not mirror images for special values). */

/** TRUE for a packed code (top bit set), FALSE for a special value. */
static inline BOOL IS_VIDEO_FORMAT_PACKED(VIDEO_FORMAT lFormat) {
  return (lFormat & VIDEO_FORMAT_PACKED_FLAG) != 0 ? TRUE : FALSE;
}
/** Active pixels per line: bits 22-34; 720 for CUSTOM, 0 for other special values. */
static inline UINT GET_VIDEO_FORMAT_HSIZE(VIDEO_FORMAT lFormat) {
  if (IS_VIDEO_FORMAT_PACKED(lFormat)) return (UINT)((lFormat >> 22) & 0x1FFF);
  return lFormat == VIDEO_FORMAT_CUSTOM ? 720u : 0u;
}
/** Active lines of the frame: bits 9-21; 480 for CUSTOM, 0 for other special values. */
static inline UINT GET_VIDEO_FORMAT_VSIZE(VIDEO_FORMAT lFormat) {
  if (IS_VIDEO_FORMAT_PACKED(lFormat)) return (UINT)((lFormat >> 9) & 0x1FFF);
  return lFormat == VIDEO_FORMAT_CUSTOM ? 480u : 0u;
}
/** Whole frames per second: bits 1-8; 29 for CUSTOM, 0 for other special values. */
static inline UINT GET_VIDEO_FORMAT_FRATE(VIDEO_FORMAT lFormat) {
  if (IS_VIDEO_FORMAT_PACKED(lFormat)) return (UINT)((lFormat >> 1) & 0xFF);
  return lFormat == VIDEO_FORMAT_CUSTOM ? 29u : 0u;
}
/** Bit 0 of a packed code; TRUE for CUSTOM, FALSE for other special values. */
static inline BOOL IS_VIDEO_FORMAT_INTERLACED(VIDEO_FORMAT lFormat) {
  if (IS_VIDEO_FORMAT_PACKED(lFormat)) return (lFormat & 1u) != 0 ? TRUE : FALSE;
  return lFormat == VIDEO_FORMAT_CUSTOM ? TRUE : FALSE;
}
/** Bit 0 clear in a packed code; FALSE for CUSTOM, TRUE for other special values. */
static inline BOOL IS_VIDEO_FORMAT_PROGRESSIVE(VIDEO_FORMAT lFormat) {
  if (IS_VIDEO_FORMAT_PACKED(lFormat)) return (lFormat & 1u) == 0 ? TRUE : FALSE;
  return lFormat == VIDEO_FORMAT_CUSTOM ? FALSE : TRUE;
}

/* ---- Text operations --------------------------------------------------------
 * Each writes the text into szBuffer (cut to nSize) and returns szBuffer; a
 * NULL buffer or a zero size returns the constant "Invalid input buffer". */

SMGR_EXTERN_C_BEGIN

/** Generic text: "1920x1080i30", "Unknown", "720x480i29" (CUSTOM), "Auto-Detect";
 * "(Invalid:%d)" for other special values (NATIVE included). */
SMGR_API char* SessMgr_GetVideoFormatString(long enInFormat, char* szBuffer, size_t nSize);
/** Text of an encoder input format, with " (NTSC)", " (PAL)", " (VGA)" ... when
 * bWithAbbreviation is non-zero; "(Invalid:0x%lx)" for special values without a text. */
SMGR_API char* SessMgr_GetVideoEncoderInputFormatString(long enInFormat, BOOL bWithAbbreviation,
                                                        char* szBuffer, size_t nSize);
/** Text of an encoder output resolution without the rate ("1920x1080i"),
 * "Input/Auto" for 0, "720x480i29" for CUSTOM, "(Invalid:%d)" otherwise. */
SMGR_API char* SessMgr_GetVideoEncoderOutputResolutionString(long enInFormat, char* szBuffer, size_t nSize);

SMGR_EXTERN_C_END

#endif /* SESSMGR_VIDEO_FORMATS_H */
