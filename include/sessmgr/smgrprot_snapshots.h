/* Wire records of the snapshot messages (1000 to 1015). Responses carry a
 * bare Result; requests without data are the 16-byte header alone.
 * Little-endian, packed to 4 bytes; the API records travel unchanged. */
#ifndef SESSMGR_SMGRPROT_SNAPSHOTS_H
#define SESSMGR_SMGRPROT_SNAPSHOTS_H

#include "sessmgr/sm_results.h"
#include "sessmgr/sm_snapshots.h"
#include "sessmgr/sm_types.h"
#include "sessmgr/smgrprot_core.h"

#pragma pack(push, 4)

/* Take (1000): the caller's record; 344 bytes. */
typedef struct tagSMGRPROT_MSG_SNAPSHOT_TAKE_REQ {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_SNAPSHOT_CFG Config;
  } Data;
} SMGRPROT_MSG_SNAPSHOT_TAKE_REQ;

/* Take response (1001): the name written; 308 bytes. */
typedef struct tagSMGRPROT_MSG_SNAPSHOT_TAKE_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    char szFileName[SMGR_MAX_API_FNAME_SIZE];
  } Data;
} SMGRPROT_MSG_SNAPSHOT_TAKE_RSP;

/* Delete (1002): a base name; 272 bytes. */
typedef struct tagSMGRPROT_MSG_SNAPSHOT_DELETE_REQ {
  SMGRPROT_HEADER Header;
  struct {
    char szFileName[SMGR_SNAPSHOT_WIRE_FNAME_SIZE];
  } Data;
} SMGRPROT_MSG_SNAPSHOT_DELETE_REQ;

/* Delete, rename and delete-all responses (1003, 1013, 1015): 28 bytes. */
typedef struct tagSMGRPROT_MSG_SNAPSHOT_COUNT_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    UINT nCount; /* nDeletedCount of delete-all */
    int32_t iErrno;
  } Data;
} SMGRPROT_MSG_SNAPSHOT_COUNT_RSP;
typedef SMGRPROT_MSG_SNAPSHOT_COUNT_RSP SMGRPROT_MSG_SNAPSHOT_DELETE_RSP;
typedef SMGRPROT_MSG_SNAPSHOT_COUNT_RSP SMGRPROT_MSG_SNAPSHOT_RENAME_RSP;
typedef SMGRPROT_MSG_SNAPSHOT_COUNT_RSP SMGRPROT_MSG_SNAPSHOT_DELETE_ALL_RSP;

/* Get defaults, get admin info and delete all: the header alone; 16 bytes. */
typedef struct tagSMGRPROT_MSG_SNAPSHOT_EMPTY_REQ {
  SMGRPROT_HEADER Header;
} SMGRPROT_MSG_SNAPSHOT_EMPTY_REQ;
typedef SMGRPROT_MSG_SNAPSHOT_EMPTY_REQ SMGRPROT_MSG_SNAPSHOT_GETDEFAULTS_REQ;
typedef SMGRPROT_MSG_SNAPSHOT_EMPTY_REQ SMGRPROT_MSG_SNAPSHOT_GETADMININFO_REQ;
typedef SMGRPROT_MSG_SNAPSHOT_EMPTY_REQ SMGRPROT_MSG_SNAPSHOT_DELETE_ALL_REQ;

/* Get defaults response (1005): 56 bytes. */
typedef struct tagSMGRPROT_MSG_SNAPSHOT_GETDEFAULTS_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    SMGR_SNAPSHOT_DEFAULTS SnapShotDefaults;
  } Data;
} SMGRPROT_MSG_SNAPSHOT_GETDEFAULTS_RSP;

/* Set defaults (1006): 52 bytes. */
typedef struct tagSMGRPROT_MSG_SNAPSHOT_SETDEFAULTS_REQ {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_SNAPSHOT_DEFAULTS SnapShotDefaults;
  } Data;
} SMGRPROT_MSG_SNAPSHOT_SETDEFAULTS_REQ;

