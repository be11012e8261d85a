#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "layouts/people/HeadsInView.h"
#include "layouts/people/SmoothBox.h"
#include "model/MLData.h"

namespace fyn::productionrules {

/** Takes the trembling out of the head boxes of one camera, so that no frame is made anew because of it. A
 * head that really moves is followed. */
class HeadSmoother {
 public:
  /**
   * Smooths the boxes of the camera: who gets another box is replaced by a copy, anybody else stays. `now` is
   * a tick in milliseconds. A head that no picture can be made of stays as it is, and who is not in the
   * result begins afresh on return.
   */
  void smooth(MLData& data, const HeadsInView& heads, std::uint32_t now);

 private:
  /** A person with another box in place of that of one head. */
  class Copy {
   public:
    /** In the memory of the one made before, as far as nobody has that any longer. */
    std::shared_ptr<FynHead> make(const FynHead& original, const Head& head, const Rect& box);

   private:
    std::shared_ptr<FynHead> mPerson;
    std::shared_ptr<Head> mHead;
  };

  struct Track {
    Track(const Rect& first, std::uint32_t now) : box(first), at(now) {}

    SmoothBox box;
    std::uint32_t at;
    /** In the result at hand. */
    bool isSeen = false;
    /** The engine has the latest one until it has the next. */
    Copy latest;
    Copy before;
  };

  void follow(Track& track, const Rect& box, std::uint32_t now);

  /** By person. */
  std::map<std::int64_t, Track> mTracks;
  /** Of the way to a new box, after so many milliseconds. */
  double mShare = 0;
  std::uint32_t mPassed = 0;
};

}  // namespace fyn::productionrules
