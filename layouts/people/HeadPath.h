#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "layouts/people/SmoothBox.h"
#include "model/Geometry.h"

namespace fyn::productionrules {

/** Pixels per second of one camera. */
struct Velocity {
  double x = 0;
  double y = 0;
};

/** Where one camera has seen a head of late, and which of it is a person who walks. Times are ticks, in
 * milliseconds. */
class HeadPath {
 public:
  /** The head lies in `box` now; `isRestAsked`: where it rests is followed. */
  void add(std::uint32_t now, const Rect& box, bool isRestAsked);

  /** The latest box, in camera pixels, and when it was seen; something must have been added. */
  const Rect& latest() const { return mSights.back().box; }
  std::uint32_t latestAt() const { return mSights.back().at; }

  /** Where the head rests while it sways: the mean of its boxes, of the last four seconds mostly; the latest
   * one once the head has left for elsewhere, or when that is not followed. */
  Rect resting() const { return mResting ? mResting->rounded() : latest(); }

  /**
   * Whether the path so far is that of somebody who walks: its last part lies far from its first part, by the
   * width of the head, or the head has become larger or smaller, as that of who comes nearer does. A shift in
   * a chair is neither.
   */
  bool isWalk() const;

  /** Of the middle of the head, by least squares over the latest part of the path. */
  Velocity velocity() const;

 private:
  /** Of the sides of boxes. */
  struct Sums {
    std::int64_t left = 0;
    std::int64_t top = 0;
    std::int64_t right = 0;
    std::int64_t bottom = 0;
  };

  struct Sight {
    std::uint32_t at = 0;
    Rect box;
    /** Of all boxes before this one. */
    Sums before;
  };

  /** Mean of the middle and of the sides, in pixels. */
  struct Mean {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
  };

  const Sight* first() const { return mSights.data() + mFirst; }
  const Sight* end() const { return mSights.data() + mSights.size(); }
  static Sums sumsWith(const Sight& sight);
  static Mean mean(const Sums& before, const Sums& with, std::ptrdiff_t count);

  void rest(std::uint32_t now, const Rect& box);

  std::vector<Sight> mSights;
  /** Of those of late; the ones before it go when they are many. */
  std::size_t mFirst = 0;
  /** Where the first part of those is over, and the last one begins. */
  std::size_t mAfterFirstPart = 0;
  std::size_t mLastPart = 0;
  std::optional<SmoothBox> mResting;
  std::uint32_t mRestsSince = 0;
};

}  // namespace fyn::productionrules
