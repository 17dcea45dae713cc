/* Audio encoders: the appliance's PCM, raw and AAC encoders that take the
 * analogue input or an SDI channel pair. Opened by name into a counted handle
 * (HAUDENC), then started, stopped, muted, configured and queried; listed
 * without opening. Also the display texts of their values. C99 and C++ clean. */
#ifndef SESSMGR_SM_AUDIO_ENCODERS_H
#define SESSMGR_SM_AUDIO_ENCODERS_H

#include "sessmgr/sm_objects.h"
#include "sessmgr/sm_types.h"

/* Audio source (enInputInterface): the analogue input, or SDI input n (1..4)
 * channel pair p (1..8) as 8 x (n - 1) + p. */
#define SMGR_AUDENC_IF_ANALOG 0
#define SMGR_AUDENC_IF_SDI_VALUE(n, p) (8 * ((n)-1) + (p))
#define SMGR_AUDENC_IF_SDI1_CH12 1
#define SMGR_AUDENC_IF_SDI1_CH34 2
#define SMGR_AUDENC_IF_SDI1_CH56 3
#define SMGR_AUDENC_IF_SDI1_CH78 4
#define SMGR_AUDENC_IF_SDI1_CH9_10 5
#define SMGR_AUDENC_IF_SDI1_CH11_12 6
#define SMGR_AUDENC_IF_SDI1_CH13_14 7
#define SMGR_AUDENC_IF_SDI1_CH15_16 8
#define SMGR_AUDENC_IF_SDI2_CH12 9
#define SMGR_AUDENC_IF_SDI2_CH34 10
#define SMGR_AUDENC_IF_SDI2_CH56 11
#define SMGR_AUDENC_IF_SDI2_CH78 12
#define SMGR_AUDENC_IF_SDI2_CH9_10 13
#define SMGR_AUDENC_IF_SDI2_CH11_12 14
#define SMGR_AUDENC_IF_SDI2_CH13_14 15
#define SMGR_AUDENC_IF_SDI2_CH15_16 16
#define SMGR_AUDENC_IF_SDI3_CH12 17
#define SMGR_AUDENC_IF_SDI3_CH34 18
#define SMGR_AUDENC_IF_SDI3_CH56 19
#define SMGR_AUDENC_IF_SDI3_CH78 20
#define SMGR_AUDENC_IF_SDI3_CH9_10 21
#define SMGR_AUDENC_IF_SDI3_CH11_12 22
#define SMGR_AUDENC_IF_SDI3_CH13_14 23
#define SMGR_AUDENC_IF_SDI3_CH15_16 24
#define SMGR_AUDENC_IF_SDI4_CH12 25
#define SMGR_AUDENC_IF_SDI4_CH34 26
#define SMGR_AUDENC_IF_SDI4_CH56 27
#define SMGR_AUDENC_IF_SDI4_CH78 28
#define SMGR_AUDENC_IF_SDI4_CH9_10 29
#define SMGR_AUDENC_IF_SDI4_CH11_12 30
#define SMGR_AUDENC_IF_SDI4_CH13_14 31
#define SMGR_AUDENC_IF_SDI4_CH15_16 32

/* Video input whose clock stamps the audio (enSTCSourceInterface). */
#define SMGR_AUDENC_STC_AUTOMATIC (-1)
#define SMGR_AUDENC_STC_IF_BNC 0
#define SMGR_AUDENC_STC_IF_BNC2 1
#define SMGR_AUDENC_STC_IF_BNC3 2
#define SMGR_AUDENC_STC_IF_BNC4 3

/* Channel mode (enMode). */
#define SMGR_AUDENC_MODE_STEREO 0
#define SMGR_AUDENC_MODE_MONO 1
#define SMGR_AUDENC_MODE_MONO_RIGHT 2

