/* The common object model: how a caller names a daemon object (object
 * selectors), the opaque handle types that Create and Open operations return,
 * and the signature words that mark live handle records. C99 and C++ clean. */
#ifndef SESSMGR_SM_OBJECTS_H
#define SESSMGR_SM_OBJECTS_H

#include "sessmgr/sm_types.h"

/* Longest object name in characters; names travel in 64-byte fields. */
#define SMGR_MAX_OBJECT_NAME_LENGTH 63
#define SMGR_OBJECT_NAME_SIZE 64

/* How an object selector names its object (SMGR_OBJECT_SELECTOR.enType). */
#define SMGR_SELECTBY_OBJECT_ID 0
#define SMGR_SELECTBY_OBJECT_NAME 1
#define SMGR_SELECTBY_OBJECT_HANDLE 2

#pragma pack(push, 4)

/* Names one object: by daemon ID, by name (the caller's NUL-terminated string)
 * or by a handle that the family's Create or Open returned. 12 bytes; the union
 * starts at byte 4. */
typedef struct tagSMGR_OBJECT_SELECTOR {
  int32_t enType; /* SMGR_SELECTBY_... */
  union {
    int32_t ID;
    const char* szName;
    HSMGR Handle;
  } Via;
} SMGR_OBJECT_SELECTOR;

#pragma pack(pop)

SMGR_STATIC_ASSERT(sizeof(SMGR_OBJECT_SELECTOR) == 12, object_selector_size);
SMGR_STATIC_ASSERT(offsetof(SMGR_OBJECT_SELECTOR, enType) == 0, object_selector_type);
SMGR_STATIC_ASSERT(offsetof(SMGR_OBJECT_SELECTOR, Via) == 4, object_selector_via);

/* Opaque handles. The records behind them belong to the library; callers only
 * pass them back and release them with the family's Close or Delete. */
typedef struct tagSMGR_STREAM_HANDLE* HSTREAM;
typedef struct tagSMGR_SESSION_HANDLE* HSESSION;
typedef struct tagSMGR_VIDEO_ENCODER_HANDLE* HVIDENC;
typedef struct tagSMGR_AUDIO_ENCODER_HANDLE* HAUDENC;
typedef struct tagSMGR_VIDEO_INPUT_HANDLE* HVIDIN;
typedef struct tagSMGR_METADATA_HANDLE* HMETADATA;
typedef struct tagSMGR_ESSENCE_HANDLE* HESSENCE;
typedef struct tagSMGR_ROI_HANDLE* HROI;

/* First word of every live handle record: four ASCII letters in memory order. */
#define SMGR_STREAM_HANDLE_SIGNATURE ((DWORD)0x52545348u)        /* "HSTR" */
#define SMGR_SESSION_HANDLE_SIGNATURE ((DWORD)0x53455348u)       /* "HSES" */
#define SMGR_VIDEO_ENCODER_HANDLE_SIGNATURE ((DWORD)0x45445648u) /* "HVDE" */
#define SMGR_AUDIO_ENCODER_HANDLE_SIGNATURE ((DWORD)0x45554148u) /* "HAUE" */
#define SMGR_VIDEO_INPUT_HANDLE_SIGNATURE ((DWORD)0x4E495648u)   /* "HVIN" */
#define SMGR_METADATA_HANDLE_SIGNATURE ((DWORD)0x54454D48u)      /* "HMET" */
#define SMGR_ESSENCE_HANDLE_SIGNATURE ((DWORD)0x53534548u)       /* "HESS" */
#define SMGR_ROI_HANDLE_SIGNATURE ((DWORD)0x494F5248u)           /* "HROI" */

#endif /* SESSMGR_SM_OBJECTS_H */
