/* Wire records of the stream family: the 68-byte wire object selector that
 * every selector family embeds, and the stream and still-image requests and
 * responses. Little-endian, packed to 4 bytes; the API records travel unchanged. */
#ifndef SESSMGR_SMGRPROT_STREAMS_H
#define SESSMGR_SMGRPROT_STREAMS_H

#include "sessmgr/sm_objects.h"
#include "sessmgr/sm_results.h"
#include "sessmgr/sm_streams.h"
#include "sessmgr/sm_types.h"
#include "sessmgr/smgrprot_core.h"

#define SMGRPROT_STILL_FILE_NAME_SIZE 256
#define SMGRPROT_STILL_DELETE_ALL_KEYWORD "all"

#pragma pack(push, 4)

/* An object selector as the daemon sees it: an ID or a name, never a handle. 68 bytes. */
typedef struct tagSMGRPROT_OBJECT_SELECTOR {
  int32_t enType; /* SMGR_SELECTBY_OBJECT_ID or SMGR_SELECTBY_OBJECT_NAME */
  union {
    int32_t ID;
    char szName[SMGR_OBJECT_NAME_SIZE];
  } Via;
} SMGRPROT_OBJECT_SELECTOR;

/* Create (500): the prepared configuration, then one wire entry per content
 * source carrying its kind (1, 2, 4) and its ID or name text. */
typedef struct tagSMGRPROT_STREAM_CREATE_REQ_DATA {
  SMGR_STREAM_CFG StreamCfg;
  SMGRPROT_OBJECT_SELECTOR ContentSources[SMGR_MAX_STREAM_CONTENT_SOURCES];
} SMGRPROT_STREAM_CREATE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_STREAM_CREATE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_STREAM_CREATE_REQ_DATA Data;
} SMGRPROT_MSG_STREAM_CREATE_REQ;

/* Create and Open responses (501, 517): Result alone, no description. */
typedef struct tagSMGRPROT_STREAM_CREATE_RSP_DATA {
  SMGR_RESULT Result;
  int32_t iStreamID;
  char szName[SMGR_OBJECT_NAME_SIZE];
} SMGRPROT_STREAM_CREATE_RSP_DATA;
typedef struct tagSMGRPROT_MSG_STREAM_CREATE_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_STREAM_CREATE_RSP_DATA Data;
} SMGRPROT_MSG_STREAM_CREATE_RSP;
typedef SMGRPROT_STREAM_CREATE_RSP_DATA SMGRPROT_STREAM_OPEN_RSP_DATA;
typedef SMGRPROT_MSG_STREAM_CREATE_RSP SMGRPROT_MSG_STREAM_OPEN_RSP;

/* Requests that carry one selector (delete, start, stop, pause, resume, getinfo,
 * getstats, resetstats, open). 84 bytes. */
typedef struct tagSMGRPROT_STREAM_SELECT_REQ_DATA {
  SMGRPROT_OBJECT_SELECTOR Select;
} SMGRPROT_STREAM_SELECT_REQ_DATA;
typedef struct tagSMGRPROT_MSG_STREAM_SELECT_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_STREAM_SELECT_REQ_DATA Data;
} SMGRPROT_MSG_STREAM_SELECT_REQ;
typedef SMGRPROT_MSG_STREAM_SELECT_REQ SMGRPROT_MSG_STREAM_DELETE_REQ;
typedef SMGRPROT_MSG_STREAM_SELECT_REQ SMGRPROT_MSG_STREAM_START_REQ;
typedef SMGRPROT_MSG_STREAM_SELECT_REQ SMGRPROT_MSG_STREAM_STOP_REQ;
typedef SMGRPROT_MSG_STREAM_SELECT_REQ SMGRPROT_MSG_STREAM_PAUSE_REQ;
typedef SMGRPROT_MSG_STREAM_SELECT_REQ SMGRPROT_MSG_STREAM_RESUME_REQ;
typedef SMGRPROT_MSG_STREAM_SELECT_REQ SMGRPROT_MSG_STREAM_GETINFO_REQ;
typedef SMGRPROT_MSG_STREAM_SELECT_REQ SMGRPROT_MSG_STREAM_GETSTATS_REQ;
typedef SMGRPROT_MSG_STREAM_SELECT_REQ SMGRPROT_MSG_STREAM_RESETSTATS_REQ;
typedef SMGRPROT_MSG_STREAM_SELECT_REQ SMGRPROT_MSG_STREAM_OPEN_REQ;

