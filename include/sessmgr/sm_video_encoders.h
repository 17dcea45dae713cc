/* Video encoders: the configuration, information and statistics records,
 * their enumerations and format names, and every encoder operation (open,
 * control, configure, query, enumerate, value names). The family names
 * encoders by numeric ID on the wire and accepts only result 0.
 * C99 and C++ clean; records are little-endian and packed to 4 bytes. */
#ifndef SESSMGR_SM_VIDEO_ENCODERS_H
#define SESSMGR_SM_VIDEO_ENCODERS_H

#include "sessmgr/sm_objects.h"
#include "sessmgr/sm_types.h"
#include "video_formats.h"

/* ---- SetFieldsFlag: which configuration fields a configure changes --------- */
#define SMGR_VIDENC_SET_INPUT_INTERFACE (1ull << 0)
#define SMGR_VIDENC_SET_SCALING_MATRIX (1ull << 1)
#define SMGR_VIDENC_SET_OUTPUT_RESOLUTION (1ull << 2)
#define SMGR_VIDENC_SET_BITRATE (1ull << 3)
#define SMGR_VIDENC_SET_PICTURE_RATE (1ull << 4)
#define SMGR_VIDENC_SET_GOP_SIZE (1ull << 5)
#define SMGR_VIDENC_SET_CLOSED_CAPTION (1ull << 6)
#define SMGR_VIDENC_SET_PTS_OFFSET (1ull << 7)
#define SMGR_VIDENC_SET_ASPECT_RATIO (1ull << 8)
#define SMGR_VIDENC_SET_TIME_CODE (1ull << 10)
#define SMGR_VIDENC_SET_GOP_STRUCTURE (1ull << 11)
#define SMGR_VIDENC_SET_STRICT_BITRATE (1ull << 12)
#define SMGR_VIDENC_SET_RESIZE_MODE (1ull << 13)
#define SMGR_VIDENC_SET_GOP_MODE (1ull << 14)
#define SMGR_VIDENC_SET_CHROMA_SUBSAMPLING (1ull << 15)
#define SMGR_VIDENC_SET_NUM_SLICES (1ull << 16)
#define SMGR_VIDENC_SET_DEBLOCK_FILTER (1ull << 17)
#define SMGR_VIDENC_SET_DEBLOCK_OFFSETS (1ull << 19) /* tc and beta offsets together */
#define SMGR_VIDENC_SET_ENCODING_PROFILE (1ull << 20)
#define SMGR_VIDENC_SET_SCENE_CHANGE_RESILIENCE (1ull << 21)
#define SMGR_VIDENC_SET_CODEC_ALGORITHM (1ull << 22)
#define SMGR_VIDENC_SET_SYSTEM_TC_COUNTING_MODE (1ull << 23)
#define SMGR_VIDENC_SET_INTRA_REFRESH (1ull << 24)
#define SMGR_VIDENC_SET_RATE_CONTROL_MODE (1ull << 25)
#define SMGR_VIDENC_SET_MAX_BITRATE (1ull << 26)
#define SMGR_VIDENC_SET_CPB_SIZE (1ull << 27)
#define SMGR_VIDENC_SET_MAX_PICTURE_SIZE_RATIO (1ull << 29)
#define SMGR_VIDENC_SET_DYNAMIC_RANGE_MODE (1ull << 30)
#define SMGR_VIDENC_SET_SKIP_SEQUENCE_LENGTH (1ull << 31)
#define SMGR_VIDENC_SET_TC_RESYNC (1ull << 32)
#define SMGR_VIDENC_SET_TC_RESYNC_HOUR (1ull << 33)
#define SMGR_VIDENC_SET_ANC_DATA_INPUT (1ull << 35)
/* Bits 9, 18, 28, 34 and 36-63 are unassigned and must be 0. */
#define SMGR_VIDENC_SET_ALL_ASSIGNED 0xBEFFBFDFFull

/* ---- Enumerations (32-bit) ---------------------------------------------------- */
#define SMGR_VIDENC_IF_BNC 0
#define SMGR_VIDENC_IF_BNC2 1
#define SMGR_VIDENC_IF_BNC3 2
#define SMGR_VIDENC_IF_BNC4 3

#define SMGR_VIDENC_ASPECT_RATIO_UNKNOWN (-1)
#define SMGR_VIDENC_ASPECT_RATIO_AUTO_DETECT 0
#define SMGR_VIDENC_ASPECT_RATIO_WSS_AFD 1
#define SMGR_VIDENC_ASPECT_RATIO_4_3 2
#define SMGR_VIDENC_ASPECT_RATIO_5_3 3
#define SMGR_VIDENC_ASPECT_RATIO_5_4 4
#define SMGR_VIDENC_ASPECT_RATIO_16_9 5
#define SMGR_VIDENC_ASPECT_RATIO_4_3_FF_CENTER_14_9 6
#define SMGR_VIDENC_ASPECT_RATIO_RESERVED 7
#define SMGR_VIDENC_ASPECT_RATIO_BOX_16_9_TOP 8
#define SMGR_VIDENC_ASPECT_RATIO_BOX_14_9_TOP 9
#define SMGR_VIDENC_ASPECT_RATIO_BOX_GREATER_THAN_16_9_CENTER 10
#define SMGR_VIDENC_ASPECT_RATIO_14_9 11
#define SMGR_VIDENC_ASPECT_RATIO_FULL_FORMAT 12
#define SMGR_VIDENC_ASPECT_RATIO_3_2 13
#define SMGR_VIDENC_ASPECT_RATIO_16_10 14
#define SMGR_VIDENC_ASPECT_RATIO_17_9 15
#define SMGR_VIDENC_ASPECT_RATIO_16_9_FR_CENTER_14_9 16
#define SMGR_VIDENC_ASPECT_RATIO_16_9_FR_CENTER_4_3 17
#define SMGR_VIDENC_ASPECT_RATIO_NONE 100

#define SMGR_VIDENC_TIME_CODE_NONE 0
#define SMGR_VIDENC_TIME_CODE_VITC 1
#define SMGR_VIDENC_TIME_CODE_SYSTEM 2

#define SMGR_VIDENC_SYSTEM_TC_UTC_CONVERSION 0
#define SMGR_VIDENC_SYSTEM_TC_SMPTE12M_1 1

#define SMGR_VIDENC_GOP_STRUCT_IP 0
#define SMGR_VIDENC_GOP_STRUCT_I 1
#define SMGR_VIDENC_GOP_STRUCT_IBP 2
#define SMGR_VIDENC_GOP_STRUCT_IBBP 3
#define SMGR_VIDENC_GOP_STRUCT_IBBBP 4
#define SMGR_VIDENC_GOP_STRUCT_IBBBBP 5
#define SMGR_VIDENC_GOP_STRUCT_IBBBBBP 6
#define SMGR_VIDENC_GOP_STRUCT_IBBBBBBBP 7 /* seven B pictures; there is no six-B value */

