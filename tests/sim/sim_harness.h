// End-to-end harness: a real sessmgrd-sim process on a private queue with a
// private marker, state folder and settings file; a raw client that speaks
// the protocol byte for byte; and a runner for smgrctl.
#pragma once

#include <mqueue.h>
#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace sim::test {

class SimProcess {
 public:
  SimProcess();  // starts the simulator; ASSERTs in the caller check ready()
  // Same, with this JSON document as --profile (e.g. an ST 2110 unit).
  explicit SimProcess(std::string profileJson);
  ~SimProcess();
  bool ready() const { return pid_ > 0 && ready_; }
  pid_t pid() const { return pid_; }
  const std::string& queueName() const { return queue_; }
  const std::filesystem::path& dir() const { return dir_; }
  std::filesystem::path stillImageDir() const { return dir_ / "state" / "still_images"; }
  // Environment for library clients: the queue, marker and settings file of this simulator.
  void exportEnvironment() const;
  std::string log() const;
  // Waits until the log contains text (the simulator logs every client it forgets).
  bool waitForLog(const std::string& text,
                  std::chrono::milliseconds timeout = std::chrono::milliseconds(5000)) const;
  // SIGTERM and wait; true when it exited 0 and removed its queue.
  bool stop();
  // SIGKILL (no clean-up at all), then a new simulator on the same queue and
  // state folder; true once it is ready.
  bool killAndRestart();

 private:
  void start();
  void spawn();

  std::filesystem::path dir_;
  std::string queue_;
  std::string profileJson_;
  pid_t pid_ = -1;
  bool ready_ = false;
};

// A client that builds requests itself. Its receive queue is small (4 messages).
class RawClient {
 public:
  explicit RawClient(const std::string& daemonQueue, long maxMessages = 4);
  ~RawClient();
  const std::string& queueName() const { return name_; }
  // Connect request (type 1) and its answer; the connect result, or nullopt when nothing came.
  std::optional<uint32_t> connect();
  bool send(const void* data, size_t size);
  // The next message, or empty after the timeout.
  std::vector<uint8_t> receive(std::chrono::milliseconds timeout = std::chrono::milliseconds(2000));
  uint16_t nextSequence() { return ++sequence_; }

 private:
  std::string name_;
  mqd_t in_ = (mqd_t)-1;
  mqd_t out_ = (mqd_t)-1;
  uint16_t sequence_ = 100;
};

struct CommandResult {
  int status = -1;
  std::string out;
  std::string err;
};
// Runs smgrctl with these arguments in the current environment.
CommandResult RunCtl(const std::vector<std::string>& args);

}  // namespace sim::test
