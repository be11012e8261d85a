#include "tools/video/compose/SceneDocument.h"

#include <nlohmann/json.hpp>

namespace fyn::productionrules::video {

namespace {

using nlohmann::json;

constexpr std::int64_t kLargest = 1 << 24;

/** A number of pixels; the bound keeps every sum of them inside 32 bits. */
int pixels(const json& object, const char* key) {
  const auto value = object.at(key).get<std::int64_t>();
  if (value < -kLargest || value > kLargest) {
    throw SceneFault(std::string("\"") + key + "\" is " + std::to_string(value));
  }
  return static_cast<int>(value);
}

cv::Size sizeOf(const json& object) {
  return {pixels(object, "width"), pixels(object, "height")};
}

cv::Rect rectOf(const json& object) {
  return {cv::Point(pixels(object, "xoffset"), pixels(object, "yoffset")), sizeOf(object)};
}

bool isBlank(const SceneTile& tile) {
  return tile.source == cv::Rect() && tile.dest == cv::Rect();
}

StreamScene streamOf(const json& object) {
  StreamScene stream;
  stream.id = object.at("streamid").get<std::int32_t>();
  stream.sceneNumber = object.at("sceneNumber").get<std::int64_t>();
  stream.mode = object.value("TrackingMode", "");
  stream.animation = object.at("animation").get<std::string>();
  stream.durationMs = object.at("duration").get<std::int64_t>();
  stream.timestampMs = object.at("timestamp").get<std::int64_t>();
  stream.reference = sizeOf(object.at("destRef"));
  for (const json& entry : object.at("scene")) {
    if (entry.contains("debugBounds")) {
      continue;
    }
    const SceneTile tile{entry.at("fynCamId").get<std::int32_t>(), sizeOf(entry.at("srcRef")),
                         rectOf(entry.at("source")), rectOf(entry.at("dest"))};
    if (!isBlank(tile)) {
      stream.tiles.push_back(tile);
    }
  }
  return stream;
}

}  // namespace

std::vector<StreamScene> parseSceneDocument(const std::string& text) {
  try {
    std::vector<StreamScene> streams;
    const json document = json::parse(text);
    for (const json& object : document.at("streams")) {
      streams.push_back(streamOf(object));
    }
    return streams;
  } catch (const json::exception& fault) {
    throw SceneFault(std::string("not a scene document: ") + fault.what());
  }
}

}  // namespace fyn::productionrules::video
