#include "tools/report/MetricTable.h"

#include <algorithm>
#include <filesystem>
#include <ostream>

namespace fyn::productionrules {

namespace {

constexpr std::size_t kMostColumns = 4;

/** Columns of a terminal that a UTF-8 text takes. */
std::size_t width(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

std::string range(const Metric& metric, const std::vector<MeasuredRecording>& recordings, bool highest) {
  std::optional<double> end;
  for (const MeasuredRecording& recording : recordings) {
    const std::optional<double> value = metric.value(recording.measurement);
    if (value && (!end || (highest ? *value > *end : *value < *end))) {
      end = value;
    }
  }
  return metricText(metric, end);
}

}  // namespace

void TextTable::write(std::ostream& out) const {
  std::vector<std::size_t> widths(mRows.front().size());
  for (const std::vector<std::string>& row : mRows) {
    for (std::size_t column = 0; column < row.size(); ++column) {
      widths[column] = std::max(widths[column], width(row[column]));
    }
  }
  for (const std::vector<std::string>& row : mRows) {
    std::string line;
    for (std::size_t column = 0; column < row.size(); ++column) {
      const std::string padding(widths[column] - width(row[column]), ' ');
      line += column == 0 ? row[column] + padding : "  " + padding + row[column];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  }
}

void writeMetricTable(std::ostream& out, const std::vector<Metric>& table,
                      const std::vector<MeasuredRecording>& recordings) {
  const Measurement all = overall(recordings);
  const bool showsEach = recordings.size() > 1 && recordings.size() <= kMostColumns;
  const bool showsRange = recordings.size() > kMostColumns;
  std::vector<std::string> head{"Metric", "Unit", "All"};
  if (showsRange) {
    head.insert(head.end(), {"Lowest", "Highest"});
  }
  for (const MeasuredRecording& recording : recordings) {
    if (showsEach) {
      head.push_back(shortName(recording.name));
    }
  }
  TextTable text(std::move(head));
  for (const Metric& metric : table) {
    std::vector<std::string> row{metric.label, metric.unit, metricText(metric, metric.value(all))};
    if (showsRange) {
      row.insert(row.end(), {range(metric, recordings, false), range(metric, recordings, true)});
    }
    for (const MeasuredRecording& recording : recordings) {
      if (showsEach) {
        row.push_back(metricText(metric, metric.value(recording.measurement)));
      }
    }
    text.add(std::move(row));
  }
  text.write(out);
}

std::string shortName(const std::string& path) {
  const std::filesystem::path file = std::filesystem::path(path).filename();
  return file.extension() == ".jsonl" ? file.stem().string() : file.string();
}

}  // namespace fyn::productionrules
