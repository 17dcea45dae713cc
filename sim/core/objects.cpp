// Wire selector decoding shared by every family's handlers.
#include "objects.h"

namespace sim {

bool ParseWireSelector(const SMGRPROT_OBJECT_SELECTOR& wire, ObjectSelector* selector) {
  if (wire.enType == SMGR_SELECTBY_OBJECT_ID) {
    selector->byName = false;
    selector->id = wire.Via.ID;
    return true;
  }
  if (wire.enType == SMGR_SELECTBY_OBJECT_NAME) {
    if (!Terminated(wire.Via.szName, sizeof wire.Via.szName)) return false;
    selector->byName = true;
    selector->name = wire.Via.szName;
    return true;
  }
  return false;
}

}  // namespace sim
