/* ST 2110 essences (the received video, audio and ANC-data flows that feed the
 * encoder's input channels in the ST 2110 personality) and the unit's PTP
 * synchronisation: records, enumerations, operations and value names.
 * C99 and C++ clean; records are little-endian and packed to 4 bytes. */
#ifndef SESSMGR_SM_ESSENCES_H
#define SESSMGR_SM_ESSENCES_H

#include "sessmgr/sm_objects.h"
#include "sessmgr/sm_streams.h"
#include "sessmgr/sm_types.h"
#include "video_formats.h"

/* ---- Enumerations ---------------------------------------------------------- */

/* Media of an essence (enMediaType). */
#define SMGR_ESSENCE_MEDIA_TYPE_VIDEO 0
#define SMGR_ESSENCE_MEDIA_TYPE_AUDIO 1
#define SMGR_ESSENCE_MEDIA_TYPE_DATA 2

/* Audio packet time (enPacketTime). */
#define SMGR_AUDIO_ESSENCE_PACKET_TIME_1MS 1
#define SMGR_AUDIO_ESSENCE_PACKET_TIME_125US 2

/* Audio sample mode and frequency, as the daemon reports them. */
#define SMGR_AUDIO_ESSENCE_SAMPLE_MODE_L16 1
#define SMGR_AUDIO_ESSENCE_SAMPLE_MODE_L20 2
#define SMGR_AUDIO_ESSENCE_SAMPLE_MODE_L24 3
#define SMGR_AUDIO_ESSENCE_SAMPLE_MODE_AES3 4
#define SMGR_AUDIO_ESSENCE_SAMPLE_FREQUENCY_44100HZ 1
#define SMGR_AUDIO_ESSENCE_SAMPLE_FREQUENCY_48000HZ 2
#define SMGR_AUDIO_ESSENCE_SAMPLE_FREQUENCY_96000HZ 3

/* Essence state (SMGR_ESSENCE_STATS.enState). */
#define SMGR_ESSENCE_STATE_STOPPED 0
#define SMGR_ESSENCE_STATE_RUNNING 1

/* Video format detection (SMGR_ESSENCE_STATS.enVideoFormatDetectionState). */
#define SMGR_ESSENCE_VIDEO_FORMAT_DETECT_STATE_DISABLED 0
#define SMGR_ESSENCE_VIDEO_FORMAT_DETECT_STATE_STREAM_DETECTED 1
#define SMGR_ESSENCE_VIDEO_FORMAT_DETECT_STATE_BUSY 2
#define SMGR_ESSENCE_VIDEO_FORMAT_DETECT_STATE_COMPLETED 3

/* Set-field bits of SMGR_ESSENCE_CFG.SetFieldsFlag (configure only). */
#define SMGR_ESSENCE_SET_INDEX 0x1ull
#define SMGR_ESSENCE_SET_NAME 0x2ull
#define SMGR_ESSENCE_SET_AUTO_START 0x4ull
#define SMGR_ESSENCE_SET_MEDIA_TYPE 0x8ull
#define SMGR_ESSENCE_SET_RTP_PAYLOAD 0x10ull /* the daemon's meaning; no trace of its own */
#define SMGR_ESSENCE_SET_ADDRESS 0x20ull
#define SMGR_ESSENCE_SET_PORT 0x40ull
#define SMGR_ESSENCE_SET_VIDEO_FORMAT 0x80ull
#define SMGR_ESSENCE_SET_INPUT_CHANNEL 0x100ull
#define SMGR_ESSENCE_SET_AUDIO_NUM_CHANNELS 0x800ull
#define SMGR_ESSENCE_SET_AUDIO_PACKET_TIME 0x2000ull
#define SMGR_ESSENCE_SET_SOURCE_ADDRESS 0x4000ull

#pragma pack(push, 4)

/* ---- Records --------------------------------------------------------------- */

/* Media.Video of a configuration; the same record is the video information. 8 bytes. */
typedef struct tagSMGR_VIDEO_ESSENCE_CFG {
  VIDEO_FORMAT enInputFormat; /* the flow's video format code */
} SMGR_VIDEO_ESSENCE_CFG;
typedef SMGR_VIDEO_ESSENCE_CFG SMGR_VIDEO_ESSENCE_INFO;

