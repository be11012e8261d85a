#include "config/check/NearestKey.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace fyn::productionrules {

namespace {

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/** Letters that differ in case only count as equal: that is how keys are mistyped most. */
std::size_t editDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (lower(a[i]) == lower(b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

const ConfigKey* nearestKey(std::string_view text) {
  constexpr std::size_t kLongestKey = 200;
  const ConfigKey* nearest = nullptr;
  std::size_t least = text.size() / 3 + 1;
  if (text.size() > kLongestKey) {
    return nullptr;
  }
  for (const ConfigKey& row : kConfigKeys) {
    if (row.source == ConfigSource::Fixed) {
      continue;
    }
    const std::size_t distance = editDistance(text, row.key);
    if (distance < least) {
      least = distance;
      nearest = &row;
    }
  }
  return nearest;
}

std::string suggestionFor(std::string_view text) {
  const ConfigKey* const nearest = nearestKey(text);
  return nearest == nullptr ? std::string() : "; did you mean " + std::string(nearest->key) + "?";
}

}  // namespace fyn::productionrules
