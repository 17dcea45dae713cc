/* Placeholder: filled in by the work that owns it. Until then it carries only
 * the message header that the stream records embed. */
#ifndef SESSMGR_SMGRPROT_CORE_H
#define SESSMGR_SMGRPROT_CORE_H
#include "sessmgr/sm_results.h"
#include "sessmgr/sm_types.h"

#define SMGRPROT_ERROR_DESCRIPTION_SIZE 160

#pragma pack(push, 4)
typedef struct tagSMGRPROT_HEADER {
  WORD wMsgType;
  WORD wMsgSequence;
  WORD wMsgSize;
  WORD wReserved;
  DWORD dwSrcPID;
  DWORD dwSrcUID;
} SMGRPROT_HEADER;
#pragma pack(pop)
#endif /* SESSMGR_SMGRPROT_CORE_H */
