#include "layouts/SecondaryPeopleLayout.h"

namespace fyn::productionrules {

const char* SecondaryPeopleLayout::getTag() const {
  return "SecondaryPeopleLayout";
}

}  // namespace fyn::productionrules
