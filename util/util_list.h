/* Intrusive doubly linked lists. No locking: callers serialise. */
#ifndef SESSMGR_UTIL_LIST_H
#define SESSMGR_UTIL_LIST_H

#include "sessmgr/sm_types.h"

SMGR_EXTERN_C_BEGIN

struct tagFLIST_D;

typedef struct tagFNODE_D {
  struct tagFNODE_D* pNext;
  struct tagFNODE_D* pPrev;
  struct tagFLIST_D* pList; /* NULL while unlinked */
  int nReference;
  void* pvObject;
} FNODE_D;

typedef struct tagFLIST_D {
  DWORD dwSignature; /* FLIST_SIGNATURE */
  uint64_t nNumOfEntries;
  int nDebugLevel;
  int nReference;
  FNODE_D* pHead;
  FNODE_D* pTail;
} FLIST_D;

/* "FLST": the bytes F, L, S, T in memory order. */
#define FLIST_SIGNATURE ((DWORD)0x54534C46u)
#define FLIST_STATIC_INITIALIZER \
  { FLIST_SIGNATURE, 0, 0, 0, NULL, NULL }

/* Clears a node (not in any list). */
void FastInitNode(FNODE_D* pNode);
/* Appends the node at the tail of pList, recording pvObject and the list (a node
 * still in a list is unlinked from it first). A list head without the "FLST"
 * signature is refused with an assertion, except an all-zero head, which is taken
 * as an empty list and signed. */
void FastLinkD(FNODE_D* pNode, void* pvObject, FLIST_D* pList);
/* Removes the node from whatever list it is in; harmless for an unlinked node. */
void FastUnlinkD(FNODE_D* pNode);
/* Removes and returns the head node; NULL when the list is empty or not a list. */
FNODE_D* FastGetUnlinkFirstD(FLIST_D* pList);

SMGR_EXTERN_C_END

#endif /* SESSMGR_UTIL_LIST_H */
