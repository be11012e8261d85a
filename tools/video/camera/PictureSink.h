#pragma once

#include <opencv2/core/mat.hpp>

namespace fyn::productionrules::video {

/** Where the pictures of one stream go. */
class PictureSink {
 public:
  virtual ~PictureSink() = default;

  /** The next picture. Throws std::runtime_error when it cannot be written. */
  virtual void write(const cv::Mat& picture) = 0;

  /** Completes what was written. Throws std::runtime_error when that fails. */
  virtual void finish() = 0;
};

}  // namespace fyn::productionrules::video
