#pragma once

#include <cstdint>
#include <string>

#include "layouts/cycle/LayoutDecision.h"

namespace fyn::productionrules {

/** A time in milliseconds as minutes and seconds, such as "02:05.133". */
std::string clockText(std::int64_t milliseconds);

/** Whether a decision changes the picture; the others only start, cancel or drop a wait. */
bool changesPicture(DecisionKind kind);

/** A decision in a few words, such as "HEAD -> GROUP waits". */
std::string decisionTitle(const LayoutDecision& decision);

/** A decision as one readable sentence: what changes, from what, to what, why and after which wait. */
std::string decisionSentence(const LayoutDecision& decision);

}  // namespace fyn::productionrules
