/* Wire records of the video encoder family: requests name the encoder by its
 * numeric ID, responses carry a bare Result (no description). Little-endian,
 * packed to 4 bytes; the API records travel unchanged. */
#ifndef SESSMGR_SMGRPROT_VIDEO_ENCODERS_H
#define SESSMGR_SMGRPROT_VIDEO_ENCODERS_H

#include "sessmgr/sm_objects.h"
#include "sessmgr/sm_results.h"
#include "sessmgr/sm_types.h"
#include "sessmgr/sm_video_encoders.h"
#include "sessmgr/smgrprot_core.h"

#define SMGRPROT_VIDENC_CONTROL_DATA_SIZE 256
#define SMGRPROT_VIDENC_PARAMETER_SET_SIZE 256

#pragma pack(push, 4)

/* Open (100): the name, zero-padded. 80 bytes. */
typedef struct tagSMGRPROT_VIDENC_OPEN_REQ_DATA {
  char szName[SMGR_OBJECT_NAME_SIZE];
} SMGRPROT_VIDENC_OPEN_REQ_DATA;
typedef struct tagSMGRPROT_MSG_VIDENC_OPEN_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_VIDENC_OPEN_REQ_DATA Data;
} SMGRPROT_MSG_VIDENC_OPEN_REQ;

/* Open response (101): Result and the encoder's ID. 24 bytes. */
typedef struct tagSMGRPROT_VIDENC_OPEN_RSP_DATA {
  SMGR_RESULT Result;
  int32_t iEncoderID;
} SMGRPROT_VIDENC_OPEN_RSP_DATA;
typedef struct tagSMGRPROT_MSG_VIDENC_OPEN_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_VIDENC_OPEN_RSP_DATA Data;
} SMGRPROT_MSG_VIDENC_OPEN_RSP;

/* Requests that carry the ID alone (info, stats, reset stats, start, stop,
 * reset, parameter sets). 20 bytes. */
typedef struct tagSMGRPROT_VIDENC_ID_REQ_DATA {
  int32_t iEncoderID;
} SMGRPROT_VIDENC_ID_REQ_DATA;
typedef struct tagSMGRPROT_MSG_VIDENC_ID_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_VIDENC_ID_REQ_DATA Data;
} SMGRPROT_MSG_VIDENC_ID_REQ;
typedef SMGRPROT_MSG_VIDENC_ID_REQ SMGRPROT_MSG_VIDENC_GETINFO_REQ;
typedef SMGRPROT_MSG_VIDENC_ID_REQ SMGRPROT_MSG_VIDENC_GETSTATS_REQ;
typedef SMGRPROT_MSG_VIDENC_ID_REQ SMGRPROT_MSG_VIDENC_RESETSTATS_REQ;
typedef SMGRPROT_MSG_VIDENC_ID_REQ SMGRPROT_MSG_VIDENC_START_REQ;
typedef SMGRPROT_MSG_VIDENC_ID_REQ SMGRPROT_MSG_VIDENC_STOP_REQ;
typedef SMGRPROT_MSG_VIDENC_ID_REQ SMGRPROT_MSG_VIDENC_RESET_REQ;
typedef SMGRPROT_MSG_VIDENC_ID_REQ SMGRPROT_MSG_VIDENC_GETSPSPPS_REQ;

/* Result-only responses (configure, reset stats, start, stop, reset). 20 bytes. */
typedef struct tagSMGRPROT_VIDENC_RESULT_RSP_DATA {
  SMGR_RESULT Result;
} SMGRPROT_VIDENC_RESULT_RSP_DATA;
typedef struct tagSMGRPROT_MSG_VIDENC_RESULT_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_VIDENC_RESULT_RSP_DATA Data;
} SMGRPROT_MSG_VIDENC_RESULT_RSP;
typedef SMGRPROT_MSG_VIDENC_RESULT_RSP SMGRPROT_MSG_VIDENC_SETCFG_RSP;
typedef SMGRPROT_MSG_VIDENC_RESULT_RSP SMGRPROT_MSG_VIDENC_RESETSTATS_RSP;
typedef SMGRPROT_MSG_VIDENC_RESULT_RSP SMGRPROT_MSG_VIDENC_START_RSP;
typedef SMGRPROT_MSG_VIDENC_RESULT_RSP SMGRPROT_MSG_VIDENC_STOP_RSP;
typedef SMGRPROT_MSG_VIDENC_RESULT_RSP SMGRPROT_MSG_VIDENC_RESET_RSP;

