#pragma once

#include <cstdint>
#include <deque>
#include <memory>

#include "model/MLData.h"

namespace fyn::productionrules {

/** Of the boxes of two persons in one camera, their intersection in their union; the largest of all cameras.
 */
double sharedPlace(const FynHead& a, const FynHead& b);

/** From here on two boxes are one head. */
constexpr double kSamePlace = 0.2;

/** Where people have been seen last who have gone: who comes back needs no proof. */
class KnownPlaces {
 public:
  /** `now`: ticks in milliseconds. */
  void add(const std::shared_ptr<FynHead>& person, std::uint32_t now);

  /** Who was known by that number or at that place, and is forgotten then; null for nobody. */
  std::shared_ptr<FynHead> take(const FynHead& person, std::uint32_t now);

 private:
  struct Place {
    std::shared_ptr<FynHead> person;
    std::uint32_t leftAt = 0;
  };

  std::deque<Place> mPlaces;
};

}  // namespace fyn::productionrules
