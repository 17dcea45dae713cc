// Process, user and time services, read from /proc and the C library. They are
// queries only: nothing here changes another process.
#include "util_system.h"

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <signal.h>
#include <sys/sysinfo.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "util_string.h"

namespace {

// Whole content of a small /proc file; empty when unreadable.
std::string readProcFile(pid_t pid, const char* szEntry) {
  char acPath[64];
  PrintToString(acPath, sizeof(acPath), "/proc/%d/%s", static_cast<int>(pid), szEntry);
  int fd = open(acPath, O_RDONLY | O_CLOEXEC);
  if (fd < 0) return {};
  std::string content;
  char acChunk[512];
  for (;;) {
    ssize_t nRead = read(fd, acChunk, sizeof(acChunk));
    if (nRead < 0 && errno == EINTR) continue;
    if (nRead <= 0) break;
    content.append(acChunk, static_cast<size_t>(nRead));
    if (content.size() > 64 * 1024) break;  // a command line longer than this is cut
  }
  close(fd);
  return content;
}

std::string commOf(pid_t pid) {
  std::string comm = readProcFile(pid, "comm");
  if (!comm.empty() && comm.back() == '\n') comm.pop_back();
  return comm;
}

// argv[0] of the process; empty for kernel threads and zombies.
std::string argv0Of(pid_t pid) {
  std::string cmdline = readProcFile(pid, "cmdline");
  return std::string(cmdline.c_str());
}

// A process that has ended but is not reaped yet ('Z'), or is being removed ('X').
bool isZombie(pid_t pid) {
  std::string stat = readProcFile(pid, "stat");
  size_t nClose = stat.rfind(')');
  if (nClose == std::string::npos || nClose + 2 >= stat.size()) return false;
  return stat[nClose + 2] == 'Z' || stat[nClose + 2] == 'X';
}

std::string executableOf(pid_t pid) {
  char acPath[64];
  PrintToString(acPath, sizeof(acPath), "/proc/%d/exe", static_cast<int>(pid));
  char acTarget[4096];
  ssize_t nLength = readlink(acPath, acTarget, sizeof(acTarget) - 1);
  if (nLength <= 0) return {};
  return std::string(acTarget, static_cast<size_t>(nLength));
}

}  // namespace

extern "C" {

BOOL IsRootUser(void) { return geteuid() == 0 ? TRUE : FALSE; }

pid_t GetProcessPID(const char* szProcessName, void* /*pvReserved*/) {
  if (szProcessName == nullptr || *szProcessName == '\0') return 0;
  try {
    DIR* pDir = opendir("/proc");
    if (pDir == nullptr) return 0;
    pid_t found = 0;
    while (found == 0) {
      struct dirent* pEntry = readdir(pDir);
      if (pEntry == nullptr) break;
      char* pEnd = nullptr;
      long nPid = strtol(pEntry->d_name, &pEnd, 10);
      if (*pEnd != '\0' || nPid <= 0) continue;
      auto pid = static_cast<pid_t>(nPid);
      bool bMatch = commOf(pid) == szProcessName;
      if (!bMatch) {
        std::string argv0 = argv0Of(pid);
        bMatch = !argv0.empty() && strcmp(GetBaseName(argv0.c_str()), szProcessName) == 0;
      }
      if (bMatch && !isZombie(pid)) found = pid;
    }
    closedir(pDir);
    return found;
  } catch (...) {
    return 0;
  }
}

// kill(pid, 0) still succeeds on a zombie, which stays until its parent reaps
// it: a killed daemon whose parent is slow must not count as alive.
BOOL IsValidPID(pid_t pid) {
  if (pid <= 0) return FALSE;
  if (kill(pid, 0) != 0 && errno != EPERM) return FALSE;
  return isZombie(pid) ? FALSE : TRUE;
}

BOOL GetProcessNameFromPID(pid_t pid, int nMode, char* szBuffer, size_t nSize) {
  if (pid <= 0 || szBuffer == nullptr || nSize == 0) return FALSE;
  try {
    std::string name;
    switch (nMode) {
      case BASE_PROCESS_NAME_ONLY: {
        std::string argv0 = argv0Of(pid);
        name = !argv0.empty() ? std::string(GetBaseName(argv0.c_str())) : commOf(pid);
        break;
      }
      case FULL_PATH_PROCESS_NAME_ONLY:
        name = executableOf(pid);
        if (name.empty()) name = argv0Of(pid);
        break;
      case FULL_COMMAND_LINE: {
        name = readProcFile(pid, "cmdline");
        while (!name.empty() && name.back() == '\0') name.pop_back();
        for (char& c : name) {
          if (c == '\0') c = ' ';
        }
        break;
      }
      default:
        return FALSE;
    }
    if (name.empty()) return FALSE;
    CopyString(szBuffer, name.c_str(), nSize);
    return TRUE;
  } catch (...) {
    return FALSE;
  }
}

BOOL GetUserNameAndRightsFromUID(uid_t uid, char* szName, size_t nSize, DWORD* pdwRights) {
  try {
    long nSuggested = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(nSuggested > 0 ? static_cast<size_t>(nSuggested) : 4096);
    struct passwd entry;
    struct passwd* pResult = nullptr;
    int rc;
    while ((rc = getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &pResult)) == ERANGE &&
           buffer.size() < 1024 * 1024) {
      buffer.resize(buffer.size() * 2);
    }
    if (rc != 0 || pResult == nullptr) return FALSE;
    if (szName != nullptr) CopyString(szName, entry.pw_name, nSize);
    if (pdwRights != nullptr) *pdwRights = uid == 0 ? 1 : 0;
    return TRUE;
  } catch (...) {
    return FALSE;
  }
}

