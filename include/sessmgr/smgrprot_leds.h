/* Wire records of the LED requests (800 to 803). Responses carry Result
 * without a description. Little-endian, packed to 4 bytes. */
#ifndef SESSMGR_SMGRPROT_LEDS_H
#define SESSMGR_SMGRPROT_LEDS_H

#include "sessmgr/sm_leds.h"
#include "sessmgr/sm_types.h"
#include "sessmgr/smgrprot_core.h"

#pragma pack(push, 4)

/* Get info (800): reserved 0. 20 bytes. */
typedef struct tagSMGRPROT_MSG_LEDS_GETINFO_REQ {
  SMGRPROT_HEADER Header;
  int32_t iReserved;
} SMGRPROT_MSG_LEDS_GETINFO_REQ;

/* Get info response (801). 84 bytes. */
typedef struct tagSMGRPROT_MSG_LEDS_GETINFO_RSP {
  SMGRPROT_HEADER Header;
  SMGR_RESULT Result;
  SMGR_LEDS_INFO Info;
} SMGRPROT_MSG_LEDS_GETINFO_RSP;

/* Blink (802): start with a duration, or stop (0, 0). 24 bytes. */
typedef struct tagSMGRPROT_MSG_LEDS_BLINKSTATUS_REQ {
  SMGRPROT_HEADER Header;
  BOOL bEnable;
  uint32_t nDurationInSecs;
} SMGRPROT_MSG_LEDS_BLINKSTATUS_REQ;

/* Blink response (803). 20 bytes. */
typedef struct tagSMGRPROT_MSG_LEDS_BLINKSTATUS_RSP {
  SMGRPROT_HEADER Header;
  SMGR_RESULT Result;
} SMGRPROT_MSG_LEDS_BLINKSTATUS_RSP;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_LEDS_GETINFO_REQ) == 20, prot_leds_getinfo_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_LEDS_GETINFO_REQ, iReserved) == 16, prot_leds_getinfo_req_reserved);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_LEDS_GETINFO_RSP) == 84, prot_leds_getinfo_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_LEDS_GETINFO_RSP, Result) == 16, prot_leds_getinfo_rsp_result);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_LEDS_GETINFO_RSP, Info) == 20, prot_leds_getinfo_rsp_info);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_LEDS_BLINKSTATUS_REQ) == 24, prot_leds_blink_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_LEDS_BLINKSTATUS_REQ, bEnable) == 16, prot_leds_blink_req_enable);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_LEDS_BLINKSTATUS_REQ, nDurationInSecs) == 20,
                   prot_leds_blink_req_duration);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_LEDS_BLINKSTATUS_RSP) == 20, prot_leds_blink_rsp_size);

#endif /* SESSMGR_SMGRPROT_LEDS_H */
