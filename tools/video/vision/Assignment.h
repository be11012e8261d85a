#pragma once

#include <limits>
#include <vector>

namespace fyn::productionrules::video {

/** The cost of a pair that must not be made. */
constexpr double kForbidden = std::numeric_limits<double>::infinity();

/**
 * For each row of a matrix of costs, 0 or more, the column that it is paired with, or -1. As many pairs as
 * possible without a forbidden one, and of those the cheapest. The Hungarian method with potentials, O(n^3).
 */
std::vector<int> assign(const std::vector<std::vector<double>>& costs);

}  // namespace fyn::productionrules::video
