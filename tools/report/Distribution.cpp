#include "tools/report/Distribution.h"

#include <nlohmann/json.hpp>
#include <numeric>

namespace fyn::productionrules {

void Distribution::add(std::int64_t value, std::int64_t weight) {
  if (weight > 0) {
    mWeights[value] += weight;
    mTotal += weight;
  }
}

void Distribution::merge(const Distribution& other) {
  for (const auto& [value, weight] : other.mWeights) {
    add(value, weight);
  }
}

std::optional<std::int64_t> Distribution::percentile(int percent) const {
  std::int64_t sum = 0;
  for (const auto& [value, weight] : mWeights) {
    sum += weight;
    if (static_cast<double>(sum) * 100.0 >= static_cast<double>(mTotal) * percent) {
      return value;
    }
  }
  return std::nullopt;
}

std::optional<std::int64_t> Distribution::smallest() const {
  if (empty()) {
    return std::nullopt;
  }
  return mWeights.begin()->first;
}

std::int64_t Distribution::totalBelow(std::int64_t value) const {
  return std::accumulate(mWeights.begin(), mWeights.lower_bound(value), std::int64_t{0},
                         [](std::int64_t sum, const auto& entry) { return sum + entry.second; });
}

void to_json(nlohmann::json& document, const Distribution& distribution) {
  document = nlohmann::json::array();
  for (const auto& [value, weight] : distribution.weights()) {
    document.push_back({value, weight});
  }
}

void from_json(const nlohmann::json& document, Distribution& distribution) {
  distribution = {};
  for (const nlohmann::json& pair : document) {
    distribution.add(pair.at(0).get<std::int64_t>(), pair.at(1).get<std::int64_t>());
  }
}

}  // namespace fyn::productionrules
