/* Placeholder: filled in by the work that owns it. */
#ifndef SESSMGR_SM_UTILS_H
#define SESSMGR_SM_UTILS_H
#include "sessmgr/sm_types.h"
#endif /* SESSMGR_SM_UTILS_H */
