#pragma once

#include <string>

#include "model/Layout.h"

namespace fyn::productionrules {

/**
 * The transition between two pictures that the eye can follow: "ease" (where the configuration allows it) for
 * a move within one shot, "dissolve" for two that are alike, else "cut". Both have their views.
 */
std::string transitionBetween(const Layout& before, const Layout& after);

}  // namespace fyn::productionrules
