#include "config/check/NearestName.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace fyn::productionrules {

namespace {

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isSame(char a, char b) {
  return lower(a) == lower(b);
}

/** Letters that differ in case only count as equal, two in the wrong order as one edit: that is how names are
 * mistyped most. (Optimal string alignment.) */
std::size_t editDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before;
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::vector<std::size_t> next(row.size(), i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = row[j] + (isSame(a[i], b[j]) ? 0 : 1);
      next[j + 1] = std::min({replaced, next[j] + 1, row[j + 1] + 1});
      if (i > 0 && j > 0 && isSame(a[i], b[j - 1]) && isSame(a[i - 1], b[j])) {
        next[j + 1] = std::min(next[j + 1], before[j - 1] + 1);
      }
    }
    before = std::exchange(row, std::move(next));
  }
  return row.back();
}

std::vector<std::string_view> knownKeys() {
  std::vector<std::string_view> keys;
  for (const ConfigKey& row : kConfigKeys) {
    if (row.source != ConfigSource::Fixed) {
      keys.push_back(row.key);
    }
  }
  return keys;
}

}  // namespace

std::string_view nearestName(std::string_view text, const std::vector<std::string_view>& names) {
  constexpr std::size_t kLongestName = 200;
  std::string_view nearest;
  std::size_t least = text.size() / 3 + 1;
  if (text.size() > kLongestName) {
    return nearest;
  }
  for (const std::string_view name : names) {
    const std::size_t distance = editDistance(text, name);
    if (distance < least) {
      least = distance;
      nearest = name;
    }
  }
  return nearest;
}

const ConfigKey* nearestKey(std::string_view text) {
  const std::string_view nearest = nearestName(text, knownKeys());
  return nearest.empty() ? nullptr : findConfigKey(nearest);
}

std::string suggestionFor(std::string_view text) {
  return suggestionFor(text, knownKeys());
}

std::string suggestionFor(std::string_view text, const std::vector<std::string_view>& names) {
  const std::string_view nearest = nearestName(text, names);
  return nearest.empty() ? std::string() : "; did you mean " + std::string(nearest) + "?";
}

}  // namespace fyn::productionrules
