#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "config/PrConfig.h"
#include "tools/base/PrbContext.h"
#include "tools/why/MomentReplay.h"

namespace fyn::productionrules {

/** What a change of a key has to bring about on a recording. */
struct RemedyGoal {
  std::string recording;
  MeasuredSetup setup;
  /** The configuration that was in force, and the keys of all waits that began before it mattered. */
  PrConfig configuration;
  std::set<std::string> waits;
  /** The keys of the waits that held the picture back, or ran out. */
  std::set<std::string> causes;
  /** Milliseconds from the start of the recording when it is decided. */
  std::int64_t until = 0;
  /** Looks at the replay up to then, on any thread. */
  std::function<bool(const MomentReplay& replay)> isMet;
};

/**
 * The smallest change of each single key that reaches the goal: first the causes, then the smallest; other
 * keys than those of waits only when no wait does. Each is proved by a replay; a bar on the terminal shows
 * how far it is.
 */
std::vector<KeyChange> findRemedies(const RemedyGoal& goal, PrbContext& context);

}  // namespace fyn::productionrules
