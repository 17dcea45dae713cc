// smgr-exporter figures against the real simulator with 16 running streams:
// the duration of one poll (one enumeration per family, one statistics request
// per object) and the latency of one scrape of /metrics over loopback.
#include <benchmark/benchmark.h>
#include <prometheus/exposer.h>

#include <memory>
#include <string>

#include "http_get.h"
#include "poller.h"
#include "sim/sim_harness.h"

namespace {

constexpr int kStreams = 16;

// One simulator, its streams and a connected poller for the whole program.
struct Appliance {
  sim::test::SimProcess sim;
  std::unique_ptr<exporter::Poller> poller;
  std::unique_ptr<prometheus::Exposer> exposer;
  int port = 0;
  bool ready = false;

  Appliance() {
    if (!sim.ready()) return;
    sim.exportEnvironment();
    for (int i = 1; i <= kStreams; ++i) {
      const std::string name = "bench" + std::to_string(i);
      if (sim::test::RunCtl({"stream", "create", name, "-a", "239.1.2." + std::to_string(i), "-p", "5000",
                             "--video", "venc1"})
                  .status != 0 ||
          sim::test::RunCtl({"stream", "start", name}).status != 0)
        return;
    }
    poller = std::make_unique<exporter::Poller>();
    poller->pollOnce();
    port = exporter::test::FreeLoopbackPort();
    exposer = std::make_unique<prometheus::Exposer>("127.0.0.1:" + std::to_string(port), 2);
    exposer->RegisterCollectable(poller->health());
    exposer->RegisterCollectable(poller->snapshot());
    ready = poller->up();
  }
};

Appliance& Shared() {
  static Appliance appliance;
  return appliance;
}

void BM_PollSixteenStreams(benchmark::State& state) {
  Appliance& appliance = Shared();
  if (!appliance.ready) return state.SkipWithError("the simulator with 16 streams did not come up");
  for (auto _ : state) appliance.poller->pollOnce();
  if (!appliance.poller->up()) state.SkipWithError("the daemon stopped answering");
}
BENCHMARK(BM_PollSixteenStreams)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ScrapeSixteenStreams(benchmark::State& state) {
  Appliance& appliance = Shared();
  if (!appliance.ready) return state.SkipWithError("the simulator with 16 streams did not come up");
  size_t bytes = 0;
  for (auto _ : state) {
    auto body = exporter::test::HttpGet(appliance.port, "/metrics");
    if (!body) return state.SkipWithError("the scrape failed");
    bytes = body->size();
  }
  state.counters["body_bytes"] = static_cast<double>(bytes);
}
BENCHMARK(BM_ScrapeSixteenStreams)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
