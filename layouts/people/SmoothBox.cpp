#include "layouts/people/SmoothBox.h"

#include <cmath>
#include <cstdint>

namespace fyn::productionrules {

namespace {

std::int32_t roundedSide(double side) {
  return static_cast<std::int32_t>(std::lround(side));
}

}  // namespace

SmoothBox::SmoothBox(const Rect& box)
    : mLeft(box.left), mTop(box.top), mRight(box.right), mBottom(box.bottom) {}

void SmoothBox::follow(const Rect& box, double share) {
  mLeft += share * (box.left - mLeft);
  mTop += share * (box.top - mTop);
  mRight += share * (box.right - mRight);
  mBottom += share * (box.bottom - mBottom);
}

double SmoothBox::distanceTo(const Rect& box) const {
  return std::hypot(double{1} * box.left + box.right - mLeft - mRight,
                    double{1} * box.top + box.bottom - mTop - mBottom) /
         2;
}

Rect SmoothBox::rounded() const {
  return {roundedSide(mLeft), roundedSide(mTop), roundedSide(mRight), roundedSide(mBottom)};
}

}  // namespace fyn::productionrules
