#include "tools/video/vision/Assignment.h"

#include <algorithm>
#include <cmath>

namespace fyn::productionrules::video {

namespace {

/** A square matrix in which a forbidden pair costs more than all allowed ones together. */
std::vector<std::vector<double>> squareOf(const std::vector<std::vector<double>>& costs, std::size_t size) {
  double sum = 1;
  for (const std::vector<double>& row : costs) {
    for (const double cost : row) {
      sum += std::isfinite(cost) ? cost : 0;
    }
  }
  std::vector<std::vector<double>> square(size, std::vector<double>(size, sum));
  for (std::size_t row = 0; row < costs.size(); ++row) {
    for (std::size_t column = 0; column < costs[row].size(); ++column) {
      square[row][column] = std::min(costs[row][column], sum);
    }
  }
  return square;
}

/** Columns of a square matrix's cheapest pairing, by row. Index 0 of the work arrays stands for no row. */
std::vector<std::size_t> cheapest(const std::vector<std::vector<double>>& square) {
  const std::size_t size = square.size();
  std::vector<double> rowPotential(size + 1, 0);
  std::vector<double> columnPotential(size + 1, 0);
  std::vector<std::size_t> rowOf(size + 1, 0);
  for (std::size_t row = 1; row <= size; ++row) {
    std::vector<double> slack(size + 1, kForbidden);
    std::vector<std::size_t> before(size + 1, 0);
    std::vector<bool> used(size + 1, false);
    std::size_t column = 0;
    rowOf[0] = row;
    while (rowOf[column] != 0) {
      used[column] = true;
      double least = kForbidden;
      std::size_t next = 0;
      for (std::size_t other = 1; other <= size; ++other) {
        if (used[other]) {
          continue;
        }
        const double reduced =
            square[rowOf[column] - 1][other - 1] - rowPotential[rowOf[column]] - columnPotential[other];
        if (reduced < slack[other]) {
          slack[other] = reduced;
          before[other] = column;
        }
        if (slack[other] < least) {
          least = slack[other];
          next = other;
        }
      }
      for (std::size_t other = 0; other <= size; ++other) {
        if (used[other]) {
          rowPotential[rowOf[other]] += least;
          columnPotential[other] -= least;
        } else {
          slack[other] -= least;
        }
      }
      column = next;
    }
    // The pairs along the path change over.
    while (column != 0) {
      rowOf[column] = rowOf[before[column]];
      column = before[column];
    }
  }
  std::vector<std::size_t> columnOf(size);
  for (std::size_t column = 1; column <= size; ++column) {
    columnOf[rowOf[column] - 1] = column - 1;
  }
  return columnOf;
}

}  // namespace

std::vector<int> assign(const std::vector<std::vector<double>>& costs) {
  const std::size_t columns = costs.empty() ? 0 : costs.front().size();
  const std::size_t size = std::max(costs.size(), columns);
  const std::vector<std::size_t> columnOf = cheapest(squareOf(costs, size));
  std::vector<int> paired(costs.size(), -1);
  for (std::size_t row = 0; row < costs.size(); ++row) {
    const std::size_t column = columnOf[row];
    if (column < columns && std::isfinite(costs[row][column])) {
      paired[row] = static_cast<int>(column);
    }
  }
  return paired;
}

}  // namespace fyn::productionrules::video
