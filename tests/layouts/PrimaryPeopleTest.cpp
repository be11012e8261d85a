#include <gtest/gtest.h>

#include "layouts/people/PrimaryPeopleLayout.h"
#include "tests/layouts/EngineRun.h"

namespace fyn::productionrules::testing {
namespace {

/** Persons 1 and 2 in camera 0, person 3 in camera 1, person 4 in camera 2. */
Scene roomOfThreeCameras() {
  return peopleAt("1@300,360 2@900,360").person(3).camera(1).at(500, 300).person(4).camera(2).at(700, 400);
}

std::string cameras(const Layout& layout) {
  std::string text;
  for (const Frame& frame : layout.frames) {
    text += (text.empty() ? "" : " ") + std::to_string(static_cast<std::int32_t>(frame.fynCamId));
  }
  return text;
}

TEST(PrimaryPeople, TheOwnCameraComesFirstWhateverItsId) {
  EngineRun run({2, 0, 1});
  run.engine<PrimaryPeopleLayout>();
  run.see(roomOfThreeCameras());
  EXPECT_EQ(run.picture(), "HEAD [4] [1] [2] [3]");
  run.watch(scene(), 10000);
  EXPECT_EQ(run.picture() + " " + cameras(run.current()), "ROOM 2");
}

TEST(PrimaryPeople, NeighboursOfDifferentCamerasDoNotShareATile) {
  EngineRun run({0, 1});
  run.engine<PrimaryPeopleLayout>();
  run.see(scene().person(1).at(500, 360).person(2).camera(1).at(520, 360).person(3).at(620, 360));
  EXPECT_EQ(run.picture(), "PROXIMITY [1 3] [2]");
  EXPECT_EQ(cameras(run.current()), "0 1");
}

// Whom a tile would show beside its own people has no tile from another camera, too.
TEST(PrimaryPeople, WhomATileShowsComesOverFromTheOtherCamera) {
  for (const std::int32_t x : {640, 1100}) {
    EngineRun run({0, 1});
    run.engine<PrimaryPeopleLayout>();
    Scene two = scene().person(1).at(500, 360).person(2).at(x, 360).yaw(40);
    run.see(two.camera(1).at(300, 360).yaw(0));
    EXPECT_EQ(run.picture() + " " + cameras(run.current()),
              x == 640 ? "PROXIMITY [1 2] 0" : "HEAD [1] [2] 0 1");
  }
}

// In steady framing; the tiles would change places without that, for those of the own camera come first.
TEST(PrimaryPeople, WhoGoesOverToAnotherCameraKeepsTheTile) {
  EngineRun run({0, 1});
  run.with([](PrConfig& config) { config.steadyFramingEnabled = true; }).engine<PrimaryPeopleLayout>();
  const auto room = [](double yawInCamera0) {
    Scene two = scene().person(1).at(300, 360).yaw(yawInCamera0).camera(1).at(500, 360).yaw(20);
    return two.person(2).at(900, 360).yaw(0);
  };
  run.watch(room(0), 10000);
  EXPECT_EQ(run.picture() + " " + cameras(run.current()), "HEAD [1] [2] 0 0");
  run.watch(room(40), 30000);
  EXPECT_EQ(cameras(run.current()), "0 0") << "tiles stay for 45 s";
  run.watch(room(40), 20000);
  EXPECT_EQ(run.picture() + " " + cameras(run.current()), "HEAD [1] [2] 1 0");
}

struct StayCase {
  const char* what;
  Rect inCamera1;
  std::int32_t maxPeople;
  std::int32_t holdMs;
  bool waits;
};

TEST(PrimaryPeople, AFrameStaysWhereABetterCameraCannotShowIt) {
  // One number for both heads, as a group frame names heads and not persons.
  const auto both = [](double yawInCamera0, double yawInCamera1, const Rect& inCamera1) {
    Scene one = scene().person(1).at(400, 360).yaw(yawInCamera0);
    return one.camera(1).box(inCamera1).headId(1).yaw(yawInCamera1);
  };
  constexpr Rect kUsual{650, 240, 750, 360};
  constexpr Rect kFlat{300, 300, 1000, 310};
  const StayCase cases[] = {
      {"it would cut the head", kFlat, 8, 4000, true},
      {"a group is no frame of one person", kUsual, 0, 4000, false},
      {"the hold never ends", kUsual, 8, -1, false},
  };
  for (const StayCase& each : cases) {
    EngineRun run({0, 1});
    run.with([&](PrConfig& config) {
         config.compositeModeMaxPeoplePrimary = each.maxPeople;
         config.timersPFFeedPriorityChange = each.holdMs;
       })
        .engine<PrimaryPeopleLayout>();
    run.watch(both(5, 20, each.inCamera1), 1000);
    const Rect before = run.current().frames[0].source;
    EXPECT_EQ(run.watch(both(20, 5, each.inCamera1), 9000), 0) << each.what;
    EXPECT_EQ(cameras(run.current()), "0") << each.what;
    EXPECT_EQ(run.current().frames[0].source, before) << each.what;
    EXPECT_EQ(run.layouts().isThereATimerRunning(), each.waits) << each.what;
  }
}

struct GroupCameraCase {
  const char* what;
  std::int32_t front;
  std::vector<std::int32_t> camerasOfPeople;
  const char* expected;
};

TEST(PrimaryPeople, AGroupIsCutFromTheFrontOfTheRoom) {
  const GroupCameraCase cases[] = {
      {"the front sees them", 1, {1}, "1"},
      {"the front sees nobody, the own camera does", 1, {0}, "0"},
      {"neither sees anybody", 1, {2}, "2"},
      {"the front is no camera of the list", 9, {0}, "0"},
      {"the front has left the list and heads of it still come", 9, {9, 0}, "0"},
  };
  for (const GroupCameraCase& each : cases) {
    EngineRun run({0, 1, 2});
    run.with([&](PrConfig& config) { config.frontOfTheRoomCamId = each.front; })
        .engine<PrimaryPeopleLayout>();
    Scene crowd;
    for (std::int32_t id = 1; id <= 9; ++id) {
      crowd.person(id);
      for (const std::int32_t camera : each.camerasOfPeople) {
        crowd.camera(camera).sized(40, 50).at(130 * id, 360);
      }
    }
    run.see(crowd);
    EXPECT_EQ(run.picture(), "GROUP [1 2 3 4 5 6 7 8 9]") << each.what;
    EXPECT_EQ(cameras(run.current()), each.expected) << each.what;
  }
}

TEST(PrimaryPeople, ALayoutThatShowsNothingIsNotValid) {
  EngineRun run;
  run.engine<PrimaryPeopleLayout>();
  EXPECT_FALSE(run.layouts().isLayoutValid());
  run.see(roomOfThreeCameras());
  EXPECT_TRUE(run.layouts().isLayoutValid());
  for (Frame& frame : run.layouts().getLayoutPtr()->frames) {
    frame.source = {};
  }
  EXPECT_FALSE(run.layouts().isLayoutValid());
}

}  // namespace
}  // namespace fyn::productionrules::testing
