// Messages of all topics, with time between them: a line is a letter for the topic, one for the time and the
// payload.
#include <algorithm>

#include "fuzz/FuzzRoom.h"
#include "platform/Topics.h"

namespace {

using namespace fyn::productionrules;

/** That of the table; behind them the one beneath each that the service reads as well. */
std::string topicOf(char letter) {
  constexpr std::array<std::string_view, 5> kBeneath{"/PRBOutSecondary/0", "/PRBOutSecondary/1",
                                                     "/cameraParameters/head/1", "/FynCameraMoved/remote",
                                                     "/ctl/recordStop/x"};
  const std::size_t count = topics::kTable.size();
  const std::size_t index = static_cast<unsigned char>(letter - 'a') % (count + kBeneath.size());
  return std::string(index < count ? topics::kTable[index].name : kBeneath[index - count]);
}

/** 0 for 'a', then twice as long each time, up to some months. */
std::int64_t waitOf(char letter) {
  constexpr int kMostDoublings = 34;
  const int doublings = std::clamp(letter - 'a', 0, kMostDoublings);
  return (std::int64_t{1} << doublings) - 1;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view text = fuzzText(data, size);
  const std::string_view first = takeLine(text);
  FuzzRoom room(first.empty() ? 1 : first[0] - '0', first.size() < 2 ? 0 : first[1] - '0');
  while (!text.empty()) {
    const std::string_view line = takeLine(text);
    if (line.size() >= 2) {
      room.send(topicOf(line[0]), line.substr(2), waitOf(line[1]));
    }
  }
  return 0;
}
