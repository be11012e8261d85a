#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <numeric>
#include <set>

#include "tests/tools/RunPrb.h"
#include "tools/meeting/Simulation.h"

namespace fyn::productionrules::testing {
namespace {

SimulationOptions meetingOf(const char* seating, int people, int minutes = 2, std::uint64_t seed = 1) {
  SimulationOptions options;
  options.seed = seed;
  options.people = people;
  options.minutes = minutes;
  options.seating = findSeating(seating);
  return options;
}

/** Shows what is true at each `step`th result to `look`. */
void watch(const SimulationOptions& options, int step,
           const std::function<void(std::int64_t, const std::vector<TrueHead>&)>& look) {
  Simulation simulation(options);
  for (std::int64_t i = 0; i < simulation.resultCount(); ++i) {
    const VisionResult result = simulation.next();
    if (i % step == 0) {
      look(result.t, simulation.truth().heads);
    }
  }
}

bool overlap(const Rect& a, const Rect& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

TEST(SeatedMeeting, EverybodyIsSeenWholeAndApart) {
  for (const Seating& seating : kSeatings) {
    for (int people = 1; people <= Seating::kMostPeople; ++people) {
      const std::string what = seating.name + (" of " + std::to_string(people));
      const SimulationOptions options =
          meetingOf(seating.name, people, 1, static_cast<std::uint64_t>(people));
      watch(options, 30, [&](std::int64_t t, const std::vector<TrueHead>& heads) {
        ASSERT_EQ(heads.size(), static_cast<std::size_t>(people)) << what;
        for (const TrueHead& head : heads) {
          ASSERT_TRUE(head.bbox.left > 0 && head.bbox.top > 0 && head.bbox.right < 1280 &&
                      head.bbox.bottom < 720)
              << what << ", person " << head.id << " at " << t;
          for (const TrueHead& other : heads) {
            ASSERT_TRUE(other.id == head.id || !overlap(head.bbox, other.bbox))
                << what << ", persons " << head.id << " and " << other.id << " at " << t;
          }
        }
      });
    }
  }
}

TEST(SeatedMeeting, WhoSitsFurtherAwayIsSmallerAndHigherUp) {
  watch(meetingOf("table", 4), 30, [](std::int64_t t, const std::vector<TrueHead>& heads) {
    const auto height = [&heads](std::size_t i) { return heads[i].bbox.bottom - heads[i].bbox.top; };
    using Pair = std::pair<std::size_t, std::size_t>;
    for (const auto& [near, far] : {Pair(0, 1), Pair(3, 2)}) {
      EXPECT_GT(height(near), height(far) * 5 / 4) << t;
      EXPECT_GT(heads[near].bbox.bottom, heads[far].bbox.bottom + 30) << t;
      EXPECT_GT(height(far), 720 * 8 / 100) << t;
      EXPECT_LT(height(near), 720 * 15 / 100) << t;
    }
  });
}

struct MovementCase {
  /** By option. */
  std::map<std::string, int> movements;
  /** How many are in view at the beginning, after half the time, and at the end. */
  std::size_t first;
  std::size_t half;
  std::size_t last;
  /** Most at any time, and the persons who are ever seen. */
  std::size_t most;
  std::size_t ever;
  /** Whether somebody stands, above all who sit. */
  bool somebodyStands;
};

TEST(SeatedMeeting, PeopleComeGoStandAtTheBoardAndWalkThrough) {
  const MovementCase cases[] = {
      {{}, 5, 5, 5, 5, 5, false},
      {{{"come-late", 2}}, 3, 5, 5, 5, 5, true},
      {{{"leave-early", 2}}, 5, 5, 3, 5, 5, true},
      {{{"go-to-board", 2}}, 5, 5, 5, 5, 5, true},
      {{{"walk-through", 3}}, 5, 5, 5, 6, 8, true},
      {{{"come-late", 2}, {"leave-early", 1}, {"go-to-board", 1}, {"walk-through", 1}}, 3, 5, 4, 5, 6, true},
  };
  for (const MovementCase& row : cases) {
    SimulationOptions options = meetingOf("row", 5, 5);
    std::string what;
    for (const MovementKind& kind : kMovementKinds) {
      const auto count = row.movements.find(kind.option);
      if (count != row.movements.end()) {
        options.movements.*kind.count = count->second;
        what += kind.option + std::string(" ");
      }
    }
    SCOPED_TRACE(what);
    std::vector<std::size_t> counts;
    std::set<std::int32_t> ever;
    std::int32_t highest = 720;
    watch(options, 10, [&](std::int64_t, const std::vector<TrueHead>& heads) {
      counts.push_back(heads.size());
      for (const TrueHead& head : heads) {
        ever.insert(head.id);
        highest = std::min(highest, (head.bbox.top + head.bbox.bottom) / 2);
      }
    });
    EXPECT_EQ(counts.front(), row.first);
    EXPECT_EQ(counts[counts.size() / 2], row.half);
    EXPECT_EQ(counts.back(), row.last);
    EXPECT_EQ(*std::max_element(counts.begin(), counts.end()), row.most);
    EXPECT_EQ(ever.size(), row.ever);
    EXPECT_EQ(highest < 300, row.somebodyStands);
  }
}

TEST(SeatedMeeting, WhoWalksThroughHasTheSteadySpeedOfWalkers) {
  SimulationOptions options = meetingOf("row", 5, 5);
  options.movements.walkThrough = 4;
  std::map<std::int32_t, std::pair<std::int64_t, std::int64_t>> inView;
  std::map<std::int32_t, std::vector<std::int32_t>> way;
  watch(options, 1, [&](std::int64_t t, const std::vector<TrueHead>& heads) {
    for (const TrueHead& head : heads) {
      inView.try_emplace(head.id, t, t).first->second.second = t;
      if (head.bbox.left > 0 && head.bbox.right < 1280) {
        way[head.id].push_back(head.bbox.left);
      }
    }
  });
  // The picture is five metres wide where they walk.
  for (std::int32_t person = 6; person <= 9; ++person) {
    const auto duration = static_cast<double>(inView.at(person).second - inView.at(person).first) / 1000;
    EXPECT_GT(5.4 / duration, 0.95) << person;
    EXPECT_LT(5.0 / duration, 1.45) << person;
    std::vector<std::int32_t> steps = way.at(person);
    std::adjacent_difference(steps.begin(), steps.end(), steps.begin());
    const auto [shortest, longest] = std::minmax_element(steps.begin() + 1, steps.end());
    EXPECT_LE(*longest - *shortest, 3) << person;
  }
}

TEST(SeatedMeeting, TurnsBecomeWhatIsTrueOfTheSpeakers) {
  const std::string turns =
      "start_ms,end_ms,speaker\n"
      "1000,3000,late\n"
      "10000,55000,anna\n"
      "12000,13000,anna\n"
      "20000,21000,ben\n"
      "30000,40000,carl\n"
      "45000,50000,late\n";
  struct Row {
    std::vector<std::string> from;
    std::vector<std::set<std::int32_t>> speakersEvery5s;
  };
  using Speakers = std::set<std::int32_t>;
  const Speakers none;
  const Row rows[] = {
      {{}, {none, none, {2}, {2}, {2, 3}, {2}, {2}, {2}, {2}, {1, 2}, {2}, none}},
      // Who speaks first from there on is person 1; a fourth speaker has nobody in a meeting of two.
      {{"--from", "5"}, {none, {1}, {1}, {1, 2}, {1}, {1}, {1}, {1}, {1}, {1}, none, none}}};
  for (const Row& row : rows) {
    std::vector<std::string> command{"simulate",
                                     "--seed",
                                     "1",
                                     "--minutes",
                                     "1",
                                     "--seats",
                                     "pairs",
                                     "--turns",
                                     "-",
                                     "--errors",
                                     "hard",
                                     "--people",
                                     row.from.empty() ? "3" : "2"};
    command.insert(command.end(), row.from.begin(), row.from.end());
    const PrbRun run = runPrbWith(command, turns);
    ASSERT_EQ(run.status, 0) << run.err;
    std::istringstream recording(run.out);
    std::vector<Speakers> speakers;
    Speakers now;
    for (std::string line; std::getline(recording, line);) {
      const auto event = nlohmann::json::parse(line);
      while (speakers.size() * 5000 < event["t"]) {
        speakers.push_back(now);
      }
      if (event.contains("truth")) {
        now.clear();
        for (const auto& head : event["truth"]) {
          if (head["speaks"]) {
            now.insert(head["id"].get<std::int32_t>());
          }
        }
      }
    }
    EXPECT_EQ(speakers, row.speakersEvery5s);
  }
}

TEST(SeatedMeeting, OthersSpeakAtTheSameTimeForAsLongAsAskedFor) {
  for (const int percent : {0, 5, 10, 29}) {
    SimulationOptions options = meetingOf("table", 4, 30);
    options.overlap = percent;
    double speech = 0;
    double overlapped = 0;
    watch(options, 3, [&](std::int64_t, const std::vector<TrueHead>& heads) {
      const auto speakers =
          std::count_if(heads.begin(), heads.end(), [](const TrueHead& head) { return head.speaks; });
      speech += speakers > 0 ? 1 : 0;
      overlapped += speakers > 1 ? 1 : 0;
    });
    EXPECT_NEAR(overlapped / speech * 100, percent, 1.5);
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
