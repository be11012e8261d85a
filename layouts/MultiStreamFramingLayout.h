#pragma once

#include "layouts/BaseLayout.h"

namespace fyn::productionrules {

/** Several output streams at once. */
class MultiStreamFramingLayout : public BaseLayout {
 public:
  const char* getTag() const override;
};

}  // namespace fyn::productionrules
