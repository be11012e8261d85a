#pragma once

#include <cstdint>
#include <limits>

/**
 * Integer pixel arithmetic that is defined for every number a document can carry: results that leave 32 bits
 * wrap, and a float out of range becomes the smallest integer, as the device's processor does it.
 */
namespace fyn::productionrules {

constexpr std::int32_t wrapAdd(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

constexpr std::int32_t wrapSub(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

constexpr std::int32_t wrapMul(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

/** Quotient towards zero. Division by zero gives 0; the smallest integer by -1 wraps to itself. */
constexpr std::int32_t wrapDiv(std::int32_t a, std::int32_t b) {
  if (b == 0) {
    return 0;
  }
  return b == -1 ? wrapSub(0, a) : a / b;
}

/** Half towards zero. */
constexpr std::int32_t halve(std::int32_t value) {
  return value / 2;
}

/** Towards zero. Not a number and everything out of range give the smallest integer. */
constexpr std::int32_t truncate(double value) {
  constexpr double kSmallest = std::numeric_limits<std::int32_t>::min();
  constexpr double kLargest = std::numeric_limits<std::int32_t>::max();
  // Written so that not-a-number fails the test too.
  if (!(value > kSmallest - 1.0 && value < kLargest + 1.0)) {
    return std::numeric_limits<std::int32_t>::min();
  }
  return static_cast<std::int32_t>(value);
}

}  // namespace fyn::productionrules
