#include "geometry/FrameShapes.h"

#include <algorithm>
#include <iterator>

namespace fyn::productionrules {

namespace {

constexpr FrameShape kFrameShapes[] = {
    {kFrameLayoutHeadSingle, &PrConfig::frameLayoutHeadSingleTopLine,
     &PrConfig::frameLayoutHeadSingleBottomLine, &PrConfig::headSingleOffcenterBottomTrigger,
     &PrConfig::headSingleOffcenterSideTrigger},
    {kFrameLayoutHeadSquare, &PrConfig::frameLayoutHeadSquareTopLine,
     &PrConfig::frameLayoutHeadSquareBottomLine, &PrConfig::headSquareOffcenterBottomTrigger,
     &PrConfig::headSquareOffcenterSideTrigger},
    {kFrameLayoutHeadWide, &PrConfig::frameLayoutHeadWideTopLine, &PrConfig::frameLayoutHeadWideBottomLine,
     &PrConfig::headWideOffcenterBottomTrigger, &PrConfig::headWideOffcenterSideTrigger},
    {kFrameLayoutHeadColumnNarrow, &PrConfig::frameLayoutHeadColumnNarrowTopLine,
     &PrConfig::frameLayoutHeadColumnNarrowBottomLine, &PrConfig::headColumnNarrowOffcenterBottomTrigger,
     &PrConfig::headColumnNarrowOffcenterSideTrigger},
    {kFrameLayoutHeadColumnHalf, &PrConfig::frameLayoutHeadColumnHalfTopLine,
     &PrConfig::frameLayoutHeadColumnHalfBottomLine, &PrConfig::headColumnHalfOffcenterBottomTrigger,
     &PrConfig::headColumnHalfOffcenterSideTrigger},
    {kFrameLayoutProximityColumnNarrow, &PrConfig::frameLayoutProximityColumnNarrowTopLine,
     &PrConfig::frameLayoutProximityColumnNarrowBottomLine, nullptr, nullptr},
    {kFrameLayoutProximityColumnHalf, &PrConfig::frameLayoutProximityColumnHalfTopLine,
     &PrConfig::frameLayoutProximityColumnHalfBottomLine, nullptr, nullptr},
    {kFrameLayoutProximityColumnWide, &PrConfig::frameLayoutProximityColumnWideTopLine,
     &PrConfig::frameLayoutProximityColumnWideBottomLine, nullptr, nullptr},
    {kFrameLayoutProximitySingleWide, &PrConfig::frameLayoutProximitySingleWideTopLine,
     &PrConfig::frameLayoutProximitySingleWideBottomLine, nullptr, nullptr},
};

}  // namespace

const FrameShape* findFrameShape(FrameLayout layout) {
  const auto* const row = std::find_if(std::begin(kFrameShapes), std::end(kFrameShapes),
                                       [&](const FrameShape& shape) { return shape.layout == layout; });
  return row != std::end(kFrameShapes) ? row : nullptr;
}

}  // namespace fyn::productionrules
