/* Wire records of the session family (700 to 719). No session response
 * carries a description: every one starts with Result alone. Little-endian,
 * packed to 4 bytes; the API records travel unchanged. */
#ifndef SESSMGR_SMGRPROT_SESSIONS_H
#define SESSMGR_SMGRPROT_SESSIONS_H

#include "sessmgr/sm_sessions.h"
#include "sessmgr/sm_types.h"
#include "sessmgr/smgrprot_core.h"
#include "sessmgr/smgrprot_streams.h"

#pragma pack(push, 4)

/* Create (700): the caller's configuration, then one wire entry per member
 * stream (ID or name text; enType stays 0, the daemon reads the selection type
 * from SessionCfg.Streams[i].enType). 1304 bytes. */
typedef struct tagSMGRPROT_SESSION_CREATE_REQ_DATA {
  SMGR_SESSION_CFG SessionCfg;
  SMGRPROT_OBJECT_SELECTOR Streams[SMGR_MAX_SESSION_STREAMS];
} SMGRPROT_SESSION_CREATE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_SESSION_CREATE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_SESSION_CREATE_REQ_DATA Data;
} SMGRPROT_MSG_SESSION_CREATE_REQ;

/* Create response (701). 88 bytes. */
typedef struct tagSMGRPROT_SESSION_CREATE_RSP_DATA {
  SMGR_RESULT Result;
  int32_t iSessionID;
  char szName[SMGR_OBJECT_NAME_SIZE];
} SMGRPROT_SESSION_CREATE_RSP_DATA;
typedef struct tagSMGRPROT_MSG_SESSION_CREATE_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_SESSION_CREATE_RSP_DATA Data;
} SMGRPROT_MSG_SESSION_CREATE_RSP;

/* Requests that carry one selector (delete, start, stop, getinfo, getstats). 84 bytes. */
typedef SMGRPROT_MSG_STREAM_SELECT_REQ SMGRPROT_MSG_SESSION_SELECT_REQ;
typedef SMGRPROT_MSG_SESSION_SELECT_REQ SMGRPROT_MSG_SESSION_DELETE_REQ;
typedef SMGRPROT_MSG_SESSION_SELECT_REQ SMGRPROT_MSG_SESSION_START_REQ;
typedef SMGRPROT_MSG_SESSION_SELECT_REQ SMGRPROT_MSG_SESSION_STOP_REQ;
typedef SMGRPROT_MSG_SESSION_SELECT_REQ SMGRPROT_MSG_SESSION_GETINFO_REQ;
typedef SMGRPROT_MSG_SESSION_SELECT_REQ SMGRPROT_MSG_SESSION_GETSTATS_REQ;

/* Close (710): the ID the handle remembers. 20 bytes. */
typedef struct tagSMGRPROT_SESSION_CLOSE_REQ_DATA {
  int32_t iSessionID;
} SMGRPROT_SESSION_CLOSE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_SESSION_CLOSE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_SESSION_CLOSE_REQ_DATA Data;
} SMGRPROT_MSG_SESSION_CLOSE_REQ;

/* Result-only responses (delete, close, start, stop). 20 bytes. */
typedef SMGRPROT_MSG_STREAM_RESULT_RSP SMGRPROT_MSG_SESSION_RESULT_RSP;
typedef SMGRPROT_MSG_SESSION_RESULT_RSP SMGRPROT_MSG_SESSION_DELETE_RSP;
typedef SMGRPROT_MSG_SESSION_RESULT_RSP SMGRPROT_MSG_SESSION_CLOSE_RSP;
typedef SMGRPROT_MSG_SESSION_RESULT_RSP SMGRPROT_MSG_SESSION_START_RSP;
typedef SMGRPROT_MSG_SESSION_RESULT_RSP SMGRPROT_MSG_SESSION_STOP_RSP;