BOOL GetSystemUPTime(DWORD* pdwUpTimeInSecs) {
  if (pdwUpTimeInSecs == nullptr) return FALSE;
  if (FILE* pFile = fopen("/proc/uptime", "re")) {
    double dSeconds = 0;
    int nFields = fscanf(pFile, "%lf", &dSeconds);
    fclose(pFile);
    if (nFields == 1 && dSeconds >= 0) {
      *pdwUpTimeInSecs = static_cast<DWORD>(dSeconds);
      return TRUE;
    }
  }
  struct sysinfo info;
  if (sysinfo(&info) != 0) return FALSE;
  *pdwUpTimeInSecs = static_cast<DWORD>(info.uptime);
  return TRUE;
}

void MicroSleep(unsigned int nMicroSeconds, BOOL bRestartOnInterrupt) {
  struct timespec request;
  request.tv_sec = nMicroSeconds / 1000000u;
  request.tv_nsec = static_cast<long>(nMicroSeconds % 1000000u) * 1000;
  struct timespec remaining;
  while (nanosleep(&request, &remaining) != 0 && errno == EINTR && bRestartOnInterrupt) request = remaining;
}

void CalcTimeOfDayAbsDiff(const struct timeval* pA, const struct timeval* pB, struct timeval* pDiff) {
  if (pDiff == nullptr) return;
  if (pA == nullptr || pB == nullptr) {
    pDiff->tv_sec = 0;
    pDiff->tv_usec = 0;
    return;
  }
  long long nA = static_cast<long long>(pA->tv_sec) * 1000000 + pA->tv_usec;
  long long nB = static_cast<long long>(pB->tv_sec) * 1000000 + pB->tv_usec;
  long long nDiff = nA >= nB ? nA - nB : nB - nA;
  pDiff->tv_sec = static_cast<time_t>(nDiff / 1000000);
  pDiff->tv_usec = static_cast<suseconds_t>(nDiff % 1000000);
}

char* FormatUpTime(DWORD dwSeconds, char* szBuffer, size_t nSize) {
  unsigned nDays = dwSeconds / 86400;
  unsigned nHours = dwSeconds / 3600 % 24;
  unsigned nMinutes = dwSeconds / 60 % 60;
  unsigned nSeconds = dwSeconds % 60;
  if (nDays > 0) {
    PrintToString(szBuffer, nSize, "%ud %02u:%02u:%02u", nDays, nHours, nMinutes, nSeconds);
  } else {
    PrintToString(szBuffer, nSize, "%02u:%02u:%02u", nHours, nMinutes, nSeconds);
  }
  return szBuffer;
}

}  // extern "C"
