#pragma once

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tools/recording/RecordingReader.h"
#include "tools/replay/Replay.h"
#include "tools/view/ReplayLines.h"

namespace fyn::productionrules::testing {

/** Keeps the lines that it is given. */
class NotedLines final : public LineSink {
 public:
  void put(ViewLine line) override { lines.push_back(std::move(line)); }

  /** Those that hold `part`. */
  std::vector<std::string> with(const std::string& part) const {
    std::vector<std::string> found;
    for (const ViewLine& line : lines) {
      if (line.text.find(part) != std::string::npos) {
        found.push_back(line.text);
      }
    }
    return found;
  }

  std::vector<ViewLine> lines;
};

inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

/** The lines of a recording that is given as text. */
inline std::vector<ViewLine> linesOfReplay(const std::string& recording, KeyValues properties = {}) {
  NotedLines noted;
  ReplayLines lines(noted);
  ReplayOptions options;
  options.properties = std::move(properties);
  std::ostringstream printed;
  options.standardOutput = &printed;
  options.dumpPath = "/dev/null";
  options.decisions = &lines.decisions();
  Replay replay(options, lines);
  lines.watch(replay);
  std::istringstream input(recording);
  RecordingReader reader(input, "recording");
  for (RecordingEvent event; reader.next(event);) {
    lines.handle(event);
  }
  lines.finish();
  return std::move(noted.lines);
}

}  // namespace fyn::productionrules::testing
