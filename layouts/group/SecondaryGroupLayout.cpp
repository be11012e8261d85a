#include "layouts/group/SecondaryGroupLayout.h"

#include "layouts/cycle/ZoomLimit.h"

namespace fyn::productionrules {

const char* SecondaryGroupLayout::getTag() const {
  return "SecondaryGroupLayout";
}

unsigned SecondaryGroupLayout::getMaxScaleFactor() {
  return groupZoomLimit();
}

}  // namespace fyn::productionrules
