// smgr-exporter against the real simulator and a real Prometheus server: the
// server scrapes the exporter every second and the test asks its query API.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cctype>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <thread>

#include "http_get.h"
#include "sim/sim_harness.h"

namespace {

using exporter::test::FreeLoopbackPort;
using exporter::test::HttpGet;
using sim::test::RunCtl;
using sim::test::SimProcess;
constexpr const char* kPrometheus = "/usr/bin/prometheus";

// A child process, output to a log file, ended (SIGTERM, then SIGKILL) when it goes out of scope.
class Child {
 public:
  Child(std::vector<std::string> args, const std::filesystem::path& log) {
    pid_ = fork();
    if (pid_ == 0) {
      const int fd = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
      dup2(fd, STDOUT_FILENO);
      dup2(fd, STDERR_FILENO);
      std::vector<char*> argv;
      for (std::string& arg : args) argv.push_back(arg.data());
      argv.push_back(nullptr);
      execv(argv[0], argv.data());
      _exit(127);
    }
  }
  ~Child() {
    kill(pid_, SIGTERM);
    for (int i = 0; i < 100 && waitpid(pid_, nullptr, WNOHANG) == 0; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }

 private:
  pid_t pid_ = -1;
};

std::string UrlEncode(const std::string& text) {
  std::string encoded;
  char hex[4];
  for (unsigned char c : text) {
    if (isalnum(c) || c == '_' || c == '.' || c == '-') {
      encoded += static_cast<char>(c);
    } else {
      snprintf(hex, sizeof hex, "%%%02X", c);
      encoded += hex;
    }
  }
  return encoded;
}

class ExporterWithPrometheus : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(kPrometheus))
      GTEST_SKIP() << kPrometheus
                   << " is missing: install the Debian package prometheus (scripts/setup-deps)";
    ASSERT_TRUE(sim_.ready());
    sim_.exportEnvironment();
    ASSERT_EQ(
        RunCtl({"stream", "create", "cam1", "-a", "239.1.1.1", "-p", "5000", "--video", "venc1"}).status, 0);
    ASSERT_EQ(RunCtl({"stream", "start", "cam1"}).status, 0);
    const int exporterPort = FreeLoopbackPort();
    promPort_ = FreeLoopbackPort();
    const std::filesystem::path dir = sim_.dir();
    std::ofstream(dir / "prometheus.yml") << "global: {scrape_interval: 1s, evaluation_interval: 1s}\n"
                                          << "scrape_configs:\n- job_name: smgr\n  static_configs:\n"
                                          << "  - targets: ['127.0.0.1:" << exporterPort << "']\n";
    exporter_ = std::make_unique<Child>(
        std::vector<std::string>{SMGR_EXPORTER_PATH, "--listen", "127.0.0.1:" + std::to_string(exporterPort),
                                 "--interval", "0.5"},
        dir / "exporter.log");
    prometheus_ = std::make_unique<Child>(
        std::vector<std::string>{kPrometheus, "--config.file=" + (dir / "prometheus.yml").string(),
                                 "--storage.tsdb.path=" + (dir / "tsdb").string(),
                                 "--web.listen-address=127.0.0.1:" + std::to_string(promPort_)},
        dir / "prometheus.log");
  }
  void TearDown() override {
    prometheus_.reset();
    exporter_.reset();
  }

  // The value of an instant query's first series, nullopt when there is none (yet).
  std::optional<double> query(const std::string& expression) {
    auto body = HttpGet(promPort_, "/api/v1/query?query=" + UrlEncode(expression));
    if (!body) return std::nullopt;
    auto result = nlohmann::json::parse(*body, nullptr, false)["data"]["result"];
    if (!result.is_array() || result.empty()) return std::nullopt;
    return std::stod(result[0]["value"][1].get<std::string>());
  }
  // Polls the query until the predicate holds on its value, at most `seconds`.
  bool waitFor(const std::string& expression, const std::function<bool(double)>& holds, int seconds = 30) {
    for (int i = 0; i < seconds * 4; ++i) {
      auto value = query(expression);
      if (value && holds(*value)) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(250));
    }
    return false;
  }

  SimProcess sim_;
  int promPort_ = 0;
  std::unique_ptr<Child> exporter_, prometheus_;
};

TEST_F(ExporterWithPrometheus, ScrapedStreamCountersGrowAtTheSimulatedBitRate) {
  ASSERT_TRUE(waitFor("count_over_time(smgr_up[1m])", [](double scrapes) { return scrapes >= 2; }))
      << "Prometheus never scraped the exporter twice";
  EXPECT_EQ(query("smgr_up"), 1.0);
  const std::string bytes = "smgr_stream_sent_bytes_total{name=\"cam1\"}";
  ASSERT_TRUE(waitFor(bytes, [](double value) { return value > 0; }));
  const double first = *query(bytes);
  ASSERT_TRUE(waitFor(bytes, [first](double value) { return value > first; }));

  const auto bitRate = query("smgr_stream_bit_rate_bits_per_second{name=\"cam1\"}");
  ASSERT_TRUE(bitRate && *bitRate > 0);
  // rate() over a window the series fully covers (no extrapolation at its start).
  ASSERT_TRUE(waitFor(
      "count_over_time(" + bytes + "[12s])", [](double samples) { return samples >= 11; }, 60));
  const auto rate = query("rate(" + bytes + "[8s]) * 8");
  ASSERT_TRUE(rate);
  EXPECT_NEAR(*rate, *bitRate, *bitRate * 0.15);
}

TEST_F(ExporterWithPrometheus, UpFollowsTheDaemonAwayAndBackWithoutCounterResets) {
  ASSERT_TRUE(waitFor("smgr_up", [](double up) { return up == 1; }));
  const std::string bytes = "smgr_stream_sent_bytes_total{name=\"cam1\"}";
  ASSERT_TRUE(waitFor(bytes, [](double value) { return value > 0; }));

  kill(sim_.pid(), SIGKILL);  // reaped by killAndRestart below
  EXPECT_TRUE(waitFor("smgr_up", [](double up) { return up == 0; })) << "smgr_up never dropped to 0";
  ASSERT_TRUE(sim_.killAndRestart());
  EXPECT_TRUE(waitFor("smgr_up", [](double up) { return up == 1; })) << "the exporter never reconnected";
  ASSERT_TRUE(waitFor(bytes, [](double value) { return value > 0; }));
  EXPECT_EQ(query("resets(" + bytes + "[5m])"), 0.0);
  EXPECT_GE(query("smgr_library_initialisations_total"), 2.0);
}

}  // namespace
