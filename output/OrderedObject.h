#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <utility>

namespace fyn::productionrules {

/** One object of a document, made key by key in the order of the text. Every key may be added once only. */
class OrderedObject {
 public:
  /** `keys` is the number of keys to come: growing later would copy every key. */
  explicit OrderedObject(std::size_t keys) { mMembers.reserve(keys); }

  /** Adds a member behind all others. */
  template <typename Value>
  OrderedObject& add(const char* key, Value&& value) {
    // Not operator[], which compares the key with every one before it.
    mMembers.emplace_back(key, std::forward<Value>(value));
    return *this;
  }

  /** The finished object; this one is empty afterwards. */
  nlohmann::ordered_json take() { return nlohmann::ordered_json(std::move(mMembers)); }

 private:
  nlohmann::ordered_json::object_t mMembers;
};

}  // namespace fyn::productionrules
