/* Wire records of the audio encoder requests (300 to 317). Requests name the
 * encoder by its numeric ID; responses carry Result alone, without an error
 * description. */
#ifndef SESSMGR_SMGRPROT_AUDIO_ENCODERS_H
#define SESSMGR_SMGRPROT_AUDIO_ENCODERS_H

#include "sessmgr/sm_audio_encoders.h"
#include "sessmgr/sm_results.h"
#include "sessmgr/smgrprot_core.h"

#pragma pack(push, 4)

typedef struct tagSMGRPROT_AUDENC_OPEN_REQ_DATA {
  char szName[SMGR_OBJECT_NAME_SIZE];
} SMGRPROT_AUDENC_OPEN_REQ_DATA;
typedef struct tagSMGRPROT_MSG_AUDENC_OPEN_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_AUDENC_OPEN_REQ_DATA Data;
} SMGRPROT_MSG_AUDENC_OPEN_REQ;

typedef struct tagSMGRPROT_AUDENC_OPEN_RSP_DATA {
  SMGR_RESULT Result;
  int32_t iEncoderID;
} SMGRPROT_AUDENC_OPEN_RSP_DATA;
typedef struct tagSMGRPROT_MSG_AUDENC_OPEN_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_AUDENC_OPEN_RSP_DATA Data;
} SMGRPROT_MSG_AUDENC_OPEN_RSP;

/* Get information, get statistics, reset statistics, start and stop: the ID alone. */
typedef struct tagSMGRPROT_AUDENC_ID_REQ_DATA {
  int32_t iEncoderID;
} SMGRPROT_AUDENC_ID_REQ_DATA;
typedef struct tagSMGRPROT_MSG_AUDENC_ID_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_AUDENC_ID_REQ_DATA Data;
} SMGRPROT_MSG_AUDENC_ID_REQ;

/* Every response that carries nothing but Result. */
typedef struct tagSMGRPROT_AUDENC_RESULT_RSP_DATA {
  SMGR_RESULT Result;
} SMGRPROT_AUDENC_RESULT_RSP_DATA;
typedef struct tagSMGRPROT_MSG_AUDENC_RESULT_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_AUDENC_RESULT_RSP_DATA Data;
} SMGRPROT_MSG_AUDENC_RESULT_RSP;

typedef struct tagSMGRPROT_AUDENC_GETINFO_RSP_DATA {
  SMGR_RESULT Result;
  int32_t iEncoderID;
  SMGR_AUDIO_ENCODER_INFO Config;
} SMGRPROT_AUDENC_GETINFO_RSP_DATA;
typedef struct tagSMGRPROT_MSG_AUDENC_GETINFO_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_AUDENC_GETINFO_RSP_DATA Data;
} SMGRPROT_MSG_AUDENC_GETINFO_RSP;

typedef struct tagSMGRPROT_AUDENC_SETCFG_REQ_DATA {
  int32_t iEncoderID;
  SMGR_AUDIO_ENCODER_CFG Config;
} SMGRPROT_AUDENC_SETCFG_REQ_DATA;
typedef struct tagSMGRPROT_MSG_AUDENC_SETCFG_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_AUDENC_SETCFG_REQ_DATA Data;
} SMGRPROT_MSG_AUDENC_SETCFG_REQ;

typedef struct tagSMGRPROT_AUDENC_GETSTATS_RSP_DATA {
  SMGR_RESULT Result;
  int32_t iEncoderID;
  SMGR_AUDIO_ENCODER_STATS Stats;
} SMGRPROT_AUDENC_GETSTATS_RSP_DATA;
typedef struct tagSMGRPROT_MSG_AUDENC_GETSTATS_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_AUDENC_GETSTATS_RSP_DATA Data;
} SMGRPROT_MSG_AUDENC_GETSTATS_RSP;

typedef struct tagSMGRPROT_AUDENC_ENUMERATE_REQ_DATA {
  DWORD nNumOfEncoders; /* how many records the caller can take */
  DWORD nStartOffset;
} SMGRPROT_AUDENC_ENUMERATE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_AUDENC_ENUMERATE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_AUDENC_ENUMERATE_REQ_DATA Data;
} SMGRPROT_MSG_AUDENC_ENUMERATE_REQ;

