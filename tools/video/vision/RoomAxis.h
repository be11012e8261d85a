#pragma once

#include <opencv2/core.hpp>
#include <vector>

#include "tools/video/source/CameraInputs.h"
#include "tools/video/vision/PersonDetector.h"

namespace fyn::productionrules::video {

/** A person as all cameras see it at one moment. */
struct Observation {
  struct View {
    std::size_t camera = 0;
    Detection detection;
  };

  /** In the room's frame of reference. */
  cv::Rect2d box;
  /** At most one per camera. */
  std::vector<View> views;
};

/**
 * Puts cameras that stand side by side into one frame of reference, in which a pixel is as large as one of
 * camera 0 and x = 0 is its left edge.
 */
class RoomAxis {
 public:
  explicit RoomAxis(const std::vector<CameraInput>& cameras);

  cv::Rect2d toRoom(std::size_t camera, const cv::Rect2d& box) const;
  cv::Rect2d toCamera(std::size_t camera, const cv::Rect2d& box) const;

  /**
   * Which heads of different cameras are one person's: those closest in the room, if their centres are less
   * than a head apart. `heads` is indexed by camera.
   */
  std::vector<Observation> merge(const std::vector<std::vector<Detection>>& heads) const;

 private:
  struct Strip {
    double left = 0;
    /** Room pixels per pixel of the camera. */
    double scale = 1;
  };
  std::vector<Strip> mStrips;
};

/** The distance between the centres, in units of the boxes' mean size. */
double distanceInSizes(const cv::Rect2d& a, const cv::Rect2d& b);

}  // namespace fyn::productionrules::video
