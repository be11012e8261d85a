#pragma once

#include <cstdint>

namespace fyn::productionrules::bench {

/** Calls of operator new in this program so far. */
std::uint64_t allocationCount();

}  // namespace fyn::productionrules::bench
