#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "layouts/SecondaryPeopleLayout.h"
#include "tests/layouts/PeopleRun.h"

namespace fyn::productionrules::testing {
namespace {

/** A layout as a primary device sends it: one tile of person 1 in `camera`. */
std::shared_ptr<Layout> sentLayout(std::int32_t camera, const Rect& source) {
  const nlohmann::json document = {
      {"streamid", 0},
      {"layoutType", "HEAD"},
      {"isVirtualCamera", "false"},
      {"frameNumber", 7},
      {"animation", "cut"},
      {"duration", 0},
      {"facecount", 1},
      {"destRef", {{"height", 720}, {"width", 1280}}},
      {"scene",
       {{{"frameindex", 0},
         {"frameType", "HEAD"},
         {"frameLayout", "kFrameLayoutHeadColumnHalf"},
         {"fynCamId", camera},
         {"heads", {1}},
         {"source",
          {{"xoffset", source.left},
           {"yoffset", source.top},
           {"width", source.right - source.left},
           {"height", source.bottom - source.top}}},
         {"dest", {{"xoffset", 0}, {"yoffset", 0}, {"width", 640}, {"height", 720}}},
         {"srcRef", {{"width", 1280}, {"height", 720}}}}}}};
  auto layout = std::make_shared<Layout>();
  layout->from_json(document);
  return layout;
}

constexpr Rect kSent{100, 100, 420, 460};

TEST(SecondaryPeople, ShowsWhatThePrimarySendsAndNothingOfItsOwn) {
  PeopleRun run({1});
  run.engine<SecondaryPeopleLayout>();
  EXPECT_EQ(run.watch(scene().person(1).camera(1).at(640, 360), 20000), 0);
  EXPECT_EQ(run.picture(), "none");
  EXPECT_TRUE(run.layouts().applySecondaryLayout(sentLayout(1, kSent)));
  EXPECT_EQ(run.picture(), "HEAD [1]");
  EXPECT_EQ(run.decisions.back().kind, DecisionKind::Secondary);
  // It knows where person 1 is, so the view is its own; the tile is the primary's.
  EXPECT_EQ(run.current().frames[0].dest, (Rect{0, 0, 640, 720}));
  const Rect& view = run.current().frames[0].source;
  EXPECT_TRUE(view.left <= 590 && view.right >= 690 && view.top <= 300 && view.bottom >= 420);
}

struct ReframeCase {
  bool enabled;
  int pictures;
};

TEST(SecondaryPeople, ReframesByItselfWhereItMay) {
  for (const ReframeCase each : {ReframeCase{false, 0}, ReframeCase{true, 1}}) {
    PeopleRun run({1});
    run.with([&](PrConfig& config) { config.pfReframeOnSecondaryEnabled = each.enabled; })
        .engine<SecondaryPeopleLayout>();
    run.see(scene().person(1).camera(1).at(640, 360));
    run.layouts().applySecondaryLayout(sentLayout(1, kSent));
    const Scene moved = scene().person(1).camera(1).at(1100, 360);
    EXPECT_EQ(run.watch(moved, 2000), 0) << "outside its tile for less than the wait";
    EXPECT_EQ(run.watch(moved, 3000), each.pictures);
  }
}

TEST(SecondaryPeople, ADocumentForAnotherCameraKeepsTheViewThatWasSent) {
  PeopleRun run({1});
  run.engine<SecondaryPeopleLayout>();
  run.see(scene().person(1).camera(1).at(640, 360));
  EXPECT_TRUE(run.layouts().applySecondaryLayout(sentLayout(5, kSent)));
  EXPECT_EQ(run.current().frames[0].source, kSent);
  EXPECT_EQ(run.watch(scene().person(1).camera(1).at(200, 360), 20000), 0);
  EXPECT_EQ(run.current().frames[0].source, kSent);
}

struct NothingCase {
  const char* what;
  Rect source;
  Scene seen;
  bool shown;
};

// A device that sees nobody of a layout without views has nothing to show: the picture before it stays.
TEST(SecondaryPeople, ALayoutThatShowsNothingLeavesThePictureAsItIs) {
  const Scene nobody = scene();
  const Scene person = scene().person(1).camera(1).at(640, 360);
  const NothingCase cases[] = {
      {"no view of an unknown person", Rect{}, nobody, false},
      {"no view of a person without a head here", Rect{}, scene().person(1).camera(7).at(640, 360), false},
      {"no view of a known person", Rect{}, person, true},
      {"a view of an unknown person", Rect{7, 7, 327, 367}, nobody, true},
  };
  for (const NothingCase& each : cases) {
    PeopleRun run({1});
    run.with([](PrConfig& config) { config.pfReframeOnSecondaryEnabled = true; })
        .engine<SecondaryPeopleLayout>();
    ASSERT_TRUE(run.layouts().applySecondaryLayout(sentLayout(1, kSent)));
    run.see(each.seen);
    const std::shared_ptr<Layout> before = run.layouts().getLayoutPtr();
    run.environment.log.take();
    run.decisions.clear();
    EXPECT_EQ(run.layouts().applySecondaryLayout(sentLayout(1, each.source)), each.shown) << each.what;
    EXPECT_EQ(run.layouts().getLayoutPtr() != before, each.shown) << each.what;
    EXPECT_EQ(run.decisions.empty(), !each.shown) << each.what;
    const std::vector<std::string> lines = run.environment.log.take();
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const auto& line) { return line.find("shows nothing") != std::string::npos; }),
              each.shown ? 0 : 1)
        << each.what;
  }
}

TEST(SecondaryPeople, ZeroRectanglesOfUnknownPeopleAreRefusedWithTheBetaFeature) {
  PeopleRun run({1});
  run.with([](PrConfig& config) { config.fpBeta1Enabled = true; }).engine<SecondaryPeopleLayout>();
  run.layouts().applySecondaryLayout(sentLayout(1, kSent));
  EXPECT_FALSE(run.layouts().applySecondaryLayout(sentLayout(1, Rect{})));
  EXPECT_FALSE(run.layouts().applySecondaryLayout(nullptr));
  EXPECT_EQ(run.current().frames[0].source, kSent);
}

}  // namespace
}  // namespace fyn::productionrules::testing
