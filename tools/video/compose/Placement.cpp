#include "tools/video/compose/Placement.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <sstream>

namespace fyn::productionrules::video {

namespace {

// Averaging pays only where bilinear interpolation would skip whole pixels.
constexpr int kAveragingShrink = 2;

std::string textOf(const cv::Rect& rect) {
  std::ostringstream text;
  text << rect.width << " x " << rect.height << " at " << rect.x << ", " << rect.y;
  return text.str();
}

/** `rect` as shares of a whole of `size`. */
cv::Rect2d shareOf(const cv::Rect& rect, const cv::Size& size, const char* what) {
  if (rect.width <= 0 || rect.height <= 0 || rect.x < 0 || rect.y < 0 || rect.x + rect.width > size.width ||
      rect.y + rect.height > size.height) {
    std::ostringstream text;
    text << "the " << what << " rectangle " << textOf(rect) << " is not inside " << size.width << " x "
         << size.height;
    throw SceneFault(text.str());
  }
  const double width = size.width;
  const double height = size.height;
  return {rect.x / width, rect.y / height, rect.width / width, rect.height / height};
}

/** Rounds the edges, not the sizes, so that tiles that touch keep touching. Never empty. */
cv::Rect pixelsOf(const cv::Rect2d& share, const cv::Size& size) {
  const auto edge = [](double part, int whole) { return static_cast<int>(std::lround(part * whole)); };
  const int left = std::clamp(edge(share.x, size.width), 0, size.width - 1);
  const int top = std::clamp(edge(share.y, size.height), 0, size.height - 1);
  const int right = std::clamp(edge(share.x + share.width, size.width), left + 1, size.width);
  const int bottom = std::clamp(edge(share.y + share.height, size.height), top + 1, size.height);
  return {left, top, right - left, bottom - top};
}

cv::Rect2d between(const cv::Rect2d& from, const cv::Rect2d& to, double progress) {
  const auto mix = [progress](double a, double b) { return a + (b - a) * progress; };
  return {mix(from.x, to.x), mix(from.y, to.y), mix(from.width, to.width), mix(from.height, to.height)};
}

bool coversAll(const std::vector<Placement>& placements) {
  return std::any_of(placements.begin(), placements.end(),
                     [](const Placement& one) { return one.dest == cv::Rect2d(0, 0, 1, 1); });
}

/** Cuts and scales in one pass, straight into the output's own memory. */
void drawTile(const cv::Mat& from, cv::Mat to) {
  if (from.size() == to.size()) {
    from.copyTo(to);
    return;
  }
  const bool shrinksMuch = from.cols >= kAveragingShrink * to.cols && from.rows >= kAveragingShrink * to.rows;
  cv::resize(from, to, to.size(), 0, 0, shrinksMuch ? cv::INTER_AREA : cv::INTER_LINEAR);
}

}  // namespace

std::vector<Placement> placementsOf(const StreamScene& scene, std::size_t cameras) {
  std::vector<Placement> placements;
  placements.reserve(scene.tiles.size());
  for (const SceneTile& tile : scene.tiles) {
    if (tile.camera < 0 || static_cast<std::size_t>(tile.camera) >= cameras) {
      throw SceneFault("camera " + std::to_string(tile.camera) + " is not known");
    }
    placements.push_back({static_cast<std::size_t>(tile.camera),
                          shareOf(tile.source, tile.reference, "source"),
                          shareOf(tile.dest, scene.reference, "destination")});
  }
  return placements;
}

bool canGlide(const std::vector<Placement>& from, const std::vector<Placement>& to) {
  return std::equal(from.begin(), from.end(), to.begin(), to.end(),
                    [](const Placement& a, const Placement& b) { return a.camera == b.camera; });
}

std::vector<Placement> between(const std::vector<Placement>& from, const std::vector<Placement>& to,
                               double progress) {
  std::vector<Placement> placements = to;
  for (std::size_t index = 0; index < to.size(); ++index) {
    placements[index].source = between(from[index].source, to[index].source, progress);
    placements[index].dest = between(from[index].dest, to[index].dest, progress);
  }
  return placements;
}

void draw(const std::vector<Placement>& placements, const std::vector<cv::Mat>& pictures, cv::Mat& output) {
  const auto isThere = [&](const Placement& one) {
    return one.camera < pictures.size() && !pictures[one.camera].empty();
  };
  if (!coversAll(placements) || !std::all_of(placements.begin(), placements.end(), isThere)) {
    output.setTo(cv::Scalar::all(0));
  }
  for (const Placement& one : placements) {
    if (isThere(one)) {
      const cv::Mat& picture = pictures[one.camera];
      drawTile(picture(pixelsOf(one.source, picture.size())), output(pixelsOf(one.dest, output.size())));
    }
  }
}

}  // namespace fyn::productionrules::video
