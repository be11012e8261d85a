#include "tools/video/vision/CascadeDetector.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

#include "model/Geometry.h"
#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

constexpr double kFaceScaleStep = 1.15;
constexpr int kNeighbours = 5;
const cv::Size kSmallestFace(28, 28);
// Cascades say yes or no.
constexpr double kScore = 0.8;
constexpr int kFrontYaw = 10;
constexpr int kSideYaw = 80;

void load(cv::CascadeClassifier& cascade, const std::string& file) {
  bool loaded = false;
  try {
    loaded = cascade.load(file);
  } catch (const cv::Exception&) {
    // Some files make it throw instead.
  }
  if (!loaded) {
    throw UsageError(file + ": cannot be read as a cascade");
  }
}

/** A face reaches from the brows to the chin; hair is part of the head. */
cv::Rect2d headOfFace(const cv::Rect& face) {
  const double above = 0.2 * face.height;
  return {static_cast<double>(face.x), face.y - above, static_cast<double>(face.width), face.height + above};
}

bool overlapsAny(const cv::Rect2d& box, const std::vector<Detection>& found) {
  return std::any_of(found.begin(), found.end(), [&](const Detection& other) {
    return 2 * (box & other.box).area() > std::min(box.area(), other.box.area());
  });
}

std::vector<cv::Rect> search(cv::CascadeClassifier& cascade, const cv::Mat& picture) {
  std::vector<cv::Rect> faces;
  cascade.detectMultiScale(picture, faces, kFaceScaleStep, kNeighbours, 0, kSmallestFace);
  return faces;
}

}  // namespace

CascadeDetector::CascadeDetector(const std::string& folder) {
  load(mFront, folder + "/haarcascade_frontalface_default.xml");
  load(mSide, folder + "/haarcascade_profileface.xml");
}

std::vector<Detection> CascadeDetector::detect(const cv::Mat& picture, std::size_t /*camera*/,
                                               std::int64_t /*frame*/) {
  cv::cvtColor(picture, mGrey, cv::COLOR_BGR2GRAY);
  cv::resize(mGrey, mGrey, {kOutputSize.width, kOutputSize.height}, 0, 0, cv::INTER_AREA);
  cv::equalizeHist(mGrey, mGrey);
  cv::flip(mGrey, mMirrored, 1);
  std::vector<Detection> found;
  const auto add = [&](const cv::Rect& face, int yaw) {
    Detection detection;
    detection.box = headOfFace(face);
    detection.score = kScore;
    detection.yaw = yaw;
    detection.pitch = 0;
    if (!overlapsAny(detection.box, found)) {
      found.push_back(detection);
    }
  };
  for (const cv::Rect& face : search(mFront, mGrey)) {
    add(face, kFrontYaw);
  }
  for (const cv::Rect& face : search(mSide, mGrey)) {
    add(face, kSideYaw);
  }
  for (const cv::Rect& face : search(mSide, mMirrored)) {
    add({kOutputSize.width - face.x - face.width, face.y, face.width, face.height}, kSideYaw);
  }
  return found;
}

}  // namespace fyn::productionrules::video
