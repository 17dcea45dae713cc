// smgr-exporter: serves the session manager daemon's streams, encoders and
// health as Prometheus metrics on GET /metrics. A poll thread asks the daemon
// at the interval; scrapes read the last snapshot.
#include <prometheus/exposer.h>
#include <signal.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "poller.h"

int main(int argc, char** argv) {
  CLI::App app{"smgr-exporter: the session manager daemon's objects as Prometheus metrics"};
  std::string listen = "127.0.0.1:9464";
  double intervalSeconds = 5;
  app.add_option("--listen", listen, "ADDRESS:PORT to serve /metrics on (loopback only by default)")
      ->capture_default_str();
  app.add_option("--interval", intervalSeconds, "Seconds between polls of the daemon")
      ->capture_default_str()
      ->check(CLI::Range(0.1, 3600.0));
  // The queue must be in the environment before the library starts (in the poll thread).
  app.add_option_function<std::string>(
      "--queue", [](const std::string& queue) { setenv("SESSMGR_DAEMON_QUEUE", queue.c_str(), 1); },
      "Daemon request queue (sets SESSMGR_DAEMON_QUEUE)");
  app.set_version_flag("--version", "smgr-exporter " SMGR_EXPORTER_VERSION);
  CLI11_PARSE(app, argc, argv);

  // SIGINT and SIGTERM end the exporter cleanly: this thread waits for them.
  sigset_t stopSignals;
  sigemptyset(&stopSignals);
  sigaddset(&stopSignals, SIGINT);
  sigaddset(&stopSignals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);

  exporter::Poller poller;
  std::unique_ptr<prometheus::Exposer> exposer;
  try {
    exposer = std::make_unique<prometheus::Exposer>(listen, 2);
  } catch (const std::exception& e) {
    std::cerr << "smgr-exporter: cannot listen on " << listen << ": " << e.what() << "\n";
    return 1;
  }
  exposer->RegisterCollectable(poller.health());
  exposer->RegisterCollectable(poller.snapshot());
  std::cerr << "smgr-exporter: serving http://" << listen << "/metrics, polling every " << intervalSeconds
            << " s\n";

  const auto interval =
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::duration<double>(intervalSeconds));
  std::thread pollThread([&poller, interval] { poller.run(interval); });
  int received = 0;
  sigwait(&stopSignals, &received);
  poller.stop();
  pollThread.join();
  return 0;
}
