#pragma once

#include "layouts/cycle/BaseSecondaryLayout.h"
#include "layouts/people/PeopleHeadFaults.h"

namespace fyn::productionrules {

/** The secondary role of people framing. */
class SecondaryPeopleLayout : public BaseSecondaryLayout {
 public:
  SecondaryPeopleLayout();

  const char* getTag() const override;

  /** False as well for a layout that has people and shows none of them: the picture before it stays. */
  bool applySecondaryLayout(const std::shared_ptr<Layout>& layout) override;

  /** False as well for a frame of nobody and for heads outside the image: the view stays as it was sent. */
  bool constructBoundingBox(const Frame& frame, Rect& box, bool withHeadBuffer) override;

  std::uint32_t getWaitTimeForOtherCase(HeadPosition position) override;

  /**
   * In steady framing the view stays as it was sent: a primary knows who walks and what the tiles beside it
   * show, and sends each new view. Tiles are made here all the same where the secondary follows people by
   * itself.
   */
  void updateFrameView(Frame& frame) override;

 private:
  PeopleHeadFaults mHeadFaults;
};

}  // namespace fyn::productionrules
