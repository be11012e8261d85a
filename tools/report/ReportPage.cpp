#include "tools/report/ReportPage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ostream>

#include "tools/report/HtmlPage.h"
#include "tools/report/MetricTable.h"
#include "tools/report/Metrics.h"
#include "tools/report/SvgPlot.h"
#include "tools/report/TimeLinePlot.h"

namespace fyn::productionrules {

namespace {

constexpr double kPlotWidth = 340;
constexpr double kPlotHeight = 200;
constexpr int kBars = 40;

// The figures that say most, on cards at the top.
constexpr std::array<const char*, 8> kKeyMetrics{
    "in_view_percent",          "changes_per_minute",    "latency_s",
    "flickers_per_minute",      "head_size_percent",     "head_room_percent",
    "thirds_deviation_percent", "speaker_framed_percent"};

std::string card(const std::string& heading, const std::string& content) {
  return "<div class=\"card\"><h3>" + heading + "</h3>\n" + content + "</div>\n";
}

std::string keyFigures(const Measurement& all) {
  std::string html = "<div class=\"cards\">\n";
  for (const char* const name : kKeyMetrics) {
    const Metric& metric = *findMetric(name);
    html += "<div class=\"card\"><b>" + metricText(metric, metric.value(all)) + " <small>" + metric.unit +
            "</small></b><span>" + metric.label + "</span></div>\n";
  }
  return html + "</div>\n";
}

/** Shares of the weight over the values, which are divided by `unit`; `share` says of what. The median is
 * marked. */
std::string histogram(const Distribution& distribution, double unit, const std::string& axis,
                      const std::string& share = "% of the time") {
  const double low = static_cast<double>(*distribution.smallest()) / unit;
  // The longest tail would squeeze everything else together.
  const double high = static_cast<double>(*distribution.percentile(99)) / unit;
  const double step = std::max(1.0 / unit, (high - low) / kBars);
  std::vector<double> shares(static_cast<std::size_t>((high - low) / step) + 1);
  for (const auto& [value, weight] : distribution.weights()) {
    const auto bar = static_cast<std::size_t>((static_cast<double>(value) / unit - low) / step);
    shares[std::min(bar, shares.size() - 1)] +=
        100.0 * static_cast<double>(weight) / static_cast<double>(distribution.total());
  }
  SvgPlot plot(kPlotWidth, kPlotHeight, {low, low + step * static_cast<double>(shares.size()), axis},
               {0, *std::max_element(shares.begin(), shares.end()) * 1.1, share});
  for (std::size_t bar = 0; bar < shares.size(); ++bar) {
    const double left = low + step * static_cast<double>(bar);
    plot.box(left, 0, left + step * 0.92, shares[bar], "c1",
             plainNumber(left, 1) + ": " + plainNumber(shares[bar], 1) + " %");
  }
  const double median = static_cast<double>(*distribution.percentile(50)) / unit;
  plot.mark(median, "c2", "median " + plainNumber(median, 1));
  return plot.text();
}

/** The share of values that are not above each: where a curve rises early, most answers are fast. */
std::string cumulative(const Distribution& distribution, const std::string& axis) {
  constexpr double kMs = 1000;
  const double high = static_cast<double>(distribution.weights().rbegin()->first) / kMs;
  SvgPlot plot(kPlotWidth, kPlotHeight, {0, high * 1.05, axis}, {0, 100, ""});
  std::vector<std::pair<double, double>> points{{0, 0}};
  double sum = 0;
  for (const auto& [value, weight] : distribution.weights()) {
    const double x = static_cast<double>(value) / kMs;
    points.emplace_back(x, sum);
    sum += 100.0 * static_cast<double>(weight) / static_cast<double>(distribution.total());
    points.emplace_back(x, sum);
  }
  points.emplace_back(high * 1.05, sum);
  plot.line(points, "c1");
  const double median = static_cast<double>(*distribution.percentile(50)) / kMs;
  plot.mark(median, "c2", "median " + plainNumber(median, 1) + " s");
  return plot.text();
}

std::string distributions(const Measurement& all, bool timing) {
  std::string html;
  const auto add = [&html](const char* heading, const Distribution& distribution, const auto& plot) {
    if (!distribution.empty()) {
      html += card(heading, plot(distribution));
    }
  };
  constexpr double kTenths = 10;
  add("Head size in the output", all.headSize,
      [](const Distribution& d) { return histogram(d, kTenths, "% of the output's height"); });
  add("Head room", all.headRoom,
      [](const Distribution& d) { return histogram(d, kTenths, "% of the frame's height"); });
  add("Off the rule of thirds", all.thirds,
      [](const Distribution& d) { return histogram(d, kTenths, "% of the frame's height"); });
  add("Time between changes, % shorter", all.betweenChanges,
      [](const Distribution& d) { return cumulative(d, "s"); });
  for (std::size_t kind = 0; kind < kRoomEventNames.size(); ++kind) {
    const std::string heading = std::string("Answers to ") + kRoomEventLabels[kind] + ", % faster";
    add(heading.c_str(), all.answers[kind].latency, [](const Distribution& d) { return cumulative(d, "s"); });
  }
  if (timing) {
    add("Decision time", all.decisionTime,
        [](const Distribution& d) { return histogram(d, kTenths, "us", "% of the vision results"); });
  }
  return "<div class=\"plots\">\n" + html + "</div>\n";
}

std::string tableRows(const std::vector<Metric>& table, const std::vector<MeasuredRecording>& recordings,
                      const Measurement& all) {
  std::string html;
  for (const Metric& metric : table) {
    html += std::string("<tr><td>") + metric.label + "</td><td class=\"unit\">" + metric.unit + "</td><td>" +
            metricText(metric, metric.value(all)) + "</td>";
    for (const MeasuredRecording& recording : recordings) {
      if (recordings.size() > 1) {
        html += "<td>" + metricText(metric, metric.value(recording.measurement)) + "</td>";
      }
    }
    html += "</tr>\n";
  }
  return html;
}

std::string metricTable(const std::vector<MeasuredRecording>& recordings, const Measurement& all,
                        bool timing) {
  std::string html = "<div class=\"card scroll\"><table>\n<tr><th>Metric</th><th></th><th>All</th>";
  for (const MeasuredRecording& recording : recordings) {
    if (recordings.size() > 1) {
      html += "<th>" + escaped(shortName(recording.name)) + "</th>";
    }
  }
  html += "</tr>\n" + tableRows(metrics(), recordings, all);
  if (timing) {
    html += tableRows(timingMetrics(), recordings, all);
  }
  return html + "</table></div>\n";
}

}  // namespace

void writeReportPage(std::ostream& out, const std::vector<MeasuredRecording>& recordings, bool timing) {
  const Measurement all = overall(recordings);
  std::string body = "<h1>Framing report</h1>\n<p class=\"lead\">" + std::to_string(recordings.size()) +
                     (recordings.size() == 1 ? " recording, " : " recordings, ") +
                     clockOf(static_cast<double>(all.observedMs) / 1000) + " of meeting, " +
                     std::to_string(all.visionResults) + " vision results</p>\n";
  body += keyFigures(all);
  body += "<h2>Course</h2>\n";
  for (const MeasuredRecording& recording : recordings) {
    body += "<div class=\"card wide\"><h2 style=\"margin-top:0\">" + escaped(shortName(recording.name)) +
            "</h2>\n" + timeLinePlots(recording.measurement) + "</div>\n";
  }
  body += "<h2>Distributions</h2>\n" + distributions(all, timing);
  body += "<h2>All figures</h2>\n" + metricTable(recordings, all, timing);
  out << htmlPage("Framing report", body);
}

}  // namespace fyn::productionrules
