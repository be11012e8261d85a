#pragma once

#include <cstdint>
#include <optional>

#include "tools/feed/FeedFaults.h"
#include "tools/report/Distribution.h"

namespace fyn::productionrules {

/** When vision results come, and in which order. */
class FeedTiming {
 public:
  /** `startedAt` is the wall clock of time 0, in milliseconds since 1970; 0 when it is not known. */
  FeedTiming(FeedFaults& faults, std::int64_t startedAt) : mFaults(faults), mStartedAt(startedAt) {}

  /** A result came at `t` milliseconds; without `timestamp` it does not say when its picture was taken. */
  void take(std::int64_t t, std::int64_t frameNumber, std::optional<std::int64_t> timestamp);

  /** A result came of which not even the number could be read. */
  void skip() { mLastFrame.reset(); }

  /** Adds the faults that only the whole feed shows. */
  void finish();

  std::int64_t results() const { return mResults; }
  /** From the first result to the last. */
  std::int64_t lengthMs() const { return mResults > 0 ? mLastAt - mFirstAt : 0; }
  /** 0 for a single moment. */
  double resultsPerSecond() const;
  /** Milliseconds from a picture to its result, by percentile: of two clocks that do not agree, beyond the
   * quickest result. Nothing when results do not say when their pictures were taken. */
  std::optional<std::int64_t> delay(int percentile) const;

 private:
  FeedFaults& mFaults;
  const std::int64_t mStartedAt;
  std::int64_t mResults = 0;
  std::int64_t mFirstAt = 0;
  std::int64_t mLastAt = 0;
  std::optional<std::int64_t> mLastFrame;
  std::optional<std::int64_t> mLastTimestamp;
  Distribution mPauses;
  Distribution mSteps;
  Distribution mDelays;
};

}  // namespace fyn::productionrules
