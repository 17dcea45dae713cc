/* Wire records of the configuration store (600 to 613). Every response
 * carries Result without a description. Little-endian, packed to 4 bytes. */
#ifndef SESSMGR_SMGRPROT_CONFIG_H
#define SESSMGR_SMGRPROT_CONFIG_H

#include "sessmgr/sm_types.h"
#include "sessmgr/smgrprot_core.h"

#define SMGRPROT_CONFIG_WRITE_NAME_SIZE 288
#define SMGRPROT_CONFIG_NAME_SIZE 256

#pragma pack(push, 4)

/* Save (600): the caller's start-up mode and the full path. 308 bytes. */
typedef struct tagSMGRPROT_MSG_CONFIG_WRITE_REQ {
  SMGRPROT_HEADER Header;
  int32_t enStartup;
  char szFileName[SMGRPROT_CONFIG_WRITE_NAME_SIZE];
} SMGRPROT_MSG_CONFIG_WRITE_REQ;

/* Load (602) and Delete (604): the full path; empty means the start-up file. 272 bytes. */
typedef struct tagSMGRPROT_MSG_CONFIG_NAME_REQ {
  SMGRPROT_HEADER Header;
  char szFileName[SMGRPROT_CONFIG_NAME_SIZE];
} SMGRPROT_MSG_CONFIG_NAME_REQ;
typedef SMGRPROT_MSG_CONFIG_NAME_REQ SMGRPROT_MSG_CONFIG_READ_REQ;
typedef SMGRPROT_MSG_CONFIG_NAME_REQ SMGRPROT_MSG_CONFIG_DELETE_REQ;

/* A request of one 32-bit value: is-saved (606, reserved 0), set auto-save (610). 20 bytes. */
typedef struct tagSMGRPROT_MSG_CONFIG_VALUE_REQ {
  SMGRPROT_HEADER Header;
  int32_t iValue;
} SMGRPROT_MSG_CONFIG_VALUE_REQ;

/* Header-only requests: delete all (608), get auto-save (612). 16 bytes. */
typedef struct tagSMGRPROT_MSG_CONFIG_PLAIN_REQ {
  SMGRPROT_HEADER Header;
} SMGRPROT_MSG_CONFIG_PLAIN_REQ;

/* Result alone: write (601), read (603), set auto-save (611). 20 bytes. */
typedef struct tagSMGRPROT_MSG_CONFIG_RESULT_RSP {
  SMGRPROT_HEADER Header;
  SMGR_RESULT Result;
} SMGRPROT_MSG_CONFIG_RESULT_RSP;

/* Result and one 32-bit value: delete (605, iErrno), is-saved (607,
 * bIsAlreadySaved), get auto-save (613, bEnabled). 24 bytes. */
typedef struct tagSMGRPROT_MSG_CONFIG_VALUE_RSP {
  SMGRPROT_HEADER Header;
  SMGR_RESULT Result;
  int32_t iValue;
} SMGRPROT_MSG_CONFIG_VALUE_RSP;

/* Delete all response (609). 28 bytes. */
typedef struct tagSMGRPROT_MSG_CONFIG_DELETE_ALL_RSP {
  SMGRPROT_HEADER Header;
  SMGR_RESULT Result;
  uint32_t nDeletedCount;
  int32_t iErrno;
} SMGRPROT_MSG_CONFIG_DELETE_ALL_RSP;

/* Every message under its own name, for tools that pair SMGRPROT_MSG_<NAME>_REQ/_RSP. */
typedef SMGRPROT_MSG_CONFIG_RESULT_RSP SMGRPROT_MSG_CONFIG_WRITE_RSP;
typedef SMGRPROT_MSG_CONFIG_RESULT_RSP SMGRPROT_MSG_CONFIG_READ_RSP;
typedef SMGRPROT_MSG_CONFIG_VALUE_RSP SMGRPROT_MSG_CONFIG_DELETE_RSP;
typedef SMGRPROT_MSG_CONFIG_VALUE_REQ SMGRPROT_MSG_IS_CONFIG_SAVED_REQ;
typedef SMGRPROT_MSG_CONFIG_VALUE_RSP SMGRPROT_MSG_IS_CONFIG_SAVED_RSP;
typedef SMGRPROT_MSG_CONFIG_PLAIN_REQ SMGRPROT_MSG_CONFIG_DELETE_ALL_REQ;
typedef SMGRPROT_MSG_CONFIG_VALUE_REQ SMGRPROT_MSG_CONFIG_SET_AUTOSAVE_REQ;
typedef SMGRPROT_MSG_CONFIG_RESULT_RSP SMGRPROT_MSG_CONFIG_SET_AUTOSAVE_RSP;
typedef SMGRPROT_MSG_CONFIG_PLAIN_REQ SMGRPROT_MSG_CONFIG_GET_AUTOSAVE_REQ;
typedef SMGRPROT_MSG_CONFIG_VALUE_RSP SMGRPROT_MSG_CONFIG_GET_AUTOSAVE_RSP;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_CONFIG_WRITE_REQ) == 308, prot_config_write_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_CONFIG_WRITE_REQ, enStartup) == 16, prot_config_write_req_startup);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_CONFIG_WRITE_REQ, szFileName) == 20, prot_config_write_req_name);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_CONFIG_NAME_REQ) == 272, prot_config_name_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_CONFIG_NAME_REQ, szFileName) == 16, prot_config_name_req_name);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_CONFIG_VALUE_REQ) == 20, prot_config_value_req_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_CONFIG_VALUE_REQ, iValue) == 16, prot_config_value_req_value);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_CONFIG_PLAIN_REQ) == 16, prot_config_plain_req_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_CONFIG_RESULT_RSP) == 20, prot_config_result_rsp_size);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_CONFIG_VALUE_RSP) == 24, prot_config_value_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_CONFIG_VALUE_RSP, iValue) == 20, prot_config_value_rsp_value);
SMGR_STATIC_ASSERT(sizeof(SMGRPROT_MSG_CONFIG_DELETE_ALL_RSP) == 28, prot_config_delete_all_rsp_size);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_CONFIG_DELETE_ALL_RSP, nDeletedCount) == 20,
                   prot_config_delete_all_rsp_count);
SMGR_STATIC_ASSERT(offsetof(SMGRPROT_MSG_CONFIG_DELETE_ALL_RSP, iErrno) == 24,
                   prot_config_delete_all_rsp_errno);

#endif /* SESSMGR_SMGRPROT_CONFIG_H */
