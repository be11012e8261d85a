// How the boxes that the picture follows go with the boxes of the detector.
#include <gtest/gtest.h>

#include "layouts/speaker/HeadSmoother.h"
#include "tests/layouts/SpeakerRun.h"

namespace fyn::productionrules::testing {
namespace {

struct StepCase {
  const char* name;
  /** Of a head of 100 x 120 pixels, in pixels to the right, and how long after the box before, in ms. */
  std::int32_t step;
  std::uint32_t ms;
  /** How far the smoothed box has come. */
  std::int32_t seen;
};

TEST(HeadSmoother, TakesOutTremblingAndFollowsMoves) {
  const StepCase cases[] = {
      {"trembles", 10, 33, 1},
      {"shifts: the time constant is 250 ms", 72, 250, 46},
      {"jumps: half of it at once", 74, 33, 37},
      {"jumped long ago", 300, 250, 190},
      {"has arrived", 300, 2000, 300},
  };
  const SpeakerRun run;
  for (const StepCase& each : cases) {
    HeadSmoother smoother;
    smoother.smooth(*scene().person(1).at(300, 300).mlData(), headsToFollow(0), 1000);
    const auto data = scene().person(1).at(300 + each.step, 300).mlData();
    smoother.smooth(*data, headsToFollow(0), 1000 + each.ms);
    EXPECT_EQ(data->getHeads().front()->findHead(0)->bbox.left, 250 + each.seen) << each.name;
  }
}

TEST(HeadSmoother, BeginsAfreshWithWhoReturnsAndLeavesTheRestAlone) {
  const SpeakerRun run;
  HeadSmoother smoother;
  smoother.smooth(*scene().person(1).at(300, 300).mlData(), headsToFollow(0), 1000);
  smoother.smooth(*scene().mlData(), headsToFollow(0), 1100);
  for (const Scene& people :
       {scene().person(1).at(310, 300), scene().person(1).at(310, 300).person(2).camera(7).at(90, 90)}) {
    const auto data = people.mlData();
    const auto persons = data->getHeads();
    smoother.smooth(*data, headsToFollow(0), 1200);
    EXPECT_EQ(data->getHeads(), persons);
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
