#pragma once

#include <vector>

#include "model/Geometry.h"

namespace fyn::productionrules::bench {

/** What open camera stacks have for the same job, rebuilt to compare with: a crop around all faces whose
 * centre and size are smoothed, each by a filter of its own. It knows no persons, waits, tiles, speakers or
 * streams. */
class FaceBoxCropper {
 public:
  /** The crop of an image for the faces of one frame, in its pixels, with the image's own proportions.
   * Without faces it goes back to the whole image. */
  Rect crop(const std::vector<Rect>& faces);

 private:
  static constexpr double kImageWidth = 1280;
  static constexpr double kImageHeight = 720;

  /** An exponential filter: each frame takes a step of the way that is left. */
  struct Filter {
    double value;
    void step(double target, double part) { value += part * (target - value); }
  };

  Filter mCentreX{kImageWidth / 2};
  Filter mCentreY{kImageHeight / 2};
  Filter mHeight{kImageHeight};
};

}  // namespace fyn::productionrules::bench