#define SMGR_VIDENC_GOP_MODE_NORMAL 0
#define SMGR_VIDENC_GOP_MODE_PYRAMIDAL 1
#define SMGR_VIDENC_GOP_MODE_LOW_DELAY_P 2
#define SMGR_VIDENC_GOP_MODE_LOW_DELAY_B 3
#define SMGR_VIDENC_GOP_MODE_ADAPTIVE 4
#define SMGR_VIDENC_GOP_MODE_NORMAL_B 5
#define SMGR_VIDENC_GOP_MODE_PYRAMIDAL_B 6

#define SMGR_VIDENC_RESIZE_MODE_SCALE 0
#define SMGR_VIDENC_RESIZE_MODE_CROP 1

#define SMGR_VIDENC_CHROMA_SUBSAMPLING_420_8_BIT 1
#define SMGR_VIDENC_CHROMA_SUBSAMPLING_420_10_BIT 2
#define SMGR_VIDENC_CHROMA_SUBSAMPLING_422_8_BIT 3
#define SMGR_VIDENC_CHROMA_SUBSAMPLING_422_10_BIT 4

#define SMGR_VIDENC_CODEC_ALGORITHM_H264 0
#define SMGR_VIDENC_CODEC_ALGORITHM_H265 1

#define SMGR_VIDENC_PROFILE_BASELINE 1
#define SMGR_VIDENC_PROFILE_MAIN 2
#define SMGR_VIDENC_PROFILE_HIGH 3
#define SMGR_VIDENC_PROFILE_HIGH_10 4
#define SMGR_VIDENC_PROFILE_HIGH_422 5
#define SMGR_VIDENC_PROFILE_MAIN_10 6
#define SMGR_VIDENC_PROFILE_MAIN_422_10 7

#define SMGR_VIDENC_ENTROPY_CODING_CAVLC 0
#define SMGR_VIDENC_ENTROPY_CODING_CABAC 1

#define SMGR_VIDENC_RATECONTROL_MODE_CBR 0
#define SMGR_VIDENC_RATECONTROL_MODE_VBR 1
#define SMGR_VIDENC_RATECONTROL_MODE_LOW_LATENCY 2

#define SMGR_VIDENC_SCALING_MATRIX_DEFAULT 0
#define SMGR_VIDENC_SCALING_MATRIX_NOISY 1

#define SMGR_VIDENC_DYNAMICRANGE_MODE_SDR 0
#define SMGR_VIDENC_DYNAMICRANGE_MODE_AUTO_DETECT 1
#define SMGR_VIDENC_DYNAMICRANGE_MODE_HDR_HLG 2
#define SMGR_VIDENC_DYNAMICRANGE_MODE_HDR_PQ 3

#define SMGR_VIDENC_STATE_STOPPED 0
#define SMGR_VIDENC_STATE_AWAIT_FRAMING 3
#define SMGR_VIDENC_STATE_NOT_ENCODING 5
#define SMGR_VIDENC_STATE_WORKING 7
#define SMGR_VIDENC_STATE_RESETTING 8
#define SMGR_VIDENC_STATE_FAILED 128

#define SMGR_TCSOURCE_NONE 0
#define SMGR_TCSOURCE_HIGH_PRECISION_TIMESTAMP 1
#define SMGR_TCSOURCE_SMPTE12M_TIMESTAMP 2
#define SMGR_TCSOURCE_LDS_TIMESTAMP 3
#define SMGR_TCSOURCE_SYSTEM_TIMESTAMP 4

#define SMGR_VIDENC_HEVCTIER_MAIN 0
#define SMGR_VIDENC_HEVCTIER_HIGH 1

/* H.264 levels: the level times ten. */
#define SMGR_H264_LEVELUNKNOWN (-1)
#define SMGR_H264_LEVEL1B 9
#define SMGR_H264_LEVEL1 10
#define SMGR_H264_LEVEL11 11
#define SMGR_H264_LEVEL12 12
#define SMGR_H264_LEVEL13 13
#define SMGR_H264_LEVEL2 20
#define SMGR_H264_LEVEL21 21
#define SMGR_H264_LEVEL22 22
#define SMGR_H264_LEVEL3 30
#define SMGR_H264_LEVEL31 31
#define SMGR_H264_LEVEL32 32
#define SMGR_H264_LEVEL4 40
#define SMGR_H264_LEVEL41 41
#define SMGR_H264_LEVEL42 42
#define SMGR_H264_LEVEL5 50
#define SMGR_H264_LEVEL51 51
#define SMGR_H264_LEVEL52 52
#define SMGR_H264_LEVEL60 60
#define SMGR_H264_LEVEL61 61
#define SMGR_H264_LEVEL62 62

/* H.265 levels: general_level_idc, the level times 30. */
#define SMGR_H265_LEVELUNKNOWN (-1)
#define SMGR_H265_LEVEL_10 30
#define SMGR_H265_LEVEL_20 60
#define SMGR_H265_LEVEL_21 63
#define SMGR_H265_LEVEL_30 90
#define SMGR_H265_LEVEL_31 93
#define SMGR_H265_LEVEL_40 120
#define SMGR_H265_LEVEL_41 123
#define SMGR_H265_LEVEL_50 150
#define SMGR_H265_LEVEL_51 153
#define SMGR_H265_LEVEL_52 156
#define SMGR_H265_LEVEL_60 180
#define SMGR_H265_LEVEL_61 183
#define SMGR_H265_LEVEL_62 186
#define SMGR_H265_LEVEL_85 255

/* ---- Input formats (64-bit VIDEO_FORMAT codes) -------------------------------
 * One per named packed format of the full-height rasters; no NATIVE, no
 * half-height and no rate-0 codes. */
