// The one translation of a caller's object selector into the 68-byte wire
// selector, shared by every selector family. The daemon always sees an ID or
// a name: a handle is replaced by the ID it remembers.
#pragma once

#include "request_engine.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"

namespace smgr {

// Which selector kinds an operation accepts (bit set).
enum SelectorKind : unsigned {
  kSelectById = 1u << SMGR_SELECTBY_OBJECT_ID,
  kSelectByName = 1u << SMGR_SELECTBY_OBJECT_NAME,
  kSelectByHandle = 1u << SMGR_SELECTBY_OBJECT_HANDLE,
};
using SelectorKinds = unsigned;
inline constexpr SelectorKinds kIdOrName = kSelectById | kSelectByName;
inline constexpr SelectorKinds kIdNameOrHandle = kSelectById | kSelectByName | kSelectByHandle;

// A family's handle check: false when hHandle is not a live handle of the
// family, otherwise *pID = the handle's remembered ID.
using HandleIdResolver = FunctionRef<bool(HSMGR hHandle, int* pID)>;

// Fills *pWire (zeroed by the caller) from the selector. A kind the operation
// does not accept traces "Invalid selector type (%d) detected.\n", an invalid
// handle "Invalid handle in selector.\n" (both level 3, as szOperation); on
// both paths the last error is deliberately left as it was. A by-name
// selector whose name pointer is NULL sets last error 2. Names are cut to 63
// characters. Returns false when nothing may be sent.
bool TranslateSelector(const char* szOperation, const SMGR_OBJECT_SELECTOR& selector, SelectorKinds accepted,
                       HandleIdResolver resolveHandle, SMGRPROT_OBJECT_SELECTOR* pWire);

// Runs a request whose data is the wire selector alone (the 84-byte delete,
// start, stop, info, ... requests every selector family has): the caller's
// selector is translated under the lock with the family's handle resolver.
// A NULL selector, or bOtherArgumentsValid false, gives last error 2.
BOOL SelectorTransact(const RequestTraits& traits, const SMGR_OBJECT_SELECTOR* pSelector,
                      SelectorKinds accepted, HandleIdResolver resolveHandle, CopyBackStep copyBack = nullptr,
                      bool bOtherArgumentsValid = true);

}  // namespace smgr
