// Tables of recorded meetings: tracks, poses and turns, put together as `prb import` does.
#include <sstream>

#include "fuzz/FuzzRoom.h"
#include "tools/base/UsageError.h"
#include "tools/meeting/Tracks.h"
#include "tools/meeting/Turns.h"

namespace {

using namespace fyn::productionrules;

template <typename Read>
void attempt(std::string_view text, const Read& read) {
  std::istringstream input{std::string(text)};
  try {
    read(input);
  } catch (const UsageError&) {
    // A malformed row, said to whoever gave it.
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzzText(data, size);
  std::vector<CameraTracks> cameras;
  attempt(text, [&](std::istream& input) {
    cameras.push_back(readTracks(input, "fuzz", fyn::Dimension{1280, 720}));
    frameInterval(cameras.back());
  });
  if (!cameras.empty()) {
    attempt(text, [&](std::istream& input) { addPoses(input, "fuzz", cameras.back()); });
  }
  attempt(text, [&](std::istream& input) {
    const std::vector<Turn> turns = readTurns(input, "fuzz");
    spokenBy(personsByPresence(cameras), turnsFrom(turns, turns.empty() ? 0 : turns.front().start));
  });
  return 0;
}
