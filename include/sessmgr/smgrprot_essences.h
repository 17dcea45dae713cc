/* Wire records of the essence family (2100 to 2121) and of the ST 2110
 * synchronisation (2122 to 2125). Little-endian, packed to 4 bytes; the API
 * records travel unchanged. */
#ifndef SESSMGR_SMGRPROT_ESSENCES_H
#define SESSMGR_SMGRPROT_ESSENCES_H

#include "sessmgr/sm_essences.h"
#include "sessmgr/sm_results.h"
#include "sessmgr/sm_types.h"
#include "sessmgr/smgrprot_core.h"
#include "sessmgr/smgrprot_streams.h"

#define SMGRPROT_ESSENCE_DESCRIPTION_SIZE 160

#pragma pack(push, 4)

/* Create (2100): the caller's record. 1188 bytes. */
typedef struct tagSMGRPROT_MSG_ESSENCE_CREATE_REQ {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_ESSENCE_CFG EssenceCfg;
  } Data;
} SMGRPROT_MSG_ESSENCE_CREATE_REQ;

/* Create response (2101): the description follows the ID and the name. 248 bytes. */
typedef struct tagSMGRPROT_MSG_ESSENCE_CREATE_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    int32_t iEssenceID;
    char szName[SMGR_OBJECT_NAME_SIZE];
    char szErrorDescription[SMGRPROT_ESSENCE_DESCRIPTION_SIZE];
  } Data;
} SMGRPROT_MSG_ESSENCE_CREATE_RSP;

/* Requests that carry one selector (delete, open, getinfo, getstats, start,
 * stop, resetstats). 84 bytes. */
typedef struct tagSMGRPROT_MSG_ESSENCE_SELECT_REQ {
  SMGRPROT_HEADER Header;
  struct {
    SMGRPROT_OBJECT_SELECTOR Select;
  } Data;
} SMGRPROT_MSG_ESSENCE_SELECT_REQ;
typedef SMGRPROT_MSG_ESSENCE_SELECT_REQ SMGRPROT_MSG_ESSENCE_DELETE_REQ;
typedef SMGRPROT_MSG_ESSENCE_SELECT_REQ SMGRPROT_MSG_ESSENCE_OPEN_REQ;
typedef SMGRPROT_MSG_ESSENCE_SELECT_REQ SMGRPROT_MSG_ESSENCE_GETINFO_REQ;
typedef SMGRPROT_MSG_ESSENCE_SELECT_REQ SMGRPROT_MSG_ESSENCE_GETSTATS_REQ;
typedef SMGRPROT_MSG_ESSENCE_SELECT_REQ SMGRPROT_MSG_ESSENCE_START_REQ;
typedef SMGRPROT_MSG_ESSENCE_SELECT_REQ SMGRPROT_MSG_ESSENCE_STOP_REQ;
typedef SMGRPROT_MSG_ESSENCE_SELECT_REQ SMGRPROT_MSG_ESSENCE_RESETSTATS_REQ;

/* Responses with the result alone (delete, close, stop, resetstats; the
 * synchronisation's set mode). 20 bytes. */
typedef struct tagSMGRPROT_MSG_ESSENCE_RESULT_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
  } Data;
} SMGRPROT_MSG_ESSENCE_RESULT_RSP;
typedef SMGRPROT_MSG_ESSENCE_RESULT_RSP SMGRPROT_MSG_ESSENCE_DELETE_RSP;
typedef SMGRPROT_MSG_ESSENCE_RESULT_RSP SMGRPROT_MSG_ESSENCE_CLOSE_RSP;
typedef SMGRPROT_MSG_ESSENCE_RESULT_RSP SMGRPROT_MSG_ESSENCE_STOP_RSP;
typedef SMGRPROT_MSG_ESSENCE_RESULT_RSP SMGRPROT_MSG_ESSENCE_RESETSTATS_RSP;
typedef SMGRPROT_MSG_ESSENCE_RESULT_RSP SMGRPROT_MSG_2110_SYNC_SETMODE_RSP;

/* Responses with the daemon's description (start, setcfg). 180 bytes. */
typedef struct tagSMGRPROT_MSG_ESSENCE_DESCRIBED_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    char szErrorDescription[SMGRPROT_ESSENCE_DESCRIPTION_SIZE];
  } Data;
} SMGRPROT_MSG_ESSENCE_DESCRIBED_RSP;
typedef SMGRPROT_MSG_ESSENCE_DESCRIBED_RSP SMGRPROT_MSG_ESSENCE_START_RSP;
typedef SMGRPROT_MSG_ESSENCE_DESCRIBED_RSP SMGRPROT_MSG_ESSENCE_SETCFG_RSP;

/* Enumerate (2104). 24 bytes. */
typedef struct tagSMGRPROT_MSG_ESSENCE_ENUMERATE_REQ {
  SMGRPROT_HEADER Header;
  struct {
    uint32_t nNumOfItems;
    uint32_t nStartOffset;
  } Data;
} SMGRPROT_MSG_ESSENCE_ENUMERATE_REQ;

/* Enumerate response (2105); the declared record holds one item. 1204 bytes. */
typedef struct tagSMGRPROT_MSG_ESSENCE_ENUMERATE_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    uint32_t nTotalNumOfItems;
    uint32_t nNumOfItems;
    uint32_t nItemSize;
    SMGR_ESSENCE_INFO EssenceInfo[1];
  } Data;
} SMGRPROT_MSG_ESSENCE_ENUMERATE_RSP;

