// Client death detection: a watched process that exits is reported as soon as
// it is gone, by pidfd where the kernel has it and by the /proc check otherwise.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "client_watch.h"

namespace sim::test {
namespace {

using std::chrono::milliseconds;

// A child that lives until the returned pipe end is closed.
pid_t StartChild(int* release) {
  int fds[2];
  if (pipe(fds) != 0) return -1;
  pid_t child = fork();
  if (child == 0) {
    close(fds[1]);
    char byte;
    (void)!read(fds[0], &byte, 1);
    _exit(0);
  }
  close(fds[0]);
  *release = fds[1];
  return child;
}

void ExpectDeathIsReported(bool usePidfd) {
  ClientWatch watch(milliseconds(50), usePidfd);
  int release = -1;
  const pid_t child = StartChild(&release);
  ASSERT_GT(child, 0);
  ASSERT_TRUE(watch.watch(child));
  if (!usePidfd) {
    EXPECT_FALSE(watch.watchedByPidfd(child));
  }
  EXPECT_TRUE(watch.waitForDeaths(milliseconds(0)).empty());
  close(release);  // the child exits and stays a zombie: gone all the same
  std::vector<pid_t> dead;
  for (int round = 0; round < 100 && dead.empty(); ++round) dead = watch.waitForDeaths(milliseconds(100));
  EXPECT_EQ(dead, std::vector<pid_t>{child});
  EXPECT_FALSE(watch.watch(child));  // a dead process is refused
  waitpid(child, nullptr, 0);
}

TEST(ClientWatchTest, DeathIsReportedByPidfdOrByTheProcCheck) {
  ExpectDeathIsReported(true);
  ExpectDeathIsReported(false);
}

}  // namespace
}  // namespace sim::test
