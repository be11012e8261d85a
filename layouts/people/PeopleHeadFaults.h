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
  /**
   * Whether the box of the frame's heads is to be asked for: nobody has a fault that was reported before, and
   * all heads lie in an image of that size in pixels. A person who is well again, or has left, is forgotten.
   */
  bool isBoxWorthAsking(const Frame& frame, const PeopleMap& people, const Dimension& image);

 private:
  using PersonInCamera = std::pair<std::int64_t, std::uint32_t>;

  std::set<PersonInCamera> mReported;
};

}  // namespace fyn::productionrules
