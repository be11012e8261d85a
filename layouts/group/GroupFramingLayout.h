#pragma once

#include "layouts/cycle/BaseLayout.h"

namespace fyn::productionrules {

/** Everybody in one frame, on a device that stands alone. */
class GroupFramingLayout : public BaseLayout {
 public:
  GroupFramingLayout();

  const char* getTag() const override;
  unsigned getMaxScaleFactor() override;
  std::string getLayoutChangeAnimation() override;
  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;
};

}  // namespace fyn::productionrules
