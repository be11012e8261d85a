#include "geometry/OffCenter.h"

#include "geometry/FramePredicates.h"
#include "geometry/FrameShapes.h"
#include "geometry/RectMath.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "FramingUtil";

}  // namespace

Rect calculateOffcenterFrameBound(Rect frame, FrameLayout layout) {
  const FrameShape* const shape = findFrameShape(layout);
  if (layout == kFrameLayoutNone || (shape != nullptr && shape->offCenterSide == nullptr)) {
    PRB_LOGE(kTag, "%s  NOT defined for this mode [%s] \n", __func__, frameLayoutToString(layout).c_str());
    return frame;
  }
  const PrConfig& config = PrConfig::get();
  const std::int32_t bottomTrigger = shape != nullptr ? config.*shape->offCenterBottom : 0;
  const std::int32_t sideTrigger = shape != nullptr ? config.*shape->offCenterSide : 0;

  const float side = toFloat(wrapMul(widthOf(frame), sideTrigger)) / 100.0F;
  const float bottom = toFloat(wrapMul(heightOf(frame), bottomTrigger)) / 100.0F;
  // The top is never moved; kept: frames must land on the same pixels.
  const Rect bound{truncate(side + toFloat(frame.left)), frame.top, truncate(toFloat(frame.right) - side),
                   truncate(toFloat(frame.bottom) - bottom)};
  PRB_LOGD(kTag,
           "%s frameView:{%d %d %d %d} factor {side: %f bottom: %f, bottomTrigger [%d], sideTrigger[%d]}, "
           "offCenterFrame: {%d %d %d %d} ",
           __func__, frame.left, frame.top, frame.right, frame.bottom, static_cast<double>(side),
           static_cast<double>(bottom), bottomTrigger, sideTrigger, bound.left, bound.top, bound.right,
           bound.bottom);
  return bound;
}

bool isOffCenter(const Rect& head, const Rect& frame, FrameLayout layout) {
  const Rect bound = calculateOffcenterFrameBound(frame, layout);
  const bool result = isOnFrameEdge(head, bound) || isNotCenter(head, bound) || isOutsideEdge(head, bound);
  PRB_LOGD(kTag, "%s res %d \n", __func__, static_cast<int>(result));
  return result;
}

}  // namespace fyn::productionrules
