/* Network output streams: the configuration, information and statistics
 * records, their enumerations, and every stream operation (create, open,
 * control, query, enumerate, compare, value names, still images).
 * C99 and C++ clean; records are little-endian and packed to 4 bytes. */
#ifndef SESSMGR_SM_STREAMS_H
#define SESSMGR_SM_STREAMS_H

#include "sessmgr/sm_objects.h"
#include "sessmgr/sm_types.h"

/* ---- Constants ----------------------------------------------------------- */

#define SMGR_MAX_STREAM_CONTENT_SOURCES 24
#define SMGR_MAX_HOSTNAME_SIZE 512
#ifndef SMGR_MAX_API_FNAME_SIZE
#define SMGR_MAX_API_FNAME_SIZE 288 /* file names, terminator included */
#endif
#define SMGR_STILL_IMAGE_FOLDER "/usr/share/ostrelle/still_images/"
#define SMGR_STILL_IMAGE_EXTENSION ".mp4"

/* Kinds of SMGR_IP_ADDRESS. */
#define SMGR_UNKNOWN_ADDRESS (-1)
#define SMGR_IPV4_ADDRESS 0
#define SMGR_IPV6_ADDRESS 1
#define SMGR_IPV4_HOSTNAME 2
#define SMGR_URL 3
#define SMGR_UNRESOLVED_HOSTNAME 4
#define SMGR_HOSTNAME_RESOLVED_AS_IPV4 5
#define SMGR_HOSTNAME_RESOLVED_AS_IPV6 6
#define SMGR_ANY_ADDRESS 7

/* Stream direction (enType). */
#define SMGR_STREAM_TYPE_TX 1
#define SMGR_STREAM_TYPE_RX 2
#define SMGR_STREAM_TYPE_REC 3

/* Content bits (enContents) and content source kinds (SMGR_CONTENT_SRC.enType). */
#define SMGR_STREAM_CONTENTS_VIDEO 0x1u
#define SMGR_STREAM_CONTENTS_AUDIO 0x2u
#define SMGR_STREAM_CONTENTS_DATA 0x4u
#define SMGR_CONTENT_SRC_VIDEO 1
#define SMGR_CONTENT_SRC_AUDIO 2
#define SMGR_CONTENT_SRC_DATA 4

/* Transports (enEncapsulation); other values pass through to the daemon. */
#define SMGR_STREAM_ENCAPS_DIRECT_RTP 1
#define SMGR_STREAM_ENCAPS_TS_UDP 2
#define SMGR_STREAM_ENCAPS_TS_RTP 3
#define SMGR_STREAM_ENCAPS_QUICKTIME 5
#define SMGR_STREAM_ENCAPS_CDN_PUBLISHING 16
#define SMGR_STREAM_ENCAPS_TS_SRT 34

/* Payload formats of stream contents. */
#define SMGR_STREAM_AUDIO_FORMAT_ANY 0
#define SMGR_STREAM_AUDIO_FORMAT_PCM 1
#define SMGR_STREAM_AUDIO_FORMAT_RAW 2
#define SMGR_STREAM_AUDIO_FORMAT_ADTS 3
#define SMGR_STREAM_AUDIO_FORMAT_LOAS_LATM 4
#define SMGR_STREAM_AUDIO_FORMAT_QUICKTIME 5
#define SMGR_STREAM_VIDEO_FORMAT_ANY 0
#define SMGR_STREAM_VIDEO_FORMAT_RAW 100
#define SMGR_STREAM_VIDEO_FORMAT_RFC_3984 101

/* Metadata carriage (enMetaDataEncaps). */
#define SMGR_STREAM_METADATA_ENCAPS_SYNC 0
#define SMGR_STREAM_METADATA_ENCAPS_ASYNC 1
#define SMGR_STREAM_METADATA_ENCAPS_ASYNC_SYNC_AU 2

/* SRT connection mode and link redundancy. */
#define SMGR_SRT_MODE_CLIENT 0
#define SMGR_SRT_MODE_SERVER 1
#define SMGR_SRT_MODE_RENDEZ_VOUS 2
#define SMGR_SRT_REDUNDANCY_OPTIONAL (-1)
#define SMGR_SRT_REDUNDANCY_NONE 0
#define SMGR_SRT_REDUNDANCY_ACTIVE_ACTIVE 1
#define SMGR_SRT_REDUNDANCY_ACTIVE_BACKUP 2

/* Forward error correction. */
#define SMGR_FEC_TYPE_NONE 0
#define SMGR_FEC_TYPE_QX 1
#define SMGR_FEC_TYPE_PRO_MPEG 2
#define SMGR_FEC_LEVEL_A 0
#define SMGR_FEC_LEVEL_B 1

/* Stream states as the daemon reports them. */
#define SMGR_STREAM_STATE_STOPPED 0
#define SMGR_STREAM_STATE_RUNNING 1
#define SMGR_STREAM_STATE_FAILED 2
#define SMGR_STREAM_STATE_CONNECTING 3
#define SMGR_STREAM_STATE_SECURING 4
#define SMGR_STREAM_STATE_LISTENING 5
#define SMGR_STREAM_STATE_PAUSED 6
#define SMGR_STREAM_STATE_PUBLISHING 7
#define SMGR_STREAM_STATE_RESOLVING 8
#define SMGR_STREAM_STATE_SCRAMBLED 9
#define SMGR_STREAM_STATE_CONNECTED 10

