#include "tools/video/camera/VisionFrame.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

namespace fyn::productionrules::video {

namespace {

using nlohmann::json;

// Times and numbers are added and subtracted; none of a camera is further from 0.
constexpr std::int64_t kMost = std::int64_t{1} << 53;

std::int64_t bounded(const json& document, const char* key) {
  const auto value = document.at(key).get<std::int64_t>();
  if (value < -kMost || value > kMost) {
    throw std::invalid_argument(std::string("not a vision result: ") + key + " is out of range");
  }
  return value;
}

void addHeads(const json& person, std::vector<ShownHead>& heads) {
  for (const json& entry : person.at("associatedHeads")) {
    ShownHead head;
    head.camera = entry.value("camId", 0);
    head.person = person.at("fynId").get<std::int64_t>();
    head.speaking = entry.value("isSpeaker", false);
    head.box = entry.at("bbox").get<Rect>();
    heads.push_back(head);
  }
}

}  // namespace

VisionFrame parseVisionFrame(const std::string& text) {
  try {
    const json document = json::parse(text);
    VisionFrame frame;
    frame.time.number = bounded(document, "frameNumber");
    frame.time.timestampMs = bounded(document, "timestamp");
    for (const json& person : document.at("heads")) {
      addHeads(person, frame.heads);
    }
    return frame;
  } catch (const json::exception& fault) {
    throw std::invalid_argument(std::string("not a vision result: ") + fault.what());
  }
}

}  // namespace fyn::productionrules::video
