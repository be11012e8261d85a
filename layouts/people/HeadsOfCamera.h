#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "geometry/PeopleMap.h"
#include "model/Geometry.h"

namespace fyn::productionrules {

/** A person's head in a camera, in camera pixels. */
struct HeadOfPerson {
  std::int64_t personId = 0;
  Rect box;
};

/** The heads that a camera sees, listed once per result: every tile has to mind them all. */
class HeadsOfCamera {
 public:
  /** In no particular order. The latest list is kept while `peopleVersion` and the camera are the same. */
  const std::vector<HeadOfPerson>& of(const PeopleMap& people, unsigned peopleVersion, std::uint32_t camId);

 private:
  /** Of which people and camera. */
  std::optional<std::pair<unsigned, std::uint32_t>> mListed;
  std::vector<HeadOfPerson> mHeads;
};

}  // namespace fyn::productionrules
