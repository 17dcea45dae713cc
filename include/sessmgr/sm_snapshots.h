/* Snapshots: still pictures (JPEG or PNG) that the daemon takes from a video
 * encoder's picture and keeps in its snapshot folder; the request record, the
 * defaults, the storage settings and the snapshot operations.
 * C99 and C++ clean; records are little-endian and packed to 4 bytes. */
#ifndef SESSMGR_SM_SNAPSHOTS_H
#define SESSMGR_SM_SNAPSHOTS_H

#include "sessmgr/sm_types.h"

#ifndef SMGR_MAX_API_FNAME_SIZE
#define SMGR_MAX_API_FNAME_SIZE 288 /* file names, terminator included */
#endif
#define SMGR_SNAPSHOT_WIRE_FNAME_SIZE 256 /* names of delete and rename requests */

/* Picture formats (enFormat). */
#define SMGR_SNAPSHOT_FORMAT_JPEG 0
#define SMGR_SNAPSHOT_FORMAT_PNG 1

/* PNG palettes (enPaletteSelection). */
#define SMGR_PNG_PALETTE_RGB_TRUE_COLOR 0
#define SMGR_PNG_PALETTE_COLORCUBE 1
#define SMGR_PNG_PALETTE_LAB_OPTIMIZED 2

/* Where snapshots are stored (enStorageDevice). */
#define SMGR_SNAPSHOT_STORAGE_LOCAL 0
#define SMGR_SNAPSHOT_STORAGE_NFS 1
#define SMGR_SNAPSHOT_STORAGE_CUSTOM_DIRECTORY 2

#pragma pack(push, 4)

/* One snapshot to take (328 bytes). SetFieldsFlag says which fields the caller
 * sets (the others take the defaults); its bits are the daemon's. */
typedef struct tagSMGR_SNAPSHOT_CFG {
  UINT nSize;
  uint64_t SetFieldsFlag;
  int32_t enFormat; /* SMGR_SNAPSHOT_FORMAT_... */
  int32_t nQualityFactor;
  char szFileName[SMGR_MAX_API_FNAME_SIZE]; /* on return: the name actually written */
  UINT nVidencID;                           /* video encoder whose picture is taken */
  BOOL bOverwrite;
  UINT Width;
  UINT Height;
  int32_t enPaletteSelection; /* SMGR_PNG_PALETTE_... */
} SMGR_SNAPSHOT_CFG;

/* The defaults a snapshot takes for the fields it does not set (36 bytes). */
typedef struct tagSMGR_SNAPSHOT_DEFAULTS {
  UINT nSize;
  uint64_t SetFieldsFlag;
  int32_t enFormat;
  int32_t nQualityFactor;
  BOOL bOverwrite;
  UINT Width;
  UINT Height;
  int32_t enPaletteSelection;
} SMGR_SNAPSHOT_DEFAULTS;

/* Storage settings (20 bytes). */
typedef struct tagSMGR_SNAPSHOT_ADMIN_CFG {
  UINT nSize;
  uint64_t SetFieldsFlag;
  int32_t nMaxStorageInKiloBytes;
  int32_t enStorageDevice; /* SMGR_SNAPSHOT_STORAGE_... */
} SMGR_SNAPSHOT_ADMIN_CFG;

/* Storage in force (300 bytes). */
typedef struct tagSMGR_SNAPSHOT_ADMIN_INFO {
  UINT nSize;
  int32_t nMaxStorageInKiloBytes;
  int32_t enStorageDevice;
  char szDirectory[SMGR_MAX_API_FNAME_SIZE]; /* the folder in use */
} SMGR_SNAPSHOT_ADMIN_INFO;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGR_SNAPSHOT_CFG) == 328, snapshot_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_CFG, nSize) == 0, snapshot_cfg_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_CFG, SetFieldsFlag) == 4, snapshot_cfg_SetFieldsFlag);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_CFG, enFormat) == 12, snapshot_cfg_enFormat);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_CFG, nQualityFactor) == 16, snapshot_cfg_nQualityFactor);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_CFG, szFileName) == 20, snapshot_cfg_szFileName);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_CFG, nVidencID) == 308, snapshot_cfg_nVidencID);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_CFG, bOverwrite) == 312, snapshot_cfg_bOverwrite);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_CFG, Width) == 316, snapshot_cfg_Width);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_CFG, Height) == 320, snapshot_cfg_Height);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_CFG, enPaletteSelection) == 324, snapshot_cfg_enPaletteSelection);