/* Information response (103). 244 bytes. */
typedef struct tagSMGRPROT_VIDENC_GETINFO_RSP_DATA {
  SMGR_RESULT Result;
  int32_t iEncoderID;
  SMGR_VIDEO_ENCODER_INFO Config;
} SMGRPROT_VIDENC_GETINFO_RSP_DATA;
typedef struct tagSMGRPROT_MSG_VIDENC_GETINFO_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_VIDENC_GETINFO_RSP_DATA Data;
} SMGRPROT_MSG_VIDENC_GETINFO_RSP;

/* Configure (104). 168 bytes. */
typedef struct tagSMGRPROT_VIDENC_SETCFG_REQ_DATA {
  int32_t iEncoderID;
  SMGR_VIDEO_ENCODER_CFG Config;
} SMGRPROT_VIDENC_SETCFG_REQ_DATA;
typedef struct tagSMGRPROT_MSG_VIDENC_SETCFG_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_VIDENC_SETCFG_REQ_DATA Data;
} SMGRPROT_MSG_VIDENC_SETCFG_REQ;

/* Statistics response (107). 328 bytes. */
typedef struct tagSMGRPROT_VIDENC_GETSTATS_RSP_DATA {
  SMGR_RESULT Result;
  int32_t iEncoderID;
  SMGR_VIDEO_ENCODER_STATS Stats;
} SMGRPROT_VIDENC_GETSTATS_RSP_DATA;
typedef struct tagSMGRPROT_MSG_VIDENC_GETSTATS_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_VIDENC_GETSTATS_RSP_DATA Data;
} SMGRPROT_MSG_VIDENC_GETSTATS_RSP;

/* Enumerate (110): how many records the caller takes, from which index. 24 bytes. */
typedef struct tagSMGRPROT_VIDENC_ENUMERATE_REQ_DATA {
  UINT nNumOfEncoders;
  UINT nStartOffset;
} SMGRPROT_VIDENC_ENUMERATE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_VIDENC_ENUMERATE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_VIDENC_ENUMERATE_REQ_DATA Data;
} SMGRPROT_MSG_VIDENC_ENUMERATE_REQ;

/* Enumerate response (111): counts, then nNumOfEncoders records back to back
 * (declared with one; 252 bytes then). */
typedef struct tagSMGRPROT_VIDENC_ENUMERATE_RSP_DATA {
  SMGR_RESULT Result;
  UINT nTotalNumOfEncoders;
  UINT nNumOfEncoders;
  UINT nEncoderInfoSize;
  SMGR_VIDEO_ENCODER_INFO EncoderInfo[1];
} SMGRPROT_VIDENC_ENUMERATE_RSP_DATA;
typedef struct tagSMGRPROT_MSG_VIDENC_ENUMERATE_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_VIDENC_ENUMERATE_RSP_DATA Data;
} SMGRPROT_MSG_VIDENC_ENUMERATE_RSP;

/* Control (118): an opaque command and up to 256 bytes of data. 284 bytes. */
typedef struct tagSMGRPROT_VIDENC_CONTROL_REQ_DATA {
  int32_t iEncoderID;
  int32_t enCommand;
  int32_t nDataSize;
  BYTE abData[SMGRPROT_VIDENC_CONTROL_DATA_SIZE];
} SMGRPROT_VIDENC_CONTROL_REQ_DATA;
typedef struct tagSMGRPROT_MSG_VIDENC_CONTROL_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_VIDENC_CONTROL_REQ_DATA Data;
} SMGRPROT_MSG_VIDENC_CONTROL_REQ;

/* Control response (119). 280 bytes. */
typedef struct tagSMGRPROT_VIDENC_CONTROL_RSP_DATA {
  SMGR_RESULT Result;
  UINT nDataSize;
  BYTE abData[SMGRPROT_VIDENC_CONTROL_DATA_SIZE];
} SMGRPROT_VIDENC_CONTROL_RSP_DATA;
typedef struct tagSMGRPROT_MSG_VIDENC_CONTROL_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_VIDENC_CONTROL_RSP_DATA Data;
} SMGRPROT_MSG_VIDENC_CONTROL_RSP;

