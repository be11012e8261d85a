#pragma once

#include "model/Geometry.h"

namespace fyn::productionrules {

/**
 * The area around a head in which a neighbour stays a neighbour: the head grown by proximityTriggerSide per
 * cent of its width on each side, and proximityTriggerTop and Bottom per cent of its height, cut at the
 * image.
 */
Rect getProxTriggerRect(const Rect& head, const Dimension& image);

/**
 * The square of the head's larger side, centred on the head horizontally and hanging down from its top, slid
 * into the image.
 */
Rect getProximitySquare(const Rect& head, const Dimension& image);

}  // namespace fyn::productionrules
