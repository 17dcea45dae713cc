// Logging of the appliance simulator: one line per event on stderr (or a sink
// that tests install). Errors always show; --verbose adds the per-request lines.
// Non-printable bytes are escaped (\xNN); more than 20 warnings or errors of one
// kind in a second are held back and counted ("... 1,843 more like this").
#pragma once

#include <functional>
#include <string>

namespace sim {

enum class LogLevel { kError = 0, kWarning = 1, kInfo = 2, kDebug = 3 };

void SetLogLevel(LogLevel level);
bool LogEnabled(LogLevel level);
void Log(LogLevel level, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Writes the counts of held-back lines whose second has ended (the server calls
// this while idle, so a flood that stops is still reported).
void FlushLogRepeats();

// Receives every enabled line instead of stderr while installed; nullptr restores stderr.
using LogSink = std::function<void(LogLevel, const std::string&)>;
void SetLogSink(LogSink sink);

}  // namespace sim

#define SIM_LOG_ERROR(...) ::sim::Log(::sim::LogLevel::kError, __VA_ARGS__)
#define SIM_LOG_WARN(...) ::sim::Log(::sim::LogLevel::kWarning, __VA_ARGS__)
#define SIM_LOG_INFO(...) ::sim::Log(::sim::LogLevel::kInfo, __VA_ARGS__)
#define SIM_LOG_DEBUG(...)                                                                            \
  do {                                                                                                \
    if (::sim::LogEnabled(::sim::LogLevel::kDebug)) ::sim::Log(::sim::LogLevel::kDebug, __VA_ARGS__); \
  } while (0)
