#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace fyn {

/**
 * A rectangle in pixels of one camera image, x to the right and y down. `right` and `bottom` are exclusive.
 * All four 0 means that there is no rectangle.
 */
struct Rect {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t right = 0;
  std::int32_t bottom = 0;

  friend constexpr bool operator==(const Rect& a, const Rect& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
  }
  friend constexpr bool operator!=(const Rect& a, const Rect& b) { return !(a == b); }
};

/** A size in pixels. */
struct Dimension {
  std::int32_t width = 0;
  std::int32_t height = 0;

  /** "1920, 1080" */
  std::string str() const;

  friend constexpr bool operator==(const Dimension& a, const Dimension& b) {
    return a.width == b.width && a.height == b.height;
  }
  friend constexpr bool operator!=(const Dimension& a, const Dimension& b) { return !(a == b); }
};

/** {"left","top","right","bottom"}, four required integers; the JSON library's errors otherwise. */
void from_json(const nlohmann::json& document, Rect& rect);

}  // namespace fyn

namespace fyn::productionrules {

/** The output picture that every `Frame::dest` refers to, in pixels. */
constexpr Dimension kOutputSize{1280, 720};

/** The image size of a camera of which nothing else is known, in pixels. */
constexpr Dimension kDefaultImageSize{1280, 720};

/** What a ROOM frame shows, whatever the camera's image size. */
constexpr Rect kRoomView{0, 0, 1280, 720};

/** True when all four sides are 0: there is no rectangle. */
constexpr bool isZeroRect(const Rect& rect) {
  return rect == Rect{};
}

/** "left: 10,top: 20,right: 110,bottom: 220" */
std::string RectToString(const Rect& rect);

}  // namespace fyn::productionrules
