#include "tools/report/WaitTable.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>
#include <tuple>

#include "tools/report/MetricTable.h"

namespace fyn::productionrules {

namespace {

std::string secondsText(std::int64_t milliseconds) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f", static_cast<double>(milliseconds) / 1000);
  return text.data();
}

}  // namespace

std::vector<std::pair<std::string, WaitFigures>> waitsByGain(const Measurement& measurement) {
  std::vector<std::pair<std::string, WaitFigures>> rows(measurement.waits.begin(), measurement.waits.end());
  // Rows with the same figures stay in the order of their keys.
  std::stable_sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) {
    return std::tie(a.second.offScreenMs, a.second.runningMs) >
           std::tie(b.second.offScreenMs, b.second.runningMs);
  });
  return rows;
}

void writeWaitTable(std::ostream& out, const Measurement& measurement) {
  if (measurement.waits.empty()) {
    return;
  }
  TextTable table({"Wait", "Ran out", "Dropped", "Seconds in it", "Somebody off screen, s"});
  for (const auto& [key, figures] : waitsByGain(measurement)) {
    table.add({key, std::to_string(figures.ranOut), std::to_string(figures.dropped),
               secondsText(figures.runningMs), secondsText(figures.offScreenMs)});
  }
  out << '\n';
  table.write(out);
}

}  // namespace fyn::productionrules
