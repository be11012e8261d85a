#include "tools/tune/TuneOutcome.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <ostream>

#include "tools/base/NewFile.h"
#include "tools/base/UsageError.h"
#include "tools/report/MetricTable.h"
#include "tools/report/Metrics.h"

namespace fyn::productionrules {

namespace {

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
  std::ofstream& file = place.stream();
  file << "# Measured: ";
  for (const char* const name : {"changes_per_minute", "latency_s", "in_view_percent"}) {
    const Metric& metric = *findMetric(name);
    file << name << ' ' << metricText(metric, metric.value(candidate.measurement)) << ", ";
  }
  file << "goal " << goalText(candidate) << '\n' << configurationWith(base, candidate.candidate);
  file.close();
  if (!file) {
    throw UsageError(path.string() + ": cannot be written");
  }
  place.putInPlace();
}

}  // namespace

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
