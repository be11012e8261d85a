#pragma once

#include <cstdint>

namespace fyn::productionrules {

/** Watches the numbers of vision frames for gaps. */
class FynFrameTracker {
 public:
  /**
   * Takes the next frame number. At most once per `periodSeconds` it logs, at warning level with `tag`, how
   * many frames are missing since the last report; nothing is logged while none is missing. A number that
   * goes back (a restarted pipeline) starts the count anew.
   */
  void trackMissedFrames(std::int64_t frameNumber, const char* tag, int periodSeconds);

 private:
  bool mStarted = false;
  std::int64_t mLastFrame = 0;
  std::uint64_t mMissed = 0;
  std::uint32_t mLastReport = 0;
};

}  // namespace fyn::productionrules
