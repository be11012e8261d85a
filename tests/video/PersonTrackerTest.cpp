#include <gtest/gtest.h>

#include <cmath>

#include "tools/video/vision/PersonTracker.h"
#include "tools/video/vision/SeenPersons.h"

namespace fyn::productionrules::video::testing {
namespace {

using Ids = std::vector<std::int32_t>;

constexpr double kHead = 60;

/** A head of 60 x 60 whose centre is at x, 300. */
Detection headAt(double x) {
  Detection head;
  head.box = {x - kHead / 2, 300 - kHead / 2, kHead, kHead};
  return head;
}

double middleOf(const TrackedPerson& person) {
  const cv::Rect2d& box = person.views.at(0).detection.box;
  return box.x + box.width / 2;
}

/** One camera, a frame every 100 ms. */
class Tracking {
 public:
  /** Sees heads around these places; returns the persons there are. */
  Ids see(const std::vector<double>& places, double score = 1) {
    std::vector<Detection> heads;
    for (const double x : places) {
      heads.push_back(headAt(x));
      heads.back().score = score;
    }
    now += 100;
    tracker.update(room.merge({heads}), now);
    return ids();
  }

  Ids ids(std::int64_t later = 0) const {
    Ids found;
    for (const TrackedPerson& person : tracker.at(now + later)) {
      found.push_back(person.id);
    }
    return found;
  }

  /** The place of a person; not a number when it is not there. */
  double placeOf(std::int32_t id, std::int64_t later = 0) const {
    for (const TrackedPerson& person : tracker.at(now + later)) {
      if (person.id == id) {
        return middleOf(person);
      }
    }
    return std::nan("");
  }

