#pragma once

#include <opencv2/core.hpp>
#include <vector>

#include "tools/video/camera/Programme.h"
#include "tools/video/camera/VisionFrame.h"

namespace fyn::productionrules::video {

/** The size of a picture of the side-by-side film, in pixels. */
constexpr int kFilmWidth = 1920;
constexpr int kFilmHeight = 540;

/**
 * Draws a picture of the film that shows what the service does: at the left the whole pictures of all
 * cameras, with a box around each head and one around each part that is shown, at the right what `output`
 * shows.
 */
class SideBySide {
 public:
  const cv::Mat& draw(const std::vector<cv::Mat>& pictures, const std::vector<ShownHead>& heads,
                      const ComposedPicture& output);

 private:
  cv::Mat mFilm = cv::Mat(kFilmHeight, kFilmWidth, CV_8UC3);
};

}  // namespace fyn::productionrules::video
