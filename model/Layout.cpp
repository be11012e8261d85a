#include "model/Layout.h"

#include <utility>

#include "model/JsonNumber.h"

namespace fyn::productionrules {

void Layout::from_json(const nlohmann::json& document) {
  streamId = fields::toInt32(document.at("streamid"));
  productionrules::from_json(document.at("layoutType"), layoutType);
  // The key says the opposite of the field, as text: "false" alone means a logical stream.
  isLogicalStream = document.at("isVirtualCamera").get<std::string>() == "false";
  frameNumber = fields::toInt64(document.at("frameNumber"));
  animation = document.at("animation").get<std::string>();
  duration = fields::toInt32(document.at("duration"));
  faceCount = fields::toInt32(document.at("facecount"));

  const nlohmann::json& picture = document.at("destRef");
  const std::int32_t height = fields::toInt32(picture.at("height"));
  const std::int32_t width = fields::toInt32(picture.at("width"));
  const auto* const scene = fields::findMember(document, "scene");
  if (scene == nullptr) {
    return;
  }
  frames.reserve(frames.size() + scene->size());
  for (const nlohmann::json& element : *scene) {
    Frame frame;
    frame.from_json(element, width, height);
    frames.push_back(std::move(frame));
  }
}

void setLayoutAnimation(const std::shared_ptr<Layout>& layout, const std::string& animation, int duration) {
  if (layout == nullptr) {
    return;
  }
  layout->animation = animation;
  layout->duration = duration;
}

}  // namespace fyn::productionrules
