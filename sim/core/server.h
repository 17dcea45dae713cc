// The daemon side of the transport: the request queue, the table of connected
// clients (each reached through the receive queue it named at connect, opened
// write-only and non-blocking), the connect/disconnect/shutdown messages, and
// a housekeeping thread that notices clients whose process is gone (the
// dispatcher forgets them once their last messages are answered). Every
// family hears of a client that goes (NotifyClientDeparture, under the model
// mutex). Lock order: the model mutex before the clients mutex, never the reverse.
// The queue does not say who sent a message, so every request is taken from
// the PID its header names: a process that has not connected is not heard at
// all (the system shutdown request included), a connect naming the request
// queue itself is refused, and a disconnect that another process may have
// forged is logged as suspicious.
#pragma once

#include <mqueue.h>
#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "appliance.h"
#include "client_watch.h"
#include "dispatch.h"
#include "sim_threads.h"

namespace sim {

struct ServerOptions {
  std::string queueName = "/vdsessmgr";
  long maxMessages = 10;
  long messageSize = 8192;
  int pidCheckIntervalMs = 1000;  // the /proc check, for clients the kernel gives no pidfd for
  bool watchByPidfd = true;
  bool exitOnShutdownRequest = true;          // a system shutdown request (10000) stops the simulator
  mode_t queueMode = 0666;                    // of the request queue: who may write requests
  gid_t queueGroup = static_cast<gid_t>(-1);  // owner group of the request queue; -1 keeps ours
};

class Server : public Outbox {
 public:
  Server(Appliance& appliance, ServerOptions options);
  ~Server() override;

  // Creates the request queue (a stale queue of the same name is replaced).
  bool open(std::string* error);
  // Serves until stop is set (checked at least every 200 ms) or a shutdown request arrives.
  void run(const std::atomic<bool>& stop);
  // Closes every client queue and removes the request queue.
  void close();

  size_t clientCount();
  std::vector<ClientInfo> clients();

  // Outbox
  bool sendTo(pid_t pid, const void* data, size_t size) override;
  size_t messageLimit(pid_t pid) override;

  // The lock that serialises the model between the dispatcher and housekeeping.
  TrackedMutex& modelMutex() { return modelMutex_; }

 private:
  struct Client {
    ClientInfo info;
    mqd_t queue = -1;
    long messageSize = 0;
    uint64_t dropped = 0;
  };

  void handleMessage(const uint8_t* message, size_t size);
  void handleConnect(const uint8_t* message, size_t size);
  void handleDisconnect(const SMGRPROT_HEADER& header, size_t size);
  // Forgets a client; a dead one's receive queue is removed too (nobody else will).
  void forgetClient(pid_t pid, const char* why, bool removeDeadQueue = false);
  // Drops a message from a process that is not connected (logged once per PID).
  void dropUnconnected(DWORD pid, WORD type);
  // Logs disconnects whose process and receive queue were both still there a moment later.
  void checkDisconnects();
  // Drops a client from the table (clients mutex held) and queues its departure.
  void dropClientLocked(std::map<pid_t, Client>::iterator it);
  // Tells the families of the queued departures; the caller holds the model mutex.
  void notifyDeparturesLocked();
  // Forgets the clients whose death housekeeping reported (dispatcher thread).
  void forgetDeadClients();
  void housekeeping(const std::atomic<bool>& stop);

  Appliance& appliance_;
  ServerOptions options_;
  Dispatcher dispatcher_;
  mqd_t queue_ = -1;
  std::vector<uint8_t> buffer_;
  TrackedMutex modelMutex_{SourceLocation::current()};
  TrackedMutex clientsMutex_{SourceLocation::current()};
  std::map<pid_t, Client> clients_;
  std::vector<pid_t> departed_;  // guarded by clientsMutex_
  std::vector<pid_t> dead_;      // noticed by housekeeping, guarded by clientsMutex_
  std::chrono::steady_clock::time_point deadSince_;
  std::set<DWORD> unconnectedLogged_;  // dispatcher thread only
  struct DisconnectCheck {
    pid_t pid;
    std::string queueName;
    std::chrono::steady_clock::time_point due;
  };
  std::vector<DisconnectCheck> disconnectChecks_;  // dispatcher thread only
  ClientWatch watch_;
  std::atomic<bool> shutdownRequested_{false};
};

}  // namespace sim
