/* Wire records of the daemon diagnostics requests (debug state and
 * information, thread and mutex enumeration, free-form debug requests).
 * Their responses carry Result alone, without the error description. */
#ifndef SESSMGR_SMGRPROT_DIAGNOSTICS_H
#define SESSMGR_SMGRPROT_DIAGNOSTICS_H

#include "sessmgr/sm_diagnostics.h"
#include "sessmgr/sm_results.h"
#include "sessmgr/smgrprot_core.h"

/* Most data bytes a debug request carries. */
#define SMGRPROT_DEBUG_REQ_MAX_DATA 512

#pragma pack(push, 4)

typedef struct tagSMGRPROT_DEBUG_SETCFG_REQ_DATA {
  int32_t iDebugState;
} SMGRPROT_DEBUG_SETCFG_REQ_DATA;
typedef struct tagSMGRPROT_MSG_DEBUG_SETCFG_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_DEBUG_SETCFG_REQ_DATA Data;
} SMGRPROT_MSG_DEBUG_SETCFG_REQ;

typedef struct tagSMGRPROT_DEBUG_SETCFG_RSP_DATA {
  SMGR_RESULT Result;
} SMGRPROT_DEBUG_SETCFG_RSP_DATA;
typedef struct tagSMGRPROT_MSG_DEBUG_SETCFG_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_DEBUG_SETCFG_RSP_DATA Data;
} SMGRPROT_MSG_DEBUG_SETCFG_RSP;

typedef struct tagSMGRPROT_DEBUG_GETINFO_REQ_DATA {
  int32_t iReserved;
} SMGRPROT_DEBUG_GETINFO_REQ_DATA;
typedef struct tagSMGRPROT_MSG_DEBUG_GETINFO_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_DEBUG_GETINFO_REQ_DATA Data;
} SMGRPROT_MSG_DEBUG_GETINFO_REQ;

typedef struct tagSMGRPROT_DEBUG_GETINFO_RSP_DATA {
  SMGR_RESULT Result;
  SMGR_DEBUG_INFO DebugInfo;
} SMGRPROT_DEBUG_GETINFO_RSP_DATA;
typedef struct tagSMGRPROT_MSG_DEBUG_GETINFO_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_DEBUG_GETINFO_RSP_DATA Data;
} SMGRPROT_MSG_DEBUG_GETINFO_RSP;

typedef struct tagSMGRPROT_THREAD_ENUMERATE_REQ_DATA {
  int32_t nNumOfThreads; /* how many records fit the caller's buffer */
  int32_t nStartOffset;
} SMGRPROT_THREAD_ENUMERATE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_THREAD_ENUMERATE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_THREAD_ENUMERATE_REQ_DATA Data;
} SMGRPROT_MSG_THREAD_ENUMERATE_REQ;

/* Variable length: 32 + nNumOfThreads x nThreadInfoSize bytes; the declared
 * record holds one element. */
typedef struct tagSMGRPROT_THREAD_ENUMERATE_RSP_DATA {
  SMGR_RESULT Result;
  DWORD nTotalNumOfThreads;
  DWORD nNumOfThreads;
  DWORD nThreadInfoSize;
  SMGR_THREAD_INFO ThreadInfo[1];
} SMGRPROT_THREAD_ENUMERATE_RSP_DATA;
typedef struct tagSMGRPROT_MSG_THREAD_ENUMERATE_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_THREAD_ENUMERATE_RSP_DATA Data;
} SMGRPROT_MSG_THREAD_ENUMERATE_RSP;

typedef struct tagSMGRPROT_DEBUG_REQ_DATA {
  int32_t enRequest;
  uint64_t nReqDataSize; /* on 4-byte alignment; the library always sends 0 */
  BYTE abReqData[SMGRPROT_DEBUG_REQ_MAX_DATA];
} SMGRPROT_DEBUG_REQ_DATA;
typedef struct tagSMGRPROT_MSG_DEBUG_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_DEBUG_REQ_DATA Data;
} SMGRPROT_MSG_DEBUG_REQ;

typedef struct tagSMGRPROT_DEBUG_RSP_DATA {
  SMGR_RESULT Result;
} SMGRPROT_DEBUG_RSP_DATA;
typedef struct tagSMGRPROT_MSG_DEBUG_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_DEBUG_RSP_DATA Data;
} SMGRPROT_MSG_DEBUG_RSP;

typedef struct tagSMGRPROT_MUTEX_ENUMERATE_REQ_DATA {
  int32_t nNumOfMutexes;
  int32_t nStartOffset;
} SMGRPROT_MUTEX_ENUMERATE_REQ_DATA;
typedef struct tagSMGRPROT_MSG_MUTEX_ENUMERATE_REQ {
  SMGRPROT_HEADER Header;
  SMGRPROT_MUTEX_ENUMERATE_REQ_DATA Data;
} SMGRPROT_MSG_MUTEX_ENUMERATE_REQ;

