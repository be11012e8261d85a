#include "fuzz/FuzzRoom.h"

#include <algorithm>
#include <ostream>

namespace fyn::productionrules {

namespace {

ReplayOptions everythingOn(int mode, int role) {
  static std::ostream nowhere(nullptr);
  ReplayOptions options;
  options.properties = {{"vendor.talkertracking.flag", std::to_string(mode)},
                        {"vendor.fynpilot.fynOperatingMode", std::to_string(role)},
                        {"vendor.fyndebug.enabled", "1"},
                        {"vendor.fyndebug.decisions", "1"}};
  options.configuration = "persist.tvpr.logs=4\npersist.feature.fynpilot.dumpdebug=1\n";
  options.logLevel = LogLevels::kDebugLevel;
  options.dumpPath = "/dev/null";
  options.standardOutput = &nowhere;
  return options;
}

}  // namespace

std::string_view takeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

FuzzRoom::FuzzRoom(int mode, int role) : mReplay(everythingOn(mode, role), mNobody) {}

void FuzzRoom::send(std::string_view topic, std::string_view payload, std::int64_t waitMs) {
  mNow += waitMs;
  mReplay.handle({mNow, BusMessage{std::string(topic), std::string(payload)}});
}

}  // namespace fyn::productionrules
