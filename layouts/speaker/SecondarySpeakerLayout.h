#pragma once

#include "layouts/cycle/BaseSecondaryLayout.h"
#include "layouts/people/PeopleHeadFaults.h"

namespace fyn::productionrules {

/**
 * The secondary role of speaker framing. A SUBSET_SPEAKER frame that the primary sent keeps to its members;
 * while none of them is in view here it stays as it was sent.
 */
class SecondarySpeakerLayout : public BaseSecondaryLayout {
 public:
  SecondarySpeakerLayout();

  const char* getTag() const override;
  std::shared_ptr<BaseTimerSetting>& getTimerSetting() override;

  /** False as well for a layout that has people and shows none of them: the picture before it stays. */
  bool applySecondaryLayout(const std::shared_ptr<Layout>& layout) override;

  /** False as well for a frame of nobody and for heads outside the image: the view stays as it was sent. */
  bool constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) override;

  unsigned getMaxScaleFactor() override;
  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;
  HeadPosition getGroupHeadPosition(const Frame& frame) override;
  void calculateGroupFraming(Frame& frame) override;
  std::vector<Rect> getGroupHeadBounds(const Frame& frame) override;

 private:
  PeopleHeadFaults mHeadFaults;
};

}  // namespace fyn::productionrules
