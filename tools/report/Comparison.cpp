#include "tools/report/Comparison.h"

namespace fyn::productionrules {

namespace {

Verdict verdictOn(Better better, const MeanInterval& difference, std::size_t pairs) {
  if (pairs < kFewestRecordings) {
    return Verdict::TooFew;
  }
  if (!difference.excludesZero()) {
    return Verdict::WithinSpread;
  }
  if (better == Better::Neither) {
    return Verdict::Different;
  }
  return (difference.mean < 0) == (better == Better::Lower) ? Verdict::Better : Verdict::Worse;
}

}  // namespace

std::vector<MetricComparison> compareMeasurements(const std::vector<MeasuredRecording>& a,
                                                  const std::vector<MeasuredRecording>& b) {
  const Measurement allA = overall(a);
  const Measurement allB = overall(b);
  std::vector<MetricComparison> comparisons;
  for (const Metric& metric : metrics()) {
    MetricComparison comparison;
    comparison.metric = &metric;
    comparison.a = metric.value(allA);
    comparison.b = metric.value(allB);
    std::vector<double> differences;
    for (std::size_t index = 0; index < a.size(); ++index) {
      const std::optional<double> before = metric.value(a[index].measurement);
      const std::optional<double> after = metric.value(b[index].measurement);
      if (before && after) {
        differences.push_back(*after - *before);
      }
    }
    comparison.pairs = differences.size();
    comparison.difference = bootstrapInterval(differences);
    if (comparison.difference) {
      comparison.verdict = verdictOn(metric.better, *comparison.difference, comparison.pairs);
    }
    comparisons.push_back(comparison);
  }
  return comparisons;
}

const char* verdictText(Verdict verdict) {
  switch (verdict) {
    case Verdict::TooFew:
      return "too few recordings";
    case Verdict::WithinSpread:
      return "within the spread";
    case Verdict::Better:
      return "better";
    case Verdict::Worse:
      return "worse";
    case Verdict::Different:
      return "different";
    case Verdict::Unknown:
      break;
  }
  return "-";
}

}  // namespace fyn::productionrules
