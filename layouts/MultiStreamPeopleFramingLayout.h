#pragma once

#include "layouts/PeopleFramingLayout.h"

namespace fyn::productionrules {

/** The streams that each stay with one person or one group of neighbours. */
class MultiStreamPeopleFramingLayout : public PeopleFramingLayout {
 public:
  const char* getTag() const override;
};

}  // namespace fyn::productionrules
