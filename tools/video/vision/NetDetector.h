#pragma once

#include <opencv2/dnn.hpp>
#include <string>

#include "tools/video/vision/PersonDetector.h"

namespace fyn::productionrules::video {

/** A neural network whose output is a list of boxes, as single-shot detectors write it. */
struct NetModel {
  /** The network, and its second file if the format has one; what OpenCV reads (ONNX, Caffe, TensorFlow). */
  std::string network;
  std::string config;
  cv::Size size{300, 300};
  /** What a channel's value is multiplied with, after `mean` was taken from it. Blue, green, red. */
  double scale = 1;
  cv::Scalar mean;
  /** The class that counts. */
  int wanted = 1;
  double threshold = 0.5;
  /** Whether the boxes are whole bodies rather than heads. */
  bool findsBodies = false;
};

/**
 * Reads a model's description, a JSON file; all keys but "network" may be left out:
 *
 *     {"network": "heads.onnx", "config": "", "width": 300, "height": 300, "scale": 1, "mean": [104, 117,
 * 123], "class": 1, "threshold": 0.5, "finds": "heads"}
 *
 * "finds" is "heads" or "bodies". Relative names count from the file's folder. Raises UsageError.
 */
NetModel readNetModel(const std::string& path);

class NetDetector final : public PersonDetector {
 public:
  /** Raises UsageError when the network cannot be read. */
  explicit NetDetector(NetModel model);

  std::vector<Detection> detect(const cv::Mat& picture, std::size_t camera, std::int64_t frame) override;

 private:
  const NetModel mModel;
  cv::dnn::Net mNet;
};

/**
 * The heads in a network's output: rows of picture, class, certainty, and left, top, right, bottom as shares
 * of the picture. Rows that are no box, or leave the picture as a whole, are left out.
 */
std::vector<Detection> detectionsOf(const cv::Mat& output, const NetModel& model);

}  // namespace fyn::productionrules::video
