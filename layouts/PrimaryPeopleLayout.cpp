#include "layouts/PrimaryPeopleLayout.h"

namespace fyn::productionrules {

const char* PrimaryPeopleLayout::getTag() const {
  return "PrimaryPeopleLayout";
}

}  // namespace fyn::productionrules
