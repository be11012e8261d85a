#include "tools/video/vision/ScriptedDetector.h"

#include <istream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

using nlohmann::json;

std::optional<int> degrees(const json& head, const char* key) {
  return head.contains(key) ? std::optional<int>(head.at(key).get<int>()) : std::nullopt;
}

Detection headOf(const json& entry) {
  const auto side = [&](const char* key) { return entry.at(key).get<double>(); };
  Detection head;
  head.box = {side("left"), side("top"), side("right") - side("left"), side("bottom") - side("top")};
  head.score = entry.value("score", 1.0);
  head.speaking = entry.value("speaking", false);
  head.yaw = degrees(entry, "yaw");
  head.pitch = degrees(entry, "pitch");
  if (head.box.empty()) {
    throw UsageError("a head without an area");
  }
  return head;
}

}  // namespace

ScriptedDetector::ScriptedDetector(std::istream& script, const std::string& name) {
  std::string line;
  for (int number = 1; std::getline(script, line); ++number) {
    if (line.empty()) {
      continue;
    }
    try {
      const json entry = json::parse(line);
      std::vector<Detection>& heads =
          mScript[entry.value("camera", std::size_t{0})][entry.at("frame").get<std::int64_t>()];
      for (const json& head : entry.at("heads")) {
        heads.push_back(headOf(head));
      }
    } catch (const std::exception& fault) {
      throw UsageError(name + ":" + std::to_string(number) + ": " + fault.what());
    }
  }
}

std::vector<Detection> ScriptedDetector::detect(const cv::Mat& /*picture*/, std::size_t camera,
                                                std::int64_t frame) {
  const auto& frames = mScript[camera];
  const auto later = frames.upper_bound(frame);
  return later == frames.begin() ? std::vector<Detection>() : std::prev(later)->second;
}

}  // namespace fyn::productionrules::video
