// Library-internal pieces of the stream family shared by its source files:
// the handle record and its family instance, the record dumps and the
// address-kind names used by traces.
#pragma once

#include "handle_family.h"
#include "sessmgr_api.h"
#include "util_list.h"

// The record behind HSTREAM (heap, never on the wire).
typedef struct tagSMGR_STREAM_HANDLE {
  DWORD dwSignature;  // SMGR_STREAM_HANDLE_SIGNATURE while alive
  FNODE_D DNode;      // node of the stream handle list; pvObject is this record
  int nRefCount;      // Create/Open calls not yet closed
  int iStreamID;      // as the daemon reported it, or as selected by
  char szName[SMGR_OBJECT_NAME_SIZE];
} SMGR_STREAM_HANDLE;

namespace smgr {

struct StreamHandleTraits {
  using Record = SMGR_STREAM_HANDLE;
  static constexpr DWORD kSignature = SMGR_STREAM_HANDLE_SIGNATURE;
  static constexpr const char* kFamilyWord = "stream";
  static constexpr const char* kNullAssert = "hStream != NULL";
  static constexpr const char* kSignatureAssert = "hStream->dwSignature == SMGR_STREAM_HANDLE_SIGNATURE";
  static constexpr const char* kRefCountAssert = "pHandle->nRefCount >= 1";
  static constexpr const char* kAllocName = "_AllocStreamHandle";
  static constexpr const char* kFreeName = "_FreeStreamHandle";
  static constexpr const char* kIsValidName = "_IsValidStreamHandle";
  static constexpr const char* kLocateBySelectorName = "_LocateStreamBySelector";
  static constexpr const char* kLocateByConfigName = "_LocateStreamByConfig";
  static constexpr const char* kCleanupName = "CleanupSessMgrStreams";
  static int& Id(Record& record) { return record.iStreamID; }
  static char* Name(Record& record) { return record.szName; }
};

using StreamHandles = HandleFamily<StreamHandleTraits>;

}  // namespace smgr

BOOL _AllocStreamHandle(SMGR_STREAM_HANDLE** ppHandle, int nID, const char* szName);
void _FreeStreamHandle(SMGR_STREAM_HANDLE* pHandle, BOOL bUnlink);
BOOL _IsValidStreamHandle(HSTREAM hStream, SMGR_STREAM_HANDLE** ppHandle);
SMGR_STREAM_HANDLE* _LocateStreamBySelector(const SMGR_OBJECT_SELECTOR* pSelector);
SMGR_STREAM_HANDLE* _LocateStreamByConfig(const SMGR_STREAM_CFG* pConfig);

// Enumerator name of an address kind ("SMGR_IPV4_ADDRESS", ...; "Invalid (%d)" otherwise).
char* _GetIPAddressTypeString(int enType, char* szBuffer, size_t nSize);

// Level 6 dumps of a configuration (before a create request) and of an
// information record (after GetInfo). Keys and pass phrases are never printed.
void _PrintStreamCfg(const SMGR_STREAM_CFG* pCfg);
void _PrintStreamInfo(const SMGR_STREAM_INFO* pInfo);
