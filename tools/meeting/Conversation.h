#pragma once

#include <cstdint>
#include <vector>

#include "tools/meeting/Motion.h"
#include "tools/meeting/Speech.h"

namespace fyn::productionrules {

/**
 * Who speaks when, in order of the start: short remarks and long turns, pauses, few overlaps, as measured on
 * real meetings (43 % of the turns under a second, 3 % overlap, now and then a silence of many seconds). Only
 * people who are there speak; they are 1, 2, ... in the order of their paths.
 */
std::vector<SpeechTurn> makeConversation(std::uint64_t seed, const std::vector<PersonPath>& paths,
                                         std::int64_t duration);

/**
 * Adds remarks of others who are there into the turns, until they take up `percent` (above 0) of the time in
 * which somebody speaks.
 */
void addOverlap(std::uint64_t seed, const std::vector<PersonPath>& paths, int percent,
                std::vector<SpeechTurn>& turns);

}  // namespace fyn::productionrules
