#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace fyn::productionrules {

/**
 * Random numbers that are the same on every machine: SplitMix64 (G. L. Steele, D. Lea, C. H. Flood, "Fast
 * splittable pseudorandom number generators", OOPSLA 2014), integer arithmetic only.
 */
class Random {
 public:
  /** The generator as its authors give it. */
  explicit Random(std::uint64_t seed) : mState(seed) {}

  /** Streams of one seed are independent of each other. */
  Random(std::uint64_t seed, std::uint64_t stream) : mState(seed * kStreamStep + stream) {
    mState = next() ^ (stream << 32U);
  }

  std::uint64_t next() {
    mState += 0x9E3779B97F4A7C15U;
    std::uint64_t bits = mState;
    bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EBU;
    return bits ^ (bits >> 31U);
  }

  /** 0 .. `count` - 1; `count` is at least 1 and far below 2^64. */
  std::size_t below(std::size_t count) { return static_cast<std::size_t>(next() % count); }

  /** From `least` to `most`, both included, evenly (to 2^-32 of the range). */
  std::int64_t between(std::int64_t least, std::int64_t most) {
    const auto count = static_cast<std::uint64_t>(most - least) + 1;
    return least + static_cast<std::int64_t>(((next() >> 32U) * count) >> 32U);
  }

  /** True in `parts` of a million cases. */
  bool chance(std::int64_t parts) { return between(0, 999'999) < parts; }

 private:
  static constexpr std::uint64_t kStreamStep = 0xD1342543DE82EF95U;

  std::uint64_t mState;
};

/** A point of a distribution: `parts` of a thousand values are at most `value`. */
struct Quantile {
  std::int64_t parts;
  std::int64_t value;
};

/** A value of the distribution through these points, straight between them; the first has 0 parts, the last
 * 1000. */
template <std::size_t N>
std::int64_t draw(Random& random, const std::array<Quantile, N>& points) {
  const std::int64_t part = random.between(0, 999'999);
  std::size_t upper = 1;
  while (points[upper].parts * 1000 <= part) {
    ++upper;
  }
  const Quantile& low = points[upper - 1];
  const Quantile& high = points[upper];
  return low.value + (high.value - low.value) * (part - low.parts * 1000) / ((high.parts - low.parts) * 1000);
}

}  // namespace fyn::productionrules
