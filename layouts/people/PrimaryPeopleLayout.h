#pragma once

#include <optional>

#include "layouts/people/BasePeopleLayout.h"

namespace fyn::productionrules {

/**
 * A tile for everyone, from all cameras of the room. A person is taken from the camera with the best view and
 * stays with it; the move to a better camera waits for the feed-priority hold. With steadyFramingEnabled the
 * picture of everybody is that of the camera that shows most of them, and moves in the same way.
 */
class PrimaryPeopleLayout : public BasePeopleLayout {
 public:
  const char* getTag() const override;

  /** Moves each HEAD frame whose person has been shown better by another camera for the whole hold, and in
   * steady framing, where the cameras of tiles stay for 45 s, a GROUP frame of whose people another has shown
   * more.
   */
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
  std::optional<std::uint32_t> findBetterCamera(const Frame& frame) const;
  std::optional<Frame> viewFrom(std::uint32_t camId, const Frame& frame);
  bool moveToCamera(std::size_t index, Frame& frame, std::uint32_t camId);

  /** When a frame went over to another camera last, tick in milliseconds. */
  std::optional<std::uint32_t> mMovedAt;
};

}  // namespace fyn::productionrules
