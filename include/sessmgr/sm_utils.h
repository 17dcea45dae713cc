/* Caller-visible helpers of the client library: completion of file names that
 * callers pass to the file-based operations, and the text form of an object
 * selector used in traces. C99 and C++ clean. */
#ifndef SESSMGR_SM_UTILS_H
#define SESSMGR_SM_UTILS_H

#include "sessmgr/sm_types.h"

/* Longest file name the operations accept, terminator included. */
#ifndef SMGR_MAX_API_FNAME_SIZE
#define SMGR_MAX_API_FNAME_SIZE 288
#endif

SMGR_EXTERN_C_BEGIN

struct tagSMGR_OBJECT_SELECTOR;

/** Completes a caller's file name in place.
 *
 * An empty name is left as it is (TRUE). Otherwise szStdExtension is appended when
 * the name does not end with it, and a name without a directory (or with ".") is put
 * into szStdDirectory (which ends with "/"); a name with a directory keeps it.
 * FALSE, with szInOutFName unchanged, when the name has SMGR_MAX_API_FNAME_SIZE
 * characters or more, or the completed name does not fit in SMGR_MAX_API_FNAME_SIZE
 * or in nSize. */
SMGR_API BOOL FixUpInputFileName(char* szInOutFName, int nSize, const char* szStdDirectory,
                                 const char* szStdExtension);

/** Reduces a caller's file name to a base name in the standard folder.
 *
 * nSize must be SMGR_MAX_API_FNAME_SIZE. An empty name is left as it is (TRUE). A name
 * whose directory part (other than ".") plus "/" is not szStdDirectory fails with
 * *piErrCode = 209 (invalid path); a name, or the name with szStdExtension appended,
 * of SMGR_MAX_API_FNAME_SIZE characters or more fails with *piErrCode = 210 (too long).
 * piErrCode may be NULL and is not touched on success. On success szInOutFName holds
 * the base name with the extension. */
SMGR_API BOOL FixUpInputFileNameNoPath(char* szInOutFName, int nSize, const char* szStdDirectory,
                                       const char* szStdExtension, int* piErrCode);

/** Text of an object selector for traces ("By ID: 3", "By NAME: \"cam\"",
 * "By HANDLE: 0x...", "Invalid type 7"), truncated to nSize. Returns szBuffer. */
SMGR_API char* GetObjectSelectorInfoText(const struct tagSMGR_OBJECT_SELECTOR* pSelector, char* szBuffer,
                                         size_t nSize);

SMGR_EXTERN_C_END

#endif /* SESSMGR_SM_UTILS_H */
