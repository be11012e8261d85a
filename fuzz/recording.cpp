// A recording, read and replayed, and what both ways of reading a line make of each; the recordings of
// the tests are its corpus.
#include <cstdlib>
#include <sstream>

#include "fuzz/FuzzRoom.h"
#include "tools/base/UsageError.h"
#include "tools/recording/EventParser.h"
#include "tools/recording/MessageLine.h"
#include "tools/recording/RecordingReader.h"
#include "tools/replay/RecordingRun.h"

namespace fyn::productionrules {
namespace {

bool isSame(const RecordingEvent& fast, const RecordingEvent& exact) {
  if (fast.t != exact.t || fast.what.index() != exact.what.index()) {
    return false;
  }
  if (const auto* const truth = std::get_if<Truth>(&fast.what)) {
    return truth->heads == std::get<Truth>(exact.what).heads;
  }
  const auto& message = std::get<BusMessage>(fast.what);
  const auto& [topic, payload] = std::get<BusMessage>(exact.what);
  return message.topic == topic && message.payload == payload;
}

void requireSame(const std::string& line) {
  static MessageLine reader;
  RecordingEvent fast;
  RecordingEvent exact;
  if (reader.read(line, fast) && (parseRecordingLine(line, exact) || !isSame(fast, exact))) {
    std::abort();
  }
}

}  // namespace
}  // namespace fyn::productionrules

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace fyn::productionrules;
  const std::string text(fuzzText(data, size));
  std::istringstream lines{text};
  for (std::string line; std::getline(lines, line);) {
    requireSame(line);
  }
  std::istringstream input{text};
  RecordingReader reader(input, "fuzz");
  FuzzRoom room(1, 0);
  try {
    runRecording(reader, room.replay());
  } catch (const UsageError&) {
    // A malformed line, said to whoever gave it.
  }
  return 0;
}
