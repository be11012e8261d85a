#pragma once

#include "layouts/people/BasePeopleLayout.h"

namespace fyn::productionrules {

/**
 * A tile for everyone, on a device that stands alone. People who sit close share a tile; an empty room and
 * too many people are shown by one picture of all.
 */
class PeopleFramingLayout : public BasePeopleLayout {
 public:
  const char* getTag() const override;
  std::shared_ptr<Layout> createLayout(const std::shared_ptr<MLData>& mlData) override;
  std::string getLayoutChangeAnimation() override;
  std::string getReframeAnimation(HeadPosition position) override;

 protected:
  std::optional<std::string> transitionFrom(const Layout& before) const override;
  void reportInput(const MLData& data) override;
};

}  // namespace fyn::productionrules
