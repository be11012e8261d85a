#pragma once

#include "layouts/cycle/BaseLayout.h"

namespace fyn::productionrules {

/** Everybody in one frame, on a device that also decides for secondary cameras. */
class PrimaryGroupLayout : public BaseLayout {
 public:
  PrimaryGroupLayout();

  const char* getTag() const override;
  unsigned getMaxScaleFactor() override;
  std::shared_ptr<Layout> createLayout(const std::shared_ptr<MLData>& mlData) override;
  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;
};

}  // namespace fyn::productionrules