/* Media.Audio of a configuration. 8 bytes. */
typedef struct tagSMGR_AUDIO_ESSENCE_CFG {
  uint32_t nNumOfChannels;
  int32_t enPacketTime; /* SMGR_AUDIO_ESSENCE_PACKET_TIME_... */
} SMGR_AUDIO_ESSENCE_CFG;

/* Media.Audio of the information: what the daemon receives. 16 bytes. */
typedef struct tagSMGR_AUDIO_ESSENCE_INFO {
  uint32_t nNumOfChannels;
  int32_t enSampleMode;      /* SMGR_AUDIO_ESSENCE_SAMPLE_MODE_... */
  int32_t enSampleFrequency; /* SMGR_AUDIO_ESSENCE_SAMPLE_FREQUENCY_... */
  int32_t enPacketTime;      /* SMGR_AUDIO_ESSENCE_PACKET_TIME_... */
} SMGR_AUDIO_ESSENCE_INFO;

/* An essence as the caller asks for it (create and configure). 1172 bytes. */
typedef struct tagSMGR_ESSENCE_CFG {
  uint32_t nSize;         /* the caller's record size; create needs at least 1172 */
  uint64_t SetFieldsFlag; /* configure: SMGR_ESSENCE_SET_... bits of the fields to change */
  int32_t nIndex;         /* daemon ID; 0 or less on create lets the daemon choose */
  char szName[SMGR_OBJECT_NAME_SIZE];
  BOOL bAutoStart;
  uint32_t nInputChannel; /* encoder input channel fed */
  int32_t enMediaType;    /* SMGR_ESSENCE_MEDIA_TYPE_... */
  union {
    SMGR_VIDEO_ESSENCE_CFG Video;
    SMGR_AUDIO_ESSENCE_CFG Audio;
  } Media; /* by media type; unused for data */
  uint32_t nRTPPayload;
  SMGR_IP_ADDRESS Address; /* destination: multicast group or the unit's own address */
  uint16_t usPort;
  SMGR_IP_ADDRESS SourceAddress; /* source filter */
} SMGR_ESSENCE_CFG;

/* An essence as the daemon reports it. 1172 bytes. */
typedef struct tagSMGR_ESSENCE_INFO {
  uint32_t nSize;
  int32_t nIndex;
  char szName[SMGR_OBJECT_NAME_SIZE];
  BOOL bAutoStart;
  uint32_t nInputChannel;
  int32_t enMediaType;
  union {
    SMGR_VIDEO_ESSENCE_INFO Video;
    SMGR_AUDIO_ESSENCE_INFO Audio;
  } Media;
  uint32_t nRTPPayload;
  SMGR_IP_ADDRESS Address;
  uint16_t usPort;
  SMGR_IP_ADDRESS SourceAddress;
} SMGR_ESSENCE_INFO;

/* Reception counters and state of an essence. 48 bytes. */
typedef struct tagSMGR_ESSENCE_STATS {
  uint32_t nSize;   /* at least 48 */
  int32_t enState;  /* SMGR_ESSENCE_STATE_... */
  BOOL bStreamSync; /* the flow is synchronised */
  SMGR_COUNTER nRxPackets;
  SMGR_COUNTER nRxDiscardedPackets;
  SMGR_COUNTER nRxLostPackets;
  int32_t enVideoFormatDetectionState; /* SMGR_ESSENCE_VIDEO_FORMAT_DETECT_STATE_... */
  VIDEO_FORMAT enDetectedVideoFormat;
} SMGR_ESSENCE_STATS;

/* The unit's ST 2110 clock synchronisation. 40 bytes. */
typedef struct tagSMGR_2110_SYNC_INFO {
  uint32_t nSize;
  int32_t enSyncMode; /* the daemon's clock mode, as set with SessMgr_Set2110ClockMode */
  BOOL bSynchronized;
  uint64_t nPrecisionInNanoSecs;
  uint64_t nCurrentSTC;
  BYTE acPTPClockID[8];
  uint32_t nPTPTime;
} SMGR_2110_SYNC_INFO;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGR_VIDEO_ESSENCE_CFG) == 8, video_essence_cfg_size);
SMGR_STATIC_ASSERT(sizeof(SMGR_AUDIO_ESSENCE_CFG) == 8, audio_essence_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ESSENCE_CFG, enPacketTime) == 4, audio_essence_cfg_ptime);
SMGR_STATIC_ASSERT(sizeof(SMGR_AUDIO_ESSENCE_INFO) == 16, audio_essence_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ESSENCE_INFO, enSampleMode) == 4, audio_essence_info_mode);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ESSENCE_INFO, enSampleFrequency) == 8, audio_essence_info_freq);
SMGR_STATIC_ASSERT(offsetof(SMGR_AUDIO_ESSENCE_INFO, enPacketTime) == 12, audio_essence_info_ptime);

