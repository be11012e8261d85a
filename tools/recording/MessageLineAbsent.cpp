// Stands in for MessageLine.cpp on a build without simdjson.
#include "tools/recording/MessageLine.h"

namespace fyn::productionrules {

struct MessageLine::Parser {};

MessageLine::MessageLine() = default;
MessageLine::~MessageLine() = default;

bool MessageLine::read(const std::string& /*line*/, RecordingEvent& /*event*/) {
  return false;
}

}  // namespace fyn::productionrules
