#pragma once

#include "layouts/cycle/BaseSecondaryLayout.h"
#include "layouts/people/PeopleHeadFaults.h"

namespace fyn::productionrules {

/**
 * The secondary role of speaker framing. A frame of speakers that the primary sent is placed closely around
 * those of its members who are in view here; while nobody is, it stays as it was sent.
 */
class SecondarySpeakerLayout : public BaseSecondaryLayout {
 public:
  SecondarySpeakerLayout();

  const char* getTag() const override;
  std::shared_ptr<BaseTimerSetting>& getTimerSetting() override;

  /** False as well for a layout that has people and shows none of them: the picture before it stays. */
  bool applySecondaryLayout(const std::shared_ptr<Layout>& layout) override;

  unsigned getMaxScaleFactor() override;
  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;
  HeadPosition getCurrentHeadPosition(const Frame& frame) override;

 protected:
  void updateFrameView(Frame& frame) override;

 private:
  PeopleHeadFaults mHeadFaults;
};

}  // namespace fyn::productionrules
