#pragma once

#include "layouts/BaseSecondaryLayout.h"

namespace fyn::productionrules {

/** The secondary role of people framing. */
class SecondaryPeopleLayout : public BaseSecondaryLayout {
 public:
  const char* getTag() const override;
};

}  // namespace fyn::productionrules