  const RoomAxis room{{CameraInput{"", 0, 1}}};
  PersonTracker tracker{room};
  std::int64_t now = 0;
};

TEST(PersonTracker, SomebodyCountsAfterAWhileAndStaysAWhileUnseen) {
  Tracking tracking;
  for (int look = 0; look < 3; ++look) {
    EXPECT_EQ(tracking.see({400}), Ids{});
  }
  EXPECT_EQ(tracking.see({400}), Ids{1});
  for (int frame = 1; frame <= 15; ++frame) {
    EXPECT_EQ(tracking.see({}), Ids{1}) << frame;
  }
  EXPECT_EQ(tracking.see({}), Ids{});
  // Whoever comes later is somebody else; a slow detector needs no more looks than it takes time.
  tracking.see({400});
  tracking.now += 200;
  EXPECT_EQ(tracking.see({400}), Ids{2});
}

TEST(PersonTracker, AnUncertainSightGoesOnWithAPersonButBeginsNone) {
  Tracking tracking;
  for (int look = 0; look < 10; ++look) {
    EXPECT_EQ(tracking.see({400}, 0.53), Ids{});
  }
  for (int look = 0; look < 4; ++look) {
    tracking.see({400}, 0.7);
  }
  for (int look = 0; look < 30; ++look) {
    EXPECT_EQ(tracking.see({400}, 0.4), Ids{1}) << look;
  }
  // Half a face at the side of the picture has to be plainer.
  for (const auto& [x, score, ids] :
       {std::tuple{10.0, 0.7, Ids{}}, {1270.0, 0.7, Ids{}}, {10.0, 0.8, Ids{1}}}) {
    Tracking side;
    for (int look = 0; look < 4; ++look) {
      side.see({x}, score);
    }
    EXPECT_EQ(side.ids(), ids) << x << " " << score;
  }
}

TEST(PersonTracker, WhoIsLostAcrossTheEdgeHasLeft) {
  Tracking tracking;
  for (double x = 1100; x <= 1270; x += 10) {
    tracking.see({x});
  }
  EXPECT_EQ(tracking.ids(), Ids{1});
  for (int look = 0; look < 5; ++look) {
    tracking.see({});
  }
  EXPECT_EQ(tracking.ids(), Ids{});
}

TEST(PersonTracker, OneWhoIsMissedForAWhileKeepsTheNumberAndGoesOn) {
  Tracking tracking;
  double x = 200;
  for (int frame = 0; frame < 20; ++frame, x += 12) {
    tracking.see({x});
  }
  const double before = tracking.placeOf(1);
  EXPECT_NEAR(before, x - 12, 6);
  for (int frame = 0; frame < 4; ++frame, x += 12) {
    tracking.see({});
  }
  // Expected further on, but no farther than the walk goes.
  EXPECT_GT(tracking.placeOf(1), before + 30);
  EXPECT_LT(tracking.placeOf(1), x + 6);
  EXPECT_EQ(tracking.see({x}), Ids{1});
  EXPECT_NEAR(tracking.placeOf(1), x, 10);
}

TEST(PersonTracker, WhoIsLostComesToAStandAndDoesNotLeaveTheRoomAlone) {
  Tracking tracking;
  double x = 200;
  for (int frame = 0; frame < 20; ++frame, x += 12) {
    tracking.see({x});
  }
  const double soon = tracking.placeOf(1, 1000);
  EXPECT_LT(soon - tracking.placeOf(1), 0.12 * 650);
  EXPECT_NEAR(tracking.placeOf(1, 1500), soon, 5);
  EXPECT_EQ(tracking.ids(5000), Ids{1}) << "nobody has looked again";
  tracking.see({});
  tracking.see({});
  EXPECT_EQ(tracking.ids(1300), Ids{1});
  EXPECT_EQ(tracking.ids(1301), Ids{});
}

TEST(PersonTracker, TwoWhoPassEachOtherKeepTheirNumbers) {
  for (const double speed : {6.0, 12.0, 25.0}) {
    Tracking tracking;
    double left = 200;
    double right = 900;
    // The one on the left comes first and has number 1.
    tracking.see({left});
    while (left < 900) {
      left += speed;
      right -= speed;
      // The detector tells them in no order, and only one while they cover each other.
      if (std::abs(left - right) < kHead / 2) {
        tracking.see({right});
      } else {
        tracking.see({right, left});
      }
    }
    EXPECT_NEAR(tracking.placeOf(1), left, 20) << speed;
    EXPECT_NEAR(tracking.placeOf(2), right, 20) << speed;
    EXPECT_EQ(tracking.ids(), (Ids{1, 2})) << speed;
  }
}

TEST(PersonTracker, ThoseWhoSitSideBySideAreNotMixedUpByOneDropOut) {
  Tracking tracking;
  for (int frame = 0; frame < 5; ++frame) {
    tracking.see({300, 380, 460});
  }
  for (int frame = 0; frame < 30; ++frame) {
    std::vector<double> seen{300, 380, 460};
    seen.erase(seen.begin() + frame % 3);
    tracking.see(seen);
    EXPECT_EQ(tracking.ids(), (Ids{1, 2, 3}));
    EXPECT_NEAR(tracking.placeOf(1), 300, 5) << frame;
    EXPECT_NEAR(tracking.placeOf(2), 380, 5) << frame;
    EXPECT_NEAR(tracking.placeOf(3), 460, 5) << frame;
  }
}

TEST(RoomAxis, MapsBetweenTheRoomAndItsCameras) {
  const RoomAxis room({{"", 0, 60}, {"", 40, 100}, {"", 0, 120}});
  struct Case {
    std::size_t camera;
    cv::Rect2d box;
    cv::Rect2d inRoom;
  };
  for (const Case& one : {Case{0, {100, 50, 60, 60}, {100, 50, 60, 60}},
                          Case{1, {0, 50, 60, 60}, {1280 * 40.0 / 60, 50, 60, 60}},
                          Case{2, {640, 50, 60, 60}, {1280, 50, 120, 60}}}) {
    const cv::Rect2d inRoom = room.toRoom(one.camera, one.box);
    EXPECT_NEAR(inRoom.x, one.inRoom.x, 1e-9);
    EXPECT_NEAR(inRoom.width, one.inRoom.width, 1e-9);
    EXPECT_EQ(inRoom.y, one.inRoom.y);
    const cv::Rect2d back = room.toCamera(one.camera, inRoom);
    EXPECT_NEAR(back.x, one.box.x, 1e-9);
    EXPECT_NEAR(back.width, one.box.width, 1e-9);
  }
}

TEST(RoomAxis, WhoIsSeenByTwoCamerasIsOnePerson) {
  const RoomAxis room({{"", 0, 60}, {"", 40, 100}});
  // Where the second camera sees what the first one sees at x.
  const auto second = [](double x) { return x - 1280 * 40.0 / 60; };
  const std::vector<Observation> persons = room.merge(
      {{headAt(100), headAt(1000), headAt(1060)}, {headAt(second(1065)), headAt(second(1008)), headAt(900)}});
  ASSERT_EQ(persons.size(), 4U);
  EXPECT_EQ(persons[0].views.size(), 1U);
  ASSERT_EQ(persons[1].views.size(), 2U);
  EXPECT_EQ(persons[1].views[1].camera, 1U);
  EXPECT_EQ(persons[1].views[1].detection.box, headAt(second(1008)).box);
  ASSERT_EQ(persons[2].views.size(), 2U);
  EXPECT_EQ(persons[2].views[1].detection.box, headAt(second(1065)).box);
  EXPECT_EQ(persons[3].views.size(), 1U);
  // Cameras that share nothing never share a person.
  const RoomAxis apart({{"", 0, 1}, {"", 1, 2}});
  EXPECT_EQ(apart.merge({{headAt(600)}, {headAt(600)}}).size(), 2U);
}

TEST(SeenPersons, FillWhatAProviderOfVisionResultsFills) {
  TrackedPerson person{7, {}};
  Detection speaker = headAt(640);
  speaker.speaking = true;
  speaker.score = 0.875;
  speaker.yaw = 33;
  speaker.pitch = -4;
  person.views.push_back({0, speaker});
  person.views.push_back({1, headAt(1280)});
  const std::vector<SeenPerson> seen = seenPersons({person});
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_EQ(seen[0].id, 7);
  ASSERT_EQ(seen[0].heads.size(), 2U);
  const SeenHead& first = seen[0].heads[0];
  EXPECT_EQ(first.camera, 0);
  EXPECT_EQ(first.box, (Rect{610, 270, 670, 330}));
  EXPECT_EQ(first.selectionBox, (Rect{550, 240, 730, 450}));
  EXPECT_TRUE(first.speaking);
  EXPECT_EQ(first.score, 88);
  EXPECT_EQ(first.yaw, 33);
  EXPECT_EQ(first.pitch, -4);
  // Half of it is in view, at the edge of what the lens sees, and a little above the axis.
  const SeenHead& second = seen[0].heads[1];
  EXPECT_EQ(second.box, (Rect{1250, 270, 1280, 330}));
  EXPECT_EQ(second.yaw, 35);
  EXPECT_EQ(second.pitch, -4);
  EXPECT_FALSE(second.speaking);
}

TEST(SeenPersons, WhoIsOutOfViewIsLeftOut) {
  const auto seen = [](double x) { return seenPersons({{1, {{0, headAt(x)}}}}).size(); };
  EXPECT_EQ(seen(0), 1U);
  EXPECT_EQ(seen(-1), 0U);
  EXPECT_EQ(seen(1280), 1U);
  EXPECT_EQ(seen(1281), 0U);
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
