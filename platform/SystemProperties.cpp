#include "platform/SystemProperties.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <string_view>
#include <system_error>

#include "platform/ServiceState.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {
constexpr const char* kTag = "SystemProperties";
}

int property_set(const char* key, const char* value) {
  return ServiceState::current().properties().set(key, value) ? 0 : -1;
}

std::optional<int> parsePropertyInt(const std::string& text) {
  int value = 0;
  const char* const end = text.data() + text.size();
  const auto [stopped, fault] = std::from_chars(text.data(), end, value);
  return fault == std::errc() && stopped == end ? std::optional(value) : std::nullopt;
}

std::optional<bool> parsePropertyBool(const std::string& text) {
  struct Word {
    std::string_view text;
    bool value;
  };
  static constexpr std::array<Word, 10> kWords{{{"1", true},
                                                {"true", true},
                                                {"yes", true},
                                                {"on", true},
                                                {"y", true},
                                                {"0", false},
                                                {"false", false},
                                                {"no", false},
                                                {"off", false},
                                                {"n", false}}};
  std::string lower = text;
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  for (const Word& word : kWords) {
    if (word.text == lower) {
      return word.value;
    }
  }
  return std::nullopt;
}

}  // namespace fyn::productionrules

namespace fyn {

namespace {

template <typename Value>
bool readProperty(const char* key, Value& value, std::optional<Value> (*parse)(const std::string&),
                  const char* kind) {
  using namespace productionrules;
  const std::optional<std::string> text = ServiceState::current().properties().get(key);
  if (!text) {
    return false;
  }
  const std::optional<Value> parsed = parse(*text);
  if (!parsed) {
    PRB_LOGW(kTag, "property %s is not %s: \"%s\", it counts as not set", key, kind, text->c_str());
    return false;
  }
  value = *parsed;
  return true;
}

}  // namespace

bool PropertyIntItem::readToArg(int& value) const {
  return readProperty<int>(mKey, value, productionrules::parsePropertyInt, "an integer");
}

bool PropertyBoolItem::readToArg(bool& value) const {
  return readProperty<bool>(mKey, value, productionrules::parsePropertyBool, "a boolean");
}

}  // namespace fyn
