// The decision of speaker framing on one vision result that is already read: the steady case, and a speaker
// who changes in every result so that a candidate is made and dropped each time.
#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <nlohmann/json.hpp>

#include "benchmarks/AllocationCount.h"
#include "benchmarks/Meeting.h"
#include "config/PrConfig.h"
#include "layouts/speaker/SpeakerFramingLayout.h"
#include "model/FynCamerasConfig.h"
#include "model/MLData.h"
#include "platform/ServiceStateScope.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules::bench {

namespace {

std::shared_ptr<MLData> meeting(int persons, int speaker) {
  auto data = std::make_shared<MLData>();
  data->from_json(nlohmann::json::parse(visionResult(persons, 1)));
  for (std::size_t i = 0; i < data->heads.size(); ++i) {
    for (auto& [camera, head] : data->heads[i]->mCamIdAssocHeadMap) {
      head->isSpeaker = static_cast<int>(i) == speaker;
    }
  }
  return data;
}

void decide(benchmark::State& state, bool useSsb, bool sameSpeaker) {
  const ServiceStateScope scope(std::make_shared<ServiceState>());
  VisionSettings::setLogLevel(0);
  PrConfig config = PrConfig::DEFAULT;
  config.sfUseSsb = useSsb;
  PrConfig::set(config);
  FynCamerasConfig::getMutable().fynCamId = 0;
  const int persons = static_cast<int>(state.range(0));
  const std::array<std::shared_ptr<MLData>, 2> results{meeting(persons, 0),
                                                       meeting(persons, sameSpeaker ? 0 : persons - 1)};
  SpeakerFramingLayout engine;
  std::size_t next = 0;
  std::uint64_t allocations = 0;
  for (auto _ : state) {
    const std::uint64_t before = allocationCount();
    const std::shared_ptr<MLData>& data = results[next];
    next = 1 - next;
    engine.updatePeopleMap(data);
    benchmark::DoNotOptimize(engine.applyingLayout(data) || engine.updateLayoutFraming());
    allocations += allocationCount() - before;
  }
  state.counters["allocs"] = static_cast<double>(allocations) / static_cast<double>(state.iterations());
}

void speakerBySelection(benchmark::State& state) {
  decide(state, true, true);
}
void speakerByNeighbours(benchmark::State& state) {
  decide(state, false, true);
}
void speakerChanges(benchmark::State& state) {
  decide(state, true, false);
}

BENCHMARK(speakerBySelection)->Arg(1)->Arg(4)->Arg(8)->Arg(16)->Arg(64);
BENCHMARK(speakerByNeighbours)->Arg(1)->Arg(4)->Arg(8)->Arg(16)->Arg(64);
BENCHMARK(speakerChanges)->Arg(1)->Arg(4)->Arg(8)->Arg(16)->Arg(64);

}  // namespace

}  // namespace fyn::productionrules::bench
