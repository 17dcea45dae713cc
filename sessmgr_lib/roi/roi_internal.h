// Library-internal pieces of the region-of-interest family: the handle record
// behind HROI (ID and name only) and its handle family instance.
#pragma once

#include "handle_family.h"
#include "sessmgr_api.h"
#include "util_list.h"

// The record behind HROI (heap, never on the wire).
typedef struct tagSMGR_ROI_HANDLE {
  DWORD dwSignature;  // SMGR_ROI_HANDLE_SIGNATURE while alive
  FNODE_D DNode;      // node of the region handle list; pvObject is this record
  int nRefCount;      // 1 from creation
  int iRoiID;
  char szName[SMGR_OBJECT_NAME_SIZE];
} SMGR_ROI_HANDLE;

namespace smgr {

struct RoiHandleTraits {
  using Record = SMGR_ROI_HANDLE;
  static constexpr DWORD kSignature = SMGR_ROI_HANDLE_SIGNATURE;
  static constexpr const char* kFamilyWord = "ROI";
  static constexpr const char* kNullAssert = "hROI != NULL";
  static constexpr const char* kSignatureAssert = "hROI->dwSignature == SMGR_ROI_HANDLE_SIGNATURE";
  static constexpr const char* kRefCountAssert = "pHandle->nRefCount >= 1";
  static constexpr const char* kAllocName = "_AllocROIHandle";
  static constexpr const char* kFreeName = "_FreeROIHandle";
  static constexpr const char* kIsValidName = "_IsValidROIHandle";
  static constexpr const char* kLocateBySelectorName = "_LocateROIBySelector";
  static constexpr const char* kLocateByConfigName = "_LocateROIByConfig";
  static constexpr const char* kCleanupName = "CleanupSessMgrROIs";
  static int& Id(Record& record) { return record.iRoiID; }
  static char* Name(Record& record) { return record.szName; }
};

using RoiHandles = HandleFamily<RoiHandleTraits>;

}  // namespace smgr

// Level 6 trace of a configuration: every field (bAll, a creation) or the flagged ones.
void _PrintROICfg(const SMGR_ROI_CFG* pCfg, bool bAll);