/* Open and getinfo responses (2107, 2111). 1192 bytes. */
typedef struct tagSMGRPROT_MSG_ESSENCE_INFO_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    SMGR_ESSENCE_INFO EssenceInfo;
  } Data;
} SMGRPROT_MSG_ESSENCE_INFO_RSP;
typedef SMGRPROT_MSG_ESSENCE_INFO_RSP SMGRPROT_MSG_ESSENCE_OPEN_RSP;
typedef SMGRPROT_MSG_ESSENCE_INFO_RSP SMGRPROT_MSG_ESSENCE_GETINFO_RSP;

/* Close (2108): the ID the handle remembers. 20 bytes. */
typedef struct tagSMGRPROT_MSG_ESSENCE_CLOSE_REQ {
  SMGRPROT_HEADER Header;
  struct {
    int32_t iEssenceID;
  } Data;
} SMGRPROT_MSG_ESSENCE_CLOSE_REQ;

/* Getstats response (2113). 68 bytes. */
typedef struct tagSMGRPROT_MSG_ESSENCE_GETSTATS_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    SMGR_ESSENCE_STATS EssenceStats;
  } Data;
} SMGRPROT_MSG_ESSENCE_GETSTATS_RSP;

/* Setcfg (2120): selector, then the whole configuration. 1256 bytes. */
typedef struct tagSMGRPROT_MSG_ESSENCE_SETCFG_REQ {
  SMGRPROT_HEADER Header;
  struct {
    SMGRPROT_OBJECT_SELECTOR Select;
    SMGR_ESSENCE_CFG Config;
  } Data;
} SMGRPROT_MSG_ESSENCE_SETCFG_REQ;

/* Synchronisation information request (2122): the header alone. 16 bytes. */
typedef struct tagSMGRPROT_MSG_2110_SYNC_GETINFO_REQ {
  SMGRPROT_HEADER Header;
} SMGRPROT_MSG_2110_SYNC_GETINFO_REQ;

/* Synchronisation information response (2123). 60 bytes. */
typedef struct tagSMGRPROT_MSG_2110_SYNC_GETINFO_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    SMGR_2110_SYNC_INFO SyncInfo;
  } Data;
} SMGRPROT_MSG_2110_SYNC_GETINFO_RSP;

/* Set clock mode (2124): an all-zero selector, then the mode. 88 bytes. */
typedef struct tagSMGRPROT_MSG_2110_SYNC_SETMODE_REQ {
  SMGRPROT_HEADER Header;
  struct {
    SMGRPROT_OBJECT_SELECTOR Select;
    int32_t enMode;
  } Data;
} SMGRPROT_MSG_2110_SYNC_SETMODE_REQ;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ESSENCE_CREATE_REQ) == 1188, prot_essence_create_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_CREATE_REQ, Data.EssenceCfg) == 16, prot_essence_create_cfg);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ESSENCE_CREATE_RSP) == 248, prot_essence_create_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_CREATE_RSP, Data.Result) == 16, prot_essence_create_result);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_CREATE_RSP, Data.iEssenceID) == 20, prot_essence_create_id);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_CREATE_RSP, Data.szName) == 24, prot_essence_create_name);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_CREATE_RSP, Data.szErrorDescription) == 88,
                   prot_essence_create_description);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ESSENCE_SELECT_REQ) == 84, prot_essence_select_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_SELECT_REQ, Data.Select) == 16, prot_essence_select);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ESSENCE_RESULT_RSP) == 20, prot_essence_result_rsp_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ESSENCE_DESCRIBED_RSP) == 180, prot_essence_described_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_DESCRIBED_RSP, Data.szErrorDescription) == 20,
                   prot_essence_described_text);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ESSENCE_ENUMERATE_REQ) == 24, prot_essence_enumerate_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_ENUMERATE_REQ, Data.nStartOffset) == 20,
                   prot_essence_enumerate_offset);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ESSENCE_ENUMERATE_RSP) == 1204, prot_essence_enumerate_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_ENUMERATE_RSP, Data.nTotalNumOfItems) == 20,
                   prot_essence_enumerate_total);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_ENUMERATE_RSP, Data.nNumOfItems) == 24,
                   prot_essence_enumerate_count);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_ENUMERATE_RSP, Data.nItemSize) == 28,
                   prot_essence_enumerate_item_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_ENUMERATE_RSP, Data.EssenceInfo) == 32,
                   prot_essence_enumerate_records);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ESSENCE_INFO_RSP) == 1192, prot_essence_info_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_INFO_RSP, Data.EssenceInfo) == 20, prot_essence_info_record);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ESSENCE_CLOSE_REQ) == 20, prot_essence_close_req_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ESSENCE_GETSTATS_RSP) == 68, prot_essence_stats_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_GETSTATS_RSP, Data.EssenceStats) == 20,
                   prot_essence_stats_record);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ESSENCE_SETCFG_REQ) == 1256, prot_essence_setcfg_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ESSENCE_SETCFG_REQ, Data.Config) == 84, prot_essence_setcfg_cfg);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_2110_SYNC_GETINFO_REQ) == 16, prot_sync_getinfo_req_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_2110_SYNC_GETINFO_RSP) == 60, prot_sync_getinfo_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_2110_SYNC_GETINFO_RSP, Data.SyncInfo) == 20,
                   prot_sync_getinfo_record);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_2110_SYNC_SETMODE_REQ) == 88, prot_sync_setmode_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_2110_SYNC_SETMODE_REQ, Data.enMode) == 84, prot_sync_setmode_mode);

#endif /* SESSMGR_SMGRPROT_ESSENCES_H */
