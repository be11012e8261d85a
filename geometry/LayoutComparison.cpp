#include "geometry/LayoutComparison.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstddef>
#include <set>

#include "geometry/FramePredicates.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "FramingUtil";

using Ids = std::set<std::int64_t>;

/** The smallest id of `latest` that is not in `current`; null when all are. */
const std::int64_t* findMissing(const Ids& current, const Ids& latest) {
  const auto missing =
      std::find_if(latest.begin(), latest.end(), [&](std::int64_t id) { return current.count(id) == 0; });
  return missing != latest.end() ? &*missing : nullptr;
}

LayoutComparison comparePlaces(const std::vector<Frame>& current, const std::vector<Frame>& latest) {
  if (current.size() != latest.size()) {
    return {LayoutDifference::FrameCount};
  }
  for (std::size_t i = 0; i < current.size(); ++i) {
    if (!isSameFrame(current[i].dest, latest[i].dest)) {
      return {LayoutDifference::Placement, static_cast<std::int32_t>(i)};
    }
  }
  return {};
}

LayoutDifference comparePeople(int index, const Frame& current, const Frame& latest) {
  constexpr const char* kFunction = "isSameLayout";
  if (current.heads.size() != latest.heads.size()) {
    PRB_LOGD(kTag, "%s heads size diff For frame [%d] a.size(%d), b.size(%d)", kFunction, index,
             static_cast<int>(current.heads.size()), static_cast<int>(latest.heads.size()));
    return LayoutDifference::HeadCount;
  }
  if (const std::int64_t* const id = findMissing(current.heads, latest.heads)) {
    PRB_LOGD(kTag, "%s head ids for this frame are different, new head %" PRIu64 " not found", kFunction,
             static_cast<std::uint64_t>(*id));
    return LayoutDifference::Heads;
  }
  if (current.fynCamId != latest.fynCamId) {
    PRB_LOGD(kTag, "%s FynCamId are different for frame [%d] a(%d), b(%d)", kFunction, index,
             static_cast<int>(current.fynCamId), static_cast<int>(latest.fynCamId));
    return LayoutDifference::Camera;
  }
  // Person ids may have gone, only new ones count; kept: pictures must change at the same moments.
  if (const std::int64_t* const id = findMissing(current.fynHeads, latest.fynHeads)) {
    PRB_LOGD(kTag, "%s FynHeadId are different for frame [%d] nDH not found [%" PRIu64 "]", kFunction, index,
             static_cast<std::uint64_t>(*id));
    return LayoutDifference::People;
  }
  return LayoutDifference::None;
}

/** `function` is the name that the log lines carry. */
bool isSameKindOfFrame(const char* function, int index, const Frame& current, const Frame& latest) {
  if (current.frameType != latest.frameType) {
    PRB_LOGD(kTag, "%s Frames types are diff curFrameType(%s), newFrameType(%s)", function,
             layoutToText(current.frameType), layoutToText(latest.frameType));
    return false;
  }
  if (current.heads.size() != latest.heads.size()) {
    PRB_LOGD(kTag, "%s head sizes are diff in frame (%d)", function, index);
    return false;
  }
  if (findMissing(current.heads, latest.heads) != nullptr) {
    PRB_LOGD(kTag, "%s head ids are different", function);
    return false;
  }
  return true;
}

/** Whether such layouts always count as the same picture. */
bool showsEverybody(FramingType type) {
  return type == FramingType::ROOM || type == FramingType::GROUP;
}

}  // namespace

const char* layoutDifferenceText(LayoutDifference difference) {
  static constexpr std::array<const char*, 9> kTexts{
      "nothing",   "there was no picture yet", "the kind of layout", "the number of frames",
      "the tiles", "the number of heads",      "the heads",          "the camera",
      "the people"};
  const auto index = static_cast<std::size_t>(difference);
  return index < kTexts.size() ? kTexts[index] : "";
}

LayoutComparison compareFrames(const std::vector<Frame>& current, const std::vector<Frame>& latest) {
  const LayoutComparison places = comparePlaces(current, latest);
  if (places.isDifferent()) {
    return places;
  }
  for (std::size_t i = 0; i < current.size(); ++i) {
    const auto index = static_cast<std::int32_t>(i);
    const LayoutDifference difference = comparePeople(index, current[i], latest[i]);
    if (difference != LayoutDifference::None) {
      return {difference, index};
    }
  }
  return {};
}

LayoutComparison compareLayouts(const std::shared_ptr<Layout>& current,
                                const std::shared_ptr<Layout>& latest) {
  constexpr const char* kFunction = "isDifferentLayout";
  if (current == latest) {
    return {};
  }
  if (current == nullptr || latest == nullptr) {
    // The labels say the opposite of what holds; kept: log readers know them so.
    PRB_LOGD(kTag, "%s %s, %s --> return true", kFunction, current == nullptr ? "a not NULL" : "a is null ",
             latest == nullptr ? "b not NULL" : "b is null ");
    return {LayoutDifference::FirstPicture};
  }
  if (current->layoutType != latest->layoutType) {
    PRB_LOGD(kTag, "%s layout Types (%s --> %s)are different, ret true", kFunction,
             layoutToText(current->layoutType), layoutToText(latest->layoutType));
    return {LayoutDifference::LayoutType};
  }
  return showsEverybody(current->layoutType) ? LayoutComparison{}
                                             : compareFrames(current->frames, latest->frames);
}

bool isSameStreamLayoutTemplate(const std::vector<Frame>& current, const std::vector<Frame>& latest) {
  return !comparePlaces(current, latest).isDifferent();
}

bool isSameLayout(const std::vector<Frame>& current, const std::vector<Frame>& latest) {
  return !compareFrames(current, latest).isDifferent();
}

bool areSameFrames(const std::vector<Frame>& current, const std::vector<Frame>& latest) {
  if (current.size() != latest.size()) {
    PRB_LOGD(kTag, "%s Frames sizes are diff curFrames(%d), newFrames(%d)", __func__,
             static_cast<int>(current.size()), static_cast<int>(latest.size()));
    return false;
  }
  for (std::size_t i = 0; i < current.size(); ++i) {
    if (!isSameKindOfFrame(__func__, static_cast<int>(i), current[i], latest[i])) {
      return false;
    }
  }
  return true;
}

bool isBaseLayoutDifferent(const std::shared_ptr<Layout>& current, const std::shared_ptr<Layout>& latest) {
  if (current == latest) {
    PRB_LOGD(kTag, "%s a and b are same, return false", __func__);
    return false;
  }
  if (current == nullptr || latest == nullptr) {
    PRB_LOGD(kTag, "%s a or b is null, return true", __func__);
    return true;
  }
  if (current->layoutType != latest->layoutType) {
    PRB_LOGD(kTag, "%s layout Types are different, ret true", __func__);
    return true;
  }
  if (showsEverybody(current->layoutType)) {
    PRB_LOGD(kTag, "%s layoutType %s,  return false ", __func__, layoutToText(current->layoutType));
  }
  return false;
}

bool isDifferentLayout(const std::shared_ptr<Layout>& current, const std::shared_ptr<Layout>& latest) {
  return compareLayouts(current, latest).isDifferent();
}

bool isDifferentFrameBasedLayout(const std::shared_ptr<Layout>& current,
                                 const std::shared_ptr<Layout>& latest) {
  if (isBaseLayoutDifferent(current, latest)) {
    return true;
  }
  return current != nullptr && !areSameFrames(current->frames, latest->frames);
}

}  // namespace fyn::productionrules
