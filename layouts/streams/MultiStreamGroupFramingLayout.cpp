#include "layouts/streams/MultiStreamGroupFramingLayout.h"

namespace fyn::productionrules {

const char* MultiStreamGroupFramingLayout::getTag() const {
  return "MultiStreamGroupFramingLayout";
}

}  // namespace fyn::productionrules
