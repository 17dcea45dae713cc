// Repeating a read command every few seconds until interrupted (--watch),
// for the commands of the session and temperature nouns.
#pragma once

#include <signal.h>

#include <atomic>
#include <chrono>
#include <ctime>
#include <iostream>
#include <thread>

#include "output.h"

namespace smgrctl {

inline std::atomic<bool> g_watchInterrupted{false};

// Runs print once, or every watchSeconds (a time stamp line before each text
// table) until SIGINT/SIGTERM or count rounds; the first failing status ends it.
template <typename Print>
int RepeatEvery(double watchSeconds, int count, Print print) {
  if (watchSeconds <= 0) return print();
  struct sigaction action {};
  action.sa_handler = [](int) { g_watchInterrupted = true; };
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  for (int round = 0; !g_watchInterrupted && (count <= 0 || round < count); ++round) {
    if (round) {
      auto until = std::chrono::steady_clock::now() + std::chrono::duration<double>(watchSeconds);
      while (!g_watchInterrupted && std::chrono::steady_clock::now() < until)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
      if (g_watchInterrupted) break;
    }
    if (!Globals().json) {
      time_t now = time(nullptr);
      char stamp[16];
      strftime(stamp, sizeof stamp, "%H:%M:%S", localtime(&now));
      std::cout << (round ? "\n" : "") << "--- " << stamp << "\n";
    }
    if (int status = print()) return status;
    std::cout.flush();
  }
  return 0;
}

}  // namespace smgrctl
