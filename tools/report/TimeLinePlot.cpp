#include "tools/report/TimeLinePlot.h"

#include <algorithm>
#include <map>

#include "tools/report/SvgPlot.h"

namespace fyn::productionrules {

namespace {

constexpr double kWidth = 1080;
constexpr double kPeopleHeight = 150;
constexpr double kAnswersHeight = 150;
constexpr double kStreamHeight = 26;
constexpr double kAxisHeight = 42;
// Columns of the people plot: more would be narrower than what a screen shows.
constexpr std::size_t kColumns = 500;
// A recording of many hours has more reframes than can be told apart.
constexpr std::size_t kMostStrokes = 4000;

double seconds(std::int64_t milliseconds) {
  return static_cast<double>(milliseconds) / 1000;
}

PlotAxis timeAxis(const TimeLine& line) {
  return {0, std::max(1.0, seconds(line.length)), "time", true};
}

const char* colourOf(FramingType type) {
  switch (type) {
    case FramingType::HEAD:
      return "c1";
    case FramingType::PROXIMITY:
    case FramingType::LARGE_PROXIMITY:
      return "c3";
    case FramingType::SUBSET_SPEAKER:
      return "c2";
    case FramingType::GROUP:
    case FramingType::PARTIAL_GROUP:
      return "c4";
    default:
      return "idle";
  }
}

std::string legend(const std::vector<std::pair<const char*, const char*>>& entries) {
  std::string html = "<p class=\"legend\">";
  for (const auto& [colour, label] : entries) {
    html += std::string("<i style=\"background:var(--") + colour + ")\"></i>" + label;
  }
  return html + "</p>\n";
}

std::string picturesPlot(const TimeLine& line) {
  std::map<int, std::vector<TimeLine::Change>> streams;
  for (const TimeLine::Change& change : line.changes) {
    streams[change.stream].push_back(change);
  }
  const auto rows = static_cast<double>(streams.size());
  SvgPlot plot(kWidth, kAxisHeight + rows * kStreamHeight, timeAxis(line),
               {0, std::max(1.0, rows), "", false, false});
  double row = rows;
  for (const auto& [stream, changes] : streams) {
    row -= 1;
    std::size_t strokes = 0;
    for (std::size_t index = 0; index < changes.size();) {
      // One box from a layout to the next; its reframes are strokes.
      std::size_t next = index + 1;
      while (next < changes.size() && !changes[next].ofLayout) {
        ++next;
      }
      const std::int64_t end = next < changes.size() ? changes[next].t : line.length;
      plot.box(seconds(changes[index].t), row + 0.12, seconds(end), row + 0.88, colourOf(changes[index].type),
               std::string(framingTypeName(changes[index].type)) + " from " +
                   clockOf(seconds(changes[index].t)) + ", stream " + std::to_string(stream));
      for (std::size_t reframe = index; reframe < next && strokes < kMostStrokes; ++reframe, ++strokes) {
        plot.box(seconds(changes[reframe].t), row + (reframe == index ? 0 : 0.3), seconds(changes[reframe].t),
                 row + (reframe == index ? 1 : 0.7), "ink");
      }
      index = next;
    }
  }
  return "<h3>On screen</h3>\n" + plot.text() +
         legend({{"c1", "single heads"},
                 {"c3", "neighbours"},
                 {"c2", "speakers"},
                 {"c4", "group"},
                 {"idle", "room"},
                 {"ink", "long stroke: new layout, short: reframe"}});
}

std::string peoplePlot(const TimeLine& line) {
  const std::size_t step = line.buckets.size() / kColumns + 1;
  double most = 1;
  std::vector<PersonTime> columns;
  for (std::size_t bucket = 0; bucket < line.buckets.size(); ++bucket) {
    if (bucket % step == 0) {
      columns.emplace_back();
    }
    columns.back().inView += line.buckets[bucket].inView;
    columns.back().cut += line.buckets[bucket].cut;
    columns.back().off += line.buckets[bucket].off;
  }
  const double columnSeconds = seconds(TimeLine::kBucketMs) * static_cast<double>(step);
  for (const PersonTime& column : columns) {
    most = std::max(most, seconds(column.total()) / columnSeconds);
  }
  SvgPlot plot(kWidth, kPeopleHeight, timeAxis(line), {0, most, ""});
  for (std::size_t index = 0; index < columns.size(); ++index) {
    const double left = static_cast<double>(index) * columnSeconds;
    double top = 0;
    const auto stack = [&](std::int64_t time, const char* colour) {
      if (time > 0) {
        const double bottom = top;
        top += seconds(time) / columnSeconds;
        plot.box(left, bottom, left + columnSeconds, top, colour);
      }
    };
    stack(columns[index].inView, "in");
    stack(columns[index].cut, "cut");
    stack(columns[index].off, "off");
  }
  return "<h3>People in the room</h3>\n" + plot.text() +
         legend({{"in", "fully in view"}, {"cut", "partly cut"}, {"off", "off screen"}});
}

std::string answersPlot(const TimeLine& line) {
  static constexpr std::array<const char*, kRoomEventNames.size()> kColours{"c1", "c4", "c3", "c2"};
  double longest = 1;
  for (const TimeLine::Event& event : line.events) {
    longest = std::max(longest, seconds(event.latency));
  }
  SvgPlot plot(kWidth, kAnswersHeight, timeAxis(line), {0, longest * 1.15, ""});
  for (const TimeLine::Event& event : line.events) {
    const auto kind = static_cast<std::size_t>(event.kind);
    const bool answered = event.latency >= 0;
    plot.dot(seconds(event.t), answered ? seconds(event.latency) : longest * 1.15, 4, kColours[kind],
             std::string(kRoomEventLabels[kind]) + " at " + clockOf(seconds(event.t)) + ": " +
                 (answered ? plainNumber(seconds(event.latency), 1) + " s" : "no answer"),
             answered);
  }
  return "<h3>Seconds until the picture answers an event</h3>\n" + plot.text() +
         legend({{"c1", "join"},
                 {"c4", "leave"},
                 {"c3", "off centre"},
                 {"c2", "speak"},
                 {"idle", "hollow: no answer"}});
}

}  // namespace

std::string timeLinePlots(const Measurement& measurement) {
  const TimeLine& line = measurement.timeLine;
  std::string html = picturesPlot(line) + peoplePlot(line);
  if (!line.events.empty()) {
    html += answersPlot(line);
  }
  return html;
}

}  // namespace fyn::productionrules
