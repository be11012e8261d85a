#include "tools/video/camera/PipedSink.h"

#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <map>

#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

using Arguments = std::vector<std::string>;

const std::string kPipeWire = "pipewire";

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
    throw UsageError("\"" + target +
                     "\" is neither a .mp4, .webm or .mkv file nor a device, nor pipewire or window, alone "
                     "or with a number: pipewire-1");
  }
  return known->second;
}

/** A source of PipeWire that is named as the stream is. Its colours need no guess: they stay what they are.
 */
Arguments pipeWireCommand(const std::string& target, const VideoFormat& format) {
  const std::string name = "prb-camera" + target.substr(kPipeWire.size());
  return {"gst-launch-1.0", "-q", "fdsrc", "blocksize=1048576", "!", "rawvideoparse", "format=bgr",
          "width=" + std::to_string(format.size.width), "height=" + std::to_string(format.size.height),
          "framerate=" + std::to_string(std::lround(format.rate * 1000)) + "/1000", "!",
          // Whoever looks may hang; the pictures go on.
          "queue", "leaky=downstream", "max-size-buffers=2", "max-size-bytes=0", "max-size-time=0", "!",
          "videoconvert", "!", "video/x-raw,format=BGRA", "!",
          // Without anybody who looks, the sink has no memory to lend.
          "identity", "drop-allocation=true", "!", "pipewiresink", "mode=provide", "sync=false",
          "stream-properties=props,media.class=Video/Source,media.role=Camera,node.name=" + name +
              ",node.description=" + name};
}

}  // namespace

bool isNamed(const std::string& target, const std::string& name) {
  const std::string numbered = name + "-";
  return target == name || (target.size() > numbered.size() && target.rfind(numbered, 0) == 0 &&
                            target.find_first_not_of("0123456789", numbered.size()) == std::string::npos);
}

bool isPipeWire(const std::string& target) {
  return isNamed(target, kPipeWire);
}

std::vector<std::string> writerCommand(const std::string& target, const VideoFormat& format) {
  if (isPipeWire(target)) {
    return pipeWireCommand(target, format);
  }
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

PipedSink::PipedSink(const std::string& target, const VideoFormat& format)
    : PipedSink(target, format.size, writerCommand(target, format)) {}

PipedSink::PipedSink(const std::string& target, const cv::Size& size, const std::vector<std::string>& command)
    : mWriter(target + ": " + command.front()), mSize(size), mProcess(command, PipedProcess::Pipe::toInput) {}

void PipedSink::write(const cv::Mat& picture) {
  CV_Assert(picture.size() == mSize && picture.type() == CV_8UC3 && picture.isContinuous());
  const std::uint8_t* from = picture.data;
  std::size_t left = picture.total() * picture.elemSize();
  while (left > 0) {
    const ssize_t count = ::write(mProcess.descriptor(), from, left);
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count < 0) {
      throw std::runtime_error(mWriter + " takes no more pictures: " + std::strerror(errno));
    }
    from += count;
    left -= static_cast<std::size_t>(count);
  }
}

void PipedSink::finish() {
  if (mProcess.finish() != 0) {
    throw std::runtime_error(mWriter + " could not write all pictures");
  }
}

}  // namespace fyn::productionrules::video