#pragma pack(push, 4)

/* ---- Configuration records ------------------------------------------------ */

/* A network address: binary (network byte order), host name or URL. 532 bytes. */
typedef struct tagSMGR_IP_ADDRESS {
  int32_t enType; /* SMGR_..._ADDRESS / _HOSTNAME / SMGR_URL */
  BYTE acAddress[16];
  char szHostName[SMGR_MAX_HOSTNAME_SIZE];
} SMGR_IP_ADDRESS;

typedef struct tagSMGR_RTCP_CFG {
  uint16_t usPort;
} SMGR_RTCP_CFG;

typedef struct tagSMGR_TS_CFG {
  int32_t iPcrPID;
  int32_t iPmtPID;
  int32_t iStreamID;
  int32_t iProgNum;
} SMGR_TS_CFG;

/* One content source of a stream. 20 bytes. */
typedef struct tagSMGR_CONTENT_SRC {
  int32_t enType; /* SMGR_CONTENT_SRC_VIDEO / _AUDIO / _DATA */
  SMGR_OBJECT_SELECTOR Selector;
  int32_t iTsPid;
} SMGR_CONTENT_SRC;

typedef struct tagSMGR_CRYPTO_CFG {
  int32_t nKeySize; /* AES key size in bytes */
  BYTE acKeyData[32];
  char szPassphrase[80];
} SMGR_CRYPTO_CFG;

typedef struct tagSMGR_CDN_CFG {
  DWORD dwReserved;
  char szUserName[32];
  char szPassword[32];
  char szPublishName[512];
} SMGR_CDN_CFG;

typedef struct tagSMGR_SRT_CFG {
  int32_t nLatencyInMS;
  int32_t nMaxBwInKbps;
  int32_t enMode; /* SMGR_SRT_MODE_... */
  BOOL bNetworkAdaptive;
  BOOL bStrictEncryption;
  char szPublishingID[512];
  int32_t enLinkRedundancyMode; /* SMGR_SRT_REDUNDANCY_... */
  int32_t enDnGrRedundancyMode;
  int32_t nLinkWeight;
  int32_t nSecLinkWeight;
  SMGR_IP_ADDRESS SecAddress;
  uint16_t usSecPort;
  uint16_t usSecSourcePort;
  char szSecNetworkInterface[16];
  char szLinkDescription[64];
  char szSecLinkDescription[64];
} SMGR_SRT_CFG;

typedef struct tagSMGR_QX_FEC_CFG {
  int32_t Reserved;
} SMGR_QX_FEC_CFG;

typedef struct tagSMGR_PRO_MPEG_FEC_CFG {
  int32_t enLevel; /* SMGR_FEC_LEVEL_... */
  uint32_t nNumOfRows;
  uint32_t nNumOfColumns;
  BOOL bBlockAligned;
  BOOL bLinearFEC;
} SMGR_PRO_MPEG_FEC_CFG;

typedef union tagSMGR_ENCAP_SPEC_CFG {
  SMGR_CDN_CFG CDN;
  SMGR_SRT_CFG SRT;
} SMGR_ENCAP_SPEC_CFG;

typedef union tagSMGR_FEC_CFG {
  SMGR_QX_FEC_CFG QX;
  SMGR_PRO_MPEG_FEC_CFG ProMPEG;
} SMGR_FEC_CFG;

/* A stream as the caller asks for it (input of SessMgr_CreateStream). 2912 bytes. */
typedef struct tagSMGR_STREAM_CFG {
  uint32_t nSize; /* the caller's record size */
  int32_t nIndex; /* requested ID; 0 or less lets the daemon choose */
  char szName[SMGR_OBJECT_NAME_SIZE];
  int32_t enType; /* SMGR_STREAM_TYPE_... */
  BOOL bAutoStart;
  uint32_t enContents; /* SMGR_STREAM_CONTENTS_... bits */
  BOOL bUseRTCP;
  SMGR_IP_ADDRESS Address;
  uint16_t usPort;
  int32_t enEncapsulation; /* SMGR_STREAM_ENCAPS_... */
  SMGR_RTCP_CFG RtcpCfg;
  SMGR_TS_CFG TsCfg;
  uint16_t IpMTU;
  uint8_t IpTOS;
  uint8_t IpTTL;
  uint32_t nNumOfSources; /* 1..24 */
  SMGR_CONTENT_SRC ContentSources[SMGR_MAX_STREAM_CONTENT_SOURCES];
  BOOL bUseShaping;
  int32_t nOverheadPercentage;
  BOOL bEncrypted;
  SMGR_CRYPTO_CFG CryptoCfg;
  int32_t enFECType; /* SMGR_FEC_TYPE_... */
  char szStillImageFName[SMGR_MAX_API_FNAME_SIZE];
  BOOL bNonPersistent;
  BOOL bSendIdleCells;
  SMGR_ENCAP_SPEC_CFG EncapSpecCfg;
  int32_t enMetaDataEncaps; /* SMGR_STREAM_METADATA_ENCAPS_... */
  char szUserData[64];
  uint16_t usSourcePort;
  SMGR_FEC_CFG FECCfg;
  BOOL bDelayAudio;
  char szNetworkInterface[16];
  BOOL bAutoDetectDataBitRate;
  uint32_t nDataBitRateInKbps;
} SMGR_STREAM_CFG;

