/* Sessions: named groups of up to three streams, started and stopped together
 * and advertised on a multicast address. The configuration, information and
 * statistics records and every session operation.
 * C99 and C++ clean; records are little-endian and packed to 4 bytes. */
#ifndef SESSMGR_SM_SESSIONS_H
#define SESSMGR_SM_SESSIONS_H

#include "sessmgr/sm_objects.h"
#include "sessmgr/sm_streams.h"
#include "sessmgr/sm_types.h"

#define SMGR_MAX_SESSION_STREAMS 3
#define SMGR_SESSION_DESCRIPTION_SIZE 240
#define SMGR_SESSION_TEXT_SIZE 64

#pragma pack(push, 4)

/* What Create takes. 1084 bytes; nSize must be at least that. */
typedef struct tagSMGR_SESSION_CFG {
  uint32_t nSize;
  int32_t nIndex; /* requested session ID; 0 or less lets the daemon choose */
  char szName[SMGR_OBJECT_NAME_SIZE];
  char szDescription[SMGR_SESSION_DESCRIPTION_SIZE];
  char szAuthor[SMGR_SESSION_TEXT_SIZE];
  char szKeywords[SMGR_SESSION_TEXT_SIZE];
  char szCopyright[SMGR_SESSION_TEXT_SIZE];
  uint32_t nNumOfStreams;                                 /* valid entries of Streams */
  SMGR_OBJECT_SELECTOR Streams[SMGR_MAX_SESSION_STREAMS]; /* by ID or by name */
  BOOL bAdvertise;
  SMGR_IP_ADDRESS AdvertAddress; /* multicast IPv4 or IPv6, or SMGR_ANY_ADDRESS */
  uint16_t usAdvertPort;
} SMGR_SESSION_CFG;

/* A session as the daemon reports it. 1616 bytes. */
typedef struct tagSMGR_SESSION_INFO {
  uint32_t nSize;
  int32_t nIndex; /* session ID */
  char szName[SMGR_OBJECT_NAME_SIZE];
  char szDescription[SMGR_SESSION_DESCRIPTION_SIZE];
  char szAuthor[SMGR_SESSION_TEXT_SIZE];
  char szKeywords[SMGR_SESSION_TEXT_SIZE];
  char szCopyright[SMGR_SESSION_TEXT_SIZE];
  int32_t nNumOfStreams;
  SMGR_OBJECT_SELECTOR Streams[SMGR_MAX_SESSION_STREAMS];
  BOOL bAdvertise;
  SMGR_IP_ADDRESS CfgAdvertAddress;    /* as configured */
  SMGR_IP_ADDRESS ActualAdvertAddress; /* as in use */
  uint16_t usAdvertPort;
} SMGR_SESSION_INFO;

/* Advertisement counters of a session. 44 bytes. */
typedef struct tagSMGR_SESSION_STATS {
  uint32_t nSize;
  BOOL bAdvertising;
  SMGR_COUNTER nTxOkPackets;
  SMGR_COUNTER nTxOkBytes;
  SMGR_COUNTER nTxFailedPackets;
  SMGR_COUNTER nTxFailedBytes;
  int32_t iLastTxErrno;
} SMGR_SESSION_STATS;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGR_SESSION_CFG) == 1084, session_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_CFG, nIndex) == 4, session_cfg_nIndex);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_CFG, szName) == 8, session_cfg_szName);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_CFG, szDescription) == 72, session_cfg_szDescription);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_CFG, szAuthor) == 312, session_cfg_szAuthor);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_CFG, szKeywords) == 376, session_cfg_szKeywords);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_CFG, szCopyright) == 440, session_cfg_szCopyright);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_CFG, nNumOfStreams) == 504, session_cfg_nNumOfStreams);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_CFG, Streams) == 508, session_cfg_Streams);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_CFG, bAdvertise) == 544, session_cfg_bAdvertise);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_CFG, AdvertAddress) == 548, session_cfg_AdvertAddress);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_CFG, usAdvertPort) == 1080, session_cfg_usAdvertPort);
SMGR_STATIC_ASSERT(sizeof(SMGR_SESSION_INFO) == 1616, session_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_INFO, nIndex) == 4, session_info_nIndex);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_INFO, szName) == 8, session_info_szName);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_INFO, szDescription) == 72, session_info_szDescription);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_INFO, szAuthor) == 312, session_info_szAuthor);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_INFO, szKeywords) == 376, session_info_szKeywords);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_INFO, szCopyright) == 440, session_info_szCopyright);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_INFO, nNumOfStreams) == 504, session_info_nNumOfStreams);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_INFO, Streams) == 508, session_info_Streams);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_INFO, bAdvertise) == 544, session_info_bAdvertise);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_INFO, CfgAdvertAddress) == 548, session_info_CfgAdvertAddress);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_INFO, ActualAdvertAddress) == 1080,
                   session_info_ActualAdvertAddress);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_INFO, usAdvertPort) == 1612, session_info_usAdvertPort);
