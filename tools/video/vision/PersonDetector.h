#pragma once

#include <cstdint>
#include <memory>
#include <opencv2/core.hpp>
#include <optional>
#include <vector>

namespace fyn::productionrules::video {

/** Where the eyes and the mouth are in a face that was turned upright and scaled, and what lies around them.
 */
constexpr int kFaceWidth = 64;
constexpr int kFaceHeight = 72;
const cv::Point2d kEyesInFace(32, 22);
const cv::Rect kMouthInFace(16, 40, 32, 24);
const cv::Rect kAboveInFace(12, 4, 40, 26);

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
  /** The face upright, grey, `kFaceWidth` x `kFaceHeight`; none when the detector does not know its parts. */
  cv::Mat face;
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
