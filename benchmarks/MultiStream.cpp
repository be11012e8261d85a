// The decision of all streams on one vision result that is already read, with 1, 4 and 16 streams beside
// stream 0, beside stream 0 alone: the steady case, and everybody changing ids in every result so that each
// stream makes and drops candidates.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>

#include "benchmarks/AllocationCount.h"
#include "benchmarks/Meeting.h"
#include "config/PrConfig.h"
#include "layouts/streams/MultiStreamFramingLayout.h"
#include "model/FynCamerasConfig.h"
#include "model/MLData.h"
#include "platform/ServiceStateScope.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules::bench {

namespace {

constexpr int kPersons = 16;

std::shared_ptr<MLData> meeting(int shift, int firstId) {
  auto data = std::make_shared<MLData>();
  data->from_json(nlohmann::json::parse(visionResult(kPersons, 1, shift)));
  for (const std::shared_ptr<FynHead>& person : data->heads) {
    person->id += firstId;
  }
  return data;
}

void decide(benchmark::State& state, bool changing) {
  const ServiceStateScope scope(std::make_shared<ServiceState>());
  VisionSettings::setLogLevel(0);
  PrConfig config = PrConfig::DEFAULT;
  config.maxStreams = static_cast<int>(state.range(0));
  PrConfig::set(config);
  FynCamerasConfig::getMutable().fynCamId = 0;
  const std::array<std::shared_ptr<MLData>, 2> results{meeting(0, 0), meeting(2, changing ? 1000 : 0)};
  MultiStreamFramingLayout engine;
  std::size_t next = 0;
  std::uint64_t allocations = 0;
  for (auto _ : state) {
    const std::uint64_t before = allocationCount();
    benchmark::DoNotOptimize(engine.process(results[next]));
    next = 1 - next;
    allocations += allocationCount() - before;
  }
  state.counters["allocs"] = static_cast<double>(allocations) / static_cast<double>(state.iterations());
}

void multiStreamSteady(benchmark::State& state) {
  decide(state, false);
}
void multiStreamChanging(benchmark::State& state) {
  decide(state, true);
}

}  // namespace

BENCHMARK(multiStreamSteady)->ArgName("streams")->Arg(0)->Arg(1)->Arg(4)->Arg(16);
BENCHMARK(multiStreamChanging)->ArgName("streams")->Arg(0)->Arg(1)->Arg(4)->Arg(16);

}  // namespace fyn::productionrules::bench
