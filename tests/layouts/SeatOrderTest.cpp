#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "layouts/people/SeatOrder.h"
#include "model/FynCamerasConfig.h"
#include "tests/testing/SceneBuilder.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules::testing {
namespace {

// Camera 1 shows everything 0.8 times as large as camera 0, and 150 pixels further to the right.
Scene& seenByBoth(Scene& in, std::int32_t id, std::int32_t x) {
  return in.person(id).at(x, 360).camera(1).sized(80, 96).at(150 + x * 4 / 5, 360).yaw(30);
}

Scene& seenBySecond(Scene& in, std::int32_t id, std::int32_t x) {
  return in.person(id).camera(1).sized(80, 96).at(150 + x * 4 / 5, 360);
}

Scene commonAt(std::vector<std::int32_t> places) {
  Scene common = scene();
  std::int32_t id = 0;
  for (const std::int32_t x : places) {
    seenByBoth(common, ++id, x);
  }
  return common;
}

Layout tileOf(std::int64_t person) {
  Layout layout;
  layout.layoutType = FramingType::HEAD;
  layout.frames.emplace_back();
  layout.frames.back().fynHeads = {person};
  return layout;
}

std::string textOf(const std::vector<Seat>& seats) {
  std::string text;
  for (const Seat& seat : seats) {
    text += (text.empty() ? "" : " ") + std::to_string(seat.person->id);
  }
  return text;
}

struct OrderCase {
  const char* name;
  Scene people;
  std::int64_t current;
  std::int64_t pending;
  std::string order;
};

TEST(SeatOrder, IsThatInWhichPeopleSitAndHasEachOnce) {
  TestEnvironment environment;
  for (const int camId : {0, 1}) {
    FynCamerasConfig::getMutable().setCameraLensModelDimension(camId, {1280, 720});
  }
  Scene between = commonAt({200, 1000});
  seenBySecond(between, 5, 600);
  Scene byOne = commonAt({600});
  seenBySecond(seenBySecond(byOne, 5, 200), 6, 1000);
  Scene strangers = scene().person(9).at(600, 360);
  seenBySecond(strangers, 5, 200);
  Scene broken = commonAt({200, 1000}).person(7).at(600, 360);
  seenBySecond(broken, 5, 610);
  Scene guessed = commonAt({200}).person(7).at(600, 360);
  seenBySecond(guessed, 5, 700);
  Scene inBoth = commonAt({200, 1000, 600});
  seenBySecond(inBoth, 5, 610);
  Scene behind = commonAt({200, 1000}).person(7).sized(50, 60).at(600, 360);
  seenBySecond(behind, 5, 610);
  // Two in one column of the picture say nothing of how large distances are; opposite cameras nothing of
  // sides.
  Scene column = commonAt({200, 210}).person(7).at(600, 360);
  seenBySecond(column, 5, 660);
  Scene opposite = scene().person(1).at(200, 360).camera(1).at(1000, 360).yaw(30);
  opposite.person(2).at(900, 360).camera(1).at(300, 360).yaw(30).person(6).camera(1).at(800, 360);
  const OrderCase cases[] = {
      {"somebody whom the camera does not see", between, 0, 0, "1 5 2"},
      {"as far as the one says whom both see", byOne, 0, 0, "5 1 6"},
      {"nobody in common", strangers, 0, 0, "9 5"},
      {"a number for each camera", broken, 0, 0, "1 5 2"},
      {"of which one has a tile", broken, 7, 0, "1 7 2"},
      {"or waits for one", broken, 0, 7, "1 7 2"},
      {"at a place that is a guess", guessed, 0, 0, "1 7 5"},
      {"where all whom both see are at one side", column, 0, 0, "1 2 5 7"},
      {"from the other side of the room", opposite, 0, 0, "1 2 6"},
      {"beside somebody in the same camera", inBoth, 0, 0, "1 3 5 2"},
      {"in front of somebody", behind, 0, 0, "1 7 5 2"},
  };
  for (const OrderCase& each : cases) {
    const auto data = each.people.mlData();
    const Layout current = tileOf(each.current);
    const Layout pending = tileOf(each.pending);
    const std::vector<Seat> seats = chooseSeats(*data, nullptr, nullptr, 0);
    EXPECT_EQ(textOf(asSeatedFor(0, *data, seats, &current, &pending)), each.order) << each.name;
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
