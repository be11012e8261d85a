#include "tools/video/source/StageTimes.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <ostream>

namespace fyn::productionrules::video {

namespace {

constexpr std::size_t kMostTimes = 10000;

}  // namespace

void StageTimes::add(const std::string& stage, double ms) {
  auto known =
      std::find_if(mStages.begin(), mStages.end(), [&](const Stage& one) { return one.name == stage; });
  if (known == mStages.end()) {
    known = mStages.insert(known, {stage, 0, 0, {}});
  }
  if (known->latest.size() < kMostTimes) {
    known->latest.push_back(ms);
  } else {
    known->latest[known->count % kMostTimes] = ms;
  }
  ++known->count;
  known->total += ms;
}

void StageTimes::print(std::ostream& out) const {
  out << "stage                 count  median ms  99% ms  total ms\n";
  for (const Stage& stage : mStages) {
    out << std::left << std::setw(20) << stage.name << std::right << std::fixed << std::setprecision(2)
        << std::setw(7) << stage.count << std::setw(11) << quantile(stage.latest, 0.5) << std::setw(8)
        << quantile(stage.latest, 0.99) << std::setw(10) << stage.total << '\n';
  }
}

double quantile(std::vector<double> values, double share) {
  if (values.empty()) {
    return 0;
  }
  const double rank = std::ceil(share * static_cast<double>(values.size()));
  const auto index = static_cast<std::size_t>(std::clamp(rank, 1.0, static_cast<double>(values.size()))) - 1;
  const auto place = values.begin() + static_cast<std::ptrdiff_t>(index);
  std::nth_element(values.begin(), place, values.end());
  return *place;
}

}  // namespace fyn::productionrules::video
