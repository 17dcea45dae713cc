/* Public interface of the session manager client library (libsessmgr.so):
 * types, enumerations and operations, one header per concern under sessmgr/.
 * C99 and C++ clean. */
#ifndef SESSMGR_API_H
#define SESSMGR_API_H

#include "sessmgr/sm_lifecycle.h"
#include "sessmgr/sm_objects.h"
#include "sessmgr/sm_results.h"
#include "sessmgr/sm_types.h"
#include "sessmgr/sm_utils.h"
#include "video_formats.h"

/* Every family header of sessmgr/ (sm_<family>.h), listed at build time. */
#include "sessmgr_families.h"

#endif /* SESSMGR_API_H */
