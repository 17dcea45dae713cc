/* Regions of interest: rectangles of a video encoder's picture that the
 * encoder treats with their own priority. Configuration and information
 * records, positioning and border values, and the region operations.
 * C99 and C++ clean; records are little-endian and packed to 4 bytes. */
#ifndef SESSMGR_SM_ROI_H
#define SESSMGR_SM_ROI_H

#include "sessmgr/sm_objects.h"
#include "sessmgr/sm_types.h"

/* Where a region sits (enPositioning): anchored to a corner, centred, or at Origin. */
#define SMGR_ROI_POS_BOTTOM_RIGHT 0
#define SMGR_ROI_POS_TOP_RIGHT 1
#define SMGR_ROI_POS_BOTTOM_LEFT 2
#define SMGR_ROI_POS_TOP_LEFT 3
#define SMGR_ROI_POS_CENTERED 4
#define SMGR_ROI_POS_ABSOLUTE 5

/* Visible border (enBorderType). */
#define SMGR_ROI_BORDER_TYPE_NONE 0
#define SMGR_ROI_BORDER_TYPE_DASHED_BOX 1

/* SetFieldsFlag bits of a configure: the daemon changes only these fields.
 * 0x1 (index) and 0x2 (name) are agreed with the daemon. */
#define SMGR_ROI_SET_INDEX 0x1ull
#define SMGR_ROI_SET_NAME 0x2ull
#define SMGR_ROI_SET_ORIGIN_X 0x4ull
#define SMGR_ROI_SET_ORIGIN_Y 0x8ull
#define SMGR_ROI_SET_WIDTH 0x10ull
#define SMGR_ROI_SET_HEIGHT 0x20ull
#define SMGR_ROI_SET_ENCODER_ID 0x40ull
#define SMGR_ROI_SET_BORDER_TYPE 0x80ull
#define SMGR_ROI_SET_ENABLE 0x100ull
#define SMGR_ROI_SET_PRIORITY 0x200ull
#define SMGR_ROI_SET_POSITIONING 0x400ull

#pragma pack(push, 4)

/* A pixel position (8 bytes). */
typedef struct tagSMGR_POINT {
  UINT X;
  UINT Y;
} SMGR_POINT;

/* A region as the caller asks for it (116 bytes; nSize exactly 116 on create). */
typedef struct tagSMGR_ROI_CFG {
  UINT nSize;
  uint64_t SetFieldsFlag;             /* configure: SMGR_ROI_SET_... */
  char szName[SMGR_OBJECT_NAME_SIZE]; /* empty: the daemon names it */
  int32_t nIndex;                     /* region ID; 0 or less: the daemon chooses */
  int32_t nEncoderID;                 /* video encoder the region belongs to */
  SMGR_POINT Origin;                  /* top-left corner with absolute positioning */
  UINT nWidth;
  UINT nHeight;
  int32_t enBorderType; /* SMGR_ROI_BORDER_TYPE_... */
  int32_t nPriority;
  BOOL bEnableRegion;
  int32_t enPositioning; /* SMGR_ROI_POS_... */
} SMGR_ROI_CFG;

/* A region as the daemon reports it (116 bytes). enType and enMovement are the daemon's. */
typedef struct tagSMGR_ROI_INFO {
  UINT nSize;
  char szName[SMGR_OBJECT_NAME_SIZE];
  int32_t nIndex;
  int32_t enType;
  int32_t enMovement;
  int32_t nEncoderID;
  SMGR_POINT Origin;
  UINT nWidth;
  UINT nHeight;
  int32_t enBorderType;
  int32_t nPriority;
  BOOL bEnableRegion;
  int32_t enPositioning;
} SMGR_ROI_INFO;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGR_POINT) == 8, point_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_POINT, X) == 0, point_X);
SMGR_STATIC_ASSERT(offsetof(SMGR_POINT, Y) == 4, point_Y);

SMGR_STATIC_ASSERT(sizeof(SMGR_ROI_CFG) == 116, roi_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_CFG, nSize) == 0, roi_cfg_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_CFG, SetFieldsFlag) == 4, roi_cfg_SetFieldsFlag);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_CFG, szName) == 12, roi_cfg_szName);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_CFG, nIndex) == 76, roi_cfg_nIndex);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_CFG, nEncoderID) == 80, roi_cfg_nEncoderID);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_CFG, Origin) == 84, roi_cfg_Origin);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_CFG, nWidth) == 92, roi_cfg_nWidth);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_CFG, nHeight) == 96, roi_cfg_nHeight);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_CFG, enBorderType) == 100, roi_cfg_enBorderType);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_CFG, nPriority) == 104, roi_cfg_nPriority);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_CFG, bEnableRegion) == 108, roi_cfg_bEnableRegion);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_CFG, enPositioning) == 112, roi_cfg_enPositioning);

