// The --watch loop shared by the nouns' stats commands: print, wait, print
// again until interrupted or the count is reached, with a time stamp line
// before each table.
#pragma once

#include <signal.h>

#include <CLI/CLI.hpp>
#include <atomic>
#include <chrono>
#include <ctime>
#include <iostream>
#include <thread>

#include "output.h"

namespace smgrctl {

inline std::atomic<bool> g_watchInterrupted{false};

// The -w/--watch and -n/--count options of a stats command: a count without
// --watch is a usage error, for every noun alike.
inline void AddWatchOptions(CLI::App* command, double& seconds, int& count) {
  CLI::Option* watch = command
                           ->add_option("-w,--watch", seconds,
                                        "Repeat every SECONDS until interrupted (--json: one line each)")
                           ->check(CLI::Range(0.1, 3600.0));
  command->add_option("-n,--count", count, "With --watch: stop after this many rounds")
      ->check(CLI::Range(1, 1000000))
      ->needs(watch);
}

// Runs print() once, or every seconds until SIGINT/SIGTERM or count rounds;
// the first non-zero status ends it.
template <typename Print>
int Watch(double seconds, int count, Print print) {
  if (seconds <= 0) return print();
  struct sigaction action {};
  action.sa_handler = [](int) { g_watchInterrupted = true; };
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  for (int round = 0; !g_watchInterrupted && (count <= 0 || round < count); ++round) {
    if (round) {
      const auto until = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
      while (!g_watchInterrupted && std::chrono::steady_clock::now() < until)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
      if (g_watchInterrupted) break;
      if (!Globals().json) std::cout << "\n";
    }
    if (!Globals().json) {
      const time_t now = time(nullptr);
      char stamp[16];
      strftime(stamp, sizeof stamp, "%H:%M:%S", localtime(&now));
      std::cout << "--- " << stamp << "\n";
    }
    if (int status = print()) return status;
    std::cout.flush();
  }
  return 0;
}

}  // namespace smgrctl
