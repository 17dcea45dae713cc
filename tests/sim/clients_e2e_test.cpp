// sessmgrd-sim as a daemon among clients: several library processes at once,
// a client killed mid-session, malformed requests straight on its queue, a
// client that never reads its queue, and clean shutdown.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <thread>

#include "sessmgr_api.h"
#include "sim_harness.h"
#include "smgr_protocol.h"

namespace sim::test {
namespace {

class DaemonTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(sim_.ready()) << sim_.log(); }

  template <typename T>
  static T Make(WORD type, RawClient& client) {
    T message{};
    message.Header.wMsgType = type;
    message.Header.wMsgSequence = client.nextSequence();
    message.Header.wMsgSize = sizeof(T);
    message.Header.dwSrcPID = static_cast<DWORD>(getpid());
    message.Header.dwSrcUID = getuid();
    return message;
  }

  static SMGRPROT_HEADER HeaderOf(const std::vector<uint8_t>& reply) {
    SMGRPROT_HEADER header{};
    if (reply.size() >= sizeof header) memcpy(&header, reply.data(), sizeof header);
    return header;
  }
  static SMGR_RESULT ResultOf(const std::vector<uint8_t>& reply) {
    SMGR_RESULT result = 0xFFFFFFFFu;
    if (reply.size() >= 20) memcpy(&result, reply.data() + 16, sizeof result);
    return result;
  }

  // A debug info request: proof that the simulator still serves this client.
  static bool StillServes(RawClient& client) {
    auto request = Make<SMGRPROT_MSG_DEBUG_GETINFO_REQ>(SMGRPROT_DEBUG_GETINFO_REQ, client);
    if (!client.send(&request, sizeof request)) return false;
    std::vector<uint8_t> reply = client.receive();
    return HeaderOf(reply).wMsgType == SMGRPROT_DEBUG_GETINFO_RSP &&
           HeaderOf(reply).wMsgSequence == request.Header.wMsgSequence && ResultOf(reply) == 0;
  }

  SimProcess sim_;
};

TEST_F(DaemonTest, ConnectAnswersWithItsPidAndCardType) {
  RawClient client(sim_.queueName());
  auto request = Make<SMGRPROT_MSG_CONNECT_REQ>(SMGRPROT_USER_CONNECT_REQ, client);
  snprintf(request.Data.RxMsgQName, sizeof request.Data.RxMsgQName, "%s", client.queueName().c_str());
  ASSERT_TRUE(client.send(&request, sizeof request));
  std::vector<uint8_t> reply = client.receive();
  ASSERT_EQ(reply.size(), sizeof(SMGRPROT_MSG_CONNECT_RSP));
  SMGRPROT_MSG_CONNECT_RSP response;
  memcpy(&response, reply.data(), sizeof response);
  EXPECT_EQ(response.Header.wMsgType, SMGRPROT_USER_CONNECT_RSP);
  EXPECT_EQ(response.Header.wMsgSequence, request.Header.wMsgSequence);
  EXPECT_EQ(response.Header.dwSrcPID, static_cast<DWORD>(sim_.pid()));
  EXPECT_EQ(response.Data.Result, 0u);
  EXPECT_EQ(response.Data.enCardType, 7);
  std::string comm;
  std::ifstream("/proc/" + std::to_string(sim_.pid()) + "/comm") >> comm;
  EXPECT_EQ(comm, "sessmgrd");
}

TEST_F(DaemonTest, MalformedRequestsAreAnsweredOrLoggedAndServingGoesOn) {
  RawClient client(sim_.queueName());
  ASSERT_EQ(client.connect(), 0u);

  const char garbage[] = "garbage";
  ASSERT_TRUE(client.send(garbage, sizeof garbage - 1));  // shorter than a header: logged only
  auto unknown = Make<SMGRPROT_MSG_DISCONNECT_IND>(4242, client);
  ASSERT_TRUE(client.send(&unknown, sizeof unknown));  // not a catalogued type: logged only

  auto shortStart = Make<SMGRPROT_MSG_STREAM_SELECT_REQ>(SMGRPROT_STREAM_START_REQ, client);
  shortStart.Header.wMsgSize = 40;
  ASSERT_TRUE(client.send(&shortStart, 40));
  std::vector<uint8_t> reply = client.receive();
  EXPECT_EQ(HeaderOf(reply).wMsgType, SMGRPROT_STREAM_START_RSP);
  EXPECT_EQ(HeaderOf(reply).wMsgSequence, shortStart.Header.wMsgSequence);
  EXPECT_EQ(ResultOf(reply), SMGR_ERROR_INVALID_PARAMETERS);

  auto lying = Make<SMGRPROT_MSG_STREAM_SELECT_REQ>(SMGRPROT_STREAM_GETINFO_REQ, client);
  lying.Header.wMsgSize = 4000;  // the header claims more than was sent
  ASSERT_TRUE(client.send(&lying, sizeof lying));
  EXPECT_EQ(ResultOf(client.receive()), SMGR_ERROR_INVALID_PARAMETERS);

  auto badSelector = Make<SMGRPROT_MSG_STREAM_SELECT_REQ>(SMGRPROT_STREAM_STOP_REQ, client);
  badSelector.Data.Select.enType = 9;
  ASSERT_TRUE(client.send(&badSelector, sizeof badSelector));
  EXPECT_EQ(ResultOf(client.receive()), SMGR_ERROR_INVALID_PARAMETERS);

  auto session = Make<SMGRPROT_MSG_STREAM_SELECT_REQ>(SMGRPROT_SESSION_ADD_STREAM_REQ,
                                                      client);  // reserved: nothing answers it
  ASSERT_TRUE(client.send(&session, sizeof session));
  reply = client.receive();
  EXPECT_EQ(HeaderOf(reply).wMsgType, SMGRPROT_SESSION_ADD_STREAM_RSP);
  EXPECT_EQ(ResultOf(reply), SMGR_ERROR_UNSUPPORTED_API);

  auto create = Make<SMGRPROT_MSG_STREAM_CREATE_REQ>(SMGRPROT_STREAM_CREATE_REQ, client);
  memset(&create.Data, 0xA5, sizeof create.Data);  // random bytes where a configuration belongs
  ASSERT_TRUE(client.send(&create, sizeof create));
  reply = client.receive();
  EXPECT_EQ(HeaderOf(reply).wMsgType, SMGRPROT_STREAM_CREATE_RSP);
  EXPECT_NE(ResultOf(reply), 0u);

  EXPECT_TRUE(client.receive(std::chrono::milliseconds(200)).empty());  // nothing for the logged-only ones
  EXPECT_TRUE(StillServes(client));
  EXPECT_TRUE(sim_.waitForLog("shorter than a header"));
  EXPECT_TRUE(sim_.waitForLog("unknown message type 4242"));
}