SMGR_STATIC_ASSERT(sizeof(SMGR_SESSION_STATS) == 44, session_stats_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_STATS, bAdvertising) == 4, session_stats_bAdvertising);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_STATS, nTxOkPackets) == 8, session_stats_nTxOkPackets);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_STATS, nTxOkBytes) == 16, session_stats_nTxOkBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_STATS, nTxFailedPackets) == 24, session_stats_nTxFailedPackets);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_STATS, nTxFailedBytes) == 32, session_stats_nTxFailedBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_SESSION_STATS, iLastTxErrno) == 40, session_stats_iLastTxErrno);

/* ---- Operations ------------------------------------------------------------ */

SMGR_EXTERN_C_BEGIN

/** Creates a session of up to three member streams and returns a new handle.
 * The advertisement address must be multicast (86 otherwise, whether or not
 * bAdvertise is set) or SMGR_ANY_ADDRESS; nSize below 1084 fails with 2; a
 * handle of this process with the same ID or name fails with 7. */
SMGR_API BOOL SessMgr_CreateSession(const SMGR_SESSION_CFG* pCfg, HSESSION* phSession);
/** Releases one Create of the handle; *phSession is cleared first and the
 * close request is always sent. */
SMGR_API BOOL SessMgr_CloseSession(HSESSION* phSession);
/** The session ID that a handle remembers. No message, no lock. */
SMGR_API BOOL SessMgr_GetSessionID(HSESSION hSession, int* pID);
/** Starts a session and its member streams (selector by ID or name only). */
SMGR_API BOOL SessMgr_StartSession(const SMGR_OBJECT_SELECTOR* pSelector);
/** Stops a session (selector by ID or name only). */
SMGR_API BOOL SessMgr_StopSession(const SMGR_OBJECT_SELECTOR* pSelector);
/** Deletes a session (selector by ID or name only); local handles stay until closed. */
SMGR_API BOOL SessMgr_DeleteSession(const SMGR_OBJECT_SELECTOR* pSelector);
/** Reads a session's configuration and advertisement address; set
 * pInfo->nSize first. On success pInfo->nSize is the number of bytes copied. */
SMGR_API BOOL SessMgr_GetSessionInfo(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_SESSION_INFO* pInfo);
/** Reads a session's advertisement counters; set pStats->nSize first. */
SMGR_API BOOL SessMgr_GetSessionStats(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_SESSION_STATS* pStats);
/** Lists sessions page by page: asks for nBuffSize / sizeof(SMGR_SESSION_INFO)
 * records from index nOffset. Every output pointer may be NULL. */
SMGR_API BOOL SessMgr_EnumerateSessions(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                        UINT* pnTotalSessionCount, UINT* pnReturnedSessions,
                                        size_t* pnElementSize);

/** Frees every session handle of this process, whatever its count (library shutdown). */
SMGR_API void CleanupSessMgrSessions(void);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_SESSIONS_H */
