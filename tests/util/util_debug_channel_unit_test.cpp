// Debug channels: level gating, shared reference-counted channels, the file sink
// and its line format, assertions and the thread-safe once-only runner.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "test_env.h"
#include "trace_capture.h"
#include "util_dbg.h"

namespace {

using smgr::test::ScopedEnv;
using smgr::test::TempFile;
using smgr::test::TraceCapture;

// A channel created under the given environment level, released at scope end.
class ScopedChannel {
 public:
  ScopedChannel(const char* szName) { EXPECT_TRUE(_DoDbgInit(szName, &hDbg_)); }
  ~ScopedChannel() { _DoDbgUninitEx(hDbg_, __func__, __FILE__, __LINE__); }
  HDBG get() const { return hDbg_; }

 private:
  HDBG hDbg_ = nullptr;
};

TEST(DebugChannelTest, LevelComesFromEnvironmentOrOverrideAndDefaultsToSilent) {
  {
    ScopedEnv level("SESSMGR_DEBUG_LEVEL", std::nullopt);
    ScopedChannel channel("ENVTEST0");
    EXPECT_EQ(channel.get()->nMaxLevel, 0);
  }
  ScopedEnv level("SESSMGR_DEBUG_LEVEL", "2");
  ScopedChannel channel("OVERRIDE");
  EXPECT_EQ(channel.get()->nMaxLevel, 2);
  smgr::util::SetDebugLevelOverride(6);
  EXPECT_EQ(channel.get()->nMaxLevel, 6);
  smgr::util::SetDebugLevelOverride(-1);
  EXPECT_EQ(channel.get()->nMaxLevel, 2);
}

TEST(DebugChannelTest, SameNameSharesChannelUntilLastRelease) {
  ScopedEnv level("SESSMGR_DEBUG_LEVEL", "3");
  HDBG hFirst = nullptr;
  HDBG hSecond = nullptr;
  ASSERT_TRUE(_DoDbgInit("SHARED", &hFirst));
  ASSERT_TRUE(_DoDbgInit("SHARED", &hSecond));
  EXPECT_EQ(hFirst, hSecond);
  _DoDbgUninitEx(hFirst, __func__, __FILE__, __LINE__);
  // Still attached once: usable.
  TraceCapture capture(3);
  _DoDbgPrintEx(hSecond, 3, __func__, __FILE__, __LINE__, "still here %d\n", 1);
  EXPECT_TRUE(capture.has("still here 1\n"));
  _DoDbgUninitEx(hSecond, __func__, __FILE__, __LINE__);
}

TEST(DebugChannelTest, TracesAboveChannelLevelAreDropped) {
  ScopedChannel channel("GATING");
  TraceCapture capture(4);
  _DoDbgPrintEx(channel.get(), 4, "fn", "/src/dir/file.cpp", 10, "kept %s\n", "four");
  _DoDbgPrintEx(channel.get(), 5, "fn", "/src/dir/file.cpp", 11, "dropped\n");
  UTIL_DBG_PRINT(channel.get(), 6, "dropped too\n");
  UTIL_DBG_PRINT(channel.get(), 2, "macro kept\n");
  auto traces = capture.traces();
  ASSERT_EQ(traces.size(), 2u);
  EXPECT_EQ(traces[0].text, "kept four\n");
  EXPECT_EQ(traces[1].text, "macro kept\n");
  EXPECT_EQ(traces[1].function, "TestBody");
}

TEST(DebugChannelTest, NullOrForeignHandleIsIgnored) {
  TraceCapture capture(7);
  _DoDbgPrintEx(nullptr, 1, "fn", "f.cpp", 1, "nothing\n");
  DBG_CHANNEL notAChannel{0, 7};
  _DoDbgPrintEx(&notAChannel, 1, "fn", "f.cpp", 1, "nothing\n");
  _DoDbgUninitEx(&notAChannel, "fn", "f.cpp", 1);
  EXPECT_TRUE(capture.traces().empty());
}

TEST(DebugChannelTest, FileSinkGetsOneLinePerTrace) {
  TempFile sink;
  ScopedEnv file("SESSMGR_DEBUG_FILE", sink.path());
  ScopedEnv level("SESSMGR_DEBUG_LEVEL", "3");
  {
    ScopedChannel channel("FILESINK");
    _DoDbgPrintEx(channel.get(), 3, "MyFunction", "/a/b/source.cpp", 77, "value=%d\n", 9);
    _DoDbgPrintEx(channel.get(), 4, "MyFunction", "/a/b/source.cpp", 78, "too detailed\n");
    _DoDbgPrintEx(channel.get(), 1, "Other", "x.cpp", 5, "no newline");
  }
  std::string content = sink.read();
  ASSERT_EQ(std::count(content.begin(), content.end(), '\n'), 2) << content;
  std::string first = content.substr(0, content.find('\n'));
  EXPECT_NE(first.find("[FILESINK] L3 "), std::string::npos) << first;
  EXPECT_NE(first.find(" MyFunction (source.cpp:77): value=9"), std::string::npos) << first;
  EXPECT_TRUE(first.ends_with("value=9")) << first;
  EXPECT_EQ(content.find("too detailed"), std::string::npos);
  EXPECT_TRUE(content.ends_with("Other (x.cpp:5): no newline\n")) << content;
}

TEST(DebugChannelTest, BufferDumpIsHexWithAscii) {
  ScopedChannel channel("DUMP");
  TraceCapture capture(7);
  const BYTE abData[18] = {'A', 'B', 0x00, 0xff, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 'y', 'z'};
  _DoDbgPrintBuffer(channel.get(), 7, "fn", "f.cpp", 3, abData, sizeof(abData));
  auto texts = capture.texts();
  ASSERT_EQ(texts.size(), 3u);
  EXPECT_NE(texts[0].find("18 bytes"), std::string::npos);
  EXPECT_TRUE(texts[1].starts_with("0000: 41 42 00 ff 01")) << texts[1];
  EXPECT_NE(texts[1].find("|AB..............|"), std::string::npos) << texts[1];
  EXPECT_TRUE(texts[2].starts_with("0010: 79 7a ")) << texts[2];
  EXPECT_NE(texts[2].find("|yz|"), std::string::npos) << texts[2];
}

TEST(AssertTest, ReportsExpressionAndPlaceAtLevelOne) {
  smgr::util::SetAssertAbortEnabled(false);
  {
    TraceCapture capture(1);
    _DoAssert("pSelector != NULL", "SessMgr_OpenStream", "/src/smgr_stream_api.cpp", 120);
    _DoTextAssert("GetAddr", "/src/net.cpp", 7, "Unknown address family (%d) detected.\n", 99);
    auto traces = capture.traces();
    ASSERT_EQ(traces.size(), 2u);
    EXPECT_EQ(traces[0].channel, "ASSERT");
    EXPECT_EQ(traces[0].level, 1);
    EXPECT_EQ(traces[0].function + ":" + traces[0].file + ":" + std::to_string(traces[0].line),
              "SessMgr_OpenStream:smgr_stream_api.cpp:120");
    EXPECT_EQ(traces[0].text, "Assertion failed: pSelector != NULL\n");
    EXPECT_EQ(traces[1].text, "Assertion failed: Unknown address family (99) detected.\n");
  }
  {
    TraceCapture silent(0);
    _DoAssert("x", "f", "f.cpp", 1);  // the caller goes on
    EXPECT_TRUE(silent.traces().empty());
  }
  smgr::util::SetAssertAbortEnabled(true);
}

std::atomic<int> g_nOnceRuns{0};
BOOL countedOnce() {
  ++g_nOnceRuns;
  std::this_thread::sleep_for(std::chrono::milliseconds(20));  // widen the window for racing callers
  return TRUE;
}

TEST(OnceOnlyTest, RunsOnceUnderConcurrentCallers) {
  BOOL bFlag = FALSE;
  std::atomic<bool> bGo{false};
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&] {
      while (!bGo.load()) std::this_thread::yield();
      DoExecuteOnceOnlyFunction(countedOnce, &bFlag);
    });
  }
  bGo = true;
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(g_nOnceRuns.load(), 1);
  EXPECT_EQ(bFlag, 1);
  DoExecuteOnceOnlyFunction(countedOnce, &bFlag);
  EXPECT_EQ(g_nOnceRuns.load(), 1);
}

BOOL g_bInnerFlag = FALSE;
BOOL inner() { return TRUE; }
BOOL outer() { return DoExecuteOnceOnlyFunction(inner, &g_bInnerFlag); }

TEST(OnceOnlyTest, OnceFunctionMayRunAnotherOnce) {
  BOOL bOuterFlag = FALSE;
  EXPECT_TRUE(DoExecuteOnceOnlyFunction(outer, &bOuterFlag));
  EXPECT_EQ(bOuterFlag, 1);
  EXPECT_EQ(g_bInnerFlag, 1);
}

}  // namespace
