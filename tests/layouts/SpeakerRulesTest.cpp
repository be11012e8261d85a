// What speaker framing shows: scenes of a meeting and the pictures that follow.
#include <gtest/gtest.h>

#include "layouts/speaker/SSBLayoutBuilder.h"
#include "layouts/speaker/SpeakerFramingTimerSetting.h"
#include "layouts/speaker/SpeakerWaits.h"
#include "model/FynCamerasConfig.h"
#include "tests/layouts/SpeakerRun.h"

namespace fyn::productionrules::testing {
namespace {

using Pictures = std::vector<std::string>;

void byNeighbours(PrConfig& config) {
  config.sfUseSsb = false;
}

// Three people far apart, none in the close picture of another; who of them speaks.
Scene three(bool first, bool second, bool third) {
  Scene people;
  std::int32_t id = 1;
  for (const bool speaks : {first, second, third}) {
    people.person(id).at(440 * id - 240, 300).sized(50, 60).speaking(speaks);
    ++id;
  }
  return people;
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

// A head that touches the selection's edges lies inside it; one pixel less on any side, and it does not.
TEST(SelectionBox, HoldsAHeadThatTouchesItsEdges) {
  const Rect head{510, 240, 610, 360};
  const std::pair<Rect, const char*> cases[] = {
      {head, "SUBSET_SPEAKER [1 2]"},
      {{511, 240, 610, 360}, "SUBSET_SPEAKER [1]"},
      {{510, 241, 610, 360}, "SUBSET_SPEAKER [1]"},
      {{510, 240, 609, 360}, "SUBSET_SPEAKER [1]"},
      {{510, 240, 610, 359}, "SUBSET_SPEAKER [1]"},
  };
  for (const auto& [ssb, picture] : cases) {
    SpeakerRun run;
    run.see(scene().person(1).at(200, 300).speaking().ssb(ssb).person(2).box(head).person(3).at(1080, 300));
    EXPECT_EQ(run.picture(), picture) << RectToString(ssb);
  }
}

// The largest image's area times a percentage is beyond 64 bits.
TEST(GroupFallback, ComparesTheFramesOfAnyImage) {
  for (const std::int32_t scale : {1, 1000, 1000000}) {
    const auto box = [scale](std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) {
      return Rect{left * scale, top * scale, right * scale, bottom * scale};
    };
    constexpr std::int32_t kCamera = 5;
    SpeakerRun run({1280 * scale, 720 * scale}, kCamera);
    const Rect left = box(150, 240, 250, 360);
    run.see(scene().person(1).camera(kCamera).box(left).speaking().ssb(left).person(2).camera(kCamera).box(
        box(1030, 240, 1130, 360)));
    EXPECT_EQ(run.picture(), "SUBSET_SPEAKER [1]") << scale;
  }
}

// Both frames are the whole image, so the selection covers exactly all of the group's.
TEST(GroupFallback, CountsAnEqualFrameAsTheWholeGroup) {
  Scene meeting = scene().person(3).at(640, 600);
  for (const std::int32_t x : {100, 1180}) {
    meeting.person(x).at(x, 300).speaking().ssb({x - 50, 200, x + 50, 400});
  }
  for (const auto& [percent, picture] :
       {std::pair{100, "GROUP [3 100 1180]"}, {101, "SUBSET_SPEAKER [100 1180]"}}) {
    SpeakerRun run;
    run.with([percent = percent](PrConfig& config) { config.ss2GroupCoverage = percent; }).see(meeting);
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

// ---- Silence ----

// Who was shown alone only because nobody else was there yet is not held against those who come in.
TEST(Silence, HoldsOnlyAPictureOfSomebodyWhoHasSpoken) {
  SpeakerRun run;
  const auto first = [](bool speaks) {
    return scene().person(1).at(200, 300).sized(50, 60).speaking(speaks);
  };
  run.watch(first(false), 500);
  run.watch(three(false, false, false), 5000);
  EXPECT_EQ(run.takePictures(), (Pictures{"0 HEAD [1]", "5000 GROUP [1 2 3]"}));

  run.engine<SpeakerFramingLayout>();
  run.see(first(false));
  run.watch(first(true), 1000);
  run.takePictures();
  run.watch(three(false, false, false), 5000);
  EXPECT_EQ(run.takePictures(), Pictures{});
  EXPECT_EQ(run.picture(), "HEAD [1]");
}

// ---- Switches ----

// The picture is as good without who has left; only the number goes.
TEST(Switch, IsNotNeededForWhoHasLeftBesideTheSpeaker) {
  SpeakerRun run;
  run.with(byNeighbours);
  const auto pair = [](bool bothThere) {
    Scene result = scene().person(1).at(300, 300).speaking().person(3).at(1000, 300);
    return bothThere ? result.person(2).at(420, 300) : result;
  };
  run.watch(pair(true), 500);
  ASSERT_EQ(run.picture(), "PROXIMITY [1 2]");
  run.watch(pair(false), 4000);
  EXPECT_EQ(run.takePictures(), Pictures{"0 PROXIMITY [1 2]"});
  EXPECT_EQ(run.picture(), "PROXIMITY [1]");
}

// ---- Waits ----

TEST(SpeakerTimerSetting, FollowsTheConfigurationAndStaysOfItsOwnKind) {
  SpeakerRun run;
  const auto waitToHead = [&] {
    return dynamic_cast<SpeakerFramingTimerSetting&>(*run.layouts().getTimerSetting())
        .frameSpeakerLayoutChangeTimer;
  };
  EXPECT_EQ(waitToHead(), 100U);
  run.with([](PrConfig& config) { config.timersLayoutChangeSfFrameSpeaker = 250; });
  run.layouts().setTimerSetting(std::make_shared<BaseTimerSetting>());
  run.layouts().setTimerSetting(nullptr);
  EXPECT_EQ(waitToHead(), 250U);
}

// Which key a change waits for: a row for each type of the picture on screen, a column for each of the next.
TEST(SpeakerWaits, HangOnBothPictures) {
  const std::pair<FramingType, std::string> rows[] = {
      {FramingType::ROOM, "anyToGF anyToProx frameSpeaker otherToSs "},
      {FramingType::GROUP, "anyToGF anyToProx frameSpeaker otherToSs "},
      {FramingType::PROXIMITY, "proxToGF proxToProx proxToHead otherToSs "},
      {FramingType::HEAD, "anyToGF anyToProx frameSpeaker otherToSs "},
      {FramingType::SUBSET_SPEAKER, "anyToGF ssToProx ssToHead frameSpeaker "},
  };
  const SpeakerFramingTimerSetting setting;
  for (const auto& [from, names] : rows) {
    std::string seen;
    for (const FramingType to :
         {FramingType::GROUP, FramingType::PROXIMITY, FramingType::HEAD, FramingType::SUBSET_SPEAKER}) {
      const std::string name = setting.findSource(findSpeakerWait(from, to)->wait)->name;
      seen += name.substr(0, name.find("LayoutChangeTimer")) + " ";
    }
    EXPECT_EQ(seen, names) << static_cast<int>(from);
  }
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

TEST(SpeakerNote, DissolvesToAnotherCamera) {
  SpeakerRun run;
  run.with([](PrConfig& config) { config.animationEnableEase = true; });
  run.watch(scene().person(1).at(300, 300), 500);
  FynCamerasConfig::getMutable().fynCamId = 1;
  run.watch(scene().person(2).camera(1).at(900, 300), 1500);
  ASSERT_EQ(run.picture(), "HEAD [2]");
  EXPECT_EQ(run.current().animation, "dissolve");
  EXPECT_EQ(run.current().duration, 90);
}

TEST(SpeakerDump, SaysWhoSpeaksAndWhyTheGroupIsShown) {
  SpeakerRun run;
  EXPECT_EQ(run.layouts().getDebugDataInJson(), "{}");
  run.with([](PrConfig& config) { config.sfRecoveryMode = true; }).see(three(false, true, false));
  const std::string text = run.layouts().getDebugDataInJson();
  EXPECT_NE(text.find(R"(, "activeSpeaker":2, "recovery":"", "recoveryRemainingMs":0})"), std::string::npos)
      << text;
}

}  // namespace
}  // namespace fyn::productionrules::testing
