#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "model/Layout.h"

namespace fyn::productionrules {

/** One frame as a viewer sees it. */
struct FrameView {
  FramingType type = FramingType::NONE;
  std::uint32_t camera = 0;
  /** The image of that camera, in its pixels. */
  Dimension image;
  /** What is shown of it, in pixels of the camera. */
  Rect source;
  /** Where, in pixels of the output (kOutputSize). */
  Rect dest;
  /** Ids of the persons whom the frame was made for; not part of what a viewer sees. */
  std::vector<std::int64_t> people;

  friend bool operator==(const FrameView& a, const FrameView& b) {
    return a.type == b.type && a.camera == b.camera && a.source == b.source && a.dest == b.dest;
  }
};

/** What one output stream shows. */
struct StreamPicture {
  int stream = 0;
  FramingType type = FramingType::NONE;
  std::vector<FrameView> frames;

  friend bool operator==(const StreamPicture& a, const StreamPicture& b) {
    return a.stream == b.stream && a.type == b.type && a.frames == b.frames;
  }
  friend bool operator!=(const StreamPicture& a, const StreamPicture& b) { return !(a == b); }
};

/** What the streams show; an entry per layout that has something to show. */
std::vector<StreamPicture> picturesOf(const std::vector<std::shared_ptr<Layout>>& layouts);

/** Same frames in type, camera and place; only the views may differ. */
bool haveSameArrangement(const StreamPicture& a, const StreamPicture& b);

/** The same arrangement of cameras and places, each view overlapping its counterpart by 90 per cent or more
 * of their union: a viewer takes it for the same picture. */
bool lookAlike(const StreamPicture& a, const StreamPicture& b);

/** A person's heads: where each camera sees one, in its pixels. */
struct CameraHead {
  std::uint32_t camera = 0;
  Rect box;
};
using CameraHeads = std::vector<CameraHead>;

/** How much of a head a viewer sees. */
enum class Visibility { Off, Cut, InView };

/** Where a person appears in a picture. */
struct Appearance {
  Visibility visibility = Visibility::Off;
  /** Index of the frame that shows the person best; -1 when off screen. */
  int frame = -1;
  /** The head in that frame's camera, in its pixels. */
  Rect box;
};

/** How much of the person's head the frame shows, of what lies inside the camera's image. */
Visibility visibilityIn(const FrameView& frame, const CameraHeads& person);

/** The person's best appearance: most of the head in view, then the largest head. A head counts as far as it
 * lies inside the camera's image. */
Appearance appearanceIn(const StreamPicture& picture, const CameraHeads& person);

/** What a viewer would say of a head and a frame, who does not see a tenth of its width or height: as far as
 * the head lies in the camera's image, no more than that is outside of the frame (InView), or inside of it
 * (Off). */
Visibility roughVisibilityIn(const FrameView& frame, const CameraHeads& person);

/** In some frame of the picture more than Off by roughVisibilityIn. */
bool isRoughlyShownIn(const StreamPicture& picture, const CameraHeads& person);

}  // namespace fyn::productionrules
