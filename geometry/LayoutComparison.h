#pragma once

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

/** Whether all frames are drawn at the same places of the output picture. For hosts. */
bool isSameStreamLayoutTemplate(const std::vector<Frame>& current, const std::vector<Frame>& latest);

/** Same places, same cameras, same head ids; the new person ids are among the current ones. */
bool isSameLayout(const std::vector<Frame>& current, const std::vector<Frame>& latest);

/** Same frame types and head ids. */
bool areSameFrames(const std::vector<Frame>& current, const std::vector<Frame>& latest);

/** Whether the layouts are of different types, or only one of them is there. */
bool isBaseLayoutDifferent(const std::shared_ptr<Layout>& current, const std::shared_ptr<Layout>& latest);

/** Different types, or frames that are not isSameLayout. Two group layouts or two room layouts never differ.
 */
bool isDifferentLayout(const std::shared_ptr<Layout>& current, const std::shared_ptr<Layout>& latest);

/** Different types, or frames that are not areSameFrames, group and room layouts included. For hosts. */
bool isDifferentFrameBasedLayout(const std::shared_ptr<Layout>& current,
                                 const std::shared_ptr<Layout>& latest);

}  // namespace fyn::productionrules
