#include <gtest/gtest.h>

#include <functional>

#include "geometry/LayoutComparison.h"
#include "geometry/LayoutDescription.h"
#include "tests/geometry/GeometryTesting.h"
#include "tests/testing/CapturedLog.h"

namespace fyn::productionrules {
namespace {

using testing::CapturedLog;
using testing::person;
using Lines = std::vector<std::string>;

Frame tile(int left, std::int64_t headId, std::int64_t personId) {
  Frame frame;
  frame.frameType = FramingType::HEAD;
  frame.dest = {left, 0, left + 640, 720};
  frame.heads = {headId};
  frame.fynHeads = {personId};
  return frame;
}

Layout twoTiles() {
  Layout layout;
  layout.layoutType = FramingType::HEAD;
  layout.frames = {tile(0, 11, 1), tile(640, 12, 2)};
  layout.frames[1].heads = {12, 13};
  layout.frames[1].fynHeads = {2, 3};
  return layout;
}

struct ChangeRow {
  const char* what;
  std::function<void(std::vector<Frame>&)> change;
  bool sameTemplate;
  bool sameLayout;
  bool sameFrames;
  Lines log;
};

// What happens to the second frame of two, and what each strength of comparison says about it.
TEST(LayoutComparison, ChangeOfAFrame) {
  const ChangeRow rows[] = {
      {"nothing", [](auto&) {}, true, true, true, {}},
      {"a tile less",
       [](auto& frames) { frames.pop_back(); },
       false,
       false,
       false,
       {"D|FramingUtil|areSameFrames Frames sizes are diff curFrames(2), newFrames(1)"}},
      {"no tile",
       [](auto& frames) { frames.clear(); },
       false,
       false,
       false,
       {"D|FramingUtil|areSameFrames Frames sizes are diff curFrames(2), newFrames(0)"}},
      {"place", [](auto& frames) { frames[1].dest.left = 600; }, false, false, true, {}},
      {"source", [](auto& frames) { frames[1].source.left = 600; }, true, true, true, {}},
      {"frame layout",
       [](auto& frames) { frames[1].frameLayout = kFrameLayoutHeadWide; },
       true,
       true,
       true,
       {}},
      {"type",
       [](auto& frames) { frames[1].frameType = FramingType::PROXIMITY; },
       true,
       true,
       false,
       {"D|FramingUtil|areSameFrames Frames types are diff curFrameType(HEAD), newFrameType(PROXIMITY)"}},
      {"a head less",
       [](auto& frames) { frames[1].heads = {12}; },
       true,
       false,
       false,
       {"D|FramingUtil|isSameLayout heads size diff For frame [1] a.size(2), b.size(1)",
        "D|FramingUtil|areSameFrames head sizes are diff in frame (1)"}},
      {"another head",
       [](auto& frames) {
         frames[1].heads = {7, 12};
       },
       true,
       false,
       false,
       {"D|FramingUtil|isSameLayout head ids for this frame are different, new head 7 not found",
        "D|FramingUtil|areSameFrames head ids are different"}},
      {"a head without a number",
       [](auto& frames) {
         frames[1].heads = {-1, 12};
       },
       true,
       false,
       false,
       {"D|FramingUtil|isSameLayout head ids for this frame are different, new head 18446744073709551615 not "
        "found",
        "D|FramingUtil|areSameFrames head ids are different"}},
      {"camera",
       [](auto& frames) { frames[1].fynCamId = FynHead::kNoCamera; },
       true,
       false,
       true,
       {"D|FramingUtil|isSameLayout FynCamId are different for frame [1] a(0), b(-1)"}},
      {"another person",
       [](auto& frames) {
         frames[1].fynHeads = {3, 5};
       },
       true,
       false,
       true,
       {"D|FramingUtil|isSameLayout FynHeadId are different for frame [1] nDH not found [5]"}},
      {"a person less", [](auto& frames) { frames[1].fynHeads = {3}; }, true, true, true, {}},
  };
  for (const ChangeRow& row : rows) {
    SCOPED_TRACE(row.what);
    const std::vector<Frame> current = twoTiles().frames;
    std::vector<Frame> latest = current;
    row.change(latest);
    CapturedLog log;
    EXPECT_EQ(isSameStreamLayoutTemplate(current, latest), row.sameTemplate);
    EXPECT_EQ(isSameLayout(current, latest), row.sameLayout);
    EXPECT_EQ(areSameFrames(current, latest), row.sameFrames);
    EXPECT_EQ(log.lines(), row.log);
  }
  EXPECT_TRUE(isSameStreamLayoutTemplate({}, {}));
  EXPECT_TRUE(areSameFrames({}, {}));
}

struct LayoutRow {
  const char* what;
  std::shared_ptr<Layout> current;
  std::shared_ptr<Layout> latest;
  bool baseDifferent;
  bool different;
  bool differentFrames;
  /** Of isBaseLayoutDifferent and isDifferentLayout. */
  Lines log;
};

std::shared_ptr<Layout> ofType(FramingType type, int tiles) {
  auto layout = std::make_shared<Layout>();
  layout->layoutType = type;
  layout->frames.resize(static_cast<std::size_t>(tiles));
  return layout;
}

TEST(LayoutComparison, ChangeOfALayout) {
  const auto head = ofType(FramingType::HEAD, 1);
  const LayoutRow rows[] = {
      {"none at all",
       nullptr,
       nullptr,
       false,
       false,
       false,
       {"D|FramingUtil|isBaseLayoutDifferent a and b are same, return false"}},
      {"the same object",
       head,
       head,
       false,
       false,
       false,
       {"D|FramingUtil|isBaseLayoutDifferent a and b are same, return false"}},
      {"the first",
       nullptr,
       head,
       true,
       true,
       true,
       {"D|FramingUtil|isBaseLayoutDifferent a or b is null, return true",
        "D|FramingUtil|isDifferentLayout a not NULL, b is null  --> return true"}},
      {"no more",
       head,
       nullptr,
       true,
       true,
       true,
       {"D|FramingUtil|isBaseLayoutDifferent a or b is null, return true",
        "D|FramingUtil|isDifferentLayout a is null , b not NULL --> return true"}},
      {"another type",
       head,
       ofType(FramingType::ROOM, 1),
       true,
       true,
       true,
       {"D|FramingUtil|isBaseLayoutDifferent layout Types are different, ret true",
        "D|FramingUtil|isDifferentLayout layout Types (HEAD --> ROOM)are different, ret true"}},
      {"same type, same frames", head, ofType(FramingType::HEAD, 1), false, false, false, {}},
      {"same type, other frames", head, ofType(FramingType::HEAD, 2), false, true, true, {}},
      {"rooms never differ but in frames",
       ofType(FramingType::ROOM, 1),
       ofType(FramingType::ROOM, 2),
       false,
       false,
       true,
       {"D|FramingUtil|isBaseLayoutDifferent layoutType ROOM,  return false "}},
      {"groups never differ but in frames",
       ofType(FramingType::GROUP, 1),
       ofType(FramingType::GROUP, 2),
       false,
       false,
       true,
       {"D|FramingUtil|isBaseLayoutDifferent layoutType GROUP,  return false "}},
  };
  for (const LayoutRow& row : rows) {
    SCOPED_TRACE(row.what);
    {
      CapturedLog log;
      EXPECT_EQ(isBaseLayoutDifferent(row.current, row.latest), row.baseDifferent);
      EXPECT_EQ(isDifferentLayout(row.current, row.latest), row.different);
      EXPECT_EQ(log.lines(), row.log);
    }
    EXPECT_EQ(isDifferentFrameBasedLayout(row.current, row.latest), row.differentFrames);
  }
}

TEST(LayoutDescription, NamesEverything) {
  EXPECT_EQ(convertLayoutToString(nullptr, {}), "layout is a nullptr");

  auto layout = std::make_shared<Layout>();
  EXPECT_EQ(convertLayoutToString(layout, {}),
            " LayoutType: NONE headCount: 0 streamID: 0 isLogicalStream: 1 animation:  duration: 0 "
            "headFrameCount: 0 "
            "proximityFrameCount: 0 Frames (0) {}");

  *layout = twoTiles();
  layout->faceCount = 3;
  layout->streamId = -4;
  layout->isLogicalStream = false;
  layout->animation = "dissolve";
  layout->duration = 90;
  layout->headFrameCount = 1;
  layout->proximityFrameCount = 2;
  layout->frames[0].source = {1, -2, 3, 4};
  layout->frames[1].fynHeads = {2, 3, 6};
  layout->frames.emplace_back();
  const PeopleMap persons{
      {1, person(1, {5, 6, 7, 8})}, {2, person(2, {-9, 10, 11, 12})}, {3, person(3, {}, 8)}};
  EXPECT_EQ(convertLayoutToString(layout, persons),
            " LayoutType: HEAD headCount: 3 streamID: -4 isLogicalStream: 0 animation: dissolve duration: 90 "
            "headFrameCount: 1 proximityFrameCount: 2 Frames (3) {"
            " Frametype: HEAD #heads: 1 faces:{ fynhead: 1 , head: 11 [5,6,7,8],},"
            " view:[1,-2,3,4] pos:[0,0,640,720],"
            " Frametype: HEAD #heads: 3 faces:{"
            " fynhead: 2 , head: 12 , head: 13 [-9,10,11,12],"
            " fynhead: 3 , head: 12 , head: 13 [** empty **]"
            " fynhead: 6 , head: 12 , head: 13 [** no head found **]},"
            " view:[0,0,0,0] pos:[640,0,1280,720],"
            " Frametype: NONE #heads: 0 view:[0,0,0,0] pos:[0,0,0,0],}");
}

}  // namespace
}  // namespace fyn::productionrules
