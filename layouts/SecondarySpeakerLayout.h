#pragma once

#include "layouts/BaseSecondaryLayout.h"

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
  unsigned getMaxScaleFactor() override;
  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;
  HeadPosition getGroupHeadPosition(const Frame& frame) override;
  void calculateGroupFraming(Frame& frame) override;
  std::vector<Rect> getGroupHeadBounds(const Frame& frame) override;
};

}  // namespace fyn::productionrules