#define SMGR_VIDENC_IN_FORMAT_AUTO_DETECT VIDEO_FORMAT_AUTO_DETECT
#define SMGR_VIDENC_IN_FORMAT_UNKNOWN VIDEO_FORMAT_UNKNOWN
#define SMGR_VIDENC_IN_FORMAT_CUSTOM VIDEO_FORMAT_CUSTOM
#define SMGR_VIDENC_IN_FORMAT_3840_2160_23P VIDEO_FORMAT_3840_2160_23P
#define SMGR_VIDENC_IN_FORMAT_3840_2160_24P VIDEO_FORMAT_3840_2160_24P
#define SMGR_VIDENC_IN_FORMAT_3840_2160_25P VIDEO_FORMAT_3840_2160_25P
#define SMGR_VIDENC_IN_FORMAT_3840_2160_29P VIDEO_FORMAT_3840_2160_29P
#define SMGR_VIDENC_IN_FORMAT_3840_2160_30P VIDEO_FORMAT_3840_2160_30P
#define SMGR_VIDENC_IN_FORMAT_3840_2160_50P VIDEO_FORMAT_3840_2160_50P
#define SMGR_VIDENC_IN_FORMAT_3840_2160_59P VIDEO_FORMAT_3840_2160_59P
#define SMGR_VIDENC_IN_FORMAT_3840_2160_60P VIDEO_FORMAT_3840_2160_60P
#define SMGR_VIDENC_IN_FORMAT_1920_1080_23P VIDEO_FORMAT_1920_1080_23P
#define SMGR_VIDENC_IN_FORMAT_1920_1080_24P VIDEO_FORMAT_1920_1080_24P
#define SMGR_VIDENC_IN_FORMAT_1920_1080_25P VIDEO_FORMAT_1920_1080_25P
#define SMGR_VIDENC_IN_FORMAT_1920_1080_29P VIDEO_FORMAT_1920_1080_29P
#define SMGR_VIDENC_IN_FORMAT_1920_1080_30P VIDEO_FORMAT_1920_1080_30P
#define SMGR_VIDENC_IN_FORMAT_1920_1080_50P VIDEO_FORMAT_1920_1080_50P
#define SMGR_VIDENC_IN_FORMAT_1920_1080_59P VIDEO_FORMAT_1920_1080_59P
#define SMGR_VIDENC_IN_FORMAT_1920_1080_60P VIDEO_FORMAT_1920_1080_60P
#define SMGR_VIDENC_IN_FORMAT_1920_1080_24I VIDEO_FORMAT_1920_1080_24I
#define SMGR_VIDENC_IN_FORMAT_1920_1080_25I VIDEO_FORMAT_1920_1080_25I
#define SMGR_VIDENC_IN_FORMAT_1920_1080_29I VIDEO_FORMAT_1920_1080_29I
#define SMGR_VIDENC_IN_FORMAT_1920_1080_30I VIDEO_FORMAT_1920_1080_30I
#define SMGR_VIDENC_IN_FORMAT_1280_720_23P VIDEO_FORMAT_1280_720_23P
#define SMGR_VIDENC_IN_FORMAT_1280_720_24P VIDEO_FORMAT_1280_720_24P
#define SMGR_VIDENC_IN_FORMAT_1280_720_25P VIDEO_FORMAT_1280_720_25P
#define SMGR_VIDENC_IN_FORMAT_1280_720_29P VIDEO_FORMAT_1280_720_29P
#define SMGR_VIDENC_IN_FORMAT_1280_720_30P VIDEO_FORMAT_1280_720_30P
#define SMGR_VIDENC_IN_FORMAT_1280_720_50P VIDEO_FORMAT_1280_720_50P
#define SMGR_VIDENC_IN_FORMAT_1280_720_59P VIDEO_FORMAT_1280_720_59P
#define SMGR_VIDENC_IN_FORMAT_1280_720_60P VIDEO_FORMAT_1280_720_60P
#define SMGR_VIDENC_IN_FORMAT_720_480_29I VIDEO_FORMAT_720_480_29I
#define SMGR_VIDENC_IN_FORMAT_720_480_30I VIDEO_FORMAT_720_480_30I
#define SMGR_VIDENC_IN_FORMAT_720_480_59P VIDEO_FORMAT_720_480_59P
#define SMGR_VIDENC_IN_FORMAT_720_480_60P VIDEO_FORMAT_720_480_60P
#define SMGR_VIDENC_IN_FORMAT_720_576_25I VIDEO_FORMAT_720_576_25I
#define SMGR_VIDENC_IN_FORMAT_720_576_50P VIDEO_FORMAT_720_576_50P
#define SMGR_VIDENC_IN_FORMAT_704_576_25I VIDEO_FORMAT_704_576_25I
#define SMGR_VIDENC_IN_FORMAT_704_576_50P VIDEO_FORMAT_704_576_50P
#define SMGR_VIDENC_IN_FORMAT_640_480_60P VIDEO_FORMAT_640_480_60P
#define SMGR_VIDENC_IN_FORMAT_640_480_75P VIDEO_FORMAT_640_480_75P
#define SMGR_VIDENC_IN_FORMAT_640_480_85P VIDEO_FORMAT_640_480_85P
#define SMGR_VIDENC_IN_FORMAT_800_600_60P VIDEO_FORMAT_800_600_60P
#define SMGR_VIDENC_IN_FORMAT_800_600_75P VIDEO_FORMAT_800_600_75P
#define SMGR_VIDENC_IN_FORMAT_800_600_85P VIDEO_FORMAT_800_600_85P
#define SMGR_VIDENC_IN_FORMAT_1024_768_60P VIDEO_FORMAT_1024_768_60P
#define SMGR_VIDENC_IN_FORMAT_1024_768_75P VIDEO_FORMAT_1024_768_75P
#define SMGR_VIDENC_IN_FORMAT_1024_768_85P VIDEO_FORMAT_1024_768_85P
#define SMGR_VIDENC_IN_FORMAT_1152_864_60P VIDEO_FORMAT_1152_864_60P
#define SMGR_VIDENC_IN_FORMAT_1152_864_75P VIDEO_FORMAT_1152_864_75P
#define SMGR_VIDENC_IN_FORMAT_1152_864_85P VIDEO_FORMAT_1152_864_85P
#define SMGR_VIDENC_IN_FORMAT_1280_768_60P VIDEO_FORMAT_1280_768_60P
#define SMGR_VIDENC_IN_FORMAT_1280_768_75P VIDEO_FORMAT_1280_768_75P
#define SMGR_VIDENC_IN_FORMAT_1280_768_85P VIDEO_FORMAT_1280_768_85P
#define SMGR_VIDENC_IN_FORMAT_1280_800_60P VIDEO_FORMAT_1280_800_60P
#define SMGR_VIDENC_IN_FORMAT_1280_800_75P VIDEO_FORMAT_1280_800_75P
#define SMGR_VIDENC_IN_FORMAT_1280_800_85P VIDEO_FORMAT_1280_800_85P
#define SMGR_VIDENC_IN_FORMAT_1280_960_59P VIDEO_FORMAT_1280_960_59P
#define SMGR_VIDENC_IN_FORMAT_1280_1024_60P VIDEO_FORMAT_1280_1024_60P
#define SMGR_VIDENC_IN_FORMAT_1280_1024_75P VIDEO_FORMAT_1280_1024_75P
#define SMGR_VIDENC_IN_FORMAT_1280_1024_85P VIDEO_FORMAT_1280_1024_85P
#define SMGR_VIDENC_IN_FORMAT_1360_768_60P VIDEO_FORMAT_1360_768_60P
#define SMGR_VIDENC_IN_FORMAT_1360_768_75P VIDEO_FORMAT_1360_768_75P
#define SMGR_VIDENC_IN_FORMAT_1400_1050_60P VIDEO_FORMAT_1400_1050_60P
#define SMGR_VIDENC_IN_FORMAT_1400_1050_75P VIDEO_FORMAT_1400_1050_75P
#define SMGR_VIDENC_IN_FORMAT_1440_900_60P VIDEO_FORMAT_1440_900_60P
#define SMGR_VIDENC_IN_FORMAT_1440_900_75P VIDEO_FORMAT_1440_900_75P
#define SMGR_VIDENC_IN_FORMAT_1600_900_60P VIDEO_FORMAT_1600_900_60P
#define SMGR_VIDENC_IN_FORMAT_1600_1200_60P VIDEO_FORMAT_1600_1200_60P
#define SMGR_VIDENC_IN_FORMAT_1680_1050_60P VIDEO_FORMAT_1680_1050_60P
#define SMGR_VIDENC_IN_FORMAT_1920_1200_60P VIDEO_FORMAT_1920_1200_60P

