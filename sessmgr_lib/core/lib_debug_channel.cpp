// The library's debug channel "SESSMGRLIB": NULL until the library's once-only
// debug initialisation attaches it, so that every trace before that costs nothing.
#include "lib_trace.h"

HDBG g_hSMGRApiDbg = nullptr;
