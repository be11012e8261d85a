#include "tools/video/source/VideoInput.h"

#include <cmath>
#include <cstdlib>
#include <opencv2/core/utils/logger.hpp>

#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

constexpr double kUsualRate = 30;
constexpr double kHighestRate = 1000;

bool isCaptureDevice(const std::string& input) {
  return input.rfind("/dev/", 0) == 0;
}

/** Which reader, so that none of the others tries and complains. */
int readerOf(const std::string& input) {
  if (isCaptureDevice(input)) {
    return cv::CAP_V4L2;
  }
  return input.find('%') != std::string::npos ? cv::CAP_IMAGES : cv::CAP_FFMPEG;
}

}  // namespace

VideoInput::VideoInput(const std::string& input) : mInput(input), mLive(isCaptureDevice(input)) {
  open();
}

void VideoInput::open() {
  mPosition = 0;
  bool opened = false;
  try {
    opened = mCapture.open(mInput, readerOf(mInput));
  } catch (const cv::Exception&) {
    // Some readers throw instead.
  }
  if (!opened) {
    throw UsageError(mInput + ": cannot be opened as a video");
  }
  mRate = mCapture.get(cv::CAP_PROP_FPS);
  if (!std::isfinite(mRate) || mRate <= 0 || mRate > kHighestRate || readerOf(mInput) == cv::CAP_IMAGES) {
    mRate = kUsualRate;
  }
}

bool VideoInput::next(cv::Mat& picture) {
  if (!mCapture.read(mRaw) || mRaw.empty()) {
    return false;
  }
  ++mPosition;
  picture = widened(mRaw);
  return true;
}

bool VideoInput::skip() {
  if (!mCapture.grab()) {
    return false;
  }
  ++mPosition;
  return true;
}

void VideoInput::rewind() {
  mCapture.release();
  open();
}

void silenceVideoLibraries() {
  cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
  // AV_LOG_QUIET, where nobody has asked for more.
  setenv("OPENCV_FFMPEG_LOGLEVEL", "-8", 0);
}

cv::Mat widened(const cv::Mat& picture) {
  const int wanted = (picture.rows * 16 + 4) / 9;
  if (picture.cols == wanted || picture.cols * 9 / 16 == picture.rows) {
    return picture;
  }
  const int width = std::max(picture.cols, wanted);
  const int height = std::max(picture.rows, (picture.cols * 9 + 8) / 16);
  cv::Mat wide(height, width, picture.type(), cv::Scalar::all(0));
  const cv::Rect middle((width - picture.cols) / 2, (height - picture.rows) / 2, picture.cols, picture.rows);
  picture.copyTo(wide(middle));
  return wide;
}

}  // namespace fyn::productionrules::video
