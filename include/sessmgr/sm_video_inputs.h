/* Video inputs: the configuration and information records of an input, its
 * interface types, states and capability bits, and the operations that open,
 * configure, query and list inputs. C99 and C++ clean; records are
 * little-endian and packed to 4 bytes. */
#ifndef SESSMGR_SM_VIDEO_INPUTS_H
#define SESSMGR_SM_VIDEO_INPUTS_H

#include "sessmgr/sm_objects.h"
#include "sessmgr/sm_types.h"

/* Interface types (enInterfaceType, enCfgInterfaceType). */
#define SMGR_VIF_TYPE_AUTO_DETECT (-1)
#define SMGR_VIF_TYPE_UNKNOWN 0
#define SMGR_VIF_TYPE_SDI 1
#define SMGR_VIF_TYPE_COMPOSITE 2

/* Input states (enState). SQD and 2SI carry a UHD picture over four links. */
#define SMGR_VIDIN_STATE_INACTIVE 0
#define SMGR_VIDIN_STATE_ACTIVE 1
#define SMGR_VIDIN_STATE_SQD_FAILED 2
#define SMGR_VIDIN_STATE_SQD_ACTIVE 3
#define SMGR_VIDIN_STATE_2SI_FAILED 4
#define SMGR_VIDIN_STATE_2SI_ACTIVE 5

/* Capability bits (dwCapabilities). */
#define SMGR_VIDIN_CAPABILITY_SDI 0x2u
#define SMGR_VIDIN_CAPABILITY_HD 0x4u
#define SMGR_VIDIN_CAPABILITY_UHD 0x8u
#define SMGR_VIDIN_CAPABILITY_AUDIO 0x10u
#define SMGR_VIDIN_CAPABILITY_COMPOSITE 0x20u

#pragma pack(push, 4)

/* Settings of an input (24 bytes). The SetFieldsFlag bits and the colour space
 * values are agreed with the daemon; the library passes them through. */
typedef struct tagSMGR_VIDEO_INPUT_CFG {
  UINT nSize;             /* caller's record size; at least 24 */
  uint64_t SetFieldsFlag; /* fields to change */
  int32_t enInterfaceType;
  int32_t enColorSpace;
  BOOL bEnableFIRFilter;
} SMGR_VIDEO_INPUT_CFG;

/* What the daemon knows of an input (144 bytes). */
typedef struct tagSMGR_VIDEO_INPUT_INFO {
  UINT nSize;
  char szName[SMGR_OBJECT_NAME_SIZE];
  UINT nID;
  DWORD dwCapabilities; /* SMGR_VIDIN_CAPABILITY_... */
  int32_t enState;      /* SMGR_VIDIN_STATE_... */
  int32_t enCfgInterfaceType;
  int32_t enInterfaceType;
  int64_t enInputFormat; /* VIDEO_FORMAT code of the detected signal */
  uint64_t nFormatLockStateChanges;
  UINT nLastFormatLockStateChangeUPTimeInSecs;
  BOOL bSDILevelBDetected;
  UINT nNumOfAudioChannels;
  uint64_t nInputChecks;
  UINT nLastInputCheckUPTimeInSecs;
  BOOL bEnableFIRFilter;
  UINT ColorPrimaries; /* ITU-T H.273 code points */
  UINT TransferCharacteristics;
  UINT MatrixCoefficients;
} SMGR_VIDEO_INPUT_INFO;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGR_VIDEO_INPUT_CFG) == 24, vidin_cfg_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_CFG, nSize) == 0, vidin_cfg_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_CFG, SetFieldsFlag) == 4, vidin_cfg_SetFieldsFlag);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_CFG, enInterfaceType) == 12, vidin_cfg_enInterfaceType);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_CFG, enColorSpace) == 16, vidin_cfg_enColorSpace);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_CFG, bEnableFIRFilter) == 20, vidin_cfg_bEnableFIRFilter);

