// Library-internal pieces of the video input family: the handle record behind
// HVIDIN, its handle family instance, and the record dump used by traces.
#pragma once

#include "handle_family.h"
#include "sessmgr_api.h"
#include "util_list.h"

// The record behind HVIDIN (heap, never on the wire); the encoder handle's layout.
typedef struct tagSMGR_VIDEO_INPUT_HANDLE {
  DWORD dwSignature;  // SMGR_VIDEO_INPUT_HANDLE_SIGNATURE while alive
  int nRefCount;      // opens not yet closed
  FNODE_D DNode;      // node of g_VidInList; pvObject is this record
  int iID;            // the daemon's input ID; every request carries it
  char szName[SMGR_OBJECT_NAME_SIZE];
} SMGR_VIDEO_INPUT_HANDLE;

namespace smgr {

struct VideoInputHandleTraits {
  using Record = SMGR_VIDEO_INPUT_HANDLE;
  static constexpr DWORD kSignature = SMGR_VIDEO_INPUT_HANDLE_SIGNATURE;
  static constexpr const char* kFamilyWord = "video input";
  static constexpr const char* kNullAssert = "hInput != NULL";
  static constexpr const char* kSignatureAssert = "pVidIn->dwSignature == SMGR_VIDEO_INPUT_HANDLE_SIGNATURE";
  static constexpr const char* kRefCountAssert = "pVidIn->nRefCount >= 1";
  static constexpr const char* kAllocName = "_OpenAllocVidIn";
  static constexpr const char* kFreeName = "SessMgr_CloseVideoInput";
  static constexpr const char* kIsValidName = "_IsValidVidInHandle";
  static constexpr const char* kLocateBySelectorName = "_LocateVidIn";
  static constexpr const char* kLocateByConfigName = "_LocateVidIn";
  static constexpr const char* kCleanupName = "CleanupSessMgrVideoInputs";
  static int& Id(Record& record) { return record.iID; }
  static char* Name(Record& record) { return record.szName; }
};

using VideoInputHandles = HandleFamily<VideoInputHandleTraits>;

}  // namespace smgr

// Words of the capability bits, ", "-separated, each append cut to nSize.
char* _GetCapabilitiesString(DWORD dwCapabilities, char* szBuffer, size_t nSize);
// Level 6 dump of an information record (GetInfo with the debug level above 5).
void _PrintVideoInputInfo(const SMGR_VIDEO_INPUT_INFO* pInfo);
