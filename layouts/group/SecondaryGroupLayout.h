#pragma once

#include "layouts/cycle/BaseSecondaryLayout.h"

namespace fyn::productionrules {

/** The secondary role of group framing. */
class SecondaryGroupLayout : public BaseSecondaryLayout {
 public:
  const char* getTag() const override;
  unsigned getMaxScaleFactor() override;
};

}  // namespace fyn::productionrules
