#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/tools/RunPrb.h"
#include "tools/meeting/Simulation.h"

namespace fyn::productionrules::testing {
namespace {

/** What a detector makes of one head that stands still. */
struct Measured {
  double recall = 0;
  std::size_t dropOutMedian = 0;
  std::size_t dropOut90 = 0;
  /** Per cent of the width, between neighbouring frames. */
  double jitterMedian = 0;
  double jitter95 = 0;
};

template <typename T>
T quantileOf(std::vector<T> values, std::size_t parts) {
  if (values.empty()) {
    return T();
  }
  const std::size_t index = std::min(values.size() - 1, values.size() * parts / 100);
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(index), values.end());
  return values[index];
}

Measured measure(const DetectorNoise& noise, std::uint64_t seed) {
  constexpr int kFrames = 200000;
  constexpr std::int32_t kWidth = 20000;
  Detector detector(Random(seed, 0), noise, {1280, 720}, 1);
  std::vector<std::size_t> dropOuts;
  std::vector<double> steps;
  std::size_t missing = 0;
  int seen = 0;
  std::optional<Rect> last;
  for (int frame = 0; frame < kFrames; ++frame) {
    const std::optional<Rect> box = detector.see(1, {0, 0, kWidth, kWidth});
    if (box) {
      ++seen;
      if (missing > 0) {
        dropOuts.push_back(missing);
      }
      if (last) {
        steps.push_back(std::abs(box->left - last->left) * 100.0 / kWidth);
      }
    }
    missing = box ? 0 : missing + 1;
    last = box;
  }
  return {static_cast<double>(seen) / kFrames, quantileOf(dropOuts, 50), quantileOf(dropOuts, 90),
          quantileOf(steps, 50), quantileOf(steps, 95)};
}

TEST(Simulate, RealNoiseHasTheMeasuredFigures) {
  for (const std::uint64_t seed : {1U, 2U, 3U}) {
    const Measured measured = measure(*noiseOf("real"), seed);
    EXPECT_GE(measured.recall, 0.71);
    EXPECT_LE(measured.recall, 0.76);
    EXPECT_EQ(measured.dropOutMedian, 2U);
    EXPECT_GE(measured.dropOut90, 20U);
    EXPECT_LE(measured.dropOut90, 36U);
    EXPECT_GE(measured.jitterMedian, 0.2);
    EXPECT_LE(measured.jitterMedian, 0.9);
    EXPECT_GE(measured.jitter95, 2);
    EXPECT_LE(measured.jitter95, 4);
  }
}

SimulationOptions optionsOf(std::uint64_t seed, int people, int minutes, int cameras, const char* noise) {
  return {seed, people, minutes, cameras, *noiseOf(noise)};
}

/** What must hold of every result of every meeting. */
void expectSoundMeeting(const SimulationOptions& options) {
  Simulation simulation(options);
  std::set<std::int32_t> speakers;
  std::set<std::int32_t> everSeen;
  std::int64_t last = -1;
  std::size_t atTheEnd = 0;
  for (std::int64_t i = 0; i < simulation.resultCount(); ++i) {
    const VisionResult result = simulation.next();
    ASSERT_GT(result.t, last);
    last = result.t;
    ASSERT_EQ(result.frameNumber, i + 1);
    std::set<std::int32_t> ids;
    for (const SeenPerson& person : result.persons) {
      ASSERT_TRUE(ids.insert(person.id).second) << "two persons " << person.id << " at " << result.t;
      std::set<std::int32_t> cameras;
      for (const SeenHead& head : person.heads) {
        ASSERT_TRUE(cameras.insert(head.camera).second);
        ASSERT_LT(head.camera, options.cameras);
        ASSERT_LT(head.box.left, head.box.right);
        ASSERT_LT(head.box.top, head.box.bottom);
        ASSERT_GE(std::min(head.box.left, head.box.top), 0);
        ASSERT_LE(head.box.right, 1280);
        ASSERT_LE(head.box.bottom, 720);
        ASSERT_EQ(head.selectionBox.has_value(), head.speaking);
        if (head.speaking) {
          speakers.insert(person.id);
        }
      }
      everSeen.insert(person.id);
    }
    atTheEnd = ids.size();
  }
  EXPECT_EQ(last, std::int64_t{options.minutes} * 60000 - 34 + (last % 100 == 67 ? 1 : 0));
  for (int person = 1; person <= options.people; ++person) {
    EXPECT_EQ(everSeen.count(person), 1U) << person << " never came";
  }
  if (options.noise.missed == 0) {
    EXPECT_EQ(everSeen.size(), static_cast<std::size_t>(options.people));
    EXPECT_LT(atTheEnd, static_cast<std::size_t>(options.people)) << "nobody left";
  }
  EXPECT_GE(speakers.size(), std::min<std::size_t>(2, static_cast<std::size_t>(options.people)));
}

TEST(Simulate, EveryMeetingIsSound) {
  expectSoundMeeting(optionsOf(1, 4, 3, 1, "none"));
  expectSoundMeeting(optionsOf(2, 1, 1, 1, "none"));
  expectSoundMeeting(optionsOf(3, 16, 2, 3, "real"));
  expectSoundMeeting(optionsOf(4, 64, 1, 1, "high"));
}

TEST(Simulate, HeadsMoveWithoutLeaps) {
  Simulation simulation(optionsOf(9, 5, 5, 1, "none"));
  std::map<std::int32_t, Rect> last;
  std::int32_t longest = 0;
  for (std::int64_t i = 0; i < simulation.resultCount(); ++i) {
    std::map<std::int32_t, Rect> now;
    for (const SeenPerson& person : simulation.next().persons) {
      now[person.id] = person.heads.front().box;
      if (last.count(person.id) != 0) {
        longest = std::max(longest, std::abs(now[person.id].bottom - last[person.id].bottom));
        longest = std::max(longest, std::abs(now[person.id].right - last[person.id].right));
      }
    }
    last = std::move(now);
  }
  EXPECT_GT(longest, 3) << "somebody walks";
  EXPECT_LE(longest, 20);
}

TEST(Simulate, TheSameSeedGivesTheSameBytes) {
  const std::vector<std::string> command{"simulate", "--people", "3", "--minutes", "1", "--cameras", "2"};
  const auto withSeed = [&command](const char* seed) {
    std::vector<std::string> arguments = command;
    arguments.insert(arguments.end(), {"--seed", seed});
    return runPrbWith(arguments);
  };
  const PrbRun first = withSeed("7");
  EXPECT_EQ(first.err, "") << "no progress bar in a pipe";
  EXPECT_EQ(first.out, withSeed("7").out);
  EXPECT_NE(first.out, withSeed("8").out);
}

TEST(Simulate, TheTruthIsWhatADetectorWithoutErrorsReports) {
  Simulation clean(optionsOf(7, 5, 2, 2, "none"));
  Simulation noisy(optionsOf(7, 5, 2, 2, "high"));
  for (std::int64_t i = 0; i < clean.resultCount(); ++i) {
    std::vector<TrueHead> seen = truthOf(clean.next()).heads;
    std::sort(seen.begin(), seen.end(), [](const TrueHead& a, const TrueHead& b) {
      return std::pair(a.fynCamId, a.id) < std::pair(b.fynCamId, b.id);
    });
    noisy.next();
    ASSERT_TRUE(seen == clean.truth().heads) << i;
    ASSERT_TRUE(seen == noisy.truth().heads) << i;
  }
}

TEST(Simulate, TellsTheTruthOnlyWhereItChangesAndLeavesItOutWhenAsked) {
  std::vector<std::string> command{"simulate", "--seed", "7", "--people", "3", "--minutes", "1"};
  std::istringstream recording(runPrbWith(command).out);
  std::string others;
  std::string told;
  int changes = 0;
  for (std::string line; std::getline(recording, line);) {
    const std::size_t truth = line.find("\"truth\":");
    if (truth == std::string::npos) {
      others += line + "\n";
    } else {
      EXPECT_NE(line.substr(truth), told) << line;
      told = line.substr(truth);
      ++changes;
    }
  }
  EXPECT_GT(changes, 300);
  EXPECT_LT(changes, 1500) << "who sits still is not told again";
  command.emplace_back("--no-truth");
  EXPECT_EQ(runPrbWith(command).out, others);
}

}  // namespace
}  // namespace fyn::productionrules::testing
