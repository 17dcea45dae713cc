// Intrusive doubly linked lists (FNODE_D nodes in FLIST_D heads). No locking:
// callers serialise. A node remembers its list, so unlinking needs no list argument.
#include "util_list.h"

#include "util_dbg.h"

namespace {

// A zeroed head is accepted as an empty list and signed on first use; anything
// else without the signature is not a list.
bool ensureList(FLIST_D* pList) {
  if (pList == nullptr) return false;
  if (pList->dwSignature == FLIST_SIGNATURE) return true;
  if (pList->dwSignature == 0 && pList->pHead == nullptr && pList->pTail == nullptr &&
      pList->nNumOfEntries == 0) {
    pList->dwSignature = FLIST_SIGNATURE;
    return true;
  }
  _DoAssert("pList->dwSignature == FLIST_SIGNATURE", __func__, __FILE__, __LINE__);
  return false;
}

}  // namespace

extern "C" {

void FastInitNode(FNODE_D* pNode) {
  if (pNode == nullptr) return;
  *pNode = FNODE_D{};
}

void FastLinkD(FNODE_D* pNode, void* pvObject, FLIST_D* pList) {
  if (pNode == nullptr || !ensureList(pList)) return;
  if (pNode->pList != nullptr) FastUnlinkD(pNode);  // never in two lists at once
  pNode->pvObject = pvObject;
  pNode->pList = pList;
  pNode->pNext = nullptr;
  pNode->pPrev = pList->pTail;
  pNode->nReference = 1;
  if (pList->pTail != nullptr) {
    pList->pTail->pNext = pNode;
  } else {
    pList->pHead = pNode;
  }
  pList->pTail = pNode;
  ++pList->nNumOfEntries;
}

void FastUnlinkD(FNODE_D* pNode) {
  if (pNode == nullptr || pNode->pList == nullptr) return;
  FLIST_D* pList = pNode->pList;
  if (pNode->pPrev != nullptr) {
    pNode->pPrev->pNext = pNode->pNext;
  } else {
    pList->pHead = pNode->pNext;
  }
  if (pNode->pNext != nullptr) {
    pNode->pNext->pPrev = pNode->pPrev;
  } else {
    pList->pTail = pNode->pPrev;
  }
  if (pList->nNumOfEntries > 0) --pList->nNumOfEntries;
  pNode->pNext = nullptr;
  pNode->pPrev = nullptr;
  pNode->pList = nullptr;
  pNode->nReference = 0;
}

FNODE_D* FastGetUnlinkFirstD(FLIST_D* pList) {
  if (!ensureList(pList) || pList->pHead == nullptr) return nullptr;
  FNODE_D* pNode = pList->pHead;
  FastUnlinkD(pNode);
  return pNode;
}

}  // extern "C"
