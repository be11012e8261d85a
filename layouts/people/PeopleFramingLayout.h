#pragma once

#include "layouts/cycle/BaseLayout.h"
#include "layouts/people/PeopleHeadFaults.h"
#include "layouts/people/PeopleInputFaults.h"

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

  /** With the head buffers also while proximitySquareFeature is on; false as well for heads outside the
   * image.
   */
  bool constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) override;

  std::string getLayoutChangeAnimation() override;
  void fillPositionRect(std::shared_ptr<Layout>& layout) override;
  std::string getReframeAnimation(HeadPosition position) override;
  std::uint32_t getReframeAnimationDuration(HeadPosition position) override;
  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;
  std::uint32_t getOtherLayoutChangeTimer(FramingType newType, std::stringstream& explanation,
                                          bool peopleCountChanged) override;

  /** For neighbours the square around them, so that a narrow tile does not cut them. */
  Rect getBaseRectForRuleofThirdsFrame(const Frame& frame, const Rect& box) override;

  std::uint32_t getWaitTime(const std::shared_ptr<Layout>& candidate, bool peopleCountChanged) override;

 protected:
  PeopleInputFaults mInputFaults;

 private:
  PeopleHeadFaults mHeadFaults;
};

}  // namespace fyn::productionrules