/* ---- Information records --------------------------------------------------- */

typedef struct tagSMGR_TS_INFO {
  int32_t iPcrPID;
  BOOL bPcrPIDWasAutoAssigned;
  int32_t iPmtPID;
  BOOL bPmtPIDWasAutoAssigned;
  int32_t iStreamID;
  int32_t iProgNum;
  BOOL bProgNumWasAutoAssigned;
} SMGR_TS_INFO;

typedef struct tagSMGR_CONTENT_INFO {
  int32_t enType;
  int32_t ID;
  char szName[SMGR_OBJECT_NAME_SIZE];
  int32_t iTsPid;
  BOOL bTsPidWasAutoAssigned;
} SMGR_CONTENT_INFO;

/* A stream as the daemon applied it. 4368 bytes. */
typedef struct tagSMGR_STREAM_INFO {
  uint32_t nSize;
  int32_t nIndex;
  char szName[SMGR_OBJECT_NAME_SIZE];
  int32_t enType;
  uint32_t SSRC;
  uint32_t enContents;
  BOOL bUseRTCP;
  SMGR_IP_ADDRESS Address;
  uint16_t usPort;
  int32_t enEncapsulation;
  int32_t nBandwithEstimateInKbps;
  SMGR_RTCP_CFG RtcpCfg;
  SMGR_TS_INFO TsInfo;
  uint16_t IpMTU;
  uint8_t IpTOS;
  uint8_t IpTTL;
  int32_t nNumOfSources;
  SMGR_CONTENT_INFO ContentSources[SMGR_MAX_STREAM_CONTENT_SOURCES];
  BOOL bUseShaping;
  int32_t nOverheadPercentage;
  BOOL bEncrypted;
  SMGR_CRYPTO_CFG CryptoCfg;
  int32_t enFECType;
  char szStillImageFName[SMGR_MAX_API_FNAME_SIZE];
  BOOL bNonPersistent;
  BOOL bSendIdleCells;
  SMGR_ENCAP_SPEC_CFG EncapSpecCfg;
  int32_t enMetaDataEncaps;
  char szUserData[64];
  uint16_t usSourcePort;
  SMGR_FEC_CFG FECCfg;
  BOOL bDelayAudio;
  char szNetworkInterface[16];
  BOOL bDataBitRateWasAutoAssigned;
  uint32_t nDataBitRateInKbps;
} SMGR_STREAM_INFO;

/* ---- Statistics records ----------------------------------------------------- */

typedef struct tagSMGR_SENDER_STREAM_STATS {
  SMGR_COUNTER nTxOkPackets;
  SMGR_COUNTER nTxOkBytes;
  SMGR_COUNTER nTxFailedPackets;
  SMGR_COUNTER nTxFailedBytes;
  SMGR_COUNTER nTxRetries;
  ULONG nPCROffset;
  SMGR_COUNTER nPCROffsetAdjustCounter;
  ULONG nPCROffsetLastAdjustUptime;
} SMGR_SENDER_STREAM_STATS;

typedef struct tagSMGR_RTCP_STATS {
  SMGR_COUNTER nRxOKPackets;
  SMGR_COUNTER nRxOKBytes;
  SMGR_COUNTER nRxInvalidPackets;
  SMGR_COUNTER nRxInvalidBytes;
  int32_t iLastRxErrno;
  SMGR_COUNTER nTxOKPackets;
  SMGR_COUNTER nTxOKBytes;
  SMGR_COUNTER nTxFailedPackets;
  SMGR_COUNTER nTxFailedBytes;
  int32_t iLastTxErrno;
  int32_t nReporters;
} SMGR_RTCP_STATS;

