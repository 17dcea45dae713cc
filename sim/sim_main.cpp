// sessmgrd-sim: a stand-in for the appliance's session manager daemon. It
// speaks the daemon's wire protocol on the daemon's request queue, so clients
// built on the library run against it unchanged.
#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "appliance.h"
#include "dispatch.h"
#include "profile.h"
#include "server.h"
#include "sim_log.h"
#include "sim_threads.h"

namespace {

std::atomic<bool> g_stop{false};

void OnSignal(int) { g_stop = true; }

std::string EnvOr(const char* name, const char* fallback) {
  const char* value = getenv(name);
  return value && *value ? value : fallback;
}

// Detaches from the terminal. The parent returns only when the daemon says it
// is ready (queue served, pid file written) through the pipe, or exits 1 when
// the daemon dies first: a script may use the pid file right away.
bool Daemonize(const std::string& logFile, int* readyFd) {
  int ready[2];
  if (pipe2(ready, O_CLOEXEC) != 0) return false;
  pid_t child = fork();
  if (child < 0) {
    close(ready[0]);
    close(ready[1]);
    return false;
  }
  if (child > 0) {
    close(ready[1]);
    char byte = 0;
    ssize_t got;
    do {
      got = read(ready[0], &byte, 1);
    } while (got < 0 && errno == EINTR);
    _exit(got == 1 ? 0 : 1);
  }
  close(ready[0]);
  *readyFd = ready[1];
  setsid();
  int devNull = open("/dev/null", O_RDWR);
  if (devNull >= 0) {
    dup2(devNull, STDIN_FILENO);
    dup2(devNull, STDOUT_FILENO);
    if (logFile.empty()) dup2(devNull, STDERR_FILENO);
    close(devNull);
  }
  return true;
}

// Brings back what the appliance kept before the last stop (or kill), then
// writes every change that is answered as done. An unreadable state file is
// moved aside rather than overwritten by the next change.
void RestoreState(sim::Appliance& appliance) {
  appliance.enablePersistence(true);
  std::string error;
  if (appliance.restore(&error)) {
    SIM_LOG_INFO("appliance state restored from %s", appliance.stateFile().c_str());
    return;
  }
  std::error_code ignored;
  if (!std::filesystem::exists(appliance.stateFile(), ignored)) {
    SIM_LOG_INFO("no saved appliance state in %s, starting empty", appliance.stateDir().c_str());
    return;
  }
  const std::string aside = appliance.stateFile().string() + ".unreadable";
  std::filesystem::rename(appliance.stateFile(), aside, ignored);
  SIM_LOG_WARN("%s, moved to %s; starting empty", error.c_str(), aside.c_str());
}

// Written whole under a temporary name and renamed over what was there (a
// stale file of a killed run), so a reader never sees it empty or half written.
bool WritePidFile(const std::string& path) {
  std::error_code ignored;
  if (std::filesystem::exists(path, ignored)) SIM_LOG_INFO("replacing pid file %s", path.c_str());
  const std::string temporary = path + ".tmp" + std::to_string(getpid());
  {
    std::ofstream out(temporary, std::ios::trunc);
    out << getpid() << "\n";
    if (!out.flush()) return false;
  }
  if (rename(temporary.c_str(), path.c_str()) != 0) {
    unlink(temporary.c_str());
    return false;
  }
  return true;
}

bool ParseGroup(const std::string& text, gid_t* gid) {
  if (text.empty()) return true;
  char* end = nullptr;
  unsigned long number = strtoul(text.c_str(), &end, 10);
  if (*end == '\0') {
    *gid = static_cast<gid_t>(number);
    return true;
  }
  const group* found = getgrnam(text.c_str());
  if (!found) return false;
  *gid = found->gr_gid;
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"sessmgrd-sim: simulated session manager daemon of the video encoding appliance"};
  std::string queueName = EnvOr("SESSMGR_DAEMON_QUEUE", "/vdsessmgr");
  std::string markerPath = EnvOr("SESSMGR_STARTED_MARKER", "/tmp/.sessmgrd_was_started");
  std::string stateDir = "/tmp/sessmgrd-sim." + std::to_string(getuid());
  std::string profilePath, pidFile, logFile, queueMode = "0666", queueGroup;
  long maxMessages = 10;
  int pidCheckMs = 1000;
  int configSaveMs = 300, configLoadMs = 1200;
  bool markStarted = false, foreground = false, verbose = false, ignoreShutdown = false, printProfile = false;

