#pragma once

#include <opencv2/core.hpp>
#include <string>
#include <vector>

namespace fyn::productionrules::video::testing {

/**
 * Writes a lossless video of 1280 x 720 whose every pixel tells where and when it was: blue grows from left
 * to right and green from top to bottom, one step every five pixels, and red is the number of the frame,
 * from 1.
 */
void writeMeasuringVideo(const std::string& path, int frames, double rate);

/** What a picture that was cut from the measuring video shows. */
struct Seen {
  int frame = 0;
  /** In the whole picture, to the nearest five pixels. */
  cv::Rect region;
};

Seen seenIn(const cv::Mat& picture);

/** Whether the region is `wanted`, as exactly as the measuring video can tell. */
bool shows(const Seen& seen, const cv::Rect& wanted);

/** All pictures of a video file. */
std::vector<cv::Mat> picturesOf(const std::string& path);

}  // namespace fyn::productionrules::video::testing
