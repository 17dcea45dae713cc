// Process, user and time services: process lookup by comm and by argv[0],
// liveness, names in the three modes, users, up-time and time arithmetic.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <string>
#include <thread>

#include "util_string.h"
#include "util_system.h"

namespace {

// A child process that lives until the scope ends; optionally renamed (comm) or
// exec'ed with a chosen argv[0].
class ChildProcess {
 public:
  static ChildProcess withComm(const std::string& comm) {
    pid_t pid = fork();
    if (pid == 0) {
      prctl(PR_SET_NAME, comm.c_str());
      for (;;) pause();
    }
    return ChildProcess(pid);
  }
  static ChildProcess withArgv0(const std::string& argv0) {
    pid_t pid = fork();
    if (pid == 0) {
      execl("/bin/sleep", argv0.c_str(), "30", static_cast<char*>(nullptr));
      _exit(127);
    }
    return ChildProcess(pid);
  }
  ChildProcess(ChildProcess&& other) noexcept : pid_(other.pid_) { other.pid_ = 0; }
  ~ChildProcess() { stop(); }
  void stop() {
    if (pid_ > 0) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
      pid_ = 0;
    }
  }
  pid_t pid() const { return pid_; }

 private:
  explicit ChildProcess(pid_t pid) : pid_(pid) {}
  pid_t pid_;
};

// The child renames itself after fork: poll until /proc shows it.
pid_t waitForProcess(const std::string& name) {
  for (int i = 0; i < 200; ++i) {
    if (pid_t pid = GetProcessPID(name.c_str(), nullptr)) return pid;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return 0;
}

TEST(ProcessLookupTest, ByCommOrArgv0BaseNameAndLiveness) {
  std::string name = "smgrc" + std::to_string(getpid() % 100000);
  ChildProcess renamed = ChildProcess::withComm(name);
  EXPECT_EQ(waitForProcess(name), renamed.pid());
  std::string argv0 = "smgr-argv0-probe-" + std::to_string(getpid());
  ChildProcess execed = ChildProcess::withArgv0("/some/dir/" + argv0);
  EXPECT_EQ(waitForProcess(argv0), execed.pid());
  EXPECT_EQ(GetProcessPID("no-such-process-name-here", nullptr), 0);
  EXPECT_EQ(GetProcessPID(nullptr, nullptr), 0);

  EXPECT_TRUE(IsValidPID(1));  // exists even where it may not be signalled (EPERM)
  EXPECT_FALSE(IsValidPID(0));
  const pid_t pid = renamed.pid();
  EXPECT_TRUE(IsValidPID(pid));
  renamed.stop();
  EXPECT_FALSE(IsValidPID(pid));
}

TEST(ProcessNameTest, ThreeModes) {
  char acName[256];
  ASSERT_TRUE(GetProcessNameFromPID(getpid(), BASE_PROCESS_NAME_ONLY, acName, sizeof(acName)));
  std::string baseName = acName;
  EXPECT_EQ(baseName.find('/'), std::string::npos);
  EXPECT_FALSE(baseName.empty());

  ASSERT_TRUE(GetProcessNameFromPID(getpid(), FULL_PATH_PROCESS_NAME_ONLY, acName, sizeof(acName)));
  EXPECT_EQ(acName[0], '/');
  EXPECT_TRUE(std::string(acName).ends_with("/" + baseName)) << acName << " vs " << baseName;

  ChildProcess child = ChildProcess::withArgv0("smgr-cmdline-probe");
  for (int i = 0; i < 200 && strcmp(acName, "smgr-cmdline-probe 30") != 0; ++i) {
    GetProcessNameFromPID(child.pid(), FULL_COMMAND_LINE, acName, sizeof(acName));
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_STREQ(acName, "smgr-cmdline-probe 30") << "arguments joined by blanks";
}

TEST(ProcessNameTest, TruncatesAndRejectsBadArguments) {
  char acName[4] = "";
  ASSERT_TRUE(GetProcessNameFromPID(getpid(), FULL_PATH_PROCESS_NAME_ONLY, acName, sizeof(acName)));
  EXPECT_EQ(strlen(acName), 3u);
  EXPECT_FALSE(GetProcessNameFromPID(getpid(), 3, acName, sizeof(acName)));
  EXPECT_FALSE(GetProcessNameFromPID(0, BASE_PROCESS_NAME_ONLY, acName, sizeof(acName)));
  EXPECT_FALSE(GetProcessNameFromPID(getpid(), BASE_PROCESS_NAME_ONLY, nullptr, 10));
}

TEST(UserLookupTest, RootAndUnknownUser) {
  char acName[80];
  DWORD dwRights = 99;
  ASSERT_TRUE(GetUserNameAndRightsFromUID(0, acName, sizeof(acName), &dwRights));
  EXPECT_STREQ(acName, "root");
  EXPECT_EQ(dwRights, 1u);
  EXPECT_TRUE(GetUserNameAndRightsFromUID(0, acName, 3, nullptr));
  EXPECT_STREQ(acName, "ro");
  EXPECT_FALSE(GetUserNameAndRightsFromUID(static_cast<uid_t>(0x7ffffff0), acName, sizeof(acName), nullptr));
}

TEST(TimeServicesTest, UpTimeDifferenceAndFormat) {
  DWORD dwFirst = 0, dwSecond = 0;
  ASSERT_TRUE(GetSystemUPTime(&dwFirst));
  ASSERT_TRUE(GetSystemUPTime(&dwSecond));
  EXPECT_GE(dwSecond, dwFirst);
  EXPECT_FALSE(GetSystemUPTime(nullptr));

  struct timeval a = {5, 100}, b = {3, 900000}, c = {10, 0}, d = {7, 999999}, diff;
  CalcTimeOfDayAbsDiff(&b, &a, &diff);  // either order, microseconds normalised
  EXPECT_EQ(diff.tv_sec * 1000000 + diff.tv_usec, 1100100);
  EXPECT_LT(diff.tv_usec, 1000000);
  CalcTimeOfDayAbsDiff(&c, &d, &diff);
  EXPECT_EQ(diff.tv_sec, 2);
  EXPECT_EQ(diff.tv_usec, 1);

  char acText[32];
  EXPECT_STREQ(FormatUpTime(86399, acText, sizeof(acText)), "23:59:59");
  EXPECT_STREQ(FormatUpTime(3 * 86400 + 4 * 3600 + 5 * 60 + 6, acText, sizeof(acText)), "3d 04:05:06");
  EXPECT_STREQ(FormatUpTime(86400, acText, 4), "1d ");
}

void ignoreSignal(int) {}

TEST(TimeServicesTest, MicroSleepResumesAfterSignal) {
  struct sigaction action = {};
  action.sa_handler = ignoreSignal;  // no SA_RESTART: nanosleep returns EINTR
  struct sigaction previous;
  sigaction(SIGUSR2, &action, &previous);
  pthread_t sleeper = pthread_self();
  std::thread interrupter([sleeper] {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    pthread_kill(sleeper, SIGUSR2);
  });
  auto start = std::chrono::steady_clock::now();
  MicroSleep(60000, TRUE);
  auto elapsed = std::chrono::steady_clock::now() - start;
  interrupter.join();
  sigaction(SIGUSR2, &previous, nullptr);
  EXPECT_GE(elapsed, std::chrono::microseconds(60000));
}

}  // namespace
