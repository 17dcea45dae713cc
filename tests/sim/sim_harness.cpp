// End-to-end harness: starts sessmgrd-sim, talks raw protocol, runs smgrctl.
#include "sim_harness.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <fstream>
#include <sstream>
#include <thread>

#include "smgr_protocol.h"

namespace sim::test {
namespace {

std::atomic<int> g_counter{0};

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

}  // namespace

SimProcess::SimProcess() : SimProcess(std::string()) {}

SimProcess::SimProcess(std::string profileJson) : profileJson_(std::move(profileJson)) {
  // The simulator exits at once when the queue budget is exhausted: try again for a while.
  for (int attempt = 0; attempt < 40 && !ready_; ++attempt) {
    if (attempt) std::this_thread::sleep_for(std::chrono::milliseconds(250));
    start();
  }
}

void SimProcess::start() {
  if (!dir_.empty()) std::filesystem::remove_all(dir_);  // a failed earlier attempt
  const int n = ++g_counter;
  dir_ = std::filesystem::temp_directory_path() /
         ("sim-e2e-" + std::to_string(getpid()) + "-" + std::to_string(n));
  std::filesystem::remove_all(dir_);
  std::filesystem::create_directories(dir_);
  queue_ = "/simtest-" + std::to_string(getpid()) + "-" + std::to_string(n);
  std::ofstream(dir_ / "settings.ini") << "[API Library]\nInitIPCTimeout=1\nResponseTimeout=3000\n";
  if (!profileJson_.empty()) std::ofstream(dir_ / "profile.json") << profileJson_;
  spawn();
}

void SimProcess::spawn() {
  ready_ = false;
  pid_ = fork();
  if (pid_ == 0) {
    const std::string log = (dir_ / "sim.log").string();
    const std::string state = (dir_ / "state").string();
    const std::string marker = (dir_ / "marker").string();
    const std::string profile = (dir_ / "profile.json").string();
    const char* profileOption = profileJson_.empty() ? nullptr : "--profile";
    execl(SESSMGR_SIM_PATH, SESSMGR_SIM_PATH, "--foreground", "--verbose", "--queue", queue_.c_str(),
          "--max-messages", "4", "--state-dir", state.c_str(), "--mark-started", "--marker", marker.c_str(),
          "--log-file", log.c_str(), "--pid-check-ms", "200", profileOption, profile.c_str(),
          static_cast<char*>(nullptr));
    _exit(127);
  }
  // Ready once the marker exists (written after the queue is made).
  for (int i = 0; i < 200 && pid_ > 0; ++i) {
    if (std::filesystem::exists(dir_ / "marker")) {
      ready_ = true;
      break;
    }
    int status;
    if (waitpid(pid_, &status, WNOHANG) == pid_) {
      pid_ = -1;
      break;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(25));
  }
}

bool SimProcess::killAndRestart() {
  if (pid_ <= 0) return false;
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
  std::filesystem::remove(dir_ / "marker");  // a killed simulator leaves it behind
  ready_ = false;
  for (int attempt = 0; attempt < 40 && !ready_; ++attempt) {
    if (attempt) std::this_thread::sleep_for(std::chrono::milliseconds(250));
    spawn();
  }
  return ready();
}

SimProcess::~SimProcess() {
  if (pid_ > 0) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
  mq_unlink(queue_.c_str());
  std::filesystem::remove_all(dir_);
}

void SimProcess::exportEnvironment() const {
  setenv("SESSMGR_DAEMON_QUEUE", queue_.c_str(), 1);
  setenv("SESSMGR_STARTED_MARKER", (dir_ / "marker").c_str(), 1);
  setenv("SESSMGR_SETTINGS_FILE", (dir_ / "settings.ini").c_str(), 1);
}

std::string SimProcess::log() const { return ReadFile(dir_ / "sim.log"); }

bool SimProcess::waitForLog(const std::string& text, std::chrono::milliseconds timeout) const {
  const auto until = std::chrono::steady_clock::now() + timeout;
  while (std::chrono::steady_clock::now() < until) {
    if (log().find(text) != std::string::npos) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return false;
}

bool SimProcess::stop() {
  if (pid_ <= 0) return false;
  kill(pid_, SIGTERM);
  int status = 0;
  waitpid(pid_, &status, 0);
  pid_ = -1;
  mqd_t probe = mq_open(queue_.c_str(), O_WRONLY | O_NONBLOCK);
  const bool queueGone = probe == (mqd_t)-1 && errno == ENOENT;
  if (probe != (mqd_t)-1) mq_close(probe);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 && queueGone;
}

RawClient::RawClient(const std::string& daemonQueue, long maxMessages) {
  name_ = "/simraw-" + std::to_string(getpid()) + "-" + std::to_string(++g_counter);
  mq_attr attr{};
  attr.mq_maxmsg = maxMessages;
  attr.mq_msgsize = 8192;
  // The per-user queue budget is shared with every process of the machine: wait for room.
  for (int attempt = 0; attempt < 80; ++attempt) {
    in_ = mq_open(name_.c_str(), O_RDONLY | O_CREAT | O_NONBLOCK, 0600, &attr);
    if (in_ != (mqd_t)-1 || (errno != EMFILE && errno != ENOSPC)) break;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  out_ = mq_open(daemonQueue.c_str(), O_WRONLY | O_NONBLOCK);
}

RawClient::~RawClient() {
  if (in_ != (mqd_t)-1) mq_close(in_);
  if (out_ != (mqd_t)-1) mq_close(out_);
  mq_unlink(name_.c_str());
}

std::optional<uint32_t> RawClient::connect() {
  SMGRPROT_MSG_CONNECT_REQ request{};
  request.Header.wMsgType = SMGRPROT_USER_CONNECT_REQ;
  request.Header.wMsgSequence = nextSequence();
  request.Header.wMsgSize = sizeof request;
  request.Header.dwSrcPID = static_cast<DWORD>(getpid());
  request.Header.dwSrcUID = getuid();
  snprintf(request.Data.RxMsgQName, sizeof request.Data.RxMsgQName, "%s", name_.c_str());
  snprintf(request.Data.ProcessName, sizeof request.Data.ProcessName, "raw-client");
  if (!send(&request, sizeof request)) return std::nullopt;
  std::vector<uint8_t> reply = receive();
  if (reply.size() != sizeof(SMGRPROT_MSG_CONNECT_RSP)) return std::nullopt;
  SMGRPROT_MSG_CONNECT_RSP response;
  memcpy(&response, reply.data(), sizeof response);
  if (response.Header.wMsgType != SMGRPROT_USER_CONNECT_RSP) return std::nullopt;
  return response.Data.Result;
}

bool RawClient::send(const void* data, size_t size) {
  return out_ != (mqd_t)-1 && mq_send(out_, static_cast<const char*>(data), size, 0) == 0;
}

std::vector<uint8_t> RawClient::receive(std::chrono::milliseconds timeout) {
  std::vector<uint8_t> buffer(8192);
  const auto until = std::chrono::steady_clock::now() + timeout;
  while (in_ != (mqd_t)-1) {
    ssize_t got = mq_receive(in_, reinterpret_cast<char*>(buffer.data()), buffer.size(), nullptr);
    if (got >= 0) {
      buffer.resize(static_cast<size_t>(got));
      return buffer;
    }
    if (std::chrono::steady_clock::now() >= until) break;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return {};
}

namespace {
CommandResult RunCtlOnce(const std::vector<std::string>& args) {
  CommandResult result;
  char outPath[] = "/tmp/smgrctl-out-XXXXXX";
  char errPath[] = "/tmp/smgrctl-err-XXXXXX";
  int outFd = mkstemp(outPath);
  int errFd = mkstemp(errPath);
  pid_t child = fork();
  if (child == 0) {
    dup2(outFd, STDOUT_FILENO);
    dup2(errFd, STDERR_FILENO);
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(SMGRCTL_PATH));
    for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    execv(SMGRCTL_PATH, argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  close(outFd);
  close(errFd);
  result.out = ReadFile(outPath);
  result.err = ReadFile(errPath);
  unlink(outPath);
  unlink(errPath);
  return result;
}
}  // namespace

CommandResult RunCtl(const std::vector<std::string>& args) {
  // The library cannot make its receive queue while the machine's queue budget
  // is exhausted by other processes: wait for room, as any client would.
  CommandResult result;
  for (int attempt = 0; attempt < 40; ++attempt) {
    result = RunCtlOnce(args);
    if (result.status == 0 || result.err.find("Too many open files") == std::string::npos) break;
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
  }
  return result;
}

}  // namespace sim::test
