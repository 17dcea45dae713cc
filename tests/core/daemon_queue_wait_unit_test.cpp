// The start-up wait for the daemon's request queue: while the appliance has
// been up for at most 300 s a missing queue is retried once a second up to
// "InitIPCTimeout" times; later, or for any other error, it fails at once.
// Runs through the transport seam so no real queue or second is spent.
#include <errno.h>
#include <gtest/gtest.h>
#include <string.h>

#include <string>

#include "lib_state.h"
#include "request_engine.h"
#include "sessmgr_api.h"
#include "test_env.h"

namespace {

struct FakeBoot {
  DWORD dwUpTime = 100;
  int nDaemonQueueAppearsAt = -1;  // attempt (0-based) at which the daemon queue exists; -1 never
  int nOpenErrno = ENOENT;
  int nAttempts = 0;
  int nSleeps = 0;
  unsigned nSleptMicros = 0;
  int nReceiveQueueCreates = 0;
} g_boot;

constexpr const char* kDaemonQueue = "/smgrtest-boot-daemon";
constexpr mqd_t kDaemonQueueFd = 4242;

mqd_t FakeOpen(const char* szName, int, mode_t, struct mq_attr*) {
  if (std::string(szName) == kDaemonQueue) {
    if (g_boot.nAttempts++ == g_boot.nDaemonQueueAppearsAt) return kDaemonQueueFd;
    errno = g_boot.nOpenErrno;
    return static_cast<mqd_t>(-1);
  }
  // The receive queue: refuse it, so a successful daemon open ends the
  // initialisation with 9 and no further transport is needed.
  ++g_boot.nReceiveQueueCreates;
  errno = EACCES;
  return static_cast<mqd_t>(-1);
}
int FakeClose(mqd_t) { return 0; }
int FakeUnlink(const char*) { return 0; }
int FakeGetattr(mqd_t, struct mq_attr*) { return -1; }
int FakeSend(mqd_t, const char*, size_t, unsigned) { return -1; }
int FakeWaitReadable(mqd_t, bool*) { return -1; }
ssize_t FakeReceive(mqd_t, char*, size_t, unsigned*) { return -1; }
int FakeTimeOfDay(struct timeval* pNow) {
  pNow->tv_sec = 1;
  pNow->tv_usec = 0;
  return 0;
}
BOOL FakeUpTime(DWORD* pdwSeconds) {
  *pdwSeconds = g_boot.dwUpTime;
  return TRUE;
}
void FakeSleep(unsigned nMicros) {
  ++g_boot.nSleeps;
  g_boot.nSleptMicros = nMicros;
}

constexpr smgr::TransportHooks kFakeBoot = {FakeOpen,   FakeClose,        FakeUnlink,  FakeGetattr,
                                            FakeSend,   FakeWaitReadable, FakeReceive, FakeTimeOfDay,
                                            FakeUpTime, FakeSleep};

class DaemonQueueWait : public ::testing::Test {
 protected:
  DaemonQueueWait()
      : queue_("SESSMGR_DAEMON_QUEUE", kDaemonQueue),
        marker_("SESSMGR_STARTED_MARKER", "/tmp/smgrtest-boot-no-such-marker"),
        settings_("[API Library]\nInitIPCTimeout = 60\n") {
    g_boot = FakeBoot{};
    smgr::SetTransportHooks(&kFakeBoot);
  }
  ~DaemonQueueWait() override {
    // A failed initialisation keeps the daemon queue open; it is the fake's.
    g_OutMsgQID = static_cast<mqd_t>(-1);
    smgr::SetTransportHooks(nullptr);
  }

  smgr::test::ScopedEnv queue_;
  smgr::test::ScopedEnv marker_;
  smgr::test::ScopedSettingsFile settings_;
};

TEST_F(DaemonQueueWait, WhileBootingRetriesSixtyTwoTimesThenFailsWith11) {
  EXPECT_FALSE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR);
  EXPECT_EQ(SessMgr_GetLastErrno(), ENOENT);
  EXPECT_EQ(g_boot.nAttempts, 62);  // counter 0 to 61
  EXPECT_EQ(g_boot.nSleeps, 61);    // after attempts 0 to 60
  EXPECT_EQ(g_boot.nSleptMicros, 1000000u);
  EXPECT_EQ(g_boot.nReceiveQueueCreates, 0);
}

TEST_F(DaemonQueueWait, AtExactlyThreeHundredSecondsStillWaits) {
  g_boot.dwUpTime = 300;
  g_boot.nDaemonQueueAppearsAt = 5;
  EXPECT_FALSE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr));
  // The queue appeared on the sixth attempt; the receive queue is what failed.
  EXPECT_EQ(g_boot.nAttempts, 6);
  EXPECT_EQ(g_boot.nSleeps, 5);
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_LIB_LOCAL_IPC_INIT_ERROR);
  EXPECT_EQ(SessMgr_GetLastErrno(), EACCES);
}

TEST_F(DaemonQueueWait, AfterTheBootWindowOrForAnotherErrorItFailsAtOnce) {
  for (int nCase = 0; nCase < 2; ++nCase) {
    g_boot = FakeBoot{};
    if (nCase == 0) g_boot.dwUpTime = 301;
    if (nCase == 1) g_boot.nOpenErrno = EACCES;
    EXPECT_FALSE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr));
    EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR);
    EXPECT_EQ(SessMgr_GetLastErrno(), nCase == 0 ? ENOENT : EACCES);
    EXPECT_EQ(g_boot.nAttempts, 1);
    EXPECT_EQ(g_boot.nSleeps, 0);
  }
}

}  // namespace
