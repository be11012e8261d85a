#include "tools/why/RemedySearch.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <tuple>

#include "tools/base/ProgressBar.h"
#include "tools/base/WorkerPool.h"

namespace fyn::productionrules {

namespace {

bool reaches(const RemedyGoal& goal, const KeyChange& change, const GivenUp& isGivenUp) {
  MomentReplay replay(goal.recording, goal.setup, change);
  replay.playUntil(goal.until, isGivenUp);
  return !isGivenUp() && goal.isMet(replay);
}

std::int64_t distance(const KeyChange& change) {
  return std::abs(std::int64_t{change.to} - change.from);
}

bool areOnOneSide(const KeyChange& a, const KeyChange& b) {
  return a.key == b.key && (a.to > a.from) == (b.to > b.from);
}

/** A change that reaches the goal, and the value nearer to the one in force that is known not to. */
struct Bracket {
  KeyChange reaching;
  std::int32_t failing = 0;
};

/** The nearest one on each side of each key's value. */
std::vector<Bracket> bracketsOf(const std::vector<KeyChange>& tried, const std::vector<char>& reached) {
  std::vector<Bracket> brackets;
  for (std::size_t index = 0; index < tried.size(); ++index) {
    const KeyChange& change = tried[index];
    Bracket bracket{change, change.from};
    bool isNearest = reached[index] != 0;
    for (std::size_t other = 0; other < tried.size(); ++other) {
      if (areOnOneSide(tried[other], change) && distance(tried[other]) < distance(change)) {
        isNearest = isNearest && reached[other] == 0;
        if (distance(tried[other]) > std::abs(std::int64_t{bracket.failing} - change.from)) {
          bracket.failing = tried[other].to;
        }
      }
    }
    if (isNearest) {
      brackets.push_back(bracket);
    }
  }
  return brackets;
}

/** Halves the bracket down to a step; round values read better. */
KeyChange smallestWithin(const RemedyGoal& goal, Bracket bracket, const GivenUp& isGivenUp) {
  const std::int32_t step = stepOf(bracket.reaching);
  while (!isGivenUp()) {
    KeyChange middle = bracket.reaching;
    middle.to =
        static_cast<std::int32_t>((std::int64_t{bracket.reaching.to} + bracket.failing) / 2) / step * step;
    if (middle.to <= std::min(bracket.reaching.to, bracket.failing) ||
        middle.to >= std::max(bracket.reaching.to, bracket.failing)) {
      break;
    }
    if (reaches(goal, middle, isGivenUp)) {
      bracket.reaching = middle;
    } else {
      bracket.failing = middle.to;
    }
  }
  return bracket.reaching;
}

void runWithBar(std::size_t count,
                const std::function<void(std::size_t index, const GivenUp& isGivenUp)>& task,
                PrbContext& context) {
  ProgressBar progress(context.err, context.errIsTerminal, "why", count);
  std::size_t finished = 0;
  runInWorkers(count, task, [&](std::size_t /*index*/) { progress.update(++finished); });
}

/** A change elsewhere may help by chance, because it moves all that follows. */
std::tuple<bool, double, std::string_view> rankOf(const RemedyGoal& goal, const KeyChange& change) {
  return {goal.causes.count(std::string(change.key->key)) == 0, sizeOf(change), change.key->key};
}

std::vector<KeyChange> smallestOf(const RemedyGoal& goal, const std::vector<const ConfigKey*>& keys,
                                  PrbContext& context) {
  std::vector<KeyChange> tried;
  for (const ConfigKey* const key : keys) {
    const std::vector<KeyChange> changes = coarseChanges(*key, configValue(goal.configuration, *key));
    tried.insert(tried.end(), changes.begin(), changes.end());
  }
  // Not std::vector<bool>: the threads write side by side.
  std::vector<char> reached(tried.size());
  runWithBar(
      tried.size(),
      [&](std::size_t index, const GivenUp& isGivenUp) {
        reached[index] = reaches(goal, tried[index], isGivenUp) ? 1 : 0;
      },
      context);
  const std::vector<Bracket> brackets = bracketsOf(tried, reached);
  std::vector<KeyChange> found(brackets.size());
  runWithBar(
      brackets.size(),
      [&](std::size_t index, const GivenUp& isGivenUp) {
        found[index] = smallestWithin(goal, brackets[index], isGivenUp);
      },
      context);
  std::sort(found.begin(), found.end(),
            [&goal](const KeyChange& a, const KeyChange& b) { return rankOf(goal, a) < rankOf(goal, b); });
  std::vector<KeyChange> onePerKey;
  for (const KeyChange& change : found) {
    if (std::none_of(onePerKey.begin(), onePerKey.end(),
                     [&change](const KeyChange& smaller) { return smaller.key == change.key; })) {
      onePerKey.push_back(change);
    }
  }
  return onePerKey;
}

}  // namespace

std::vector<KeyChange> findRemedies(const RemedyGoal& goal, PrbContext& context) {
  const std::vector<KeyChange> waits = smallestOf(goal, waitsNamed(goal.waits), context);
  return !waits.empty() ? waits : smallestOf(goal, keysBesideWaits(), context);
}

}  // namespace fyn::productionrules
