/* A C program linked against libsessmgr.so: proves the exports are plain C symbols
 * that a C client links and calls. No daemon needed. */
#include <stdio.h>
#include <string.h>

#include "sessmgr_api.h"

int main(void) {
  char szText[64];
  const char* szResult = SessMgr_GetErrorString(SMGR_ERROR_NO_MATCHING_STREAM_FOUND, szText, sizeof(szText));
  if (szResult != szText || strcmp(szText, "No matching stream found") != 0) {
    fprintf(stderr, "unexpected text \"%s\"\n", szResult);
    return 1;
  }
  if (!SessMgr_SetLastError(SMGR_ERROR_INVALID_PARAMETERS) ||
      SessMgr_GetLastError() != SMGR_ERROR_INVALID_PARAMETERS) {
    fprintf(stderr, "last error did not stick\n");
    return 1;
  }
  printf("%s\n", szText);
  return 0;
}
