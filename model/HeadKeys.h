#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace fyn::productionrules {

/** The keys of a head in a vision document, in ascending order, and the position of each in that order. */
enum HeadKey : std::size_t {
  kBbox,
  kCamId,
  kExplicitGroup,
  kExtendedGroup,
  kFynCamId,
  kId,
  kIsSpeaker,
  kPitch,
  kProximityGroup,
  kQfactor,
  kScore,
  kSsb,
  kSubsetSpeakers,
  kYaw,
  kHeadKeyCount
};

inline constexpr std::array<std::string_view, kHeadKeyCount> kHeadKeys{
    "bbox",           "camId", "explicitGroup",  "extendedGroup", "fynCamId", "id",
    "isSpeaker",      "pitch", "proximityGroup", "qfactor",       "score",    "ssb",
    "subsetSpeakers", "yaw"};

}  // namespace fyn::productionrules
