// Vision results through the whole service: the first line begins with the digits of mode and role, each
// further line is a result, half a second after the one before.
#include "fuzz/FuzzRoom.h"
#include "platform/Topics.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace fyn::productionrules;
  constexpr std::int64_t kWaitMs = 500;
  std::string_view text = fuzzText(data, size);
  const std::string_view first = takeLine(text);
  FuzzRoom room(first.empty() ? 1 : first[0] - '0', first.size() < 2 ? 0 : first[1] - '0');
  room.send(topics::kCamera, R"({"fynCamId":0})", 0);
  while (!text.empty()) {
    room.send(topics::kVisionResult, takeLine(text), kWaitMs);
  }
  return 0;
}
