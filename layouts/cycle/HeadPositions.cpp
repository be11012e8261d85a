#include "layouts/cycle/HeadPositions.h"

#include "geometry/FramePredicates.h"
#include "geometry/GroupFrame.h"
#include "geometry/OffCenter.h"
#include "model/FynCamerasConfig.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

HeadPosition singleHeadPosition(const Rect& box, const Frame& frame) {
  const HeadPosition position = neighboursPosition(box, frame);
  if (position != HeadPosition::CENTER) {
    return position;
  }
  return isOffCenter(box, frame.source, frame.frameLayout) ? HeadPosition::HEAD_OFF_CENTER
                                                           : HeadPosition::CENTER;
}

HeadPosition neighboursPosition(const Rect& box, const Frame& frame) {
  if (isOutsideEdge(box, frame.source)) {
    return HeadPosition::HEAD_OUTSIDE;
  }
  return isOnFrameEdge(box, frame.source) ? HeadPosition::HEAD_ON_EDGE : HeadPosition::CENTER;
}

HeadPosition groupPosition(const std::vector<Rect>& heads, const Frame& frame) {
  if (isGFHeadOutside(frame.source, heads)) {
    return HeadPosition::GROUP_HEAD_OUTSIDE;
  }
  if (isGFHeadOnEdge(frame.source, heads)) {
    return HeadPosition::GROUP_HEAD_ON_EDGE;
  }
  if (frame.heads.size() > heads.size()) {
    return HeadPosition::GROUP_HEAD_LEFT;
  }
  if (heads.empty()) {
    PRB_LOGW("BaseLayout", "%s heads are empty, returning head position CENTER", "getGroupHeadPosition");
    return HeadPosition::CENTER;
  }
  const Rect boundary =
      GroupFrame::getGroupDetectionBoundary(heads, "BaseLayout::getGroupHeadPosition",
                                            getCameraLensModelDimension(static_cast<int>(frame.fynCamId)));
  return isGFMoveClose(frame.detectionBoundary, boundary) ? HeadPosition::GROUP_MOVE_CLOSE
                                                          : HeadPosition::CENTER;
}

}  // namespace fyn::productionrules