/* GetInfo response (717). 1636 bytes. */
typedef struct tagSMGRPROT_SESSION_GETINFO_RSP_DATA {
  SMGR_RESULT Result;
  SMGR_SESSION_INFO SessionInfo;
} SMGRPROT_SESSION_GETINFO_RSP_DATA;
typedef struct tagSMGRPROT_MSG_SESSION_GETINFO_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_SESSION_GETINFO_RSP_DATA Data;
} SMGRPROT_MSG_SESSION_GETINFO_RSP;

/* GetStats response (719). 64 bytes. */
typedef struct tagSMGRPROT_SESSION_GETSTATS_RSP_DATA {
  SMGR_RESULT Result;
  SMGR_SESSION_STATS SessionStats;
} SMGRPROT_SESSION_GETSTATS_RSP_DATA;
typedef struct tagSMGRPROT_MSG_SESSION_GETSTATS_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_SESSION_GETSTATS_RSP_DATA Data;
} SMGRPROT_MSG_SESSION_GETSTATS_RSP;

/* Enumerate (708). 24 bytes. */
typedef struct tagSMGRPROT_SESSION_ENUMERATE_REQ_DATA {
  uint32_t nNumOfSessions;
  uint32_t nStartOffset;
} SMGRPROT_SESSION_ENUMERATE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_SESSION_ENUMERATE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_SESSION_ENUMERATE_REQ_DATA Data;
} SMGRPROT_MSG_SESSION_ENUMERATE_REQ;

/* Enumerate response (709): variable length; the declared record holds one
 * element, the daemon sends nNumOfSessions of nSessionInfoSize each. */
typedef struct tagSMGRPROT_SESSION_ENUMERATE_RSP_DATA {
  SMGR_RESULT Result;
  uint32_t nTotalNumOfSessions;
  uint32_t nNumOfSessions;
  uint32_t nSessionInfoSize;
  SMGR_SESSION_INFO SessionInfo[1];
} SMGRPROT_SESSION_ENUMERATE_RSP_DATA;
typedef struct tagSMGRPROT_MSG_SESSION_ENUMERATE_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_SESSION_ENUMERATE_RSP_DATA Data;
} SMGRPROT_MSG_SESSION_ENUMERATE_RSP;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SESSION_CREATE_REQ) == 1304, prot_session_create_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_CREATE_REQ, Data.SessionCfg) == 16,
                   prot_session_create_req_cfg);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_CREATE_REQ, Data.Streams) == 1100,
                   prot_session_create_req_streams);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SESSION_CREATE_RSP) == 88, prot_session_create_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_CREATE_RSP, Data.Result) == 16,
                   prot_session_create_rsp_result);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_CREATE_RSP, Data.iSessionID) == 20,
                   prot_session_create_rsp_id);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_CREATE_RSP, Data.szName) == 24,
                   prot_session_create_rsp_name);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SESSION_CLOSE_REQ) == 20, prot_session_close_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_CLOSE_REQ, Data.iSessionID) == 16,
                   prot_session_close_req_id);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SESSION_GETINFO_RSP) == 1636, prot_session_getinfo_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_GETINFO_RSP, Data.SessionInfo) == 20,
                   prot_session_getinfo_rsp_info);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SESSION_GETSTATS_RSP) == 64, prot_session_getstats_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_GETSTATS_RSP, Data.SessionStats) == 20,
                   prot_session_getstats_rsp_stats);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SESSION_ENUMERATE_REQ) == 24, prot_session_enum_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_ENUMERATE_REQ, Data.nNumOfSessions) == 16,
                   prot_session_enum_req_n);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_ENUMERATE_REQ, Data.nStartOffset) == 20,
                   prot_session_enum_req_off);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_ENUMERATE_RSP, Data.nTotalNumOfSessions) == 20,
                   prot_session_enum_rsp_total);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_ENUMERATE_RSP, Data.nNumOfSessions) == 24,
                   prot_session_enum_rsp_n);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_ENUMERATE_RSP, Data.nSessionInfoSize) == 28,
                   prot_session_enum_rsp_size_field);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SESSION_ENUMERATE_RSP, Data.SessionInfo) == 32,
                   prot_session_enum_rsp_info);

#endif /* SESSMGR_SMGRPROT_SESSIONS_H */
