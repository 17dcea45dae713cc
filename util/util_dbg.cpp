// Debug channels, trace lines and assertions. Channels are named, shared and
// reference counted; each takes its level and sink from the environment when it
// is created. Not a logging framework: one line per trace, written with one write().
#include "util_dbg.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <type_traits>
#include <vector>

#include "util_string.h"

namespace {

constexpr DWORD kChannelSignature = 0x43474244u;  // "DBGC" in memory order
constexpr const char* kAssertChannelName = "ASSERT";

// The public part comes first so that an HDBG is a pointer to the whole record.
struct Channel {
  DBG_CHANNEL pub;
  char szName[64];
  int nRefs;
  int nEnvLevel;
  int fd;  // sink; 2 (standard error) unless SESSMGR_DEBUG_FILE opened
};
static_assert(std::is_standard_layout_v<Channel>);
static_assert(offsetof(Channel, pub) == 0);

struct Registry {
  std::mutex mutex;
  std::vector<Channel*> channels;
  int nLevelOverride = -1;
  std::shared_ptr<const smgr::util::TraceSink> hook;
  Channel* assertChannel = nullptr;
};

// Never destroyed: unload destructors and exit handlers may still trace.
Registry& registry() {
  static Registry* instance = new Registry;
  return *instance;
}

std::atomic<bool> g_bAssertAbortEnabled{true};

int levelFromEnvironment() {
  const char* szLevel = getenv("SESSMGR_DEBUG_LEVEL");
  if (szLevel == nullptr || *szLevel == '\0') return 0;
  char* pEnd = nullptr;
  long nLevel = strtol(szLevel, &pEnd, 10);
  if (*pEnd != '\0' || nLevel < 0 || nLevel > 1000) return 0;
  return static_cast<int>(nLevel);
}

int sinkFromEnvironment() {
  const char* szFile = getenv("SESSMGR_DEBUG_FILE");
  if (szFile == nullptr || *szFile == '\0') return STDERR_FILENO;
  int fd = open(szFile, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
  return fd >= 0 ? fd : STDERR_FILENO;
}

// Called with the registry mutex held.
Channel* attachLocked(Registry& reg, const char* szName) {
  for (Channel* pChannel : reg.channels) {
    if (strcmp(pChannel->szName, szName) == 0) {
      ++pChannel->nRefs;
      return pChannel;
    }
  }
  auto* pChannel = new Channel{};
  pChannel->pub.dwReserved = kChannelSignature;
  CopyString(pChannel->szName, szName, sizeof(pChannel->szName));
  pChannel->nRefs = 1;
  pChannel->nEnvLevel = levelFromEnvironment();
  pChannel->pub.nMaxLevel = reg.nLevelOverride >= 0 ? reg.nLevelOverride : pChannel->nEnvLevel;
  pChannel->fd = sinkFromEnvironment();
  reg.channels.push_back(pChannel);
  return pChannel;
}

Channel* channelOf(HDBG hDbg) {
  if (hDbg == nullptr || hDbg->dwReserved != kChannelSignature) return nullptr;
  return reinterpret_cast<Channel*>(hDbg);
}

Channel* assertChannel() {
  Registry& reg = registry();
  std::lock_guard lock(reg.mutex);
  if (reg.assertChannel == nullptr) reg.assertChannel = attachLocked(reg, kAssertChannelName);
  return reg.assertChannel;
}

const char* baseNameOf(const char* szFile) {
  if (szFile == nullptr) return "?";
  const char* pSlash = strrchr(szFile, '/');
  return pSlash != nullptr ? pSlash + 1 : szFile;
}

std::string formatText(const char* szFormat, va_list args) {
  if (szFormat == nullptr) return {};
  char acSmall[512];
  va_list copy;
  va_copy(copy, args);
  int nLength = vsnprintf(acSmall, sizeof(acSmall), szFormat, copy);
  va_end(copy);
  if (nLength < 0) return {};
  if (static_cast<size_t>(nLength) < sizeof(acSmall)) return std::string(acSmall, nLength);
  std::string text(static_cast<size_t>(nLength) + 1, '\0');
  vsnprintf(text.data(), text.size(), szFormat, args);
  text.resize(nLength);
  return text;
}

void writeAll(int fd, const char* pData, size_t nSize) {
  while (nSize > 0) {
    ssize_t nWritten = write(fd, pData, nSize);
    if (nWritten < 0) {
      if (errno == EINTR) continue;
      return;
    }
    pData += nWritten;
    nSize -= static_cast<size_t>(nWritten);
  }
}

// Formats, hands the text to the capture hook and writes the line to the sink.
void emit(Channel* pChannel, int nLevel, const char* szFunction, const char* szFile, int nLine,
          const std::string& text) {
  std::shared_ptr<const smgr::util::TraceSink> hook;
  {
    Registry& reg = registry();
    std::lock_guard lock(reg.mutex);
    hook = reg.hook;
  }
  const char* szFunctionText = szFunction != nullptr ? szFunction : "?";
  if (hook) (*hook)(pChannel->szName, nLevel, szFunctionText, baseNameOf(szFile), nLine, text);

  struct timeval now;
  gettimeofday(&now, nullptr);
  struct tm local;
  localtime_r(&now.tv_sec, &local);
  char acStamp[32];
  strftime(acStamp, sizeof(acStamp), "%Y-%m-%d %H:%M:%S", &local);

  size_t nTextLength = text.size();
  if (nTextLength > 0 && text[nTextLength - 1] == '\n') --nTextLength;

  char acHead[256];
  int nHead = snprintf(acHead, sizeof(acHead), "%s.%06ld [%s] L%d %d/%ld %s (%s:%d): ", acStamp,
                       static_cast<long>(now.tv_usec), pChannel->szName, nLevel, static_cast<int>(getpid()),
                       static_cast<long>(syscall(SYS_gettid)), szFunctionText, baseNameOf(szFile), nLine);
  if (nHead < 0) return;
  std::string line(acHead, std::min<size_t>(static_cast<size_t>(nHead), sizeof(acHead) - 1));
  line.append(text, 0, nTextLength);
  line.push_back('\n');
  writeAll(pChannel->fd, line.data(), line.size());
}

void reportAssertion(const char* szFunction, const char* szFile, int nLine, const std::string& text) {
  Channel* pChannel = assertChannel();
  if (pChannel->pub.nMaxLevel >= 1) emit(pChannel, 1, szFunction, szFile, nLine, text);
#ifdef SESSMGR_ABORT_ON_ASSERT
  if (g_bAssertAbortEnabled.load()) abort();
#endif
}

std::recursive_mutex& onceMutex() {
  static std::recursive_mutex* instance = new std::recursive_mutex;
  return *instance;
}

}  // namespace

extern "C" {

BOOL _DoDbgInit(const char* szChannelName, HDBG* phDbg) {
  if (szChannelName == nullptr || *szChannelName == '\0' || phDbg == nullptr) return FALSE;
  try {
    Registry& reg = registry();
    std::lock_guard lock(reg.mutex);
    *phDbg = &attachLocked(reg, szChannelName)->pub;
    return TRUE;
  } catch (...) {
    *phDbg = nullptr;
    return FALSE;
  }
}

void _DoDbgPrintEx(HDBG hDbg, int nLevel, const char* szFunction, const char* szFile, int nLine,
                   const char* szFormat, ...) {
  Channel* pChannel = channelOf(hDbg);
  if (pChannel == nullptr || pChannel->pub.nMaxLevel < nLevel) return;
  try {
    va_list args;
    va_start(args, szFormat);
    std::string text = formatText(szFormat, args);
    va_end(args);
    emit(pChannel, nLevel, szFunction, szFile, nLine, text);
  } catch (...) {
    // Tracing never fails its caller.
  }
}

void _DoDbgPrintBuffer(HDBG hDbg, int nLevel, const char* szFunction, const char* szFile, int nLine,
                       const void* pvBuffer, size_t nSize) {
  Channel* pChannel = channelOf(hDbg);
  if (pChannel == nullptr || pChannel->pub.nMaxLevel < nLevel) return;
  try {
    if (pvBuffer == nullptr) nSize = 0;
    char acLine[128];
    PrintToString(acLine, sizeof(acLine), "Buffer %p of %zu bytes:\n", pvBuffer, nSize);
    emit(pChannel, nLevel, szFunction, szFile, nLine, acLine);
    const auto* pbBytes = static_cast<const BYTE*>(pvBuffer);
    for (size_t nOffset = 0; nOffset < nSize; nOffset += 16) {
      std::string row(acLine, static_cast<size_t>(PrintToString(acLine, sizeof(acLine), "%04zx:", nOffset)));
      std::string ascii;
      for (size_t i = nOffset; i < nOffset + 16; ++i) {
        if (i < nSize) {
          PrintToString(acLine, sizeof(acLine), " %02x", pbBytes[i]);
          row += acLine;
          ascii.push_back(pbBytes[i] >= 0x20 && pbBytes[i] < 0x7f ? static_cast<char>(pbBytes[i]) : '.');
        } else {
          row += "   ";
        }
      }
      row += "  |" + ascii + "|\n";
      emit(pChannel, nLevel, szFunction, szFile, nLine, row);
    }
  } catch (...) {
  }
}

void _DoDbgUninitEx(HDBG hDbg, const char* /*szFunction*/, const char* /*szFile*/, int /*nLine*/) {
  Channel* pChannel = channelOf(hDbg);
  if (pChannel == nullptr) return;
  Registry& reg = registry();
  std::lock_guard lock(reg.mutex);
  if (--pChannel->nRefs > 0) return;
  std::erase(reg.channels, pChannel);
  if (pChannel->fd != STDERR_FILENO) close(pChannel->fd);
  pChannel->pub.dwReserved = 0;  // a stale handle is then refused, not misused
  delete pChannel;
}

void _DoAssert(const char* szExpression, const char* szFunction, const char* szFile, int nLine) {
  try {
    std::string text = "Assertion failed: ";
    text += szExpression != nullptr ? szExpression : "(null)";
    text += "\n";
    reportAssertion(szFunction, szFile, nLine, text);
  } catch (...) {
  }
}

void _DoTextAssert(const char* szFunction, const char* szFile, int nLine, const char* szFormat, ...) {
  try {
    va_list args;
    va_start(args, szFormat);
    std::string text = "Assertion failed: " + formatText(szFormat, args);
    va_end(args);
    reportAssertion(szFunction, szFile, nLine, text);
  } catch (...) {
  }
}

BOOL DoExecuteOnceOnlyFunction(BOOL (*pfnFunction)(void), BOOL* pbFlag) {
  if (pfnFunction == nullptr || pbFlag == nullptr) return FALSE;
  // Recursive so that a once-only function may itself run another one.
  std::lock_guard lock(onceMutex());
  if (__atomic_load_n(pbFlag, __ATOMIC_ACQUIRE) == 1) return TRUE;
  BOOL bResult = pfnFunction();
  __atomic_store_n(pbFlag, 1, __ATOMIC_RELEASE);
  return bResult;
}

}  // extern "C"

namespace smgr::util {

void SetTraceCaptureHook(TraceSink sink) {
  Registry& reg = registry();
  auto hook = sink ? std::make_shared<const TraceSink>(std::move(sink)) : nullptr;
  std::lock_guard lock(reg.mutex);
  reg.hook = std::move(hook);
}

void SetDebugLevelOverride(int nLevel) {
  Registry& reg = registry();
  std::lock_guard lock(reg.mutex);
  reg.nLevelOverride = nLevel >= 0 ? nLevel : -1;
  for (Channel* pChannel : reg.channels) {
    __atomic_store_n(&pChannel->pub.nMaxLevel, nLevel >= 0 ? nLevel : pChannel->nEnvLevel, __ATOMIC_RELAXED);
  }
}

void SetAssertAbortEnabled(bool bEnabled) { g_bAssertAbortEnabled.store(bEnabled); }

}  // namespace smgr::util