typedef struct tagSMGR_STREAM_SRT_STATS {
  union {
    struct {
      SMGR_COUNTER nSentKbps;
      SMGR_COUNTER nSentPkts;
      SMGR_COUNTER nSentBytes;
      SMGR_COUNTER nResentPkts;
      SMGR_COUNTER nResentBytes;
    } Tx;
    struct {
      SMGR_COUNTER nRecvKbps;
      SMGR_COUNTER nRecvPkts;
      SMGR_COUNTER nRecvBytes;
      SMGR_COUNTER nUndecryptedPkts;
      SMGR_COUNTER nUndecryptedBytes;
    } Rx;
  } Dir;
  SMGR_COUNTER nLostPkts;
  SMGR_COUNTER nDroppedPkts;
  SMGR_COUNTER nDroppedBytes;
  SMGR_COUNTER nXmitAckPkts;
  SMGR_COUNTER nXmitNakPkts;
  int32_t iReconnects;
  int32_t iMSS;
  int32_t iLatency;
  int32_t iMaxBw;
  int32_t iAvailBw;
  int32_t iKeyState;
  int32_t iKeyLength;
  int32_t iRTT;
  int32_t iBufPkts;
  int32_t iBufBytes;
  int32_t iBufTimespan;
  int32_t iRemotePort;
  int32_t iLocalPort;
  int32_t iOutPortGettingFullCnt;
  int32_t iMaxOutPortLevel;
  int32_t iVersion;     /* bits 16-23, 8-15, 0-7: see SessMgr_GetSRTVersionString */
  int32_t iPeerVersion; /* same encoding */
  SMGR_IP_ADDRESS RemoteAddress;
  int32_t enLinkRedundancyMode;
  int32_t enState;
  int32_t iLastSocketError;
  int32_t iLastSocketErrorTime;
  SMGR_IP_ADDRESS LocalAddress;
} SMGR_STREAM_SRT_STATS;

/* How a stream is doing. 3876 bytes. */
typedef struct tagSMGR_STREAM_STATS {
  uint32_t nSize;
  int32_t enType;
  int32_t enState; /* SMGR_STREAM_STATE_... */
  BOOL bRTCPEnabled;
  SMGR_COUNTER nUpTimeInSecs;
  uint32_t SSRC;
  int32_t iLastSocketError;
  int32_t iLastSocketErrorTime;
  union {
    SMGR_SENDER_STREAM_STATS Sender;
  } Counters;
  SMGR_RTCP_STATS RTCP;
  int32_t nMaxPacketPayload;
  int32_t nBitRateInKbps;
  union {
    struct {
      SMGR_STREAM_SRT_STATS Conn;
      int32_t nLinks; /* valid entries in Link, 0 to 2 */
      SMGR_STREAM_SRT_STATS Link[2];
    } SRT;
  } EncapSpecStats;
  uint16_t usSourcePort;
} SMGR_STREAM_STATS;

#pragma pack(pop)

/* ---- Layout checks ---------------------------------------------------------- */

SMGR_STATIC_ASSERT(sizeof(SMGR_IP_ADDRESS) == 532, ip_address_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_IP_ADDRESS, acAddress) == 4, ip_address_acAddress);
SMGR_STATIC_ASSERT(offsetof(SMGR_IP_ADDRESS, szHostName) == 20, ip_address_szHostName);
SMGR_STATIC_ASSERT(sizeof(SMGR_RTCP_CFG) == 2, rtcp_cfg_size);
SMGR_STATIC_ASSERT(sizeof(SMGR_TS_CFG) == 16, ts_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_TS_CFG, iPmtPID) == 4, ts_cfg_iPmtPID);
SMGR_STATIC_ASSERT(offsetof(SMGR_TS_CFG, iStreamID) == 8, ts_cfg_iStreamID);
SMGR_STATIC_ASSERT(offsetof(SMGR_TS_CFG, iProgNum) == 12, ts_cfg_iProgNum);
SMGR_STATIC_ASSERT(sizeof(SMGR_CONTENT_SRC) == 20, content_src_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_CONTENT_SRC, Selector) == 4, content_src_Selector);
SMGR_STATIC_ASSERT(offsetof(SMGR_CONTENT_SRC, iTsPid) == 16, content_src_iTsPid);
SMGR_STATIC_ASSERT(sizeof(SMGR_CRYPTO_CFG) == 116, crypto_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_CRYPTO_CFG, acKeyData) == 4, crypto_cfg_acKeyData);
SMGR_STATIC_ASSERT(offsetof(SMGR_CRYPTO_CFG, szPassphrase) == 36, crypto_cfg_szPassphrase);
SMGR_STATIC_ASSERT(sizeof(SMGR_CDN_CFG) == 580, cdn_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_CDN_CFG, szUserName) == 4, cdn_cfg_szUserName);
SMGR_STATIC_ASSERT(offsetof(SMGR_CDN_CFG, szPassword) == 36, cdn_cfg_szPassword);
SMGR_STATIC_ASSERT(offsetof(SMGR_CDN_CFG, szPublishName) == 68, cdn_cfg_szPublishName);
SMGR_STATIC_ASSERT(sizeof(SMGR_SRT_CFG) == 1228, srt_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, nMaxBwInKbps) == 4, srt_cfg_nMaxBwInKbps);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, enMode) == 8, srt_cfg_enMode);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, bNetworkAdaptive) == 12, srt_cfg_bNetworkAdaptive);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, bStrictEncryption) == 16, srt_cfg_bStrictEncryption);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, szPublishingID) == 20, srt_cfg_szPublishingID);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, enLinkRedundancyMode) == 532, srt_cfg_enLinkRedundancyMode);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, enDnGrRedundancyMode) == 536, srt_cfg_enDnGrRedundancyMode);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, nLinkWeight) == 540, srt_cfg_nLinkWeight);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, nSecLinkWeight) == 544, srt_cfg_nSecLinkWeight);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, SecAddress) == 548, srt_cfg_SecAddress);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, usSecPort) == 1080, srt_cfg_usSecPort);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, usSecSourcePort) == 1082, srt_cfg_usSecSourcePort);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, szSecNetworkInterface) == 1084, srt_cfg_szSecNetworkInterface);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, szLinkDescription) == 1100, srt_cfg_szLinkDescription);
SMGR_STATIC_ASSERT(offsetof(SMGR_SRT_CFG, szSecLinkDescription) == 1164, srt_cfg_szSecLinkDescription);
SMGR_STATIC_ASSERT(sizeof(SMGR_QX_FEC_CFG) == 4, qx_fec_cfg_size);
SMGR_STATIC_ASSERT(sizeof(SMGR_PRO_MPEG_FEC_CFG) == 20, pro_mpeg_fec_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_PRO_MPEG_FEC_CFG, nNumOfRows) == 4, pro_mpeg_nNumOfRows);
SMGR_STATIC_ASSERT(offsetof(SMGR_PRO_MPEG_FEC_CFG, nNumOfColumns) == 8, pro_mpeg_nNumOfColumns);
SMGR_STATIC_ASSERT(offsetof(SMGR_PRO_MPEG_FEC_CFG, bBlockAligned) == 12, pro_mpeg_bBlockAligned);
SMGR_STATIC_ASSERT(offsetof(SMGR_PRO_MPEG_FEC_CFG, bLinearFEC) == 16, pro_mpeg_bLinearFEC);
SMGR_STATIC_ASSERT(sizeof(SMGR_ENCAP_SPEC_CFG) == 1228, encap_spec_cfg_size);
SMGR_STATIC_ASSERT(sizeof(SMGR_FEC_CFG) == 20, fec_cfg_size);

