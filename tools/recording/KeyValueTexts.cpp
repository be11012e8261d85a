#include "tools/recording/KeyValueTexts.h"

#include "platform/TextFile.h"
#include "tools/prb/UsageError.h"

namespace fyn::productionrules {

KeyValues keyValues(const std::vector<std::string>& texts) {
  KeyValues values;
  for (const std::string& text : texts) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0) {
      throw UsageError("'" + text + "' must be KEY=VALUE");
    }
    values.emplace_back(text.substr(0, equals), text.substr(equals + 1));
  }
  return values;
}

std::optional<std::string> readConfiguration(const std::string& path) {
  if (path.empty()) {
    return std::nullopt;
  }
  std::optional<std::string> text = readTextFile(path);
  if (!text) {
    throw UsageError("cannot read the configuration file " + path);
  }
  return text;
}

}  // namespace fyn::productionrules
