#pragma once

#include "layouts/cycle/BaseLayout.h"
#include "layouts/people/PeopleInputFaults.h"
#include "layouts/people/TileRules.h"

namespace fyn::productionrules {

/**
 * A tile for everyone, from all cameras of the room. A person is taken from the camera with the best view and
 * stays with it; the move to a better camera waits for the feed-priority hold.
 */
class PrimaryPeopleLayout : public BaseLayout {
 public:
  PrimaryPeopleLayout();

  const char* getTag() const override;

  /** Moves each HEAD frame whose person has been shown better by another camera for the whole hold. */
  bool updateFeedPriorityOfFrame() override;

  /** False for a layout that shows nothing. */
  bool isLayoutValid() override;

  std::shared_ptr<Layout> createLayout(const std::shared_ptr<MLData>& mlData) override;

  bool constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) override;

  std::string getLayoutChangeAnimation() override;
  void fillPositionRect(std::shared_ptr<Layout>& layout) override;
  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;
  std::uint32_t getOtherLayoutChangeTimer(FramingType newType, std::stringstream& explanation,
                                          bool peopleCountChanged) override;

  Rect getBaseRectForRuleofThirdsFrame(const Frame& frame, const Rect& box) override;

  std::uint32_t getWaitTime(const std::shared_ptr<Layout>& candidate, bool peopleCountChanged) override;

 protected:
  void reportInput(const MLData& data) override;

 private:
  bool updateFeedPriority(std::size_t index, Frame& frame);
  bool moveToCamera(std::size_t index, Frame& frame, const FynHead& person, std::uint32_t camId);

  TileRules mTiles;
  PeopleInputFaults mInputFaults;
};

}  // namespace fyn::productionrules
