#pragma once

#include <vector>

#include "model/Frame.h"

/** Where the subject of a frame stands in what the frame shows. Boxes are camera pixels. */
namespace fyn::productionrules {

/** Of a person alone: outside, on the edge, off the centre that the frame's layout asks for, or CENTER. */
HeadPosition singleHeadPosition(const Rect& box, const Frame& frame);

/** Of neighbours, who have no centre of their own to be off: outside, on the edge or CENTER. */
HeadPosition neighboursPosition(const Rect& box, const Frame& frame);

/** Of a group with these heads; CENTER, with a warning, when there is none and the frame names none. */
HeadPosition groupPosition(const std::vector<Rect>& heads, const Frame& frame);

}  // namespace fyn::productionrules
