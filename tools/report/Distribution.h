#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>

namespace fyn::productionrules {

/** How much of a weight (milliseconds, or a count) each whole value has got. Merging two is exact, so that it
 * does not matter in how many parts something is measured. */
class Distribution {
 public:
  void add(std::int64_t value, std::int64_t weight = 1);
  void merge(const Distribution& other);

  bool empty() const { return mWeights.empty(); }
  std::int64_t total() const { return mTotal; }

  /** The smallest value that at least `percent` of the weight does not exceed (nearest rank); nothing when
   * empty. */
  std::optional<std::int64_t> percentile(int percent) const;

  std::optional<std::int64_t> smallest() const;

  /** The weight of the values below `value`. */
  std::int64_t totalBelow(std::int64_t value) const;

  /** Weight by value, ascending. */
  const std::map<std::int64_t, std::int64_t>& weights() const { return mWeights; }

 private:
  std::map<std::int64_t, std::int64_t> mWeights;
  std::int64_t mTotal = 0;
};

/** [[value, weight], ...] */
void to_json(nlohmann::json& document, const Distribution& distribution);
void from_json(const nlohmann::json& document, Distribution& distribution);

}  // namespace fyn::productionrules
