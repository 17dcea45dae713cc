/* Process, user and time services. */
#ifndef SESSMGR_UTIL_SYSTEM_H
#define SESSMGR_UTIL_SYSTEM_H

#include <sys/time.h>
#include <sys/types.h>

#include "sessmgr/sm_types.h"

SMGR_EXTERN_C_BEGIN

#define BASE_PROCESS_NAME_ONLY 0
#define FULL_PATH_PROCESS_NAME_ONLY 1
#define FULL_COMMAND_LINE 2

BOOL IsRootUser(void);
/* PID of a running process with that name (comm or argv[0] base name), 0 when none. */
pid_t GetProcessPID(const char* szProcessName, void* pvReserved);
/* TRUE while that process runs: FALSE for one that has ended but is not reaped yet (a zombie). */
BOOL IsValidPID(pid_t pid);
BOOL GetProcessNameFromPID(pid_t pid, int nMode, char* szBuffer, size_t nSize);
/* pdwRights (may be NULL) receives 1 for root (uid 0), 0 otherwise. */
BOOL GetUserNameAndRightsFromUID(uid_t uid, char* szName, size_t nSize, DWORD* pdwRights);
/* Seconds since boot; TRUE on success. */
BOOL GetSystemUPTime(DWORD* pdwUpTimeInSecs);
/* bRestartOnInterrupt: keep sleeping the remaining time after a signal. */
void MicroSleep(unsigned int nMicroSeconds, BOOL bRestartOnInterrupt);
void CalcTimeOfDayAbsDiff(const struct timeval* pA, const struct timeval* pB, struct timeval* pDiff);
/* "3d 04:05:06", "04:05:06" below one day. */
char* FormatUpTime(DWORD dwSeconds, char* szBuffer, size_t nSize);

SMGR_EXTERN_C_END

#endif /* SESSMGR_UTIL_SYSTEM_H */
