// What speaker framing shows: scenes of a meeting and the pictures that follow.
#include <gtest/gtest.h>

#include "geometry/RectMath.h"
#include "layouts/PrimarySpeakerLayout.h"
#include "layouts/SSBLayoutBuilder.h"
#include "layouts/SecondarySpeakerLayout.h"
#include "model/FynCamerasConfig.h"
#include "tests/layouts/SpeakerRun.h"

namespace fyn::productionrules::testing {
namespace {

using Pictures = std::vector<std::string>;

void byNeighbours(PrConfig& config) {
  config.sfUseSsb = false;
}

// Three people far apart; who of them speaks.
Scene three(bool first, bool second, bool third) {
  return scene()
      .person(1)
      .at(200, 300)
      .speaking(first)
      .person(2)
      .at(640, 300)
      .speaking(second)
      .person(3)
      .at(1080, 300)
      .speaking(third);
}

bool isInside(const Rect& outer, const Rect& inner) {
  return enclosing(outer, inner) == outer;
}

// ---- Which picture ----

TEST(SpeakerPictures, FollowThePeopleWhileNobodySpeaks) {
  SpeakerRun run;
  run.see(scene());
  EXPECT_EQ(run.picture(), "ROOM");
  EXPECT_EQ(run.current().frames.front().source, kRoomView);
  run.watch(scene().person(7).at(400, 300), 1000);
  EXPECT_EQ(run.picture(), "HEAD 7");
  EXPECT_EQ(run.current().frames.front().frameLayout, kFrameLayoutHeadSingle);
}

TEST(SpeakerPictures, ShowNeighboursWithTheSpeaker) {
  SpeakerRun run;
  run.with(byNeighbours);
  run.see(scene().person(1).at(300, 300).person(2).at(420, 300).speaking().person(3).at(1000, 300));
  EXPECT_EQ(run.picture(), "PROXIMITY 1 2");
  const Frame& frame = run.current().frames.front();
  EXPECT_EQ(frame.frameLayout, kFrameLayoutProximitySingleWide);
  EXPECT_EQ(frame.dest, (Rect{0, 0, 1280, 720}));
}

// Heads of 100 x 120 pixels are neighbours below 150 pixels.
TEST(SpeakerPictures, TakeAsNeighboursThoseWhoSitClose) {
  for (const auto& [distance, picture] : {std::pair{149, "PROXIMITY 1 2"}, {150, "HEAD 1"}}) {
    SpeakerRun run;
    run.with(byNeighbours);
    run.see(
        scene().person(1).at(300, 300).speaking().person(2).at(300 + distance, 300).person(3).at(1000, 300));
    EXPECT_EQ(run.picture(), picture) << distance;
  }
}

TEST(SpeakerPictures, ShowTwoWhoSpeakAtOnceInOneFrame) {
  SpeakerRun run;
  run.with(byNeighbours);
  run.see(three(true, true, false));
  EXPECT_EQ(run.picture(), "SUBSET_SPEAKER 1 2");
  EXPECT_TRUE(isInside(run.current().frames.front().source, Rect{150, 240, 690, 360}));
  EXPECT_STREQ(run.takeDecisions().front().reason, "several speak");
}

// A row of four is wider than the rule of thirds makes a view of their height.
TEST(SpeakerPictures, CutNobodyOfALongRow) {
  SpeakerRun run;
  run.with(byNeighbours);
  Scene row;
  for (std::int32_t id = 1; id <= 5; ++id) {
    row.person(id).at(40 + 90 * id, 300).sized(80, 40).speaking(id == 3);
  }
  run.see(row.person(9).at(1200, 600));
  ASSERT_EQ(run.current().layoutType, FramingType::PROXIMITY);
  const Frame& frame = run.current().frames.front();
  for (const std::int64_t id : frame.fynHeads) {
    const auto left = static_cast<std::int32_t>(90 * id);
    EXPECT_TRUE(isInside(frame.source, Rect{left, 280, left + 80, 320})) << id;
  }
}

Scene speakerWith(const Rect& box) {
  return scene().person(1).box(box).speaking().person(2).at(900, 100).person(3).at(1200, 100);
}

constexpr Rect kUsualBox{150, 440, 250, 560};
constexpr Rect kFlatBox{100, 500, 700, 520};

// How a frame is placed is decided when it is adopted and whenever it is framed anew, not by what waited.
TEST(SpeakerPictures, FollowTheShapeOfTheHead) {
  SpeakerRun run;
  run.with(byNeighbours).see(speakerWith(kUsualBox));
  ASSERT_EQ(run.picture(), "HEAD 1");
  run.watch(speakerWith(kFlatBox), 8000);
  EXPECT_EQ(run.picture(), "HEAD 1");
  EXPECT_TRUE(isInside(run.current().frames.front().source, kFlatBox));

  run.engine<SpeakerFramingLayout>().see(scene().person(2).at(900, 100).person(3).at(1200, 100));
  run.see(speakerWith(kFlatBox));
  run.watch(speakerWith(kUsualBox), 200);
  ASSERT_EQ(run.picture(), "HEAD 1");
  EXPECT_EQ(run.current().frames.front().frameType, FramingType::HEAD);
}

// ---- Selection boxes ----

struct SelectionCase {
  const char* name;
  Rect head;
  Rect ssb;
  Rect expected;
};

constexpr SelectionCase kSelections[] = {
    {"grown on all sides", {600, 300, 700, 400}, {}, {300, 200, 1000, 600}},
    {"kept inside the image", {10, 20, 110, 140}, {}, {0, 0, 410, 340}},
    {"kept inside at the far corner", {1200, 650, 1270, 719}, {}, {900, 550, 1280, 720}},
    {"its own wins", {600, 300, 700, 400}, {500, 250, 800, 500}, {500, 250, 800, 500}},
    {"its own is kept inside too", {600, 300, 700, 400}, {-50, -50, 4000, 4000}, {0, 0, 1280, 720}},
};

TEST(SelectionBox, IsTheHeadsOwnOrTheHeadGrown) {
  const SpeakerRun run;
  for (const SelectionCase& row : kSelections) {
    Head head;
    head.bbox = row.head;
    head.ssb = row.ssb;
    EXPECT_EQ(SSBLayoutBuilder::selectionBox(head, kDefaultImageSize), row.expected) << row.name;
  }
}

TEST(SelectionBox, DecidesWhoIsShownWithTheSpeaker) {
  SpeakerRun run;
  const auto meeting = [](const Rect& ssb) {
    return scene().person(1).at(200, 300).speaking().ssb(ssb).person(2).at(560, 300).person(3).at(1080, 300);
  };
  run.see(meeting({}));
  EXPECT_EQ(run.picture(), "SUBSET_SPEAKER 1");
  run.engine<SpeakerFramingLayout>().see(meeting({100, 100, 620, 500}));
  EXPECT_EQ(run.picture(), "SUBSET_SPEAKER 1 2");
  // A box that lies elsewhere selects whoever is there, and never loses the speaker.
  run.engine<SpeakerFramingLayout>().see(meeting({500, 200, 700, 500}));
  EXPECT_EQ(run.picture(), "SUBSET_SPEAKER 1 2");
}

// A head that touches the selection's edges lies inside it; one pixel less on any side, and it does not.
TEST(SelectionBox, HoldsAHeadThatTouchesItsEdges) {
  const Rect head{510, 240, 610, 360};
  const std::pair<Rect, const char*> cases[] = {
      {head, "SUBSET_SPEAKER 1 2"},
      {{511, 240, 610, 360}, "SUBSET_SPEAKER 1"},
      {{510, 241, 610, 360}, "SUBSET_SPEAKER 1"},
      {{510, 240, 609, 360}, "SUBSET_SPEAKER 1"},
      {{510, 240, 610, 359}, "SUBSET_SPEAKER 1"},
  };
  for (const auto& [ssb, picture] : cases) {
    SpeakerRun run;
    run.see(scene().person(1).at(200, 300).speaking().ssb(ssb).person(2).box(head).person(3).at(1080, 300));
    EXPECT_EQ(run.picture(), picture) << RectToString(ssb);
  }
}

struct CoverageCase {
  std::int32_t percent;
  const char* picture;
};

// The frame of persons 1 and 2 covers about a third of the group frame.
TEST(GroupFallback, ShowsTheGroupWhenTheSelectionCoversEnoughOfIt) {
  constexpr CoverageCase kCases[] = {
      {100, "SUBSET_SPEAKER 1 2"}, {80, "SUBSET_SPEAKER 1 2"}, {10, "GROUP 1 2 3"}, {0, "GROUP 1 2 3"}};
  for (const CoverageCase& row : kCases) {
    SpeakerRun run;
    run.with([&](PrConfig& config) { config.ss2GroupCoverage = row.percent; });
    run.see(scene().person(1).at(300, 300).speaking().person(2).at(420, 300).person(3).at(1000, 300));
    EXPECT_EQ(run.picture(), row.picture) << row.percent;
  }
}

// The boundary is taken from the two frames themselves: exactly the share falls back, one more per cent does
// not.
TEST(GroupFallback, BeginsAtExactlyTheShare) {
  const auto meeting = [](bool everybody) {
    return scene().person(1).at(100, 300).speaking().person(2).at(520, 300).speaking(everybody);
  };
  const auto area = [&](bool everybody) {
    SpeakerRun run;
    run.with([](PrConfig& config) { config.ss2GroupCoverage = 1000; }).see(meeting(everybody));
    const Rect& source = run.current().frames.front().source;
    return std::int64_t{widthOf(source)} * heightOf(source);
  };
  const auto share = static_cast<std::int32_t>(area(false) * 100 / area(true));
  ASSERT_GT(share, 0);
  ASSERT_LT(share, 100);
  for (const auto& [percent, type] :
       {std::pair{share, FramingType::GROUP}, {share + 1, FramingType::SUBSET_SPEAKER}}) {
    SpeakerRun run;
    run.with([percent = percent](PrConfig& config) { config.ss2GroupCoverage = percent; })
        .see(meeting(false));
    EXPECT_EQ(run.current().layoutType, type) << percent;
  }
}

// Both frames are the whole image, so the selection covers exactly all of the group's.
TEST(GroupFallback, CountsAnEqualFrameAsTheWholeGroup) {
  const auto meeting = [] {
    return scene()
        .person(1)
        .at(100, 300)
        .speaking()
        .ssb({50, 200, 150, 400})
        .person(2)
        .at(1180, 300)
        .speaking()
        .ssb({1130, 200, 1230, 400})
        .person(3)
        .at(640, 600);
  };
  for (const auto& [percent, picture] : {std::pair{100, "GROUP 1 2 3"}, {101, "SUBSET_SPEAKER 1 2"}}) {
    SpeakerRun run;
    run.with([percent = percent](PrConfig& config) { config.ss2GroupCoverage = percent; }).see(meeting());
    EXPECT_EQ(run.picture(), picture) << percent;
  }
}

// The frame that is compared is the one that would be shown, so the zoom limit counts: one head alone takes
// an eighth of the group frame, and all of it where no zoom is allowed.
TEST(GroupFallback, ComparesFramesUnderTheZoomLimit) {
  for (const auto& [limit, type] : {std::pair{0, FramingType::SUBSET_SPEAKER}, {1, FramingType::GROUP}}) {
    SpeakerRun run;
    run.with([limit = limit](PrConfig& config) {
      config.zoomInLimit = limit;
      config.ss2GroupCoverage = 20;
    });
    run.see(three(true, false, false));
    EXPECT_EQ(run.current().layoutType, type) << limit;
  }
}

TEST(GroupFallback, ShowsTheGroupWhenEverybodyIsSelected) {
  SpeakerRun run;
  run.see(scene().person(1).at(600, 300).speaking().person(2).at(750, 300));
  EXPECT_EQ(run.picture(), "GROUP 1 2");
  EXPECT_STREQ(run.takeDecisions().front().reason, "the selection holds everybody");
}

// ---- Silence ----

TEST(Silence, IsHeldWhileEverybodyOnScreenIsPresent) {
  SpeakerRun run;
  run.watch(three(true, false, false), 500);
  run.takePictures();
  run.watch(three(false, false, false), 60000);
  EXPECT_EQ(run.takePictures(), Pictures{});
  EXPECT_EQ(run.picture(), "SUBSET_SPEAKER 1");
}

TEST(Silence, DropsAPictureThatWaits) {
  SpeakerRun run;
  run.watch(three(true, false, false), 500);
  run.with([](PrConfig& config) { config.timersLayoutChangeSfFrameSpeaker = 1000; });
  run.watch(three(false, true, false), 900);
  run.takeDecisions();
  run.see(three(false, false, false));
  const std::vector<LayoutDecision> decisions = run.takeDecisions();
  ASSERT_EQ(decisions.size(), 1U);
  EXPECT_EQ(decisions[0].kind, DecisionKind::Dropped);
  EXPECT_STREQ(decisions[0].reason, "held in silence");
}

TEST(Silence, EndsWhenSomebodyOnScreenLeaves) {
  SpeakerRun run;
  run.watch(three(true, false, false), 500);
  run.takePictures();
  run.watch(scene().person(2).at(640, 300).person(3).at(1080, 300), 5000);
  EXPECT_EQ(run.takePictures(), Pictures{"4500 GROUP 2 3"});
}

TEST(Silence, LeadsToTheGroupWithoutHold) {
  SpeakerRun run;
  run.with([](PrConfig& config) { config.sfLayoutHold = false; });
  run.watch(three(true, false, false), 500);
  run.takePictures();
  run.watch(three(false, false, false), 5000);
  EXPECT_EQ(run.takePictures(), Pictures{"4500 GROUP 1 2 3"});
}

TEST(Silence, DoesNotHoldAnEmptyRoom) {
  SpeakerRun run;
  run.watch(scene(), 500);
  run.takePictures();
  run.watch(three(false, false, false), 5000);
  EXPECT_EQ(run.takePictures(), Pictures{"4500 GROUP 1 2 3"});
}

// Who was shown alone only because nobody else was there yet is not held against those who come in.
TEST(Silence, HoldsOnlyAPictureOfSomebodyWhoHasSpoken) {
  SpeakerRun run;
  run.watch(scene().person(1).at(200, 300), 500);
  run.watch(three(false, false, false), 5000);
  EXPECT_EQ(run.takePictures(), (Pictures{"0 HEAD 1", "4500 GROUP 1 2 3"}));

  run.engine<SpeakerFramingLayout>();
  run.see(scene().person(1).at(200, 300));
  run.see(scene().person(1).at(200, 300).speaking());
  run.takePictures();
  run.watch(three(false, false, false), 5000);
  EXPECT_EQ(run.takePictures(), Pictures{});
  EXPECT_EQ(run.picture(), "HEAD 1");
}

// ---- Switches ----

TEST(Switch, IsNotMadeToASpeakerWhoIsFramedAlready) {
  SpeakerRun run;
  run.with(byNeighbours).watch(three(true, true, false), 500);
  ASSERT_EQ(run.picture(), "SUBSET_SPEAKER 1 2");
  run.takePictures();
  run.watch(three(true, false, false), 30000);
  run.watch(three(false, true, false), 30000);
  EXPECT_EQ(run.takePictures(), Pictures{});
  run.watch(three(false, false, true), 3000);
  EXPECT_EQ(run.takePictures(), Pictures{"62500 HEAD 3"});
}

TEST(Switch, FollowsASpeakerWhoIsNotFramed) {
  SpeakerRun run;
  run.watch(three(true, false, false), 500);
  run.watch(three(false, false, true), 500);
  EXPECT_EQ(run.takePictures(), (Pictures{"0 SUBSET_SPEAKER 1", "600 SUBSET_SPEAKER 3"}));
}

TEST(Switch, RemovesWhoHasLeftAlthoughTheSpeakerIsFramed) {
  SpeakerRun run;
  run.with(byNeighbours);
  const auto pair = [](bool bothThere) {
    Scene result = scene().person(1).at(300, 300).speaking().person(3).at(1000, 300);
    return bothThere ? result.person(2).at(420, 300) : result;
  };
  run.watch(pair(true), 500);
  ASSERT_EQ(run.picture(), "PROXIMITY 1 2");
  run.watch(pair(false), 4000);
  EXPECT_EQ(run.takePictures().back(), "3500 HEAD 1");
}

TEST(Switch, ShowsTheGroupWhenTheSpeakerLeaves) {
  SpeakerRun run;
  run.watch(three(false, false, true), 500);
  run.takePictures();
  run.watch(scene().person(1).at(200, 300).person(2).at(640, 300), 5000);
  EXPECT_EQ(run.takePictures(), Pictures{"4500 GROUP 1 2"});
}

// A speaker who walks keeps the picture; it is framed anew after the wait of where the speaker went.
TEST(Switch, LeavesASpeakerWhoWalksToTheReframe) {
  SpeakerRun run;
  const auto walker = [](std::int32_t x) {
    return scene().person(1).at(x, 500).speaking().person(2).at(300, 100).person(3).at(500, 100);
  };
  run.with(byNeighbours).watch(walker(200), 500);
  run.takePictures();
  run.takeDecisions();
  EXPECT_EQ(run.watch(walker(1000), 5000), 1);
  EXPECT_EQ(run.takePictures(), Pictures{});
  EXPECT_TRUE(isInside(run.current().frames.front().source, Rect{950, 440, 1050, 560}));
  const std::vector<LayoutDecision> decisions = run.takeDecisions();
  ASSERT_EQ(decisions.size(), 2U);
  EXPECT_EQ(decisions[0].kind, DecisionKind::ReframeWait);
  EXPECT_STREQ(decisions[0].timer, "outsideFrameTimer");
  EXPECT_EQ(decisions[1].kind, DecisionKind::Reframed);
  EXPECT_EQ(decisions[1].waitedMs, 2000U);
}

TEST(Switch, FramesASelectionAroundItsMembersOnly) {
  SpeakerRun run;
  const auto walker = [](std::int32_t x) {
    return scene().person(1).at(x, 500).speaking().person(2).at(900, 100).person(3).at(1200, 100);
  };
  run.watch(walker(100), 500);
  ASSERT_EQ(run.picture(), "SUBSET_SPEAKER 1");
  run.takeDecisions();
  run.watch(walker(700), 3000);
  EXPECT_EQ(run.takeDecisions().front().headPosition, HeadPosition::GROUP_HEAD_OUTSIDE);
  const Rect& source = run.current().frames.front().source;
  EXPECT_TRUE(isInside(source, Rect{650, 440, 750, 560}));
  EXPECT_FALSE(isInside(source, Rect{850, 40, 950, 160}));
}

// ---- What goes out with the picture ----

TEST(SpeakerNote, NamesWhoSpeaksAndWhatIsPending) {
  SpeakerRun run;
  run.watch(three(true, false, false), 300);
  EXPECT_EQ(run.current().activeSpeaker, 1);
  EXPECT_EQ(run.current().nextLayoutType, FramingType::NONE);
  // Of two the one who spoke first, wherever the other one sits.
  run.see(three(true, true, false));
  EXPECT_EQ(run.current().activeSpeaker, 1);
  run.see(three(false, true, false));
  run.see(three(true, true, false));
  EXPECT_EQ(run.current().activeSpeaker, 2);
  run.see(three(true, false, false));
  run.with([](PrConfig& config) { config.timersLayoutChangeSfFrameSpeaker = 1000; });
  run.watch(three(false, false, true), 500);
  EXPECT_EQ(run.current().activeSpeaker, 3);
  EXPECT_EQ(run.current().nextLayoutType, FramingType::SUBSET_SPEAKER);
  run.watch(three(false, false, true), 1000);
  EXPECT_EQ(run.current().nextLayoutType, FramingType::NONE);
  run.see(three(false, false, false));
  EXPECT_EQ(run.current().activeSpeaker, -1);
}

struct AnimationCase {
  bool cutOnly;
  bool enableEase;
  std::int32_t camera;
  const char* animation;
  std::int32_t duration;
};

TEST(SpeakerNote, ChoosesTheTransition) {
  constexpr AnimationCase kCases[] = {{false, false, 0, "dissolve", 90},
                                      {false, true, 0, "ease", 120},
                                      {false, true, 1, "dissolve", 90},
                                      {true, true, 0, "cut", 0}};
  for (const AnimationCase& row : kCases) {
    SpeakerRun run;
    run.with([&](PrConfig& config) {
      config.animationCutOnly = row.cutOnly;
      config.animationEnableEase = row.enableEase;
    });
    run.watch(scene().person(1).at(300, 300), 500);
    FynCamerasConfig::getMutable().fynCamId = row.camera;
    run.watch(scene().person(2).camera(row.camera).at(900, 300), 500);
    ASSERT_EQ(run.picture(), "HEAD 2");
    EXPECT_EQ(run.current().animation, row.animation);
    EXPECT_EQ(run.current().duration, row.duration) << row.animation;
  }
}

TEST(SpeakerNote, DissolvesFromAPictureOfSeveralFrames) {
  SpeakerRun run;
  run.with([](PrConfig& config) { config.animationEnableEase = true; });
  const auto sent = std::make_shared<Layout>();
  sent->layoutType = FramingType::ROOM;
  sent->frames.resize(2);
  for (Frame& frame : sent->frames) {
    frame.fynCamId = 0;
    frame.frameType = FramingType::ROOM;
  }
  run.see(scene());
  ASSERT_TRUE(run.layouts().applySecondaryLayout(sent));
  run.watch(scene().person(1).at(300, 300), 500);
  ASSERT_EQ(run.picture(), "HEAD 1");
  EXPECT_EQ(run.current().animation, "dissolve");
}

struct ZoomCase {
  bool enabled;
  std::int32_t cameraType;
  unsigned limit;
};

TEST(SpeakerZoom, IsLimitedByItsOwnSwitchExceptOnUnlimitedCameras) {
  constexpr ZoomCase kCases[] = {{true, 2, 3}, {true, 5, 0}, {false, 2, 0}, {false, 5, 0}};
  for (const ZoomCase& row : kCases) {
    SpeakerRun run;
    run.with([&](PrConfig& config) {
      config.sfZoomLimitEnabled = row.enabled;
      config.gfZoomLimitEnabled = !row.enabled;
      config.zoomInLimit = 3;
    });
    FynCamerasConfig::getMutable().cameraType = row.cameraType;
    EXPECT_EQ(run.layouts().getMaxScaleFactor(), row.limit);
  }
}

TEST(SpeakerDump, SaysWhoSpeaksAndWhyTheGroupIsShown) {
  SpeakerRun run;
  EXPECT_EQ(run.layouts().getDebugDataInJson(), "{}");
  run.with([](PrConfig& config) { config.sfRecoveryMode = true; }).see(three(false, true, false));
  const std::string text = run.layouts().getDebugDataInJson();
  EXPECT_NE(text.find(R"(, "activeSpeaker":2, "recovery":"", "recoveryRemainingMs":0})"), std::string::npos)
      << text;
}

// ---- Roles ----

TEST(SpeakerRoles, PrimaryDecidesAsTheStandaloneEngine) {
  SpeakerRun run;
  run.engine<PrimarySpeakerLayout>().watch(three(true, false, false), 500);
  run.watch(three(false, false, true), 500);
  EXPECT_EQ(run.takePictures(), (Pictures{"0 SUBSET_SPEAKER 1", "600 SUBSET_SPEAKER 3"}));
  EXPECT_STREQ(run.layouts().getTag(), "PrimarySpeakerLayout");
}

std::shared_ptr<Layout> sentBySelection(std::int64_t member) {
  auto layout = std::make_shared<Layout>();
  layout->layoutType = FramingType::SUBSET_SPEAKER;
  Frame frame;
  frame.frameType = FramingType::SUBSET_SPEAKER;
  frame.source = {10, 20, 650, 380};
  frame.dest = {0, 0, 1280, 720};
  frame.srcRef = kDefaultImageSize;
  frame.heads = {member};
  frame.fynHeads = {member};
  layout->frames.push_back(frame);
  return layout;
}

TEST(SpeakerRoles, SecondaryShowsTheMembersThatWereSentAndDecidesNothing) {
  SpeakerRun run;
  run.engine<SecondarySpeakerLayout>();
  EXPECT_FALSE(run.see(three(true, false, false)));
  ASSERT_TRUE(run.layouts().applySecondaryLayout(sentBySelection(3)));
  const Rect source = run.current().frames.front().source;
  EXPECT_TRUE(isInside(source, Rect{1030, 240, 1130, 360}));
  EXPECT_FALSE(isInside(source, Rect{590, 240, 690, 360}));
  EXPECT_EQ(run.watch(three(true, true, true), 5000), 0);
}

struct SentCase {
  const char* what;
  FramingType type;
  std::set<std::int64_t> members;
  bool enabled;
  int picturesInTheWait;
  int picturesLater;
};

TEST(SpeakerRoles, SecondaryReframesItsMembersWhereItMay) {
  const SentCase cases[] = {
      {"a head that has gone out of the frame", FramingType::HEAD, {3}, true, 0, 1},
      {"a selection", FramingType::SUBSET_SPEAKER, {3}, true, 0, 1},
      {"not allowed", FramingType::HEAD, {3}, false, 0, 0},
      {"a selection of people whom it does not see", FramingType::SUBSET_SPEAKER, {42}, true, 0, 0},
      {"a head that it does not see", FramingType::HEAD, {42}, true, 0, 0},
      {"a frame of nobody", FramingType::HEAD, {}, true, 0, 0},
  };
  for (const SentCase& each : cases) {
    SpeakerRun run;
    run.with([&](PrConfig& config) { config.pfReframeOnSecondaryEnabled = each.enabled; })
        .engine<SecondarySpeakerLayout>();
    run.see(three(false, false, true));
    const std::shared_ptr<Layout> layout = sentBySelection(3);
    Frame& frame = layout->frames.front();
    frame.frameType = each.type;
    frame.heads = each.members;
    frame.fynHeads = each.members;
    ASSERT_TRUE(run.layouts().applySecondaryLayout(layout)) << each.what;
    if (each.members.count(3) == 0) {
      EXPECT_EQ(frame.source, (Rect{10, 20, 650, 380})) << each.what;
    }
    const Scene moved = scene().person(1).at(200, 300).person(3).at(400, 600);
    EXPECT_EQ(run.watch(moved, 2000), each.picturesInTheWait) << each.what;
    EXPECT_EQ(run.watch(moved, 18000), each.picturesLater) << each.what;
  }
}

TEST(SpeakerRoles, SecondaryDoesNotShowNothing) {
  for (const FramingType type : {FramingType::HEAD, FramingType::SUBSET_SPEAKER}) {
    SpeakerRun run;
    run.engine<SecondarySpeakerLayout>();
    run.see(three(true, false, false));
    const auto sent = [&](std::int64_t member) {
      const std::shared_ptr<Layout> layout = sentBySelection(member);
      layout->frames.front().frameType = type;
      layout->frames.front().source = {};
      return layout;
    };
    ASSERT_TRUE(run.layouts().applySecondaryLayout(sent(3)));
    const Rect before = run.current().frames.front().source;
    EXPECT_FALSE(run.layouts().applySecondaryLayout(sent(42)));
    EXPECT_EQ(run.current().frames.front().source, before);
  }
}

TEST(SpeakerRoles, SecondaryKeepsTheViewOfMembersWhomItDoesNotSee) {
  SpeakerRun run;
  run.engine<SecondarySpeakerLayout>();
  run.see(three(true, false, false));
  ASSERT_TRUE(run.layouts().applySecondaryLayout(sentBySelection(42)));
  EXPECT_EQ(run.current().frames.front().source, (Rect{10, 20, 650, 380}));
}

}  // namespace
}  // namespace fyn::productionrules::testing