/* Variable length: 32 + nNumOfEncoders x nEncoderInfoSize bytes; the declared
 * record holds one element. */
typedef struct tagSMGRPROT_AUDENC_ENUMERATE_RSP_DATA {
  SMGR_RESULT Result;
  DWORD nTotalNumOfEncoders;
  DWORD nNumOfEncoders;
  DWORD nEncoderInfoSize;
  SMGR_AUDIO_ENCODER_INFO EncoderInfo[1];
} SMGRPROT_AUDENC_ENUMERATE_RSP_DATA;
typedef struct tagSMGRPROT_MSG_AUDENC_ENUMERATE_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_AUDENC_ENUMERATE_RSP_DATA Data;
} SMGRPROT_MSG_AUDENC_ENUMERATE_RSP;

typedef struct tagSMGRPROT_AUDENC_MUTE_REQ_DATA {
  int32_t iEncoderID;
  BOOL bMute;
} SMGRPROT_AUDENC_MUTE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_AUDENC_MUTE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_AUDENC_MUTE_REQ_DATA Data;
} SMGRPROT_MSG_AUDENC_MUTE_REQ;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_AUDENC_OPEN_REQ_DATA) == 64, audenc_open_req_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_AUDENC_OPEN_RSP_DATA) == 8, audenc_open_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_AUDENC_OPEN_RSP_DATA, iEncoderID) == 4, audenc_open_rsp_id);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_AUDENC_ID_REQ_DATA) == 4, audenc_id_req_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_AUDENC_RESULT_RSP_DATA) == 4, audenc_result_rsp_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_AUDENC_GETINFO_RSP_DATA) == 212, audenc_getinfo_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_AUDENC_GETINFO_RSP_DATA, iEncoderID) == 4, audenc_getinfo_rsp_id);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_AUDENC_GETINFO_RSP_DATA, Config) == 8, audenc_getinfo_rsp_info);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_AUDENC_SETCFG_REQ_DATA) == 68, audenc_setcfg_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_AUDENC_SETCFG_REQ_DATA, Config) == 4, audenc_setcfg_req_cfg);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_AUDENC_GETSTATS_RSP_DATA) == 76, audenc_getstats_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_AUDENC_GETSTATS_RSP_DATA, iEncoderID) == 4, audenc_getstats_rsp_id);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_AUDENC_GETSTATS_RSP_DATA, Stats) == 8, audenc_getstats_rsp_stats);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_AUDENC_ENUMERATE_REQ_DATA) == 8, audenc_enum_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_AUDENC_ENUMERATE_REQ_DATA, nStartOffset) == 4, audenc_enum_req_offset);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_AUDENC_ENUMERATE_RSP_DATA) == 220, audenc_enum_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_AUDENC_ENUMERATE_RSP_DATA, nTotalNumOfEncoders) == 4,
                   audenc_enum_rsp_total);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_AUDENC_ENUMERATE_RSP_DATA, nNumOfEncoders) == 8, audenc_enum_rsp_count);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_AUDENC_ENUMERATE_RSP_DATA, nEncoderInfoSize) == 12,
                   audenc_enum_rsp_elem);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_AUDENC_ENUMERATE_RSP_DATA, EncoderInfo) == 16, audenc_enum_rsp_records);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_AUDENC_MUTE_REQ_DATA) == 8, audenc_mute_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_AUDENC_MUTE_REQ_DATA, bMute) == 4, audenc_mute_req_mute);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_AUDENC_OPEN_REQ) == 80, audenc_open_req_msg);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_AUDENC_SETCFG_REQ) == 84, audenc_setcfg_req_msg);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_AUDENC_GETINFO_RSP) == 228, audenc_getinfo_rsp_msg);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_AUDENC_GETSTATS_RSP) == 92, audenc_getstats_rsp_msg);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_AUDENC_ENUMERATE_RSP) == 236, audenc_enum_rsp_msg);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_AUDENC_MUTE_REQ) == 24, audenc_mute_req_msg);

#endif /* SESSMGR_SMGRPROT_AUDIO_ENCODERS_H */
