#include "tools/video/source/VideoInput.h"

extern "C" {
#include <libavutil/log.h>
}

#include <cmath>
#include <cstdlib>
#include <opencv2/core/utils/logger.hpp>

#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

constexpr double kUsualRate = 30;
constexpr double kHighestRate = 1000;

bool isUsable(double rate) {
  return std::isfinite(rate) && rate > 0 && rate <= kHighestRate;
}

bool isCaptureDevice(const std::string& input) {
  return input.rfind("/dev/", 0) == 0;
}

}  // namespace

VideoInput::VideoInput(const std::string& input, const DeviceFormat& device)
    : mInput(input), mFormat(device), mLive(isCaptureDevice(input)) {
  open();
}

void VideoInput::open() {
  mPosition = 0;
  if (mLive) {
    openDevice();
    return;
  }
  if (mInput.find('%') != std::string::npos) {
    openImages();
    return;
  }
  mFile = std::make_unique<FileCapture>(mInput);
  mRate = isUsable(mFile->rate()) ? mFile->rate() : kUsualRate;
  mWidth = middleOf(mFile->size()).width;
}

void VideoInput::openImages() {
  mRate = kUsualRate;
  try {
    // Only a picture that was read tells its size.
    if (mImages.open(mInput, cv::CAP_IMAGES) && mImages.read(mRaw) && mImages.open(mInput, cv::CAP_IMAGES)) {
      mWidth = middleOf(mRaw.size()).width;
      return;
    }
  } catch (const cv::Exception&) {
    // Some names make it throw instead.
  }
  throw UsageError(mInput + ": cannot be opened as a video");
}

void VideoInput::openDevice() {
  mRate = mFormat.rate;
  const auto openOnce = [this] {
    auto capture = std::make_shared<cv::VideoCapture>();
    if (!capture->open(mInput, cv::CAP_V4L2)) {
      throw UsageError(mInput + ": cannot be opened as a video");
    }
    // Packed pictures are what a webcam has room for at its full size and rate; another format is kept if it
    // has none.
    capture->set(cv::CAP_PROP_FOURCC, cv::VideoWriter::fourcc('M', 'J', 'P', 'G'));
    capture->set(cv::CAP_PROP_FRAME_WIDTH, mFormat.size.width);
    capture->set(cv::CAP_PROP_FRAME_HEIGHT, mFormat.size.height);
    capture->set(cv::CAP_PROP_FPS, mFormat.rate);
    mWidth = middleOf({static_cast<int>(capture->get(cv::CAP_PROP_FRAME_WIDTH)),
                       static_cast<int>(capture->get(cv::CAP_PROP_FRAME_HEIGHT))})
                 .width;
    return [capture](cv::Mat& picture) { return capture->read(picture) && !picture.empty(); };
  };
  mDevice = std::make_unique<DeviceCapture>(openOnce, DeviceCapture::Waits{});
}

bool VideoInput::next(cv::Mat& picture) {
  if (mDevice) {
    mRaw = mDevice->next();
  } else if (!(mFile ? mFile->next(mRaw) : mImages.read(mRaw))) {
    return false;
  }
  ++mPosition;
  picture = mRaw(middleOf(mRaw.size()));
  return true;
}

bool VideoInput::skip() {
  if (mDevice || !(mFile ? mFile->skip() : mImages.grab())) {
    return false;
  }
  ++mPosition;
  return true;
}

void VideoInput::rewind() {
  open();
}

void silenceVideoLibraries() {
  cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
  av_log_set_level(AV_LOG_QUIET);
  // Seconds after which a device that hangs counts as gone; a program that ends waits no longer.
  setenv("OPENCV_VIDEOIO_V4L_SELECT_TIMEOUT", "1", 0);
}

cv::Rect middleOf(const cv::Size& picture) {
  if (picture.width * 9 / 16 == picture.height) {
    return {{0, 0}, picture};
  }
  const int width = std::min(picture.width, (picture.height * 16 + 4) / 9);
  const int height = std::min(picture.height, (picture.width * 9 + 8) / 16);
  return {(picture.width - width) / 2, (picture.height - height) / 2, width, height};
}

}  // namespace fyn::productionrules::video
