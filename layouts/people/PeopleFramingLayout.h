#pragma once

#include "layouts/cycle/BaseLayout.h"
#include "layouts/people/PeopleInputFaults.h"
#include "layouts/people/TileRules.h"

namespace fyn::productionrules {

/**
 * A tile for everyone, on a device that stands alone. People who sit close share a tile; an empty room and
 * too many people are shown by one picture of all.
 */
class PeopleFramingLayout : public BaseLayout {
 public:
  PeopleFramingLayout();

  const char* getTag() const override;
  std::shared_ptr<Layout> createLayout(const std::shared_ptr<MLData>& mlData) override;

  bool constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) override;

  std::string getLayoutChangeAnimation() override;
  void fillPositionRect(std::shared_ptr<Layout>& layout) override;
  std::string getReframeAnimation(HeadPosition position) override;
  std::uint32_t getReframeAnimationDuration(HeadPosition position) override;
  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;
  std::uint32_t getOtherLayoutChangeTimer(FramingType newType, std::stringstream& explanation,
                                          bool peopleCountChanged) override;

  Rect getBaseRectForRuleofThirdsFrame(const Frame& frame, const Rect& box) override;

  std::uint32_t getWaitTime(const std::shared_ptr<Layout>& candidate, bool peopleCountChanged) override;

 protected:
  void reportInput(const MLData& data) override;

  TileRules mTiles;
  PeopleInputFaults mInputFaults;
};

}  // namespace fyn::productionrules
