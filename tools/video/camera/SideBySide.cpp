#include "tools/video/camera/SideBySide.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <string>

namespace fyn::productionrules::video {

namespace {

const cv::Scalar kHeadColour(80, 220, 80);
const cv::Scalar kSpeakerColour(60, 60, 240);
const cv::Scalar kViewColour(0, 220, 255);
constexpr double kTextScale = 0.5;

/** The fields of a square grid in the left half of the film, one per camera. */
std::vector<cv::Rect> fieldsOf(std::size_t cameras) {
  const int perSide = static_cast<int>(std::ceil(std::sqrt(static_cast<double>(cameras))));
  const int width = kFilmWidth / 2 / perSide;
  const int height = kFilmHeight / perSide;
  std::vector<cv::Rect> fields;
  fields.reserve(cameras);
  for (int index = 0; index < static_cast<int>(cameras); ++index) {
    fields.emplace_back(index % perSide * width, index / perSide * height, width, height);
  }
  return fields;
}

/** `rect` of a picture of the size `whole`, as it lies in `field`. */
cv::Rect scaled(const cv::Rect& rect, const cv::Size& whole, const cv::Size& field) {
  const double x = static_cast<double>(field.width) / whole.width;
  const double y = static_cast<double>(field.height) / whole.height;
  return {static_cast<int>(rect.x * x), static_cast<int>(rect.y * y), static_cast<int>(rect.width * x),
          static_cast<int>(rect.height * y)};
}

void drawLabel(cv::Mat& picture, const std::string& text, const cv::Point& at, const cv::Scalar& colour) {
  cv::putText(picture, text, at, cv::FONT_HERSHEY_SIMPLEX, kTextScale, cv::Scalar::all(0), 3, cv::LINE_AA);
  cv::putText(picture, text, at, cv::FONT_HERSHEY_SIMPLEX, kTextScale, colour, 1, cv::LINE_AA);
}

void drawHead(cv::Mat& field, const ShownHead& head) {
  const Rect& box = head.box;
  const cv::Rect rect(box.left, box.top, box.right - box.left, box.bottom - box.top);
  const cv::Rect there = scaled(rect, {kOutputSize.width, kOutputSize.height}, field.size());
  const cv::Scalar& colour = head.speaking ? kSpeakerColour : kHeadColour;
  cv::rectangle(field, there, colour, 2);
  drawLabel(field, std::to_string(head.person), {there.x, std::max(there.y - 4, 12)}, colour);
}

}  // namespace

const cv::Mat& SideBySide::draw(const std::vector<cv::Mat>& pictures, const std::vector<ShownHead>& heads,
                                const ComposedPicture& output) {
  const std::vector<cv::Rect> fields = fieldsOf(pictures.size());
  mFilm.setTo(cv::Scalar::all(0));
  for (std::size_t camera = 0; camera < pictures.size(); ++camera) {
    cv::Mat field = mFilm(fields[camera]);
    if (!pictures[camera].empty()) {
      cv::resize(pictures[camera], field, field.size(), 0, 0, cv::INTER_AREA);
    }
    for (const SceneTile& tile : output.tiles) {
      if (tile.camera == static_cast<std::int32_t>(camera)) {
        cv::rectangle(field, scaled(tile.source, tile.reference, field.size()), kViewColour, 2);
      }
    }
    for (const ShownHead& head : heads) {
      if (head.camera == static_cast<std::int32_t>(camera)) {
        drawHead(field, head);
      }
    }
  }
  cv::Mat right = mFilm(cv::Rect(kFilmWidth / 2, 0, kFilmWidth / 2, kFilmHeight));
  cv::resize(output.picture, right, right.size(), 0, 0, cv::INTER_AREA);
  const std::string scene = output.sceneNumber ? ", scene " + std::to_string(*output.sceneNumber) : "";
  drawLabel(mFilm, "camera, frame " + std::to_string(output.frame.number), {8, kFilmHeight - 10},
            cv::Scalar::all(255));
  drawLabel(mFilm, "output" + scene, {kFilmWidth / 2 + 8, kFilmHeight - 10}, cv::Scalar::all(255));
  return mFilm;
}

}  // namespace fyn::productionrules::video
