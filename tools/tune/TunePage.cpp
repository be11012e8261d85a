#include <algorithm>
#include <cmath>
#include <ostream>

#include "tools/report/HtmlPage.h"
#include "tools/report/Metrics.h"
#include "tools/report/SvgPlot.h"
#include "tools/tune/TuneOutcome.h"

namespace fyn::productionrules {

namespace {

constexpr double kWidth = 520;
constexpr double kHeight = 360;

/** One of the two ways to look at the trade-off: against the changes per minute. */
struct View {
  const char* heading;
  const char* metric;
  double (*value)(const TradeOff& tradeOff);
};

constexpr View kViews[] = {
    {"Latency in seconds: low and left is better", "latency_s", [](const TradeOff& t) { return t.latency; }},
    {"Per cent of person-time in view: high and left is better", "in_view_percent",
     [](const TradeOff& t) { return t.inView; }},
};

std::string hintOf(const TunedCandidate& candidate) {
  std::string hint = candidateText(candidate.candidate);
  for (const char* const name : {"changes_per_minute", "latency_s", "in_view_percent"}) {
    const Metric& metric = *findMetric(name);
    hint += std::string("\n") + metric.label + ": " +
            metricText(metric, metric.value(candidate.measurement)) + " " + metric.unit;
  }
  return hint;
}

/** The range of the values with some air around it. */
PlotAxis axisOver(const TuneOutcome& outcome, double (*value)(const TradeOff&), const std::string& label) {
  double low = HUGE_VAL;
  double high = -HUGE_VAL;
  for (const TunedCandidate& candidate : outcome.candidates()) {
    const double place = value(candidate.tradeOff);
    if (std::isfinite(place)) {
      low = std::min(low, place);
      high = std::max(high, place);
    }
  }
  if (!(low <= high)) {
    return {0, 1, label};
  }
  const double air = std::max(0.05 * (high - low), 0.01 * std::abs(high) + 0.01);
  return {std::max(0.0, low - air), high + air, label};
}

std::string plotOf(const TuneOutcome& outcome, const View& view) {
  const auto changes = [](const TradeOff& t) { return t.changes; };
  SvgPlot plot(kWidth, kHeight, axisOver(outcome, changes, "changes per minute"),
               axisOver(outcome, view.value, ""));
  const auto dot = [&](const TunedCandidate& candidate, double radius, const char* colour, bool filled) {
    if (std::isfinite(view.value(candidate.tradeOff))) {
      plot.dot(candidate.tradeOff.changes, view.value(candidate.tradeOff), radius, colour, hintOf(candidate),
               filled);
    }
  };
  for (const TunedCandidate& candidate : outcome.candidates()) {
    dot(candidate, 3.5, "idle", false);
  }
  for (const TunedCandidate* const candidate : outcome.front()) {
    dot(*candidate, 5, "c1", true);
  }
  if (outcome.best() != nullptr) {
    dot(*outcome.best(), 8, "c2", false);
    dot(*outcome.best(), 4, "c2", true);
  }
  return std::string("<div class=\"card\"><h3>") + view.heading + "</h3>\n" + plot.text() + "</div>\n";
}

std::string frontTable(const TuneOutcome& outcome) {
  std::string html = "<div class=\"card scroll\"><table>\n<tr><th>Configuration</th><th>Goal</th>";
  for (const char* const name : {"changes_per_minute", "latency_s", "in_view_percent"}) {
    html += std::string("<th>") + findMetric(name)->label + "</th>";
  }
  html += "<th class=\"values\">Values</th></tr>\n";
  int number = 0;
  for (const TunedCandidate* const candidate : outcome.front()) {
    html += "<tr><td>front-" + std::to_string(++number) + ".conf</td><td>" +
            (candidate->goal ? plainNumber(*candidate->goal, 3) : "-") + "</td>";
    for (const char* const name : {"changes_per_minute", "latency_s", "in_view_percent"}) {
      html +=
          "<td>" + metricText(*findMetric(name), findMetric(name)->value(candidate->measurement)) + "</td>";
    }
    html += "<td class=\"values\">" + escaped(candidateText(candidate->candidate)) + "</td></tr>\n";
  }
  return html + "</table></div>\n";
}

}  // namespace

void writeTunePage(std::ostream& out, const TuneOutcome& outcome, const std::string& goal) {
  std::string body = "<h1>Best trade-offs</h1>\n<p class=\"lead\">" + std::to_string(outcome.front().size()) +
                     " of " + std::to_string(outcome.candidates().size()) + " configurations";
  body += goal.empty() ? std::string() : ", goal: " + escaped(goal);
  body += "</p>\n<div class=\"plots\" style=\"grid-template-columns:repeat(auto-fill,minmax(440px,1fr))\">\n";
  for (const View& view : kViews) {
    body += plotOf(outcome, view);
  }
  body +=
      "</div>\n<p class=\"legend\"><i style=\"background:var(--c1)\"></i>best trade-offs"
      "<i style=\"background:var(--c2)\"></i>smallest goal<i style=\"background:var(--idle)\"></i>all "
      "others; "
      "rest the pointer on a dot for its values</p>\n<h2>Best trade-offs</h2>\n" +
      frontTable(outcome);
  out << htmlPage("Best trade-offs", body);
}

}  // namespace fyn::productionrules
