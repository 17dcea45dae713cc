// INTERIM stand-ins for the few companion services the result and last-error
// code needs, so the library links before the real services land. Every
// definition is weak: the real ones win. Delete this file once util/ is merged.
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

#include "util_dbg.h"
#include "util_list.h"
#include "util_string.h"

#define INTERIM_WEAK __attribute__((weak))

extern "C" {

INTERIM_WEAK char* CopyString(char* szDest, const char* szSrc, size_t nSize) {
  if (szDest == nullptr || nSize == 0) return szDest;
  size_t n = 0;
  if (szSrc != nullptr)
    while (n + 1 < nSize && szSrc[n] != '\0') ++n;
  if (szSrc != nullptr) memcpy(szDest, szSrc, n);
  szDest[n] = '\0';
  return szDest;
}

INTERIM_WEAK int PrintToString(char* szDest, size_t nSize, const char* szFormat, ...) {
  va_list args;
  va_start(args, szFormat);
  const int n = vsnprintf(szDest, nSize, szFormat, args);
  va_end(args);
  return n;
}

INTERIM_WEAK void FastInitNode(FNODE_D* pNode) {
  pNode->pNext = pNode->pPrev = nullptr;
  pNode->pList = nullptr;
  pNode->nReference = 0;
  pNode->pvObject = nullptr;
}

INTERIM_WEAK void FastLinkD(FNODE_D* pNode, void* pvObject, FLIST_D* pList) {
  pNode->pvObject = pvObject;
  pNode->pList = pList;
  pNode->pNext = nullptr;
  pNode->pPrev = pList->pTail;
  if (pList->pTail != nullptr)
    pList->pTail->pNext = pNode;
  else
    pList->pHead = pNode;
  pList->pTail = pNode;
  ++pList->nNumOfEntries;
}

INTERIM_WEAK void FastUnlinkD(FNODE_D* pNode) {
  FLIST_D* pList = pNode->pList;
  if (pList == nullptr) return;
  if (pNode->pPrev != nullptr)
    pNode->pPrev->pNext = pNode->pNext;
  else
    pList->pHead = pNode->pNext;
  if (pNode->pNext != nullptr)
    pNode->pNext->pPrev = pNode->pPrev;
  else
    pList->pTail = pNode->pPrev;
  --pList->nNumOfEntries;
  pNode->pNext = pNode->pPrev = nullptr;
  pNode->pList = nullptr;
}

INTERIM_WEAK void _DoDbgPrintEx(HDBG, int nLevel, const char* szFunction, const char*, int,
                                const char* szFormat, ...) {
  va_list args;
  va_start(args, szFormat);
  fprintf(stderr, "SESSMGR[%d] %s: ", nLevel, szFunction);
  vfprintf(stderr, szFormat, args);
  va_end(args);
}

INTERIM_WEAK void _DoAssert(const char* szExpression, const char* szFunction, const char* szFile, int nLine) {
  fprintf(stderr, "Assertion \"%s\" failed in %s (%s:%d)\n", szExpression, szFunction, szFile, nLine);
}

}  // extern "C"

namespace smgr::util {
INTERIM_WEAK void SetAssertAbortEnabled(bool) {}
}  // namespace smgr::util
