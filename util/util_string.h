/* Bounded string services: every size counts the terminator and every result
 * is terminated. Also Base64 and language-tag names. */
#ifndef SESSMGR_UTIL_STRING_H
#define SESSMGR_UTIL_STRING_H

#include "sessmgr/sm_types.h"

SMGR_EXTERN_C_BEGIN

/* Copies at most nSize-1 characters and terminates (nSize 0: writes nothing; a NULL
 * source copies as ""). Returns szDest. */
char* CopyString(char* szDest, const char* szSrc, size_t nSize);
/* Bounded formatted print, truncating. Returns the length the full text would have
 * had (vsnprintf semantics; the text fits when the result is below nSize). */
int PrintToString(char* szDest, size_t nSize, const char* szFormat, ...)
    __attribute__((format(printf, 3, 4)));
/* Appends szSrc within a buffer of nSize (truncating). Returns szDest. */
char* StringCat(char* szDest, const char* szSrc, size_t nSize);
/* Length of sz, at most nMax (0 for NULL). */
size_t StringLength(const char* sz, size_t nMax);
/* ASCII case conversion in place. Return sz. */
char* StringToLowerCase(char* sz);
char* StringToUpperCase(char* sz);
/* TRUE when sz ends with szEnd (every string ends with ""). */
BOOL IsStringTerminatedBy(const char* sz, const char* szEnd);
/* Pointer into szPath after its last '/', the whole string when there is none. */
const char* GetBaseName(const char* szPath);
/* Standard alphabet (RFC 4648) with '=' padding, terminated. *pnEncodedLength (may be
 * NULL) receives the encoded length without terminator, also when the destination is
 * too small; then the result is FALSE and the destination holds "" (when nDestSize > 0). */
BOOL Base64Encode(const BYTE* pbSrc, size_t nSrcSize, char* szDest, size_t nDestSize,
                  size_t* pnEncodedLength);
/* Display name of an ISO 639-2 language tag ("eng" -> "English", case-insensitive):
 * a constant string, or NULL when the tag is unknown. */
const char* GetLanguageFromTag(const char* szTag);

SMGR_EXTERN_C_END

#endif /* SESSMGR_UTIL_STRING_H */
