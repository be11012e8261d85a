#include "layouts/MultiStreamGroupFramingLayout.h"

namespace fyn::productionrules {

const char* MultiStreamGroupFramingLayout::getTag() const {
  return "MultiStreamGroupFramingLayout";
}

}  // namespace fyn::productionrules
