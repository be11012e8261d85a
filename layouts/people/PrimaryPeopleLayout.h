#pragma once

#include "layouts/people/BasePeopleLayout.h"

namespace fyn::productionrules {

/**
 * A tile for everyone, from all cameras of the room. A person is taken from the camera with the best view and
 * stays with it; the move to a better camera waits for the feed-priority hold.
 */
class PrimaryPeopleLayout : public BasePeopleLayout {
 public:
  const char* getTag() const override;

  /** Moves each HEAD frame whose person has been shown better by another camera for the whole hold. */
  bool updateFeedPriorityOfFrame() override;

  /** False for a layout that shows nothing. */
  bool isLayoutValid() override;

  std::shared_ptr<Layout> createLayout(const std::shared_ptr<MLData>& mlData) override;

  std::string getLayoutChangeAnimation() override;

  /** Appends the wait that it found to the explanation. */
  std::uint32_t getOtherLayoutChangeTimer(FramingType newType, std::stringstream& explanation,
                                          bool peopleCountChanged) override;

 protected:
  void reportInput(const MLData& data) override;

 private:
  bool updateFeedPriority(std::size_t index, Frame& frame);
  bool moveToCamera(std::size_t index, Frame& frame, const FynHead& person, std::uint32_t camId);
};

}  // namespace fyn::productionrules
