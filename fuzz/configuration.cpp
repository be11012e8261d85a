// A configuration file, checked and loaded, and its lines as properties; then a result under it.
#include "config/check/ConfigCheck.h"
#include "config/check/KeyRules.h"
#include "fuzz/FuzzRoom.h"
#include "platform/TextFile.h"
#include "platform/Topics.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace fyn::productionrules;
  const std::string_view text = fuzzText(data, size);
  checkConfiguration(text);
  SetProperties properties;
  ReplaceConfig configuration;
  forEachConfigLine(text, [&](std::string_view key, std::string_view value, int /*line*/) {
    properties.values.emplace_back(key, value);
    configuration.values.emplace_back(key, value);
  });
  // One: it looks for the nearest of all keys.
  if (!properties.values.empty()) {
    faultOfProperty(properties.values.back().first, properties.values.back().second);
  }
  FuzzRoom room(4, 0);
  constexpr const char* kResult =
      R"({"heads":[{"fynId":1,"associatedHeads":[{"id":1,"camId":0,"fynCamId":0,"isSpeaker":true,)"
      R"("bbox":{"left":600,"top":200,"right":680,"bottom":300}}]}]})";
  room.send(topics::kVisionResult, kResult, 0);
  room.replay().handle({0, properties});
  room.replay().handle({0, configuration});
  room.send(topics::kControl, control::kConfigChange, 0);
  for (int results = 0; results < 4; ++results) {
    room.send(topics::kVisionResult, kResult, 5000);
  }
  return 0;
}
