// Library-internal pieces of the video encoder family shared by its source
// files: the handle record and its family instance, the value-name lookups
// the record dumps use, and the dumps themselves.
#pragma once

#include "handle_family.h"
#include "sessmgr_api.h"
#include "util_list.h"

// The record behind HVIDENC (heap, never on the wire).
typedef struct tagSMGR_VIDEO_ENCODER_HANDLE {
  DWORD dwSignature;  // SMGR_VIDEO_ENCODER_HANDLE_SIGNATURE while alive
  int nRefCount;      // opens not yet closed
  FNODE_D DNode;      // node of g_VidEncList; pvObject is this record
  int iID;            // the encoder's ID as the daemon returned it
  char szName[SMGR_OBJECT_NAME_SIZE];
} SMGR_VIDEO_ENCODER_HANDLE;

namespace smgr {

struct VideoEncoderHandleTraits {
  using Record = SMGR_VIDEO_ENCODER_HANDLE;
  static constexpr DWORD kSignature = SMGR_VIDEO_ENCODER_HANDLE_SIGNATURE;
  static constexpr const char* kFamilyWord = "video encoder";
  static constexpr const char* kNullAssert = "hEncoder != NULL";
  static constexpr const char* kSignatureAssert =
      "pVidEnc->dwSignature == SMGR_VIDEO_ENCODER_HANDLE_SIGNATURE";
  static constexpr const char* kRefCountAssert = "pEnc->nRefCount >= 1";
  static constexpr const char* kAllocName = "_OpenAllocVidEnc";
  static constexpr const char* kFreeName = "SessMgr_CloseVideoEncoder";
  static constexpr const char* kIsValidName = "_IsValidVidEncHandle";
  static constexpr const char* kLocateBySelectorName = "_LocateVidEncByName";
  static constexpr const char* kLocateByConfigName = "_LocateVidEncByID";
  static constexpr const char* kCleanupName = "_CleanupVidEncList";
  static int& Id(Record& record) { return record.iID; }
  static char* Name(Record& record) { return record.szName; }
};

// g_VidEncList is VideoEncoderHandles::List().
using VideoEncoderHandles = HandleFamily<VideoEncoderHandleTraits>;

}  // namespace smgr

// Value names without the call traces, for the dumps.
const char* _VidEncNameOf(const char* szOperation, int nValue, char* szBuffer, size_t nSize);

// Level 6 dumps: a configuration before it is sent (SETTING / NOT Setting
// per field under its trace label) and an information record after GetInfo.
void _PrintVideoEncoderCfg(const SMGR_VIDEO_ENCODER_CFG* pCfg);
void _PrintVideoEncoderInfo(const SMGR_VIDEO_ENCODER_INFO* pInfo);
