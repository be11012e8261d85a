#include "tools/feed/FeedTiming.h"

#include <string>

namespace fyn::productionrules {

namespace {

/** Below it a head moves visibly between two results. */
constexpr double kLeastPerSecond = 15;
/** Longer than what people framing waits before it believes that somebody is gone. */
constexpr std::int64_t kLongestPauseMs = 500;
/** Later than this a picture follows the room visibly late. */
constexpr std::int64_t kLatestMs = 300;
/** Clocks that differ by more do not tell the same time. */
constexpr std::int64_t kDayMs = 86'400'000;
/** A feed may number its frames as it likes; sums stay far from the end of 64 bits. */
constexpr std::int64_t kLargest = INT64_MAX / 4;

bool isUsual(std::int64_t value) {
  return value > -kLargest && value < kLargest;
}

std::int64_t distance(std::int64_t from, std::int64_t to) {
  return isUsual(from) && isUsual(to) ? to - from : kLargest;
}

}  // namespace

void FeedTiming::take(std::int64_t t, std::int64_t frameNumber, std::optional<std::int64_t> timestamp) {
  if (mResults++ == 0) {
    mFirstAt = t;
  } else {
    mPauses.add(t - mLastAt);
    if (mLastFrame && frameNumber <= *mLastFrame) {
      mFaults.add(t, frameNumber == *mLastFrame ? "frameNumber stays" : "frameNumber goes back",
                  std::to_string(frameNumber) + " after " + std::to_string(*mLastFrame));
    } else if (mLastFrame) {
      mSteps.add(distance(*mLastFrame, frameNumber));
    }
    if (timestamp && mLastTimestamp && *timestamp < *mLastTimestamp) {
      mFaults.add(t, "timestamp goes back",
                  std::to_string(*timestamp) + " after " + std::to_string(*mLastTimestamp));
    }
  }
  mLastAt = t;
  mLastFrame = frameNumber;
  mLastTimestamp = timestamp;
  if (timestamp) {
    mDelays.add(distance(*timestamp, mStartedAt + t));
  }
}

void FeedTiming::finish() {
  const std::int64_t usual = mSteps.percentile(50).value_or(1);
  if (const std::int64_t lost = mSteps.total() - mSteps.totalBelow(usual + 1); lost > 0) {
    mFaults.add(mLastAt, "frame numbers are left out: results are lost on the way",
                std::to_string(lost) + (lost == 1 ? " gap" : " gaps"));
  }
  if (mResults > 1 && resultsPerSecond() < kLeastPerSecond) {
    mFaults.add(mLastAt, "less than 15 results a second");
  }
  if (const std::int64_t longest = mPauses.percentile(100).value_or(0); longest > kLongestPauseMs) {
    mFaults.add(mLastAt, "more than 500 ms between two results",
                "at the most " + std::to_string(longest) + " ms");
  }
  if (const std::optional<std::int64_t> late = delay(95); late && *late > kLatestMs) {
    mFaults.add(mLastAt, "results come more than 300 ms after their pictures",
                "one in twenty later than " + std::to_string(*late) + " ms");
  }
  if (const std::optional<std::int64_t> median = delay(50); median && *median < 0) {
    mFaults.add(mLastAt, "timestamp is ahead of the clock here",
                std::to_string(-*median) + " ms; set both clocks, by NTP for example");
  }
}

double FeedTiming::resultsPerSecond() const {
  return lengthMs() > 0 ? 1000.0 * static_cast<double>(mResults - 1) / static_cast<double>(lengthMs()) : 0;
}

std::optional<std::int64_t> FeedTiming::delay(int percentile) const {
  const std::optional<std::int64_t> median = mDelays.percentile(50);
  if (!median) {
    return std::nullopt;
  }
  const std::int64_t quickest = std::llabs(*median) < kDayMs ? 0 : *mDelays.smallest();
  return *mDelays.percentile(percentile) - quickest;
}

}  // namespace fyn::productionrules
