#pragma once

#include "layouts/BaseLayout.h"

namespace fyn::productionrules {

/** A tile for everyone, on a device that stands alone. */
class PeopleFramingLayout : public BaseLayout {
 public:
  const char* getTag() const override;
};

}  // namespace fyn::productionrules
