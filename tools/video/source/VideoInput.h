#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <opencv2/core.hpp>
#include <opencv2/videoio.hpp>
#include <string>

#include "tools/video/source/DeviceCapture.h"
#include "tools/video/source/FileCapture.h"

namespace fyn::productionrules::video {

/** What a device is asked for; it gives the nearest that it has. */
struct DeviceFormat {
  cv::Size size{1920, 1080};
  /** Pictures per second. */
  double rate = 30;
};

/**
 * The pictures of one camera. Its frame of reference for rectangles is 1280 x 720 whatever its resolution; of
 * a picture that is not 16:9 the middle is taken. A device is read on a thread of its own, see DeviceCapture.
 */
class VideoInput {
 public:
  /** Raises UsageError when `input`, as CameraInput describes it, cannot be opened. */
  explicit VideoInput(const std::string& input, const DeviceFormat& device = {});

  /** The next picture: 8 bits per channel; blue, green, red. False at the end, `picture` then stays; a device
   * has none. */
  bool next(cv::Mat& picture);

  /** Passes over the next picture of a file; cheaper than to read it. False at the end. */
  bool skip();

  /** The number of the picture read or passed over last, from 1; 0 before the first. */
  std::int64_t position() const { return mPosition; }

  /** Back to before the first picture. Not for a device. */
  void rewind();

  /** Pictures per second, as the input says; 30 when it does not. */
  double rate() const { return mRate; }

  /** Of the pictures, in pixels; a device's as it was opened last. */
  int width() const { return mWidth; }

  /** A device: its pictures come when they come, and nothing of it can be seen twice. */
  bool isLive() const { return mLive; }

 private:
  void open();
  void openDevice();
  void openImages();

  const std::string mInput;
  const DeviceFormat mFormat;
  const bool mLive;
  std::unique_ptr<DeviceCapture> mDevice;
  std::unique_ptr<FileCapture> mFile;
  cv::VideoCapture mImages;
  double mRate = 0;
  /** A device is opened again on another thread. */
  std::atomic<int> mWidth{0};
  std::int64_t mPosition = 0;
  cv::Mat mRaw;
};

/**
 * Keeps the video libraries from writing to standard error: what matters of it becomes an error of ours. For
 * a program's start, before any other thread.
 */
void silenceVideoLibraries();

/** The middle of a picture that is 16:9; all of it when it is already. */
cv::Rect middleOf(const cv::Size& picture);

}  // namespace fyn::productionrules::video
