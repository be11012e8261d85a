#include "tools/tune/TuneOutcome.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <set>

#include "tools/base/NewFile.h"
#include "tools/base/UsageError.h"
#include "tools/report/MetricTable.h"
#include "tools/report/Metrics.h"

namespace fyn::productionrules {

namespace {

Candidate without(Candidate candidate, const std::vector<std::string>& keys) {
  candidate.erase(std::remove_if(candidate.begin(), candidate.end(),
                                 [&keys](const auto& entry) {
                                   return std::find(keys.begin(), keys.end(), entry.first) != keys.end();
                                 }),
                  candidate.end());
  return candidate;
}

std::string textWithout(const Candidate& candidate, const std::vector<std::string>& keys) {
  return candidateText(without(candidate, keys));
}

double rank(const TunedCandidate& candidate) {
  return candidate.goal.value_or(std::numeric_limits<double>::infinity());
}

/** With up to three digits after the point and no zeros at its end. */
std::string goalText(const TunedCandidate& candidate) {
  if (!candidate.goal) {
    return "-";
  }
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.3f", *candidate.goal);
  std::string number = text.data();
  number.erase(number.find_last_not_of('0') + 1);
  if (number.back() == '.') {
    number.pop_back();
  }
  return number == "-0" ? "0" : number;
}

void writeConfiguration(const std::filesystem::path& path, const OutputRules& rules, const std::string& base,
                        const TunedCandidate& candidate) {
  NewFile place(path.string(), rules);
  std::ostream& file = place.stream();
  file << "# Measured: ";
  for (const char* const name : {"changes_per_minute", "latency_s", "in_view_percent"}) {
    const Metric& metric = *findMetric(name);
    file << name << ' ' << metricText(metric, metric.value(candidate.measurement)) << ", ";
  }
  file << "goal " << goalText(candidate) << '\n' << configurationWith(base, candidate.candidate);
  if (!place.finish()) {
    throw UsageError(path.string() + ": cannot be written");
  }
  place.putInPlace();
}

}  // namespace

std::vector<std::string> keysWithoutEffect(const std::vector<TunedCandidate>& candidates) {
  std::vector<std::string> found;
  const std::size_t keys = candidates.empty() ? 0 : candidates.front().candidate.size();
  for (std::size_t key = 0; key < keys; ++key) {
    std::map<std::string, std::vector<std::string>> figures;
    for (const TunedCandidate& tuned : candidates) {
      figures[textWithout(tuned.candidate, {tuned.candidate[key].first})].push_back(
          measurementAsJson(tuned.measurement).dump());
    }
    const auto hasOne = [](const auto& group) { return group.second.size() == 1; };
    const auto isEqual = [](const auto& group) {
      const std::vector<std::string>& all = group.second;
      return std::count(all.begin(), all.end(), all.front()) == static_cast<std::ptrdiff_t>(all.size());
    };
    if (std::all_of(figures.begin(), figures.end(), isEqual) &&
        !std::all_of(figures.begin(), figures.end(), hasOne)) {
      found.push_back(candidates.front().candidate[key].first);
    }
  }
  return found;
}

std::vector<TunedCandidate> withoutKeys(const std::vector<TunedCandidate>& candidates,
                                        const std::vector<std::string>& keys) {
  std::vector<TunedCandidate> kept;
  std::set<std::string> known;
  for (TunedCandidate tuned : candidates) {
    tuned.candidate = without(tuned.candidate, keys);
    if (known.insert(candidateText(tuned.candidate)).second) {
      kept.push_back(std::move(tuned));
    }
  }
  return kept;
}

TuneOutcome::TuneOutcome(std::vector<TunedCandidate> candidates) : mCandidates(std::move(candidates)) {
  std::vector<TradeOff> tradeOffs;
  for (const TunedCandidate& candidate : mCandidates) {
    tradeOffs.push_back(candidate.tradeOff);
    if (candidate.goal && (mBest == nullptr || *candidate.goal < *mBest->goal)) {
      mBest = &candidate;
    }
  }
  for (const std::size_t index : paretoFront(tradeOffs)) {
    mFront.push_back(&mCandidates[index]);
  }
  std::stable_sort(mFront.begin(), mFront.end(), [](const TunedCandidate* a, const TunedCandidate* b) {
    return rank(*a) != rank(*b) ? rank(*a) < rank(*b) : a->tradeOff.changes < b->tradeOff.changes;
  });
}

void writeTuneTable(std::ostream& out, const TuneOutcome& outcome) {
  out << outcome.front().size() << " of " << outcome.candidates().size()
      << " configurations are best trade-offs of changes, latency and people in view:\n\n";
  std::vector<std::string> head{"Front", "Goal", "Changes/min", "Latency s", "In view %"};
  if (!outcome.candidates().empty()) {
    for (const auto& [key, value] : outcome.candidates().front().candidate) {
      head.push_back(key);
    }
  }
  TextTable table(std::move(head));
  int number = 0;
  for (const TunedCandidate* const candidate : outcome.front()) {
    std::vector<std::string> row{std::to_string(++number), goalText(*candidate)};
    for (const char* const name : {"changes_per_minute", "latency_s", "in_view_percent"}) {
      row.push_back(metricText(*findMetric(name), findMetric(name)->value(candidate->measurement)));
    }
    for (const auto& [key, value] : candidate->candidate) {
      row.push_back(std::to_string(value));
    }
    table.add(std::move(row));
  }
  table.write(out);
  if (outcome.best() != nullptr) {
    out << "\nSmallest goal: " << goalText(*outcome.best()) << " with "
        << candidateText(outcome.best()->candidate) << '\n';
  }
}

void writeConfigurations(const std::string& folder, const OutputRules& rules, const std::string& base,
                         const TuneOutcome& outcome) {
  std::error_code fault;
  std::filesystem::create_directories(folder, fault);
  if (fault) {
    throw UsageError(folder + ": cannot be made: " + fault.message());
  }
  const std::filesystem::path path(folder);
  int number = 0;
  for (const TunedCandidate* const candidate : outcome.front()) {
    writeConfiguration(path / ("front-" + std::to_string(++number) + ".conf"), rules, base, *candidate);
  }
  if (outcome.best() != nullptr) {
    writeConfiguration(path / "best.conf", rules, base, *outcome.best());
  }
}

}  // namespace fyn::productionrules
