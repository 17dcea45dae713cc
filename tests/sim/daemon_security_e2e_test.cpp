// What a careless or hostile local process can do to sessmgrd-sim: requests
// from processes that never connected, a connect naming the request queue, a
// forged disconnect, junk that would flood the log, a client killed with its
// queue left behind, and the daemon-mode start that scripts rely on.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <thread>

#include "sim_harness.h"
#include "smgr_protocol.h"

namespace sim::test {
namespace {

using std::chrono::milliseconds;

template <typename T>
T Make(WORD type, RawClient& client, DWORD pid = static_cast<DWORD>(getpid())) {
  T message{};
  message.Header.wMsgType = type;
  message.Header.wMsgSequence = client.nextSequence();
  message.Header.wMsgSize = sizeof(T);
  message.Header.dwSrcPID = pid;
  message.Header.dwSrcUID = getuid();
  return message;
}

// Sends through the 4-message request queue, waiting while it is full.
void SendPatiently(RawClient& client, const void* data, size_t size) {
  for (int i = 0; i < 500 && !client.send(data, size); ++i) std::this_thread::sleep_for(milliseconds(2));
}

bool QueueExists(const std::string& name) {
  mqd_t probe = mq_open(name.c_str(), O_WRONLY | O_NONBLOCK);
  if (probe == (mqd_t)-1) return errno != ENOENT;
  mq_close(probe);
  return true;
}

size_t Count(const std::string& text, const std::string& what) {
  size_t n = 0;
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
  return n;
}

bool StillServes(RawClient& client) {
  auto request = Make<SMGRPROT_MSG_DEBUG_GETINFO_REQ>(SMGRPROT_DEBUG_GETINFO_REQ, client);
  if (!client.send(&request, sizeof request)) return false;
  std::vector<uint8_t> reply = client.receive();
  SMGRPROT_HEADER header{};
  if (reply.size() >= sizeof header) memcpy(&header, reply.data(), sizeof header);
  return header.wMsgType == SMGRPROT_DEBUG_GETINFO_RSP && header.wMsgSequence == request.Header.wMsgSequence;
}

class Security : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(sim_.ready()) << sim_.log(); }
  SimProcess sim_;
};

TEST_F(Security, ShutdownAndRequestsFromAProcessThatNeverConnectedAreDroppedAndLoggedOnce) {
  RawClient stranger(sim_.queueName());
  for (int i = 0; i < 3; ++i) {
    auto shutdown = Make<SMGRPROT_MSG_SYSTEM_SHUTDOWN_REQ>(SMGRPROT_SYSTEM_SHUTDOWN_REQ, stranger);
    SendPatiently(stranger, &shutdown, sizeof shutdown);
    auto request = Make<SMGRPROT_MSG_DEBUG_GETINFO_REQ>(SMGRPROT_DEBUG_GETINFO_REQ, stranger);
    SendPatiently(stranger, &request, sizeof request);
  }
  EXPECT_TRUE(stranger.receive(milliseconds(300)).empty());
  ASSERT_EQ(stranger.connect(), 0u) << sim_.log();  // still running
  EXPECT_TRUE(StillServes(stranger));
  EXPECT_EQ(Count(sim_.log(), "which is not connected"), 1u) << sim_.log();
  EXPECT_EQ(Count(sim_.log(), "shutdown requested"), 0u);
}

TEST_F(Security, ConnectNamingTheRequestQueueIsRefused) {
  RawClient client(sim_.queueName());
  auto connect = Make<SMGRPROT_MSG_CONNECT_REQ>(SMGRPROT_USER_CONNECT_REQ, client);
  snprintf(connect.Data.RxMsgQName, sizeof connect.Data.RxMsgQName, "%s", sim_.queueName().c_str());
  ASSERT_TRUE(client.send(&connect, sizeof connect));
  EXPECT_TRUE(sim_.waitForLog("as its receive queue, refusing (2)", milliseconds(3000))) << sim_.log();
  // Not connected: nothing is answered, into the request queue or anywhere else.
  auto request = Make<SMGRPROT_MSG_DEBUG_GETINFO_REQ>(SMGRPROT_DEBUG_GETINFO_REQ, client);
  ASSERT_TRUE(client.send(&request, sizeof request));
  EXPECT_TRUE(sim_.waitForLog("which is not connected")) << sim_.log();
  ASSERT_EQ(client.connect(), 0u);
  EXPECT_TRUE(StillServes(client));
}

