#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "model/Layout.h"

namespace fyn::productionrules {

/** What an engine has decided. */
enum class DecisionKind {
  /** A new layout waits for its layout timer. */
  Pending,
  /** The waiting layout was dropped, because the scene went back or no switch is needed. */
  Dropped,
  /** The waiting layout is on screen now. */
  Adopted,
  /** A frame's subject is off its position and its reframe wait has begun. */
  ReframeWait,
  /** The subject came back before the wait was over. */
  ReframeCancelled,
  /** A frame's view was computed anew. */
  Reframed,
  /** A person is shown by a better camera. */
  FeedPriority,
  /** A layout that another device decided is on screen now. */
  Secondary,
  /** The engine has forgotten its layouts. */
  Reset,
};

/** What made a candidate layout a different one. */
enum class LayoutDifference {
  None,
  FirstPicture,
  LayoutType,
  FrameCount,
  Placement,
  People,
  Camera,
  NoSwitchNeeded
};

/** One decision with its reason: what differed, which timer held it back and for how long. Times in
 * milliseconds. */
struct LayoutDecision {
  DecisionKind kind = DecisionKind::Pending;
  std::int32_t streamId = 0;
  /** Type of the layout on screen before, NONE without one; the frame's type for the reframe kinds. */
  FramingType from = FramingType::NONE;
  FramingType to = FramingType::NONE;
  LayoutDifference difference = LayoutDifference::None;
  /** What the engine's own rule was, in words; "" when it had none. Lives as long as the process. */
  const char* reason = "";
  /** Name of the wait in the timer setting; "" when nothing waits. Lives as long as the process. */
  const char* timer = "";
  std::uint32_t waitMs = 0;
  std::uint32_t waitedMs = 0;
  /** Whom the layout was made for, ascending; empty for the reframe kinds. */
  std::vector<std::int64_t> people;
  /** Index of the frame for the reframe kinds, else -1. */
  std::int32_t frameIndex = -1;
  /** Where the frame's subject stands, for the reframe kinds. */
  HeadPosition headPosition = HeadPosition::CENTER;
};

/** Told every decision when it is made, on the dispatch thread. */
class DecisionListener {
 public:
  virtual ~DecisionListener() = default;
  virtual void onDecision(const LayoutDecision& decision) = 0;
};

/** "pending", "dropped", "adopted", "reframeWait", "reframeCancelled", "reframed", "feedPriority",
 * "secondary", "reset" */
const char* decisionKindText(DecisionKind kind);

/** In words, such as "the people". */
const char* layoutDifferenceText(LayoutDifference difference);

/** The first thing in which two layouts differ, in the order in which the engine compares them. */
LayoutDifference findLayoutDifference(const Layout* current, const Layout& candidate);

}  // namespace fyn::productionrules
