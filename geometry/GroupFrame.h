#pragma once

#include <vector>

#include "model/Frame.h"
#include "model/Geometry.h"

namespace fyn::productionrules {

/** Where the picture of the whole group goes in one camera image. `caller` names the asking function for
 * logs. */
class GroupFrame {
 public:
  /**
   * The smallest 16:9 box around all heads with their buffers, re-centred, in camera pixels. It may leave the
   * image. Without heads an error is logged and the zero rectangle returned.
   */
  static Rect getGroupDetectionBoundary(const std::vector<Rect>& heads, const char* caller,
                                        const Dimension& image);

  /**
   * Sets `frame.detectionBoundary` to the box of the heads, and `frame.source` to that box with the group
   * buffers (groupBoundaryBufSizeTop, Bottom and Side, per cent of its size) and the zoom limit (a factor,
   * below 1 none), kept inside the image; the whole image when it does not fit. Without heads an error is
   * logged and `frame.source` is kRoomView.
   */
  static void updateGroupFrameLayout(const std::vector<Rect>& heads, Frame& frame, const char* caller,
                                     const Dimension& image, int zoomLimit);
};

}  // namespace fyn::productionrules
