#include "tools/video/vision/SeenPersons.h"

#include <algorithm>
#include <cmath>

namespace fyn::productionrules::video {

namespace {

constexpr double kWidth = kOutputSize.width;
constexpr double kHeight = kOutputSize.height;
// tan(70 degrees / 2)
constexpr double kHalfWidthAtUnitDistance = 0.7002;
constexpr double kDegreesPerRadian = 57.29577951308232;

Rect inPicture(double left, double top, double right, double bottom) {
  const auto pixel = [](double value, double most) {
    return static_cast<std::int32_t>(std::lround(std::clamp(value, 0.0, most)));
  };
  return {pixel(left, kWidth), pixel(top, kHeight), pixel(right, kWidth), pixel(bottom, kHeight)};
}

/** Head and shoulders. */
Rect selectionBox(const cv::Rect2d& head) {
  return inPicture(head.x - head.width, head.y - head.height / 2, head.x + 2 * head.width,
                   head.y + 3 * head.height);
}

int angle(double pixelsOffAxis) {
  return static_cast<int>(
      std::lround(std::atan(pixelsOffAxis / (kWidth / 2) * kHalfWidthAtUnitDistance) * kDegreesPerRadian));
}

}  // namespace

std::vector<SeenPerson> seenPersons(const std::vector<TrackedPerson>& tracked) {
  const cv::Rect2d picture(0, 0, kWidth, kHeight);
  std::vector<SeenPerson> persons;
  for (const TrackedPerson& one : tracked) {
    SeenPerson person;
    person.id = one.id;
    for (const Observation::View& view : one.views) {
      const Detection& seen = view.detection;
      if (2 * (seen.box & picture).area() < seen.box.area()) {
        continue;
      }
      const cv::Point2d middle = (seen.box.tl() + seen.box.br()) / 2.0;
      SeenHead head;
      head.camera = static_cast<std::int32_t>(view.camera);
      head.box = inPicture(seen.box.x, seen.box.y, seen.box.br().x, seen.box.br().y);
      head.speaking = seen.speaking;
      head.selectionBox = selectionBox(seen.box);
      head.yaw = seen.yaw.value_or(std::abs(angle(middle.x - kWidth / 2)));
      head.pitch = seen.pitch.value_or(angle(middle.y - kHeight / 2));
      head.score = static_cast<int>(std::lround(100 * std::clamp(seen.score, 0.0, 1.0)));
      person.heads.push_back(head);
    }
    if (!person.heads.empty()) {
      persons.push_back(std::move(person));
    }
  }
  return persons;
}

}  // namespace fyn::productionrules::video
