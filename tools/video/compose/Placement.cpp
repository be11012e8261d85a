#include "tools/video/compose/Placement.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <sstream>

namespace fyn::productionrules::video {

namespace {

// Averaging pays only where bilinear interpolation would skip whole pixels.
constexpr int kAveragingShrink = 2;
// What is less than this beside a pixel's edge is at the edge.
constexpr double kNoPixel = 1e-3;

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

/** The view of a tile in pixels of its picture. */
cv::Rect2d viewOf(const Placement& one, const cv::Size& picture, int outputWidth, double mostEnlarged) {
  const double wider = outputWidth / (one.source.width * picture.width * mostEnlarged);
  const double most = std::min(1 / one.source.width, 1 / one.source.height);
  const double factor = std::clamp(wider, 1.0, std::max(most, 1.0));
  const double width = one.source.width * factor;
  const double height = one.source.height * factor;
  const auto inside = [](double from, double size) { return std::clamp(from, 0.0, std::max(1 - size, 0.0)); };
  const double x = inside(one.source.x - (width - one.source.width) / 2, width);
  const double y = inside(one.source.y - (height - one.source.height) / 2, height);
  return {x * picture.width, y * picture.height, width * picture.width, height * picture.height};
}

/** The whole pixels that a view lies in. */
cv::Rect pixelsAround(const cv::Rect2d& view, const cv::Size& size) {
  const auto before = [](double edge) { return static_cast<int>(std::floor(edge + kNoPixel)); };
  const auto behind = [](double edge) { return static_cast<int>(std::ceil(edge - kNoPixel)); };
  const int left = std::clamp(before(view.x), 0, size.width - 1);
  const int top = std::clamp(before(view.y), 0, size.height - 1);
  return {cv::Point(left, top), cv::Point(std::clamp(behind(view.x + view.width), left + 1, size.width),
                                          std::clamp(behind(view.y + view.height), top + 1, size.height))};
}

bool isWhole(const cv::Rect2d& view, const cv::Rect& pixels) {
  const auto isNear = [](double a, int b) { return std::abs(a - b) < kNoPixel; };
  return isNear(view.x, pixels.x) && isNear(view.y, pixels.y) && isNear(view.width, pixels.width) &&
         isNear(view.height, pixels.height);
}

/** Cuts and scales in one pass, straight into the output's own memory. */
void drawTile(const cv::Mat& picture, const cv::Rect2d& view, cv::Mat to) {
  const cv::Rect pixels = pixelsAround(view, picture.size());
  const cv::Mat from = picture(pixels);
  const double stepX = view.width / to.cols;
  const double stepY = view.height / to.rows;
  if (from.size() == to.size() && isWhole(view, pixels)) {
    from.copyTo(to);
  } else if (stepX >= kAveragingShrink && stepY >= kAveragingShrink) {
    cv::resize(from, to, to.size(), 0, 0, cv::INTER_AREA);
  } else {
    const int way = stepX < 1 && stepY < 1 ? cv::INTER_CUBIC : cv::INTER_LINEAR;
    if (isWhole(view, pixels)) {
      cv::resize(from, to, to.size(), 0, 0, way);
      return;
    }
    // The middle of a pixel lies half a pixel from its edge.
    const cv::Matx23d toView(stepX, 0, view.x - pixels.x + stepX / 2 - 0.5, 0, stepY,
                             view.y - pixels.y + stepY / 2 - 0.5);
    cv::warpAffine(from, to, toView, to.size(), way | cv::WARP_INVERSE_MAP, cv::BORDER_REPLICATE);
  }
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

void draw(const std::vector<Placement>& placements, const std::vector<cv::Mat>& pictures, double mostEnlarged,
          cv::Mat& output) {
  const auto isThere = [&](const Placement& one) {
    return one.camera < pictures.size() && !pictures[one.camera].empty();
  };
  if (!coversAll(placements) || !std::all_of(placements.begin(), placements.end(), isThere)) {
    output.setTo(cv::Scalar::all(0));
  }
  for (const Placement& one : placements) {
    if (isThere(one)) {
      const cv::Mat& picture = pictures[one.camera];
      const cv::Rect place = pixelsOf(one.dest, output.size());
      drawTile(picture, viewOf(one, picture.size(), place.width, mostEnlarged), output(place));
    }
  }
}

}  // namespace fyn::productionrules::video