/* Variable length: 32 + nNumOfMutexes x nMutexInfoSize bytes. */
typedef struct tagSMGRPROT_MUTEX_ENUMERATE_RSP_DATA {
  SMGR_RESULT Result;
  DWORD nTotalNumOfMutexes;
  DWORD nNumOfMutexes;
  DWORD nMutexInfoSize;
  SMGR_MUTEX_INFO MutexInfo[1];
} SMGRPROT_MUTEX_ENUMERATE_RSP_DATA;
typedef struct tagSMGRPROT_MSG_MUTEX_ENUMERATE_RSP {
  SMGRPROT_HEADER Header;
  SMGRPROT_MUTEX_ENUMERATE_RSP_DATA Data;
} SMGRPROT_MSG_MUTEX_ENUMERATE_RSP;

#pragma pack(pop)

/* Offset of the first element record in both enumeration responses. */
#define SMGRPROT_ENUMERATE_RSP_RECORDS_OFFSET 32u

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_DEBUG_SETCFG_REQ) == 20, debug_setcfg_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_DEBUG_SETCFG_REQ, Data.iDebugState) == 16, debug_setcfg_req_state);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_DEBUG_SETCFG_RSP) == 20, debug_setcfg_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_DEBUG_SETCFG_RSP, Data.Result) == 16, debug_setcfg_rsp_result);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_DEBUG_GETINFO_REQ) == 20, debug_getinfo_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_DEBUG_GETINFO_REQ, Data.iReserved) == 16,
                   debug_getinfo_req_reserved);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_DEBUG_GETINFO_RSP) == 36, debug_getinfo_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_DEBUG_GETINFO_RSP, Data.Result) == 16, debug_getinfo_rsp_result);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_DEBUG_GETINFO_RSP, Data.DebugInfo) == 20, debug_getinfo_rsp_info);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_THREAD_ENUMERATE_REQ) == 24, thread_enum_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_THREAD_ENUMERATE_REQ, Data.nNumOfThreads) == 16,
                   thread_enum_req_count);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_THREAD_ENUMERATE_REQ, Data.nStartOffset) == 20,
                   thread_enum_req_offset);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_THREAD_ENUMERATE_RSP) == 32 + 196, thread_enum_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_THREAD_ENUMERATE_RSP, Data.Result) == 16, thread_enum_rsp_result);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_THREAD_ENUMERATE_RSP, Data.nTotalNumOfThreads) == 20,
                   thread_enum_rsp_total);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_THREAD_ENUMERATE_RSP, Data.nNumOfThreads) == 24,
                   thread_enum_rsp_count);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_THREAD_ENUMERATE_RSP, Data.nThreadInfoSize) == 28,
                   thread_enum_rsp_elem);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_THREAD_ENUMERATE_RSP, Data.ThreadInfo) == 32,
                   thread_enum_rsp_records);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_DEBUG_REQ) == 540, debug_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_DEBUG_REQ, Data.enRequest) == 16, debug_req_request);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_DEBUG_REQ, Data.nReqDataSize) == 20, debug_req_data_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_DEBUG_REQ, Data.abReqData) == 28, debug_req_data);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_DEBUG_RSP) == 20, debug_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_DEBUG_RSP, Data.Result) == 16, debug_rsp_result);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_MUTEX_ENUMERATE_REQ) == 24, mutex_enum_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_MUTEX_ENUMERATE_REQ, Data.nNumOfMutexes) == 16,
                   mutex_enum_req_count);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_MUTEX_ENUMERATE_REQ, Data.nStartOffset) == 20,
                   mutex_enum_req_offset);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_MUTEX_ENUMERATE_RSP) == 32 + 204, mutex_enum_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_MUTEX_ENUMERATE_RSP, Data.Result) == 16, mutex_enum_rsp_result);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_MUTEX_ENUMERATE_RSP, Data.nTotalNumOfMutexes) == 20,
                   mutex_enum_rsp_total);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_MUTEX_ENUMERATE_RSP, Data.nNumOfMutexes) == 24,
                   mutex_enum_rsp_count);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_MUTEX_ENUMERATE_RSP, Data.nMutexInfoSize) == 28,
                   mutex_enum_rsp_elem);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_MUTEX_ENUMERATE_RSP, Data.MutexInfo) == 32, mutex_enum_rsp_records);

#endif /* SESSMGR_SMGRPROT_DIAGNOSTICS_H */
