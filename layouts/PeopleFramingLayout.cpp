#include "layouts/PeopleFramingLayout.h"

namespace fyn::productionrules {

const char* PeopleFramingLayout::getTag() const {
  return "PeopleFramingLayout";
}

}  // namespace fyn::productionrules
