#include "layouts/SecondaryGroupLayout.h"

#include "layouts/ZoomLimit.h"

namespace fyn::productionrules {

const char* SecondaryGroupLayout::getTag() const {
  return "SecondaryGroupLayout";
}

unsigned SecondaryGroupLayout::getMaxScaleFactor() {
  return groupZoomLimit();
}

}  // namespace fyn::productionrules
