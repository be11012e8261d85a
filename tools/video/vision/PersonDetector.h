#pragma once

#include <cstdint>
#include <memory>
#include <opencv2/core.hpp>
#include <optional>
#include <vector>

namespace fyn::productionrules::video {

/** A head in the picture of one camera. */
struct Detection {
  /** In the camera's frame of reference, 1280 x 720, whatever the picture's size. */
  cv::Rect2d box;
  /** Certainty, 0 to 1. */
  double score = 1;
  bool speaking = false;
  /** Degrees between the face and the line to the camera, 0 to 180; nothing when the detector cannot tell. */
  std::optional<int> yaw;
  /** Degrees, positive when looking up. */
  std::optional<int> pitch;
};

/** Finds heads. Not for use by two threads at once. */
class PersonDetector {
 public:
  virtual ~PersonDetector() = default;

  /** The heads in the picture of `camera` in frame `frame`, which counts from 1. */
  virtual std::vector<Detection> detect(const cv::Mat& picture, std::size_t camera, std::int64_t frame) = 0;
};

/** A box of a picture of the size `from`, in the frame of reference. */
cv::Rect2d inReference(const cv::Rect2d& box, const cv::Size& from);

/** Where the head of a standing or walking person is whose whole body fills `body`. */
cv::Rect2d headOfBody(const cv::Rect2d& body);

}  // namespace fyn::productionrules::video
