#pragma once

#include <optional>
#include <string>

#include "model/Layout.h"

namespace fyn::productionrules {

/**
 * The transition of steady framing between two pictures, which the eye can follow: "ease" (where the
 * configuration allows it) for a move within one shot, "dissolve" for two that are alike, else "cut". Nothing
 * while steady framing is off. Both pictures have their views.
 */
std::optional<std::string> steadyTransition(const Layout& before, const Layout& after);

/** The animation of a view that moves within one picture, which the eye can follow: eased in steady framing
 * where that is allowed, else a cut. */
std::string steadyMove();

}  // namespace fyn::productionrules
