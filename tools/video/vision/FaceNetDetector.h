#pragma once

#include <array>
#include <opencv2/dnn.hpp>
#include <string>

#include "tools/video/vision/PersonDetector.h"

namespace fyn::productionrules::video {

/** A face as the network sees it, in pixels of the picture. */
struct Face {
  /** From the brows to the chin. */
  cv::Rect2d box;
  /** Both eyes, the tip of the nose, the mouth, both ears; those at the left in the picture of a face that
   * looks at the camera come first. */
  std::array<cv::Point2d, 6> points;
  double score = 0;
};

/**
 * Heads of people in a room, whichever way they sit, by BlazeFace for the back camera: a small network that
 * looks at the whole picture and, for those who sit far away, at two squares that cover it from top to
 * bottom.
 */
class FaceNetDetector final : public PersonDetector {
 public:
  /** `network` is the ONNX file. Raises UsageError when it cannot be read or is another network. */
  explicit FaceNetDetector(const std::string& network);

  std::vector<Detection> detect(const cv::Mat& picture, std::size_t camera, std::int64_t frame) override;

 private:
  void look(const cv::Mat& picture, const cv::Rect& part, std::vector<Face>& found);

  cv::dnn::Net mNet;
  std::vector<std::string> mOutputs;
  cv::Mat mSquare;
  cv::Mat mInput;
};

/**
 * One face of each group that overlaps: the best, its place averaged with those that lie nearly where it
 * does, by score. Best first.
 */
std::vector<Face> mergedFaces(std::vector<Face> faces);

/** Degrees by which a face is turned away from the camera, 0 to 90: how far the nose is from the middle of
 * the ears. */
int yawOf(const Face& face);

}  // namespace fyn::productionrules::video
