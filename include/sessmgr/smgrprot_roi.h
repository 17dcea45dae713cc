/* Wire records of the region-of-interest messages (1700 to 1715). Regions are
 * named by the 68-byte wire selector; no response carries a description.
 * Little-endian, packed to 4 bytes; the API records travel unchanged. */
#ifndef SESSMGR_SMGRPROT_ROI_H
#define SESSMGR_SMGRPROT_ROI_H

#include "sessmgr/sm_results.h"
#include "sessmgr/sm_roi.h"
#include "sessmgr/sm_types.h"
#include "sessmgr/smgrprot_core.h"
#include "sessmgr/smgrprot_streams.h"

#pragma pack(push, 4)

/* Create (1700): the caller's record; 132 bytes. */
typedef struct tagSMGRPROT_MSG_ROI_CREATE_REQ {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_ROI_CFG ROICfg;
  } Data;
} SMGRPROT_MSG_ROI_CREATE_REQ;

/* Create response (1701): the region's ID and name; 88 bytes. */
typedef struct tagSMGRPROT_MSG_ROI_CREATE_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    int32_t iID;
    char szName[SMGR_OBJECT_NAME_SIZE];
  } Data;
} SMGRPROT_MSG_ROI_CREATE_RSP;

/* Delete, get information, enable (start) and disable (stop): one selector; 84 bytes. */
typedef struct tagSMGRPROT_MSG_ROI_SELECT_REQ {
  SMGRPROT_HEADER Header;
  struct {
    SMGRPROT_OBJECT_SELECTOR Select;
  } Data;
} SMGRPROT_MSG_ROI_SELECT_REQ;
typedef SMGRPROT_MSG_ROI_SELECT_REQ SMGRPROT_MSG_ROI_DELETE_REQ;
typedef SMGRPROT_MSG_ROI_SELECT_REQ SMGRPROT_MSG_ROI_GETINFO_REQ;
typedef SMGRPROT_MSG_ROI_SELECT_REQ SMGRPROT_MSG_ROI_START_REQ;
typedef SMGRPROT_MSG_ROI_SELECT_REQ SMGRPROT_MSG_ROI_STOP_REQ;

/* Close (1704): the region ID; 20 bytes. */
typedef struct tagSMGRPROT_MSG_ROI_CLOSE_REQ {
  SMGRPROT_HEADER Header;
  struct {
    int32_t iID;
  } Data;
} SMGRPROT_MSG_ROI_CLOSE_REQ;

/* Responses that carry Result alone (delete, close, configure, enable, disable); 20 bytes. */
typedef struct tagSMGRPROT_MSG_ROI_RESULT_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
  } Data;
} SMGRPROT_MSG_ROI_RESULT_RSP;
typedef SMGRPROT_MSG_ROI_RESULT_RSP SMGRPROT_MSG_ROI_DELETE_RSP;
typedef SMGRPROT_MSG_ROI_RESULT_RSP SMGRPROT_MSG_ROI_CLOSE_RSP;
typedef SMGRPROT_MSG_ROI_RESULT_RSP SMGRPROT_MSG_ROI_SETCFG_RSP;
typedef SMGRPROT_MSG_ROI_RESULT_RSP SMGRPROT_MSG_ROI_START_RSP;
typedef SMGRPROT_MSG_ROI_RESULT_RSP SMGRPROT_MSG_ROI_STOP_RSP;

/* Get information response (1707); 136 bytes. */
typedef struct tagSMGRPROT_MSG_ROI_GETINFO_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    SMGR_ROI_INFO ROIInfo;
  } Data;
} SMGRPROT_MSG_ROI_GETINFO_RSP;

/* Enumerate (1708); 24 bytes. */
typedef struct tagSMGRPROT_MSG_ROI_ENUMERATE_REQ {
  SMGRPROT_HEADER Header;
  struct {
    UINT nNumOfRegions;
    UINT nStartOffset;
  } Data;
} SMGRPROT_MSG_ROI_ENUMERATE_REQ;

/* Enumerate response (1709) with room for one region (148 bytes); longer
 * responses carry nNumOfRegions records of nRegionInfoSize bytes. */
typedef struct tagSMGRPROT_MSG_ROI_ENUMERATE_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    UINT nTotalNumOfRegions;
    UINT nNumOfRegions;
    UINT nRegionInfoSize;
    SMGR_ROI_INFO RegionInfo[1];
  } Data;
} SMGRPROT_MSG_ROI_ENUMERATE_RSP;

/* Configure (1710): selector and the whole record; 200 bytes. */
typedef struct tagSMGRPROT_MSG_ROI_SETCFG_REQ {
  SMGRPROT_HEADER Header;
  struct {
    SMGRPROT_OBJECT_SELECTOR Select;
    SMGR_ROI_CFG Config;
  } Data;
} SMGRPROT_MSG_ROI_SETCFG_REQ;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ROI_CREATE_REQ) == 132, prot_roi_create_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_CREATE_REQ, Data.ROICfg) == 16, prot_roi_create_req_cfg);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ROI_CREATE_RSP) == 88, prot_roi_create_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_CREATE_RSP, Data.Result) == 16, prot_roi_create_rsp_result);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_CREATE_RSP, Data.iID) == 20, prot_roi_create_rsp_id);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_CREATE_RSP, Data.szName) == 24, prot_roi_create_rsp_name);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ROI_SELECT_REQ) == 84, prot_roi_select_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_SELECT_REQ, Data.Select) == 16, prot_roi_select_req_select);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ROI_CLOSE_REQ) == 20, prot_roi_close_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_CLOSE_REQ, Data.iID) == 16, prot_roi_close_req_id);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ROI_RESULT_RSP) == 20, prot_roi_result_rsp_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ROI_GETINFO_RSP) == 136, prot_roi_getinfo_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_GETINFO_RSP, Data.ROIInfo) == 20, prot_roi_getinfo_rsp_info);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ROI_ENUMERATE_REQ) == 24, prot_roi_enumerate_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_ENUMERATE_REQ, Data.nNumOfRegions) == 16,
                   prot_roi_enumerate_req_count);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_ENUMERATE_REQ, Data.nStartOffset) == 20,
                   prot_roi_enumerate_req_offset);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ROI_ENUMERATE_RSP) == 148, prot_roi_enumerate_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_ENUMERATE_RSP, Data.nTotalNumOfRegions) == 20,
                   prot_roi_enumerate_rsp_total);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_ENUMERATE_RSP, Data.nNumOfRegions) == 24,
                   prot_roi_enumerate_rsp_count);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_ENUMERATE_RSP, Data.nRegionInfoSize) == 28,
                   prot_roi_enumerate_rsp_size_of);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_ENUMERATE_RSP, Data.RegionInfo) == 32,
                   prot_roi_enumerate_rsp_records);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_ROI_SETCFG_REQ) == 200, prot_roi_setcfg_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_SETCFG_REQ, Data.Select) == 16, prot_roi_setcfg_req_select);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_ROI_SETCFG_REQ, Data.Config) == 84, prot_roi_setcfg_req_config);

#endif /* SESSMGR_SMGRPROT_ROI_H */