/* ---- Output resolutions: packed codes without a rate (aliases share a value) ---- */
#define SMGR_VIDENC_OUT_RESOLUTION_CLONE_INPUT VIDEO_FORMAT_AUTO_DETECT
#define SMGR_VIDENC_OUT_RESOLUTION_CUSTOM VIDEO_FORMAT_CUSTOM
#define SMGR_VIDENC_OUT_RESOLUTION_3840_2160 VIDEO_FORMAT_CODE(3840, 2160, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_2160P SMGR_VIDENC_OUT_RESOLUTION_3840_2160
#define SMGR_VIDENC_OUT_RESOLUTION_1920_1080 VIDEO_FORMAT_CODE(1920, 1080, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_1080P SMGR_VIDENC_OUT_RESOLUTION_1920_1080
#define SMGR_VIDENC_OUT_RESOLUTION_1920_1080I VIDEO_FORMAT_CODE(1920, 1080, 0, 1)
#define SMGR_VIDENC_OUT_RESOLUTION_1080I SMGR_VIDENC_OUT_RESOLUTION_1920_1080I
#define SMGR_VIDENC_OUT_RESOLUTION_1440_1080 VIDEO_FORMAT_CODE(1440, 1080, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_1440_1080I VIDEO_FORMAT_CODE(1440, 1080, 0, 1)
#define SMGR_VIDENC_OUT_RESOLUTION_1280_720 VIDEO_FORMAT_CODE(1280, 720, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_720P SMGR_VIDENC_OUT_RESOLUTION_1280_720
#define SMGR_VIDENC_OUT_RESOLUTION_960_1080 VIDEO_FORMAT_CODE(960, 1080, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_960_1080I VIDEO_FORMAT_CODE(960, 1080, 0, 1)
#define SMGR_VIDENC_OUT_RESOLUTION_960_720 VIDEO_FORMAT_CODE(960, 720, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_640_720 VIDEO_FORMAT_CODE(640, 720, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_720_480 VIDEO_FORMAT_CODE(720, 480, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_720_480P SMGR_VIDENC_OUT_RESOLUTION_720_480
#define SMGR_VIDENC_OUT_RESOLUTION_480P SMGR_VIDENC_OUT_RESOLUTION_720_480
#define SMGR_VIDENC_OUT_RESOLUTION_720_480I VIDEO_FORMAT_CODE(720, 480, 0, 1)
#define SMGR_VIDENC_OUT_RESOLUTION_720_576 VIDEO_FORMAT_CODE(720, 576, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_720_576P SMGR_VIDENC_OUT_RESOLUTION_720_576
#define SMGR_VIDENC_OUT_RESOLUTION_576P SMGR_VIDENC_OUT_RESOLUTION_720_576
#define SMGR_VIDENC_OUT_RESOLUTION_720_576I VIDEO_FORMAT_CODE(720, 576, 0, 1)
#define SMGR_VIDENC_OUT_RESOLUTION_704_576P VIDEO_FORMAT_CODE(704, 576, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_704_576I VIDEO_FORMAT_CODE(704, 576, 0, 1)
#define SMGR_VIDENC_OUT_RESOLUTION_540_480 VIDEO_FORMAT_CODE(540, 480, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_540_480P SMGR_VIDENC_OUT_RESOLUTION_540_480
#define SMGR_VIDENC_OUT_RESOLUTION_540_480I VIDEO_FORMAT_CODE(540, 480, 0, 1)
#define SMGR_VIDENC_OUT_RESOLUTION_540_576 VIDEO_FORMAT_CODE(540, 576, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_540_576P SMGR_VIDENC_OUT_RESOLUTION_540_576
#define SMGR_VIDENC_OUT_RESOLUTION_540_576I VIDEO_FORMAT_CODE(540, 576, 0, 1)
#define SMGR_VIDENC_OUT_RESOLUTION_704_240 VIDEO_FORMAT_CODE(704, 240, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_704_256 VIDEO_FORMAT_CODE(704, 256, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_704_288 VIDEO_FORMAT_CODE(704, 288, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_448_336P VIDEO_FORMAT_CODE(448, 336, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_352_480 VIDEO_FORMAT_CODE(352, 480, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_352_480P SMGR_VIDENC_OUT_RESOLUTION_352_480
#define SMGR_VIDENC_OUT_RESOLUTION_352_480I VIDEO_FORMAT_CODE(352, 480, 0, 1)
#define SMGR_VIDENC_OUT_RESOLUTION_352_576 VIDEO_FORMAT_CODE(352, 576, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_352_576P SMGR_VIDENC_OUT_RESOLUTION_352_576
#define SMGR_VIDENC_OUT_RESOLUTION_352_576I VIDEO_FORMAT_CODE(352, 576, 0, 1)
#define SMGR_VIDENC_OUT_RESOLUTION_352_240 VIDEO_FORMAT_CODE(352, 240, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_352_240P SMGR_VIDENC_OUT_RESOLUTION_352_240
#define SMGR_VIDENC_OUT_RESOLUTION_352_240I VIDEO_FORMAT_CODE(352, 240, 0, 1)
#define SMGR_VIDENC_OUT_RESOLUTION_352_288 VIDEO_FORMAT_CODE(352, 288, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_352_288P SMGR_VIDENC_OUT_RESOLUTION_352_288
#define SMGR_VIDENC_OUT_RESOLUTION_352_288I VIDEO_FORMAT_CODE(352, 288, 0, 1)
#define SMGR_VIDENC_OUT_RESOLUTION_VGA_640_480 VIDEO_FORMAT_CODE(640, 480, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_SVGA_800_600 VIDEO_FORMAT_CODE(800, 600, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_XGA_1024_768 VIDEO_FORMAT_CODE(1024, 768, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_1152_864 VIDEO_FORMAT_CODE(1152, 864, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_WXGA_1280_768 VIDEO_FORMAT_CODE(1280, 768, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_1280_800 VIDEO_FORMAT_CODE(1280, 800, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_1280_960 VIDEO_FORMAT_CODE(1280, 960, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_SXGA_1280_1024 VIDEO_FORMAT_CODE(1280, 1024, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_1360_768 VIDEO_FORMAT_CODE(1360, 768, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_SXGA_1400_1050 VIDEO_FORMAT_CODE(1400, 1050, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_1440_900 VIDEO_FORMAT_CODE(1440, 900, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_1600_900 VIDEO_FORMAT_CODE(1600, 900, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_1600_1200 VIDEO_FORMAT_CODE(1600, 1200, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_1680_1050 VIDEO_FORMAT_CODE(1680, 1050, 0, 0)
#define SMGR_VIDENC_OUT_RESOLUTION_1920_1200 VIDEO_FORMAT_CODE(1920, 1200, 0, 0)

