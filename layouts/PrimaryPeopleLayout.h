#pragma once

#include "layouts/BaseLayout.h"

namespace fyn::productionrules {

/** A tile for everyone, from all cameras of the room. */
class PrimaryPeopleLayout : public BaseLayout {
 public:
  const char* getTag() const override;
};

}  // namespace fyn::productionrules
