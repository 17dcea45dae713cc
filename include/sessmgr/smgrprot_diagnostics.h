/* Placeholder: filled in by the work that owns it. */
#ifndef SESSMGR_SMGRPROT_DIAGNOSTICS_H
#define SESSMGR_SMGRPROT_DIAGNOSTICS_H
#include "sessmgr/sm_types.h"
#endif /* SESSMGR_SMGRPROT_DIAGNOSTICS_H */
