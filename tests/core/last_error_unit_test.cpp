// The per-thread last error: what the set operations store, how
// SessMgr_GetLastErrorString composes code, errno and daemon text, strict
// per-thread isolation, and that a finished thread leaves no record behind.
#include <errno.h>
#include <string.h>

#include <atomic>
#include <barrier>
#include <string>
#include <thread>
#include <vector>

#include "gtest/gtest.h"
#include "last_error.h"
#include "sessmgr/sm_results.h"

namespace {

std::string LastErrorString(size_t nSize = 512) {
  std::string buffer(nSize, '\x7f');
  const char* szResult = SessMgr_GetLastErrorString(buffer.data(), nSize);
  EXPECT_EQ(szResult, buffer.data());
  return szResult;
}

// Runs fn in a thread of its own (a thread that starts without any record) and waits for it.
template <typename Fn>
void InFreshThread(Fn fn) {
  std::thread(fn).join();
}

TEST(LastErrorTest, ThreadThatNeverCalledReadsZero) {
  InFreshThread([] {
    EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_SUCCESS);
    EXPECT_EQ(SessMgr_GetLastErrno(), 0);
    EXPECT_EQ(FindThreadDataForCallingThread(), nullptr) << "reading must not make a record";
    EXPECT_EQ(LastErrorString(), "Success");
  });
}

TEST(LastErrorTest, SetReplacesAllThreeFields) {
  InFreshThread([] {
    ASSERT_TRUE(SessMgr_SetLastErrorEx(SMGR_ERROR_STREAM_IN_USE, EBUSY, "held by session A"));
    EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_STREAM_IN_USE);
    EXPECT_EQ(SessMgr_GetLastErrno(), EBUSY);
    EXPECT_STREQ(FindThreadDataForCallingThread()->szErrorText, "held by session A");

    ASSERT_TRUE(SessMgr_SetLastError(SMGR_ERROR_DAEMON_GONE));
    EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_DAEMON_GONE);
    EXPECT_EQ(SessMgr_GetLastErrno(), 0);
    EXPECT_STREQ(FindThreadDataForCallingThread()->szErrorText, "");

    ASSERT_TRUE(SessMgr_SetLastErrorEx(SMGR_ERROR_STREAM_IN_USE, 0, "old"));
    ASSERT_TRUE(SessMgr_SetLastErrorEx(SMGR_ERROR_GENERIC_FAILURE, 0, nullptr));
    EXPECT_STREQ(FindThreadDataForCallingThread()->szErrorText, "") << "NULL text means empty";

    const std::string text(200, 'x');
    ASSERT_TRUE(SessMgr_SetLastErrorEx(SMGR_ERROR_ADDRESS_PORT_PAIR_IN_USE, 0, text.c_str()));
    EXPECT_EQ(LastErrorString(), text.substr(0, 169)) << "stored text cut to 169 characters";
  });
}

TEST(LastErrorTest, StringAppendsErrnoTextBeforeStoredText) {
  InFreshThread([] {
    SessMgr_SetLastErrorEx(SMGR_ERROR_LIB_TO_DAEMON_IPC_ERROR, EAGAIN, nullptr);
    EXPECT_EQ(LastErrorString(), std::string("Unable to send message to sessmgrd, ") + strerror(EAGAIN));

    SessMgr_SetLastErrorEx(SMGR_ERROR_STREAM_IN_USE, 0, "Stream is part of session \"cam1\"");
    EXPECT_EQ(LastErrorString(), "Stream still in use, Stream is part of session \"cam1\"");

    SessMgr_SetLastErrorEx(SMGR_ERROR_STREAM_IN_USE, EIO, "ignored while an errno is present");
    EXPECT_EQ(LastErrorString(), std::string("Stream still in use, ") + strerror(EIO));

    SessMgr_SetLastErrorEx(SMGR_ERROR_DAEMON_TO_LIB_IPC_MSG_SEQU_ERROR, ETIMEDOUT, nullptr);
    EXPECT_EQ(LastErrorString(), std::string("(Unknown:13), ") + strerror(ETIMEDOUT));

    SessMgr_SetLastError(SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME);
    EXPECT_EQ(LastErrorString(), "Unable to resolve hostname");

    SessMgr_SetLastError(SMGR_IS_ERRNO_ERROR | ENOENT);
    EXPECT_EQ(LastErrorString(), strerror(ENOENT));
  });
}

