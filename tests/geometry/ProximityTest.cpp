#include <gtest/gtest.h>

#include "geometry/Proximity.h"
#include "geometry/ProximityRect.h"
#include "model/FynCamerasConfig.h"
#include "tests/geometry/GeometryTesting.h"
#include "tests/testing/CapturedLog.h"

namespace fyn::productionrules {
namespace {

using testing::CapturedLog;
using testing::configure;
using testing::person;
using Lines = std::vector<std::string>;
using Person = std::shared_ptr<FynHead>;

TEST(ProximityRect, TriggerGrowsUnevenly) {
  // Side 50, top 10, bottom 25 per cent.
  const struct {
    const char* what;
    Rect head;
    Rect area;
  } rows[] = {
      {"inside", {100, 100, 200, 300}, {50, 80, 250, 350}},
      {"towards zero", {100, 100, 103, 107}, {98, 99, 104, 108}},  // 98.5, 99.3; 104.5, 108.75
      {"cut at the left and top", {10, 5, 60, 105}, {0, 0, 85, 130}},
      {"cut at the right and bottom", {1200, 600, 1280, 700}, {1160, 590, 1280, 720}},
      {"empty", {100, 100, 100, 100}, {100, 100, 100, 100}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(getProxTriggerRect(row.head, {1280, 720}), row.area) << row.what;
  }
}

TEST(ProximityRect, SquareHangsFromTheTopOfTheHead) {
  const struct {
    const char* what;
    Rect head;
    Rect square;
  } rows[] = {
      {"high: centred on the head", {100, 100, 150, 300}, {25, 100, 225, 300}},
      // The sums 401 and 251 have the halves 200 and 125.
      {"high, odd", {100, 100, 151, 301}, {25, 100, 226, 301}},
      {"wide: grows down", {100, 100, 300, 150}, {100, 100, 300, 300}},
      {"slides from the left", {10, 100, 60, 300}, {0, 100, 200, 300}},
      {"slides from the right", {1240, 100, 1270, 300}, {1080, 100, 1280, 300}},
      {"slides from the bottom", {100, 650, 300, 700}, {100, 520, 300, 720}},
      {"slides from the top", {100, -50, 300, 50}, {100, 0, 300, 200}},
      {"square already", {100, 100, 200, 200}, {100, 100, 200, 200}},
      {"larger than the image: one slide only", {0, 0, 1000, 10}, {0, -280, 1000, 720}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(getProximitySquare(row.head, {1280, 720}), row.square) << row.what;
  }
  CapturedLog log;
  getProximitySquare({100, 100, 150, 300}, {1280, 720});
  EXPECT_EQ(log.lines(), (Lines{"D|FramingUtil|getProximitySquare myHeadBound[ 100, 100, 150, 300], "
                                "result[ 25, 100, 225, 300]"}));
}

/** Heads of 100 pixels in a row. They are neighbours up to a gap below 50 pixels (buffer 25 per cent), 100
 * with the trigger. */
Person inRow(std::int32_t id, std::int32_t left) {
  return person(id, {left, 100, left + 100, 200});
}

std::vector<std::int32_t> idsOf(const std::vector<Person>& persons) {
  std::vector<std::int32_t> ids;
  for (const Person& member : persons) {
    ids.push_back(member->id);
  }
  return ids;
}

using Order = std::vector<std::int32_t>;

TEST(Proximity, WalkTakesTheWholeChainOutOfThePool) {
  const Person first = inRow(1, 100);
  const Person second = inRow(2, 240);
  const Person third = inRow(3, 380);
  const Person alone = inRow(4, 800);
  std::list<Person> pool{third, alone, second};
  EXPECT_EQ(idsOf(findProximityGroup(first, pool, false, 0)), (Order{1, 2, 3}));
  EXPECT_EQ(pool, (std::list<Person>{alone}));

  pool = {third, alone, second};
  EXPECT_EQ(calculateProximityFor(first, pool, false, 0), (std::set<Person>{first, second, third}));
  EXPECT_EQ(pool, (std::list<Person>{alone}));
}

TEST(Proximity, WalkLeavesWhoIsNoNeighbour) {
  const Person first = inRow(1, 100);
  const Person touching = inRow(2, 250);  // The buffers meet at 225.
  const Person sameHead = inRow(3, 110);
  sameHead->mCamIdAssocHeadMap[0]->id = first->mCamIdAssocHeadMap[0]->id;
  const Person elsewhere = person(4, {100, 100, 200, 200}, 7);
  std::list<Person> pool{touching, sameHead, elsewhere};
  EXPECT_EQ(idsOf(findProximityGroup(first, pool, false, 0)), Order{1});
  EXPECT_EQ(pool.size(), 3U);
  EXPECT_EQ(idsOf(findProximityGroup(first, pool, true, 0)), (Order{1, 2, 3}))
      << "the trigger reaches further, and 3 is found from 2";
  EXPECT_EQ(idsOf(findProximityGroup(elsewhere, pool, false, 0)), Order{4}) << "nobody without a head here";

  configure([](PrConfig& c) { c.proximityTriggerFeatureEnabled = false; });
  pool = {touching};
  EXPECT_EQ(idsOf(findProximityGroup(first, pool, true, 0)), Order{1}) << "switched off";
}

TEST(Proximity, WalkNamesThePersonOnceThoughThePoolHasIt) {
  const Person first = inRow(1, 100);
  const Person second = inRow(2, 240);
  std::list<Person> pool{first, second};
  EXPECT_EQ(idsOf(findProximityGroup(first, pool, false, 0)), (Order{1, 2}));
  EXPECT_TRUE(pool.empty()) << "found again from its neighbour";
}

TEST(Proximity, OnlyTheMemberVisitedLastDecides) {
  const Person first = inRow(1, 100);
  const Person second = inRow(2, 240);
  const Person third = inRow(3, 380);
  std::unordered_set<Person> taken;
  // The person itself is visited last, so the neighbour of a neighbour does not join.
  EXPECT_EQ(idsOf(getProximityHeads(first, {first, second, third}, taken, false, 0)), Order{2});
  EXPECT_EQ(taken, (std::unordered_set<Person>{second}));
  EXPECT_EQ(idsOf(getProximityHeads(third, {first, second, third}, taken, false, 0)), Order{})
      << "2 is taken";
  EXPECT_EQ(idsOf(getProximityHeads(first, {inRow(5, 120), inRow(6, 10), person(7, {}, 3)}, taken, false, 0)),
            (Order{5, 6}));
}

TEST(Proximity, IsMaintainedWhileTheCountOfHeadIdsIsReached) {
  const PeopleMap persons{{1, inRow(1, 100)}, {2, inRow(2, 290)}, {3, inRow(3, 600)}};
  const struct {
    const char* what;
    std::set<std::int64_t> fynHeads;
    std::set<std::int64_t> heads;
    bool maintained;
  } rows[] = {
      {"together by the trigger", {1, 2}, {101, 102}, true},
      {"one has gone away", {1, 2, 3}, {101, 102, 103}, false},
      {"head ids are counted, not persons", {1, 2, 3}, {101, 102}, true},
      {"unknown persons do not count", {1, 9}, {101}, true},
      {"starts from the smallest id", {2, 3}, {102}, true},
  };
  for (const auto& row : rows) {
    Frame frame;
    frame.fynHeads = row.fynHeads;
    frame.heads = row.heads;
    EXPECT_EQ(isProximityMaintained(frame, persons), row.maintained) << row.what;
  }
  CapturedLog log;
  Frame frame;
  frame.fynHeads = {8, 9};
  EXPECT_FALSE(isProximityMaintained(frame, persons));
  EXPECT_EQ(log.lines(),
            (Lines{"D|FramingUtil|isProximityMaintained Cannot calculate proximity on empty list!"}));
}

}  // namespace
}  // namespace fyn::productionrules
