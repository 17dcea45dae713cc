// Library-internal pieces of the essence family shared by its source files:
// the handle record (a whole configuration), its family instance, the
// configuration identity and the record dumps.
#pragma once

#include "handle_family.h"
#include "sessmgr_api.h"
#include "util_list.h"

// The record behind HESSENCE (heap, never on the wire). Config.nIndex is the
// daemon ID and Config.szName the name.
typedef struct tagSMGR_ESSENCE_HANDLE {
  DWORD dwSignature;  // SMGR_ESSENCE_HANDLE_SIGNATURE while alive
  int nRefCount;      // Create/Open calls not yet closed
  FNODE_D DNode;      // node of the essence handle list; pvObject is this record
  SMGR_ESSENCE_CFG Config;
} SMGR_ESSENCE_HANDLE;

namespace smgr {

struct EssenceHandleTraits {
  using Record = SMGR_ESSENCE_HANDLE;
  static constexpr DWORD kSignature = SMGR_ESSENCE_HANDLE_SIGNATURE;
  static constexpr const char* kFamilyWord = "essence";
  static constexpr const char* kNullAssert = "hEssence != NULL";
  static constexpr const char* kSignatureAssert = "hEssence->dwSignature == SMGR_ESSENCE_HANDLE_SIGNATURE";
  static constexpr const char* kRefCountAssert = "pHandle->nRefCount >= 1";
  static constexpr const char* kAllocName = "_AllocEssenceHandle";
  static constexpr const char* kFreeName = "_FreeEssenceHandle";
  static constexpr const char* kIsValidName = "_IsValidEssenceHandle";
  static constexpr const char* kLocateBySelectorName = "_LocateEssenceBySelector";
  static constexpr const char* kLocateByConfigName = "_LocateEssenceByConfig";
  static constexpr const char* kCleanupName = "CleanupSessMgrEssences";
  static int& Id(Record& record) { return record.Config.nIndex; }
  static char* Name(Record& record) { return record.Config.szName; }
};

using EssenceHandles = HandleFamily<EssenceHandleTraits>;

}  // namespace smgr

// The first linked handle whose configuration AreEssenceConfigsIdentical
// finds identical to pCfg (last error 7 then), else NULL.
SMGR_ESSENCE_HANDLE* _LocateEssenceByConfig(const SMGR_ESSENCE_CFG* pCfg);

// Level 6 dumps: every field before a create, the flagged fields before a configure.
void _PrintEssenceCfg(const SMGR_ESSENCE_CFG* pCfg);
void _PrintEssenceSetFields(const SMGR_ESSENCE_CFG* pCfg);
// The text of a video format code for traces ("%dx%d%c%d", "Unknown", ...),
// written here until the video format helpers are shared.
char* _EssenceVideoFormatText(VIDEO_FORMAT lFormat, char* szBuffer, size_t nSize);

namespace smgr {
struct ValueNameTable;
namespace essence_names {
extern const ValueNameTable kMediaTypes;
extern const ValueNameTable kPacketTimes;
}  // namespace essence_names
}  // namespace smgr
