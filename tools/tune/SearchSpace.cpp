#include "tools/tune/SearchSpace.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>
#include <sstream>

#include "config/ConfigKeys.h"
#include "config/check/NearestName.h"
#include "tools/base/Random.h"
#include "tools/base/UsageError.h"

namespace fyn::productionrules {

namespace {

constexpr std::size_t kMostCandidates = 1000000;
constexpr std::int64_t kDefaultSteps = 4;
// A draw that was drawn before is drawn again this often.
constexpr std::size_t kTriesPerCandidate = 100;

std::optional<std::int32_t> integerOf(const std::string& text) {
  std::int32_t value = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  return fault == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

void checkKey(const std::string& name) {
  const ConfigKey* const key = findConfigKey(name);
  if (key == nullptr) {
    throw UsageError("unknown configuration key " + name + suggestionFor(name) +
                     " ('prb config example' lists them)");
  }
  if (key->source != ConfigSource::File) {
    throw UsageError("'" + name + "' is a system property, not a key of the configuration file");
  }
}

std::size_t combinations(const std::vector<KeyRange>& ranges) {
  std::set<std::string> seen;
  std::size_t product = 1;
  for (const KeyRange& range : ranges) {
    if (!seen.insert(range.key).second) {
      throw UsageError("--key " + range.key + " is given twice");
    }
    // Enough to know that there are too many; the product never overflows.
    product = std::min(product, kMostCandidates + 1) * std::min(range.count(), kMostCandidates + 1);
  }
  return product;
}

Candidate candidateAt(const std::vector<KeyRange>& ranges, const std::vector<std::size_t>& places) {
  Candidate candidate;
  for (std::size_t index = 0; index < ranges.size(); ++index) {
    candidate.emplace_back(ranges[index].key, ranges[index].value(places[index]));
  }
  return candidate;
}

}  // namespace

std::size_t KeyRange::count() const {
  return static_cast<std::size_t>((std::int64_t{to} - from) / step) + 1;
}

std::int32_t KeyRange::value(std::size_t index) const {
  return static_cast<std::int32_t>(from + static_cast<std::int64_t>(index) * step);
}

KeyRange parseKeyRange(const std::string& text) {
  const std::size_t equals = text.find('=');
  const std::size_t dots = equals == std::string::npos ? equals : text.find("..", equals);
  if (dots == std::string::npos) {
    throw UsageError("a range is given as KEY=FROM..TO[:STEP], not '" + text + "'");
  }
  const std::size_t colon = std::min(text.find(':', dots), text.size());
  const std::optional<std::int32_t> from = integerOf(text.substr(equals + 1, dots - equals - 1));
  const std::optional<std::int32_t> to = integerOf(text.substr(dots + 2, colon - dots - 2));
  if (!from || !to) {
    throw UsageError("FROM and TO of '" + text + "' must be integers");
  }
  if (*from > *to) {
    throw UsageError("FROM is larger than TO in '" + text + "'");
  }
  KeyRange range{text.substr(0, equals), *from, *to, 1};
  checkKey(range.key);
  if (colon < text.size()) {
    const std::optional<std::int32_t> step = integerOf(text.substr(colon + 1));
    if (!step || *step < 1) {
      throw UsageError("STEP of '" + text + "' must be an integer of 1 or more");
    }
    range.step = *step;
  } else {
    range.step =
        static_cast<std::int32_t>(std::max(std::int64_t{1}, (std::int64_t{*to} - *from) / kDefaultSteps));
  }
  return range;
}

std::string candidateText(const Candidate& candidate) {
  std::string text;
  for (const auto& [key, value] : candidate) {
    text += (text.empty() ? "" : " ") + key + "=" + std::to_string(value);
  }
  return text;
}

Candidate parseCandidate(const std::string& text) {
  Candidate candidate;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const std::size_t equals = word.find('=');
    const std::optional<std::int32_t> value =
        equals == std::string::npos ? std::nullopt : integerOf(word.substr(equals + 1));
    if (!value) {
      throw UsageError("a job is given as 'KEY=VALUE KEY=VALUE ...' with integers, not '" + text + "'");
    }
    checkKey(word.substr(0, equals));
    candidate.emplace_back(word.substr(0, equals), *value);
  }
  if (candidate.empty()) {
    throw UsageError("a job needs at least one KEY=VALUE");
  }
  return candidate;
}

std::vector<Candidate> gridOf(const std::vector<KeyRange>& ranges) {
  const std::size_t count = combinations(ranges);
  if (count > kMostCandidates) {
    throw UsageError("more than a million combinations: use larger steps, fewer keys or --random");
  }
  std::vector<Candidate> candidates;
  candidates.reserve(count);
  std::vector<std::size_t> places(ranges.size());
  for (std::size_t number = 0; number < count; ++number) {
    candidates.push_back(candidateAt(ranges, places));
    for (std::size_t index = ranges.size(); index-- > 0 && ++places[index] == ranges[index].count();) {
      places[index] = 0;
    }
  }
  return candidates;
}

std::vector<Candidate> randomOf(const std::vector<KeyRange>& ranges, std::size_t count, std::uint64_t seed) {
  if (combinations(ranges) <= count) {
    return gridOf(ranges);
  }
  Random random(seed);
  std::set<std::vector<std::size_t>> drawn;
  std::vector<Candidate> candidates;
  for (std::size_t tries = 0; candidates.size() < count && tries < count * kTriesPerCandidate; ++tries) {
    std::vector<std::size_t> places;
    places.reserve(ranges.size());
    for (const KeyRange& range : ranges) {
      places.push_back(random.below(range.count()));
    }
    if (drawn.insert(places).second) {
      candidates.push_back(candidateAt(ranges, places));
    }
  }
  return candidates;
}

std::string configurationWith(const std::string& base, const Candidate& candidate) {
  // The last line for a key wins.
  std::string text = base;
  if (!text.empty() && text.back() != '\n') {
    text += '\n';
  }
  for (const auto& [key, value] : candidate) {
    text += key + "=" + std::to_string(value) + "\n";
  }
  return text;
}

}  // namespace fyn::productionrules
