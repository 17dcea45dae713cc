// Library-internal pieces of the metadata-source family shared by its source
// files: the handle record (a whole configuration) and its family instance,
// the local checks a configuration goes through before it is sent, and the
// record dumps.
#pragma once

#include <cstddef>

#include "handle_family.h"
#include "sessmgr_api.h"
#include "util_list.h"

// The record behind HMETADATA (heap, never on the wire).
typedef struct tagSMGR_METADATA_HANDLE {
  DWORD dwSignature;         // SMGR_METADATA_HANDLE_SIGNATURE while alive
  int nRefCount;             // Create/Open calls not yet closed
  FNODE_D DNode;             // node of the metadata handle list; pvObject is this record
  SMGR_METADATA_CFG Config;  // nIndex is the daemon's ID, szName its name
} SMGR_METADATA_HANDLE;

namespace smgr {

struct MetaDataHandleTraits {
  using Record = SMGR_METADATA_HANDLE;
  static constexpr DWORD kSignature = SMGR_METADATA_HANDLE_SIGNATURE;
  static constexpr const char* kFamilyWord = "metadata";
  static constexpr const char* kNullAssert = "hDataSrc != NULL";
  static constexpr const char* kSignatureAssert = "hDataSrc->dwSignature == SMGR_METADATA_HANDLE_SIGNATURE";
  static constexpr const char* kRefCountAssert = "pHandle->nRefCount >= 1";
  static constexpr const char* kAllocName = "_AllocMetaDataSourceHandle";
  static constexpr const char* kFreeName = "_FreeMetaDataSourceHandle";
  static constexpr const char* kIsValidName = "_IsValidMetaDataSourceHandle";
  static constexpr const char* kLocateBySelectorName = "_LocateMetaDataSourceBySelector";
  static constexpr const char* kLocateByConfigName = "_LocateMetaDataSourceByConfig";
  static constexpr const char* kCleanupName = "CleanupSessMgrMetaData";
  static int& Id(Record& record) { return record.Config.nIndex; }
  static char* Name(Record& record) { return record.Config.szName; }
};

using MetaDataHandles = HandleFamily<MetaDataHandleTraits>;

// Which of the local normalisation steps run: create runs them all,
// configure those whose set-field bits are set.
enum MetaDataPrepareStep : unsigned {
  kUpperClassifyingCountry = 1u << 0,
  kUpperObjectCountry = 1u << 1,
  kDefaultClassification = 1u << 2,
  kResolveSourceAddress = 1u << 3,
  kCheckRelays = 1u << 4,
  kAddChecksumTag = 1u << 5,
  kAllPrepareSteps = 0x3Fu,
};

// The steps of a configure: one per set-field bit the library acts on.
unsigned ConfigurePrepareSteps(uint64_t nSetFieldsFlag);

// Runs the chosen steps on the record that goes into the request. False with
// the last error set (relay failures carry a description cut to
// nDescriptionSize - 1 characters); nothing is sent then.
bool PrepareMetaDataConfig(const char* szOperation, SMGR_METADATA_CFG* pCfg, unsigned nSteps,
                           size_t nDescriptionSize);

// Information to configuration: the common fields and, for serial and network
// sources, the input that identifies them (video-input sources keep the rest zero).
void _CopyInfoToConfig(const SMGR_METADATA_INFO* pInfo, SMGR_METADATA_CFG* pCfg);
// Sorts the first nCount (at most 16) sensor UIDs ascending, ignoring case.
void SortSensorUIDs(SMGR_METADATA_COT_STATS* pCoT, uint32_t nCount);

}  // namespace smgr

// Level 6 dumps of a creation record, a set-up record and an information
// record; value-name call traces are switched off meanwhile.
void _PrintMetaDataSourceCreationCfg(const SMGR_METADATA_CFG* pCfg);
void _PrintMetaDataSourceCfg(const SMGR_METADATA_CFG* pCfg);
void _PrintMetaDataSourceInfo(const SMGR_METADATA_INFO* pInfo);
