#include "tests/video/Pictures.h"

#include <algorithm>
#include <cstdlib>

namespace fyn::productionrules::video::testing {

Colour chartColour(int column, int row, int camera) {
  return {static_cast<std::uint8_t>(20 + 30 * column), static_cast<std::uint8_t>(20 + 60 * row),
          static_cast<std::uint8_t>(40 + 100 * camera)};
}

cv::Mat chart(cv::Size size, int camera) {
  cv::Mat picture(size, CV_8UC3);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      picture.at<Colour>(y, x) = chartColour(x * kColumns / size.width, y * kRows / size.height, camera);
    }
  }
  return picture;
}

Colour at(const cv::Mat& picture, int x, int y) {
  return picture.at<Colour>(y, x);
}

int difference(const Colour& a, const Colour& b) {
  int largest = 0;
  for (int channel = 0; channel < 3; ++channel) {
    largest = std::max(largest, std::abs(int{a[channel]} - int{b[channel]}));
  }
  return largest;
}

StreamScene sceneOf(const std::vector<TestTile>& tiles, const std::string& animation,
                    std::int64_t durationMs) {
  StreamScene scene;
  scene.animation = animation;
  scene.durationMs = durationMs;
  scene.reference = {kWidth, kHeight};
  for (const TestTile& tile : tiles) {
    scene.tiles.push_back({tile.camera, tile.reference, tile.source, tile.dest});
  }
  return scene;
}

cv::Rect field(int column, int row) {
  constexpr int kFieldWidth = kWidth / kColumns;
  constexpr int kFieldHeight = kHeight / kRows;
  return {column * kFieldWidth, row * kFieldHeight, kFieldWidth, kFieldHeight};
}

}  // namespace fyn::productionrules::video::testing
