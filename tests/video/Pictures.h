#pragma once

#include <array>
#include <cstdint>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "tools/video/compose/SceneDocument.h"

namespace fyn::productionrules::video::testing {

/** Blue, green, red. */
using Colour = cv::Vec3b;

constexpr int kColumns = 8;
constexpr int kRows = 4;

/** The colour of a field of a chart; no two fields of one chart, nor of two cameras, are alike. */
Colour chartColour(int column, int row, int camera = 0);

/** A picture of `kColumns` x `kRows` flat fields: what a part of it shows tells where it was cut. */
cv::Mat chart(cv::Size size, int camera = 0);

/** The colour at the middle of a field that is cut out as a tile and shown at `dest`. */
Colour at(const cv::Mat& picture, int x, int y);

/** The largest difference of a channel. */
int difference(const Colour& a, const Colour& b);

/** A tile of a scene whose camera is 1280 x 720 in size. */
struct TestTile {
  cv::Rect source;
  cv::Rect dest;
  int camera = 0;
  cv::Size reference{1280, 720};
};

StreamScene sceneOf(const std::vector<TestTile>& tiles, const std::string& animation = "cut",
                    std::int64_t durationMs = 0);

constexpr int kWidth = 1280;
constexpr int kHeight = 720;

/** The whole output, and the whole picture of a camera of 1280 x 720. */
const cv::Rect kWhole{0, 0, kWidth, kHeight};

/** The place of a field of a chart of 1280 x 720. */
cv::Rect field(int column, int row);

}  // namespace fyn::productionrules::video::testing
