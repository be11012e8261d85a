#include "layouts/MultiStreamPeopleFramingLayout.h"

namespace fyn::productionrules {

const char* MultiStreamPeopleFramingLayout::getTag() const {
  return "MultiStreamPeopleFramingLayout";
}

}  // namespace fyn::productionrules
