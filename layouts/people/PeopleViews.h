#pragma once

#include <optional>

#include "geometry/PeopleMap.h"
#include "model/Layout.h"

/** What the people engines ask about the views of their tiles. All rectangles are camera pixels. */
namespace fyn::productionrules {

/** Whether the layout shows its people in tiles, and not all of them in one picture. */
bool hasTiles(const Layout& layout);

/**
 * The box that the view of neighbours is placed around while proximitySquareFeature is on: the square around
 * them. A view takes its width from its height, so a wide box in a narrow tile would lose its sides. Nothing
 * for other frames.
 */
std::optional<Rect> neighboursBaseRect(const Frame& frame, const Rect& box);

/** Whether every head of the frame's persons lies inside the frame's source, as far as it lies inside the
 * image. False when somebody cannot be shown. */
bool showsWholeHeads(const Frame& frame, const PeopleMap& people, const Dimension& image);

/**
 * Whether somebody of the frame cannot be shown by the frame's camera now: the head is missing, has no area
 * or lies outside the image. Unknown persons do not count.
 */
bool hasUnshowableHead(const Frame& frame, const PeopleMap& people, const Dimension& image);

}  // namespace fyn::productionrules
