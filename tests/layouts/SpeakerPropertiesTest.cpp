// What holds for every picture of speaker framing, over meetings that nobody has arranged.
#include <gtest/gtest.h>

#include <set>

#include "layouts/speaker/PrimarySpeakerLayout.h"
#include "tests/layouts/PictureFaults.h"
#include "tests/layouts/RandomMeeting.h"
#include "tests/layouts/SpeakerRun.h"

namespace fyn::productionrules::testing {
namespace {

constexpr Dimension kPropertyImage{1920, 1080};
constexpr Dimension kSecondImage{1280, 720};
constexpr int kResults = 3000;

/** Every third meeting is seen by two cameras and framed by a primary device. */
class SpeakerProperties : public ::testing::TestWithParam<unsigned> {
 protected:
  SpeakerProperties() : meeting(GetParam(), {7, {kPropertyImage}, 2}), run(kPropertyImage) {
    if (isPrimary()) {
      meeting = RandomMeeting(GetParam(), {7, {kPropertyImage, kSecondImage}, 2});
      FynCamerasConfig::getMutable().setCameraLensModelDimension(1, kSecondImage);
    }
    makeEngine();
    run.with([](PrConfig& config) {
      config.sfRecoveryMode = true;
      config.sfUseSsb = GetParam() % 2 == 0;
      config.sfLayoutHold = GetParam() % 3 != 0;
      config.zoomInLimit = static_cast<std::int32_t>(GetParam() % 4);
    });
  }

  static bool isPrimary() { return GetParam() % 3 == 0; }

  void makeEngine() {
    if (isPrimary()) {
      run.engine<PrimarySpeakerLayout>();
    } else {
      run.engine<SpeakerFramingLayout>();
    }
  }

  RandomMeeting meeting;
  SpeakerRun run;
};

TEST_P(SpeakerProperties, EveryPictureIsWholeAndNoChangeComesBeforeItsWait) {
  int changes = 0;
  std::set<std::uint32_t> cameras;
  for (int i = 0; i < kResults; ++i) {
    const bool changed = run.see(meeting.next());
    const Layout& picture = run.current();
    ASSERT_EQ(picture.frames.size(), 1U);
    cameras.insert(picture.frames.front().fynCamId);
    ASSERT_EQ(tilingFaults(picture), Faults()) << i;
    ASSERT_EQ(viewFaults(picture), Faults()) << i;
    if (changed && picture.layoutType != FramingType::ROOM) {
      ASSERT_EQ(cutFaults(picture.frames.front(), run.layouts().peopleMap()), Faults()) << i;
    }
    for (const LayoutDecision& decision : run.takeDecisions()) {
      if (decision.kind == DecisionKind::Adopted || decision.kind == DecisionKind::Reframed) {
        ASSERT_GE(decision.waitedMs, decision.waitMs) << i;
        ++changes;
      }
    }
  }
  EXPECT_GT(changes, 10);
  EXPECT_EQ(cameras.size(), isPrimary() ? 2U : 1U);
}

TEST_P(SpeakerProperties, PicturesDoNotDependOnTheOrderOfPersonsOrTheirAddresses) {
  std::vector<Scene> scenes;
  for (int i = 0; i < 1000; ++i) {
    scenes.push_back(meeting.next());
    run.see(scenes.back());
  }
  const std::vector<std::string> pictures = run.takePictures();
  EXPECT_GT(pictures.size(), 2U);
  const std::uint64_t start = run.now();
  makeEngine();
  for (const Scene& scene : scenes) {
    run.see(scene.reversed());
  }
  std::vector<std::string> again = run.takePictures();
  for (std::string& line : again) {
    line = std::to_string(std::stoull(line) - start) + line.substr(line.find(' '));
  }
  EXPECT_EQ(pictures, again);
}

INSTANTIATE_TEST_SUITE_P(Seeds, SpeakerProperties, ::testing::Range(1U, 9U));

}  // namespace
}  // namespace fyn::productionrules::testing
