// What a secondary device makes of the pictures of speakers that the primary sends.
#include <gtest/gtest.h>

#include "layouts/speaker/SecondarySpeakerLayout.h"
#include "tests/layouts/SpeakerRun.h"

namespace fyn::productionrules::testing {
namespace {

Scene two() {
  return scene().person(1).at(200, 300).sized(50, 60).person(3).at(1080, 300).sized(50, 60);
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

struct SentCase {
  const char* what;
  FramingType type;
  std::set<std::int64_t> members;
  bool enabled;
  int picturesInTheWait;
  int picturesLater;
};

TEST(SecondarySpeaker, ReframesItsMembersWhereItMay) {
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
    run.see(two());
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

TEST(SecondarySpeaker, DoesNotShowNothing) {
  for (const FramingType type : {FramingType::HEAD, FramingType::SUBSET_SPEAKER}) {
    SpeakerRun run;
    run.engine<SecondarySpeakerLayout>();
    run.see(two().person(4).camera(7).at(600, 360));
    const auto sent = [&](std::int64_t member) {
      const std::shared_ptr<Layout> layout = sentBySelection(member);
      layout->frames.front().frameType = type;
      layout->frames.front().source = {};
      return layout;
    };
    ASSERT_TRUE(run.layouts().applySecondaryLayout(sent(3)));
    const Rect before = run.current().frames.front().source;
    EXPECT_FALSE(run.layouts().applySecondaryLayout(sent(42)));
    EXPECT_FALSE(run.layouts().applySecondaryLayout(sent(4))) << "seen by another camera only";
    EXPECT_EQ(run.current().frames.front().source, before);
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