/* Coding (enAlgorithm). */
#define SMGR_AUDENC_ALGORITHM_PCM 0
#define SMGR_AUDENC_ALGORITHM_RAW 1
#define SMGR_AUDENC_ALGORITHM_MPEG2_AAC_LC_ADTS 10
#define SMGR_AUDENC_ALGORITHM_MPEG4_AAC_LC_ADTS 20
#define SMGR_AUDENC_ALGORITHM_MPEG4_AAC_LC_LOAS 21
#define SMGR_AUDENC_ALGORITHM_MPEG4_AAC_HE_V1_LOAS 22
#define SMGR_AUDENC_ALGORITHM_MPEG4_AAC_HE_V2_LOAS 23

/* Encoder state (SMGR_AUDIO_ENCODER_STATS.enState). */
#define SMGR_AUDENC_STATE_STOPPED 0
#define SMGR_AUDENC_STATE_WORKING 3
#define SMGR_AUDENC_STATE_MUTED 67
#define SMGR_AUDENC_STATE_FAILED 128

/* Capture to disk (SMGR_AUDIO_ENCODER_STATS.enCaptureState). */
#define SMGR_AUDENC_CAPTURE_DISABLED 0
#define SMGR_AUDENC_CAPTURE_ACTIVE 1
#define SMGR_AUDENC_CAPTURE_COMPLETED 2

/* SetFieldsFlag bits of SMGR_AUDIO_ENCODER_CFG: the fields a configure changes.
 * Bits 7, 8 and 9 are the daemon's (nPTSOffset, bCaptureToDisk and
 * nMaxCaptureSizeInKBytes in the simulator); the library names none of them. */
#define SMGR_AUDENC_SET_INPUT_INTERFACE 0x1ull
#define SMGR_AUDENC_SET_BITRATE 0x2ull
#define SMGR_AUDENC_SET_SAMPLE_RATE 0x4ull
#define SMGR_AUDENC_SET_CRC 0x8ull
#define SMGR_AUDENC_SET_DELAY 0x10ull
#define SMGR_AUDENC_SET_MODE 0x20ull
#define SMGR_AUDENC_SET_ALGORITHM 0x40ull
#define SMGR_AUDENC_SET_INPUT_LEVEL 0x400ull
#define SMGR_AUDENC_SET_STC_SOURCE_IF 0x800ull
#define SMGR_AUDENC_SET_LANGUAGE 0x1000ull

#pragma pack(push, 4)

/* Configuration of one audio encoder (64 bytes); nSize must be at least 64. */
typedef struct tagSMGR_AUDIO_ENCODER_CFG {
  DWORD nSize;                     /* 0 */
  uint64_t SetFieldsFlag;          /* 4: SMGR_AUDENC_SET_... */
  int32_t enInputInterface;        /* 12: SMGR_AUDENC_IF_... */
  int32_t enAlgorithm;             /* 16: SMGR_AUDENC_ALGORITHM_... */
  DWORD nBitRateInKbps;            /* 20 */
  int32_t enSampleRate;            /* 24: kHz */
  int32_t enMode;                  /* 28: SMGR_AUDENC_MODE_... */
  BOOL bEnableCRCs;                /* 32 */
  DWORD nDelayInMS;                /* 36 */
  int32_t nPTSOffset;              /* 40 */
  BOOL bCaptureToDisk;             /* 44 */
  int32_t nMaxCaptureSizeInKBytes; /* 48 */
  int32_t nInputLevel;             /* 52 */
  int32_t enSTCSourceInterface;    /* 56: SMGR_AUDENC_STC_... */
  char szLanguage[4];              /* 60: three-letter tag */
} SMGR_AUDIO_ENCODER_CFG;

