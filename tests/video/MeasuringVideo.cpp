#include "tests/video/MeasuringVideo.h"

#include <cstdlib>

#include "tests/video/Pictures.h"
#include "tools/video/camera/PipedSink.h"
#include "tools/video/source/FileCapture.h"

namespace fyn::productionrules::video::testing {

namespace {

constexpr int kStep = 5;
// Half a step at either edge, and what rounding does when the picture is enlarged.
constexpr int kTolerance = 2 * kStep;

}  // namespace

void writeMeasuringVideo(const std::string& path, int frames, double rate) {
  PipedSink sink(path, {{kWidth, kHeight}, rate});
  cv::Mat picture(kHeight, kWidth, CV_8UC3);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      picture.at<Colour>(y, x) = {static_cast<std::uint8_t>(x / kStep), static_cast<std::uint8_t>(y / kStep),
                                  0};
    }
  }
  for (int frame = 1; frame <= frames; ++frame) {
    cv::Mat numbered = picture + cv::Scalar(0, 0, frame);
    sink.write(numbered);
  }
  sink.finish();
}

Seen seenIn(const cv::Mat& picture) {
  const Colour first = at(picture, 0, 0);
  const Colour last = at(picture, picture.cols - 1, picture.rows - 1);
  return {first[2], cv::Rect(cv::Point(first[0] * kStep, first[1] * kStep),
                             cv::Point((last[0] + 1) * kStep, (last[1] + 1) * kStep))};
}

bool shows(const Seen& seen, const cv::Rect& wanted) {
  const cv::Point first = seen.region.tl() - wanted.tl();
  const cv::Point last = seen.region.br() - wanted.br();
  return std::abs(first.x) <= kTolerance && std::abs(first.y) <= kTolerance &&
         std::abs(last.x) <= kTolerance && std::abs(last.y) <= kTolerance;
}

std::vector<cv::Mat> picturesOf(const std::string& path) {
  std::vector<cv::Mat> pictures;
  FileCapture capture(path);
  cv::Mat picture;
  while (capture.next(picture)) {
    pictures.push_back(picture.clone());
  }
  return pictures;
}

}  // namespace fyn::productionrules::video::testing
