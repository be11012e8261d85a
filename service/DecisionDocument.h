#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "layouts/cycle/LayoutDecision.h"

namespace fyn::productionrules {

/**
 * A decision as the bus, replays and pages carry it: one JSON object, in which members that say nothing are
 * left out. `ticks` is its time in milliseconds of the service's clock.
 */
std::string decisionDocument(std::uint32_t ticks, const LayoutDecision& decision);

/**
 * The decision of such a document, nothing when it is none. The reduction of its wait stays part of the
 * reason, and people are not told.
 */
std::optional<LayoutDecision> readDecision(const std::string& text);

}  // namespace fyn::productionrules
