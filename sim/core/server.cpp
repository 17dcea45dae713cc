// Request queue, client table and housekeeping of the simulator. Sends never
// block: a client whose queue is full loses that message, a client whose
// queue or process is gone is forgotten.
#include "server.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "persistence.h"
#include "sim_log.h"

namespace sim {
namespace {

std::string BoundedString(const char* text, size_t size) { return std::string(text, strnlen(text, size)); }

unsigned AsUnsigned(pid_t pid) { return static_cast<unsigned>(pid); }

bool QueueExists(const std::string& name) {
  mqd_t probe = mq_open(name.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
  if (probe != (mqd_t)-1) {
    mq_close(probe);
    return true;
  }
  return errno != ENOENT;
}

// A legitimate client removes its receive queue right after its disconnect indication.
constexpr auto kDisconnectGrace = std::chrono::milliseconds(300);
constexpr size_t kUnconnectedLogLimit = 1024;

}  // namespace

Server::Server(Appliance& appliance, ServerOptions options)
    : appliance_(appliance),
      options_(std::move(options)),
      dispatcher_(appliance_, *this),
      watch_(std::chrono::milliseconds(options_.pidCheckIntervalMs), options_.watchByPidfd) {}

Server::~Server() { close(); }

bool Server::open(std::string* error) {
  mq_attr attr{};
  attr.mq_maxmsg = options_.maxMessages;
  attr.mq_msgsize = options_.messageSize;
  queue_ = mq_open(options_.queueName.c_str(), O_RDONLY | O_CREAT | O_EXCL, options_.queueMode, &attr);
  if (queue_ == (mqd_t)-1 && errno == EEXIST) {
    SIM_LOG_WARN("request queue %s already exists (left by an earlier run?), replacing it",
                 options_.queueName.c_str());
    mq_unlink(options_.queueName.c_str());
    queue_ = mq_open(options_.queueName.c_str(), O_RDONLY | O_CREAT | O_EXCL, options_.queueMode, &attr);
  }
  if (queue_ == (mqd_t)-1) {
    *error = "cannot create request queue " + options_.queueName + ": " + strerror(errno);
    return false;
  }
  // Clients open the queue write-only whatever our umask says.
  if (options_.queueGroup != static_cast<gid_t>(-1) &&
      fchown(queue_, static_cast<uid_t>(-1), options_.queueGroup) != 0) {
    *error = "cannot give request queue " + options_.queueName + " to group " +
             std::to_string(options_.queueGroup) + ": " + strerror(errno);
    close();
    return false;
  }
  fchmod(queue_, options_.queueMode);
  mq_attr actual{};
  mq_getattr(queue_, &actual);
  buffer_.assign(static_cast<size_t>(actual.mq_msgsize), 0);
  SIM_LOG_INFO("request queue %s ready (%ld messages of %ld bytes, mode %04o)", options_.queueName.c_str(),
               actual.mq_maxmsg, actual.mq_msgsize, static_cast<unsigned>(options_.queueMode));
  return true;
}

void Server::close() {
  {
    TrackedLock lock(clientsMutex_);
    for (auto& [pid, client] : clients_) mq_close(client.queue);
    clients_.clear();
  }
  if (queue_ != (mqd_t)-1) {
    mq_close(queue_);
    mq_unlink(options_.queueName.c_str());
    queue_ = (mqd_t)-1;
    SIM_LOG_INFO("request queue %s removed", options_.queueName.c_str());
  }
}

void Server::run(const std::atomic<bool>& stop) {
  std::atomic<bool> stopHousekeeping{false};
  std::thread housekeeper = StartThread("smgr-housekeep", [&] { housekeeping(stopHousekeeping); });
  ThreadRecord* self = CurrentThread();

  while (!stop.load() && !shutdownRequested_.load()) {
    timespec deadline{};
    clock_gettime(CLOCK_REALTIME, &deadline);
    deadline.tv_nsec += 200 * 1000 * 1000;
    if (deadline.tv_nsec >= 1000000000L) {
      deadline.tv_sec += 1;
      deadline.tv_nsec -= 1000000000L;
    }
    if (self) self->setState(kThreadWaiting);
    ssize_t received =
        mq_timedreceive(queue_, reinterpret_cast<char*>(buffer_.data()), buffer_.size(), nullptr, &deadline);
    if (self) self->beat();
    if (received >= 0) {
      if (self) self->setState(kThreadBusy);
      handleMessage(buffer_.data(), static_cast<size_t>(received));
    } else if (errno != ETIMEDOUT && errno != EINTR) {
      SIM_LOG_ERROR("mq_receive on %s failed: %s", options_.queueName.c_str(), strerror(errno));
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    } else {
      FlushLogRepeats();
    }
    forgetDeadClients();
    checkDisconnects();
  }

  stopHousekeeping = true;
  watch_.wake();
  housekeeper.join();
}

void Server::handleMessage(const uint8_t* message, size_t size) {
  if (size < kHeaderSize) {
    SIM_LOG_WARN("%zu-byte message is shorter than a header, dropped", size);
    return;
  }
  SMGRPROT_HEADER header;
  memcpy(&header, message, kHeaderSize);

  if (header.wMsgType == SMGRPROT_USER_CONNECT_REQ) {
    handleConnect(message, size);
    return;
  }
  ClientInfo client;
  {
    TrackedLock lock(clientsMutex_);
    auto it = clients_.find(static_cast<pid_t>(header.dwSrcPID));
    if (it != clients_.end()) client = it->second.info;
  }
  if (client.pid == 0) {
    dropUnconnected(header.dwSrcPID, header.wMsgType);
    return;
  }

  switch (header.wMsgType) {
    case SMGRPROT_USER_DISCONNECT_IND:
      handleDisconnect(header, size);
      return;
    case SMGRPROT_SYSTEM_SHUTDOWN_REQ:
      SIM_LOG_INFO("system shutdown requested by pid %u%s", header.dwSrcPID,
                   options_.exitOnShutdownRequest ? ", stopping" : " (ignored)");
      if (options_.exitOnShutdownRequest) shutdownRequested_ = true;
      return;
    default:
      break;
  }
  client.uid = header.dwSrcUID;
  TrackedLock model(modelMutex_);
  dispatcher_.dispatch(client, message, size);
  notifyDeparturesLocked();  // a client whose queue failed during the reply
}

void Server::dropUnconnected(DWORD pid, WORD type) {
  if (unconnectedLogged_.size() >= kUnconnectedLogLimit) unconnectedLogged_.clear();
  if (!unconnectedLogged_.insert(pid).second) return;
  SIM_LOG_WARN(
      "message type %u from pid %u, which is not connected: dropped (and whatever else it sends "
      "until it connects)",
      type, pid);
}

void Server::handleConnect(const uint8_t* message, size_t size) {
  SMGRPROT_MSG_CONNECT_REQ request{};
  memcpy(&request, message, size < sizeof request ? size : sizeof request);
  const size_t nameEnd = offsetof(SMGRPROT_MSG_CONNECT_REQ, Data.RxMsgQName) + sizeof request.Data.RxMsgQName;
  if (size < nameEnd) {
    SIM_LOG_WARN("connect request of %zu bytes carries no queue name, dropped", size);
    return;
  }
  std::string queueName = BoundedString(request.Data.RxMsgQName, sizeof request.Data.RxMsgQName);
  std::string processName = BoundedString(request.Data.ProcessName, sizeof request.Data.ProcessName);
  pid_t pid = static_cast<pid_t>(request.Header.dwSrcPID);
  if (queueName.size() < 2 || queueName[0] != '/' || queueName.find('/', 1) != std::string::npos) {
    SIM_LOG_WARN("connect request from pid %u names no valid queue (\"%.32s\"), dropped", AsUnsigned(pid),
                 queueName.c_str());
    return;
  }
  if (queueName == options_.queueName) {
    // Our replies would land in our own request queue: nowhere to answer, so refused unanswered.
    SIM_LOG_WARN("connect request from pid %u names the request queue %s as its receive queue, refusing (%u)",
                 AsUnsigned(pid), queueName.c_str(),
                 static_cast<unsigned>(SMGRPROT_RESULT_INVALID_PARAMETERS));
    return;
  }

  mqd_t queue = mq_open(queueName.c_str(), O_WRONLY | O_NONBLOCK);
  if (queue == (mqd_t)-1) {
    SIM_LOG_WARN("connect from pid %u: cannot open its queue %s: %s", AsUnsigned(pid), queueName.c_str(),
                 strerror(errno));
    return;
  }
  mq_attr attr{};
  mq_getattr(queue, &attr);

  SMGRPROT_MSG_CONNECT_RSP response{};
  response.Header.wMsgType = SMGRPROT_USER_CONNECT_RSP;
  response.Header.wMsgSequence = request.Header.wMsgSequence;
  response.Header.wMsgSize = sizeof response;
  response.Header.dwSrcPID = static_cast<DWORD>(getpid());
  response.Header.dwSrcUID = static_cast<DWORD>(getuid());
  response.Data.enCardType = appliance_.profile().cardType;

  if (size != sizeof(SMGRPROT_MSG_CONNECT_REQ) || request.Header.wMsgSize != size) {
    SIM_LOG_WARN("connect request from pid %u has %zu bytes (wMsgSize %u), refusing", AsUnsigned(pid), size,
                 request.Header.wMsgSize);
    response.Data.Result = SMGRPROT_RESULT_INVALID_PARAMETERS;
    mq_send(queue, reinterpret_cast<const char*>(&response), sizeof response, 0);
    mq_close(queue);
    return;
  }
  if (!watch_.watch(pid)) {
    SIM_LOG_WARN("connect request names pid %u, which does not exist, refusing", AsUnsigned(pid));
    response.Data.Result = SMGRPROT_RESULT_INVALID_PARAMETERS;
    mq_send(queue, reinterpret_cast<const char*>(&response), sizeof response, 0);
    mq_close(queue);
    return;
  }

  {
    TrackedLock lock(clientsMutex_);
    auto it = clients_.find(pid);
    if (it != clients_.end()) {
      SIM_LOG_INFO("pid %u connects again, replacing queue %s by %s", AsUnsigned(pid),
                   it->second.info.queueName.c_str(), queueName.c_str());
      // What the families kept for the earlier connection goes with it.
      mq_close(it->second.queue);
      clients_.erase(it);
      departed_.push_back(pid);
    }
    Client& client = clients_[pid];
    client.info = ClientInfo{pid, static_cast<uid_t>(request.Header.dwSrcUID), queueName, processName};
    client.queue = queue;
    client.messageSize = attr.mq_msgsize;
  }
  unconnectedLogged_.erase(static_cast<DWORD>(pid));
  SIM_LOG_INFO("client connected: pid %u (%s), queue %s", AsUnsigned(pid),
               processName.empty() ? "?" : processName.c_str(), queueName.c_str());
  response.Data.Result = SMGRPROT_RESULT_SUCCESS;
  sendTo(pid, &response, sizeof response);
  TrackedLock model(modelMutex_);
  notifyDeparturesLocked();
}

void Server::handleDisconnect(const SMGRPROT_HEADER& header, size_t size) {
  if (size != sizeof(SMGRPROT_MSG_DISCONNECT_IND)) {
    SIM_LOG_WARN("disconnect indication of %zu bytes from pid %u (expected %zu), honoured anyway", size,
                 header.dwSrcPID, sizeof(SMGRPROT_MSG_DISCONNECT_IND));
  }
  const pid_t pid = static_cast<pid_t>(header.dwSrcPID);
  std::string queueName;
  {
    TrackedLock lock(clientsMutex_);
    auto it = clients_.find(pid);
    if (it != clients_.end()) queueName = it->second.info.queueName;
  }
  forgetClient(pid, "disconnected");
  // Anyone may send a disconnect naming another client's PID; it cannot be told
  // apart from the real one, but a client that really left is gone or has
  // removed its queue a moment later.
  if (!queueName.empty())
    disconnectChecks_.push_back({pid, queueName, std::chrono::steady_clock::now() + kDisconnectGrace});
}

void Server::checkDisconnects() {
  const auto now = std::chrono::steady_clock::now();
  for (auto it = disconnectChecks_.begin(); it != disconnectChecks_.end();) {
    if (it->due > now) {
      ++it;
      continue;
    }
    if (IsProcessAlive(it->pid) && QueueExists(it->queueName)) {
      SIM_LOG_WARN(
          "suspicious disconnect indication for pid %u: the process lives and its queue %s still "
          "exists (sent by another process?)",
          AsUnsigned(it->pid), it->queueName.c_str());
    }
    it = disconnectChecks_.erase(it);
  }
}

void Server::forgetClient(pid_t pid, const char* why, bool removeDeadQueue) {
  {
    TrackedLock lock(clientsMutex_);
    auto it = clients_.find(pid);
    if (it == clients_.end()) {
      SIM_LOG_DEBUG("pid %u %s but was not connected", AsUnsigned(pid), why);
      return;
    }
    SIM_LOG_INFO("client pid %u (%s) %s, forgotten", AsUnsigned(pid), it->second.info.processName.c_str(),
                 why);
    const std::string queueName = it->second.info.queueName;
    dropClientLocked(it);
    if (removeDeadQueue && !IsProcessAlive(pid)) {
      if (mq_unlink(queueName.c_str()) == 0)
        SIM_LOG_INFO("receive queue %s of dead pid %u removed", queueName.c_str(), AsUnsigned(pid));
      else if (errno != ENOENT)
        SIM_LOG_WARN("cannot remove receive queue %s of dead pid %u: %s", queueName.c_str(), AsUnsigned(pid),
                     strerror(errno));
    }
  }
  TrackedLock model(modelMutex_);
  notifyDeparturesLocked();
}

void Server::dropClientLocked(std::map<pid_t, Client>::iterator it) {
  const pid_t pid = it->first;
  mq_close(it->second.queue);
  clients_.erase(it);
  watch_.unwatch(pid);
  departed_.push_back(pid);
}

void Server::notifyDeparturesLocked() {
  std::vector<pid_t> departed;
  {
    TrackedLock lock(clientsMutex_);
    departed.swap(departed_);
  }
  for (pid_t pid : departed) NotifyClientDeparture(appliance_, pid);
}

bool Server::sendTo(pid_t pid, const void* data, size_t size) {
  TrackedLock lock(clientsMutex_);
  auto it = clients_.find(pid);
  if (it == clients_.end()) {
    SIM_LOG_WARN("reply for pid %u, which is no longer connected, dropped", AsUnsigned(pid));
    return false;
  }
  Client& client = it->second;
  if (static_cast<long>(size) > client.messageSize) {
    SIM_LOG_ERROR("reply of %zu bytes exceeds the %ld-byte messages of %s, dropped", size, client.messageSize,
                  client.info.queueName.c_str());
    return false;
  }
  if (mq_send(client.queue, static_cast<const char*>(data), size, 0) == 0) return true;
  int err = errno;
  if (err == EAGAIN) {
    ++client.dropped;
    SIM_LOG_WARN("queue %s of pid %u is full, reply dropped (%llu so far)", client.info.queueName.c_str(),
                 AsUnsigned(pid), static_cast<unsigned long long>(client.dropped));
    return false;
  }
  SIM_LOG_WARN("send to %s (pid %u) failed: %s, forgetting the client", client.info.queueName.c_str(),
               AsUnsigned(pid), strerror(err));
  mq_close(client.queue);
  clients_.erase(it);
  return false;
}

size_t Server::messageLimit(pid_t pid) {
  TrackedLock lock(clientsMutex_);
  auto it = clients_.find(pid);
  return it == clients_.end() ? 0 : static_cast<size_t>(it->second.messageSize);
}

size_t Server::clientCount() {
  TrackedLock lock(clientsMutex_);
  return clients_.size();
}

std::vector<ClientInfo> Server::clients() {
  TrackedLock lock(clientsMutex_);
  std::vector<ClientInfo> out;
  for (auto& [pid, client] : clients_) out.push_back(client.info);
  return out;
}

void Server::housekeeping(const std::atomic<bool>& stop) {
  ThreadRecord* self = CurrentThread();
  while (!stop.load()) {
    if (self) self->setState(kThreadWaiting);
    std::vector<pid_t> gone = watch_.waitForDeaths(std::chrono::milliseconds(1000));
    if (self) {
      self->beat();
      self->setState(kThreadBusy);
    }
    if (gone.empty()) continue;
    TrackedLock lock(clientsMutex_);
    if (dead_.empty()) deadSince_ = std::chrono::steady_clock::now();
    dead_.insert(dead_.end(), gone.begin(), gone.end());
  }
}

void Server::forgetDeadClients() {
  std::vector<pid_t> dead;
  std::chrono::steady_clock::time_point since;
  {
    TrackedLock lock(clientsMutex_);
    if (dead_.empty()) return;
    dead.swap(dead_);
    since = deadSince_;
  }
  // What a client sent before it died (its disconnect indication, say) is
  // answered first: it is gone once the request queue has been emptied, or
  // after a second of a queue that never empties.
  mq_attr attr{};
  if (mq_getattr(queue_, &attr) == 0 && attr.mq_curmsgs > 0 &&
      std::chrono::steady_clock::now() - since < std::chrono::seconds(1)) {
    TrackedLock lock(clientsMutex_);
    deadSince_ = dead_.empty() ? since : std::min(since, deadSince_);
    dead_.insert(dead_.end(), dead.begin(), dead.end());
    return;
  }
  for (pid_t pid : dead) forgetClient(pid, "is gone", true);
}

}  // namespace sim
