// Selector translation for every selector family (see object_selectors.h).
// Runs under the API mutex, inside the request engine's build step.
#include "object_selectors.h"

#include "lib_trace.h"
#include "util_string.h"

namespace smgr {

bool TranslateSelector(const char* szOperation, const SMGR_OBJECT_SELECTOR& selector, SelectorKinds accepted,
                       HandleIdResolver resolveHandle, SMGRPROT_OBJECT_SELECTOR* pWire) {
  const int enType = selector.enType;
  const bool bKnownKind = enType >= SMGR_SELECTBY_OBJECT_ID && enType <= SMGR_SELECTBY_OBJECT_HANDLE;
  if (!bKnownKind || (accepted & (1u << enType)) == 0) {
    SMGR_TRACE_AS(szOperation, 3, "Invalid selector type (%d) detected.\n", enType);
    return false;
  }
  switch (enType) {
    case SMGR_SELECTBY_OBJECT_ID:
      pWire->enType = SMGR_SELECTBY_OBJECT_ID;
      pWire->Via.ID = selector.Via.ID;
      return true;
    case SMGR_SELECTBY_OBJECT_NAME:
      if (selector.Via.szName == nullptr) {
        SMGR_TRACE_AS(szOperation, 3, "NULL name in selector.\n");
        SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS);
        return false;
      }
      pWire->enType = SMGR_SELECTBY_OBJECT_NAME;
      CopyString(pWire->Via.szName, selector.Via.szName, sizeof(pWire->Via.szName));
      return true;
    default: {
      int nID = 0;
      if (!resolveHandle || !resolveHandle(selector.Via.Handle, &nID)) {
        SMGR_TRACE_AS(szOperation, 3, "Invalid handle in selector.\n");
        return false;
      }
      pWire->enType = SMGR_SELECTBY_OBJECT_ID;
      pWire->Via.ID = nID;
      return true;
    }
  }
}

namespace {

// Every family's selector request has this layout.
struct SelectRequest {
  SMGRPROT_HEADER Header;
  SMGRPROT_OBJECT_SELECTOR Select;
};
static_assert(sizeof(SelectRequest) == 84);

}  // namespace

BOOL SelectorTransact(const RequestTraits& traits, const SMGR_OBJECT_SELECTOR* pSelector,
                      SelectorKinds accepted, HandleIdResolver resolveHandle, CopyBackStep copyBack,
                      bool bOtherArgumentsValid) {
  SelectRequest request{};
  return Transact(
      traits, &request, sizeof(request), pSelector != nullptr && bOtherArgumentsValid,
      [&](void*) {
        return TranslateSelector(traits.szOperation, *pSelector, accepted, resolveHandle, &request.Select);
      },
      copyBack);
}

}  // namespace smgr
