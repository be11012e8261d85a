#pragma once

#include <cstdint>
#include <opencv2/core.hpp>
#include <vector>

#include "tools/video/compose/Placement.h"

namespace fyn::productionrules::video {

/**
 * Composes the output picture of one stream from the pictures of all cameras. Pure: what it draws depends on
 * the scenes shown so far, the pictures and the time alone. Starts with the whole picture of camera 0.
 */
class Composer {
 public:
  /**
   * `size` of the output, in pixels. `cameras`: how many there are; their ids are 0, 1, ... `mostEnlarged`:
   * how many pixels of the output a camera's pixel may fill in a row; a view that is too small for it is
   * widened.
   */
  Composer(cv::Size size, std::size_t cameras, double mostEnlarged);

  /**
   * From `nowMs` on shows `scene`, with its transition. A dissolve mixes the two pictures in equal steps; an
   * ease moves and scales the tiles, slowly at both ends, or dissolves when they are not of the same cameras.
   * Throws SceneFault, and goes on as before, when the scene cannot be shown.
   */
  void show(const StreamScene& scene, std::int64_t nowMs);

  /**
   * The picture at `nowMs`; the same clock as for `show`, and never earlier than before. `pictures` is
   * indexed by camera, 8 bits per channel, in blue, green, red. The result stands until the next call.
   */
  const cv::Mat& compose(const std::vector<cv::Mat>& pictures, std::int64_t nowMs);

 private:
  enum class Transition { none, dissolve, ease };

  double progressAt(std::int64_t nowMs) const;

  const std::size_t mCameras;
  const double mMostEnlarged;
  std::vector<Placement> mFrom;
  std::vector<Placement> mTo;
  /** Stands for `mFrom` when a dissolve began within a dissolve. */
  cv::Mat mFrozen;
  Transition mTransition = Transition::none;
  std::int64_t mStartMs = 0;
  std::int64_t mDurationMs = 0;
  cv::Mat mOutput;
  cv::Mat mFormer;
};

}  // namespace fyn::productionrules::video