/* What the daemon reports of one encoder (204 bytes); nSize at least 204. */
typedef struct tagSMGR_AUDIO_ENCODER_INFO {
  DWORD nSize;                        /* 0 */
  char szName[SMGR_OBJECT_NAME_SIZE]; /* 4 */
  DWORD nID;                          /* 68 */
  int32_t enInputInterface;           /* 72 */
  int32_t enAlgorithm;                /* 76 */
  DWORD nBitRateInKbps;               /* 80 */
  int32_t enSampleRate;               /* 84 */
  int32_t enMode;                     /* 88 */
  BOOL bEnableCRCs;                   /* 92 */
  DWORD nDelayInMS;                   /* 96 */
  int32_t nPTSOffset;                 /* 100 */
  BOOL bCaptureToDisk;                /* 104 */
  int32_t nMaxCaptureSizeInKBytes;    /* 108 */
  char szCaptureFileName[80];         /* 112 */
  int32_t nInputLevel;                /* 192 */
  int32_t enSTCSourceInterface;       /* 196 */
  char szLanguage[4];                 /* 200 */
} SMGR_AUDIO_ENCODER_INFO;

/* Statistics of one encoder (68 bytes); nSize at least 68. */
typedef struct tagSMGR_AUDIO_ENCODER_STATS {
  DWORD nSize;                        /* 0 */
  int32_t enState;                    /* 4: SMGR_AUDENC_STATE_... */
  uint64_t nEncodedFrames;            /* 8 */
  uint64_t nEncodedBytes;             /* 16 */
  uint64_t nErrors;                   /* 24 */
  int64_t nCurrentPTS;                /* 32: 90 kHz */
  int32_t enCaptureState;             /* 40: SMGR_AUDENC_CAPTURE_... */
  uint64_t nCaptureSize;              /* 44: bytes */
  DWORD nLastStateChangeUpTimeInSecs; /* 52 */
  int32_t nBitRateInKbps;             /* 56 */
  int32_t enSTCSourceInterface;       /* 60 */
  int16_t nMaxSampleValue;            /* 64: level meter */
} SMGR_AUDIO_ENCODER_STATS;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGR_AUDIO_ENCODER_CFG) == 64, audenc_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, SetFieldsFlag) == 4, audenc_cfg_flags);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, enInputInterface) == 12, audenc_cfg_input);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, enAlgorithm) == 16, audenc_cfg_algorithm);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, nBitRateInKbps) == 20, audenc_cfg_bitrate);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, enSampleRate) == 24, audenc_cfg_sample_rate);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, enMode) == 28, audenc_cfg_mode);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, bEnableCRCs) == 32, audenc_cfg_crc);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, nDelayInMS) == 36, audenc_cfg_delay);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, nPTSOffset) == 40, audenc_cfg_pts_offset);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, bCaptureToDisk) == 44, audenc_cfg_capture);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, nMaxCaptureSizeInKBytes) == 48, audenc_cfg_capture_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, nInputLevel) == 52, audenc_cfg_level);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, enSTCSourceInterface) == 56, audenc_cfg_stc);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_CFG, szLanguage) == 60, audenc_cfg_language);
SMGR_STATIC_ASSERT(sizeof(SMGR_AUDIO_ENCODER_INFO) == 204, audenc_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, szName) == 4, audenc_info_name);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, nID) == 68, audenc_info_id);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, enInputInterface) == 72, audenc_info_input);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, enAlgorithm) == 76, audenc_info_algorithm);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, nBitRateInKbps) == 80, audenc_info_bitrate);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, enSampleRate) == 84, audenc_info_sample_rate);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, enMode) == 88, audenc_info_mode);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, bEnableCRCs) == 92, audenc_info_crc);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, nDelayInMS) == 96, audenc_info_delay);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, nPTSOffset) == 100, audenc_info_pts_offset);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, bCaptureToDisk) == 104, audenc_info_capture);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, nMaxCaptureSizeInKBytes) == 108,
                   audenc_info_capture_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, szCaptureFileName) == 112, audenc_info_capture_file);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, nInputLevel) == 192, audenc_info_level);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, enSTCSourceInterface) == 196, audenc_info_stc);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_INFO, szLanguage) == 200, audenc_info_language);
