#pragma once

#include <vector>

#include "model/Geometry.h"

/** Questions about where heads and frames stand to each other. All rectangles are pixels of one camera image.
 */
namespace fyn::productionrules {

/** Whether the area of the new group is at most (100 - groupBoundaryBufSizeMoveCloser) per cent of the
 * current one. */
bool isGFMoveClose(const Rect& current, const Rect& latest);

/** Whether the new group reaches out of the current one; touching edges count as inside. For hosts. */
bool isGFMoveAway(const Rect& current, const Rect& latest);

/** Whether the head lies across an edge of a frame that it overlaps. A head that only touches an edge does
 * not. */
bool isOnFrameEdge(const Rect& head, const Rect& frame);

/** Whether any head is on an edge of the frame. */
bool isGFHeadOnEdge(const Rect& frame, const std::vector<Rect>& heads);

/** Whether `a` lies wholly outside `b`; touching rectangles do not. */
bool isOutsideEdge(const Rect& a, const Rect& b);

/** Whether any head lies wholly outside the frame. */
bool isGFHeadOutside(const Rect& frame, const std::vector<Rect>& heads);

/** Whether half widths and half heights differ by less than 10 pixels. Positions play no part. For hosts. */
bool isCenter(const Rect& a, const Rect& b);

/** Whether both share at least one edge coordinate. */
bool isNotCenter(const Rect& a, const Rect& b);

/** Whether all four sides are equal. */
bool isSameFrame(const Rect& a, const Rect& b);

/** Whether `b` lies inside `a` without touching an edge. */
bool isInside(const Rect& a, const Rect& b);

/** Whether both overlap; rectangles with a common edge do not. */
bool isInProximity(const Rect& a, const Rect& b);

/** The same with `a` widened around its centre to at least `minWidth` pixels. */
bool isInProximity(const Rect& a, const Rect& b, int minWidth);

}  // namespace fyn::productionrules
