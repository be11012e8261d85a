#pragma once

#include <memory>
#include <string>

#include "geometry/PeopleMap.h"
#include "model/Layout.h"

namespace fyn::productionrules {

/** One line of text about a layout, its frames and the head boxes of their persons, for logs. */
std::string convertLayoutToString(const std::shared_ptr<Layout>& layout, const PeopleMap& persons);

}  // namespace fyn::productionrules
