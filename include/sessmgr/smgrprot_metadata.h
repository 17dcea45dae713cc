/* Wire records of the metadata-source family: requests and responses of
 * messages 1100 to 1121. Little-endian, packed to 4 bytes; the API records
 * travel unchanged. The create response keeps its description at byte 88. */
#ifndef SESSMGR_SMGRPROT_METADATA_H
#define SESSMGR_SMGRPROT_METADATA_H

#include "sessmgr/sm_metadata.h"
#include "sessmgr/sm_results.h"
#include "sessmgr/sm_types.h"
#include "sessmgr/smgrprot_core.h"
#include "sessmgr/smgrprot_streams.h"

#pragma pack(push, 4)

/* Create (1100): the prepared configuration. 5356 bytes. */
typedef struct tagSMGRPROT_METADATA_CREATE_REQ_DATA {
  SMGR_METADATA_CFG MetaDataCfg;
} SMGRPROT_METADATA_CREATE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_METADATA_CREATE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_METADATA_CREATE_REQ_DATA Data;
} SMGRPROT_MSG_METADATA_CREATE_REQ;

/* Create response (1101): the new ID and name, then the description. 248 bytes. */
typedef struct tagSMGRPROT_METADATA_CREATE_RSP_DATA {
  SMGR_RESULT Result;
  int32_t iMetaDataID;
  char szName[SMGR_OBJECT_NAME_SIZE];
  char szErrorDescription[SMGRPROT_ERROR_DESCRIPTION_SIZE];
} SMGRPROT_METADATA_CREATE_RSP_DATA;
typedef struct tagSMGRPROT_MSG_METADATA_CREATE_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_METADATA_CREATE_RSP_DATA Data;
} SMGRPROT_MSG_METADATA_CREATE_RSP;

/* Requests that carry one selector (delete, open, getinfo, getstats, start,
 * stop, resetstats). 84 bytes. */
typedef struct tagSMGRPROT_METADATA_SELECT_REQ_DATA {
  SMGRPROT_OBJECT_SELECTOR Select;
} SMGRPROT_METADATA_SELECT_REQ_DATA;
typedef struct tagSMGRPROT_MSG_METADATA_SELECT_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_METADATA_SELECT_REQ_DATA Data;
} SMGRPROT_MSG_METADATA_SELECT_REQ;
typedef SMGRPROT_MSG_METADATA_SELECT_REQ SMGRPROT_MSG_METADATA_DELETE_REQ;
typedef SMGRPROT_MSG_METADATA_SELECT_REQ SMGRPROT_MSG_METADATA_OPEN_REQ;
typedef SMGRPROT_MSG_METADATA_SELECT_REQ SMGRPROT_MSG_METADATA_GETINFO_REQ;
typedef SMGRPROT_MSG_METADATA_SELECT_REQ SMGRPROT_MSG_METADATA_GETSTATS_REQ;
typedef SMGRPROT_MSG_METADATA_SELECT_REQ SMGRPROT_MSG_METADATA_START_REQ;
typedef SMGRPROT_MSG_METADATA_SELECT_REQ SMGRPROT_MSG_METADATA_STOP_REQ;
typedef SMGRPROT_MSG_METADATA_SELECT_REQ SMGRPROT_MSG_METADATA_RESETSTATS_REQ;

/* Result-only responses (delete, close, stop, resetstats). 20 bytes. */
typedef struct tagSMGRPROT_METADATA_RESULT_RSP_DATA {
  SMGR_RESULT Result;
} SMGRPROT_METADATA_RESULT_RSP_DATA;
typedef struct tagSMGRPROT_MSG_METADATA_RESULT_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_METADATA_RESULT_RSP_DATA Data;
} SMGRPROT_MSG_METADATA_RESULT_RSP;
typedef SMGRPROT_MSG_METADATA_RESULT_RSP SMGRPROT_MSG_METADATA_DELETE_RSP;
typedef SMGRPROT_MSG_METADATA_RESULT_RSP SMGRPROT_MSG_METADATA_CLOSE_RSP;
typedef SMGRPROT_MSG_METADATA_RESULT_RSP SMGRPROT_MSG_METADATA_STOP_RSP;
typedef SMGRPROT_MSG_METADATA_RESULT_RSP SMGRPROT_MSG_METADATA_RESETSTATS_RSP;

/* Responses with a description (start, setcfg). 180 bytes. */
typedef struct tagSMGRPROT_METADATA_DESCRIBED_RSP_DATA {
  SMGR_RESULT Result;
  char szErrorDescription[SMGRPROT_ERROR_DESCRIPTION_SIZE];
} SMGRPROT_METADATA_DESCRIBED_RSP_DATA;
typedef struct tagSMGRPROT_MSG_METADATA_DESCRIBED_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_METADATA_DESCRIBED_RSP_DATA Data;
} SMGRPROT_MSG_METADATA_DESCRIBED_RSP;
typedef SMGRPROT_MSG_METADATA_DESCRIBED_RSP SMGRPROT_MSG_METADATA_START_RSP;
typedef SMGRPROT_MSG_METADATA_DESCRIBED_RSP SMGRPROT_MSG_METADATA_SETCFG_RSP;

/* Enumerate (1104): how many items, from which position. 24 bytes. */
typedef struct tagSMGRPROT_METADATA_ENUMERATE_REQ_DATA {
  uint32_t nNumOfItems;
  uint32_t nStartOffset;
} SMGRPROT_METADATA_ENUMERATE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_METADATA_ENUMERATE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_METADATA_ENUMERATE_REQ_DATA Data;
} SMGRPROT_MSG_METADATA_ENUMERATE_REQ;

