#pragma once

#include <cstdint>
#include <opencv2/core/types.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace fyn::productionrules::video {

/** A scene that cannot be shown; the text says why, in one line. */
class SceneFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/** One part of a camera's picture and its place in the output. */
struct SceneTile {
  std::int32_t camera = 0;
  /** The size of the camera's whole picture that `source` refers to. */
  cv::Size reference;
  cv::Rect source;
  /** In pixels of the stream's reference. */
  cv::Rect dest;
};

/** What one output picture shows. */
struct StreamScene {
  std::int32_t id = 0;
  std::int64_t sceneNumber = 0;
  /** The mode of the service that decided it, as it names it. */
  std::string mode;
  /** "cut", "dissolve" or "ease"; any other text is a cut. */
  std::string animation;
  std::int64_t durationMs = 0;
  /** Wall clock of the decision, milliseconds since 1970. */
  std::int64_t timestampMs = 0;
  cv::Size reference;
  /** Later ones lie over earlier ones. Empty: the stream has nothing to show. */
  std::vector<SceneTile> tiles;
};

/**
 * The streams of a scene document as the service hands it to a camera provider. Blank entries and debug
 * rectangles are left out. Throws SceneFault when the text is no such document.
 */
std::vector<StreamScene> parseSceneDocument(const std::string& text);

}  // namespace fyn::productionrules::video
