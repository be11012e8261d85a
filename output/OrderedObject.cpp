#include "output/OrderedObject.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace fyn::productionrules {

namespace {

// A key with its quotes and a value of four digits or one nested in another object.
constexpr std::size_t kUsualMember = 24;

bool isPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return c >= ' ' && c < '\x7F' && c != '"' && c != '\\'; });
}

std::string quoted(std::string_view text) {
  if (isPlain(text)) {
    return '"' + std::string(text) + '"';
  }
  // A camera names itself in any bytes; what is no UTF-8 must not stop a scene.
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

OrderedObject::OrderedObject(std::size_t keys) {
  mText.reserve(keys * kUsualMember);
}

OrderedObject& OrderedObject::add(const char* key, std::string_view text) {
  return addRaw(key, quoted(text));
}

OrderedObject& OrderedObject::add(const char* key, const std::vector<JsonText>& array) {
  return addArray(key, array, [](const JsonText& value) -> const std::string& { return value.text; });
}

OrderedObject& OrderedObject::add(const char* key, const std::set<std::int64_t>& array) {
  return addArray(key, array, [](std::int64_t number) { return std::to_string(number); });
}

JsonText OrderedObject::take() {
  mText += mText.empty() ? "{}" : "}";
  return {std::move(mText)};
}

OrderedObject& OrderedObject::addRaw(const char* key, std::string_view value) {
  mText += mText.empty() ? "{\"" : ",\"";
  mText.append(key).append("\":").append(value);
  return *this;
}

template <typename Array, typename TextOf>
OrderedObject& OrderedObject::addArray(const char* key, const Array& array, TextOf textOf) {
  addRaw(key, "[");
  const char* separator = "";
  for (const auto& value : array) {
    mText.append(separator).append(textOf(value));
    separator = ",";
  }
  mText += ']';
  return *this;
}

}  // namespace fyn::productionrules