SMGR_STATIC_ASSERT(SMGR_VIDENC_OUT_RESOLUTION_1080I == 0x80000001E0087001ull, videnc_out_1080i);
SMGR_STATIC_ASSERT(SMGR_VIDENC_OUT_RESOLUTION_448_336P == 0x800000007002A000ull, videnc_out_448_336p);

#pragma pack(push, 4)

/* What a configure sends (148 bytes); SetFieldsFlag selects the fields applied. */
typedef struct tagSMGR_VIDEO_ENCODER_CFG {
  UINT nSize;
  uint64_t SetFieldsFlag;
  int32_t enInputInterface;
  VIDEO_FORMAT enOutputResolution;
  UINT nBitRateInKbps;
  UINT nEncodedPictureRate;
  UINT nGOPSize;
  BOOL bExtractClosedCaption;
  int32_t nPTSOffset;
  int32_t enAspectRatio;
  int32_t enTimeCode;
  int32_t enGOPStructure;
  int32_t enResizeMode;
  BOOL bStrictBitrate;
  UINT SkipSequenceLength;
  int32_t enGOPMode;
  int32_t enChromaSubSampling;
  UINT nNumSlices;
  BOOL bDeblockingFilter;
  int32_t DeblockTcOffset;
  int32_t DeblockBetaOffset;
  BOOL bUseIntraRefresh;
  int32_t enEncodingProfile;
  BOOL bSceneChangeResilience;
  int32_t enCodecAlgorithm;
  int32_t enRateControlMode;
  UINT nMaxBitRateInKbps;
  UINT nCPBSizeMs;
  float MaxPictureSizeRatio;
  int32_t enScalingMatrix;
  int32_t enSystemTCCountingMode;
  BOOL bEnableTCResync;
  UINT TCResyncHour;
  int32_t enDynamicRangeMode;
  int32_t enANCDataInput;
} SMGR_VIDEO_ENCODER_CFG;

/* Name, ID and effective configuration with the adapted values (220 bytes). */

typedef struct tagSMGR_VIDEO_ENCODER_INFO {
  UINT nSize;
  char szName[SMGR_OBJECT_NAME_SIZE];
  UINT nID;
  int32_t enInputInterface;
  VIDEO_FORMAT enOutputResolution;
  UINT nBitRateInKbps;
  UINT nEncodedPictureRate;
  UINT nGOPSize;
  BOOL bExtractClosedCaption;
  int32_t nPTSOffset;
  int32_t enAspectRatio;
  int32_t enTimeCode;
  int32_t enGOPStructure;
  int32_t enResizeMode;
  BOOL bStrictBitrate;
  UINT SkipSequenceLength;
  int32_t enGOPMode;
  int32_t enChromaSubSampling;
  UINT nNumSlices;
  BOOL bDeblockingFilter;
  int32_t DeblockTcOffset;
  int32_t DeblockBetaOffset;
  BOOL bUseIntraRefresh;
  int32_t enEncodingProfile;
  BOOL bSceneChangeResilience;
  int32_t enCodecAlgorithm;
  int32_t enRateControlMode;
  UINT nMaxBitRateInKbps;
  UINT nCPBSizeMs;
  float MaxPictureSizeRatio;
  int32_t enScalingMatrix;
  BOOL bBitRateWasAdapted;
  UINT nAdaptedBitRateInKbps;
  BOOL bDynamicPartialImageSkip;
  int32_t enSystemTCCountingMode;
  BOOL bEnableTCResync;
  UINT TCResyncHour;
  int32_t enDynamicRangeMode;
  int32_t enANCDataInput;
} SMGR_VIDEO_ENCODER_INFO;

/* Run-time statistics (304 bytes). */

