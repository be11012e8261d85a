// A vision result through the whole service: text in, decision, text out. Beside each figure stands the floor
// that it cannot go under, measured in the same run, iteration by iteration: the JSON library's parse of the
// same text and its dump of the same document. The rows of the peer stand beside another program for the job.
#include <benchmark/benchmark.h>

#include <ctime>
#include <nlohmann/json.hpp>

#include "benchmarks/AllocationCount.h"
#include "benchmarks/BenchService.h"
#include "benchmarks/FaceBoxCropper.h"
#include "benchmarks/Meeting.h"
#include "model/FynCamerasConfig.h"
#include "model/MLData.h"
#include "model/VisionResultReader.h"
#include "output/JsonLayoutBuilder.h"

namespace fyn::productionrules::bench {

namespace {

// Processor time of this thread in nanoseconds: what other programs do meanwhile does not count.
double threadNanoseconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

// Under these names instructions.py finds what belongs to which.
template <typename Work>
[[gnu::noinline]] void runCycle(Work& cycle) {
  cycle();
}
template <typename Work>
[[gnu::noinline]] void runFloor(Work& floor) {
  floor();
}

/** Runs a cycle and its floor in turn; the benchmark's time is the cycle's. */
template <typename Cycle, typename Floor>
void measure(benchmark::State& state, Cycle cycle, Floor floor) {
  double cycleNs = 0;
  double floorNs = 0;
  std::uint64_t allocations = 0;
  for (auto _ : state) {
    const std::uint64_t before = allocationCount();
    const double start = threadNanoseconds();
    runCycle(cycle);
    const double middle = threadNanoseconds();
    allocations += allocationCount() - before;
    runFloor(floor);
    const double end = threadNanoseconds();
    state.SetIterationTime((middle - start) * 1e-9);
    cycleNs += middle - start;
    floorNs += end - middle;
  }
  const auto iterations = static_cast<double>(state.iterations());
  state.counters["floor_ns"] = floorNs / iterations;
  state.counters["ratio"] = cycleNs / floorNs;
  state.counters["allocs"] = static_cast<double>(allocations) / iterations;
}

void parseFloor(const std::string& text) {
  benchmark::DoNotOptimize(nlohmann::json::parse(text));
}

// The persons of the row, or sixteen for the rows of several streams, whose number the row gives.
constexpr int kPersonsOfStreams = 16;

std::string showFirstPicture(benchmark::State& state, BenchService& bench, FramingMode mode) {
  const auto argument = static_cast<int>(state.range(0));
  const bool ofStreams = mode == FramingMode::MultiStream;
  std::string text = visionResult(ofStreams ? kPersonsOfStreams : argument, 1);
  bench.service().process("/ICDOut", text);
  if (ofStreams) {
    bench.service().trackingMode().getFramingLayout()->setMaxLayouts(static_cast<unsigned>(argument));
    bench.service().process("/ICDOut", text);
  }
  return text;
}

// Nothing changes: parse and decide. The usual case, 29 of 30 results a second.
void steadyCycle(benchmark::State& state, bool withLog, FramingMode mode = FramingMode::GroupFraming) {
  BenchService bench(mode, withLog);
  const std::string text = showFirstPicture(state, bench, mode);
  const std::string topic = "/ICDOut";
  measure(
      state,
      [&] {
        bench.nextFrame();
        bench.service().process(topic, text);
      },
      [&] { parseFloor(text); });
}

// Every result gives a new picture: parse, decide, build, publish and call the provider.
void pictureCycle(benchmark::State& state, bool withLog, FramingMode mode = FramingMode::GroupFraming) {
  BenchService bench(mode, withLog);
  const std::string text = showFirstPicture(state, bench, mode);
  const std::string topic = "/ICDOut";
  const auto scene = nlohmann::ordered_json::parse(bench.lastScene());
  measure(
      state,
      [&] {
        bench.nextFrame();
        bench.service().trackingMode().resetLayouts();
        bench.service().process(topic, text);
      },
      [&] {
        parseFloor(text);
        benchmark::DoNotOptimize(scene.dump());
      });
}

void steady(benchmark::State& state) {
  steadyCycle(state, false);
}
void steadyWithLog(benchmark::State& state) {
  steadyCycle(state, true);
}
void newPicture(benchmark::State& state) {
  pictureCycle(state, false);
}
void newPictureWithLog(benchmark::State& state) {
  pictureCycle(state, true);
}
void steadyIn(benchmark::State& state, FramingMode mode) {
  steadyCycle(state, false, mode);
}
void newPictureIn(benchmark::State& state, FramingMode mode) {
  pictureCycle(state, false, mode);
}

// The parts. A usual vision result is read fast; one with a key that stands twice is read by way of a
// document.
void partRead(benchmark::State& state, bool isUsual) {
  std::string text = visionResult(static_cast<int>(state.range(0)), 1);
  if (!isUsual) {
    text.insert(1, R"("timestamp":0,)");
  }
  VisionResultReader reader;
  measure(
      state, [&] { benchmark::DoNotOptimize(reader.read(text)); }, [&] { parseFloor(text); });
}

void partDecide(benchmark::State& state) {
  BenchService bench(FramingMode::GroupFraming, false);
  const std::string text = visionResult(static_cast<int>(state.range(0)), 1);
  bench.service().process("/ICDOut", text);
  const auto mlData = std::make_shared<MLData>();
  mlData->from_json(nlohmann::json::parse(text));
  measure(
      state,
      [&] {
        bench.nextFrame();
        benchmark::DoNotOptimize(bench.service().trackingMode().process(mlData));
      },
      [&] { parseFloor(text); });
}

std::vector<Rect> boxesOf(const MLData& seen) {
  std::vector<Rect> boxes;
  boxes.reserve(seen.getHeads().size());
  for (const std::shared_ptr<FynHead>& person : seen.getHeads()) {
    boxes.push_back(person->findHead(FynHead::kNoCamera)->bbox);
  }
  return boxes;
}

// The peer gets the same boxes, as records or as the same text by the same reader.
void peer(benchmark::State& state, bool readsText) {
  BenchService bench(FramingMode::GroupFraming, false);
  const std::string text = visionResult(static_cast<int>(state.range(0)), 1);
  const std::string topic = "/ICDOut";
  bench.service().process(topic, text);
  VisionResultReader reader;
  const std::shared_ptr<MLData> seen = reader.read(text);
  FaceBoxCropper cropper;
  measure(
      state,
      [&] {
        bench.nextFrame();
        if (readsText) {
          bench.service().process(topic, text);
        } else {
          benchmark::DoNotOptimize(bench.service().trackingMode().process(seen));
        }
      },
      [&] { benchmark::DoNotOptimize(cropper.crop(boxesOf(readsText ? *reader.read(text) : *seen))); });
}

void partBuild(benchmark::State& state) {
  BenchService bench(FramingMode::GroupFraming, false);
  bench.service().process("/ICDOut", visionResult(static_cast<int>(state.range(0)), 1));
  const auto scene = nlohmann::ordered_json::parse(bench.lastScene());
  const std::vector<Layout> layouts{*bench.service().trackingMode().getFramingLayout()->getLayoutPtr()};
  const JsonLayoutBuilder builder;
  const std::uint32_t counter = 1;
  measure(
      state,
      [&] {
        benchmark::DoNotOptimize(
            builder.generateMultiStreamLayout(layouts, counter, FramingMode::GroupFraming, false));
      },
      [&] { benchmark::DoNotOptimize(scene.dump()); });
}

void persons(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("persons")->Arg(1)->Arg(4)->Arg(8)->Arg(16)->Arg(64)->UseManualTime();
}

void streams(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("streams")->Arg(0)->Arg(1)->Arg(4)->Arg(16)->UseManualTime();
}

BENCHMARK(steady)->Apply(persons);
BENCHMARK(newPicture)->Apply(persons);
BENCHMARK_CAPTURE(steadyIn, people, FramingMode::PeopleFraming)->Apply(persons);
BENCHMARK_CAPTURE(newPictureIn, people, FramingMode::PeopleFraming)->Apply(persons);
BENCHMARK_CAPTURE(steadyIn, speaker, FramingMode::SpeakerFraming)->Apply(persons);
BENCHMARK_CAPTURE(newPictureIn, speaker, FramingMode::SpeakerFraming)->Apply(persons);
BENCHMARK_CAPTURE(steadyIn, multiStream, FramingMode::MultiStream)->Apply(streams);
BENCHMARK_CAPTURE(newPictureIn, multiStream, FramingMode::MultiStream)->Apply(streams);
BENCHMARK(steadyWithLog)->Apply(persons);
BENCHMARK(newPictureWithLog)->Apply(persons);
BENCHMARK_CAPTURE(partRead, fast, true)->Apply(persons);
BENCHMARK_CAPTURE(partRead, exactly, false)->Apply(persons);
BENCHMARK(partDecide)->Apply(persons);
BENCHMARK(partBuild)->Apply(persons);
BENCHMARK_CAPTURE(peer, boxes, false)->Apply(persons);
BENCHMARK_CAPTURE(peer, text, true)->Apply(persons);

}  // namespace

}  // namespace fyn::productionrules::bench

BENCHMARK_MAIN();
