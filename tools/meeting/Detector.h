#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "model/Geometry.h"
#include "tools/base/Random.h"
#include "tools/meeting/MeetingErrors.h"

namespace fyn::productionrules {

/** A head detector with a tracker behind it: what one camera reports of what it sees. */
class Detector {
 public:
  /** False boxes lie in `image` (pixels). No number that is nobody's, or a person's second one, is given
   * twice, in any camera. */
  Detector(std::uint64_t seed, std::int32_t camera, const MeetingErrors& errors, const Dimension& image);

  struct TrackedBox {
    std::int32_t number = 0;
    Rect box;
  };

  /** What is reported for the head of `person` in view; nothing when it is missed. Called once per result and
   * head. */
  std::optional<TrackedBox> see(std::int32_t person, const Rect& box);

  struct FalseBox {
    std::int32_t id = 0;
    Rect box;
    int framesLeft = 0;
  };

  /** The false boxes of a result with `seen` reported heads of about `headHeight` pixels. */
  const std::vector<FalseBox>& falseBoxes(std::size_t seen, std::int32_t headHeight);

 private:
  /** Offsets from the true place, in parts of a million of the width. */
  struct Track {
    std::int64_t offsetX = 0;
    std::int64_t offsetY = 0;
    std::int64_t framesToMiss = 0;
    bool wasMissed = false;
    std::int32_t number = 0;
  };

  bool isMissed(Track& track);
  std::int32_t numberOf(Track& track);
  void jitter(std::int64_t& offset);

  Random mRandom;
  /** Of its own, so that new numbers change nothing else. */
  Random mNumbering;
  const MeetingErrors mErrors;
  const Dimension mImage;
  const std::array<Quantile, 7> mDropOut;
  const std::array<Quantile, 4> mFalseLife;
  std::int32_t mNextFalseId;
  std::int32_t mNextNumber;
  std::map<std::int32_t, Track> mTracks;
  std::vector<FalseBox> mFalseBoxes;
};

}  // namespace fyn::productionrules
