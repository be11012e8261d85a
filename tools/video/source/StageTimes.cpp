#include "tools/video/source/StageTimes.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <numeric>
#include <ostream>

namespace fyn::productionrules::video {

void StageTimes::add(const std::string& stage, double ms) {
  const auto known =
      std::find_if(mStages.begin(), mStages.end(), [&](const auto& one) { return one.first == stage; });
  if (known != mStages.end()) {
    known->second.push_back(ms);
  } else {
    mStages.push_back({stage, {ms}});
  }
}

void StageTimes::print(std::ostream& out) const {
  out << "stage                 count  median ms  99% ms  total ms\n";
  for (const auto& [stage, times] : mStages) {
    out << std::left << std::setw(20) << stage << std::right << std::fixed << std::setprecision(2)
        << std::setw(7) << times.size() << std::setw(11) << quantile(times, 0.5) << std::setw(8)
        << quantile(times, 0.99) << std::setw(10) << std::accumulate(times.begin(), times.end(), 0.0) << '\n';
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
