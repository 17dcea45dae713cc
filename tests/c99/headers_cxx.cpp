// Compiled as C++ with -pedantic -Werror: the public interface and the protocol
// header must stay usable from C++ clients too (extern "C", layout checks).
#include "sessmgr_api.h"
#include "smgr_protocol.h"

static_assert(sizeof(SMGRPROT_MSG_CONNECT_REQ) == 304);

int sessmgr_headers_cxx_anchor() { return SMGRPROT_USER_CONNECT_REQ; }
