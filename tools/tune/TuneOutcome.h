#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "tools/base/OutputRules.h"
#include "tools/tune/ParetoFront.h"
#include "tools/tune/SearchSpace.h"

namespace fyn::productionrules {

/** A candidate and how it did on all recordings together. */
struct TunedCandidate {
  Candidate candidate;
  Measurement measurement;
  TradeOff tradeOff;
  /** Nothing when a metric of the goal has no value, or there is no goal. */
  std::optional<double> goal;
};

/** All candidates that show a picture, and which of them are the best trade-offs. */
/**
 * The keys whose value made no difference: candidates that differ in nothing else have the same figures. A
 * key of which no two such candidates were tried is not among them.
 */
std::vector<std::string> keysWithoutEffect(const std::vector<TunedCandidate>& candidates);

/** One candidate for each combination of the other keys. */
std::vector<TunedCandidate> withoutKeys(const std::vector<TunedCandidate>& candidates,
                                        const std::vector<std::string>& keys);

class TuneOutcome {
 public:
  explicit TuneOutcome(std::vector<TunedCandidate> candidates);

  const std::vector<TunedCandidate>& candidates() const { return mCandidates; }

  /** The best trade-offs, the smallest goal first, without a goal the calmest first. */
  const std::vector<const TunedCandidate*>& front() const { return mFront; }

  /** The candidate with the smallest goal; null when none has one. */
  const TunedCandidate* best() const { return mBest; }

 private:
  std::vector<TunedCandidate> mCandidates;
  std::vector<const TunedCandidate*> mFront;
  const TunedCandidate* mBest = nullptr;
};

/** The front as a table, and the candidate with the smallest goal. */
void writeTuneTable(std::ostream& out, const TuneOutcome& outcome);

/** Writes front-1.conf, front-2.conf, ... (in the order of the table) and best.conf into `folder`, which is
 * made. Raises UsageError when that cannot be done. */
void writeConfigurations(const std::string& folder, const OutputRules& rules, const std::string& base,
                         const TuneOutcome& outcome);

/** A page that needs nothing else: the trade-offs as plots, the front as a table. */
void writeTunePage(std::ostream& out, const TuneOutcome& outcome, const std::string& goal);

}  // namespace fyn::productionrules
