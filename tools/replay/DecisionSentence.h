#pragma once

#include <cstdint>
#include <string>

#include "layouts/cycle/LayoutDecision.h"

namespace fyn::productionrules {

/** A time in milliseconds as minutes and seconds, such as "02:05.133". */
std::string clockText(std::int64_t milliseconds);

/** Whether a decision changes the picture; the others only start, cancel or drop a wait. */
bool changesPicture(DecisionKind kind);

/**
 * A decision as one readable sentence: what changes, from what, to what, why and after which wait. `persons`
 * is the number of people known to the engine.
 */
std::string decisionSentence(const LayoutDecision& decision, unsigned persons);

}  // namespace fyn::productionrules