SMGR_STATIC_ASSERT(sizeof(SMGR_STREAM_CFG) == 2912, stream_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, nIndex) == 4, stream_cfg_nIndex);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, szName) == 8, stream_cfg_szName);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, enType) == 72, stream_cfg_enType);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, bAutoStart) == 76, stream_cfg_bAutoStart);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, enContents) == 80, stream_cfg_enContents);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, bUseRTCP) == 84, stream_cfg_bUseRTCP);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, Address) == 88, stream_cfg_Address);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, usPort) == 620, stream_cfg_usPort);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, enEncapsulation) == 624, stream_cfg_enEncapsulation);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, RtcpCfg) == 628, stream_cfg_RtcpCfg);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, TsCfg) == 632, stream_cfg_TsCfg);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, IpMTU) == 648, stream_cfg_IpMTU);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, IpTOS) == 650, stream_cfg_IpTOS);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, IpTTL) == 651, stream_cfg_IpTTL);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, nNumOfSources) == 652, stream_cfg_nNumOfSources);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, ContentSources) == 656, stream_cfg_ContentSources);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, bUseShaping) == 1136, stream_cfg_bUseShaping);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, nOverheadPercentage) == 1140, stream_cfg_nOverheadPercentage);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, bEncrypted) == 1144, stream_cfg_bEncrypted);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, CryptoCfg) == 1148, stream_cfg_CryptoCfg);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, enFECType) == 1264, stream_cfg_enFECType);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, szStillImageFName) == 1268, stream_cfg_szStillImageFName);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, bNonPersistent) == 1556, stream_cfg_bNonPersistent);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, bSendIdleCells) == 1560, stream_cfg_bSendIdleCells);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, EncapSpecCfg) == 1564, stream_cfg_EncapSpecCfg);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, enMetaDataEncaps) == 2792, stream_cfg_enMetaDataEncaps);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, szUserData) == 2796, stream_cfg_szUserData);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, usSourcePort) == 2860, stream_cfg_usSourcePort);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, FECCfg) == 2864, stream_cfg_FECCfg);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, bDelayAudio) == 2884, stream_cfg_bDelayAudio);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, szNetworkInterface) == 2888, stream_cfg_szNetworkInterface);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, bAutoDetectDataBitRate) == 2904, stream_cfg_bAutoDetect);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_CFG, nDataBitRateInKbps) == 2908, stream_cfg_nDataBitRateInKbps);

SMGR_STATIC_ASSERT(sizeof(SMGR_TS_INFO) == 28, ts_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_TS_INFO, bPcrPIDWasAutoAssigned) == 4, ts_info_bPcrAuto);
SMGR_STATIC_ASSERT(offsetof(SMGR_TS_INFO, iPmtPID) == 8, ts_info_iPmtPID);
SMGR_STATIC_ASSERT(offsetof(SMGR_TS_INFO, bPmtPIDWasAutoAssigned) == 12, ts_info_bPmtAuto);
SMGR_STATIC_ASSERT(offsetof(SMGR_TS_INFO, iStreamID) == 16, ts_info_iStreamID);
SMGR_STATIC_ASSERT(offsetof(SMGR_TS_INFO, iProgNum) == 20, ts_info_iProgNum);
SMGR_STATIC_ASSERT(offsetof(SMGR_TS_INFO, bProgNumWasAutoAssigned) == 24, ts_info_bProgNumAuto);
SMGR_STATIC_ASSERT(sizeof(SMGR_CONTENT_INFO) == 80, content_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_CONTENT_INFO, ID) == 4, content_info_ID);
SMGR_STATIC_ASSERT(offsetof(SMGR_CONTENT_INFO, szName) == 8, content_info_szName);
SMGR_STATIC_ASSERT(offsetof(SMGR_CONTENT_INFO, iTsPid) == 72, content_info_iTsPid);
SMGR_STATIC_ASSERT(offsetof(SMGR_CONTENT_INFO, bTsPidWasAutoAssigned) == 76, content_info_bTsPidAuto);

