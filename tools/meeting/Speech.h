#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

namespace fyn::productionrules {

/** One stretch of a person's speech, milliseconds from the start; `end` is the first moment of silence. */
struct SpeechTurn {
  std::int64_t start = 0;
  std::int64_t end = 0;
  std::int32_t person = 0;
};

/** When each person speaks. */
class Speech {
 public:
  Speech() = default;

  /** Turns may stand in any order and overlap, also those of one person. */
  explicit Speech(const std::vector<SpeechTurn>& turns);

  bool speaks(std::int32_t person, std::int64_t t) const;

 private:
  /** Start and end times, ascending and apart. */
  std::map<std::int32_t, std::vector<std::pair<std::int64_t, std::int64_t>>> mStretches;
};

}  // namespace fyn::productionrules
