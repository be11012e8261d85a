#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "layouts/people/FalseBoxes.h"

namespace fyn::productionrules::testing {
namespace {

struct Box {
  std::uint32_t livedMs;
  std::uint32_t endedAt;
};

struct DoubtCase {
  const char* name;
  std::optional<std::uint32_t> beganAt;
  std::vector<Box> boxes;
  std::uint32_t now;
  std::uint32_t doubtMs;
};

// All times in milliseconds.
const std::vector<DoubtCase> kCases{
    {"nothing is doubted where no box was nobody", 0, {}, 5000, 0},
    {"a quarter longer than the longest", {}, {{1000, 1000}, {2000, 2000}, {100, 2500}}, 3000, 2500},
    {"the next longest when the longest is forgotten", {}, {{2000, 1000}, {1000, 50000}}, 181001, 1250},
    {"nothing when all are forgotten", {}, {{2000, 1000}, {1000, 50000}}, 230001, 0},
    {"who was there for 15 s was a person", {}, {{15000, 20000}}, 20000, 0},
    {"at most 15 s", {}, {{14999, 20000}}, 20000, 15000},
    {"three within 20 s: 12 s", {}, {{300, 1000}, {300, 2000}, {300, 21000}}, 21000, 12000},
    {"until one of them is longer ago", {}, {{300, 1000}, {300, 2000}, {300, 21000}}, 21001, 375},
    {"any three of more", {}, {{300, 1000}, {300, 15000}, {300, 20000}, {300, 30000}}, 34000, 12000},
    {"what flashes up is not many", {}, {{299, 1000}, {299, 2000}, {299, 3000}}, 3000, 373},
    {"many beside a longer one", {}, {{13000, 13000}, {300, 13100}, {300, 13200}}, 14000, 15000},
    {"at first at least 4 s", 0, {{100, 1000}}, 10000, 4000},
    {"no longer than 10 s", 0, {{100, 1000}}, 10001, 125},
    {"at first a longer one counts too", 0, {{6000, 6000}}, 7000, 7500},
    {"at first many count too", 0, {{300, 1000}, {300, 2000}, {300, 3000}}, 3000, 12000},
    {"over the turn of the clock", UINT32_MAX - 99, {{100, UINT32_MAX}, {200, 100}}, 1000, 4000},
    {"many over the turn of the clock", {}, {{300, UINT32_MAX - 99}, {300, 0}, {300, 100}}, 19900, 12000},
};

TEST(FalseBoxes, TellHowLongToDoubt) {
  for (const DoubtCase& each : kCases) {
    SCOPED_TRACE(each.name);
    FalseBoxes boxes;
    if (each.beganAt) {
      boxes.begin(*each.beganAt);
    }
    for (const Box& box : each.boxes) {
      boxes.add(box.livedMs, box.endedAt);
    }
    EXPECT_EQ(boxes.doubtMs(each.now), each.doubtMs);
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