SMGR_STATIC_ASSERT(sizeof(SMGR_STREAM_INFO) == 4368, stream_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, nIndex) == 4, stream_info_nIndex);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, szName) == 8, stream_info_szName);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, enType) == 72, stream_info_enType);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, SSRC) == 76, stream_info_SSRC);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, enContents) == 80, stream_info_enContents);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, bUseRTCP) == 84, stream_info_bUseRTCP);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, Address) == 88, stream_info_Address);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, usPort) == 620, stream_info_usPort);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, enEncapsulation) == 624, stream_info_enEncapsulation);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, nBandwithEstimateInKbps) == 628, stream_info_nBandwidth);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, RtcpCfg) == 632, stream_info_RtcpCfg);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, TsInfo) == 636, stream_info_TsInfo);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, IpMTU) == 664, stream_info_IpMTU);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, IpTOS) == 666, stream_info_IpTOS);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, IpTTL) == 667, stream_info_IpTTL);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, nNumOfSources) == 668, stream_info_nNumOfSources);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, ContentSources) == 672, stream_info_ContentSources);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, bUseShaping) == 2592, stream_info_bUseShaping);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, nOverheadPercentage) == 2596, stream_info_nOverhead);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, bEncrypted) == 2600, stream_info_bEncrypted);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, CryptoCfg) == 2604, stream_info_CryptoCfg);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, enFECType) == 2720, stream_info_enFECType);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, szStillImageFName) == 2724, stream_info_szStill);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, bNonPersistent) == 3012, stream_info_bNonPersistent);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, bSendIdleCells) == 3016, stream_info_bSendIdleCells);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, EncapSpecCfg) == 3020, stream_info_EncapSpecCfg);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, enMetaDataEncaps) == 4248, stream_info_enMetaDataEncaps);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, szUserData) == 4252, stream_info_szUserData);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, usSourcePort) == 4316, stream_info_usSourcePort);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, FECCfg) == 4320, stream_info_FECCfg);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, bDelayAudio) == 4340, stream_info_bDelayAudio);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, szNetworkInterface) == 4344, stream_info_szNetIf);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, bDataBitRateWasAutoAssigned) == 4360, stream_info_bDataAuto);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_INFO, nDataBitRateInKbps) == 4364, stream_info_nDataBitRate);

SMGR_STATIC_ASSERT(sizeof(SMGR_SENDER_STREAM_STATS) == 64, sender_stats_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_SENDER_STREAM_STATS, nTxRetries) == 32, sender_stats_nTxRetries);
SMGR_STATIC_ASSERT(offsetof(SMGR_SENDER_STREAM_STATS, nPCROffset) == 40, sender_stats_nPCROffset);
SMGR_STATIC_ASSERT(offsetof(SMGR_SENDER_STREAM_STATS, nPCROffsetAdjustCounter) == 48, sender_stats_nPCRAdj);
SMGR_STATIC_ASSERT(offsetof(SMGR_SENDER_STREAM_STATS, nPCROffsetLastAdjustUptime) == 56,
                   sender_stats_nPCRLast);
