#pragma once

#include <string>
#include <vector>

#include "tools/video/camera/PictureSink.h"
#include "tools/video/source/FfmpegProcess.h"

namespace fyn::productionrules::video {

/** The picture format that an ffmpeg process is to expect and to write. */
struct VideoFormat {
  cv::Size size;
  /** Pictures per second. */
  double rate = 30;
};

/**
 * The command that takes raw pictures on standard input and writes them to `target`: a file that ends in
 * .mp4, .webm or .mkv (lossless), or a V4L2 loopback device. Raises UsageError for any other file name.
 */
std::vector<std::string> ffmpegCommand(const std::string& target, const VideoFormat& format);

/**
 * Writes pictures through an ffmpeg process. When this process dies, in whatever way, ffmpeg sees the end of
 * its input and completes the file.
 */
class FfmpegSink final : public PictureSink {
 public:
  /** Raises UsageError when the command cannot be made or started. */
  FfmpegSink(const std::string& target, const VideoFormat& format);

  void write(const cv::Mat& picture) override;
  void finish() override;

 private:
  const std::string mTarget;
  const cv::Size mSize;
  FfmpegProcess mProcess;
};

}  // namespace fyn::productionrules::video
