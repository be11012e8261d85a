#include "tools/video/source/VideoInput.h"

#include <cmath>
#include <cstdlib>
#include <opencv2/core/utils/logger.hpp>

#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

constexpr double kUsualRate = 30;
constexpr double kHighestRate = 1000;
// The nearest that the device has is taken.
const cv::Size kWantedSize(1920, 1080);

bool isUsable(double rate) {
  return std::isfinite(rate) && rate > 0 && rate <= kHighestRate;
}

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
  if (mLive) {
    openDevice();
    return;
  }
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
  if (!isUsable(mRate) || readerOf(mInput) == cv::CAP_IMAGES) {
    mRate = kUsualRate;
  }
}

void VideoInput::openDevice() {
  mRate = kUsualRate;
  const auto openOnce = [this] {
    auto capture = std::make_shared<cv::VideoCapture>();
    if (!capture->open(mInput, cv::CAP_V4L2)) {
      throw UsageError(mInput + ": cannot be opened as a video");
    }
    // Packed pictures are what a webcam has room for at its full size and rate; another format is kept if it
    // has none.
    capture->set(cv::CAP_PROP_FOURCC, cv::VideoWriter::fourcc('M', 'J', 'P', 'G'));
    capture->set(cv::CAP_PROP_FRAME_WIDTH, kWantedSize.width);
    capture->set(cv::CAP_PROP_FRAME_HEIGHT, kWantedSize.height);
    capture->set(cv::CAP_PROP_FPS, kUsualRate);
    return [capture](cv::Mat& picture) { return capture->read(picture) && !picture.empty(); };
  };
  mDevice = std::make_unique<DeviceCapture>(openOnce, DeviceCapture::Waits{});
}

bool VideoInput::next(cv::Mat& picture) {
  if (mDevice) {
    mRaw = mDevice->next();
  } else if (!mCapture.read(mRaw) || mRaw.empty()) {
    return false;
  }
  ++mPosition;
  picture = middleOf(mRaw);
  return true;
}

bool VideoInput::skip() {
  if (mDevice || !mCapture.grab()) {
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

cv::Mat middleOf(const cv::Mat& picture) {
  if (picture.cols * 9 / 16 == picture.rows) {
    return picture;
  }
  const int width = std::min(picture.cols, (picture.rows * 16 + 4) / 9);
  const int height = std::min(picture.rows, (picture.cols * 9 + 8) / 16);
  return picture(cv::Rect((picture.cols - width) / 2, (picture.rows - height) / 2, width, height));
}

}  // namespace fyn::productionrules::video
