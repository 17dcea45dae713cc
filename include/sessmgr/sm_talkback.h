/* Talkback: the appliance's return-audio channel, which plays a remote
 * sender's UDP audio out of the appliance. One channel, no selector or handle:
 * configure, start, stop, enable, disable, read its information and
 * statistics. C99 and C++ clean. */
#ifndef SESSMGR_SM_TALKBACK_H
#define SESSMGR_SM_TALKBACK_H

#include "sessmgr/sm_objects.h"
#include "sessmgr/sm_streams.h"
#include "sessmgr/sm_types.h"

/* Channel state (SMGR_TALKBACK_STATS.enState). */
#define SMGR_TALKBACK_STATE_STOPPED 0
#define SMGR_TALKBACK_STATE_RUNNING 1
#define SMGR_TALKBACK_STATE_LISTENING 2
#define SMGR_TALKBACK_STATE_ADMIN_DISABLED 3

#pragma pack(push, 4)

/* Configuration of the channel (92 bytes); nSize must be at least 92. The
 * library passes SetFieldsFlag through and defines no bits. */
typedef struct tagSMGR_TALKBACK_CFG {
  DWORD nSize;                        /* 0 */
  uint64_t SetFieldsFlag;             /* 4 */
  int32_t nIndex;                     /* 12 */
  char szName[SMGR_OBJECT_NAME_SIZE]; /* 16 */
  BOOL bAutoStart;                    /* 80 */
  WORD usPort;                        /* 84: UDP port of the return audio */
  WORD wReserved;                     /* 86: zero */
  int32_t nVolume;                    /* 88 */
} SMGR_TALKBACK_CFG;

/* The channel's information (80 bytes); nSize at least 80. */
typedef struct tagSMGR_TALKBACK_INFO {
  DWORD nSize;                        /* 0 */
  int32_t nIndex;                     /* 4 */
  char szName[SMGR_OBJECT_NAME_SIZE]; /* 8 */
  WORD usPort;                        /* 72 */
  WORD wReserved;                     /* 74: zero */
  int32_t nVolume;                    /* 76 */
} SMGR_TALKBACK_INFO;

/* The channel's statistics (1112 bytes); nSize at least 1112. */
typedef struct tagSMGR_TALKBACK_STATS {
  DWORD nSize;                                /* 0 */
  int32_t enState;                            /* 4: SMGR_TALKBACK_STATE_... */
  SMGR_COUNTER nRxOkPackets;                  /* 8 */
  SMGR_COUNTER nRxOkBytes;                    /* 16 */
  SMGR_IP_ADDRESS SourceAddress;              /* 24: sender of the accepted audio */
  int32_t iLastRxTime;                        /* 556 */
  SMGR_COUNTER nRxDiscardedPackets;           /* 560 */
  SMGR_COUNTER nRxDiscardedBytes;             /* 568 */
  SMGR_IP_ADDRESS LastDiscardedSourceAddress; /* 576 */
  int32_t iLastRxDiscardTime;                 /* 1108 */
} SMGR_TALKBACK_STATS;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGR_TALKBACK_CFG) == 92, talkback_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_CFG, SetFieldsFlag) == 4, talkback_cfg_flags);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_CFG, nIndex) == 12, talkback_cfg_index);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_CFG, szName) == 16, talkback_cfg_name);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_CFG, bAutoStart) == 80, talkback_cfg_auto_start);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_CFG, usPort) == 84, talkback_cfg_port);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_CFG, nVolume) == 88, talkback_cfg_volume);
SMGR_STATIC_ASSERT(sizeof(SMGR_TALKBACK_INFO) == 80, talkback_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_INFO, nIndex) == 4, talkback_info_index);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_INFO, szName) == 8, talkback_info_name);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_INFO, usPort) == 72, talkback_info_port);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_INFO, nVolume) == 76, talkback_info_volume);
SMGR_STATIC_ASSERT(sizeof(SMGR_TALKBACK_STATS) == 1112, talkback_stats_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_STATS, enState) == 4, talkback_stats_state);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_STATS, nRxOkPackets) == 8, talkback_stats_ok_packets);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_STATS, nRxOkBytes) == 16, talkback_stats_ok_bytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_STATS, SourceAddress) == 24, talkback_stats_source);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_STATS, iLastRxTime) == 556, talkback_stats_last_rx);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_STATS, nRxDiscardedPackets) == 560, talkback_stats_discarded);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_STATS, nRxDiscardedBytes) == 568, talkback_stats_discarded_bytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_STATS, LastDiscardedSourceAddress) == 576,
                   talkback_stats_discard_source);
SMGR_STATIC_ASSERT(offsetof(SMGR_TALKBACK_STATS, iLastRxDiscardTime) == 1108, talkback_stats_last_discard);

SMGR_EXTERN_C_BEGIN

/**
 * Configures the channel: the first min(nSize, 92) bytes of *pCfg go to the
 * daemon, which changes what SetFieldsFlag selects.
 * @return TRUE with the last error left as it was; FALSE with 2 (not
 *         initialised, pCfg NULL or nSize below 92; nothing sent), the
 *         daemon's code, or the last error unchanged when sending failed.
 */
SMGR_API BOOL SessMgr_ConfigureTalkBack(const SMGR_TALKBACK_CFG* pCfg);

/**
 * Reads the channel's configuration. pInfo->nSize must be at least 80; at most
 * 80 bytes are copied and nSize is set to the number copied.
 * @return TRUE (last error as it was); FALSE with 2 for bad arguments, or with
 *         the last error unchanged when the daemon refuses or sending failed.
 */
SMGR_API BOOL SessMgr_GetTalkBackInfo(SMGR_TALKBACK_INFO* pInfo);

/**
 * Reads the channel's statistics. pStats->nSize must be at least 1112; at most
 * 1112 bytes are copied. Results as SessMgr_GetTalkBackInfo().
 */
SMGR_API BOOL SessMgr_GetTalkBackStats(SMGR_TALKBACK_STATS* pStats);

/**
 * Starts the channel.
 * @return TRUE with last error 0; FALSE with 14 (not initialised), the
 *         daemon's code or 10 (with errno) when the request could not be sent.
 */
SMGR_API BOOL SessMgr_StartTalkBack(void);
/** Stops the channel; results as SessMgr_StartTalkBack(). */
SMGR_API BOOL SessMgr_StopTalkBack(void);
/** Zeroes the channel's counters; results as SessMgr_StartTalkBack(). */
SMGR_API BOOL SessMgr_ResetTalkBackStats(void);
/** Enables the channel administratively; results as SessMgr_StartTalkBack(). */
SMGR_API BOOL SessMgr_EnableTalkBack(void);
/** Disables the channel administratively (stops it); results as SessMgr_StartTalkBack(). */
SMGR_API BOOL SessMgr_DisableTalkBack(void);

/**
 * The display text of a channel state: "STOPPED", "RECEIVING" (for
 * SMGR_TALKBACK_STATE_RUNNING), "LISTENING" or "DISABLED"; others
 * "(Invalid:<value>)". A NULL buffer or zero size returns the constant
 * "Invalid input buffer".
 */
SMGR_API char* SessMgr_GetTalkBackStateString(int enState, char* szBuffer, size_t nSize);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_TALKBACK_H */
