#include "platform/FynFrameTracker.h"

#include <cinttypes>

#include "platform/Ticks.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

void FynFrameTracker::trackMissedFrames(std::int64_t frameNumber, const char* tag, int periodSeconds) {
  const std::uint32_t now = GetTicks();
  if (!mStarted || frameNumber <= mLastFrame) {
    mStarted = true;
    mLastFrame = frameNumber;
    mMissed = 0;
    mLastReport = now;
    return;
  }
  // Unsigned, so that the gap between extreme numbers is defined as well.
  mMissed += static_cast<std::uint64_t>(frameNumber) - static_cast<std::uint64_t>(mLastFrame) - 1U;
  mLastFrame = frameNumber;
  const std::uint64_t periodMs = periodSeconds > 0 ? static_cast<std::uint64_t>(periodSeconds) * 1000U : 0U;
  if (mMissed == 0 || now - mLastReport < periodMs) {
    return;
  }
  PRB_LOGW(tag, "%s: %" PRIu64 " vision frames missed in %u ms", "trackMissedFrames", mMissed,
           now - mLastReport);
  mMissed = 0;
  mLastReport = now;
}

}  // namespace fyn::productionrules
