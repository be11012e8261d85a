#pragma once

#include "model/Geometry.h"

namespace fyn::productionrules {

/** A box that follows another, with sides between the pixels of its camera. */
class SmoothBox {
 public:
  explicit SmoothBox(const Rect& box);

  /** Comes nearer to the box by a share of the way, 0 to 1, on each side. */
  void follow(const Rect& box, double share);

  /** From its middle to that of the box, in pixels. */
  double distanceTo(const Rect& box) const;

  Rect rounded() const;

 private:
  double mLeft;
  double mTop;
  double mRight;
  double mBottom;
};

}  // namespace fyn::productionrules
