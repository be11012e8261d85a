#pragma once

#include <vector>

#include "tools/meeting/VisionResult.h"
#include "tools/video/vision/PersonTracker.h"

namespace fyn::productionrules::video {

/**
 * The persons of a vision result. Boxes are cut at the edges of the picture; a head of which less than half
 * is in view is left out, and so is a person without a head. Where the detector does not tell the pose, that
 * of somebody is assumed who faces the way from which the cameras look: the angles between the line to the
 * camera and its axis, for a lens that sees 70 degrees across.
 */
std::vector<SeenPerson> seenPersons(const std::vector<TrackedPerson>& tracked);

}  // namespace fyn::productionrules::video