SMGR_STATIC_ASSERT(sizeof(SMGR_ROI_INFO) == 116, roi_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_INFO, nSize) == 0, roi_info_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_INFO, szName) == 4, roi_info_szName);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_INFO, nIndex) == 68, roi_info_nIndex);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_INFO, enType) == 72, roi_info_enType);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_INFO, enMovement) == 76, roi_info_enMovement);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_INFO, nEncoderID) == 80, roi_info_nEncoderID);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_INFO, Origin) == 84, roi_info_Origin);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_INFO, nWidth) == 92, roi_info_nWidth);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_INFO, nHeight) == 96, roi_info_nHeight);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_INFO, enBorderType) == 100, roi_info_enBorderType);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_INFO, nPriority) == 104, roi_info_nPriority);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_INFO, bEnableRegion) == 108, roi_info_bEnableRegion);
SMGR_STATIC_ASSERT(offsetof(SMGR_ROI_INFO, enPositioning) == 112, roi_info_enPositioning);

SMGR_EXTERN_C_BEGIN

/** Creates a region from pCfg (pCfg->nSize exactly 116, else 2) and returns a
 * new handle holding the daemon's ID and name. A handle of this process with
 * the same ID (nIndex > 0) or the same name (case-sensitive) gives 7 and
 * sends nothing. */
SMGR_API BOOL SessMgr_CreateROI(const SMGR_ROI_CFG* pCfg, HROI* phRegion);
/** Deletes the region named by ID or name. Other selector kinds: FALSE, last error kept. */
SMGR_API BOOL SessMgr_DeleteROI(const SMGR_OBJECT_SELECTOR* pSelector);
/** Writes the region ID a handle remembers. No message, no lock. */
SMGR_API BOOL SessMgr_GetROIIndex(HROI hROI, UINT* pID);
/** Clears *phRegion, drops one reference of the handle and tells the daemon
 * the region is closed (the region itself stays). A bad handle gives 2. */
SMGR_API BOOL SessMgr_CloseROI(HROI* phRegion);
/** Reads a region (by ID, name or handle): copies min(pInfo->nSize, the
 * daemon's record size) bytes and stores that count in pInfo->nSize. */
SMGR_API BOOL SessMgr_GetROIInfo(const SMGR_OBJECT_SELECTOR* pSelector, SMGR_ROI_INFO* pInfo);
/** One page of region information records (116 bytes each) from nOffset:
 * asks for nBuffSize / 116 regions; every output pointer may be NULL. */
SMGR_API BOOL SessMgr_EnumerateROIs(void* pvBuffer, size_t nBuffSize, UINT nOffset, UINT* pnTotalRegionCount,
                                    UINT* pnReturnedRegions, size_t* pnElementSize);
/** Changes the flagged fields of the region named by ID or name; the whole
 * 116-byte record is sent as given. */
SMGR_API BOOL SessMgr_ConfigureROI(const SMGR_OBJECT_SELECTOR* pSelector, const SMGR_ROI_CFG* pCfg);
/** Turns a region on (by ID, name or handle). */
SMGR_API BOOL SessMgr_EnableROI(const SMGR_OBJECT_SELECTOR* pSelector);
/** Turns a region off (by ID, name or handle). */
SMGR_API BOOL SessMgr_DisableROI(const SMGR_OBJECT_SELECTOR* pSelector);
/** Text of a positioning ("Bottom-Right", ..., "Absolute"; "(Invalid:%d)"). */
SMGR_API char* SessMgr_GetROIPositioningString(int enPositioning, char* szBuffer, size_t nSize);
/** Text of a border type ("(None)", "Box"; "(Invalid:%d)"). */
SMGR_API char* SessMgr_GetROIBorderTypeString(int enEdgeType, char* szBuffer, size_t nSize);
/** Frees every region handle still held (library shutdown). */
SMGR_API void CleanupSessMgrROIs(void);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_ROI_H */
