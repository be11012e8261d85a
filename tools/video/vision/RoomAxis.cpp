#include "tools/video/vision/RoomAxis.h"

#include <cmath>

#include "model/Geometry.h"
#include "tools/video/vision/Assignment.h"

namespace fyn::productionrules::video {

namespace {

constexpr double kFarthestInSizes = 1.0;

}  // namespace

RoomAxis::RoomAxis(const std::vector<CameraInput>& cameras) {
  const CameraInput& first = cameras.front();
  const double unit = kOutputSize.width / (first.to - first.from);
  for (const CameraInput& camera : cameras) {
    mStrips.push_back(
        {(camera.from - first.from) * unit, (camera.to - camera.from) / (first.to - first.from)});
  }
}

cv::Rect2d RoomAxis::toRoom(std::size_t camera, const cv::Rect2d& box) const {
  const Strip& strip = mStrips.at(camera);
  return {strip.left + box.x * strip.scale, box.y, box.width * strip.scale, box.height};
}

cv::Rect2d RoomAxis::toCamera(std::size_t camera, const cv::Rect2d& box) const {
  const Strip& strip = mStrips.at(camera);
  return {(box.x - strip.left) / strip.scale, box.y, box.width / strip.scale, box.height};
}

std::vector<Observation> RoomAxis::merge(const std::vector<std::vector<Detection>>& heads) const {
  std::vector<Observation> persons;
  for (std::size_t camera = 0; camera < heads.size(); ++camera) {
    std::vector<std::vector<double>> costs;
    for (const Detection& head : heads[camera]) {
      costs.emplace_back();
      for (const Observation& person : persons) {
        const double distance = distanceInSizes(toRoom(camera, head.box), person.box);
        costs.back().push_back(distance < kFarthestInSizes ? distance : kForbidden);
      }
    }
    const std::vector<int> paired = assign(costs);
    for (std::size_t index = 0; index < heads[camera].size(); ++index) {
      const Detection& head = heads[camera][index];
      if (paired[index] >= 0) {
        persons[static_cast<std::size_t>(paired[index])].views.push_back({camera, head});
      } else {
        persons.push_back({toRoom(camera, head.box), {{camera, head}}});
      }
    }
  }
  return persons;
}

double distanceInSizes(const cv::Rect2d& a, const cv::Rect2d& b) {
  const cv::Point2d between = (a.tl() + a.br() - b.tl() - b.br()) / 2.0;
  const double size = (a.width + a.height + b.width + b.height) / 4;
  return size > 0 ? std::hypot(between.x, between.y) / size : 0;
}

}  // namespace fyn::productionrules::video
