#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace fyn::productionrules {

/** How much of who is there the detector misses, of the last minute mostly. */
class MissedShare {
 public:
  /** So many people are there at tick `now`, in milliseconds, and so many of them were not seen. */
  void add(std::size_t people, std::size_t missed, std::uint32_t now);

  /** 0 to 1; 0 while nobody has been there. */
  double value() const { return mPeople > 0 ? mMissed / mPeople : 0; }

 private:
  std::optional<std::uint32_t> mLatest;
  double mPeople = 0;
  double mMissed = 0;
};

}  // namespace fyn::productionrules
