// A vision result through the whole service: text in, decision, text out. Beside each figure stands the floor
// that it cannot go under, measured in the same run, iteration by iteration: the JSON library's parse of the
// same text and its dump of the same document. The rows of the peer stand beside another program for the job.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
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

// What two readings of that clock take by themselves: as much as deciding for a few people.
double clockNanoseconds() {
  double least = 1e9;
  for (int i = 0; i < 1000; ++i) {
    const double start = threadNanoseconds();
    least = std::min(least, threadNanoseconds() - start);
  }
  return least;
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
  const double clockNs = clockNanoseconds();
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
    const double thisNs = std::max(0.0, middle - start - clockNs);
    state.SetIterationTime(thisNs * 1e-9);
    cycleNs += thisNs;
    floorNs += std::max(0.0, end - middle - clockNs);
  }
  const auto iterations = static_cast<double>(state.iterations());
  state.counters["floor_ns"] = floorNs / iterations;
  state.counters["ratio"] = cycleNs / floorNs;
  state.counters["allocs"] = static_cast<double>(allocations) / iterations;
}

// Twenty seconds, so that the first looks and waits are over.
constexpr int kResultsToSettle = 600;

void parseFloor(const std::string& text) {
  benchmark::DoNotOptimize(nlohmann::json::parse(text));
}

// The persons of the row, or sixteen for the rows of several streams, whose number the row gives.
constexpr int kPersonsOfStreams = 16;

bool hasStreams(const Room& room) {
  return room.mode == FramingMode::MultiStream;
}

std::string resultOf(const benchmark::State& state, const Room& room, const Moment& moment = {}) {
  return visionResult(hasStreams(room) ? kPersonsOfStreams : static_cast<int>(state.range(0)), moment);
}

void showFirstPicture(const benchmark::State& state, BenchService& bench, const Room& room,
                      const std::string& text) {
  bench.service().process("/ICDOut", text);
  if (hasStreams(room)) {
    bench.service().trackingMode().getFramingLayout()->setMaxLayouts(static_cast<unsigned>(state.range(0)));
    bench.service().process("/ICDOut", text);
  }
}

// Nothing changes: parse and decide. The usual case, 29 of 30 results a second.
void steadyIn(benchmark::State& state, const Room& room) {
  BenchService bench(room);
  const std::string text = resultOf(state, room);
  showFirstPicture(state, bench, room, text);
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
void newPictureIn(benchmark::State& state, const Room& room) {
  BenchService bench(room);
  const std::string text = resultOf(state, room);
  showFirstPicture(state, bench, room, text);
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
  steadyIn(state, {});
}
void newPicture(benchmark::State& state) {
  newPictureIn(state, {});
}

// The parts. A usual vision result is read fast; one with a key that stands twice is read by way of a
// document.
void partRead(benchmark::State& state, bool isUsual) {
  std::string text = visionResult(static_cast<int>(state.range(0)));
  if (!isUsual) {
    text.insert(1, R"("timestamp":0,)");
  }
  VisionResultReader reader;
  measure(
      state, [&] { benchmark::DoNotOptimize(reader.read(text)); }, [&] { parseFloor(text); });
}

// Deciding on results that are already read, in turn: the same people who sway, or, `changing`, neighbours
// who get each other's numbers, so that a picture is made and dropped each time.
void partDecide(benchmark::State& state, const Room& room, bool changing) {
  BenchService bench(room);
  const std::string text = resultOf(state, room);
  showFirstPicture(state, bench, room, text);
  VisionResultReader reader;
  const Moment other{2, changing};
  const std::array<std::shared_ptr<MLData>, 2> seen{reader.read(text),
                                                    reader.read(resultOf(state, room, other))};
  std::size_t next = 0;
  const auto decide = [&] {
    bench.nextFrame();
    benchmark::DoNotOptimize(bench.service().trackingMode().process(seen[next]));
    next = 1 - next;
  };
  for (int result = 0; result < kResultsToSettle; ++result) {
    decide();
  }
  measure(state, decide, [&] { parseFloor(text); });
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
  BenchService bench{Room()};
  const std::string text = visionResult(static_cast<int>(state.range(0)));
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
  BenchService bench{Room()};
  bench.service().process("/ICDOut", visionResult(static_cast<int>(state.range(0))));
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

constexpr Room kPeople{FramingMode::PeopleFraming};
constexpr Room kSpeaker{FramingMode::SpeakerFraming};
constexpr Room kStreams{FramingMode::MultiStream};
constexpr Room kWithLog{FramingMode::GroupFraming, false, true};

constexpr Room steadily(Room room) {
  room.steadyFraming = true;
  return room;
}

BENCHMARK(steady)->Apply(persons);
BENCHMARK(newPicture)->Apply(persons);
BENCHMARK_CAPTURE(steadyIn, people, kPeople)->Apply(persons);
BENCHMARK_CAPTURE(newPictureIn, people, kPeople)->Apply(persons);
BENCHMARK_CAPTURE(steadyIn, speaker, kSpeaker)->Apply(persons);
BENCHMARK_CAPTURE(newPictureIn, speaker, kSpeaker)->Apply(persons);
BENCHMARK_CAPTURE(steadyIn, multiStream, kStreams)->Apply(streams);
BENCHMARK_CAPTURE(newPictureIn, multiStream, kStreams)->Apply(streams);
BENCHMARK_CAPTURE(steadyIn, withLog, kWithLog)->Apply(persons);
BENCHMARK_CAPTURE(newPictureIn, withLog, kWithLog)->Apply(persons);
BENCHMARK_CAPTURE(partRead, fast, true)->Apply(persons);
BENCHMARK_CAPTURE(partRead, exactly, false)->Apply(persons);
BENCHMARK_CAPTURE(partDecide, group, Room(), false)->Apply(persons);
BENCHMARK_CAPTURE(partDecide, groupSteadily, steadily(Room()), false)->Apply(persons);
BENCHMARK_CAPTURE(partDecide, people, kPeople, false)->Apply(persons);
BENCHMARK_CAPTURE(partDecide, peopleSteadily, steadily(kPeople), false)->Apply(persons);
BENCHMARK_CAPTURE(partDecide, peopleChanging, kPeople, true)->Apply(persons);
BENCHMARK_CAPTURE(partDecide, speaker, kSpeaker, false)->Apply(persons);
BENCHMARK_CAPTURE(partDecide, speakerSteadily, steadily(kSpeaker), false)->Apply(persons);
BENCHMARK_CAPTURE(partDecide, speakerChanging, kSpeaker, true)->Apply(persons);
BENCHMARK_CAPTURE(partDecide, multiStream, kStreams, false)->Apply(streams);
BENCHMARK_CAPTURE(partDecide, multiStreamSteadily, steadily(kStreams), false)->Apply(streams);
BENCHMARK_CAPTURE(partDecide, multiStreamChanging, kStreams, true)->Apply(streams);
BENCHMARK(partBuild)->Apply(persons);
BENCHMARK_CAPTURE(peer, boxes, false)->Apply(persons);
BENCHMARK_CAPTURE(peer, text, true)->Apply(persons);

}  // namespace

}  // namespace fyn::productionrules::bench

BENCHMARK_MAIN();
