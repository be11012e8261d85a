#pragma once

#include <cstdint>
#include <string>

#include "geometry/PeopleMap.h"
#include "model/Layout.h"

namespace fyn::productionrules {

/**
 * The layout's part of the debug dump: the layout on screen, the waiting one and its wait, and each frame's
 * view, head position and wait, at `now` in ticks. The text departs from strict JSON in fixed places that its
 * readers expect.
 */
std::string layoutDebugText(const Layout& current, const Layout* next, std::uint32_t now);

/** The whole dump of an engine around its layout's part. */
std::string engineDebugText(const std::string& layoutText, const PeopleMap& people, std::int64_t frameNumber,
                            const Layout& current);

}  // namespace fyn::productionrules
