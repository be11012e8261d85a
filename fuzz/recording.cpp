// A recording, read and replayed; the recordings of the tests are its corpus.
#include <sstream>

#include "fuzz/FuzzRoom.h"
#include "tools/base/UsageError.h"
#include "tools/recording/RecordingReader.h"
#include "tools/replay/RecordingRun.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace fyn::productionrules;
  std::istringstream input{std::string(fuzzText(data, size))};
  RecordingReader reader(input, "fuzz");
  FuzzRoom room(1, 0);
  try {
    runRecording(reader, room.replay());
  } catch (const UsageError&) {
    // A malformed line, said to whoever gave it.
  }
  return 0;
}
