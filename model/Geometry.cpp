#include "model/Geometry.h"

#include <array>
#include <string_view>

#include "model/JsonMembers.h"
#include "model/JsonNumber.h"

namespace fyn {

std::string Dimension::str() const {
  return std::to_string(width) + ", " + std::to_string(height);
}

void from_json(const nlohmann::json& document, Rect& rect) {
  static constexpr std::array<std::string_view, 4> kSides{"bottom", "left", "right", "top"};
  const auto members = productionrules::fields::findMembers(document, kSides);
  const auto side = [&](std::size_t index) {
    // An absent side raises the library's own error.
    return productionrules::fields::toInt32(
        members[index] != nullptr ? *members[index] : document.at(std::string(kSides[index])));
  };
  rect.left = side(1);
  rect.top = side(3);
  rect.right = side(2);
  rect.bottom = side(0);
}

}  // namespace fyn

namespace fyn::productionrules {

std::string RectToString(const Rect& rect) {
  return "left: " + std::to_string(rect.left) + ",top: " + std::to_string(rect.top) +
         ",right: " + std::to_string(rect.right) + ",bottom: " + std::to_string(rect.bottom);
}

}  // namespace fyn::productionrules
