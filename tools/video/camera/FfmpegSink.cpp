#include "tools/video/camera/FfmpegSink.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>

#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

using Arguments = std::vector<std::string>;

/** Without a tag players guess, and with less exact rounding faces would look pale. */
Arguments inColours(const std::string& matrix, Arguments encoding) {
  const Arguments colours{
      "-vf",
      "scale=out_color_matrix=" + matrix + ":out_range=tv:flags=accurate_rnd+full_chroma_int+full_chroma_inp",
      "-pix_fmt",
      "yuv420p",
      "-color_range",
      "tv",
      "-colorspace",
      matrix,
      "-color_primaries",
      "bt709",
      "-color_trc",
      "bt709"};
  encoding.insert(encoding.end(), colours.begin(), colours.end());
  return encoding;
}

/** How each kind of file is encoded: fast enough beside everything else on two cores. */
const std::map<std::string, Arguments>& encodings() {
  static const std::map<std::string, Arguments> kEncodings{
      {".mp4", inColours("bt709", {"-c:v", "libx264", "-preset", "superfast", "-crf", "23", "-f", "mp4"})},
      {".webm",
       // A speed above 0 would follow the clock, and the bytes with it.
       // VP8 knows BT.601 alone.
       inColours("smpte170m", {"-c:v", "libvpx", "-deadline", "realtime", "-cpu-used", "-16", "-threads", "2",
                               "-b:v", "2M", "-f", "webm"})},
      {".mkv", {"-c:v", "libx264rgb", "-preset", "ultrafast", "-qp", "0", "-f", "matroska"}},
  };
  return kEncodings;
}

Arguments outputArguments(const std::string& target) {
  if (target.rfind("/dev/", 0) == 0) {
    // What carries no tag is read as BT.601 there, which is what ffmpeg makes.
    return {"-pix_fmt", "yuv420p", "-f", "v4l2"};
  }
  const auto known = encodings().find(std::filesystem::path(target).extension().string());
  if (known == encodings().end()) {
    throw UsageError("\"" + target + "\" is neither a .mp4, .webm or .mkv file nor a device");
  }
  return known->second;
}

}  // namespace

std::vector<std::string> ffmpegCommand(const std::string& target, const VideoFormat& format) {
  Arguments command{"ffmpeg",
                    "-hide_banner",
                    "-loglevel",
                    "error",
                    "-y",
                    "-f",
                    "rawvideo",
                    "-pix_fmt",
                    "bgr24",
                    "-video_size",
                    std::to_string(format.size.width) + "x" + std::to_string(format.size.height),
                    "-framerate",
                    std::to_string(format.rate),
                    "-i",
                    "pipe:0"};
  const Arguments output = outputArguments(target);
  command.insert(command.end(), output.begin(), output.end());
  // Else some files get random numbers: the same pictures are to give the same bytes.
  command.insert(command.end(), {"-fflags", "+bitexact", "-flags:v", "+bitexact"});
  command.push_back(target.front() == '/' ? target : "./" + target);
  return command;
}

FfmpegSink::FfmpegSink(const std::string& target, const VideoFormat& format)
    : mTarget(target),
      mSize(format.size),
      mProcess(ffmpegCommand(target, format), FfmpegProcess::Pipe::toInput) {}

void FfmpegSink::write(const cv::Mat& picture) {
  CV_Assert(picture.size() == mSize && picture.type() == CV_8UC3 && picture.isContinuous());
  const std::uint8_t* from = picture.data;
  std::size_t left = picture.total() * picture.elemSize();
  while (left > 0) {
    const ssize_t count = ::write(mProcess.descriptor(), from, left);
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count < 0) {
      throw std::runtime_error(mTarget + ": ffmpeg takes no more pictures: " + std::strerror(errno));
    }
    from += count;
    left -= static_cast<std::size_t>(count);
  }
}

void FfmpegSink::finish() {
  if (mProcess.finish() != 0) {
    throw std::runtime_error(mTarget + ": ffmpeg could not write it");
  }
}

}  // namespace fyn::productionrules::video
