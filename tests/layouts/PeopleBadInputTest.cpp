// What a vision pipeline or a camera list may get wrong: no picture of nothing, and one report per change.
#include <gtest/gtest.h>

#include <algorithm>

#include "layouts/people/PeopleFramingLayout.h"
#include "layouts/people/PrimaryPeopleLayout.h"
#include "layouts/speaker/SpeakerFramingLayout.h"
#include "layouts/streams/MultiStreamFramingLayout.h"
#include "model/FynCamerasConfig.h"
#include "tests/layouts/EngineRun.h"
#include "tests/layouts/PictureFaults.h"

namespace fyn::productionrules::testing {
namespace {

constexpr std::int32_t kFar = 2147483647;

struct BadCase {
  const char* what;
  Scene scene;
  /** What stands on screen at once, of persons 1 and 2 who are well and 3 who is not. */
  const char* picture;
};

Scene twoAnd() {
  return scene().person(1).at(300, 360).person(2).at(900, 360);
}

std::vector<BadCase> badCases() {
  return {
      {"nobody is wrong", twoAnd(), "HEAD [1] [2]"},
      {"not seen by this camera", twoAnd().person(3).camera(7).at(600, 360), "HEAD [1] [2]"},
      {"a zero box", twoAnd().person(3).box({0, 0, 0, 0}), "HEAD [1] [2]"},
      {"a box without width", twoAnd().person(3).box({600, 300, 600, 400}), "HEAD [1] [2]"},
      {"an inverted box", twoAnd().person(3).box({700, 400, 600, 300}), "HEAD [1] [2]"},
      {"above the image", twoAnd().person(3).box({600, -300, 700, -200}), "HEAD [1] [2]"},
      {"right of the image", twoAnd().person(3).box({1280, 300, 1380, 400}), "HEAD [1] [2]"},
      {"the same person twice", twoAnd().person(2).at(600, 360), "HEAD [1] [2]"},
      {"the same head twice", twoAnd().person(3).headId(1).at(330, 360), "PROXIMITY [1 3] [2]"},
      {"a head of the image's size", twoAnd().person(3).box({0, 0, 1280, 720}), "PROXIMITY [1 2 3]"},
      {"a box beyond all images", twoAnd().person(3).box({-kFar, -kFar, kFar, kFar}), "PROXIMITY [1 2 3]"},
      {"one pixel", twoAnd().person(3).box({600, 300, 601, 301}), "HEAD [1] [3] [2]"},
  };
}

TEST(PeopleBadInput, WhoCannotBeShownHasNoTileAndSpoilsNone) {
  for (const BadCase& each : badCases()) {
    EngineRun alone;
    alone.engine<PeopleFramingLayout>();
    alone.see(each.scene);
    EXPECT_EQ(alone.picture(), each.picture) << each.what;
    EXPECT_EQ(viewFaults(alone.current()), Faults()) << each.what;
    EXPECT_EQ(tilingFaults(alone.current()), Faults()) << each.what;
    EXPECT_EQ(alone.watch(each.scene, 20000), 0) << each.what;
  }
}

/** How many errors and warnings have been logged since the last look. */
std::ptrdiff_t errorsOf(EngineRun& run) {
  const std::vector<std::string> lines = run.environment.log.take();
  return std::count_if(lines.begin(), lines.end(),
                       [](const auto& line) { return line[0] == 'E' || line[0] == 'W'; });
}

struct ReportCase {
  Scene scene;
  const char* line;
};

// Each fault is said when it begins and when it comes back, never with every result.
template <typename Engine>
void expectReports(const char* tag, std::initializer_list<ReportCase> cases) {
  for (const ReportCase& each : cases) {
    EngineRun run({0, 1});
    run.engine<Engine>();
    run.watch(twoAnd(), 1000);
    for (int again = 0; again < 2; ++again) {
      run.environment.log.take();
      run.watch(each.scene, 1000);
      const std::vector<std::string> lines = run.environment.log.take();
      EXPECT_EQ(
          std::count(lines.begin(), lines.end(), each.line[0] + ("|" + std::string(tag)) + (each.line + 1)),
          1)
          << each.line;
      run.watch(twoAnd(), 1000);
      EXPECT_EQ(errorsOf(run), 0) << each.line;
    }
  }
}

TEST(PeopleBadInput, IsReportedWhenItBegins) {
  const ReportCase notSeen{twoAnd().person(3).camera(7).at(600, 360), "I|person 3 is not seen by camera 0"};
  const ReportCase repeated{twoAnd().person(2).at(600, 360), "W|two persons have the id 2: the first counts"};
  const ReportCase inverted{twoAnd().person(3).box({700, 400, 600, 300}),
                            "W|person 3 cannot be shown: the box in camera 0 is empty or outside the image"};
  const ReportCase unlisted{
      twoAnd().person(3).camera(7).at(600, 360).person(4).camera(7).at(800, 360),
      "W|heads come from camera 7, which is not in the list of cameras: they are not shown"};
  expectReports<PeopleFramingLayout>("PeopleFramingLayout", {notSeen, repeated, inverted});
  expectReports<PrimaryPeopleLayout>("PrimaryPeopleLayout", {unlisted, repeated, inverted});
  expectReports<SpeakerFramingLayout>("BaseLayout", {notSeen, repeated, inverted});
  expectReports<MultiStreamFramingLayout>("MultiStreamPeopleFramingLayout", {notSeen, repeated, inverted});
}

TEST(PeopleBadInput, WithoutAListedCameraPeopleAreShownAllTheSame) {
  for (const auto& [own, people, picture] :
       {std::tuple{-1, 3, "HEAD [1] [2]"}, std::tuple{4, 4, "GROUP [1 2]"}}) {
    EngineRun run({own});
    FynCamerasConfig::getMutable().fynCamInfoMap.clear();
    run.engine<PeopleFramingLayout>();
    run.see(scene().person(1).camera(people).at(300, 360).person(2).camera(people).at(900, 360));
    EXPECT_EQ(run.picture(), picture) << own;
    EXPECT_EQ(viewFaults(run.current()), Faults()) << own;
  }
}

TEST(PeopleBadInput, APrimaryDoesNotTakePeopleFromCamerasThatAreNotListed) {
  EngineRun run({0, 1});
  run.engine<PrimaryPeopleLayout>();
  Scene scene = twoAnd().person(3).camera(9).at(600, 360);
  scene.person(4).camera(9).at(500, 360).yaw(1).camera(1).at(640, 300).yaw(50);
  run.see(scene);
  EXPECT_EQ(run.picture(), "HEAD [1] [2] [4]");
  EXPECT_EQ(run.current().frames[2].fynCamId, 1U);
  EXPECT_EQ(viewFaults(run.current()), Faults());
}

}  // namespace
}  // namespace fyn::productionrules::testing
