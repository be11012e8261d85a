#include "model/Geometry.h"

#include "model/JsonNumber.h"

namespace fyn {

std::string Dimension::str() const {
  return std::to_string(width) + ", " + std::to_string(height);
}

void from_json(const nlohmann::json& document, Rect& rect) {
  using productionrules::json::toInt32;
  rect.left = toInt32(document.at("left"));
  rect.top = toInt32(document.at("top"));
  rect.right = toInt32(document.at("right"));
  rect.bottom = toInt32(document.at("bottom"));
}

}  // namespace fyn

namespace fyn::productionrules {

std::string RectToString(const Rect& rect) {
  return "left: " + std::to_string(rect.left) + ",top: " + std::to_string(rect.top) +
         ",right: " + std::to_string(rect.right) + ",bottom: " + std::to_string(rect.bottom);
}

}  // namespace fyn::productionrules