/* Set defaults and set admin responses (1007, 1009): Result alone; 20 bytes. */
typedef struct tagSMGRPROT_MSG_SNAPSHOT_RESULT_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
  } Data;
} SMGRPROT_MSG_SNAPSHOT_RESULT_RSP;
typedef SMGRPROT_MSG_SNAPSHOT_RESULT_RSP SMGRPROT_MSG_SNAPSHOT_SETDEFAULTS_RSP;
typedef SMGRPROT_MSG_SNAPSHOT_RESULT_RSP SMGRPROT_MSG_SNAPSHOT_SETADMINCFG_RSP;

/* Set admin (1008): 36 bytes. */
typedef struct tagSMGRPROT_MSG_SNAPSHOT_SETADMINCFG_REQ {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_SNAPSHOT_ADMIN_CFG SnapShotAdminCfg;
  } Data;
} SMGRPROT_MSG_SNAPSHOT_SETADMINCFG_REQ;

/* Get admin info response (1011): 320 bytes. */
typedef struct tagSMGRPROT_MSG_SNAPSHOT_GETADMININFO_RSP {
  SMGRPROT_HEADER Header;
  struct {
    SMGR_RESULT Result;
    SMGR_SNAPSHOT_ADMIN_INFO SnapShotAdminInfo;
  } Data;
} SMGRPROT_MSG_SNAPSHOT_GETADMININFO_RSP;

/* Rename (1012): 528 bytes. */
typedef struct tagSMGRPROT_MSG_SNAPSHOT_RENAME_REQ {
  SMGRPROT_HEADER Header;
  struct {
    char szOldFileName[SMGR_SNAPSHOT_WIRE_FNAME_SIZE];
    char szNewFileName[SMGR_SNAPSHOT_WIRE_FNAME_SIZE];
  } Data;
} SMGRPROT_MSG_SNAPSHOT_RENAME_REQ;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SNAPSHOT_TAKE_REQ) == 344, prot_snapshot_take_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SNAPSHOT_TAKE_REQ, Data.Config) == 16, prot_snapshot_take_req_cfg);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SNAPSHOT_TAKE_RSP) == 308, prot_snapshot_take_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SNAPSHOT_TAKE_RSP, Data.szFileName) == 20,
                   prot_snapshot_take_rsp_name);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SNAPSHOT_DELETE_REQ) == 272, prot_snapshot_delete_req_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SNAPSHOT_COUNT_RSP) == 28, prot_snapshot_count_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SNAPSHOT_COUNT_RSP, Data.nCount) == 20,
                   prot_snapshot_count_rsp_count);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SNAPSHOT_COUNT_RSP, Data.iErrno) == 24,
                   prot_snapshot_count_rsp_errno);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SNAPSHOT_EMPTY_REQ) == 16, prot_snapshot_empty_req_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SNAPSHOT_GETDEFAULTS_RSP) == 56, prot_snapshot_getdefaults_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SNAPSHOT_GETDEFAULTS_RSP, Data.SnapShotDefaults) == 20,
                   prot_snapshot_getdefaults_rsp_defaults);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SNAPSHOT_SETDEFAULTS_REQ) == 52, prot_snapshot_setdefaults_req_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SNAPSHOT_RESULT_RSP) == 20, prot_snapshot_result_rsp_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SNAPSHOT_SETADMINCFG_REQ) == 36, prot_snapshot_setadmincfg_req_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SNAPSHOT_GETADMININFO_RSP) == 320,
                   prot_snapshot_getadmininfo_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SNAPSHOT_GETADMININFO_RSP, Data.SnapShotAdminInfo) == 20,
                   prot_snapshot_getadmininfo_rsp_info);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_SNAPSHOT_RENAME_REQ) == 528, prot_snapshot_rename_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_SNAPSHOT_RENAME_REQ, Data.szNewFileName) == 272,
                   prot_snapshot_rename_req_new_name);

#endif /* SESSMGR_SMGRPROT_SNAPSHOTS_H */
