#include "tools/video/camera/FfmpegSink.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <map>

#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

using Arguments = std::vector<std::string>;

/** How each kind of file is encoded: fast enough beside everything else on two cores. */
const std::map<std::string, Arguments>& encodings() {
  static const std::map<std::string, Arguments> kEncodings{
      {".mp4", {"-c:v", "libx264", "-preset", "superfast", "-crf", "23", "-pix_fmt", "yuv420p", "-f", "mp4"}},
      {".webm",
       // A speed above 0 would follow the clock, and the bytes with it.
       {"-c:v", "libvpx", "-deadline", "realtime", "-cpu-used", "-16", "-threads", "2", "-b:v", "2M",
        "-pix_fmt", "yuv420p", "-f", "webm"}},
      {".mkv", {"-c:v", "libx264rgb", "-preset", "ultrafast", "-qp", "0", "-f", "matroska"}},
  };
  return kEncodings;
}

Arguments outputArguments(const std::string& target) {
  if (target.rfind("/dev/", 0) == 0) {
    return {"-pix_fmt", "yuv420p", "-f", "v4l2"};
  }
  const auto known = encodings().find(std::filesystem::path(target).extension().string());
  if (known == encodings().end()) {
    throw UsageError("\"" + target + "\" is neither a .mp4, .webm or .mkv file nor a device");
  }
  return known->second;
}

std::vector<char*> pointersTo(Arguments& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

/** Starts `command` with `input` as its standard input, out of reach of Ctrl-C: it is to end by itself. */
pid_t start(Arguments command, int input) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setpgroup(&attributes, 0);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
  pid_t pid = -1;
  const int result =
      posix_spawnp(&pid, command.front().c_str(), &actions, &attributes, pointersTo(command).data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (result != 0) {
    throw UsageError(command.front() + " cannot be started: " + std::strerror(result));
  }
  return pid;
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
    : mTarget(target), mSize(format.size) {
  const Arguments command = ffmpegCommand(target, format);
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw UsageError(std::string("no pipe to ffmpeg: ") + std::strerror(errno));
  }
  // A whole picture at a time would be best; the kernel grants what it allows.
  fcntl(ends[1], F_SETPIPE_SZ, 1 << 20);
  // An ffmpeg that has died is an error to report, not a reason to die as well.
  signal(SIGPIPE, SIG_IGN);
  try {
    mPid = start(command, ends[0]);
  } catch (const UsageError&) {
    close(ends[0]);
    close(ends[1]);
    throw;
  }
  close(ends[0]);
  mInput = ends[1];
}

FfmpegSink::~FfmpegSink() {
  waitForEnd();
}

void FfmpegSink::write(const cv::Mat& picture) {
  CV_Assert(picture.size() == mSize && picture.type() == CV_8UC3 && picture.isContinuous());
  const std::uint8_t* from = picture.data;
  std::size_t left = picture.total() * picture.elemSize();
  while (left > 0) {
    const ssize_t count = ::write(mInput, from, left);
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
  if (waitForEnd() != 0) {
    throw std::runtime_error(mTarget + ": ffmpeg could not write it");
  }
}

int FfmpegSink::waitForEnd() {
  int status = 0;
  if (mInput >= 0) {
    close(mInput);
    mInput = -1;
    while (waitpid(mPid, &status, 0) < 0 && errno == EINTR) {
    }
  }
  return status;
}

}  // namespace fyn::productionrules::video