/* Enumerate response (1105): counts and at most one item. 5364 bytes. */
typedef struct tagSMGRPROT_METADATA_ENUMERATE_RSP_DATA {
  SMGR_RESULT Result;
  uint32_t nTotalNumOfItems;
  uint32_t nNumOfItems;
  uint32_t nItemSize;
  SMGR_METADATA_INFO MetaDataInfo[1];
} SMGRPROT_METADATA_ENUMERATE_RSP_DATA;
typedef struct tagSMGRPROT_MSG_METADATA_ENUMERATE_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_METADATA_ENUMERATE_RSP_DATA Data;
} SMGRPROT_MSG_METADATA_ENUMERATE_RSP;

/* Open and getinfo responses (1107, 1111): the source's information. 5352 bytes. */
typedef struct tagSMGRPROT_METADATA_INFO_RSP_DATA {
  SMGR_RESULT Result;
  SMGR_METADATA_INFO MetaDataInfo;
} SMGRPROT_METADATA_INFO_RSP_DATA;
typedef struct tagSMGRPROT_MSG_METADATA_INFO_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_METADATA_INFO_RSP_DATA Data;
} SMGRPROT_MSG_METADATA_INFO_RSP;
typedef SMGRPROT_MSG_METADATA_INFO_RSP SMGRPROT_MSG_METADATA_OPEN_RSP;
typedef SMGRPROT_MSG_METADATA_INFO_RSP SMGRPROT_MSG_METADATA_GETINFO_RSP;

/* Close (1108): the ID the handle remembers. 20 bytes. */
typedef struct tagSMGRPROT_METADATA_CLOSE_REQ_DATA {
  int32_t iMetaDataID;
} SMGRPROT_METADATA_CLOSE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_METADATA_CLOSE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_METADATA_CLOSE_REQ_DATA Data;
} SMGRPROT_MSG_METADATA_CLOSE_REQ;

/* Getstats response (1113). 3012 bytes. */
typedef struct tagSMGRPROT_METADATA_GETSTATS_RSP_DATA {
  SMGR_RESULT Result;
  SMGR_METADATA_STATS MetaDataStats;
} SMGRPROT_METADATA_GETSTATS_RSP_DATA;
typedef struct tagSMGRPROT_MSG_METADATA_GETSTATS_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_METADATA_GETSTATS_RSP_DATA Data;
} SMGRPROT_MSG_METADATA_GETSTATS_RSP;

/* Setcfg (1120): the selector, then the whole configuration. 5424 bytes. */
typedef struct tagSMGRPROT_METADATA_SETCFG_REQ_DATA {
  SMGRPROT_OBJECT_SELECTOR Select;
  SMGR_METADATA_CFG Config;
} SMGRPROT_METADATA_SETCFG_REQ_DATA;
typedef struct tagSMGRPROT_MSG_METADATA_SETCFG_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_METADATA_SETCFG_REQ_DATA Data;
} SMGRPROT_MSG_METADATA_SETCFG_REQ;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_METADATA_CREATE_REQ) == 5356, prot_md_create_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_CREATE_REQ, Data.MetaDataCfg) == 16,
                   prot_md_create_req_cfg);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_METADATA_CREATE_RSP) == 248, prot_md_create_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_CREATE_RSP, Data.Result) == 16, prot_md_create_rsp_Result);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_CREATE_RSP, Data.iMetaDataID) == 20,
                   prot_md_create_rsp_iMetaDataID);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_CREATE_RSP, Data.szName) == 24, prot_md_create_rsp_szName);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_CREATE_RSP, Data.szErrorDescription) == 88,
                   prot_md_create_rsp_szErrorDescription);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_METADATA_SELECT_REQ) == 84, prot_md_select_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_SELECT_REQ, Data.Select) == 16, prot_md_select_req_sel);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_METADATA_RESULT_RSP) == 20, prot_md_result_rsp_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_METADATA_DESCRIBED_RSP) == 180, prot_md_described_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_DESCRIBED_RSP, Data.szErrorDescription) == 20,
                   prot_md_described_rsp_text);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_METADATA_ENUMERATE_REQ) == 24, prot_md_enum_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_ENUMERATE_REQ, Data.nNumOfItems) == 16, prot_md_enum_req_n);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_ENUMERATE_REQ, Data.nStartOffset) == 20,
                   prot_md_enum_req_off);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_METADATA_ENUMERATE_RSP) == 5364, prot_md_enum_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_ENUMERATE_RSP, Data.nTotalNumOfItems) == 20,
                   prot_md_enum_rsp_nTotalNumOfItems);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_ENUMERATE_RSP, Data.nNumOfItems) == 24,
                   prot_md_enum_rsp_nNumOfItems);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_ENUMERATE_RSP, Data.nItemSize) == 28,
                   prot_md_enum_rsp_nItemSize);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_ENUMERATE_RSP, Data.MetaDataInfo) == 32,
                   prot_md_enum_rsp_MetaDataInfo);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_METADATA_INFO_RSP) == 5352, prot_md_info_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_INFO_RSP, Data.MetaDataInfo) == 20, prot_md_info_rsp_info);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_METADATA_CLOSE_REQ) == 20, prot_md_close_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_CLOSE_REQ, Data.iMetaDataID) == 16, prot_md_close_req_id);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_METADATA_GETSTATS_RSP) == 3012, prot_md_stats_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_GETSTATS_RSP, Data.MetaDataStats) == 20,
                   prot_md_stats_rsp_stats);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_METADATA_SETCFG_REQ) == 5424, prot_md_setcfg_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_SETCFG_REQ, Data.Select) == 16, prot_md_setcfg_req_sel);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_METADATA_SETCFG_REQ, Data.Config) == 84, prot_md_setcfg_req_cfg);

#endif /* SESSMGR_SMGRPROT_METADATA_H */
