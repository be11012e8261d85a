#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "geometry/LayoutComparison.h"
#include "geometry/PeopleMap.h"
#include "layouts/cycle/BaseTimerSetting.h"
#include "model/Layout.h"

namespace fyn::productionrules {

/** Why a layout waits: what it changes and which wait holds it back. Times in milliseconds. */
struct PendingCause {
  LayoutComparison comparison;
  /** What sets the wait; null when nothing waits. */
  const WaitSource* source = nullptr;
  std::uint32_t configuredMs = 0;
  /** Taken off because people have left. */
  std::uint32_t reductionMs = 0;
};

/** What an engine keeps of one picture from one vision result to the next. */
struct PictureState {
  /** The stream that new layouts are for. */
  unsigned streamId = 0;
  /** The layout on screen; null for none. */
  std::shared_ptr<Layout> mCurLayout;
  /** The layout that waits for its layout timer; null for none. */
  std::shared_ptr<Layout> mNextLayout;
  /** Since which tick the layout on screen has been there, and how many came before it since the last reset.
   */
  std::uint32_t adoptedAt = 0;
  unsigned adoptedBefore = 0;
  /** Since which tick every candidate has differed from the layout on screen; nothing while they agree. */
  std::optional<std::uint32_t> differsSince;
  /** Why `mNextLayout` waits. */
  PendingCause cause;
  /** By which rule of its own the engine made the latest candidate, in words; "" for none. */
  const char* reason = "";

  /** Starts the picture afresh; whose stream it is stays. */
  void forgetLayouts() {
    PictureState afresh;
    afresh.streamId = streamId;
    *this = std::move(afresh);
  }
};

/** The picture, and the people of the latest vision result. */
struct EngineState : PictureState {
  PeopleMap people;
  /** The entries of `people` in the order of that result. */
  std::vector<PeopleMap::value_type*> entries;
  /** Another one with every result. */
  unsigned peopleVersion = 0;
};

}  // namespace fyn::productionrules
