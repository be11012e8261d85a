#include <gtest/gtest.h>

#include <limits>

#include "platform/FynFrameTracker.h"
#include "platform/ServiceState.h"
#include "platform/Ticks.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules {
namespace {

using Lines = std::vector<std::string>;
using std::chrono::milliseconds;

TEST(VirtualTime, RunsEveryTaskAtItsOwnTimeInOrderOfTimeAndStart) {
  VirtualTime time(1000, 5000);
  Lines ran;
  const auto note = [&](const std::string& name) {
    return [&ran, &time, name] { ran.push_back(name + "@" + std::to_string(time.now())); };
  };
  time.runAfter(milliseconds(30), note("late"));
  time.runAfter(milliseconds(10), note("first"));
  time.runAfter(milliseconds(10), note("second"));
  time.advanceTo(9);
  EXPECT_EQ(ran, Lines{});
  time.advanceTo(29);
  EXPECT_EQ(ran, (Lines{"first@10", "second@10"}));
  time.advanceTo(30);
  EXPECT_EQ(ran.back(), "late@30");
  EXPECT_EQ(time.monotonicMs(), 1030U);
  EXPECT_EQ(time.wallMs(), 5030);
}

TEST(VirtualTime, ATaskMayStartAnotherThatIsDueOnTheWay) {
  VirtualTime time(0, 0);
  std::vector<std::uint64_t> ran;
  time.runAfter(milliseconds(10), [&] {
    ran.push_back(time.now());
    time.runAfter(milliseconds(5), [&] { ran.push_back(time.now()); });
    time.runAfter(milliseconds(0), [&] { ran.push_back(time.now()); });
  });
  time.advanceTo(100);
  EXPECT_EQ(ran, (std::vector<std::uint64_t>{10, 10, 15}));
  EXPECT_EQ(time.now(), 100U);
}

/** A clock that reads what it is told, or nothing. */
class FixedClock final : public Clock {
 public:
  std::optional<std::uint64_t> monotonicMs() const override { return monotonic; }
  std::int64_t wallMs() const override { return 42; }

  std::optional<std::uint64_t> monotonic;
};

TEST(GetTicks, TruncatesTo32BitsAndIsZeroWithoutAClock) {
  const auto clock = std::make_shared<FixedClock>();
  ServiceState::current().setClock(clock);
  EXPECT_EQ(GetTicks(), 0U);
  clock->monotonic = 4294967295U;
  EXPECT_EQ(GetTicks(), 4294967295U);
  clock->monotonic = 4294967296U + 7U;
  EXPECT_EQ(GetTicks(), 7U);
  EXPECT_EQ(getWallTs64(), 42);
}

class FrameTracker : public ::testing::Test {
 protected:
  /** Gives one number at `ms` milliseconds since the start and returns the lines that it brings. */
  Lines track(std::uint64_t ms, std::int64_t frame) {
    mEnvironment.time.advanceTo(ms);
    mTracker.trackMissedFrames(frame, "Tag", 10);
    return mEnvironment.log.take();
  }

  testing::TestEnvironment mEnvironment;
  FynFrameTracker mTracker;
};

TEST_F(FrameTracker, ReportsTheSumOncePerPeriod) {
  EXPECT_EQ(track(0, 1), Lines{});
  EXPECT_EQ(track(4000, 4), Lines{});  // 2 and 3 are missing
  EXPECT_EQ(track(9999, 6), Lines{});  // 5 is missing
  EXPECT_EQ(track(10000, 7), Lines{"W|Tag|trackMissedFrames: 3 vision frames missed in 10000 ms"});
  EXPECT_EQ(track(10100, 9), Lines{});
  EXPECT_EQ(track(20000, 10), Lines{"W|Tag|trackMissedFrames: 1 vision frames missed in 10000 ms"});
}

TEST_F(FrameTracker, ANumberThatGoesBackStartsAnew) {
  track(0, 100);
  track(1000, 110);
  EXPECT_EQ(track(20000, 5), Lines{});
  EXPECT_EQ(track(40000, 6), Lines{});
}

TEST_F(FrameTracker, ExtremeNumbersAreDefined) {
  track(0, std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(track(10000, std::numeric_limits<std::int64_t>::max()),
            Lines{"W|Tag|trackMissedFrames: 18446744073709551614 vision frames missed in 10000 ms"});
}

TEST_F(FrameTracker, KeepsThePeriodAcrossTheWrapOfTheTicks) {
  const std::uint64_t beforeTheWrap = 4294967296U - 1000000U - 5000U;
  track(beforeTheWrap, 1);
  EXPECT_EQ(track(beforeTheWrap + 6000, 3), Lines{});
  EXPECT_EQ(track(beforeTheWrap + 10000, 4),
            Lines{"W|Tag|trackMissedFrames: 1 vision frames missed in 10000 ms"});
}

}  // namespace
}  // namespace fyn::productionrules
