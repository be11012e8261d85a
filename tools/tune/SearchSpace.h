#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace fyn::productionrules {

/** The values that one key of the configuration may take: `from`, `from` + `step`, ... up to `to`. */
struct KeyRange {
  std::string key;
  std::int32_t from = 0;
  std::int32_t to = 0;
  std::int32_t step = 1;

  std::size_t count() const;
  std::int32_t value(std::size_t index) const;
};

/** A value for every key that is tuned. */
using Candidate = std::vector<std::pair<std::string, std::int32_t>>;

/** Reads "KEY=FROM..TO[:STEP]"; without STEP five values are spread from FROM to TO. Raises UsageError. */
KeyRange parseKeyRange(const std::string& text);

/** "KEY=VALUE KEY=VALUE" */
std::string candidateText(const Candidate& candidate);

/** Reads what `candidateText` writes. Raises UsageError. */
Candidate parseCandidate(const std::string& text);

/** All combinations, the last key changing fastest. Raises UsageError for more than a million, or for a key
 * that stands twice. */
std::vector<Candidate> gridOf(const std::vector<KeyRange>& ranges);

/** `count` different combinations drawn from a seed; all of them when there are not more. */
std::vector<Candidate> randomOf(const std::vector<KeyRange>& ranges, std::size_t count, std::uint64_t seed);

/** A configuration with the candidate's values in place of its own. */
std::string configurationWith(const std::string& base, const Candidate& candidate);

}  // namespace fyn::productionrules