SMGR_STATIC_ASSERT(sizeof(SMGR_ESSENCE_CFG) == 1172, essence_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_CFG, SetFieldsFlag) == 4, essence_cfg_flags);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_CFG, nIndex) == 12, essence_cfg_index);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_CFG, szName) == 16, essence_cfg_name);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_CFG, bAutoStart) == 80, essence_cfg_autostart);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_CFG, nInputChannel) == 84, essence_cfg_channel);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_CFG, enMediaType) == 88, essence_cfg_media_type);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_CFG, Media) == 92, essence_cfg_media);
SMGR_STATIC_ASSERT(sizeof(((SMGR_ESSENCE_CFG*)0)->Media) == 8, essence_cfg_media_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_CFG, nRTPPayload) == 100, essence_cfg_payload);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_CFG, Address) == 104, essence_cfg_address);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_CFG, usPort) == 636, essence_cfg_port);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_CFG, SourceAddress) == 640, essence_cfg_source);

SMGR_STATIC_ASSERT(sizeof(SMGR_ESSENCE_INFO) == 1172, essence_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_INFO, nIndex) == 4, essence_info_index);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_INFO, szName) == 8, essence_info_name);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_INFO, bAutoStart) == 72, essence_info_autostart);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_INFO, nInputChannel) == 76, essence_info_channel);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_INFO, enMediaType) == 80, essence_info_media_type);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_INFO, Media) == 84, essence_info_media);
SMGR_STATIC_ASSERT(sizeof(((SMGR_ESSENCE_INFO*)0)->Media) == 16, essence_info_media_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_INFO, nRTPPayload) == 100, essence_info_payload);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_INFO, Address) == 104, essence_info_address);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_INFO, usPort) == 636, essence_info_port);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_INFO, SourceAddress) == 640, essence_info_source);

SMGR_STATIC_ASSERT(sizeof(SMGR_ESSENCE_STATS) == 48, essence_stats_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_STATS, enState) == 4, essence_stats_state);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_STATS, bStreamSync) == 8, essence_stats_sync);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_STATS, nRxPackets) == 12, essence_stats_rx);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_STATS, nRxDiscardedPackets) == 20, essence_stats_discarded);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_STATS, nRxLostPackets) == 28, essence_stats_lost);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_STATS, enVideoFormatDetectionState) == 36, essence_stats_detect);
SMGR_STATIC_ASSERT(offsetof(SMGR_ESSENCE_STATS, enDetectedVideoFormat) == 40, essence_stats_detected);

SMGR_STATIC_ASSERT(sizeof(SMGR_2110_SYNC_INFO) == 40, sync_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_2110_SYNC_INFO, enSyncMode) == 4, sync_info_mode);
SMGR_STATIC_ASSERT(offsetof(SMGR_2110_SYNC_INFO, bSynchronized) == 8, sync_info_synchronized);
SMGR_STATIC_ASSERT(offsetof(SMGR_2110_SYNC_INFO, nPrecisionInNanoSecs) == 12, sync_info_precision);
SMGR_STATIC_ASSERT(offsetof(SMGR_2110_SYNC_INFO, nCurrentSTC) == 20, sync_info_stc);
SMGR_STATIC_ASSERT(offsetof(SMGR_2110_SYNC_INFO, acPTPClockID) == 28, sync_info_clock_id);
SMGR_STATIC_ASSERT(offsetof(SMGR_2110_SYNC_INFO, nPTPTime) == 36, sync_info_ptp_time);

/* ---- Operations ------------------------------------------------------------ */

SMGR_EXTERN_C_BEGIN

/** Creates an essence from pCfg (nSize at least 1172, else 2; sent as given)
 * and returns a new handle. 7 when this process holds a handle of that name
 * (ignoring case) or, failing a name, of that index. A warning answer is a
 * success and stays the last error. */
SMGR_API BOOL SessMgr_CreateEssence(const SMGR_ESSENCE_CFG* pCfg, HESSENCE* phEssence);
/** The essence ID that a handle remembers. No message, no lock. */
SMGR_API BOOL SessMgr_GetEssenceID(HESSENCE hEssence, int* pID);
/** Deletes an essence (selector by ID or name); local handles stay until closed. */
SMGR_API BOOL SessMgr_DeleteEssence(const SMGR_OBJECT_SELECTOR* pSelector);
/** One page of essence information records (at most one per call); counts
 * are always returned, records only when they fit pvBuffer. */
