#pragma once

#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <string_view>

#include "model/Arithmetic.h"

/**
 * Numbers of incoming documents. They accept and refuse what the JSON library's `get<T>` does, with its
 * errors, and convert as it does; only a float that does not fit gives a defined value instead of undefined
 * behaviour.
 */
namespace fyn::productionrules::fields {

/** Any number, converted; towards zero, and the smallest integer when a float does not fit. Refuses booleans.
 */
inline std::int64_t toInt64(const nlohmann::json& value) {
  if (!value.is_number_float()) {
    return value.get<std::int64_t>();
  }
  constexpr double kLimit = 9223372036854775808.0;
  const double number = *value.get_ptr<const double*>();
  return number >= -kLimit && number < kLimit ? static_cast<std::int64_t>(number)
                                              : std::numeric_limits<std::int64_t>::min();
}

/** The low 32 bits of an integer; a float towards zero, the smallest integer when out of range. Accepts
 * booleans. */
inline std::int32_t toInt32(const nlohmann::json& value) {
  return value.is_number_float() ? truncate(*value.get_ptr<const double*>()) : value.get<std::int32_t>();
}

/** The low 32 bits of any number towards zero. Accepts booleans. */
inline std::uint32_t toUint32(const nlohmann::json& value) {
  return value.is_number_float() ? static_cast<std::uint32_t>(toInt64(value)) : value.get<std::uint32_t>();
}

/** The member `key` when there is one; null for an absent one and for values that are no objects. */
inline const nlohmann::json* findMember(const nlohmann::json& document, std::string_view key) {
  const auto found = document.find(key);
  return found != document.end() ? &*found : nullptr;
}

}  // namespace fyn::productionrules::fields