typedef struct tagSMGR_VIDEO_ENCODER_STATS {
  UINT nSize;
  int32_t enState;
  uint64_t nUpTimeInSecs;
  BOOL bInputPresent;
  VIDEO_FORMAT enInputFormat;
  VIDEO_FORMAT enOutputResolution;
  SMGR_COUNTER nEncodedFrames;
  SMGR_COUNTER nEncodedNALs;
  SMGR_COUNTER nEncodedBytes;
  SMGR_COUNTER nErrors;
  SMGR_COUNTER nResets;
  UINT nLastResetUPTimeInSecs;
  int32_t nLoadPercentage;
  BOOL bClosedCaptionEnabled;
  SMGR_COUNTER nClosedCaptionBytes;
  int64_t nCurrentPTS;
  int32_t enAspectRatio;
  SMGR_COUNTER nAFDBytes;
  UINT nLastStateChangeUpTimeInSecs;
  UINT nLastStatsResetUpTimeInSecs;
  int32_t nTCHours;
  int32_t nTCMinutes;
  int32_t nTCSeconds;
  int32_t nTCFames;
  uint64_t UTCTime;
  SMGR_COUNTER nTimeSourceSwitches;
  int32_t enTimeCodeSource;
  SMGR_COUNTER nCSDBytes;
  SMGR_COUNTER nCDPErrors;
  UINT nBitRateInKbps;
  int32_t nFrameRate;
  int32_t enInputInterfaceType;
  SMGR_COUNTER nDroppedFrames;
  UINT nLastDroppedFrameUPTimeInSecs;
  int64_t nLastIDRFramePTS;
  UINT nSPSNumUnitsInTicks;
  UINT nSPSTimeScale;
  double dPreciseFrameRate;
  int32_t enH26XProfile;
  int32_t enH26XLevel;
  int32_t enHEVCTier;
  UINT nNumSlices;
  BOOL bSubFrameLatency;
  BOOL bLatencyMeasured;
  UINT nMinLatencyInMS;
  UINT nMaxLatencyInMS;
  UINT nAverageLatencyInMS;
  UINT nAllTimeMinLatencyInMS;
  UINT nAllTimeMaxLatencyInMS;
  int32_t enEntropyCoding;
  UINT MaxPictureSizeInBits;
  UINT nCPBSizeMs;
  UINT SkipSequenceLength;
  UINT ColorPrimaries;
  UINT TransferCharacteristics;
  UINT MatrixCoefficients;
  double nScalerLoadPercentage;
} SMGR_VIDEO_ENCODER_STATS;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGR_VIDEO_ENCODER_CFG) == 148, videnc_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, nSize) == 0, videnc_cfg_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, SetFieldsFlag) == 4, videnc_cfg_SetFieldsFlag);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enInputInterface) == 12, videnc_cfg_enInputInterface);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enOutputResolution) == 16, videnc_cfg_enOutputResolution);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, nBitRateInKbps) == 24, videnc_cfg_nBitRateInKbps);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, nEncodedPictureRate) == 28,
                   videnc_cfg_nEncodedPictureRate);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, nGOPSize) == 32, videnc_cfg_nGOPSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, bExtractClosedCaption) == 36,
                   videnc_cfg_bExtractClosedCaption);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, nPTSOffset) == 40, videnc_cfg_nPTSOffset);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enAspectRatio) == 44, videnc_cfg_enAspectRatio);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enTimeCode) == 48, videnc_cfg_enTimeCode);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enGOPStructure) == 52, videnc_cfg_enGOPStructure);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enResizeMode) == 56, videnc_cfg_enResizeMode);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, bStrictBitrate) == 60, videnc_cfg_bStrictBitrate);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, SkipSequenceLength) == 64, videnc_cfg_SkipSequenceLength);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enGOPMode) == 68, videnc_cfg_enGOPMode);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enChromaSubSampling) == 72,
                   videnc_cfg_enChromaSubSampling);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, nNumSlices) == 76, videnc_cfg_nNumSlices);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, bDeblockingFilter) == 80, videnc_cfg_bDeblockingFilter);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, DeblockTcOffset) == 84, videnc_cfg_DeblockTcOffset);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, DeblockBetaOffset) == 88, videnc_cfg_DeblockBetaOffset);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, bUseIntraRefresh) == 92, videnc_cfg_bUseIntraRefresh);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enEncodingProfile) == 96, videnc_cfg_enEncodingProfile);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, bSceneChangeResilience) == 100,
                   videnc_cfg_bSceneChangeResilience);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enCodecAlgorithm) == 104, videnc_cfg_enCodecAlgorithm);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enRateControlMode) == 108, videnc_cfg_enRateControlMode);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, nMaxBitRateInKbps) == 112, videnc_cfg_nMaxBitRateInKbps);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, nCPBSizeMs) == 116, videnc_cfg_nCPBSizeMs);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, MaxPictureSizeRatio) == 120,
                   videnc_cfg_MaxPictureSizeRatio);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enScalingMatrix) == 124, videnc_cfg_enScalingMatrix);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enSystemTCCountingMode) == 128,
                   videnc_cfg_enSystemTCCountingMode);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, bEnableTCResync) == 132, videnc_cfg_bEnableTCResync);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, TCResyncHour) == 136, videnc_cfg_TCResyncHour);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enDynamicRangeMode) == 140,
                   videnc_cfg_enDynamicRangeMode);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_CFG, enANCDataInput) == 144, videnc_cfg_enANCDataInput);

SMGR_STATIC_ASSERT(sizeof(SMGR_VIDEO_ENCODER_INFO) == 220, videnc_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, nSize) == 0, videnc_info_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, szName) == 4, videnc_info_szName);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, nID) == 68, videnc_info_nID);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enInputInterface) == 72, videnc_info_enInputInterface);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enOutputResolution) == 76,
                   videnc_info_enOutputResolution);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, nBitRateInKbps) == 84, videnc_info_nBitRateInKbps);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, nEncodedPictureRate) == 88,
                   videnc_info_nEncodedPictureRate);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, nGOPSize) == 92, videnc_info_nGOPSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, bExtractClosedCaption) == 96,
                   videnc_info_bExtractClosedCaption);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, nPTSOffset) == 100, videnc_info_nPTSOffset);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enAspectRatio) == 104, videnc_info_enAspectRatio);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enTimeCode) == 108, videnc_info_enTimeCode);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enGOPStructure) == 112, videnc_info_enGOPStructure);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enResizeMode) == 116, videnc_info_enResizeMode);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, bStrictBitrate) == 120, videnc_info_bStrictBitrate);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, SkipSequenceLength) == 124,
                   videnc_info_SkipSequenceLength);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enGOPMode) == 128, videnc_info_enGOPMode);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enChromaSubSampling) == 132,
                   videnc_info_enChromaSubSampling);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, nNumSlices) == 136, videnc_info_nNumSlices);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, bDeblockingFilter) == 140,
                   videnc_info_bDeblockingFilter);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, DeblockTcOffset) == 144, videnc_info_DeblockTcOffset);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, DeblockBetaOffset) == 148,
                   videnc_info_DeblockBetaOffset);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, bUseIntraRefresh) == 152, videnc_info_bUseIntraRefresh);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enEncodingProfile) == 156,
                   videnc_info_enEncodingProfile);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, bSceneChangeResilience) == 160,
                   videnc_info_bSceneChangeResilience);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enCodecAlgorithm) == 164, videnc_info_enCodecAlgorithm);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enRateControlMode) == 168,
                   videnc_info_enRateControlMode);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, nMaxBitRateInKbps) == 172,
                   videnc_info_nMaxBitRateInKbps);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, nCPBSizeMs) == 176, videnc_info_nCPBSizeMs);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, MaxPictureSizeRatio) == 180,
                   videnc_info_MaxPictureSizeRatio);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enScalingMatrix) == 184, videnc_info_enScalingMatrix);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, bBitRateWasAdapted) == 188,
                   videnc_info_bBitRateWasAdapted);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, nAdaptedBitRateInKbps) == 192,
                   videnc_info_nAdaptedBitRateInKbps);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, bDynamicPartialImageSkip) == 196,
                   videnc_info_bDynamicPartialImageSkip);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enSystemTCCountingMode) == 200,
                   videnc_info_enSystemTCCountingMode);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, bEnableTCResync) == 204, videnc_info_bEnableTCResync);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, TCResyncHour) == 208, videnc_info_TCResyncHour);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enDynamicRangeMode) == 212,
                   videnc_info_enDynamicRangeMode);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_INFO, enANCDataInput) == 216, videnc_info_enANCDataInput);

