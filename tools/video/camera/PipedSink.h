#pragma once

#include <string>
#include <vector>

#include "tools/video/camera/PictureSink.h"
#include "tools/video/source/PipedProcess.h"

namespace fyn::productionrules::video {

/** The pictures that another program is to take. */
struct VideoFormat {
  cv::Size size;
  /** Pictures per second. */
  double rate = 30;
};

/** Whether `target` is `name`, or `name` with the number of a later stream: "window-1". */
bool isNamed(const std::string& target, const std::string& name);

/** Whether a camera that other programs can choose is meant. */
bool isPipeWire(const std::string& target);

/**
 * The command that takes raw pictures on standard input and passes them on to `target`: a file that ends in
 * .mp4, .webm or .mkv (lossless), a V4L2 loopback device, or "pipewire" for a camera that programs can
 * choose. Raises UsageError for any other name.
 */
std::vector<std::string> writerCommand(const std::string& target, const VideoFormat& format);

/**
 * Writes pictures through another program. When this process dies, in whatever way, the other sees the end of
 * its input and completes the file.
 */
class PipedSink final : public PictureSink {
 public:
  /** Raises UsageError when the command cannot be made or started. */
  PipedSink(const std::string& target, const VideoFormat& format);

  void write(const cv::Mat& picture) override;
  void finish() override;

 private:
  PipedSink(const std::string& target, const cv::Size& size, const std::vector<std::string>& command);

  const std::string mWriter;
  const cv::Size mSize;
  PipedProcess mProcess;
};

}  // namespace fyn::productionrules::video