SMGR_STATIC_ASSERT(sizeof(SMGR_VIDEO_INPUT_INFO) == 144, vidin_info_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, nSize) == 0, vidin_info_nSize);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, szName) == 4, vidin_info_szName);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, nID) == 68, vidin_info_nID);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, dwCapabilities) == 72, vidin_info_dwCapabilities);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, enState) == 76, vidin_info_enState);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, enCfgInterfaceType) == 80, vidin_info_enCfgInterfaceType);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, enInterfaceType) == 84, vidin_info_enInterfaceType);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, enInputFormat) == 88, vidin_info_enInputFormat);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, nFormatLockStateChanges) == 96,
                   vidin_info_nFormatLockStateChanges);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, nLastFormatLockStateChangeUPTimeInSecs) == 104,
                   vidin_info_nLastFormatLockStateChangeUPTimeInSecs);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, bSDILevelBDetected) == 108, vidin_info_bSDILevelBDetected);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, nNumOfAudioChannels) == 112,
                   vidin_info_nNumOfAudioChannels);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, nInputChecks) == 116, vidin_info_nInputChecks);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, nLastInputCheckUPTimeInSecs) == 124,
                   vidin_info_nLastInputCheckUPTimeInSecs);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, bEnableFIRFilter) == 128, vidin_info_bEnableFIRFilter);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, ColorPrimaries) == 132, vidin_info_ColorPrimaries);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, TransferCharacteristics) == 136,
                   vidin_info_TransferCharacteristics);
SMGR_STATIC_ASSERT(offsetof(SMGR_VIDEO_INPUT_INFO, MatrixCoefficients) == 140, vidin_info_MatrixCoefficients);

SMGR_EXTERN_C_BEGIN

/** Opens the input named szInputName (1 to 63 characters) into *phInput. An
 * input already open in this process returns its handle with the count
 * raised and sends nothing. Local failures (also when the library is not
 * initialised) give last error 2; a send failure gives 10. */
SMGR_API BOOL SessMgr_OpenVideoInput(const char* szInputName, HVIDIN* phInput);
/** Drops one reference of *phInput; the record is freed at the last one.
 * Local only: nothing is sent and *phInput is left as it was. */
SMGR_API BOOL SessMgr_CloseVideoInput(HVIDIN* phInput);
/** Sends min(pCfg->nSize, 24) bytes of pCfg (the rest as zeros); the daemon
 * changes the fields whose SetFieldsFlag bits are set. pCfg->nSize below 24
 * gives last error 2 and sends nothing. */
SMGR_API BOOL SessMgr_ConfigureVideoInput(HVIDIN hInput, const SMGR_VIDEO_INPUT_CFG* pCfg);
/** Reads the input's information: pInfo->nSize must be at least 144; copies
 * min(pInfo->nSize, 144) bytes and writes that number back. A daemon or send
 * failure leaves the last error alone. */
SMGR_API BOOL SessMgr_GetVideoInputInfo(HVIDIN hInput, SMGR_VIDEO_INPUT_INFO* pInfo);
/** Resets the input's counters. A daemon or send failure leaves the last error alone. */
SMGR_API BOOL SessMgr_ResetVideoInputStats(HVIDIN hInput);
/** One page of input information records (144 bytes each) from nOffset: asks
 * for nBuffSize / 144 records; every output pointer may be NULL. The last
 * error is cleared first; a daemon failure sets it and errno to the result. */
SMGR_API BOOL SessMgr_EnumerateVideoInputs(void* pvBuffer, size_t nBuffSize, UINT nOffset,
                                           UINT* pnTotalInputCount, UINT* pnReturnedInputs,
                                           size_t* pnElementSize);
/** Copies the name of the input at nOffset (limit nSize); no input there
 * gives last error 81 (SMGR_ERROR_NO_MATCHING_INPUT_FOUND). */
SMGR_API BOOL SessMgr_GetVideoInputNameAtIndex(UINT nOffset, char* szBuffer, size_t nSize);
/** Text of an interface type; 1 reads "ST-2110" on an ST 2110 system, "SDI" otherwise. */
SMGR_API char* SessMgr_GetVideoInterfaceTypeString(int enInterfaceType, char* szBuffer, size_t nSize);
/** Text of an input state ("INACTIVE", "ACTIVE", "SQD FAILED", ...). */
SMGR_API char* SessMgr_GetVideoInputStateString(int enState, char* szBuffer, size_t nSize);

/** Frees every video input handle still open (library shutdown). */
SMGR_API void CleanupSessMgrVideoInputs(void);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_VIDEO_INPUTS_H */
