#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "model/FynHead.h"
#include "model/Layout.h"

namespace fyn::productionrules {

/** What a picture of the speakers is made from. The lists must outlive the scene. */
struct SpeakerScene {
  /** Everybody who can be shown, left to right. */
  const std::vector<std::shared_ptr<FynHead>>& inView;
  /** Those of them who speak; at least one. */
  const std::vector<std::shared_ptr<FynHead>>& speakers;
  std::uint32_t camId = 0;
  /** The zoom limit as a factor; 0 for none. */
  unsigned zoomLimit = 0;
};

/**
 * Makes the picture of the speakers from their neighbours: one speaker alone is a HEAD, with neighbours a
 * PROXIMITY; speakers who are no neighbours share one SUBSET_SPEAKER frame.
 */
class SpeakerFramingLayoutBuilder {
 public:
  virtual ~SpeakerFramingLayoutBuilder() = default;

  /** A layout of one frame with its members and its reason; its rectangles stay zero. Needs a scene with a
   * speaker. */
  virtual std::shared_ptr<Layout> build(const SpeakerScene& scene) const;

  /** A layout of one frame of that type around `members`, made for that reason. */
  static std::shared_ptr<Layout> makeLayout(FramingType type,
                                            const std::vector<std::shared_ptr<FynHead>>& members,
                                            std::uint32_t camId, const char* reason);

  /** Places a frame around its members: the group frame around `heads`, boxes in camera pixels. */
  static void calculateGroupFraming(Frame& frame, const std::vector<Rect>& heads, unsigned zoomLimit);
};

}  // namespace fyn::productionrules