SMGR_STATIC_ASSERT(sizeof(SMGR_AUDIO_ENCODER_STATS) == 68, audenc_stats_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_STATS, enState) == 4, audenc_stats_state);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_STATS, nEncodedFrames) == 8, audenc_stats_frames);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_STATS, nEncodedBytes) == 16, audenc_stats_bytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_STATS, nErrors) == 24, audenc_stats_errors);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_STATS, nCurrentPTS) == 32, audenc_stats_pts);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_STATS, enCaptureState) == 40, audenc_stats_capture_state);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_STATS, nCaptureSize) == 44, audenc_stats_capture_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_STATS, nLastStateChangeUpTimeInSecs) == 52,
                   audenc_stats_last_change);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_STATS, nBitRateInKbps) == 56, audenc_stats_bitrate);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_STATS, enSTCSourceInterface) == 60, audenc_stats_stc);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ENCODER_STATS, nMaxSampleValue) == 64, audenc_stats_max_sample);

SMGR_EXTERN_C_BEGIN

/**
 * Opens the audio encoder called szEncoderName (1 to 63 characters) into a
 * counted handle. A name already open in this process, or a name the daemon
 * resolves to an encoder already open under another name, gives the same
 * handle with its count raised (only the first open asks the daemon).
 * @return TRUE with *phEncoder set; FALSE with *phEncoder NULL and last error
 *         2 (bad arguments or library not initialised), 5, the daemon's code
 *         or 10 when the request could not be sent.
 */
SMGR_API BOOL SessMgr_OpenAudioEncoder(const char* szEncoderName, HAUDENC* phEncoder);

/**
 * Drops one reference of the handle; the last one frees it. Local: sends
 * nothing, takes no lock, leaves *phEncoder as it was. Callers must not close
 * one handle from two threads at once.
 * @return TRUE; FALSE with last error 2 for a NULL or invalid handle.
 */
SMGR_API BOOL SessMgr_CloseAudioEncoder(HAUDENC* phEncoder);

/**
 * Starts the encoder.
 * @return TRUE (last error 0) when the daemon answers 0; FALSE with 2 (bad
 *         handle or not initialised), the daemon's code or 10.
 */
SMGR_API BOOL SessMgr_StartAudioEncoder(HAUDENC hEncoder);

/** Stops the encoder; results as SessMgr_StartAudioEncoder(). */
SMGR_API BOOL SessMgr_StopAudioEncoder(HAUDENC hEncoder);

/**
 * Mutes (bMute non-zero) or unmutes (0) the encoder; bMute is sent as given.
 * Results as SessMgr_StartAudioEncoder().
 */
SMGR_API BOOL SessMgr_MuteAudioEncoder(HAUDENC hEncoder, BOOL bMute);

/**
 * Changes the fields of pCfg that SetFieldsFlag selects. pCfg->nSize must be
 * at least 64; only the first 64 bytes are sent.
 * @return TRUE (last error 0); FALSE with 2 (bad arguments, nothing sent), the
 *         daemon's code, or the last error unchanged when sending failed.
 */
SMGR_API BOOL SessMgr_ConfigureAudioEncoder(HAUDENC hEncoder, const SMGR_AUDIO_ENCODER_CFG* pCfg);

/**
 * Reads the encoder's configuration and name. pInfo->nSize must be at least
 * 204; at most 204 bytes are copied and nSize is set to the number copied.
 * @return TRUE; FALSE with 2 (bad arguments), or with the last error
 *         unchanged when the daemon refuses or sending failed.
 */
SMGR_API BOOL SessMgr_GetAudioEncoderInfo(HAUDENC hEncoder, SMGR_AUDIO_ENCODER_INFO* pInfo);

/**
 * Reads the encoder's statistics. pStats->nSize must be at least 68; at most
 * 68 bytes are copied and nSize is set to the number copied. Results as
 * SessMgr_GetAudioEncoderInfo().
 */
