#include "tools/report/Picture.h"

#include <algorithm>

#include "model/FynCamerasConfig.h"
#include "model/FynHead.h"

namespace fyn::productionrules {

namespace {

constexpr double kAlike = 0.9;

double area(const Rect& rect) {
  return std::max(0.0, static_cast<double>(rect.right) - rect.left) *
         std::max(0.0, static_cast<double>(rect.bottom) - rect.top);
}

Rect intersection(const Rect& a, const Rect& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
          std::min(a.bottom, b.bottom)};
}

bool isEmpty(const Rect& rect) {
  return rect.right <= rect.left || rect.bottom <= rect.top;
}

std::int32_t scaled(std::int32_t value, std::int32_t to, std::int32_t from) {
  return static_cast<std::int32_t>(std::int64_t{value} * to / from);
}

/** A frame may give its view in another size of the image than the one that heads are measured in. */
Rect inCameraPixels(const Frame& frame, const Dimension& image) {
  const Dimension& ref = frame.srcRef;
  if (ref.width <= 0 || ref.height <= 0 || ref == image) {
    return frame.source;
  }
  return {scaled(frame.source.left, image.width, ref.width),
          scaled(frame.source.top, image.height, ref.height),
          scaled(frame.source.right, image.width, ref.width),
          scaled(frame.source.bottom, image.height, ref.height)};
}

double heightInOutput(const Rect& box, const FrameView& frame) {
  return (static_cast<double>(box.bottom) - box.top) * (frame.dest.bottom - frame.dest.top) /
         (static_cast<double>(frame.source.bottom) - frame.source.top);
}

/** Null when that camera does not see the person; FynHead::kNoCamera takes any camera. */
const Rect* boxIn(const CameraHeads& person, std::uint32_t camera) {
  const auto head = std::find_if(person.begin(), person.end(), [camera](const CameraHead& candidate) {
    return candidate.camera == camera || camera == FynHead::kNoCamera;
  });
  return head == person.end() ? nullptr : &head->box;
}

bool isOverTenth(std::int64_t part, std::int64_t whole) {
  return part * 10 > whole;
}

}  // namespace

std::vector<StreamPicture> picturesOf(const std::vector<std::shared_ptr<Layout>>& layouts) {
  std::vector<StreamPicture> pictures;
  for (const std::shared_ptr<Layout>& layout : layouts) {
    if (layout == nullptr) {
      continue;
    }
    StreamPicture picture{layout->streamId, layout->layoutType, {}};
    for (const Frame& frame : layout->frames) {
      const Dimension image = getCameraLensModelDimension(static_cast<int>(frame.fynCamId));
      const Rect source = inCameraPixels(frame, image);
      if (!isEmpty(source) && !isEmpty(frame.dest)) {
        picture.frames.push_back({frame.frameType,
                                  frame.fynCamId,
                                  image,
                                  source,
                                  frame.dest,
                                  {frame.fynHeads.begin(), frame.fynHeads.end()}});
      }
    }
    if (!picture.frames.empty()) {
      pictures.push_back(std::move(picture));
    }
  }
  return pictures;
}

bool haveSameArrangement(const StreamPicture& a, const StreamPicture& b) {
  return a.type == b.type && std::equal(a.frames.begin(), a.frames.end(), b.frames.begin(), b.frames.end(),
                                        [](const FrameView& first, const FrameView& second) {
                                          return first.type == second.type && first.camera == second.camera &&
                                                 first.dest == second.dest;
                                        });
}

bool lookAlike(const StreamPicture& a, const StreamPicture& b) {
  return std::equal(a.frames.begin(), a.frames.end(), b.frames.begin(), b.frames.end(),
                    [](const FrameView& first, const FrameView& second) {
                      const double common = area(intersection(first.source, second.source));
                      const double all = area(first.source) + area(second.source) - common;
                      return first.camera == second.camera && first.dest == second.dest &&
                             common >= kAlike * all;
                    });
}

Visibility visibilityIn(const FrameView& frame, const CameraHeads& person) {
  StreamPicture alone;
  alone.frames.push_back(frame);
  return appearanceIn(alone, person).visibility;
}

Visibility roughVisibilityIn(const FrameView& frame, const CameraHeads& person) {
  const Rect* const head = boxIn(person, frame.camera);
  if (head == nullptr) {
    return Visibility::Off;
  }
  const Rect box = intersection(*head, {0, 0, frame.image.width, frame.image.height});
  const Rect shown = intersection(box, frame.source);
  if (isEmpty(box) || isEmpty(shown)) {
    return Visibility::Off;
  }
  const std::int64_t width = std::int64_t{head->right} - head->left;
  const std::int64_t height = std::int64_t{head->bottom} - head->top;
  const std::int64_t shownWidth = std::int64_t{shown.right} - shown.left;
  const std::int64_t shownHeight = std::int64_t{shown.bottom} - shown.top;
  if (!isOverTenth(shownWidth, width) || !isOverTenth(shownHeight, height)) {
    return Visibility::Off;
  }
  return isOverTenth(std::int64_t{box.right} - box.left - shownWidth, width) ||
                 isOverTenth(std::int64_t{box.bottom} - box.top - shownHeight, height)
             ? Visibility::Cut
             : Visibility::InView;
}

bool isRoughlyShownIn(const StreamPicture& picture, const CameraHeads& person) {
  return std::any_of(picture.frames.begin(), picture.frames.end(), [&person](const FrameView& frame) {
    return roughVisibilityIn(frame, person) != Visibility::Off;
  });
}

Appearance appearanceIn(const StreamPicture& picture, const CameraHeads& person) {
  Appearance best;
  double bestShare = 0;
  double bestHeight = 0;
  for (std::size_t index = 0; index < picture.frames.size(); ++index) {
    const FrameView& frame = picture.frames[index];
    const Rect* const head = boxIn(person, frame.camera);
    if (head == nullptr) {
      continue;
    }
    const Rect box = intersection(*head, {0, 0, frame.image.width, frame.image.height});
    const Rect shown = intersection(box, frame.source);
    if (isEmpty(box) || isEmpty(shown)) {
      continue;
    }
    const double share = area(shown) / area(box);
    const double height = heightInOutput(*head, frame);
    if (share > bestShare || (share == bestShare && height > bestHeight)) {
      bestShare = share;
      bestHeight = height;
      best = {shown == box ? Visibility::InView : Visibility::Cut, static_cast<int>(index), *head};
    }
  }
  return best;
}

}  // namespace fyn::productionrules
