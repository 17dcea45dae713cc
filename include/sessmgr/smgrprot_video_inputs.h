/* Wire records of the video input messages (150 to 159). Requests name the
 * input by its numeric ID; responses carry a bare Result (no description).
 * Little-endian, packed to 4 bytes; the API records travel unchanged. */
#ifndef SESSMGR_SMGRPROT_VIDEO_INPUTS_H
#define SESSMGR_SMGRPROT_VIDEO_INPUTS_H

#include "sessmgr/sm_objects.h"
#include "sessmgr/sm_results.h"
#include "sessmgr/sm_types.h"
#include "sessmgr/sm_video_inputs.h"
#include "sessmgr/smgrprot_core.h"

#pragma pack(push, 4)

/* Open (150): the name; 80 bytes. */
typedef struct tagSMGRPROT_MSG_VIDIN_OPEN_REQ {
  SMGRPROT_HEADER Header;
  struct {
    char szName[SMGR_OBJECT_NAME_SIZE];
  } Data;
} SMGRPROT_MSG_VIDIN_OPEN_REQ;

/* Open response (151): 24 bytes. */
typedef struct tagSMGRPROT_MSG_VIDIN_OPEN_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    int32_t iInputID;
  } Data;
} SMGRPROT_MSG_VIDIN_OPEN_RSP;

/* Get information (152) and reset statistics (154): the input ID; 20 bytes. */
typedef struct tagSMGRPROT_MSG_VIDIN_ID_REQ {
  SMGRPROT_HEADER Header;
  struct {
    int32_t iInputID;
  } Data;
} SMGRPROT_MSG_VIDIN_ID_REQ;
typedef SMGRPROT_MSG_VIDIN_ID_REQ SMGRPROT_MSG_VIDIN_GETINFO_REQ;
typedef SMGRPROT_MSG_VIDIN_ID_REQ SMGRPROT_MSG_VIDIN_RESETSTATS_REQ;

/* Get information response (153): 168 bytes. */
typedef struct tagSMGRPROT_MSG_VIDIN_GETINFO_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    int32_t iInputID;
    SMGR_VIDEO_INPUT_INFO Info;
  } Data;
} SMGRPROT_MSG_VIDIN_GETINFO_RSP;

/* Reset statistics (155) and configure (159) responses: Result alone; 20 bytes. */
typedef struct tagSMGRPROT_MSG_VIDIN_RESULT_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
  } Data;
} SMGRPROT_MSG_VIDIN_RESULT_RSP;
typedef SMGRPROT_MSG_VIDIN_RESULT_RSP SMGRPROT_MSG_VIDIN_RESETSTATS_RSP;
typedef SMGRPROT_MSG_VIDIN_RESULT_RSP SMGRPROT_MSG_VIDIN_SETCFG_RSP;

/* Enumerate (156): how many records the caller takes, from where; 24 bytes. */
typedef struct tagSMGRPROT_MSG_VIDIN_ENUMERATE_REQ {
  SMGRPROT_HEADER Header;
  struct {
    UINT nNumOfInputs;
    UINT nStartOffset;
  } Data;
} SMGRPROT_MSG_VIDIN_ENUMERATE_REQ;

/* Enumerate response (157) with room for one record (176 bytes); a longer
 * response carries nNumOfInputs records of nInputInfoSize bytes each. */
typedef struct tagSMGRPROT_MSG_VIDIN_ENUMERATE_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    UINT nTotalNumOfInputs;
    UINT nNumOfInputs;
    UINT nInputInfoSize;
    SMGR_VIDEO_INPUT_INFO InputInfo[1];
  } Data;
} SMGRPROT_MSG_VIDIN_ENUMERATE_RSP;

/* Configure (158): the input ID and the caller's settings; 44 bytes. */
typedef struct tagSMGRPROT_MSG_VIDIN_SETCFG_REQ {
  SMGRPROT_HEADER Header;
  struct {
    int32_t iInputID;
    SMGR_VIDEO_INPUT_CFG Config;
  } Data;
} SMGRPROT_MSG_VIDIN_SETCFG_REQ;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDIN_OPEN_REQ) == 80, prot_vidin_open_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_OPEN_REQ, Data.szName) == 16, prot_vidin_open_req_name);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDIN_OPEN_RSP) == 24, prot_vidin_open_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_OPEN_RSP, Data.Result) == 16, prot_vidin_open_rsp_result);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_OPEN_RSP, Data.iInputID) == 20, prot_vidin_open_rsp_id);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDIN_ID_REQ) == 20, prot_vidin_id_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_ID_REQ, Data.iInputID) == 16, prot_vidin_id_req_id);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDIN_GETINFO_RSP) == 168, prot_vidin_getinfo_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_GETINFO_RSP, Data.Result) == 16,
                   prot_vidin_getinfo_rsp_result);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_GETINFO_RSP, Data.iInputID) == 20, prot_vidin_getinfo_rsp_id);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_GETINFO_RSP, Data.Info) == 24, prot_vidin_getinfo_rsp_info);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDIN_RESULT_RSP) == 20, prot_vidin_result_rsp_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDIN_ENUMERATE_REQ) == 24, prot_vidin_enumerate_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_ENUMERATE_REQ, Data.nNumOfInputs) == 16,
                   prot_vidin_enumerate_req_count);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_ENUMERATE_REQ, Data.nStartOffset) == 20,
                   prot_vidin_enumerate_req_offset);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDIN_ENUMERATE_RSP) == 176, prot_vidin_enumerate_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_ENUMERATE_RSP, Data.nTotalNumOfInputs) == 20,
                   prot_vidin_enumerate_rsp_total);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_ENUMERATE_RSP, Data.nNumOfInputs) == 24,
                   prot_vidin_enumerate_rsp_count);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_ENUMERATE_RSP, Data.nInputInfoSize) == 28,
                   prot_vidin_enumerate_rsp_element_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_ENUMERATE_RSP, Data.InputInfo) == 32,
                   prot_vidin_enumerate_rsp_records);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDIN_SETCFG_REQ) == 44, prot_vidin_setcfg_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_SETCFG_REQ, Data.iInputID) == 16, prot_vidin_setcfg_req_id);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDIN_SETCFG_REQ, Data.Config) == 20, prot_vidin_setcfg_req_config);

#endif /* SESSMGR_SMGRPROT_VIDEO_INPUTS_H */
