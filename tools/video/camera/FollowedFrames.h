#pragma once

#include <utility>

#include "tools/video/camera/DelayedShow.h"

namespace fyn::productionrules::video {

/** Shows the frames of vision results. */
class FollowedFrames final : public DelayedShow {
 public:
  using DelayedShow::DelayedShow;

 private:
  void handleResult(VisionFrame result) override { add({std::move(result), {}}); }
  void show(const Waiting& waiting, std::optional<std::int64_t> nextMs) override {
    player().show(waiting.frame, nextMs);
  }
};

}  // namespace fyn::productionrules::video