TEST_F(DaemonTest, RequestsFromUnconnectedProcessesAreDropped) {
  RawClient client(sim_.queueName());
  auto request = Make<SMGRPROT_MSG_DEBUG_GETINFO_REQ>(SMGRPROT_DEBUG_GETINFO_REQ, client);
  ASSERT_TRUE(client.send(&request, sizeof request));
  EXPECT_TRUE(client.receive(std::chrono::milliseconds(300)).empty());
  EXPECT_TRUE(sim_.waitForLog("which is not connected"));
}

TEST_F(DaemonTest, AClientThatNeverReadsDoesNotBlockOthers) {
  RawClient lazy(sim_.queueName(), 1);
  ASSERT_EQ(lazy.connect(), 0u);
  for (int i = 0; i < 6; ++i) {  // its one-message queue fills after the first reply
    auto request = Make<SMGRPROT_MSG_DEBUG_GETINFO_REQ>(SMGRPROT_DEBUG_GETINFO_REQ, lazy);
    ASSERT_TRUE(lazy.send(&request, sizeof request));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  RawClient busy(sim_.queueName());
  ASSERT_EQ(busy.connect(), 0u);
  EXPECT_TRUE(StillServes(busy));
  EXPECT_TRUE(sim_.waitForLog("is full, reply dropped"));
}

TEST_F(DaemonTest, AKilledClientIsForgottenWithItsOpens) {
  const std::string queue = sim_.queueName();
  sim_.exportEnvironment();
  ASSERT_EQ(RunCtl({"stream", "create", "cam1", "-e", "TS-UDP", "-a", "239.1.1.1", "-p", "5000", "--video",
                    "venc1", "--audio", "aenc1"})
                .status,
            0);
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  pid_t child = fork();
  if (child == 0) {
    close(ready[0]);
    RawClient client(queue);
    auto open = Make<SMGRPROT_MSG_STREAM_SELECT_REQ>(SMGRPROT_STREAM_OPEN_REQ, client);
    open.Data.Select.enType = SMGR_SELECTBY_OBJECT_ID;
    open.Data.Select.Via.ID = 1;
    const bool opened =
        client.connect() == 0u && client.send(&open, sizeof open) && ResultOf(client.receive()) == 0;
    // Tell the parent the queue name ('y' after a good connect and open), then wait to be killed.
    const std::string report = (opened ? "y" : "n") + client.queueName();
    (void)!write(ready[1], report.data(), report.size());
    pause();  // killed here, mid-session: no disconnect indication, no queue removal
    _exit(0);
  }
  close(ready[1]);
  char report[64] = {};
  ASSERT_GT(read(ready[0], report, sizeof report - 1), 1);
  close(ready[0]);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  mq_unlink(report + 1);  // the dead child's receive queue is the test's to remove
  ASSERT_EQ(report[0], 'y');
  EXPECT_TRUE(sim_.waitForLog("client pid " + std::to_string(child) + " (raw-client) is gone, forgotten"))
      << sim_.log();
  EXPECT_TRUE(sim_.waitForLog("pid " + std::to_string(child) + " left 1 stream opens")) << sim_.log();
  RawClient next(queue);
  ASSERT_EQ(next.connect(), 0u);
  EXPECT_TRUE(StillServes(next));
}

// Library clients in three processes at once, each with its own streams.
TEST_F(DaemonTest, SeveralLibraryClientsAtOnce) {
  sim_.exportEnvironment();
  std::vector<pid_t> children;
  for (int n = 0; n < 3; ++n) {
    pid_t child = fork();
    if (child == 0) {
      int failures = 0;
      // Wait for room in the machine's queue budget, as any client would.
      bool connected = false;
      for (int attempt = 0; attempt < 40 && !connected; ++attempt) {
        connected = SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr);
        if (!connected && SessMgr_GetLastErrno() != EMFILE) break;
        if (!connected) usleep(250 * 1000);
      }
      if (!connected) _exit(100);
      for (int round = 0; round < 5; ++round) {
        SMGR_STREAM_CFG cfg{};
        cfg.nSize = sizeof cfg;
        snprintf(cfg.szName, sizeof cfg.szName, "p%d-r%d", n, round);
        cfg.enType = SMGR_STREAM_TYPE_TX;
        cfg.enContents = SMGR_STREAM_CONTENTS_VIDEO;
        cfg.Address.enType = SMGR_IPV4_ADDRESS;
        const BYTE address[4] = {239, 2, static_cast<BYTE>(n), static_cast<BYTE>(round + 1)};
        memcpy(cfg.Address.acAddress, address, 4);
        cfg.usPort = static_cast<uint16_t>(6000 + 2 * round);
        cfg.enEncapsulation = SMGR_STREAM_ENCAPS_TS_UDP;
        cfg.nNumOfSources = 1;
        cfg.ContentSources[0].enType = SMGR_CONTENT_SRC_VIDEO;
        cfg.ContentSources[0].Selector.enType = SMGR_SELECTBY_OBJECT_ID;
        cfg.ContentSources[0].Selector.Via.ID = n + 1;
        cfg.bAutoStart = TRUE;
        HSTREAM stream = nullptr;
        if (!SessMgr_CreateStream(&cfg, &stream)) {
          char text[200];
          fprintf(stderr, "child %d round %d: create: %s\n", n, round,
                  SessMgr_GetLastErrorString(text, sizeof text));
          ++failures;
          continue;
        }
        SMGR_OBJECT_SELECTOR selector{};
        selector.enType = SMGR_SELECTBY_OBJECT_NAME;
        selector.Via.szName = cfg.szName;
        SMGR_STREAM_STATS stats{};
        stats.nSize = sizeof stats;
        auto check = [&](bool ok, const char* what) {
          if (ok) return;
          ++failures;
          char text[200];
          fprintf(stderr, "child %d round %d: %s: %s\n", n, round, what,
                  SessMgr_GetLastErrorString(text, sizeof text));
        };
        check(SessMgr_GetStreamStats(&selector, &stats) && stats.enState == SMGR_STREAM_STATE_RUNNING,
              "stats");
        check(SessMgr_StopStream(&selector), "stop");
        check(SessMgr_DeleteStream(&selector), "delete");
        // The stream is gone, so the daemon refuses the close (the library releases the handle anyway).
        if (SessMgr_CloseStream(&stream) || SessMgr_GetLastError() != SMGR_ERROR_NO_MATCHING_STREAM_FOUND) {
          check(false, "close");
        }
      }
      SessMgrLib_Shutdown();
      _exit(failures == 0 ? 0 : 1);
    }
    children.push_back(child);
  }
  for (pid_t child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "child " << child << " status " << status;
  }
  // Every child disconnected; every stream is gone.
  RawClient client(sim_.queueName());
  ASSERT_EQ(client.connect(), 0u);
  auto request = Make<SMGRPROT_MSG_STREAM_ENUMERATE_REQ>(SMGRPROT_STREAM_ENUMERATE_REQ, client);
  ASSERT_TRUE(client.send(&request, sizeof request));
  std::vector<uint8_t> reply = client.receive();
  ASSERT_GE(reply.size(), 24u);
  uint32_t total = 1;
  memcpy(&total, reply.data() + 20, sizeof total);
  EXPECT_EQ(total, 0u);
  const std::string log = sim_.log();
  size_t disconnects = 0;
  for (size_t at = log.find("disconnected, forgotten"); at != std::string::npos;
       at = log.find("disconnected, forgotten", at + 1)) {
    ++disconnects;
  }
  EXPECT_EQ(disconnects, 3u);
}

TEST_F(DaemonTest, TermAndShutdownRequestRemoveQueueAndMarker) {
  EXPECT_TRUE(sim_.stop());
  EXPECT_FALSE(std::filesystem::exists(sim_.dir() / "marker"));

  SimProcess second;
  ASSERT_TRUE(second.ready());
  RawClient client(second.queueName());
  ASSERT_EQ(client.connect(), 0u);
  auto shutdown = Make<SMGRPROT_MSG_SYSTEM_SHUTDOWN_REQ>(SMGRPROT_SYSTEM_SHUTDOWN_REQ, client);
  ASSERT_TRUE(client.send(&shutdown, sizeof shutdown));
  EXPECT_TRUE(second.waitForLog("stopped"));
  EXPECT_TRUE(second.stop() || !std::filesystem::exists(second.dir() / "marker"));
}

}  // namespace
}  // namespace sim::test
