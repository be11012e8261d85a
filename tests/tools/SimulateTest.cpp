#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/tools/RunPrb.h"
#include "tools/meeting/Simulation.h"

namespace fyn::productionrules::testing {
namespace {

SimulationOptions optionsOf(std::uint64_t seed, int people, int minutes, int cameras, const char* noise) {
  SimulationOptions options;
  options.seed = seed;
  options.people = people;
  options.minutes = minutes;
  options.cameras = cameras;
  options.errors = *noiseOf(noise);
  return options;
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
  if (options.errors.missed == 0) {
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
  SimulationOptions seated = optionsOf(9, 5, 5, 1, "none");
  seated.seating = findSeating("table");
  seated.movements = {2, 1, 2, 2};
  for (const SimulationOptions& options : {optionsOf(9, 5, 5, 1, "none"), seated}) {
    Simulation simulation(options);
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
}

TEST(Simulate, TheSameSeedGivesTheSameBytes) {
  const std::vector<std::string> commands[] = {
      {"simulate", "--people", "3", "--minutes", "1", "--cameras", "2"},
      {"simulate", "--seats", "board", "--minutes", "1", "--errors", "hard", "--come-late", "1",
       "--go-to-board", "1", "--leave-early", "1", "--walk-through", "1", "--overlap", "10"}};
  for (const std::vector<std::string>& command : commands) {
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