/* Parameter-set response (121): SPS and PPS NAL units (sizes: low 32 bits used). 552 bytes. */
typedef struct tagSMGRPROT_VIDENC_GETSPSPPS_RSP_DATA {
  SMGR_RESULT Result;
  int32_t iEncoderID;
  uint64_t nSPSSize;
  BYTE abSPSBuffer[SMGRPROT_VIDENC_PARAMETER_SET_SIZE];
  uint64_t nPPSSize;
  BYTE abPPSBuffer[SMGRPROT_VIDENC_PARAMETER_SET_SIZE];
} SMGRPROT_VIDENC_GETSPSPPS_RSP_DATA;
typedef struct tagSMGRPROT_MSG_VIDENC_GETSPSPPS_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_VIDENC_GETSPSPPS_RSP_DATA Data;
} SMGRPROT_MSG_VIDENC_GETSPSPPS_RSP;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDENC_OPEN_REQ) == 80, videnc_open_req_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDENC_OPEN_RSP) == 24, videnc_open_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_OPEN_RSP, Data.iEncoderID) == 20, videnc_open_rsp_id);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDENC_ID_REQ) == 20, videnc_id_req_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDENC_RESULT_RSP) == 20, videnc_result_rsp_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDENC_GETINFO_RSP) == 244, videnc_getinfo_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_GETINFO_RSP, Data.iEncoderID) == 20, videnc_getinfo_rsp_id);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_GETINFO_RSP, Data.Config) == 24, videnc_getinfo_rsp_config);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDENC_SETCFG_REQ) == 168, videnc_setcfg_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_SETCFG_REQ, Data.Config) == 20, videnc_setcfg_req_config);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDENC_GETSTATS_RSP) == 328, videnc_getstats_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_GETSTATS_RSP, Data.Stats) == 24, videnc_getstats_rsp_stats);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDENC_ENUMERATE_REQ) == 24, videnc_enumerate_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_ENUMERATE_REQ, Data.nStartOffset) == 20,
                   videnc_enum_req_offset);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDENC_ENUMERATE_RSP) == 252, videnc_enumerate_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_ENUMERATE_RSP, Data.nTotalNumOfEncoders) == 20,
                   videnc_enum_total);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_ENUMERATE_RSP, Data.nNumOfEncoders) == 24, videnc_enum_count);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_ENUMERATE_RSP, Data.nEncoderInfoSize) == 28,
                   videnc_enum_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_ENUMERATE_RSP, Data.EncoderInfo) == 32, videnc_enum_records);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDENC_CONTROL_REQ) == 284, videnc_control_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_CONTROL_REQ, Data.enCommand) == 20, videnc_control_req_cmd);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_CONTROL_REQ, Data.nDataSize) == 24, videnc_control_req_n);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_CONTROL_REQ, Data.abData) == 28, videnc_control_req_data);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDENC_CONTROL_RSP) == 280, videnc_control_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_CONTROL_RSP, Data.nDataSize) == 20, videnc_control_rsp_n);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_VIDENC_CONTROL_RSP, Data.abData) == 24, videnc_control_rsp_data);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_VIDENC_GETSPSPPS_RSP_DATA) == 536, videnc_spspps_data_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_VIDENC_GETSPSPPS_RSP_DATA, iEncoderID) == 4, videnc_spspps_id);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_VIDENC_GETSPSPPS_RSP_DATA, nSPSSize) == 8, videnc_spspps_nSPSSize);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_VIDENC_GETSPSPPS_RSP_DATA, abSPSBuffer) == 16, videnc_spspps_sps);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_VIDENC_GETSPSPPS_RSP_DATA, nPPSSize) == 272, videnc_spspps_nPPSSize);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_VIDENC_GETSPSPPS_RSP_DATA, abPPSBuffer) == 280, videnc_spspps_pps);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_VIDENC_GETSPSPPS_RSP) == 552, videnc_getspspps_rsp_size);

#endif /* SESSMGR_SMGRPROT_VIDEO_ENCODERS_H */
