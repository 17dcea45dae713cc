/* All companion services in one include. */
#ifndef SESSMGR_UTIL_H
#define SESSMGR_UTIL_H

#include "util_cfgfile.h"
#include "util_dbg.h"
#include "util_list.h"
#include "util_netaddr.h"
#include "util_string.h"
#include "util_system.h"

#endif /* SESSMGR_UTIL_H */
