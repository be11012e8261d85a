#include "layouts/speaker/CloseView.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "geometry/RectMath.h"
#include "layouts/speaker/SpeakerFramingLayoutBuilder.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

// Shares of the height of the view.
constexpr double kTallestHead = 0.30;
constexpr double kMiddleOfHeads = 0.40;

// 2.5 output pixels for one of the camera.
constexpr std::int64_t kLeastHeight = 288;

// Around the members, of the tallest head's height: where there is no room for it, none.
constexpr double kMargin = 0.25;

// What is tried to leave the heads of neighbours room, or else whole, in this order: the smaller change
// first, and the eyes' line last. Shares of the view.
constexpr double kGrowths[] = {1.0, 1.1, 1.2, 1.3, 1.4};
constexpr double kShifts[] = {0.0, 0.05, -0.05, 0.1, -0.1, 0.15, -0.15, 0.2, -0.2};
constexpr double kDowns[] = {0.0, 0.05, -0.05, 0.1, -0.1};

// So much of a head's width or height is nothing.
constexpr double kNothing = 0.1;

// A neighbour's head in view keeps so much of its own size from the sides: closer it looks cut, and soon is,
// for people sway.
constexpr double kBeside = 0.6;
constexpr double kAbove = 0.3;
constexpr double kBelow = 0.5;

constexpr std::int64_t kAspectWidth = 16;
constexpr std::int64_t kAspectHeight = 9;

/** Wide enough for sums of sides. */
struct Box {
  std::int64_t left = 0;
  std::int64_t top = 0;
  std::int64_t right = 0;
  std::int64_t bottom = 0;

  std::int64_t width() const { return right - left; }
  std::int64_t height() const { return bottom - top; }
};

std::int64_t widthFor(std::int64_t height) {
  return height * kAspectWidth / kAspectHeight;
}

std::int64_t heightFor(std::int64_t width) {
  return (width * kAspectHeight + kAspectWidth - 1) / kAspectWidth;
}

std::int64_t share(double part, std::int64_t whole) {
  return std::llround(part * static_cast<double>(whole));
}

/** The box with a margin, as far as that lies in the image. */
Box boxAround(const Rect& box, std::int64_t margin, const Dimension& image) {
  const auto inside = [](std::int64_t side, std::int32_t size) {
    return std::clamp<std::int64_t>(side, 0, size);
  };
  return {inside(box.left - margin, image.width), inside(box.top - margin, image.height),
          inside(box.right + margin, image.width), inside(box.bottom + margin, image.height)};
}

/** Where a span of `size` begins that holds `from` to `to` and lies in `limit`, as near to `low` as can be.
 */
std::int64_t begin(std::int64_t low, std::int64_t size, std::int64_t from, std::int64_t to,
                   std::int64_t limit) {
  low = std::max(std::min(low, from), to - size);
  return std::clamp<std::int64_t>(low, 0, limit - size);
}

Rect viewAround(const Box& heads, std::int64_t height, double shift, double down, const Dimension& image) {
  const std::int64_t width = widthFor(height);
  const std::int64_t left = begin((heads.left + heads.right - width) / 2 + share(shift, width), width,
                                  heads.left, heads.right, image.width);
  const std::int64_t top = begin((heads.top + heads.bottom) / 2 - share(kMiddleOfHeads - down, height),
                                 height, heads.top, heads.bottom, image.height);
  return {static_cast<std::int32_t>(left), static_cast<std::int32_t>(top),
          static_cast<std::int32_t>(left + width), static_cast<std::int32_t>(top + height)};
}

/** Of the head's width or height, whichever is less. */
double shownShare(const Rect& view, const Rect& head) {
  const auto shown = [](double low, double high, double from, double to) {
    return (std::min(to, high) - std::max(from, low)) / (high - low);
  };
  return std::min(shown(head.left, head.right, view.left, view.right),
                  shown(head.top, head.bottom, view.top, view.bottom));
}

/** A head that is not meant, and the room that it keeps from the sides of a view; less at the image's. */
struct Neighbour {
  Neighbour(const Rect& box, const Dimension& image)
      : head(box),
        left(std::max(box.left - kBeside * widthOf(box), 0.0)),
        top(std::max(box.top - kAbove * heightOf(box), 0.0)),
        right(std::min<double>(box.right + kBeside * widthOf(box), image.width)),
        bottom(std::min<double>(box.bottom + kBelow * heightOf(box), image.height)) {}

  Rect head;
  double left;
  double top;
  double right;
  double bottom;
};

