#pragma once

#include "layouts/BaseSecondaryLayout.h"

namespace fyn::productionrules {

/** The secondary role of people framing. */
class SecondaryPeopleLayout : public BaseSecondaryLayout {
 public:
  SecondaryPeopleLayout();

  const char* getTag() const override;
  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;
};

}  // namespace fyn::productionrules
