#include "tools/video/camera/Targets.h"

#include <cstdlib>
#include <filesystem>
#include <opencv2/highgui.hpp>
#include <sstream>

#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

constexpr const char* kWindow = "window";
constexpr const char* kNone = "none";

bool isOutputDevice(const std::string& target) {
  return target.rfind("/dev/", 0) == 0;
}

class NoSink final : public PictureSink {
 public:
  void write(const cv::Mat& /*picture*/) override {}
  void finish() override {}
};

class WindowSink final : public PictureSink {
 public:
  WindowSink(std::string title, const cv::Size& size) : mTitle(std::move(title)) {
    const auto isSet = [](const char* name) {
      const char* const value = std::getenv(name);
      return value != nullptr && *value != '\0';
    };
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")) {
      throw UsageError("a window needs a display; name a file with --output instead");
    }
    cv::namedWindow(mTitle, cv::WINDOW_NORMAL | cv::WINDOW_KEEPRATIO | cv::WINDOW_GUI_NORMAL);
    cv::resizeWindow(mTitle, size);
  }

  void write(const cv::Mat& picture) override {
    cv::imshow(mTitle, picture);
    cv::waitKey(1);
  }
  void finish() override { cv::destroyWindow(mTitle); }

 private:
  const std::string mTitle;
};

}  // namespace

std::unique_ptr<PictureSink> openTarget(const std::string& target, const VideoFormat& format) {
  if (target == kNone) {
    return std::make_unique<NoSink>();
  }
  if (isNamed(target, kWindow)) {
    return std::make_unique<WindowSink>("prb-camera" + target.substr(std::string(kWindow).size()),
                                        format.size);
  }
  return std::make_unique<PipedSink>(target, format);
}

std::string targetOfStream(const std::vector<std::string>& targets, std::size_t stream) {
  if (stream < targets.size()) {
    return targets[stream];
  }
  if (targets.empty() || isOutputDevice(targets.back())) {
    return {};
  }
  const std::filesystem::path last(targets.back());
  if (last == kNone) {
    return kNone;
  }
  const std::string name = last.stem().string() + "-" + std::to_string(stream) + last.extension().string();
  return (last.parent_path() / name).string();
}

cv::Size outputSizeOf(const std::string& text) {
  int width = 0;
  int height = 0;
  char between = 0;
  std::istringstream words(text);
  words >> width >> between >> height;
  if (!words || !words.eof() || between != 'x' || width < 160 || width > 3840 || width % 32 != 0 ||
      height * 16 != width * 9) {
    throw UsageError("--size is a multiple of 32x18 from 160x90 to 3840x2160, such as 1920x1080, not " +
                     text);
  }
  return {width, height};
}

bool keepsEveryPicture(const std::string& target) {
  return !isNamed(target, kWindow) && !isOutputDevice(target) && !isPipeWire(target);
}

}  // namespace fyn::productionrules::video
