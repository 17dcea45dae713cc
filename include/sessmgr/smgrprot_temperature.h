/* Wire records of the temperature request (940, 941). The response carries
 * Result without a description. Little-endian, packed to 4 bytes. */
#ifndef SESSMGR_SMGRPROT_TEMPERATURE_H
#define SESSMGR_SMGRPROT_TEMPERATURE_H

#include "sessmgr/sm_temperature.h"
#include "sessmgr/sm_types.h"
#include "sessmgr/smgrprot_core.h"

#pragma pack(push, 4)

/* Get info (940): reserved 0. 20 bytes. */
typedef struct tagSMGRPROT_MSG_TEMPERATURE_GETINFO_REQ {
  SMGRPROT_HEADER Header;
  int32_t iReserved;
} SMGRPROT_MSG_TEMPERATURE_GETINFO_REQ;

/* Get info response (941). 72 bytes. */
typedef struct tagSMGRPROT_MSG_TEMPERATURE_GETINFO_RSP {
  SMGRPROT_HEADER Header;
  SMGR_RESULT Result;
  SMGR_TEMPERATURE_INFO Info;
} SMGRPROT_MSG_TEMPERATURE_GETINFO_RSP;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_TEMPERATURE_GETINFO_REQ) == 20, prot_temperature_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_TEMPERATURE_GETINFO_REQ, iReserved) == 16,
                   prot_temperature_req_reserved);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_TEMPERATURE_GETINFO_RSP) == 72, prot_temperature_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_TEMPERATURE_GETINFO_RSP, Result) == 16, prot_temperature_rsp_result);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_TEMPERATURE_GETINFO_RSP, Info) == 20, prot_temperature_rsp_info);

#endif /* SESSMGR_SMGRPROT_TEMPERATURE_H */
