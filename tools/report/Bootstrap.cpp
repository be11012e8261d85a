#include "tools/report/Bootstrap.h"

#include <algorithm>
#include <numeric>

#include "tools/base/Random.h"

namespace fyn::productionrules {

namespace {

constexpr std::uint64_t kSeed = 20240229;
constexpr std::size_t kDraws = 10000;
// Two and a half per cent of the draws lie outside on each side.
constexpr std::size_t kOutside = kDraws / 40;

}  // namespace

std::optional<MeanInterval> bootstrapInterval(const std::vector<double>& differences) {
  if (differences.size() < 2) {
    return std::nullopt;
  }
  const auto count = static_cast<double>(differences.size());
  Random random(kSeed);
  std::vector<double> means(kDraws);
  for (double& mean : means) {
    double sum = 0;
    for (std::size_t pick = 0; pick < differences.size(); ++pick) {
      sum += differences[random.below(differences.size())];
    }
    mean = sum / count;
  }
  std::sort(means.begin(), means.end());
  const double mean = std::accumulate(differences.begin(), differences.end(), 0.0) / count;
  return MeanInterval{mean, means[kOutside], means[kDraws - 1 - kOutside]};
}

}  // namespace fyn::productionrules