SMGR_STATIC_ASSERT(sizeof(SMGR_VIDEO_ENCODER_STATS) == 304, videnc_stats_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nSize) == 0, videnc_stats_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, enState) == 4, videnc_stats_enState);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nUpTimeInSecs) == 8, videnc_stats_nUpTimeInSecs);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, bInputPresent) == 16, videnc_stats_bInputPresent);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, enInputFormat) == 20, videnc_stats_enInputFormat);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, enOutputResolution) == 28,
                   videnc_stats_enOutputResolution);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nEncodedFrames) == 36, videnc_stats_nEncodedFrames);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nEncodedNALs) == 44, videnc_stats_nEncodedNALs);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nEncodedBytes) == 52, videnc_stats_nEncodedBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nErrors) == 60, videnc_stats_nErrors);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nResets) == 68, videnc_stats_nResets);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nLastResetUPTimeInSecs) == 76,
                   videnc_stats_nLastResetUPTimeInSecs);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nLoadPercentage) == 80, videnc_stats_nLoadPercentage);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, bClosedCaptionEnabled) == 84,
                   videnc_stats_bClosedCaptionEnabled);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nClosedCaptionBytes) == 88,
                   videnc_stats_nClosedCaptionBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nCurrentPTS) == 96, videnc_stats_nCurrentPTS);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, enAspectRatio) == 104, videnc_stats_enAspectRatio);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nAFDBytes) == 108, videnc_stats_nAFDBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nLastStateChangeUpTimeInSecs) == 116,
                   videnc_stats_nLastStateChangeUpTimeInSecs);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nLastStatsResetUpTimeInSecs) == 120,
                   videnc_stats_nLastStatsResetUpTimeInSecs);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nTCHours) == 124, videnc_stats_nTCHours);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nTCMinutes) == 128, videnc_stats_nTCMinutes);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nTCSeconds) == 132, videnc_stats_nTCSeconds);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nTCFames) == 136, videnc_stats_nTCFames);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, UTCTime) == 140, videnc_stats_UTCTime);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nTimeSourceSwitches) == 148,
                   videnc_stats_nTimeSourceSwitches);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, enTimeCodeSource) == 156,
                   videnc_stats_enTimeCodeSource);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nCSDBytes) == 160, videnc_stats_nCSDBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nCDPErrors) == 168, videnc_stats_nCDPErrors);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nBitRateInKbps) == 176, videnc_stats_nBitRateInKbps);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nFrameRate) == 180, videnc_stats_nFrameRate);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, enInputInterfaceType) == 184,
                   videnc_stats_enInputInterfaceType);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nDroppedFrames) == 188, videnc_stats_nDroppedFrames);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nLastDroppedFrameUPTimeInSecs) == 196,
                   videnc_stats_nLastDroppedFrameUPTimeInSecs);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nLastIDRFramePTS) == 200,
                   videnc_stats_nLastIDRFramePTS);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nSPSNumUnitsInTicks) == 208,
                   videnc_stats_nSPSNumUnitsInTicks);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nSPSTimeScale) == 212, videnc_stats_nSPSTimeScale);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, dPreciseFrameRate) == 216,
                   videnc_stats_dPreciseFrameRate);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, enH26XProfile) == 224, videnc_stats_enH26XProfile);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, enH26XLevel) == 228, videnc_stats_enH26XLevel);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, enHEVCTier) == 232, videnc_stats_enHEVCTier);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nNumSlices) == 236, videnc_stats_nNumSlices);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, bSubFrameLatency) == 240,
                   videnc_stats_bSubFrameLatency);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, bLatencyMeasured) == 244,
                   videnc_stats_bLatencyMeasured);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nMinLatencyInMS) == 248, videnc_stats_nMinLatencyInMS);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nMaxLatencyInMS) == 252, videnc_stats_nMaxLatencyInMS);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nAverageLatencyInMS) == 256,
                   videnc_stats_nAverageLatencyInMS);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nAllTimeMinLatencyInMS) == 260,
                   videnc_stats_nAllTimeMinLatencyInMS);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nAllTimeMaxLatencyInMS) == 264,
                   videnc_stats_nAllTimeMaxLatencyInMS);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, enEntropyCoding) == 268, videnc_stats_enEntropyCoding);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, MaxPictureSizeInBits) == 272,
                   videnc_stats_MaxPictureSizeInBits);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nCPBSizeMs) == 276, videnc_stats_nCPBSizeMs);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, SkipSequenceLength) == 280,
                   videnc_stats_SkipSequenceLength);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, ColorPrimaries) == 284, videnc_stats_ColorPrimaries);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, TransferCharacteristics) == 288,
                   videnc_stats_TransferCharacteristics);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, MatrixCoefficients) == 292,
                   videnc_stats_MatrixCoefficients);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_ENCODER_STATS, nScalerLoadPercentage) == 296,
                   videnc_stats_nScalerLoadPercentage);

/* ---- Operations ------------------------------------------------------------
 * Every operation returns TRUE on success. Invalid arguments, and a library
 * that is not initialised, give last error 2 (this family never reports 14).
 * Daemon failures set the last error only for open, start, stop, reset,
 * configure and enumerate; the others return FALSE and leave it untouched. */

SMGR_EXTERN_C_BEGIN

/** Opens an encoder by name (at most 63 characters). A name already open in
 * this process, or another name of the same encoder ID, returns the same
 * handle with its count raised. *phEncoder is NULL on failure. */
SMGR_API BOOL SessMgr_OpenVideoEncoder(const char* szEncoderName, HVIDENC* phEncoder);
/** Releases one open of the handle; local, no message. The caller's variable
 * is kept. Not checked against initialisation. */
SMGR_API BOOL SessMgr_CloseVideoEncoder(HVIDENC* phEncoder);
/** Starts the encoder. */
SMGR_API BOOL SessMgr_StartVideoEncoder(HVIDENC hEncoder);
/** Stops the encoder. */
SMGR_API BOOL SessMgr_StopVideoEncoder(HVIDENC hEncoder);
/** Resets the encoder. */
SMGR_API BOOL SessMgr_ResetVideoEncoder(HVIDENC hEncoder);
/** Sends the first min(pCfg->nSize, 148) bytes of pCfg (the rest as zeros);
 * the daemon checks values and applies only the fields flagged in SetFieldsFlag. */
SMGR_API BOOL SessMgr_ConfigureVideoEncoder(HVIDENC hEncoder, const SMGR_VIDEO_ENCODER_CFG* pCfg);
/** Reads name, ID and effective configuration: min(pInfo->nSize, 220) bytes are
 * copied and written back into pInfo->nSize. Set nSize first. */