SMGR_API BOOL SessMgr_GetAudioEncoderStats(HAUDENC hEncoder, SMGR_AUDIO_ENCODER_STATS* pStats);

/**
 * Zeroes the encoder's counters.
 * @return TRUE; FALSE with 2 (bad arguments), or with the last error unchanged
 *         when the daemon refuses or sending failed.
 */
SMGR_API BOOL SessMgr_ResetAudioEncoderStats(HAUDENC hEncoder);

/**
 * Lists the audio encoders, one page at a time: asks for nBuffSize / 204
 * records from index nOffset. The records are copied into pvBuffer only when
 * it is non-NULL and they fit nBuffSize; the counts and the record size come
 * back through the non-NULL pointers in any case.
 * @return TRUE; FALSE on a daemon failure with errno set to the daemon's code
 *         and the last error left as it was (also when sending failed).
 */
SMGR_API BOOL SessMgr_EnumerateAudioEncoders(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                             UINT* pnTotalEncoderCount, UINT* pnReturnedEncoders,
                                             size_t* pnElementSize);

/**
 * Copies the name of the encoder at index nOffset of the list into szBuffer
 * (at most nSize bytes, terminated).
 * @return TRUE; FALSE as SessMgr_EnumerateAudioEncoders(), or with last error
 *         26 when no encoder is at that index.
 */
SMGR_API BOOL SessMgr_GetAudioEncoderNameAtIndex(UINT nOffset, char* szBuffer, size_t nSize);

/* Display texts. Each writes the text of its value into szBuffer (truncated to
 * nSize) and returns szBuffer; an unknown value reads "(Invalid:<value>)"; a
 * NULL buffer or zero size returns the constant "Invalid input buffer". */

/** "STOPPED", "WORKING", "MUTED" or "FAILED". */
SMGR_API char* SessMgr_GetAudioEncoderStateString(int enState, char* szBuffer, size_t nSize);
/** "Stereo", "Mono" or "Mono (Right Channel)". */
SMGR_API char* SessMgr_GetAudioEncoderModeString(int enMode, char* szBuffer, size_t nSize);
/** "Stereo", "Mono" or "Mono-R". */
SMGR_API char* SessMgr_GetAudioEncoderShortModeString(int enMode, char* szBuffer, size_t nSize);
/** "PCM", "Raw", "MPEG2-ADTS", "MPEG4-ADTS", "LOAS", "HE-V1-LOAS" or "HE-V2-LOAS". */
SMGR_API char* SessMgr_GetAudioEncoderAlgorithmString(int enAlgo, char* szBuffer, size_t nSize);
/** "DISABLED", "CAPTURING" (for SMGR_AUDENC_CAPTURE_ACTIVE) or "COMPLETED". */
SMGR_API char* SessMgr_GetAudioEncoderCaptureStateString(int enCapState, char* szBuffer, size_t nSize);
/** A clock source (SMGR_AUDENC_STC_...): "Automatic", "BNC-1" .. "BNC-4". */
SMGR_API char* SessMgr_GetAudioEncoderSTCSourceInterfaceString(int enCapState, char* szBuffer, size_t nSize);
/**
 * An audio source: "Analog", or "SDI<n>Ch<a>+<b>" ("SDI2Ch9+10"); on an
 * ST 2110 system the SDI prefix is left out ("2Ch9+10").
 */
SMGR_API char* SessMgr_GetAudioEncoderInputTypeString(int enType, char* szBuffer, size_t nSize);
/**
 * The language name of a three-letter tag, written into szBuffer (truncated to
 * nSize). A NULL or empty tag writes "(None)" and returns NULL; an unknown tag
 * returns NULL and leaves szBuffer untouched. The buffer is not checked.
 */
SMGR_API char* SessMgr_GetAudioEncoderLanguageString(const char* szLanguage, char* szBuffer, size_t nSize);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_AUDIO_ENCODERS_H */
