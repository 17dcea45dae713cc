// Logging of the appliance simulator: timestamped lines on stderr, a level
// switch and a replaceable sink for tests.
#include "sim_log.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <mutex>

namespace sim {
namespace {

std::atomic<int> g_level{static_cast<int>(LogLevel::kInfo)};
std::mutex g_sinkMutex;
LogSink g_sink;

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
  if (g_sink) {
    g_sink(level, text);
    return;
  }
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  tm local{};
  localtime_r(&now.tv_sec, &local);
  fprintf(stderr, "%02d:%02d:%02d.%03ld sessmgrd-sim %s: %s\n", local.tm_hour, local.tm_min, local.tm_sec,
          now.tv_nsec / 1000000, LevelTag(level), text);
  fflush(stderr);
}

void SetLogSink(LogSink sink) {
  std::lock_guard<std::mutex> lock(g_sinkMutex);
  g_sink = std::move(sink);
}

}  // namespace sim
