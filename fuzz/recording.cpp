// A recording, read and replayed, and what both ways of reading its first line make of it; the recordings of
// the tests are its corpus.
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "fuzz/FuzzRoom.h"
#include "tools/base/UsageError.h"
#include "tools/recording/EventParser.h"
#include "tools/recording/MessageLine.h"
#include "tools/recording/RecordingReader.h"
#include "tools/replay/RecordingRun.h"

namespace fyn::productionrules {
namespace {

// A key that stands twice is left to the reader of the payload.
bool isSame(const BusMessage& fast, const BusMessage& exact) {
  return fast.topic == exact.topic && nlohmann::json::parse(fast.payload).dump() == exact.payload;
}

void requireSame(const std::string& line) {
  static MessageLine reader;
  RecordingEvent fast;
  RecordingEvent exact;
  if (reader.read(line, fast) &&
      (parseRecordingLine(line, exact) || fast.t != exact.t ||
       !isSame(std::get<BusMessage>(fast.what), std::get<BusMessage>(exact.what)))) {
    std::abort();
  }
}

}  // namespace
}  // namespace fyn::productionrules

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace fyn::productionrules;
  const std::string text(fuzzText(data, size));
  requireSame(text.substr(0, text.find('\n')));
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
