#include "layouts/speaker/MissedShare.h"

#include <cmath>

namespace fyn::productionrules {

namespace {

constexpr double kMemoryMs = 60000;

}  // namespace

void MissedShare::add(std::size_t people, std::size_t missed, std::uint32_t now) {
  const double kept = mLatest ? std::exp(-static_cast<double>(now - *mLatest) / kMemoryMs) : 0;
  mPeople = kept * mPeople + static_cast<double>(people);
  mMissed = kept * mMissed + static_cast<double>(missed);
  mLatest = now;
}

}  // namespace fyn::productionrules