  app.add_option("--queue", queueName, "Name of the request queue (env SESSMGR_DAEMON_QUEUE)")
      ->capture_default_str();
  app.add_option("--queue-mode", queueMode,
                 "Permission bits (octal) of the request queue: who may send requests")
      ->capture_default_str()
      ->check([](const std::string& text) {
        char* end = nullptr;
        long mode = strtol(text.c_str(), &end, 8);
        return !text.empty() && *end == '\0' && mode >= 0 && mode <= 0777 ? std::string() : "an octal mode";
      });
  app.add_option("--queue-group", queueGroup, "Owner group (name or number) of the request queue");
  app.add_option("--max-messages", maxMessages, "Depth of the request queue")
      ->capture_default_str()
      ->check(CLI::Range(1L, 64L));
  app.add_option("--profile", profilePath, "Appliance profile (JSON) overriding the built-in SDI unit")
      ->check(CLI::ExistingFile);
  app.add_flag("--print-profile", printProfile, "Print the built-in profile and exit");
  app.add_option("--state-dir", stateDir,
                 "Folder of the appliance state (appliance.json), still images and saved configurations")
      ->capture_default_str();
  app.add_flag("--mark-started", markStarted, "Write the start marker once the queue is ready");
  app.add_option("--marker", markerPath, "Start marker file (env SESSMGR_STARTED_MARKER)")
      ->capture_default_str();
  app.add_flag("-f,--foreground", foreground, "Stay in the foreground (default: detach once ready)");
  app.add_option("--pid-file", pidFile, "Write the simulator's PID here once ready");
  app.add_option("--log-file", logFile, "Append the log here instead of stderr");
  app.add_flag("-v,--verbose", verbose, "Log every request and reply");
  app.add_option("--pid-check-ms", pidCheckMs,
                 "How often clients the kernel gives no pidfd for are looked for in /proc")
      ->capture_default_str()
      ->check(CLI::Range(50, 60000));
  app.add_flag("--ignore-shutdown", ignoreShutdown, "Log system shutdown requests instead of stopping");
  CLI::Option* saveMsOption = app.add_option("--config-save-ms", configSaveMs,
                                             "How long saving a configuration takes (progress meanwhile)")
                                  ->capture_default_str()
                                  ->check(CLI::Range(0, 600000));
  CLI::Option* loadMsOption = app.add_option("--config-load-ms", configLoadMs,
                                             "How long loading a configuration takes (progress meanwhile)")
                                  ->capture_default_str()
                                  ->check(CLI::Range(0, 600000));
  CLI11_PARSE(app, argc, argv);

  if (printProfile) {
    std::cout << sim::ApplianceProfile::DefaultJson() << "\n";
    return 0;
  }
  if (!logFile.empty()) {
    int fd = open(logFile.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    if (fd < 0) {
      fprintf(stderr, "sessmgrd-sim: cannot open log file %s: %s\n", logFile.c_str(), strerror(errno));
      return 1;
    }
    dup2(fd, STDERR_FILENO);
    close(fd);
  }
  sim::SetLogLevel(verbose ? sim::LogLevel::kDebug : sim::LogLevel::kInfo);

  sim::ApplianceProfile profile = sim::ApplianceProfile::Default();
  if (!profilePath.empty()) {
    std::string error;
    if (!sim::ApplianceProfile::LoadFile(profilePath, &profile, &error)) {
      fprintf(stderr, "sessmgrd-sim: bad profile: %s\n", error.c_str());
      return 1;
    }
  }

  // The options win over the profile's "config" section, which wins over the defaults.
  if (saveMsOption->count()) profile.document["config"]["save_ms"] = configSaveMs;
  if (loadMsOption->count()) profile.document["config"]["load_ms"] = configLoadMs;

  // Present ourselves under the daemon's process name (clients look it up by name).
  prctl(PR_SET_NAME, "sessmgrd", 0, 0, 0);

  sim::Appliance appliance(profile, std::make_shared<sim::SteadyClock>(), stateDir);
  RestoreState(appliance);
  sim::ServerOptions options;
  options.queueName = queueName;
  options.maxMessages = maxMessages;
  options.pidCheckIntervalMs = pidCheckMs;
  options.exitOnShutdownRequest = !ignoreShutdown;
  options.queueMode = static_cast<mode_t>(strtol(queueMode.c_str(), nullptr, 8));
  if (!ParseGroup(queueGroup, &options.queueGroup)) {
    fprintf(stderr, "sessmgrd-sim: unknown group %s\n", queueGroup.c_str());
    return 1;
  }
  sim::Server server(appliance, options);
  std::string error;
  if (!server.open(&error)) {
    fprintf(stderr, "sessmgrd-sim: %s\n", error.c_str());
    return 1;
  }

  int readyFd = -1;
  if (!foreground && !Daemonize(logFile, &readyFd)) {
    fprintf(stderr, "sessmgrd-sim: cannot detach: %s\n", strerror(errno));
    server.close();
    return 1;
  }
  sim::RegisterCurrentThread("sessmgrd");

  struct sigaction action {};
  action.sa_handler = OnSignal;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  signal(SIGPIPE, SIG_IGN);

  if (!pidFile.empty() && !WritePidFile(pidFile)) {
    SIM_LOG_ERROR("cannot write pid file %s: %s", pidFile.c_str(), strerror(errno));
    server.close();
    return 1;  // the waiting parent sees the pipe close and fails too
  }
  if (markStarted) {
    std::ofstream marker(markerPath);
    if (!marker) SIM_LOG_WARN("cannot write start marker %s", markerPath.c_str());
  }
  SIM_LOG_INFO("sessmgrd-sim %d serving %s: %s, card type %d, %zu families (%zu messages), state in %s",
               getpid(), queueName.c_str(), profile.model.c_str(), profile.cardType,
               sim::HandlerRegistry::Global().families().size(), sim::HandlerRegistry::Global().size(),
               stateDir.c_str());

  if (readyFd >= 0) {
    const char ready = 1;
    (void)!write(readyFd, &ready, 1);
    close(readyFd);
  }
  server.run(g_stop);

  server.close();
  if (markStarted) std::filesystem::remove(markerPath);
  if (!pidFile.empty()) std::filesystem::remove(pidFile);
  SIM_LOG_INFO("stopped");
  return 0;
}
