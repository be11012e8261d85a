#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "tools/meeting/Speech.h"
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

/** What is heard of the turns from `from` milliseconds on, which becomes the start. */
std::vector<Turn> turnsFrom(const std::vector<Turn>& turns, std::int64_t from);

/** The persons of the tracks by the number of frames in which any camera sees them, most first, then by id.
 */
std::vector<std::int32_t> personsByPresence(const std::vector<CameraTracks>& cameras);

/**
 * The turns as if `persons` had spoken them: the speakers, in the order of their first turn, are paired with
 * the persons in their order. Turns of speakers beyond the persons are left out. The pairing is an invention:
 * turns and persons come from different meetings.
 */
std::vector<SpeechTurn> spokenBy(const std::vector<std::int32_t>& persons, std::vector<Turn> turns);

}  // namespace fyn::productionrules