bool crowds(const Rect& view, const Neighbour& each) {
  return doOverlap(view, each.head) &&
         (view.left > each.left || view.right < each.right || view.top > each.top ||
          view.bottom < each.bottom) &&
         shownShare(view, each.head) > kNothing;
}

/** What a close view has to hold, in any image that has room for it, and how high it may be. */
struct Fit {
  Box members;
  std::int64_t least;
  std::int64_t most;
};

/** Null where nothing but the whole image holds the members. */
std::optional<Fit> fitOf(std::int64_t groupHeight, const std::vector<Rect>& members, const Dimension& image) {
  Rect all = members.front();
  std::int64_t tallest = 0;
  for (const Rect& head : members) {
    all = enclosing(all, head);
    tallest = std::max(tallest, boxAround(head, 0, image).height());
  }
  const std::int64_t most =
      std::min<std::int64_t>(image.height, std::int64_t{image.width} * kAspectHeight / kAspectWidth);
  const auto hasRoom = [most](const Box& box) {
    return box.height() <= most && box.width() <= widthFor(most);
  };
  Box heads = boxAround(all, share(kMargin, tallest), image);
  if (!hasRoom(heads)) {
    heads = boxAround(all, 0, image);
  }
  if (!hasRoom(heads)) {
    return std::nullopt;
  }
  const std::int64_t least = std::max({groupHeight, kLeastHeight, share(1 / kTallestHead, tallest),
                                       heads.height(), heightFor(heads.width())});
  return Fit{heads, std::min(least, most), most};
}

/** Null where each change leaves a head for which `isBad` is true. */
template <typename Condition>
std::optional<Rect> leastChanged(const Fit& fit, const std::vector<Neighbour>& neighbours,
                                 const Dimension& image, Condition isBad) {
  for (const double down : kDowns) {
    for (const double growth : kGrowths) {
      const std::int64_t height = std::min(share(growth, fit.least), fit.most);
      for (const double shift : kShifts) {
        const Rect view = viewAround(fit.members, height, shift, down, image);
        if (std::none_of(neighbours.begin(), neighbours.end(),
                         [&](const Neighbour& each) { return isBad(view, each); })) {
          return view;
        }
      }
    }
  }
  return std::nullopt;
}

Rect closeView(const Fit& fit, const std::vector<Rect>& neighbours, const Dimension& image) {
  std::vector<Neighbour> others;
  others.reserve(neighbours.size());
  for (const Rect& head : neighbours) {
    others.emplace_back(head, image);
  }
  std::optional<Rect> view = leastChanged(fit, others, image, crowds);
  if (!view) {
    const auto cutsHead = [](const Rect& trial, const Neighbour& each) { return cuts(trial, each.head); };
    view = leastChanged(fit, others, image, cutsHead);
  }
  return view ? *view : viewAround(fit.members, fit.least, 0, 0, image);
}

}  // namespace

bool cuts(const Rect& view, const Rect& head) {
  // Asked of each view that is tried, and most neighbours are elsewhere.
  if (!doOverlap(view, head)) {
    return false;
  }
  const double shown = shownShare(view, head);
  return shown > kNothing && shown < 1 - kNothing;
}

void placeClosely(Frame& frame, const std::vector<Rect>& members, const std::vector<Rect>& neighbours,
                  unsigned zoomLimit) {
  SpeakerFramingLayoutBuilder::calculateGroupFraming(frame, members, zoomLimit);
  if (members.empty()) {
    return;
  }
  const Dimension image = getCameraLensModelDimension(static_cast<int>(frame.fynCamId));
  const std::optional<Fit> fit = fitOf(heightOf(frame.source), members, image);
  frame.source = fit ? closeView(*fit, neighbours, image) : Rect{0, 0, image.width, image.height};
}

bool canBeLowerThan(double height, std::uint32_t camId, const std::vector<Rect>& members,
                    unsigned zoomLimit) {
  const Dimension image = getCameraLensModelDimension(static_cast<int>(camId));
  const std::optional<Fit> fit = fitOf(0, members, image);
  const auto isLower = [height](std::int64_t least) { return static_cast<double>(least) < height; };
  // Mostly this says it, and the group frame is as dear.
  if (!fit || !isLower(fit->least)) {
    return !fit && isLower(image.height);
  }
  Frame frame;
  frame.fynCamId = camId;
  SpeakerFramingLayoutBuilder::calculateGroupFraming(frame, members, zoomLimit);
  return isLower(std::min<std::int64_t>(heightOf(frame.source), fit->most));
}

}  // namespace fyn::productionrules
