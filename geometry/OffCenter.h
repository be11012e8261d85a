#pragma once

#include "model/Enums.h"
#include "model/Geometry.h"

namespace fyn::productionrules {

/**
 * The inner bound of a frame in which a head is centred: the sides moved in, the bottom moved up by the
 * shape's off-centre triggers (per cent of the frame's width and height), the top unmoved. The shapes of
 * neighbours and kFrameLayoutNone have no bound: an error is logged and the frame returned.
 */
Rect calculateOffcenterFrameBound(Rect frame, FrameLayout layout);

/** Whether the head touches, crosses or has left the inner bound of the frame. */
bool isOffCenter(const Rect& head, const Rect& frame, FrameLayout layout);

}  // namespace fyn::productionrules
