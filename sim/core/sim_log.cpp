// Logging of the appliance simulator: timestamped lines on stderr, a level
// switch and a replaceable sink for tests. Bytes a client sent (queue and
// process names) may be anything, so every line is escaped; warnings and
// errors that repeat are rate-limited per message kind, so junk on the
// request queue cannot fill the disk.
#include "sim_log.h"

#include <atomic>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <map>
#include <mutex>

namespace sim {
namespace {

constexpr int kRepeatsPerWindow = 20;
constexpr auto kRepeatWindow = std::chrono::seconds(1);

struct RepeatCount {
  std::chrono::steady_clock::time_point windowStart;
  int inWindow = 0;
  unsigned long long suppressed = 0;
  LogLevel level = LogLevel::kWarning;
};

std::atomic<int> g_level{static_cast<int>(LogLevel::kInfo)};
std::mutex g_sinkMutex;
LogSink g_sink;
std::map<const char*, RepeatCount> g_repeats;  // by format: one kind of line each

const char* LevelTag(LogLevel level) {
  switch (level) {
    case LogLevel::kError:
      return "error";
    case LogLevel::kWarning:
      return "warning";
    case LogLevel::kInfo:
      return "info";
    case LogLevel::kDebug:
      return "debug";
  }
  return "?";
}

// Control bytes, DEL and bytes above ASCII as \xNN; a backslash doubles.
std::string Escaped(const char* text) {
  std::string out;
  for (const unsigned char* p = reinterpret_cast<const unsigned char*>(text); *p; ++p) {
    if (*p == '\\') {
      out += "\\\\";
    } else if (*p < 0x20 || *p >= 0x7f) {
      char hex[8];
      snprintf(hex, sizeof hex, "\\x%02x", *p);
      out += hex;
    } else {
      out += static_cast<char>(*p);
    }
  }
  return out;
}

std::string WithThousands(unsigned long long n) {
  std::string digits = std::to_string(n);
  for (int at = static_cast<int>(digits.size()) - 3; at > 0; at -= 3)
    digits.insert(static_cast<size_t>(at), ",");
  return digits;
}

void WriteLocked(LogLevel level, const std::string& text) {
  if (g_sink) {
    g_sink(level, text);
    return;
  }
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  tm local{};
  localtime_r(&now.tv_sec, &local);
  fprintf(stderr, "%02d:%02d:%02d.%03ld sessmgrd-sim %s: %s\n", local.tm_hour, local.tm_min, local.tm_sec,
          now.tv_nsec / 1000000, LevelTag(level), text.c_str());
  fflush(stderr);
}

// Says how many lines of each kind were held back in windows that have ended.
void FlushRepeatsLocked(std::chrono::steady_clock::time_point now) {
  for (auto& [format, count] : g_repeats) {
    if (count.suppressed == 0 || now - count.windowStart < kRepeatWindow) continue;
    WriteLocked(count.level, "... " + WithThousands(count.suppressed) + " more like this");
    count.suppressed = 0;
  }
}

}  // namespace

void SetLogLevel(LogLevel level) { g_level.store(static_cast<int>(level)); }

bool LogEnabled(LogLevel level) { return static_cast<int>(level) <= g_level.load(); }

void Log(LogLevel level, const char* format, ...) {
  if (!LogEnabled(level)) return;
  char text[1024];
  va_list args;
  va_start(args, format);
  vsnprintf(text, sizeof text, format, args);
  va_end(args);

  std::lock_guard<std::mutex> lock(g_sinkMutex);
  const auto now = std::chrono::steady_clock::now();
  FlushRepeatsLocked(now);
  if (level <= LogLevel::kWarning) {
    RepeatCount& count = g_repeats[format];
    if (now - count.windowStart >= kRepeatWindow) {
      count.windowStart = now;
      count.inWindow = 0;
    }
    count.level = level;
    if (++count.inWindow > kRepeatsPerWindow) {
      ++count.suppressed;
      return;
    }
  }
  WriteLocked(level, Escaped(text));
}

void FlushLogRepeats() {
  std::lock_guard<std::mutex> lock(g_sinkMutex);
  FlushRepeatsLocked(std::chrono::steady_clock::now());
}

void SetLogSink(LogSink sink) {
  std::lock_guard<std::mutex> lock(g_sinkMutex);
  g_sink = std::move(sink);
}

}  // namespace sim
