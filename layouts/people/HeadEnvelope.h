#pragma once

#include <cstdint>
#include <vector>

#include "model/Geometry.h"

namespace fyn::productionrules {

/** Within which box, in pixels of one camera, all heads have stayed of late. Times are ticks, in
 * milliseconds.
 */
class HeadEnvelope {
 public:
  /** All heads of camera `camId` lie in `box` now; another camera starts afresh. */
  void add(std::uint32_t now, std::uint32_t camId, const Rect& box);

  /**
   * Adds a head in two corners of the box of the last 8 s, as large as the largest of `heads`; false, and
   * nothing added, while less is known or `heads` is empty. The space around a head grows with its size, so
   * the box itself would pass for the head of a giant.
   */
  bool addCorners(std::vector<Rect>& heads) const;

  void forget() { mParts.clear(); }

 private:
  bool isKnown() const;

  /** The box of a short time, from `from` on. */
  struct Part {
    std::uint32_t from = 0;
    Rect box;
  };

  std::uint32_t mCamId = 0;
  std::uint32_t mLatest = 0;
  std::vector<Part> mParts;
};

}  // namespace fyn::productionrules
