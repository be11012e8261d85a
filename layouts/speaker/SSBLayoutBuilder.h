#pragma once

#include "layouts/speaker/SpeakerFramingLayoutBuilder.h"

namespace fyn::productionrules {

/**
 * Makes the picture of the speakers from their selection boxes: one SUBSET_SPEAKER frame with everybody whose
 * head lies inside the union of the boxes. When that is everybody, or the frame would cover ss2GroupCoverage
 * per cent or more of the group frame, the picture is the GROUP.
 */
class SSBLayoutBuilder final : public SpeakerFramingLayoutBuilder {
 public:
  std::shared_ptr<Layout> build(const SpeakerScene& scene) const override;

  /**
   * The selection box of a head, in camera pixels: its own, or else the head grown by ssbLrSize left and
   * right, ssbTopSize up and ssbBottomSize down; kept inside the image.
   */
  static Rect selectionBox(const Head& head, const Dimension& image);
};

}  // namespace fyn::productionrules
