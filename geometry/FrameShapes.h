#pragma once

#include <cstdint>

#include "config/PrConfig.h"
#include "model/Enums.h"

namespace fyn::productionrules {

/** The settings that belong to one shape of frame, all in per cent of the frame's size. */
struct FrameShape {
  using Setting = std::int32_t PrConfig::*;

  FrameLayout layout;
  /** Space above the heads. */
  Setting topLine;
  /** Space below the heads. */
  Setting bottomLine;
  /** A head this close to the bottom is off centre; null for the shapes of neighbours, which have no such
   * bound. */
  Setting offCenterBottom;
  /** A head this close to a side is off centre; null for the shapes of neighbours. */
  Setting offCenterSide;
};

/** The row of a shape; null for kFrameLayoutNone and for values beyond the enumeration. */
const FrameShape* findFrameShape(FrameLayout layout);

}  // namespace fyn::productionrules
