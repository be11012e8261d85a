#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "geometry/LayoutComparison.h"
#include "layouts/cycle/BaseTimerSetting.h"
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

/** One decision with its reason: what differed, which timer held it back and for how long. Times in
 * milliseconds. */
struct LayoutDecision {
  DecisionKind kind = DecisionKind::Pending;
  std::int32_t streamId = 0;
  /** Type of the layout on screen before, NONE without one; the frame's type for the reframe kinds. */
  FramingType from = FramingType::NONE;
  FramingType to = FramingType::NONE;
  /** What made the candidate a different one. */
  LayoutDifference difference = LayoutDifference::None;
  /** What the engine's own rule was, or why a waiting layout was dropped, in words; empty for none. */
  std::string reason;
  /** Name of the wait in the timer setting; empty when nothing waits. */
  std::string timer;
  /** The configuration key that sets the wait; empty when none does. */
  std::string key;
  std::uint32_t configuredMs = 0;
  /** Taken off the configured wait because people have left. */
  std::uint32_t reductionMs = 0;
  /** What the wait came to. */
  std::uint32_t waitMs = 0;
  std::uint32_t waitedMs = 0;
  /** Whom the layout was made for, ascending; empty for the reframe kinds. */
  std::vector<std::int64_t> people;
  /** Index of the frame for the reframe kinds and of the one in which layouts differ, else -1. */
  std::int32_t frameIndex = -1;
  /** Where the frame's subject stands, for the reframe kinds. */
  HeadPosition headPosition = HeadPosition::CENTER;
};

/** Fills in by what a decision's wait is set; null for no wait. */
void nameWait(LayoutDecision& decision, const WaitSource* source);

/** The engine's rule and what was taken off the wait, such as "4000 ms, less 2800 because people have left";
 * empty for neither. */
std::string reasonText(const LayoutDecision& decision);

/** Told every decision when it is made, on the dispatch thread. */
class DecisionListener {
 public:
  virtual ~DecisionListener() = default;
  virtual void onDecision(const LayoutDecision& decision) = 0;
};

/** "pending", "dropped", "adopted", "reframeWait", "reframeCancelled", "reframed", "feedPriority",
 * "secondary", "reset" */
const char* decisionKindText(DecisionKind kind);

}  // namespace fyn::productionrules
