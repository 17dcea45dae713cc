/* Wire records of the talkback requests (1200 to 1215). No selector: the
 * channel is the appliance's one. Responses carry Result alone. */
#ifndef SESSMGR_SMGRPROT_TALKBACK_H
#define SESSMGR_SMGRPROT_TALKBACK_H

#include "sessmgr/sm_results.h"
#include "sessmgr/sm_talkback.h"
#include "sessmgr/smgrprot_core.h"

#pragma pack(push, 4)

typedef struct tagSMGRPROT_MSG_TALKBACK_SETCFG_REQ {
  SMGRPROT_HEADER Header;
  SMGR_TALKBACK_CFG Config;
} SMGRPROT_MSG_TALKBACK_SETCFG_REQ;

/* Get information, get statistics and reset statistics: the header alone. */
typedef struct tagSMGRPROT_MSG_TALKBACK_EMPTY_REQ {
  SMGRPROT_HEADER Header;
} SMGRPROT_MSG_TALKBACK_EMPTY_REQ;

/* Start, stop, enable and disable. */
typedef struct tagSMGRPROT_MSG_TALKBACK_CONTROL_REQ {
  SMGRPROT_HEADER Header;
  DWORD dwReserved; /* zero */
} SMGRPROT_MSG_TALKBACK_CONTROL_REQ;

typedef struct tagSMGRPROT_MSG_TALKBACK_GETINFO_RSP {
  SMGRPROT_HEADER Header;
  SMGR_RESULT Result;
  SMGR_TALKBACK_INFO TalkBackInfo;
} SMGRPROT_MSG_TALKBACK_GETINFO_RSP;

typedef struct tagSMGRPROT_MSG_TALKBACK_GETSTATS_RSP {
  SMGRPROT_HEADER Header;
  SMGR_RESULT Result;
  SMGR_TALKBACK_STATS TalkBackStats;
} SMGRPROT_MSG_TALKBACK_GETSTATS_RSP;

/* Every other response. */
typedef struct tagSMGRPROT_MSG_TALKBACK_RESULT_RSP {
  SMGRPROT_HEADER Header;
  SMGR_RESULT Result;
} SMGRPROT_MSG_TALKBACK_RESULT_RSP;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_TALKBACK_SETCFG_REQ) == 108, talkback_setcfg_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_TALKBACK_SETCFG_REQ, Config) == 16, talkback_setcfg_req_cfg);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_TALKBACK_EMPTY_REQ) == 16, talkback_empty_req_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_TALKBACK_CONTROL_REQ) == 20, talkback_control_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_TALKBACK_CONTROL_REQ, dwReserved) == 16,
                   talkback_control_req_reserved);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_TALKBACK_GETINFO_RSP) == 100, talkback_getinfo_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_TALKBACK_GETINFO_RSP, Result) == 16, talkback_getinfo_rsp_result);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_TALKBACK_GETINFO_RSP, TalkBackInfo) == 20,
                   talkback_getinfo_rsp_info);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_TALKBACK_GETSTATS_RSP) == 1132, talkback_getstats_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_TALKBACK_GETSTATS_RSP, TalkBackStats) == 20,
                   talkback_getstats_rsp_stats);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_TALKBACK_RESULT_RSP) == 20, talkback_result_rsp_size);

#endif /* SESSMGR_SMGRPROT_TALKBACK_H */
