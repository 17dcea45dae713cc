/* Compiled as strict C99 (-std=c99 -pedantic -Werror): proves that a C client can
 * include the public interface and the protocol header, layout checks included. */
#include "sessmgr_api.h"
#include "smgr_protocol.h"

/* A few uses so that the names must exist with the expected kinds. */
SMGR_STATIC_ASSERT(sizeof(SMGR_RESULT) == 4, c99_result_size);
SMGR_STATIC_ASSERT(SMGRPROT_USER_CONNECT_REQ == 1, c99_connect_number);

int sessmgr_headers_c99_anchor(void);
int sessmgr_headers_c99_anchor(void) {
  SMGRPROT_MSG_GENERIC_RSP rsp;
  rsp.Data.Result = SMGR_ERROR_SUCCESS;
  return (int)rsp.Data.Result;
}
