#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "layouts/cycle/LayoutDecision.h"

namespace fyn::productionrules {

/** On which a bus client says how its service is doing, where the bus can. */
inline constexpr std::string_view kStatusTopic = "/PRBStatus";

/** What may become of a line when a page reads more slowly than lines come. */
enum class LineWorth {
  /** One of very many: the oldest may be left out. */
  VisionResult,
  /** A newer line with the same key takes its place. */
  Replaceable,
  /** Never left out. */
  Kept,
};

/** One line for the viewer page: a JSON object of viewer/protocol.md, without a newline. */
struct ViewLine {
  /** Milliseconds. */
  std::int64_t t = 0;
  LineWorth worth = LineWorth::Kept;
  /** The latest line of each key is what is current; empty for lines that tell of a moment only. */
  std::string key;
  std::string text;
};

/** Takes the lines for the page, in order. */
class LineSink {
 public:
  virtual ~LineSink() = default;
  virtual void put(ViewLine line) = 0;
};

/** A message on the bus. */
ViewLine messageLine(std::int64_t t, const std::string& topic, const std::string& payload);

/** A decision: its document and what it says in words. */
ViewLine decisionLine(std::int64_t t, const LayoutDecision& decision, const std::string& document);

/** Something that a person should know, in words. */
ViewLine noticeLine(std::int64_t t, const std::string& words);

}  // namespace fyn::productionrules