SMGR_STATIC_ASSERT(sizeof(SMGR_RTCP_STATS) == 76, rtcp_stats_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_RTCP_STATS, nRxOKBytes) == 8, rtcp_stats_nRxOKBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_RTCP_STATS, nRxInvalidPackets) == 16, rtcp_stats_nRxInvalidPackets);
SMGR_STATIC_ASSERT(offsetof(SMGR_RTCP_STATS, nRxInvalidBytes) == 24, rtcp_stats_nRxInvalidBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_RTCP_STATS, iLastRxErrno) == 32, rtcp_stats_iLastRxErrno);
SMGR_STATIC_ASSERT(offsetof(SMGR_RTCP_STATS, nTxOKPackets) == 36, rtcp_stats_nTxOKPackets);
SMGR_STATIC_ASSERT(offsetof(SMGR_RTCP_STATS, nTxOKBytes) == 44, rtcp_stats_nTxOKBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_RTCP_STATS, nTxFailedPackets) == 52, rtcp_stats_nTxFailedPackets);
SMGR_STATIC_ASSERT(offsetof(SMGR_RTCP_STATS, nTxFailedBytes) == 60, rtcp_stats_nTxFailedBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_RTCP_STATS, iLastTxErrno) == 68, rtcp_stats_iLastTxErrno);
SMGR_STATIC_ASSERT(offsetof(SMGR_RTCP_STATS, nReporters) == 72, rtcp_stats_nReporters);
SMGR_STATIC_ASSERT(sizeof(SMGR_STREAM_SRT_STATS) == 1228, srt_stats_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, nLostPkts) == 40, srt_stats_nLostPkts);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, nDroppedPkts) == 48, srt_stats_nDroppedPkts);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, nDroppedBytes) == 56, srt_stats_nDroppedBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, nXmitAckPkts) == 64, srt_stats_nXmitAckPkts);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, nXmitNakPkts) == 72, srt_stats_nXmitNakPkts);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iReconnects) == 80, srt_stats_iReconnects);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iMSS) == 84, srt_stats_iMSS);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iLatency) == 88, srt_stats_iLatency);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iMaxBw) == 92, srt_stats_iMaxBw);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iAvailBw) == 96, srt_stats_iAvailBw);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iKeyState) == 100, srt_stats_iKeyState);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iKeyLength) == 104, srt_stats_iKeyLength);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iRTT) == 108, srt_stats_iRTT);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iBufPkts) == 112, srt_stats_iBufPkts);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iBufBytes) == 116, srt_stats_iBufBytes);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iBufTimespan) == 120, srt_stats_iBufTimespan);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iRemotePort) == 124, srt_stats_iRemotePort);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iLocalPort) == 128, srt_stats_iLocalPort);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iOutPortGettingFullCnt) == 132, srt_stats_iOutPortFull);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iMaxOutPortLevel) == 136, srt_stats_iMaxOutPortLevel);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iVersion) == 140, srt_stats_iVersion);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iPeerVersion) == 144, srt_stats_iPeerVersion);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, RemoteAddress) == 148, srt_stats_RemoteAddress);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, enLinkRedundancyMode) == 680, srt_stats_enLinkRedundancy);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, enState) == 684, srt_stats_enState);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iLastSocketError) == 688, srt_stats_iLastSocketError);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, iLastSocketErrorTime) == 692,
                   srt_stats_iLastSocketErrTime);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_SRT_STATS, LocalAddress) == 696, srt_stats_LocalAddress);

SMGR_STATIC_ASSERT(sizeof(SMGR_STREAM_STATS) == 3876, stream_stats_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, enType) == 4, stream_stats_enType);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, enState) == 8, stream_stats_enState);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, bRTCPEnabled) == 12, stream_stats_bRTCPEnabled);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, nUpTimeInSecs) == 16, stream_stats_nUpTimeInSecs);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, SSRC) == 24, stream_stats_SSRC);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, iLastSocketError) == 28, stream_stats_iLastSocketError);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, iLastSocketErrorTime) == 32, stream_stats_iLastSocketErrTime);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, Counters) == 36, stream_stats_Counters);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, RTCP) == 100, stream_stats_RTCP);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, nMaxPacketPayload) == 176, stream_stats_nMaxPacketPayload);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, nBitRateInKbps) == 180, stream_stats_nBitRateInKbps);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, EncapSpecStats) == 184, stream_stats_EncapSpecStats);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, EncapSpecStats.SRT.nLinks) == 1412, stream_stats_nLinks);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, EncapSpecStats.SRT.Link) == 1416, stream_stats_Link);
SMGR_STATIC_ASSERT(offsetof(SMGR_STREAM_STATS, usSourcePort) == 3872, stream_stats_usSourcePort);

/* ---- Operations ------------------------------------------------------------ */

SMGR_EXTERN_C_BEGIN

/** Creates a stream from pCfg and returns a new handle. The configuration sent
 * is the first min(pCfg->nSize, 2912) bytes of the record, zeros after them;
 * the content sources (their coverage of enContents and the request's
 * per-source entries) are read from the whole record whatever its nSize. Fails with 7 when this process
 * already holds a handle of that ID or name. TRUE with warning 0x80000003 when the host name of the address
 * did not resolve. */
SMGR_API BOOL SessMgr_CreateStream(const SMGR_STREAM_CFG* pCfg, HSTREAM* phStream);
/** Opens an existing stream by ID or name; handles of one stream are shared and counted. */
SMGR_API BOOL SessMgr_OpenStream(const SMGR_OBJECT_SELECTOR* pSelector, HSTREAM* phStream);
/** Releases one Open or Create of the handle; *phStream is cleared first. */
SMGR_API BOOL SessMgr_CloseStream(HSTREAM* phStream);
/** The stream ID that a handle remembers. No message, no lock: the ID is
 * read from the handle record while other threads may hold the API mutex.
 * The ID of a handle never changes, and a close that drops one of several
 * references leaves the record alone, so concurrent Open/Close of other
 * references is harmless. A close of the last reference (or the last
 * SessMgrLib_Shutdown) frees the record: a read racing it touches freed
 * memory and at best fails with 2 on the wiped signature. Keep a reference
 * of your own for as long as any thread may call this. */
