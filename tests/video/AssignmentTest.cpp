#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include "tools/video/vision/Assignment.h"

namespace fyn::productionrules::video::testing {
namespace {

using Costs = std::vector<std::vector<double>>;

constexpr double kNever = kForbidden;

struct Total {
  int pairs = 0;
  double cost = 0;
};

bool isBetter(const Total& a, const Total& b) {
  return a.pairs != b.pairs ? a.pairs > b.pairs : a.cost < b.cost;
}

/** The best of all pairings, by trying them all. */
Total bestOf(const Costs& costs) {
  const std::size_t columns = costs.empty() ? 0 : costs.front().size();
  std::vector<std::size_t> order(std::max(costs.size(), columns));
  std::iota(order.begin(), order.end(), 0U);
  Total best;
  do {
    Total total;
    for (std::size_t row = 0; row < costs.size(); ++row) {
      if (order[row] < columns && std::isfinite(costs[row][order[row]])) {
        ++total.pairs;
        total.cost += costs[row][order[row]];
      }
    }
    best = isBetter(total, best) ? total : best;
  } while (std::next_permutation(order.begin(), order.end()));
  return best;
}

TEST(Assignment, PairsRowsWithColumns) {
  struct Case {
    const char* name;
    Costs costs;
    std::vector<int> pairs;
  };
  for (const Case& one :
       {Case{"nothing", {}, {}}, Case{"no columns", {{}, {}}, {-1, -1}}, Case{"one", {{3}}, {0}},
        Case{"none allowed", {{kNever}}, {-1}}, Case{"the nearest is not the best", {{1, 2}, {2, 9}}, {1, 0}},
        Case{"more rows", {{5}, {1}, {3}}, {-1, 0, -1}}, Case{"more columns", {{5, 1, 3}}, {1}},
        Case{"two pairs rather than one cheap one", {{0, 100}, {kNever, kNever}, {1, kNever}}, {1, -1, 0}}}) {
    EXPECT_EQ(assign(one.costs), one.pairs) << one.name;
  }
}

TEST(Assignment, IsTheBestOfAllPairings) {
  std::mt19937 random(7);
  for (int round = 0; round < 400; ++round) {
    Costs costs(random() % 6, std::vector<double>(random() % 6));
    for (std::vector<double>& row : costs) {
      for (double& cost : row) {
        cost = random() % 4 == 0 ? kNever : static_cast<double>(random() % 20);
      }
    }
    const std::vector<int> pairs = assign(costs);
    ASSERT_EQ(pairs.size(), costs.size());
    Total total;
    std::vector<int> used;
    for (std::size_t row = 0; row < costs.size(); ++row) {
      if (pairs[row] >= 0) {
        ++total.pairs;
        total.cost += costs[row][static_cast<std::size_t>(pairs[row])];
        used.push_back(pairs[row]);
      }
    }
    std::sort(used.begin(), used.end());
    EXPECT_EQ(std::adjacent_find(used.begin(), used.end()), used.end()) << "round " << round;
    const Total best = bestOf(costs);
    EXPECT_EQ(total.pairs, best.pairs) << "round " << round;
    EXPECT_DOUBLE_EQ(total.cost, best.cost) << "round " << round;
  }
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