/* Close (518): the ID the handle remembers. 20 bytes. */
typedef struct tagSMGRPROT_STREAM_CLOSE_REQ_DATA {
  int32_t iStreamID;
} SMGRPROT_STREAM_CLOSE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_STREAM_CLOSE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_STREAM_CLOSE_REQ_DATA Data;
} SMGRPROT_MSG_STREAM_CLOSE_REQ;

/* Result-only responses (delete, stop, pause, resume, resetstats, close). 20 bytes. */
typedef struct tagSMGRPROT_STREAM_RESULT_RSP_DATA {
  SMGR_RESULT Result;
} SMGRPROT_STREAM_RESULT_RSP_DATA;
typedef struct tagSMGRPROT_MSG_STREAM_RESULT_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_STREAM_RESULT_RSP_DATA Data;
} SMGRPROT_MSG_STREAM_RESULT_RSP;
typedef SMGRPROT_MSG_STREAM_RESULT_RSP SMGRPROT_MSG_STREAM_DELETE_RSP;
typedef SMGRPROT_MSG_STREAM_RESULT_RSP SMGRPROT_MSG_STREAM_STOP_RSP;
typedef SMGRPROT_MSG_STREAM_RESULT_RSP SMGRPROT_MSG_STREAM_PAUSE_RSP;
typedef SMGRPROT_MSG_STREAM_RESULT_RSP SMGRPROT_MSG_STREAM_RESUME_RSP;
typedef SMGRPROT_MSG_STREAM_RESULT_RSP SMGRPROT_MSG_STREAM_RESETSTATS_RSP;
typedef SMGRPROT_MSG_STREAM_RESULT_RSP SMGRPROT_MSG_STREAM_CLOSE_RSP;

/* Start response (507): Result and the daemon's description. 180 bytes. */
typedef struct tagSMGRPROT_STREAM_START_RSP_DATA {
  SMGR_RESULT Result;
  char szErrorDescription[SMGRPROT_ERROR_DESCRIPTION_SIZE];
} SMGRPROT_STREAM_START_RSP_DATA;
typedef struct tagSMGRPROT_MSG_STREAM_START_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_STREAM_START_RSP_DATA Data;
} SMGRPROT_MSG_STREAM_START_RSP;

/* GetInfo response (511). 4388 bytes. */
typedef struct tagSMGRPROT_STREAM_GETINFO_RSP_DATA {
  SMGR_RESULT Result;
  SMGR_STREAM_INFO StreamInfo;
} SMGRPROT_STREAM_GETINFO_RSP_DATA;
typedef struct tagSMGRPROT_MSG_STREAM_GETINFO_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_STREAM_GETINFO_RSP_DATA Data;
} SMGRPROT_MSG_STREAM_GETINFO_RSP;

/* GetStats response (513). 3896 bytes. */
typedef struct tagSMGRPROT_STREAM_GETSTATS_RSP_DATA {
  SMGR_RESULT Result;
  SMGR_STREAM_STATS StreamStats;
} SMGRPROT_STREAM_GETSTATS_RSP_DATA;
typedef struct tagSMGRPROT_MSG_STREAM_GETSTATS_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_STREAM_GETSTATS_RSP_DATA Data;
} SMGRPROT_MSG_STREAM_GETSTATS_RSP;

/* Enumerate (504): how many records fit the caller's buffer, from which index. 24 bytes. */
typedef struct tagSMGRPROT_STREAM_ENUMERATE_REQ_DATA {
  int32_t nNumOfStreams;
  int32_t nStartOffset;
} SMGRPROT_STREAM_ENUMERATE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_STREAM_ENUMERATE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_STREAM_ENUMERATE_REQ_DATA Data;
} SMGRPROT_MSG_STREAM_ENUMERATE_REQ;

/* Enumerate response (505): variable length; the declared record holds one
 * element (4400 bytes), the daemon sends nNumOfStreams of nStreamInfoSize each. */
typedef struct tagSMGRPROT_STREAM_ENUMERATE_RSP_DATA {
  SMGR_RESULT Result;
  uint32_t nTotalNumOfStreams;
  uint32_t nNumOfStreams;
  uint32_t nStreamInfoSize;
  SMGR_STREAM_INFO StreamInfo[1];
} SMGRPROT_STREAM_ENUMERATE_RSP_DATA;
typedef struct tagSMGRPROT_MSG_STREAM_ENUMERATE_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_STREAM_ENUMERATE_RSP_DATA Data;
} SMGRPROT_MSG_STREAM_ENUMERATE_RSP;

