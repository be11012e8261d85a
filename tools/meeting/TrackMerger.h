#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tools/meeting/Speech.h"
#include "tools/meeting/Tracks.h"
#include "tools/meeting/VisionResult.h"

namespace fyn::productionrules {

struct MergeOptions {
  /** Results per second; without it one result for each frame time of any camera. */
  std::optional<int> fps;
  /** Milliseconds for which a camera's latest frame stands when no newer one comes; without it 1.5 intervals.
   */
  std::optional<std::int64_t> longestGap;
};

/**
 * Puts the tracks of several cameras together: at each moment a camera shows the heads of its latest frame,
 * until a newer one comes or the frame is too old, then nobody. So a head that the detector missed stays
 * missed, whatever the rate of the results.
 */
class TrackMerger {
 public:
  /** `cameras` and `speech` must outlive the merger. */
  TrackMerger(const std::vector<CameraTracks>& cameras, const Speech& speech, const MergeOptions& options);

  /** The times of all results, ascending. */
  const std::vector<std::int64_t>& times() const { return mTimes; }

  /** The result at a time of `times()`. Frame numbers count from 1. */
  VisionResult resultAt(std::size_t index) const;

 private:
  std::vector<std::int64_t> frameTimes() const;
  std::vector<std::int64_t> regularTimes(int fps) const;

  const std::vector<CameraTracks>& mCameras;
  const Speech& mSpeech;
  std::vector<std::int64_t> mIntervals;
  /** How long a frame of each camera stands. */
  std::vector<std::int64_t> mGaps;
  std::vector<std::int64_t> mTimes;
};

}  // namespace fyn::productionrules
