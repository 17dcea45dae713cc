// The one handle-family mechanism: per-process tables of library-owned handle
// records (signature word, reference count, list node, object ID, name) for
// the families that hand out handles. Each family instantiates HandleFamily
// with a traits struct; it never copies this code. Callers hold the API mutex.
#pragma once

#include <cstdlib>
#include <cstring>

#include "lib_trace.h"
#include "sessmgr_api.h"
#include "util_list.h"
#include "util_string.h"

namespace smgr {

// A family's traits give the record type, its signature, the accessors of the
// ID and name members, and the exact texts the family's traces and
// assertions show:
//   using Record = SMGR_STREAM_HANDLE;
//   static constexpr DWORD kSignature = SMGR_STREAM_HANDLE_SIGNATURE;
//   static constexpr const char* kFamilyWord = "stream";           // "%d stream handles were released.\n"
//   static constexpr const char* kNullAssert = "hStream != NULL";
//   static constexpr const char* kSignatureAssert = "hStream->dwSignature == SMGR_STREAM_HANDLE_SIGNATURE";
//   static constexpr const char* kRefCountAssert = "pHandle->nRefCount >= 1";
//   static constexpr const char* kAllocName, kFreeName, kIsValidName, kLocateBySelectorName,
//                                kLocateByConfigName, kCleanupName;  // the functions traces name
//   static int& Id(Record&);
//   static char* Name(Record&);  // SMGR_OBJECT_NAME_SIZE bytes
// The record has the members dwSignature, DNode and nRefCount.
template <typename Traits>
class HandleFamily {
 public:
  using Record = typename Traits::Record;

  // A fresh record (count 1, not linked) with the ID and the name (cut to 63
  // characters; NULL leaves it empty). FALSE and *ppHandle = NULL when the heap is out.
  static bool Alloc(Record** ppHandle, int nID, const char* szName) {
    auto* pHandle = static_cast<Record*>(std::calloc(1, sizeof(Record)));
    *ppHandle = pHandle;
    if (pHandle == nullptr) {
      SMGR_TRACE_AS(Traits::kAllocName, 2, "Failed to allocate %s handle.\n", Traits::kFamilyWord);
      return false;
    }
    pHandle->dwSignature = Traits::kSignature;
    pHandle->nRefCount = 1;
    Traits::Id(*pHandle) = nID;
    if (szName != nullptr) CopyString(Traits::Name(*pHandle), szName, SMGR_OBJECT_NAME_SIZE);
    FastInitNode(&pHandle->DNode);
    return true;
  }

  // Drops one reference; at 0 the record is unlinked (when bUnlink) and freed.
  static void Free(Record* pHandle, bool bUnlink) {
    if (pHandle == nullptr) return;
    if (pHandle->nRefCount < 1) _DoAssert(Traits::kRefCountAssert, Traits::kFreeName, __FILE__, __LINE__);
    if (--pHandle->nRefCount > 0) return;
    if (bUnlink) FastUnlinkD(&pHandle->DNode);
    Destroy(pHandle);
  }

  // Valid means non-NULL and carrying the family signature; there is no list search.
  static bool IsValid(const void* hHandle, Record** ppHandle) {
    if (hHandle == nullptr) {
      _DoAssert(Traits::kNullAssert, Traits::kIsValidName, __FILE__, __LINE__);
      return false;
    }
    DWORD dwSignature;
    std::memcpy(&dwSignature, hHandle, sizeof(dwSignature));
    if (dwSignature != Traits::kSignature) {
      _DoAssert(Traits::kSignatureAssert, Traits::kIsValidName, __FILE__, __LINE__);
      return false;
    }
    if (ppHandle != nullptr) *ppHandle = static_cast<Record*>(const_cast<void*>(hHandle));
    return true;
  }

  // The handle's remembered ID, for selector translation.
  static bool ResolveId(HSMGR hHandle, int* pID) {
    Record* pHandle = nullptr;
    if (!IsValid(hHandle, &pHandle)) return false;
    *pID = Traits::Id(*pHandle);
    return true;
  }