SMGR_STATIC_ASSERT(sizeof(SMGR_SNAPSHOT_DEFAULTS) == 36, snapshot_defaults_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_DEFAULTS, nSize) == 0, snapshot_defaults_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_DEFAULTS, SetFieldsFlag) == 4, snapshot_defaults_SetFieldsFlag);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_DEFAULTS, enFormat) == 12, snapshot_defaults_enFormat);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_DEFAULTS, nQualityFactor) == 16, snapshot_defaults_nQualityFactor);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_DEFAULTS, bOverwrite) == 20, snapshot_defaults_bOverwrite);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_DEFAULTS, Width) == 24, snapshot_defaults_Width);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_DEFAULTS, Height) == 28, snapshot_defaults_Height);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_DEFAULTS, enPaletteSelection) == 32,
                   snapshot_defaults_enPaletteSelection);

SMGR_STATIC_ASSERT(sizeof(SMGR_SNAPSHOT_ADMIN_CFG) == 20, snapshot_admin_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_ADMIN_CFG, nSize) == 0, snapshot_admin_cfg_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_ADMIN_CFG, SetFieldsFlag) == 4, snapshot_admin_cfg_SetFieldsFlag);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_ADMIN_CFG, nMaxStorageInKiloBytes) == 12, snapshot_admin_cfg_nMax);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_ADMIN_CFG, enStorageDevice) == 16,
                   snapshot_admin_cfg_enStorageDevice);

SMGR_STATIC_ASSERT(sizeof(SMGR_SNAPSHOT_ADMIN_INFO) == 300, snapshot_admin_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_ADMIN_INFO, nSize) == 0, snapshot_admin_info_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_ADMIN_INFO, nMaxStorageInKiloBytes) == 4, snapshot_admin_info_nMax);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_ADMIN_INFO, enStorageDevice) == 8,
                   snapshot_admin_info_enStorageDevice);
SMGR_STATIC_ASSERT(offsetof(SMGR_SNAPSHOT_ADMIN_INFO, szDirectory) == 12, snapshot_admin_info_szDirectory);

SMGR_EXTERN_C_BEGIN

/** Takes a snapshot: sends the whole 328-byte record with szFileName cut to
 * its base name (288 characters or more: 2, nothing sent); on success the
 * name the daemon wrote is copied back into pCfg->szFileName. */
SMGR_API BOOL SessMgr_TakeSnapshot(SMGR_SNAPSHOT_CFG* pCfg);
/** Deletes one snapshot by base name (under 256 characters, else 2). */
SMGR_API BOOL SessMgr_DeleteSnapshot(const char* szFileName);
/** Deletes every snapshot; *pnSnapshotsDeleted (may be NULL) receives the
 * daemon's count whenever a response came, whatever its result. */
SMGR_API BOOL SessMgr_DeleteAllSnapshots(ULONG* pnSnapshotsDeleted);
/** Renames a snapshot; both names under 256 characters (base names are sent), else 2. */
SMGR_API BOOL SessMgr_RenameSnapshot(const char* szOldFileName, const char* szNewFileName);
/** Reads the defaults: pDefaults->nSize at least 36 (else 2); copies the
 * smaller of the caller's and the daemon's size and stores it in nSize. */
SMGR_API BOOL SessMgr_GetSnapshotDefaults(SMGR_SNAPSHOT_DEFAULTS* pDefaults);
/** Sets the defaults: sends min(nSize, 36) bytes of pDefaults, the rest zero. */
SMGR_API BOOL SessMgr_SetSnapshotDefaults(const SMGR_SNAPSHOT_DEFAULTS* pDefaults);
/** Sets the storage: sends min(nSize, 20) bytes of pSettings, the rest zero. */
SMGR_API BOOL SessMgr_SetSnapshotAdminCfg(const SMGR_SNAPSHOT_ADMIN_CFG* pSettings);
/** Reads the storage in force: pInfo->nSize at least 300 (else 2); copies the
 * smaller of the caller's and the daemon's size and stores it in nSize. */
SMGR_API BOOL SessMgr_GetSnapshotAdminInfo(SMGR_SNAPSHOT_ADMIN_INFO* pInfo);
/** Text of a picture format ("JPEG", "PNG"; "(Invalid:%d)"). */
SMGR_API char* SessMgr_GetSnapshotFormatString(int enFormat, char* szBuffer, size_t nSize);
/** Text of a storage device ("Internal Flash", "NFS", "Custom directory"; "(Invalid:%d)"). */
SMGR_API char* SessMgr_GetSnapshotStorageDeviceString(int enStorageDevice, char* szBuffer, size_t nSize);
/** Text of a PNG palette ("RGB", "Color cube", "Lab optimized"; "(Invalid:%d)"). */
SMGR_API char* SessMgr_GetSnapshotPaletteString(int enPalette, char* szBuffer, size_t nSize);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_SNAPSHOTS_H */