SMGR_API BOOL SessMgr_GetStreamID(HSTREAM hStream, int* pID);
/** Deletes a stream (selector by ID or name); local handles stay until closed. */
SMGR_API BOOL SessMgr_DeleteStream(const SMGR_OBJECT_SELECTOR* pSelector);
/** Starts a stream; a warning result is a success and stays the last error. */
SMGR_API BOOL SessMgr_StartStream(const SMGR_OBJECT_SELECTOR* pSelector);
/** Stops a stream (selector by ID or name). */
SMGR_API BOOL SessMgr_StopStream(const SMGR_OBJECT_SELECTOR* pSelector);
/** Pauses a stream. */
SMGR_API BOOL SessMgr_PauseStream(const SMGR_OBJECT_SELECTOR* pSelector);
/** Resumes a paused stream. */
SMGR_API BOOL SessMgr_ResumeStream(const SMGR_OBJECT_SELECTOR* pSelector);
/** Reads a stream's applied configuration; set pInfo->nSize first. On success
 * pInfo->nSize is the number of bytes copied. */
SMGR_API BOOL SessMgr_GetStreamInfo(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_STREAM_INFO* pInfo);
/** Reads a stream's statistics; set pStats->nSize first (negotiated as for info). */
SMGR_API BOOL SessMgr_GetStreamStats(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_STREAM_STATS* pStats);
/** Zeroes a stream's counters in the daemon. */
SMGR_API BOOL SessMgr_ResetStreamStats(const SMGR_OBJECT_SELECTOR* pSelector);
/** Lists streams page by page: asks for nBuffSize / sizeof(SMGR_STREAM_INFO)
 * records from index nOffset. Read them with a stride of *pnElementSize. A
 * NULL buffer learns the total alone. Every output pointer may be NULL. */
SMGR_API BOOL SessMgr_EnumerateStreams(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                       UINT* pnTotalStreamCount, UINT* pnReturnedStreams,
                                       size_t* pnElementSize);
/** 0 when the two configurations are equal in every compared field, 1 at the
 * first difference (traced). Local: no message, no lock, no last error. */
SMGR_API int SessMgr_CompareStreamConfigs(const SMGR_STREAM_CFG* pCfg1, const SMGR_STREAM_CFG* pCfg2);

/** Deletes one still image of the still-image folder (".mp4" is added when missing). */
SMGR_API BOOL SessMgr_DeleteStillImage(const char* szFileName);
/** Deletes every still image; the counts are filled whenever the daemon answers. */
SMGR_API BOOL SessMgr_DeleteAllStillImages(ULONG* pnStillsDeleted, ULONG* pnStillsSkipped);

/* Value names: each writes the text of a value into szBuffer (truncated to
 * nSize) and returns szBuffer. */
/** "TX", "RX", "REC"; "(Invalid)" otherwise. */
SMGR_API char* SessMgr_GetStreamTypeString(int enType, char* szBuffer, size_t nSize);
/** "Direct-RTP", "TS-UDP", "TS-RTP", "QuickTime", "TS-SRT"; "(Invalid:%d)" otherwise. */
SMGR_API char* SessMgr_GetStreamEncapsulationString(int enEncapsulation, char* szBuffer, size_t nSize);
/** Payload format names ("Default", "PCM", "RAW", ...); "(Invalid:%d)" otherwise. */
SMGR_API char* SessMgr_GetStreamContentFormatString(int enFormat, char* szBuffer, size_t nSize);
/** "Synchronous", "Asynchronous", "Async-SyncAU"; "(Invalid:%d)" otherwise. */
SMGR_API char* SessMgr_GetStreamDataEncapsString(int enEncaps, char* szBuffer, size_t nSize);
/** Stream state names; returns the constant "Invalid input buffer" for a NULL or empty buffer. */
SMGR_API char* SessMgr_GetStreamStateString(int enState, char* szBuffer, size_t nSize);
/** "major.minor.patch" of an SRT version number (bits 16-23, 8-15, 0-7). */
SMGR_API char* SessMgr_GetSRTVersionString(int iVersion, char* szBuffer, size_t nSize);
/** "Caller", "Listener", "Rendezvous". */
SMGR_API char* SessMgr_GetStreamModeString(int enMode, char* szBuffer, size_t nSize);
/** "Optional", "(None)", "Active-Active", "Active-Backup". */
SMGR_API char* SessMgr_GetSRTStreamRedundancyString(int enMode, char* szBuffer, size_t nSize);
/** "(None)", "Tolvane", "Pro-MPEG". */
SMGR_API char* SessMgr_GetFECTypeString(int enFECType, char* szBuffer, size_t nSize);
/** "A (Column Only)", "B (Row and Column)". */
SMGR_API char* SessMgr_GetMpegProFECLevelString(int enLevel, char* szBuffer, size_t nSize);
/** Caller-facing text of an address ("10.0.0.5", "\"cam.local\":10.0.0.5", "ANY", ...). */
SMGR_API char* SessMgr_GetIPAddressString(const SMGR_IP_ADDRESS* pAddr, char* szBuffer, size_t nSize);
/** Trace text of an address: the caller-facing text prefixed with the kind's name. */
SMGR_API char* GetIPAddressDebugString(const SMGR_IP_ADDRESS* pAddr, char* szBuffer, size_t nSize);

/** Frees every stream handle of this process, whatever its count (library
 * shutdown). Handles still held by callers become dangling. */
SMGR_API void CleanupSessMgrStreams(void);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_STREAMS_H */