/* Still image deletion (524): a normalised file name, or "all". 272 bytes. */
typedef struct tagSMGRPROT_STILL_DELETE_REQ_DATA {
  char szFileName[SMGRPROT_STILL_FILE_NAME_SIZE];
} SMGRPROT_STILL_DELETE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_STILL_DELETE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_STILL_DELETE_REQ_DATA Data;
} SMGRPROT_MSG_STILL_DELETE_REQ;

/* Still image deletion response (525). 32 bytes. */
typedef struct tagSMGRPROT_STILL_DELETE_RSP_DATA {
  SMGR_RESULT Result;
  uint32_t nDeletedCount;
  uint32_t nNotDeletedCount;
  int32_t iErrno; /* errno of the last failed deletion */
} SMGRPROT_STILL_DELETE_RSP_DATA;
typedef struct tagSMGRPROT_MSG_STILL_DELETE_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_STILL_DELETE_RSP_DATA Data;
} SMGRPROT_MSG_STILL_DELETE_RSP;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_OBJECT_SELECTOR) == 68, prot_object_selector_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_OBJECT_SELECTOR, Via) == 4, prot_object_selector_via);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_STREAM_CREATE_REQ) == 4560, prot_stream_create_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_CREATE_REQ, Data.StreamCfg) == 16,
                   prot_stream_create_req_cfg);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_CREATE_REQ, Data.ContentSources) == 2928,
                   prot_stream_create_req_sources);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_STREAM_CREATE_RSP) == 88, prot_stream_create_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_CREATE_RSP, Data.Result) == 16,
                   prot_stream_create_rsp_result);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_CREATE_RSP, Data.iStreamID) == 20, prot_stream_create_rsp_id);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_CREATE_RSP, Data.szName) == 24, prot_stream_create_rsp_name);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_STREAM_SELECT_REQ) == 84, prot_stream_select_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_SELECT_REQ, Data.Select) == 16, prot_stream_select_req_sel);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_STREAM_CLOSE_REQ) == 20, prot_stream_close_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_CLOSE_REQ, Data.iStreamID) == 16, prot_stream_close_req_id);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_STREAM_RESULT_RSP) == 20, prot_stream_result_rsp_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_STREAM_START_RSP) == 180, prot_stream_start_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_START_RSP, Data.szErrorDescription) == 20,
                   prot_stream_start_rsp_description);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_STREAM_GETINFO_RSP) == 4388, prot_stream_getinfo_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_GETINFO_RSP, Data.StreamInfo) == 20,
                   prot_stream_getinfo_rsp_info);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_STREAM_GETSTATS_RSP) == 3896, prot_stream_getstats_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_GETSTATS_RSP, Data.StreamStats) == 20,
                   prot_stream_getstats_rsp_stats);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_STREAM_ENUMERATE_REQ) == 24, prot_stream_enum_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_ENUMERATE_REQ, Data.nNumOfStreams) == 16,
                   prot_stream_enum_req_n);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_ENUMERATE_REQ, Data.nStartOffset) == 20,
                   prot_stream_enum_req_off);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_STREAM_ENUMERATE_RSP) == 4400, prot_stream_enum_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_ENUMERATE_RSP, Data.nTotalNumOfStreams) == 20,
                   prot_stream_enum_rsp_total);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_ENUMERATE_RSP, Data.nNumOfStreams) == 24,
                   prot_stream_enum_rsp_n);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_ENUMERATE_RSP, Data.nStreamInfoSize) == 28,
                   prot_stream_enum_rsp_size_field);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STREAM_ENUMERATE_RSP, Data.StreamInfo) == 32,
                   prot_stream_enum_rsp_info);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_STILL_DELETE_REQ) == 272, prot_still_delete_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STILL_DELETE_REQ, Data.szFileName) == 16,
                   prot_still_delete_req_name);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_STILL_DELETE_RSP) == 32, prot_still_delete_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STILL_DELETE_RSP, Data.nDeletedCount) == 20,
                   prot_still_delete_rsp_del);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STILL_DELETE_RSP, Data.nNotDeletedCount) == 24,
                   prot_still_delete_rsp_skip);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_STILL_DELETE_RSP, Data.iErrno) == 28, prot_still_delete_rsp_errno);

#endif /* SESSMGR_SMGRPROT_STREAMS_H */
