#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "model/Geometry.h"
#include "tools/base/Random.h"

namespace fyn::productionrules {

/** How much a detector errs. Shares in parts of a million, jitter in parts of a million of the box width. */
struct DetectorNoise {
  /** Share of the heads in view that is missed; drop-outs have a median of 2 frames, one in ten more than 28.
   */
  std::int64_t missed = 0;
  /** Share of the reported boxes that is no head. */
  std::int64_t falseBoxes = 0;
  /** Movement of a still head from one frame to the next. */
  std::int64_t jitterMedian = 0;
  std::int64_t jitter95 = 0;
};

/**
 * The noise at a level: "none", "low", "real", "high" or a number from 0 to 1. "real" (0.5) is the middle of
 * what was measured on real detectors, "high" (1) the worst end. Nothing for any other text.
 */
std::optional<DetectorNoise> noiseOf(const std::string& level);

/** The share of `parts` of a thousand that drop-outs last, in frames. */
extern const std::array<Quantile, 7> kDropOutLength;

/** A head detector with a tracker behind it: what one camera reports of what it sees. */
class Detector {
 public:
  /** False boxes lie in `image` (pixels) and get ids from `firstFalseId` on, none twice. */
  Detector(Random random, const DetectorNoise& noise, const Dimension& image, std::int32_t firstFalseId)
      : mRandom(random), mNoise(noise), mImage(image), mNextFalseId(firstFalseId) {}

  /** The box that is reported for a head in view; nothing when it is missed. Called once per frame and head.
   */
  std::optional<Rect> see(std::int32_t person, const Rect& box);

  struct FalseBox {
    std::int32_t id = 0;
    Rect box;
    int framesLeft = 0;
  };

  /** The false boxes of a frame with `seen` reported heads of about `headHeight` pixels. */
  const std::vector<FalseBox>& falseBoxes(std::size_t seen, std::int32_t headHeight);

 private:
  /** Offsets from the true place, in parts of a million of the width. */
  struct Track {
    std::int64_t offsetX = 0;
    std::int64_t offsetY = 0;
    std::int64_t framesToMiss = 0;
  };

  bool isMissed(Track& track);
  void jitter(std::int64_t& offset);

  Random mRandom;
  const DetectorNoise mNoise;
  const Dimension mImage;
  std::int32_t mNextFalseId;
  std::map<std::int32_t, Track> mTracks;
  std::vector<FalseBox> mFalseBoxes;
};

}  // namespace fyn::productionrules
