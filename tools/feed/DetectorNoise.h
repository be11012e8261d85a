#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "model/Geometry.h"
#include "tools/report/Distribution.h"

namespace fyn::productionrules {

/**
 * How a head detector and its tracker err, as far as their boxes tell without the truth: a person who is
 * gone for less than five seconds was missed, a number that begins where another has just ended is the same
 * person's, a box that lives for less than half a second was no head.
 */
class DetectorNoise {
 public:
  /** A head of the result at `t` milliseconds; a box has an area. Then `endResult`. */
  void see(std::int64_t t, std::int32_t camera, std::int32_t person, const Rect& box);
  void endResult(std::int64_t t);

  struct Figures {
    /** Of the heads that were there. */
    double missedPercent = 0;
    /** Results. */
    std::int64_t dropOut90 = 0;
    /** Times that a person got another number. */
    std::int64_t newNumbers = 0;
    /** Of the boxes. */
    double falsePercent = 0;
    /** Of the width of a box, from one result to the next, of heads that stay where they are. */
    double jitterPercent = 0;
    double jitter95Percent = 0;
    /** Of the time of people. */
    double walkingPercent = 0;
  };
  Figures figures() const;

 private:
  struct Track {
    Rect box;
    std::int64_t lastResult = 0;
    std::int64_t lastAt = 0;
    std::int64_t boxes = 0;
    /** Where it stood a second ago. */
    Rect placeThen;
    std::int64_t placeAt = 0;
    bool walks = false;
  };
  /** Camera and person. */
  using Key = std::pair<std::int32_t, std::int32_t>;

  void follow(Track& track, const Rect& box, std::int64_t t);
  void missed(std::int64_t results);
  void continueTracks();
  void forgetTracks(std::int64_t t);

  std::int64_t mResult = 0;
  std::map<Key, Track> mTracks;
  /** Of this result. */
  std::vector<Key> mNew;
  std::int64_t mSeen = 0;
  std::int64_t mMissed = 0;
  std::int64_t mNewNumbers = 0;
  std::int64_t mFalseBoxes = 0;
  std::int64_t mStayedMs = 0;
  std::int64_t mWalkedMs = 0;
  Distribution mDropOuts;
  /** In hundredths of a per cent. */
  Distribution mJitter;
};

}  // namespace fyn::productionrules
