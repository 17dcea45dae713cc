/* An out-of-tree C99 client built through pkg-config against an installed
 * libsessmgr: connects to the daemon named by SESSMGR_DAEMON_QUEUE and reads
 * its debug information. Exit 0 when the daemon answered. */
#include <sessmgr_api.h>
#include <stdio.h>

int main(void) {
  DWORD dwVersion = 0;
  SMGR_DEBUG_INFO info = {sizeof(info), 0, 0, 0};
  char szText[256];
  if (!SessMgrLib_Init(SMGR_API_VERSION_1_0, &dwVersion)) {
    fprintf(stderr, "init: %s\n", SessMgr_GetLastErrorString(szText, sizeof(szText)));
    return 1;
  }
  BOOL bOk = SessMgr_GetDebugInfo(&info);
  if (!bOk) fprintf(stderr, "debug info: %s\n", SessMgr_GetLastErrorString(szText, sizeof(szText)));
  SessMgrLib_Shutdown();
  printf("c99 consumer: daemon pid %d\n", (int)info.iPID);
  return bOk ? 0 : 1;
}
