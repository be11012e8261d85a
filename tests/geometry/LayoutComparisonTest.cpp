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

const std::string kBase = "D|FramingUtil|isBaseLayoutDifferent ";
const std::string kDifferent = "D|FramingUtil|isDifferentLayout ";
const std::string kLayout = "D|FramingUtil|isSameLayout ";
const std::string kFrames = "D|FramingUtil|areSameFrames ";

/** "T" for the same template, "L" for the same layout, "F" for the same frames. */
std::string samenessOf(const std::vector<Frame>& a, const std::vector<Frame>& b) {
  std::string same = isSameStreamLayoutTemplate(a, b) ? "T" : "";
  same += isSameLayout(a, b) ? "L" : "";
  same += areSameFrames(a, b) ? "F" : "";
  return same;
}

struct ChangeRow {
  const char* what;
  std::function<void(std::vector<Frame>&)> change;
  const char* same;
  Lines log;
};

// What happens to the second frame of two, and what each strength of comparison says about it.
TEST(LayoutComparison, ChangeOfAFrame) {
  const auto heads = [](const std::set<std::int64_t>& ids) {
    return [ids](auto& all) { all[1].heads = ids; };
  };
  const auto persons = [](const std::set<std::int64_t>& ids) {
    return [ids](auto& all) { all[1].fynHeads = ids; };
  };
  const std::string otherHead = kLayout + "head ids for this frame are different, new head ";
  const std::string otherIds = kFrames + "head ids are different";
  const ChangeRow rows[] = {
      {"nothing", [](auto&) {}, "TLF", {}},
      {"a tile less",
       [](auto& all) { all.pop_back(); },
       "",
       {kFrames + "Frames sizes are diff curFrames(2), newFrames(1)"}},
      {"place", [](auto& all) { all[1].dest.left = 600; }, "F", {}},
      {"source", [](auto& all) { all[1].source.left = 600; }, "TLF", {}},
      {"frame layout", [](auto& all) { all[1].frameLayout = kFrameLayoutHeadWide; }, "TLF", {}},
      {"type",
       [](auto& all) { all[1].frameType = FramingType::PROXIMITY; },
       "TL",
       {kFrames + "Frames types are diff curFrameType(HEAD), newFrameType(PROXIMITY)"}},
      {"a head less",
       heads({12}),
       "T",
       {kLayout + "heads size diff For frame [1] a.size(2), b.size(1)",
        kFrames + "head sizes are diff in frame (1)"}},
      {"another head", heads({7, 12}), "T", {otherHead + "7 not found", otherIds}},
      {"no number", heads({-1, 12}), "T", {otherHead + "18446744073709551615 not found", otherIds}},
      {"camera",
       [](auto& all) { all[1].fynCamId = FynHead::kNoCamera; },
       "TF",
       {kLayout + "FynCamId are different for frame [1] a(0), b(-1)"}},
      {"another person",
       persons({3, 5}),
       "TF",
       {kLayout + "FynHeadId are different for frame [1] nDH not found [5]"}},
      {"a person less", persons({3}), "TLF", {}},
  };
  for (const ChangeRow& row : rows) {
    const std::vector<Frame> current = twoTiles().frames;
    std::vector<Frame> latest = current;
    row.change(latest);
    CapturedLog log;
    EXPECT_EQ(samenessOf(current, latest), row.same) << row.what;
    EXPECT_EQ(log.lines(), row.log) << row.what;
  }
  EXPECT_TRUE(isSameStreamLayoutTemplate({}, {}));
  EXPECT_TRUE(areSameFrames({}, {}));
}

using LayoutPointer = std::shared_ptr<Layout>;

struct LayoutRow {
  LayoutPointer current;
  LayoutPointer latest;
  /** "B" for another base layout, "D" for another layout, "F" for other frames. */
  const char* different;
  /** Of isBaseLayoutDifferent and isDifferentLayout. */
  Lines log;
};

LayoutPointer ofType(FramingType type, int tiles) {
  auto layout = std::make_shared<Layout>();
  layout->layoutType = type;
  layout->frames.resize(static_cast<std::size_t>(tiles));
  return layout;
}

TEST(LayoutComparison, ChangeOfALayout) {
  const auto head = ofType(FramingType::HEAD, 1);
  const auto room = ofType(FramingType::ROOM, 1);
  const std::string same = kBase + "a and b are same, return false";
  const std::string none = kBase + "a or b is null, return true";
  // Rooms and groups never differ but in frames.
  const LayoutRow rows[] = {
      {nullptr, nullptr, "", {same}},
      {head, head, "", {same}},
      {nullptr, head, "BDF", {none, kDifferent + "a not NULL, b is null  --> return true"}},
      {head, nullptr, "BDF", {none, kDifferent + "a is null , b not NULL --> return true"}},
      {head,
       room,
       "BDF",
       {kBase + "layout Types are different, ret true",
        kDifferent + "layout Types (HEAD --> ROOM)are different, ret true"}},
      {head, ofType(FramingType::HEAD, 1), "", {}},
      {head, ofType(FramingType::HEAD, 2), "DF", {}},
      {room, ofType(FramingType::ROOM, 2), "F", {kBase + "layoutType ROOM,  return false "}},
      {ofType(FramingType::GROUP, 1),
       ofType(FramingType::GROUP, 2),
       "F",
       {kBase + "layoutType GROUP,  return false "}},
  };
  for (const LayoutRow& row : rows) {
    SCOPED_TRACE(&row - rows);
    const bool otherFrames = isDifferentFrameBasedLayout(row.current, row.latest);
    CapturedLog log;
    std::string different = isBaseLayoutDifferent(row.current, row.latest) ? "B" : "";
    different += isDifferentLayout(row.current, row.latest) ? "D" : "";
    EXPECT_EQ(different + (otherFrames ? "F" : ""), row.different);
    EXPECT_EQ(log.lines(), row.log);
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
