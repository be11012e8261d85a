// What holds for every picture of speaker framing, over random scenes.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "geometry/RectMath.h"
#include "model/FynCamerasConfig.h"
#include "tests/layouts/SpeakerRun.h"

namespace fyn::productionrules::testing {
namespace {

constexpr Dimension kImage{1920, 1080};

struct Walker {
  std::int32_t id;
  std::int32_t x;
  std::int32_t y;
  std::int32_t size;
  bool speaks;
};

/** People who come, go, walk, talk and fall silent at random, from a fixed seed. */
class RandomMeeting {
 public:
  explicit RandomMeeting(unsigned seed) : mRandom(seed) {}

  const std::vector<Walker>& next() {
    if (chance(2) && mPeople.size() < 7) {
      mPeople.push_back({mNextId++, pick(60, 1860), pick(100, 980), pick(40, 160), false});
    }
    if (chance(1) && !mPeople.empty()) {
      mPeople.erase(mPeople.begin() + pick(0, static_cast<std::int32_t>(mPeople.size()) - 1));
    }
    for (Walker& person : mPeople) {
      person.x = std::clamp(person.x + pick(-12, 12), 40, 1880);
      person.y = std::clamp(person.y + pick(-4, 4), 40, 1040);
      person.speaks = chance(2) ? !person.speaks : person.speaks;
    }
    return mPeople;
  }

  std::int32_t pick(std::int32_t low, std::int32_t high) {
    return low + static_cast<std::int32_t>(mRandom() % static_cast<unsigned>(high - low + 1));
  }
  bool chance(std::int32_t percent) { return pick(0, 99) < percent; }

 private:
  std::mt19937 mRandom;
  std::int32_t mNextId = 1;
  std::vector<Walker> mPeople;
};

Scene sceneOf(const std::vector<Walker>& people) {
  Scene result;
  for (const Walker& person : people) {
    result.person(person.id)
        .at(person.x, person.y)
        .sized(person.size, person.size * 5 / 4)
        .speaking(person.speaks);
  }
  return result;
}

bool isInside(const Rect& outer, const Rect& inner) {
  return enclosing(outer, inner) == outer;
}

bool hasArea(const Rect& rect) {
  return rect.left < rect.right && rect.top < rect.bottom;
}

class SpeakerProperties : public ::testing::TestWithParam<unsigned> {
 protected:
  SpeakerProperties() : meeting(GetParam()), run(kImage) {
    run.with([](PrConfig& config) {
      config.sfRecoveryMode = true;
      config.sfUseSsb = GetParam() % 2 == 0;
      config.sfLayoutHold = GetParam() % 3 != 0;
      config.zoomInLimit = static_cast<std::int32_t>(GetParam() % 4);
    });
  }

