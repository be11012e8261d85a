#include "layouts/MultiStreamFramingLayout.h"

namespace fyn::productionrules {

const char* MultiStreamFramingLayout::getTag() const {
  return "MultiStreamFramingLayout";
}

}  // namespace fyn::productionrules