SMGR_API BOOL SessMgr_GetVideoEncoderInfo(HVIDENC hEncoder, SMGR_VIDEO_ENCODER_INFO* pInfo);
/** Reads the statistics: min(pStats->nSize, 304) bytes, written back into nSize. */
SMGR_API BOOL SessMgr_GetVideoEncoderStats(HVIDENC hEncoder, SMGR_VIDEO_ENCODER_STATS* pStats);
/** Zeroes the encoder's statistics. */
SMGR_API BOOL SessMgr_ResetVideoEncoderStats(HVIDENC hEncoder);
/** Passes an opaque command to the daemon. With pnCmdDataSize non-NULL,
 * *pnCmdDataSize (at most 256) bytes of pvCmdData go with it and a non-empty
 * reply replaces them (and the size); a reply larger than *pnCmdDataSize
 * is not copied and the call fails. */
SMGR_API BOOL SessMgr_ControlVideoEncoder(HVIDENC hEncoder, int enCommand, void* pvCmdData,
                                          size_t* pnCmdDataSize);
/** Writes the sprop-parameter-sets text "<base64 SPS>,<base64 PPS>" into
 * szBuffer (cut to *pnSize) and sets *pnSize to the full text length. */
SMGR_API BOOL SessMgr_GetVideoEncoderSPROP(HVIDENC hEncoder, char* szBuffer, size_t* pnSize);
/** Lists encoders page by page: asks for nBuffSize / 220 records from nOffset.
 * Clears the last error first; needs no initialisation check (it fails to
 * send instead). A daemon failure sets the last error and errno to Result. */
SMGR_API BOOL SessMgr_EnumerateVideoEncoders(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                             UINT* pnTotalEncoderCount, UINT* pnReturnedEncoders,
                                             size_t* pnElementSize);
/** Name of the encoder at index nOffset of the daemon's list; last error 26
 * when there is none. */
SMGR_API BOOL SessMgr_GetVideoEncoderNameAtIndex(UINT nOffset, char* szBuffer, size_t nSize);

/* Value names: each writes the text of a value into szBuffer (cut to nSize)
 * and returns szBuffer; a NULL buffer or a zero size returns the constant
 * "Invalid input buffer". */
/** "STOPPED", "AWAIT FRAMING" (3 and 5), "WORKING", "RESETTING", "FAILED"; "(Invalid:%d)". */
SMGR_API char* SessMgr_GetVideoEncoderStateString(int enState, char* szBuffer, size_t nSize);
/** "BNC-1".."BNC-4" (SDI) or "1".."4" (ST 2110); fallback cut to 8 bytes. */
SMGR_API char* SessMgr_GetVideoEncoderInputTypeString(int enInputType, char* szBuffer, size_t nSize);
/** Aspect ratio names ("Auto-Detect", "16:9", ...); "(Invalid:%d)". */
SMGR_API char* SessMgr_GetVideoEncoderAspectRatioString(int enAspectRatio, char* szBuffer, size_t nSize);
/** "None", "VIDEO", "SYSTEM"; "(Invalid:%d)". */
SMGR_API char* SessMgr_GetVideoEncoderTimeCodeString(int enTimeCode, char* szBuffer, size_t nSize);
/** Time-code source names; "(Invalid:%d)". */
SMGR_API char* SessMgr_GetVideoEncoderTimeCodeSourceString(int enSource, char* szBuffer, size_t nSize);
/** "UTC-Conversion", "SMPTE12M-1"; "(Invalid:%d)". */
SMGR_API char* SessMgr_GetVideoEncoderSystemTCModeString(int enMode, char* szBuffer, size_t nSize);
/** "IP", "I", "IBP", ... "IBBBBBBBP"; "(Invalid:%d)". */
SMGR_API char* SessMgr_GetVideoEncoderGOPStructureString(int enStructure, char* szBuffer, size_t nSize);
/** "Normal", "Pyramidal", "LowDelayP", ...; "(Invalid:%d)". */
SMGR_API char* SessMgr_GetVideoEncoderGOPModeString(int enMode, char* szBuffer, size_t nSize);
/** "Scale", "Crop"; "(Invalid:%d)". */
SMGR_API char* SessMgr_GetVideoResizeModeString(int enMode, char* szBuffer, size_t nSize);
/** "4:2:0 8-bit", ...; "(Invalid:%d)". */
SMGR_API char* SessMgr_GetVideoEncoderChromaSubSamplingString(int enChroma, char* szBuffer, size_t nSize);
/** "Baseline", "Main", "High", ...; "(Invalid:%d)". */
SMGR_API char* SessMgr_GetVideoEncoderEncodingProfileString(int enProfile, char* szBuffer, size_t nSize);
/** "H.264", "H.265"; "<unknown>". */
SMGR_API char* SessMgr_GetVideoEncoderCodecAlgorithmString(int enCodec, char* szBuffer, size_t nSize);
/** "CAVLC", "CABAC"; "<unknown>". */
SMGR_API char* SessMgr_GetVideoEncoderEntropyCodingString(int enCoding, char* szBuffer, size_t nSize);
/** "CBR", "CVBR", "LowLatencyVBR"; "<unknown>". */
SMGR_API char* SessMgr_GetVideoEncoderRateControlModeString(int enMode, char* szBuffer, size_t nSize);
/** "Default", "Noisy"; "<unknown>". */
SMGR_API char* SessMgr_GetVideoEncoderScalingMatrixString(int enMatrix, char* szBuffer, size_t nSize);
/** "Main", "High"; "<unknown>". */
SMGR_API char* SessMgr_GetVideoEncoderHEVCTierString(int enTier, char* szBuffer, size_t nSize);
/** "SDR", "Auto-Detect", "HDR-HLG", "HDR-PQ"; "(Invalid:%d)". */
SMGR_API char* SessMgr_GetVideoEncoderDynamicRangeModeString(int enMode, char* szBuffer, size_t nSize);
/** "1b", "1", "1.1", ... "6.2"; "(N/A)". */
SMGR_API char* SessMgr_GetVideoEncoderH264LevelString(int enLevel, char* szBuffer, size_t nSize);
/** "1", "2", "2.1", "3.0", "3.1", "4", ... "8.5"; "(N/A)". */
SMGR_API char* SessMgr_GetVideoEncoderH265LevelString(int enLevel, char* szBuffer, size_t nSize);
/** H.273 colour primaries ("BT.709", ...); "(Unknown:%d)". */
SMGR_API char* SessMgr_GetVideoEncoderInputColorPrimariesString(UINT ColorPrimaries, char* szBuffer,
                                                                size_t nSize);
/** H.273 transfer characteristics; "(Unknown:%d)". */
SMGR_API char* SessMgr_GetVideoEncoderInputTransferCharacteristicsString(UINT TransferCharacteristics,
                                                                         char* szBuffer, size_t nSize);
/** H.273 matrix coefficients; "(Unknown:%d)". */
SMGR_API char* SessMgr_GetVideoEncoderInputMatrixCoefficientsString(UINT MatrixCoefficients, char* szBuffer,
                                                                    size_t nSize);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_VIDEO_ENCODERS_H */
