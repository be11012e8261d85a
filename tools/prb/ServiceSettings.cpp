#include "tools/prb/ServiceSettings.h"

#include <unistd.h>

#include <array>
#include <cstdlib>

#include "config/ConfigKeys.h"
#include "platform/ServiceState.h"
#include "platform/TextFile.h"
#include "platform/linux/BusAddress.h"
#include "tools/settings/PresetUse.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kUsualFile = "/etc/fyn.conf";

std::string namedFile(std::string path) {
  const char* const named = std::getenv("FYN_CONF_NAME");
  return path.empty() && named != nullptr ? named : path;
}

KeyValues pairsOf(const std::string& text) {
  KeyValues pairs;
  forEachConfigLine(text, [&pairs](std::string_view key, std::string_view value, int /*line*/) {
    pairs.emplace_back(key, value);
  });
  return pairs;
}

}  // namespace

SettingsOfThisMachine::SettingsOfThisMachine(std::string path)
    : mNamed(namedFile(std::move(path))), mPath(mNamed.empty() ? kUsualFile : mNamed) {}

ServiceSettings SettingsOfThisMachine::read() const {
  ServiceSettings settings;
  ServiceState::current().properties().forEach([&settings](const std::string& key, const std::string& value) {
    const ConfigKey* const row = findConfigKey(key);
    if (row != nullptr && row->source == ConfigSource::Property) {
      settings.properties.emplace_back(key, value);
    }
  });
  const std::optional<std::string> text = readTextFile(mPath);
  if (text) {
    settings.configuration = pairsOf(*text);
  } else if (mNamed.empty()) {
    settings.configuration = pairsOf(presetNamed("recommended"));
  }
  return settings;
}

std::string SettingsOfThisMachine::configurationName() const {
  if (readTextFile(mPath)) {
    return mPath;
  }
  return (mNamed.empty() ? "the recommended one, because there is no " : "none, because there is no ") +
         mPath;
}

bool isBusOfThisMachine(const std::string& bus) {
  const std::string host = parseBusAddress(bus).host;
  std::array<char, 256> own{};
  gethostname(own.data(), own.size() - 1);
  return host == "localhost" || host == "::1" || host.rfind("127.", 0) == 0 || host == own.data();
}

}  // namespace fyn::productionrules
