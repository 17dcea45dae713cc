// Library-internal pieces of the session family: the handle record behind
// HSESSION and its instance of the common handle mechanism.
#pragma once

#include "handle_family.h"
#include "sessmgr_api.h"
#include "util_list.h"

// The record behind HSESSION (heap, never on the wire).
typedef struct tagSMGR_SESSION_HANDLE {
  DWORD dwSignature;  // SMGR_SESSION_HANDLE_SIGNATURE while alive
  int nRefCount;      // Create calls not yet closed
  FNODE_D DNode;      // node of the session handle list; pvObject is this record
  int iSessionID;     // as the daemon reported it
  char szName[SMGR_OBJECT_NAME_SIZE];
} SMGR_SESSION_HANDLE;

namespace smgr {

struct SessionHandleTraits {
  using Record = SMGR_SESSION_HANDLE;
  static constexpr DWORD kSignature = SMGR_SESSION_HANDLE_SIGNATURE;
  static constexpr const char* kFamilyWord = "session";
  static constexpr const char* kNullAssert = "hSession != NULL";
  static constexpr const char* kSignatureAssert = "hSession->dwSignature == SMGR_SESSION_HANDLE_SIGNATURE";
  static constexpr const char* kRefCountAssert = "pHandle->nRefCount >= 1";
  static constexpr const char* kAllocName = "_AllocSessionHandle";
  static constexpr const char* kFreeName = "_FreeSessionHandle";
  static constexpr const char* kIsValidName = "_IsValidSessionHandle";
  static constexpr const char* kLocateBySelectorName = "_LocateSessionBySelector";
  static constexpr const char* kLocateByConfigName = "_LocateSessionByConfig";
  static constexpr const char* kCleanupName = "CleanupSessMgrSessions";
  static int& Id(Record& record) { return record.iSessionID; }
  static char* Name(Record& record) { return record.szName; }
};

using SessionHandles = HandleFamily<SessionHandleTraits>;

}  // namespace smgr
