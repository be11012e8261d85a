#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "model/Arithmetic.h"
#include "model/Geometry.h"
#include "model/JsonNumber.h"
#include "model/Timer.h"

namespace fyn::productionrules {
namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

TEST(Rects, ZeroAndText) {
  EXPECT_TRUE(isZeroRect({0, 0, 0, 0}));
  EXPECT_FALSE(isZeroRect({0, 0, 0, 1}));
  EXPECT_FALSE(isZeroRect({-1, 0, 0, 0}));
  EXPECT_EQ(RectToString({-5, 0, 7, 8}), "left: -5,top: 0,right: 7,bottom: 8");
  EXPECT_EQ((Dimension{1920, 1080}.str()), "1920, 1080");
}

TEST(Arithmetic, WrapsAndNeverTraps) {
  EXPECT_EQ(wrapAdd(kMax, 1), kMin);
  EXPECT_EQ(wrapSub(kMin, 1), kMax);
  EXPECT_EQ(wrapMul(65536, 65536), 0);
  EXPECT_EQ(wrapDiv(-7, 2), -3);
  EXPECT_EQ(wrapDiv(7, 0), 0);
  EXPECT_EQ(wrapDiv(kMin, -1), kMin);
  EXPECT_EQ(halve(-7), -3);
  EXPECT_EQ(truncate(-1.9), -1);
  EXPECT_EQ(truncate(2147483647.9), kMax);
  EXPECT_EQ(truncate(2147483648.0), kMin);
  EXPECT_EQ(truncate(-2147483648.9), kMin);
  EXPECT_EQ(truncate(std::numeric_limits<double>::quiet_NaN()), kMin);
}

TEST(JsonNumbers, ConvertAsTheLibraryDoesAndFloatsOutOfRangeHaveAValue) {
  struct Row {
    const char* text;
    std::int32_t as32;
    std::uint32_t asUnsigned;
    std::int64_t as64;
  };
  constexpr std::int64_t kMin64 = std::numeric_limits<std::int64_t>::min();
  constexpr Row kRows[] = {
      {"-1", -1, 4294967295U, -1},
      {"2.9", 2, 2, 2},
      {"-2.9", -2, 4294967294U, -2},
      {"4294967295", -1, 4294967295U, 4294967295},
      {"18446744073709551615", -1, 4294967295U, -1},
      {"4294967296.0", kMin, 0, 4294967296},
      {"1e300", kMin, 0, kMin64},
      {"-1e300", kMin, 0, kMin64},
      {"9223372036854775807", -1, 4294967295U, 9223372036854775807},
  };
  for (const Row& row : kRows) {
    const auto value = nlohmann::json::parse(row.text);
    EXPECT_EQ(fields::toInt32(value), row.as32) << row.text;
    EXPECT_EQ(fields::toUint32(value), row.asUnsigned) << row.text;
    EXPECT_EQ(fields::toInt64(value), row.as64) << row.text;
  }
  EXPECT_EQ(fields::toInt32(true), 1);
  EXPECT_EQ(fields::toUint32(true), 1U);
  EXPECT_THROW(fields::toInt64(true), nlohmann::json::type_error);
  for (const char* text : {"null", "\"1\"", "[1]", "{}"}) {
    const auto value = nlohmann::json::parse(text);
    EXPECT_THROW(fields::toInt32(value), nlohmann::json::type_error) << text;
    EXPECT_THROW(fields::toUint32(value), nlohmann::json::type_error) << text;
    EXPECT_THROW(fields::toInt64(value), nlohmann::json::type_error) << text;
  }
}

TEST(Timers, ExpireOnceStartedAndStayExpired) {
  struct Row {
    std::uint32_t duration;
    std::uint32_t start;
    std::uint32_t now;
    bool expired;
    std::uint32_t remaining;
  };
  constexpr Row kRows[] = {
      {1000, 0, 5000, false, 0},  // not started
      {1000, 7, 1006, false, 1},         {1000, 7, 1007, true, 0},
      {1000, 7, 7, false, 1000},         {0, 7, 7, true, 0},
      {513, 4294967040U, 256, false, 1},  // across the wrap, 512 have passed
      {512, 4294967040U, 256, true, 0},
  };
  for (const Row& row : kRows) {
    Timer timer = getTimer(row.duration, row.start);
    EXPECT_EQ(remainingMs(timer, row.now), row.remaining) << row.start << " at " << row.now;
    EXPECT_EQ(isTimerExpire(timer, [&] { return row.now; }), row.expired) << row.start << " at " << row.now;
    EXPECT_EQ(timer.expired, row.expired);
    EXPECT_EQ(isTimerExpire(timer, [&] { return row.start; }), row.expired)
        << "an earlier clock changes nothing";
  }
}

TEST(Timers, TheClockIsReadOnlyWhenItMatters) {
  Timer latched = getTimer(5, 1);
  latched.expired = true;
  Timer notStarted = getTimer(5, 0);
  EXPECT_TRUE(isTimerExpire(latched, nullptr));
  EXPECT_EQ(remainingMs(latched, 2), 0U);
  EXPECT_FALSE(isTimerExpire(notStarted, nullptr));
  Timer running = getTimer(5, 1);
  EXPECT_THROW(isTimerExpire(running, nullptr), std::bad_function_call);
  resetTimer(running);
  EXPECT_EQ(running.duration, 0U);
  EXPECT_FALSE(running.isStarted());
}

}  // namespace
}  // namespace fyn::productionrules
