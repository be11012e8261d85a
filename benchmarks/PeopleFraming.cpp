// The decision of people framing on one vision result that is already read, beside the cost of reading it:
// the steady case, and people who change places in every result so that a candidate is made each time.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>

#include "benchmarks/AllocationCount.h"
#include "benchmarks/Meeting.h"
#include "config/PrConfig.h"
#include "layouts/people/PeopleFramingLayout.h"
#include "layouts/people/PrimaryPeopleLayout.h"
#include "model/FynCamerasConfig.h"
#include "model/MLData.h"
#include "platform/ServiceStateScope.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules::bench {

namespace {

std::shared_ptr<MLData> meeting(int persons, int shift) {
  auto data = std::make_shared<MLData>();
  data->from_json(nlohmann::json::parse(visionResult(persons, 1, shift)));
  return data;
}

/** The second result has the same boxes under the ids of other persons. */
std::shared_ptr<MLData> swapped(int persons) {
  std::shared_ptr<MLData> data = meeting(persons, 0);
  for (std::size_t i = 0; i + 1 < data->heads.size(); i += 2) {
    std::swap(data->heads[i]->id, data->heads[i + 1]->id);
  }
  return data;
}

template <typename Engine>
void decide(benchmark::State& state, bool changing) {
  const ServiceStateScope scope(std::make_shared<ServiceState>());
  VisionSettings::setLogLevel(0);
  PrConfig config = PrConfig::DEFAULT;
  config.compositeModeMaxPeople = 64;
  config.compositeModeMaxPeoplePrimary = 64;
  PrConfig::set(config);
  FynCamerasConfig::getMutable().fynCamId = 0;
  const int persons = static_cast<int>(state.range(0));
  const std::array<std::shared_ptr<MLData>, 2> results{meeting(persons, 0),
                                                       changing ? swapped(persons) : meeting(persons, 2)};
  Engine engine;
  std::size_t next = 0;
  std::uint64_t allocations = 0;
  for (auto _ : state) {
    const std::uint64_t before = allocationCount();
    const std::shared_ptr<MLData>& data = results[next];
    next = 1 - next;
    engine.updatePeopleMap(data);
    benchmark::DoNotOptimize(engine.applyingLayout(data) || engine.updateFeedPriorityOfFrame() ||
                             engine.updateLayoutFraming());
    allocations += allocationCount() - before;
  }
  state.counters["allocs"] = static_cast<double>(allocations) / static_cast<double>(state.iterations());
}

void peopleReading(benchmark::State& state) {
  const std::string text = visionResult(static_cast<int>(state.range(0)), 1);
  for (auto _ : state) {
    MLData data;
    data.from_json(nlohmann::json::parse(text));
    benchmark::DoNotOptimize(data);
  }
}

void peopleSteady(benchmark::State& state) {
  decide<PeopleFramingLayout>(state, false);
}
void peopleChanging(benchmark::State& state) {
  decide<PeopleFramingLayout>(state, true);
}
void peoplePrimarySteady(benchmark::State& state) {
  decide<PrimaryPeopleLayout>(state, false);
}

}  // namespace

BENCHMARK(peopleReading)->Arg(1)->Arg(4)->Arg(8)->Arg(16)->Arg(64);
BENCHMARK(peopleSteady)->Arg(1)->Arg(4)->Arg(8)->Arg(16)->Arg(64);
BENCHMARK(peopleChanging)->Arg(1)->Arg(4)->Arg(8)->Arg(16)->Arg(64);
BENCHMARK(peoplePrimarySteady)->Arg(1)->Arg(4)->Arg(8)->Arg(16)->Arg(64);

}  // namespace fyn::productionrules::bench