  RandomMeeting meeting;
  SpeakerRun run;
};

TEST_P(SpeakerProperties, EveryViewIsInsideTheImageAndCutsNobody) {
  for (int i = 0; i < 3000; ++i) {
    const std::vector<Walker>& people = meeting.next();
    const bool changed = run.see(sceneOf(people));
    ASSERT_EQ(run.current().frames.size(), 1U);
    const Frame& frame = run.current().frames.front();
    EXPECT_EQ(frame.dest, (Rect{0, 0, 1280, 720}));
    ASSERT_TRUE(hasArea(frame.source)) << i;
    if (frame.frameType != FramingType::ROOM) {
      ASSERT_TRUE(isInside(Rect{0, 0, kImage.width, kImage.height}, frame.source)) << i;
    }
    if (!changed || frame.frameType == FramingType::ROOM) {
      continue;
    }
    for (const auto& [id, person] : run.layouts().peopleMap()) {
      if (frame.fynHeads.count(id) == 0) {
        continue;
      }
      Rect head = person->findHead(0)->bbox;
      head = Rect{std::max(head.left, 0), std::max(head.top, 0), std::min(head.right, kImage.width),
                  std::min(head.bottom, kImage.height)};
      ASSERT_TRUE(isInside(frame.source, head)) << "result " << i << ", person " << id;
    }
  }
}

// The scene stands still after each departure, because every other change of it begins another wait; so does
// the recovery mode. Group frames keep the ids of who has left until they are framed anew.
TEST_P(SpeakerProperties, NobodyWhoHasLeftIsShownForLongerThanTheChangeWaits) {
  constexpr std::uint64_t kLongestWait = 4000;
  run.with([](PrConfig& config) { config.sfRecoveryMode = false; });
  const auto showsSomebodyWhoLeft = [this] {
    const std::set<std::int64_t>& shown = run.current().frames.front().fynHeads;
    return run.current().layoutType != FramingType::GROUP &&
           std::any_of(shown.begin(), shown.end(),
                       [&](std::int64_t id) { return run.layouts().peopleMap().count(id) == 0; });
  };
  int departures = 0;
  for (int i = 0; i < 3000; ++i) {
    const std::vector<Walker>& people = meeting.next();
    run.see(sceneOf(people));
    if (!showsSomebodyWhoLeft()) {
      continue;
    }
    ++departures;
    run.watch(sceneOf(people), kLongestWait);
    ASSERT_FALSE(showsSomebodyWhoLeft()) << "result " << i << ": " << run.picture();
  }
  EXPECT_GT(departures, 0);
}

TEST_P(SpeakerProperties, NoChangeComesBeforeItsWait) {
  for (int i = 0; i < 3000; ++i) {
    run.see(sceneOf(meeting.next()));
  }
  int adopted = 0;
  for (const LayoutDecision& decision : run.takeDecisions()) {
    if (decision.kind == DecisionKind::Adopted || decision.kind == DecisionKind::Reframed) {
      EXPECT_GE(decision.waitedMs, decision.waitMs);
      ++adopted;
    }
  }
  EXPECT_GT(adopted, 10);
}

TEST_P(SpeakerProperties, TheSameScenesGiveTheSamePictures) {
  std::vector<std::vector<Walker>> scenes;
  for (int i = 0; i < 1000; ++i) {
    scenes.push_back(meeting.next());
  }
  const auto play = [&](bool reversed) {
    SpeakerRun other(kImage);
    for (std::vector<Walker> people : scenes) {
      if (reversed) {
        std::reverse(people.begin(), people.end());
      }
      other.see(sceneOf(people));
    }
    return other.takePictures();
  };
  const std::vector<std::string> pictures = play(false);
  EXPECT_GT(pictures.size(), 2U);
  EXPECT_EQ(pictures, play(false));
  EXPECT_EQ(pictures, play(true)) << "the order of the persons in a result must not matter";
}

INSTANTIATE_TEST_SUITE_P(Seeds, SpeakerProperties, ::testing::Range(1U, 9U));

// ---- Hostile input ----

TEST(SpeakerHostileInput, NeverBreaksAPicture) {
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
  const Rect boxes[] = {{0, 0, 0, 0},
                        {300, 300, 200, 200},
                        {kMin, kMin, kMax, kMax},
                        {kMax, kMax, kMin, kMin},
                        {5000, 5000, 5100, 5100},
                        {-500, -500, -400, -400},
                        {-50, -50, 60, 60},
                        {100, 100, 101, 101},
                        {100, 100, 1800, 110},
                        {0, 0, 1920, 1080}};
  std::mt19937 random(5);
  for (const bool useSsb : {false, true}) {
    SpeakerRun run(kImage);
    run.with([&](PrConfig& config) {
      config.sfUseSsb = useSsb;
      config.sfRecoveryMode = true;
    });
    for (int i = 0; i < 3000; ++i) {
      Scene hostile;
      const auto people = static_cast<unsigned>(random() % 6);
      for (unsigned k = 0; k < people; ++k) {
        hostile.person(static_cast<std::int32_t>(random() % 4))
            .camera(random() % 5 == 0 ? 7 : 0)
            .box(boxes[random() % std::size(boxes)])
            .ssb(boxes[random() % std::size(boxes)])
            .headId(static_cast<std::int64_t>(random() % 3))
            .speaking(random() % 2 == 0);
      }
      for (auto repeats = random() % 30; repeats > 0; --repeats) {
        run.see(hostile);
      }
      run.see(hostile);
      for (const Frame& frame : run.current().frames) {
        ASSERT_TRUE(hasArea(frame.source)) << i << " " << run.picture();
      }
    }
  }
}

TEST(SpeakerHostileInput, KeepsTheRoomWhenTheSpeakerIsNotInTheCamera) {
  SpeakerRun run;
  run.watch(scene().person(1).camera(7).at(300, 300).speaking(), 1000);
  EXPECT_EQ(run.picture(), "ROOM");
  EXPECT_EQ(run.current().activeSpeaker, -1);
}

struct FaultCase {
  const char* what;
  Scene after;
  /** The warning of the input, and the error of the frame whose box was asked for. */
  int reports;
};

// A head that goes wrong under the picture is reported when it does and not with every result.
TEST(SpeakerHostileInput, IsReportedOnce) {
  const auto others = [] { return scene().person(2).at(900, 300).person(3).at(1150, 300); };
  const FaultCase cases[] = {
      {"lost by the camera", others().person(1).camera(7).at(300, 300), 1},
      {"a zero box", others().person(1).box({}), 2},
      {"an inverted box", others().person(1).box({400, 400, 300, 300}), 1},
      {"gone", others(), 0},
  };
  for (const bool useSsb : {false, true}) {
    for (const FaultCase& each : cases) {
      SpeakerRun run;
      run.with([&](PrConfig& config) { config.sfUseSsb = useSsb; });
      run.watch(others().person(1).at(300, 300).speaking(), 1000);
      run.environment.log.take();
      run.watch(each.after, 1500);
      const std::vector<std::string> lines = run.environment.log.take();
      EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                              [](const auto& line) { return line[0] == 'E' || line[0] == 'W'; }),
                each.reports)
          << each.what << ", selection boxes " << useSsb;
    }
  }
}

TEST(SpeakerHostileInput, TakesTheFirstOfTwoPersonsWithOneId) {
  SpeakerRun run;
  run.watch(scene().person(1).at(300, 300).person(1).at(900, 300).speaking().headId(2), 1000);
  EXPECT_EQ(run.picture(), "HEAD 1");
  EXPECT_EQ(run.current().activeSpeaker, -1);
}

}  // namespace
}  // namespace fyn::productionrules::testing
