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
  queue_ = mq_open(options_.queueName.c_str(), O_RDONLY | O_CREAT | O_EXCL, 0666, &attr);
  if (queue_ == (mqd_t)-1 && errno == EEXIST) {
    SIM_LOG_WARN("request queue %s already exists (left by an earlier run?), replacing it",
                 options_.queueName.c_str());
    mq_unlink(options_.queueName.c_str());
    queue_ = mq_open(options_.queueName.c_str(), O_RDONLY | O_CREAT | O_EXCL, 0666, &attr);
  }
  if (queue_ == (mqd_t)-1) {
    *error = "cannot create request queue " + options_.queueName + ": " + strerror(errno);
    return false;
  }
  // Clients open the queue write-only whatever our umask says.
  fchmod(queue_, 0666);
  mq_attr actual{};
  mq_getattr(queue_, &actual);
  buffer_.assign(static_cast<size_t>(actual.mq_msgsize), 0);
  SIM_LOG_INFO("request queue %s ready (%ld messages of %ld bytes)", options_.queueName.c_str(),
               actual.mq_maxmsg, actual.mq_msgsize);
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
    }
    forgetDeadClients();
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

  switch (header.wMsgType) {
    case SMGRPROT_USER_CONNECT_REQ:
      handleConnect(message, size);
      return;
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

  ClientInfo client;
  {
    TrackedLock lock(clientsMutex_);
    auto it = clients_.find(static_cast<pid_t>(header.dwSrcPID));
    if (it == clients_.end()) {
      SIM_LOG_WARN("message type %u from pid %u, which is not connected: dropped", header.wMsgType,
                   header.dwSrcPID);
      return;
    }
    client = it->second.info;
  }
  client.uid = header.dwSrcUID;
  TrackedLock model(modelMutex_);
  dispatcher_.dispatch(client, message, size);
  notifyDeparturesLocked();  // a client whose queue failed during the reply
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
    SIM_LOG_WARN("connect request from pid %d names no valid queue (\"%.32s\"), dropped", pid,
                 queueName.c_str());
    return;
  }

  mqd_t queue = mq_open(queueName.c_str(), O_WRONLY | O_NONBLOCK);
  if (queue == (mqd_t)-1) {
    SIM_LOG_WARN("connect from pid %d: cannot open its queue %s: %s", pid, queueName.c_str(),
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
    SIM_LOG_WARN("connect request from pid %d has %zu bytes (wMsgSize %u), refusing", pid, size,
                 request.Header.wMsgSize);
    response.Data.Result = SMGRPROT_RESULT_INVALID_PARAMETERS;
    mq_send(queue, reinterpret_cast<const char*>(&response), sizeof response, 0);
    mq_close(queue);
    return;
  }
  if (!watch_.watch(pid)) {
    SIM_LOG_WARN("connect request names pid %d, which does not exist, refusing", pid);
    response.Data.Result = SMGRPROT_RESULT_INVALID_PARAMETERS;
    mq_send(queue, reinterpret_cast<const char*>(&response), sizeof response, 0);
    mq_close(queue);
    return;
  }

  {
    TrackedLock lock(clientsMutex_);
    auto it = clients_.find(pid);
    if (it != clients_.end()) {
      SIM_LOG_INFO("pid %d connects again, replacing queue %s by %s", pid, it->second.info.queueName.c_str(),
                   queueName.c_str());
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
  SIM_LOG_INFO("client connected: pid %d (%s), queue %s", pid,
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
  forgetClient(static_cast<pid_t>(header.dwSrcPID), "disconnected");
}

void Server::forgetClient(pid_t pid, const char* why) {
  {
    TrackedLock lock(clientsMutex_);
    auto it = clients_.find(pid);
    if (it == clients_.end()) {
      SIM_LOG_DEBUG("pid %d %s but was not connected", pid, why);
      return;
    }
    SIM_LOG_INFO("client pid %d (%s) %s, forgotten", pid, it->second.info.processName.c_str(), why);
    dropClientLocked(it);
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
    SIM_LOG_WARN("reply for pid %d, which is no longer connected, dropped", pid);
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
    SIM_LOG_WARN("queue %s of pid %d is full, reply dropped (%llu so far)", client.info.queueName.c_str(),
                 pid, static_cast<unsigned long long>(client.dropped));
    return false;
  }
  SIM_LOG_WARN("send to %s (pid %d) failed: %s, forgetting the client", client.info.queueName.c_str(), pid,
               strerror(err));
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
  for (pid_t pid : dead) forgetClient(pid, "is gone");
}

}  // namespace sim