SMGR_API BOOL SessMgr_EnumerateEssences(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                        UINT* pnTotalItemCount, UINT* pnReturnedItems, size_t* pnItemSize);
/** Opens an essence by ID or name; handles of one essence are shared and counted. */
SMGR_API BOOL SessMgr_OpenEssence(const SMGR_OBJECT_SELECTOR* pSelector, HESSENCE* phEssence);
/** Releases one Open or Create of the handle; *phEssence is cleared first and
 * the daemon always hears of the close. */
SMGR_API BOOL SessMgr_CloseEssence(HESSENCE* phEssence);
/** Changes the flagged fields of an essence (selector by ID or name); the
 * whole 1172-byte record is sent. */
SMGR_API BOOL SessMgr_ConfigureEssence(const SMGR_OBJECT_SELECTOR* pSelector, const SMGR_ESSENCE_CFG* pCfg);
/** Reads an essence's information; set pInfo->nSize first. On success
 * pInfo->nSize is the number of bytes copied. */
SMGR_API BOOL SessMgr_GetEssenceInfo(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_ESSENCE_INFO* pInfo);
/** Reads an essence's counters; pStats->nSize must be at least 48. */
SMGR_API BOOL SessMgr_GetEssenceStats(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_ESSENCE_STATS* pStats);
/** Starts receiving an essence; a warning answer is a success. */
SMGR_API BOOL SessMgr_StartEssence(const SMGR_OBJECT_SELECTOR* pSelector);
/** Stops receiving an essence. */
SMGR_API BOOL SessMgr_StopEssence(const SMGR_OBJECT_SELECTOR* pSelector);
/** Zeroes an essence's counters. */
SMGR_API BOOL SessMgr_ResetEssenceStats(const SMGR_OBJECT_SELECTOR* pSelector);
/** The name of the essence at position nOffset of the enumeration; 283 when
 * there is none. */
SMGR_API BOOL SessMgr_GetEssenceNameAtIndex(UINT nOffset, char* szBuffer, size_t nSize);
/** TRUE when the two configurations name one essence for the library: the
 * first's non-empty name equals the second's ignoring case, or else the
 * first's index is above 0 and equal. Addresses, ports and media are not compared. */
SMGR_API BOOL AreEssenceConfigsIdentical(const SMGR_ESSENCE_CFG* pCfg1, const SMGR_ESSENCE_CFG* pCfg2);
/** Frees every essence handle of this process whatever its count (library
 * shutdown does it); no message goes to the daemon. */
SMGR_API void CleanupSessMgrEssences(void);

/** Reads the unit's ST 2110 clock synchronisation; set pInfo->nSize first (a
 * shorter record receives a shortened copy). */
SMGR_API BOOL SessMgr_Get2110SyncInfo(SMGR_2110_SYNC_INFO* pInfo);
/** Chooses the clock mode; the values are the daemon's and are not checked here. */
SMGR_API BOOL SessMgr_Set2110ClockMode(int enMode);

/** "Video", "Audio", "ANC Data"; unknown values "(Invalid:%d)". */
SMGR_API char* SessMgr_GetEssenceMediaTypeString(int enMediaType, char* szBuffer, size_t nSize);
/** "STOPPED", "RUNNING". */
SMGR_API char* SessMgr_GetEssenceStateString(int enState, char* szBuffer, size_t nSize);
/** "1 ms", "125 us". */
SMGR_API char* SessMgr_GetEssenceAudioPacketTimeString(int enPacketTime, char* szBuffer, size_t nSize);
/** "L16", "L20", "L24", "AES3". */
SMGR_API char* SessMgr_GetEssenceAudioSampleModeString(int enSampleMode, char* szBuffer, size_t nSize);
/** "44.1kHz", "48kHz", "96kHz". */
SMGR_API char* SessMgr_GetEssenceAudioSampleFrequencyString(int enFrequency, char* szBuffer, size_t nSize);
/** "DISABLED", "STREAM_DETECTED", "BUSY", "COMPLETED". */
SMGR_API char* SessMgr_GetEssenceVideoFormatDetectionStateString(int enState, char* szBuffer, size_t nSize);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_ESSENCES_H */
