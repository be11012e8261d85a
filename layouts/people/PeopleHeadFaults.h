#pragma once

#include <cstdint>
#include <set>
#include <utility>

#include "geometry/PeopleMap.h"
#include "model/Frame.h"

namespace fyn::productionrules {

/**
 * Remembers which persons of a frame have no usable head in the frame's camera, so that the fault is reported
 * when it appears and not again with every vision result until a new layout removes the person.
 */
class PeopleHeadFaults {
 public:
  /** Reports the frame's first person without a usable head, unless that is known; true when all have one and
   * all are there. A person who is well again, or has left, is forgotten. */
  bool report(const Frame& frame, const PeopleMap& people);

  /** The same; false as well while a head lies outside the camera's image, of `image` pixels. */
  bool allowFraming(const Frame& frame, const PeopleMap& people, const Dimension& image);

 private:
  using PersonInCamera = std::pair<std::int64_t, std::uint32_t>;

  std::set<PersonInCamera> mReported;
};

}  // namespace fyn::productionrules
