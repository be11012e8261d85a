#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace fyn::productionrules {

/** A finished part of a document, as compact JSON. */
struct JsonText {
  std::string text;
};

/**
 * One object of a document, written key by key in the order of the text: a scene goes out for every change of
 * the picture, and a tree of it would cost most of that. Every key may be added once only.
 */
class OrderedObject {
 public:
  /** `keys` is the number of keys to come, to make room for. */
  explicit OrderedObject(std::size_t keys);

  /** Adds a member behind all others. A text that is not UTF-8 goes out with U+FFFD in the place of what is
   * wrong. */
  template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
  OrderedObject& add(const char* key, Integer value) {
    static_assert(!std::is_same_v<Integer, bool>, "no document has a truth value");
    return addRaw(key, std::to_string(value));
  }
  OrderedObject& add(const char* key, std::string_view text);
  OrderedObject& add(const char* key, const JsonText& value) { return addRaw(key, value.text); }
  OrderedObject& add(const char* key, const std::vector<JsonText>& array);
  OrderedObject& add(const char* key, const std::set<std::int64_t>& array);

  /** The finished object; this one is empty afterwards. */
  JsonText take();

 private:
  OrderedObject& addRaw(const char* key, std::string_view value);
  template <typename Array, typename TextOf>
  OrderedObject& addArray(const char* key, const Array& array, TextOf textOf);

  std::string mText;
};

}  // namespace fyn::productionrules
