#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>

#include "model/FynHead.h"

namespace fyn::productionrules {

/** The persons that an engine knows, by person id. */
using PeopleMap = std::unordered_map<std::int64_t, std::shared_ptr<FynHead>>;

}  // namespace fyn::productionrules