  // First linked record that a by-ID or by-name selector names; a by-handle
  // selector or any other kind matches nothing.
  static Record* LocateBySelector(const SMGR_OBJECT_SELECTOR* pSelector) {
    for (FNODE_D* pNode = List().pHead; pSelector != nullptr && pNode != nullptr; pNode = pNode->pNext) {
      Record& record = *static_cast<Record*>(pNode->pvObject);
      if (pSelector->enType == SMGR_SELECTBY_OBJECT_ID && Traits::Id(record) == pSelector->Via.ID) {
        SMGR_TRACE_AS(Traits::kLocateBySelectorName, 7, "Found handle with same ID.\n");
        return &record;
      }
      if (pSelector->enType == SMGR_SELECTBY_OBJECT_NAME && pSelector->Via.szName != nullptr &&
          std::strcmp(Traits::Name(record), pSelector->Via.szName) == 0) {
        SMGR_TRACE_AS(Traits::kLocateBySelectorName, 7, "Found handle with same name.\n");
        return &record;
      }
    }
    SMGR_TRACE_AS(Traits::kLocateBySelectorName, 7, "No handle found matching selector.\n");
    return nullptr;
  }

  // Create's duplicate check: a linked record with the requested ID (when
  // nIndex > 0) or the same non-empty name. A match sets last error 7 for
  // either clash (a name clash too is reported with the ID code).
  static Record* LocateByConfig(int nIndex, const char* szName) {
    const bool bHasName = szName != nullptr && szName[0] != '\0';
    for (FNODE_D* pNode = List().pHead; pNode != nullptr; pNode = pNode->pNext) {
      Record& record = *static_cast<Record*>(pNode->pvObject);
      const char* szFound = nullptr;
      if (nIndex > 0 && nIndex == Traits::Id(record))
        szFound = "Found handle with same ID.\n";
      else if (bHasName && std::strncmp(szName, Traits::Name(record), SMGR_OBJECT_NAME_SIZE) == 0)
        szFound = "Found handle with same name.\n";
      if (szFound != nullptr) {
        SMGR_TRACE_AS(Traits::kLocateByConfigName, 7, "%s", szFound);
        SessMgr_SetLastError(SMGR_ERROR_ID_IN_USE);
        return &record;
      }
    }
    SMGR_TRACE_AS(Traits::kLocateByConfigName, 7, "No handle found matching configuration.\n");
    return nullptr;
  }

  // Create's duplicate check for a family whose records carry a whole
  // configuration and whose own rule says when two describe one object:
  // the first linked record for which bIdentical(record) holds sets last
  // error 7, like LocateByConfig.
  template <typename Predicate>
  static Record* LocateByIdentity(Predicate bIdentical) {
    for (FNODE_D* pNode = List().pHead; pNode != nullptr; pNode = pNode->pNext) {
      Record& record = *static_cast<Record*>(pNode->pvObject);
      if (bIdentical(record)) {
        SessMgr_SetLastError(SMGR_ERROR_ID_IN_USE);
        return &record;
      }
    }
    SMGR_TRACE_AS(Traits::kLocateByConfigName, 7, "No handle found matching configuration.\n");
    return nullptr;
  }

  // Links a record the daemon accepted at the tail of the family list.
  static void Link(Record* pHandle) { FastLinkD(&pHandle->DNode, pHandle, &List()); }

  // Frees every record whatever its count (library shutdown); returns how many.
  static int Cleanup() {
    int nReleased = 0;
    while (FNODE_D* pNode = FastGetUnlinkFirstD(&List())) {
      Destroy(static_cast<Record*>(pNode->pvObject));
      ++nReleased;
    }
    if (nReleased > 0)
      SMGR_TRACE_AS(Traits::kCleanupName, 6, "%d %s handles were released.\n", nReleased,
                    Traits::kFamilyWord);
    return nReleased;
  }

  // Live handles of the family (the tests' leak check).
  static size_t Count() {
    size_t nCount = 0;
    for (FNODE_D* pNode = List().pHead; pNode != nullptr; pNode = pNode->pNext) ++nCount;
    return nCount;
  }

  static FLIST_D& List() {
    static FLIST_D list = FLIST_STATIC_INITIALIZER;
    return list;
  }

 private:
  // The signature is wiped so that a stale handle is less likely to pass validation.
  static void Destroy(Record* pHandle) {
    pHandle->dwSignature = 0;
    std::free(pHandle);
  }
};

}  // namespace smgr
