#include "tools/recording/CompactPayload.h"

#include "tools/recording/CompactHandler.h"

namespace fyn::productionrules {

void writePayload(CompactText& text, const std::string& payload) {
  const std::size_t first = payload.find_first_not_of(" \t\r\n");
  if (first != std::string::npos && (payload[first] == '{' || payload[first] == '[')) {
    std::string compact;
    compact.reserve(payload.size());
    CompactText value(compact);
    CompactHandler handler(value);
    if (nlohmann::json::sax_parse(payload, &handler)) {
      text.json(compact);
      return;
    }
  }
  text.string(payload);
}

}  // namespace fyn::productionrules
