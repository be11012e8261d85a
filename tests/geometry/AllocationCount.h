#pragma once

#include <cstddef>

namespace fyn::productionrules::testing {

/** How often this program has called operator new. */
std::size_t allocationCount();

}  // namespace fyn::productionrules::testing
