#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "model/Frame.h"
#include "model/Layout.h"

/**
 * Whether a new layout differs from the one on air, at several strengths. Frames are paired by position. The
 * new one is the second argument, and several tests only ask whether its ids are among the current ones. What
 * differs is logged at debug level.
 */
namespace fyn::productionrules {

/** In what a new layout differs from the one on air; the first that is found, in this order within a frame.
 */
enum class LayoutDifference {
  None,
  /** Only one of the two layouts is there. */
  FirstPicture,
  LayoutType,
  FrameCount,
  Placement,
  HeadCount,
  Heads,
  Camera,
  People,
};

/** In words, such as "the camera". */
const char* layoutDifferenceText(LayoutDifference difference);

/** The first difference between two layouts. */
struct LayoutComparison {
  LayoutDifference difference = LayoutDifference::None;
  /** The frame in which they differ; -1 when the difference is not one of a frame. */
  std::int32_t frameIndex = -1;

  bool isDifferent() const { return difference != LayoutDifference::None; }
};

/** Types first, then frames by compareFrames. Two group layouts or two room layouts never differ. */
LayoutComparison compareLayouts(const std::shared_ptr<Layout>& current,
                                const std::shared_ptr<Layout>& latest);

/** Places of all frames first, then frame by frame head ids, cameras and new person ids. */
LayoutComparison compareFrames(const std::vector<Frame>& current, const std::vector<Frame>& latest);

/** Whether all frames are drawn at the same places of the output picture. For hosts. */
bool isSameStreamLayoutTemplate(const std::vector<Frame>& current, const std::vector<Frame>& latest);

/** Whether compareFrames finds nothing. */
bool isSameLayout(const std::vector<Frame>& current, const std::vector<Frame>& latest);

/** Same frame types and head ids. */
bool areSameFrames(const std::vector<Frame>& current, const std::vector<Frame>& latest);

/** Whether the layouts are of different types, or only one of them is there. */
bool isBaseLayoutDifferent(const std::shared_ptr<Layout>& current, const std::shared_ptr<Layout>& latest);

/** Whether compareLayouts finds a difference. */
bool isDifferentLayout(const std::shared_ptr<Layout>& current, const std::shared_ptr<Layout>& latest);

/** Different types, or frames that are not areSameFrames, group and room layouts included. For hosts. */
bool isDifferentFrameBasedLayout(const std::shared_ptr<Layout>& current,
                                 const std::shared_ptr<Layout>& latest);

}  // namespace fyn::productionrules
