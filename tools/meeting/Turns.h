#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "tools/meeting/Tracks.h"

namespace fyn::productionrules {

/** One stretch of speech, milliseconds from the start; `end` is the first moment of silence. */
struct Turn {
  std::int64_t start = 0;
  std::int64_t end = 0;
  std::string speaker;
};

/** Reads the rows start_ms, end_ms, speaker. Turns may overlap. Raises UsageError with file, line and fault.
 */
std::vector<Turn> readTurns(std::istream& input, const std::string& name);

/** When each person speaks, as if the turns had been spoken by the persons of the tracks. */
class Speech {
 public:
  Speech() = default;

  /**
   * Pairs speakers with persons: the speakers in the order of their first turn, the persons by the number of
   * frames in which any camera sees them, most first, then by id. Speakers beyond the persons stay unpaired.
   * The pairing is an invention: tracks and turns come from different meetings.
   */
  Speech(const std::vector<Turn>& turns, const std::vector<CameraTracks>& cameras);

  bool speaks(std::int32_t person, std::int64_t t) const;

 private:
  /** Start and end times. */
  std::map<std::int32_t, std::vector<std::pair<std::int64_t, std::int64_t>>> mTurns;
};

}  // namespace fyn::productionrules
