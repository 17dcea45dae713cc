// An out-of-tree C++ client built through find_package(sessmgr) against an
// installed libsessmgr: connects to the daemon named by SESSMGR_DAEMON_QUEUE
// and lists its streams. Exit 0 when the daemon answered.
#include <sessmgr_api.h>

#include <cstdio>
#include <vector>

int main() {
  DWORD dwVersion = 0;
  char szText[256];
  if (!SessMgrLib_Init(SMGR_API_VERSION_1_0, &dwVersion)) {
    std::fprintf(stderr, "init: %s\n", SessMgr_GetLastErrorString(szText, sizeof(szText)));
    return 1;
  }
  std::vector<SMGR_STREAM_INFO> streams(4);
  UINT nTotal = 0, nReturned = 0;
  size_t nElementSize = 0;
  BOOL bOk = SessMgr_EnumerateStreams(streams.data(), streams.size() * sizeof(SMGR_STREAM_INFO), 0, &nTotal,
                                      &nReturned, &nElementSize);
  if (!bOk) std::fprintf(stderr, "enumerate: %s\n", SessMgr_GetLastErrorString(szText, sizeof(szText)));
  SessMgrLib_Shutdown();
  std::printf("c++ consumer: %u streams\n", nTotal);
  return bOk ? 0 : 1;
}
