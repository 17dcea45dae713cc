// The library's debug channel "SESSMGRLIB"; nullptr (no traces) until the
// library's debug initialisation attaches it.
#include "lib_trace.h"

HDBG g_hSMGRApiDbg = nullptr;
