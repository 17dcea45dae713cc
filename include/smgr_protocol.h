/* Wire protocol between the client library and sessmgrd: the 16-byte header,
 * the message catalogue and every SMGRPROT_ record, one header per family
 * under sessmgr/. Records are little-endian, packed to 4 bytes. */
#ifndef SESSMGR_SMGR_PROTOCOL_H
#define SESSMGR_SMGR_PROTOCOL_H

#include "sessmgr/smgrprot_core.h"

/* Every family wire header of sessmgr/ (smgrprot_<family>.h), listed at build time. */
#include "smgrprot_families.h"

#endif /* SESSMGR_SMGR_PROTOCOL_H */
