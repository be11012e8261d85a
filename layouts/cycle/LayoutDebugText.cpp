#include "layouts/cycle/LayoutDebugText.h"

#include <sstream>

namespace fyn::productionrules {

namespace {

// `, "waitMs":` and the remainder under `remainingKey`; an overdue timer shows a wrapped, very large
// remainder.
void appendWait(std::ostream& text, const Timer& timer, const char* remainingKey, std::uint32_t now) {
  if (!timer.isStarted()) {
    return;
  }
  text << R"(, "waitMs":)" << now - timer.startTicks << R"(, ")" << remainingKey << R"(":)"
       << timer.duration - now + timer.startTicks;
}

void appendFrame(std::ostream& text, const Frame& frame, std::uint32_t now) {
  text << R"({"left":)" << frame.source.left << R"(, "top":)" << frame.source.top << R"(, "right":)"
       << frame.source.right << R"(, "bottom":)" << frame.source.bottom << R"(, "frameType":")"
       << layoutToText(frame.frameType) << R"(", "headPosition":")" << headPositionText(frame.headPosition)
       << R"(", "positionLeft":)" << frame.dest.left << R"(, "positionTop":)" << frame.dest.top
       << R"(, "positionRight":)" << frame.dest.right << R"(, "positionBottom":)" << frame.dest.bottom;
  appendWait(text, frame.headPositionTimer, "FrameTimeRemainingToSwitch", now);
  text << "}";
}

}  // namespace

std::string layoutDebugText(const Layout& current, const Layout* next, std::uint32_t now) {
  std::ostringstream text;
  // The comma directly after the brace is kept: readers of the dump expect it.
  text << R"("layout": {, "curLayout":")" << layoutToText(current.layoutType) << '"';
  if (next != nullptr) {
    text << R"(, "nextLayout":")" << layoutToText(next->layoutType) << '"';
    appendWait(text, next->layoutTimer, "LayoutTimeRemainingToSwitch", now);
  }
  text << R"(, "frames": [)";
  const char* separator = "";
  for (const Frame& frame : current.frames) {
    text << separator;
    separator = ",";
    appendFrame(text, frame, now);
  }
  text << "]}";
  return text.str();
}

std::string engineDebugText(const std::string& layoutText, const PeopleMap& people, std::int64_t frameNumber,
                            const Layout& current) {
  std::ostringstream text;
  // No comma before "heads", as above.
  text << '{' << layoutText << R"("heads": [)";
  const char* separator = "";
  for (const auto& [id, person] : people) {
    const Head* const head = person->findHead(FynHead::kNoCamera);
    if (head == nullptr) {
      continue;
    }
    text << separator << head->str();
    separator = ", ";
  }
  text << R"(],"frameNumber":)" << frameNumber << R"(,"streamID":")" << current.streamId
       << R"(", "isLogicalStream":")" << current.isLogicalStream << R"("})";
  return text.str();
}

}  // namespace fyn::productionrules
