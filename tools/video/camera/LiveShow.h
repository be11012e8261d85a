#pragma once

#include <utility>
#include <vector>

#include "tools/video/camera/DelayedShow.h"

namespace fyn::productionrules::video {

/**
 * Shows the frames of inputs that this program owns. Who looks at them and who decides may come late, hang or
 * die: the scene then stays as it is.
 */
class LiveShow final : public DelayedShow {
 public:
  using DelayedShow::DelayedShow;

  /** The frame that the player has just read; shows those whose time has come. */
  void take(const FrameTime& taken);

 private:
  /** Its heads are drawn from then on. */
  void handleResult(VisionFrame result) override { mHeads = std::move(result.heads); }
  void show(const Waiting& waiting, std::optional<std::int64_t> nextMs) override;

  std::vector<ShownHead> mHeads;
};

}  // namespace fyn::productionrules::video