TEST_F(Security, DisconnectOfALiveClientWithItsQueueIsLoggedAsSuspicious) {
  RawClient victim(sim_.queueName());
  ASSERT_EQ(victim.connect(), 0u);
  auto forged = Make<SMGRPROT_MSG_DISCONNECT_IND>(SMGRPROT_USER_DISCONNECT_IND, victim);
  ASSERT_TRUE(victim.send(&forged, sizeof forged));
  EXPECT_TRUE(sim_.waitForLog("suspicious disconnect indication for pid " + std::to_string(getpid())))
      << sim_.log();
}

TEST_F(Security, LogEscapesClientBytesPrintsPidsUnsignedAndCountsRepeats) {
  RawClient client(sim_.queueName());
  auto connect = Make<SMGRPROT_MSG_CONNECT_REQ>(SMGRPROT_USER_CONNECT_REQ, client);
  snprintf(connect.Data.RxMsgQName, sizeof connect.Data.RxMsgQName, "/bad\x1b[2J\n");
  ASSERT_TRUE(client.send(&connect, sizeof connect));
  auto foreign = Make<SMGRPROT_MSG_CONNECT_REQ>(SMGRPROT_USER_CONNECT_REQ, client, 0xFFFFFFF0u);
  snprintf(foreign.Data.RxMsgQName, sizeof foreign.Data.RxMsgQName, "%s", client.queueName().c_str());
  ASSERT_TRUE(client.send(&foreign, sizeof foreign));
  const uint8_t junk[3] = {1, 2, 3};
  for (int i = 0; i < 200; ++i) SendPatiently(client, junk, sizeof junk);

  ASSERT_TRUE(sim_.waitForLog("more like this")) << sim_.log();
  const std::string log = sim_.log();
  EXPECT_NE(log.find("/bad\\x1b[2J\\x0a"), std::string::npos) << log;
  EXPECT_EQ(log.find('\x1b'), std::string::npos);
  EXPECT_NE(log.find("names pid 4294967280"), std::string::npos) << log;
  EXPECT_LT(Count(log, "shorter than a header"), 60u);
}

TEST_F(Security, ClientKilledWithSigkillHasItsReceiveQueueRemoved) {
  RawClient survivor(sim_.queueName());
  ASSERT_EQ(survivor.connect(), 0u);
  int names[2];
  ASSERT_EQ(pipe(names), 0);
  pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    RawClient doomed(sim_.queueName());
    const std::string name = doomed.queueName();
    const bool connected = doomed.connect() == 0u;
    if (!connected || write(names[1], name.c_str(), name.size()) < 0) _exit(1);
    pause();
    _exit(0);
  }
  close(names[1]);
  char name[256] = {};
  ssize_t got = read(names[0], name, sizeof name - 1);
  close(names[0]);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  ASSERT_GT(got, 0) << sim_.log();

  EXPECT_TRUE(sim_.waitForLog("receive queue " + std::string(name) + " of dead pid")) << sim_.log();
  EXPECT_FALSE(QueueExists(name));
  EXPECT_TRUE(QueueExists(survivor.queueName()));
  mq_unlink(name);  // whatever happened above
}

// Daemon mode: the command returns once the daemon serves its queue and the
// pid file (stale from a killed run) holds the new PID.
TEST(DaemonStart, PidFileHoldsTheServingDaemonWhenTheCommandReturns) {
  const auto dir = std::filesystem::temp_directory_path() / ("sim-daemon-" + std::to_string(getpid()));
  std::filesystem::create_directories(dir);
  const std::string pidFile = (dir / "sim.pid").string();
  const std::string queue = "/simdaemon-" + std::to_string(getpid());
  std::ofstream(pidFile) << "999999\n";
  prctl(PR_SET_CHILD_SUBREAPER, 1);  // the detached daemon becomes ours to reap
  pid_t starter = fork();
  if (starter == 0) {
    execl(SESSMGR_SIM_PATH, SESSMGR_SIM_PATH, "--queue", queue.c_str(), "--max-messages", "2", "--state-dir",
          (dir / "state").c_str(), "--pid-file", pidFile.c_str(), "--log-file", (dir / "sim.log").c_str(),
          static_cast<char*>(nullptr));
    _exit(127);
  }
  int status = -1;
  waitpid(starter, &status, 0);
  pid_t daemon = 0;
  std::ifstream(pidFile) >> daemon;
  const bool queueServed = QueueExists(queue);

  if (daemon > 0 && daemon != 999999) {
    kill(daemon, SIGTERM);
    waitpid(daemon, nullptr, 0);
  }
  prctl(PR_SET_CHILD_SUBREAPER, 0);
  mq_unlink(queue.c_str());
  std::filesystem::remove_all(dir);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  EXPECT_NE(daemon, 999999);
  EXPECT_GT(daemon, 0);
  EXPECT_TRUE(queueServed);
}

}  // namespace
}  // namespace sim::test
