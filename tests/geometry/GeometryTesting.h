#pragma once

#include <memory>
#include <ostream>

#include "config/PrConfig.h"
#include "geometry/PeopleMap.h"
#include "model/Geometry.h"

namespace fyn {

/** Lets a failed expectation show the rectangle. */
inline void PrintTo(const Rect& rect, std::ostream* out) {
  *out << '{' << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom << '}';
}

namespace productionrules::testing {

/** Puts the default configuration with some changes into force. */
template <typename Change>
void configure(Change change) {
  PrConfig config;
  change(config);
  PrConfig::set(config);
}

/** A person with one head; the head's id is 100 more than the person's. */
inline std::shared_ptr<FynHead> person(std::int32_t id, const Rect& box, std::uint32_t camId = 0) {
  auto head = std::make_shared<Head>();
  head->id = id + 100;
  head->bbox = box;
  head->camId = static_cast<std::int32_t>(camId);
  auto result = std::make_shared<FynHead>();
  result->id = id;
  result->mCamIdAssocHeadMap[camId] = head;
  return result;
}

}  // namespace productionrules::testing
}  // namespace fyn
