// Bounded string services, Base64 and language-tag names. Every size counts the
// terminator; nothing is ever written at or past szDest[nSize], and a size of 0
// writes nothing at all.
#include "util_string.h"

#include <strings.h>

#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstring>

extern "C" {

char* CopyString(char* szDest, const char* szSrc, size_t nSize) {
  if (szDest == nullptr || nSize == 0) return szDest;
  size_t nLength = szSrc != nullptr ? strnlen(szSrc, nSize - 1) : 0;
  // memmove: callers sometimes shift a string within its own buffer.
  if (nLength > 0) memmove(szDest, szSrc, nLength);
  szDest[nLength] = '\0';
  return szDest;
}

int PrintToString(char* szDest, size_t nSize, const char* szFormat, ...) {
  if (szFormat == nullptr) {
    if (szDest != nullptr && nSize > 0) szDest[0] = '\0';
    return 0;
  }
  if (szDest == nullptr) nSize = 0;
  va_list args;
  va_start(args, szFormat);
  int nLength = vsnprintf(szDest, nSize, szFormat, args);
  va_end(args);
  if (nLength < 0 && nSize > 0) szDest[0] = '\0';
  return nLength;
}

char* StringCat(char* szDest, const char* szSrc, size_t nSize) {
  if (szDest == nullptr || nSize == 0) return szDest;
  size_t nUsed = strnlen(szDest, nSize);
  if (nUsed == nSize) {
    // Not terminated within the buffer: terminate it and append nothing.
    szDest[nSize - 1] = '\0';
    return szDest;
  }
  CopyString(szDest + nUsed, szSrc, nSize - nUsed);
  return szDest;
}

size_t StringLength(const char* sz, size_t nMax) { return sz != nullptr ? strnlen(sz, nMax) : 0; }

char* StringToLowerCase(char* sz) {
  if (sz == nullptr) return sz;
  for (char* p = sz; *p != '\0'; ++p) *p = static_cast<char>(tolower(static_cast<unsigned char>(*p)));
  return sz;
}

char* StringToUpperCase(char* sz) {
  if (sz == nullptr) return sz;
  for (char* p = sz; *p != '\0'; ++p) *p = static_cast<char>(toupper(static_cast<unsigned char>(*p)));
  return sz;
}

BOOL IsStringTerminatedBy(const char* sz, const char* szEnd) {
  if (sz == nullptr || szEnd == nullptr) return FALSE;
  size_t nLength = strlen(sz);
  size_t nEndLength = strlen(szEnd);
  if (nEndLength > nLength) return FALSE;
  return memcmp(sz + nLength - nEndLength, szEnd, nEndLength) == 0 ? TRUE : FALSE;
}

const char* GetBaseName(const char* szPath) {
  if (szPath == nullptr) return nullptr;
  const char* pSlash = strrchr(szPath, '/');
  return pSlash != nullptr ? pSlash + 1 : szPath;
}

BOOL Base64Encode(const BYTE* pbSrc, size_t nSrcSize, char* szDest, size_t nDestSize,
                  size_t* pnEncodedLength) {
  static constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  if (pbSrc == nullptr && nSrcSize > 0) return FALSE;
  if (nSrcSize > (SIZE_MAX / 4) * 3 - 3) return FALSE;
  size_t nNeeded = (nSrcSize + 2) / 3 * 4;
  if (pnEncodedLength != nullptr) *pnEncodedLength = nNeeded;
  if (szDest == nullptr || nDestSize < nNeeded + 1) {
    if (szDest != nullptr && nDestSize > 0) szDest[0] = '\0';
    return FALSE;
  }
  char* pOut = szDest;
  size_t i = 0;
  for (; i + 3 <= nSrcSize; i += 3) {
    uint32_t nTriple = (uint32_t{pbSrc[i]} << 16) | (uint32_t{pbSrc[i + 1]} << 8) | pbSrc[i + 2];
    *pOut++ = kAlphabet[(nTriple >> 18) & 0x3f];
    *pOut++ = kAlphabet[(nTriple >> 12) & 0x3f];
    *pOut++ = kAlphabet[(nTriple >> 6) & 0x3f];
    *pOut++ = kAlphabet[nTriple & 0x3f];
  }
  size_t nRest = nSrcSize - i;
  if (nRest > 0) {
    uint32_t nTriple = uint32_t{pbSrc[i]} << 16;
    if (nRest == 2) nTriple |= uint32_t{pbSrc[i + 1]} << 8;
    *pOut++ = kAlphabet[(nTriple >> 18) & 0x3f];
    *pOut++ = kAlphabet[(nTriple >> 12) & 0x3f];
    *pOut++ = nRest == 2 ? kAlphabet[(nTriple >> 6) & 0x3f] : '=';
    *pOut++ = '=';
  }
  *pOut = '\0';
  return TRUE;
}

const char* GetLanguageFromTag(const char* szTag) {
  // ISO 639-2 codes, bibliographic and terminologic forms where they differ.
  static constexpr struct {
    const char* szTag;
    const char* szName;
  } kLanguages[] = {
      {"eng", "English"}, {"fre", "French"},  {"fra", "French"},  {"ger", "German"},
      {"deu", "German"},  {"spa", "Spanish"}, {"ita", "Italian"}, {"por", "Portuguese"},
      {"rus", "Russian"}, {"chi", "Chinese"}, {"zho", "Chinese"}, {"jpn", "Japanese"},
      {"kor", "Korean"},  {"ara", "Arabic"},  {"dut", "Dutch"},   {"nld", "Dutch"},
  };
  if (szTag == nullptr) return nullptr;
  for (const auto& language : kLanguages) {
    if (strcasecmp(language.szTag, szTag) == 0) return language.szName;
  }
  return nullptr;
}

}  // extern "C"