TEST(LastErrorTest, TextDescribedErrorPrefersTheStoredText) {
  InFreshThread([] {
    SessMgr_SetLastErrorEx(SMGR_ERROR_ADDRESS_PORT_PAIR_IN_USE, EINVAL,
                           "10.0.0.1:5000 is used by stream \"b\"");
    EXPECT_EQ(LastErrorString(), "10.0.0.1:5000 is used by stream \"b\"") << "neither code text nor errno";
    EXPECT_EQ(LastErrorString(7), "10.0.0");
    SessMgr_SetLastErrorEx(SMGR_ERROR_ADDRESS_PORT_PAIR_IN_USE, EINVAL, "");
    EXPECT_EQ(LastErrorString(), "Specified address and port are already in use");
  });
}

TEST(LastErrorTest, StringIsTruncatedToTheBuffer) {
  InFreshThread([] {
    SessMgr_SetLastErrorEx(SMGR_ERROR_LIB_TO_DAEMON_IPC_ERROR, EAGAIN, nullptr);
    const std::string full = std::string("Unable to send message to sessmgrd, ") + strerror(EAGAIN);
    for (size_t nSize : {1u, 35u, 36u, 37u, 38u, 40u})
      EXPECT_EQ(LastErrorString(nSize), full.substr(0, nSize - 1)) << "nSize " << nSize;
  });
}

TEST(LastErrorTest, EachThreadSeesOnlyItsOwnError) {
  constexpr int kThreads = 16;
  std::barrier allSet(kThreads);
  std::atomic<int> nMismatches{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      const SMGR_RESULT code = 100 + i;
      const std::string text = "thread " + std::to_string(i);
      if (!SessMgr_SetLastErrorEx(code, i, text.c_str())) ++nMismatches;
      allSet.arrive_and_wait();  // every thread has overwritten "the" last error by now
      if (SessMgr_GetLastError() != code || SessMgr_GetLastErrno() != i ||
          FindThreadDataForCallingThread()->szErrorText != text)
        ++nMismatches;
      allSet.arrive_and_wait();
      SessMgr_SetLastError(code + 1000);
      if (SessMgr_GetLastError() != code + 1000 || SessMgr_GetLastErrno() != 0) ++nMismatches;
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(nMismatches.load(), 0);
}

TEST(LastErrorTest, FinishedThreadsLeaveNoRecordBehind) {
  SessMgr_SetLastError(SMGR_ERROR_SUCCESS);  // the key exists and this thread is counted
  const uint64_t nBefore = CountThreadDataRecords();
  std::vector<std::thread> threads;
  std::barrier allAlive(17);
  for (int i = 0; i < 16; ++i) {
    threads.emplace_back([&] {
      SessMgr_SetLastErrorEx(SMGR_ERROR_GENERIC_FAILURE, EIO, "x");
      allAlive.arrive_and_wait();
      allAlive.arrive_and_wait();
    });
  }
  allAlive.arrive_and_wait();
  EXPECT_EQ(CountThreadDataRecords(), nBefore + 16);
  allAlive.arrive_and_wait();
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(CountThreadDataRecords(), nBefore);
}

// In a fresh process (the key has not been made yet): threads that race on their first
// set operation make the key exactly once and each keeps its own record.
TEST(LastErrorDeathTest, RacingFirstCallsMakeTheKeyOnce) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        constexpr int kThreads = 8;
        std::barrier start(kThreads);
        std::atomic<int> nFailures{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
          threads.emplace_back([&, i] {
            start.arrive_and_wait();
            if (!SessMgr_SetLastError(200 + i)) ++nFailures;
            start.arrive_and_wait();
            if (SessMgr_GetLastError() != SMGR_RESULT(200 + i)) ++nFailures;
          });
        }
        for (auto& thread : threads) thread.join();
        const bool bClean = CountThreadDataRecords() == 0 && SessMgr_GetLastError() == 0;
        _exit(nFailures.load() == 0 && bClean ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
