// Where a frame of speakers goes.
#include <gtest/gtest.h>

#include "layouts/speaker/CloseView.h"
#include "layouts/speaker/MemberFrame.h"
#include "tests/geometry/GeometryTesting.h"
#include "tests/layouts/SpeakerRun.h"

namespace fyn::productionrules::testing {
namespace {

struct CloseViewCase {
  const char* name;
  std::vector<Rect> members;
  std::vector<Rect> neighbours;
  Rect view;
};

TEST(CloseView, IsCloseAndCutsNobody) {
  const SpeakerRun run({1920, 1080});
  const Rect small{930, 510, 990, 570};
  const CloseViewCase cases[] = {
      {"not more than 2.5 pixels for one", {small}, {}, {704, 425, 1216, 713}},
      {"a head of at most 30 per cent", {{900, 465, 1020, 615}}, {}, {516, 340, 1404, 840}},
      {"slid into the image", {{0, 0, 120, 150}}, {}, {0, 0, 888, 500}},
      {"a neighbour wholly in it", {small}, {{1100, 510, 1160, 570}}, {704, 425, 1216, 713}},
      {"shifted off a neighbour", {small}, {{1196, 510, 1256, 570}}, {678, 425, 1190, 713}},
      {"grown, and one let in",
       {small},
       {{560, 480, 700, 600}, {1190, 480, 1350, 600}},
       {745, 379, 1461, 782}},
      {"a neighbour not at its side", {small}, {{1150, 510, 1210, 570}}, {755, 425, 1267, 713}},
      {"whole where there is no room",
       {small},
       {{490, 510, 550, 570},
        {570, 510, 630, 570},
        {650, 510, 710, 570},
        {710, 510, 770, 570},
        {1150, 510, 1210, 570},
        {1210, 510, 1270, 570},
        {1290, 510, 1350, 570},
        {1370, 510, 1430, 570}},
       {704, 425, 1216, 713}},
      {"moved up from a head in front", {small}, {{850, 680, 1010, 790}}, {704, 396, 1216, 684}},
      {"two far apart", {{0, 0, 100, 100}, {1800, 960, 1900, 1060}}, {}, {0, 0, 1920, 1080}},
  };
  for (const CloseViewCase& each : cases) {
    Frame frame;
    placeClosely(frame, each.members, each.neighbours, 0);
    EXPECT_EQ(frame.source, each.view) << each.name;
  }
}

// The room is too flat for a view of 16 to 9 around everybody: better all of it than a head less.
TEST(CloseView, IsTheWholeImageWhereNothingElseHoldsTheHeads) {
  const SpeakerRun run({1000, 1000});
  Frame frame;
  placeClosely(frame, {{0, 0, 100, 100}, {0, 900, 100, 1000}}, {}, 0);
  EXPECT_EQ(frame.source, (Rect{0, 0, 1000, 1000}));
}

TEST(MemberFrame, IsPlacedAnewForANeighbourWhoNeedNotBeCut) {
  const SpeakerRun run({1920, 1080});
  Frame frame;
  frame.fynHeads = {1};
  const auto seen = [](const Rect& second) {
    return PeopleMap{{1, person(1, {930, 510, 990, 570})}, {2, person(2, second)}};
  };
  placeMembers(frame, seen({1400, 510, 1460, 570}));
  EXPECT_EQ(memberPosition(frame, seen({1220, 510, 1280, 570})), HeadPosition::CENTER) << "beside it";
  EXPECT_EQ(memberPosition(frame, seen({1150, 510, 1210, 570})), HeadPosition::CENTER) << "whole";
  EXPECT_EQ(memberPosition(frame, seen({1186, 510, 1246, 570})), HeadPosition::GROUP_HEAD_ON_EDGE);
  EXPECT_EQ(memberPosition(frame, seen({700, 200, 1600, 900})), HeadPosition::CENTER) << "cut either way";
}

}  // namespace
}  // namespace fyn::productionrules::testing
