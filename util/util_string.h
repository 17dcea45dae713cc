/* Bounded string services: every size counts the terminator and every result
 * is terminated. Also Base64 and language-tag names. */
#ifndef SESSMGR_UTIL_STRING_H
#define SESSMGR_UTIL_STRING_H

#include "sessmgr/sm_types.h"

SMGR_EXTERN_C_BEGIN

char* CopyString(char* szDest, const char* szSrc, size_t nSize);
/* Returns the length the full text would have had (vsnprintf semantics). */
int PrintToString(char* szDest, size_t nSize, const char* szFormat, ...) __attribute__((format(printf, 3, 4)));
char* StringCat(char* szDest, const char* szSrc, size_t nSize);
size_t StringLength(const char* sz, size_t nMax);
char* StringToLowerCase(char* sz);
char* StringToUpperCase(char* sz);
BOOL IsStringTerminatedBy(const char* sz, const char* szEnd);
const char* GetBaseName(const char* szPath);
/* Standard alphabet with '=' padding; the output is terminated when room allows.
 * FALSE when the destination is too small (nothing useful is written then). */
BOOL Base64Encode(const BYTE* pbSrc, size_t nSrcSize, char* szDest, size_t nDestSize, size_t* pnEncodedLength);
/* Display name of an ISO 639 language code ("eng" -> "English"); the code itself when unknown. */
char* GetLanguageFromTag(const char* szTag, char* szBuffer, size_t nSize);

SMGR_EXTERN_C_END

#endif /* SESSMGR_UTIL_STRING_H */
