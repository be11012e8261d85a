#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <unordered_map>
#include <vector>

#include "model/Head.h"

namespace fyn::productionrules {

/** One person, identified across all cameras, with one head per camera that sees the person. */
class FynHead {
 public:
  /** The camera id of "any camera" and of "no camera": -1 as unsigned. */
  static constexpr std::uint32_t kNoCamera = 0xFFFFFFFFU;

  /** Reads a person of a vision document. A missing "fynId" is logged and leaves the id negative. */
  void from_json(const nlohmann::json& document);

  /** Appends every camera and sorts the list from the best view to the worst. */
  void updateFeedPriorityList();

  /** The head in that camera or null; kNoCamera gives the first entry of the map in its iteration order. */
  std::shared_ptr<Head> getHead(std::uint32_t camId) const;

  /** Like getHead, without sharing ownership and without a log line; null when there is none. */
  const Head* findHead(std::uint32_t camId) const {
    const auto first = mCamIdAssocHeadMap.begin();
    // Asked hundreds of times per result, mostly of people whom one camera sees.
    const bool isFirst = first != mCamIdAssocHeadMap.end() && (first->first == camId || camId == kNoCamera);
    const auto entry = isFirst ? first : mCamIdAssocHeadMap.find(camId);
    return entry != mCamIdAssocHeadMap.end() ? entry->second.get() : nullptr;
  }

  /** Takes the head under its camera and its id as the person's; the feed priority list is not rebuilt. For
   * hosts that make persons themselves. */
  void setHead(const std::shared_ptr<Head>& head);

  /** The camera with the best view; kNoCamera, with an error logged, when there is none. */
  std::uint32_t getTopFeedPriorityCamID() const;

  /** The head in the camera with the best view; null, with a log line, when it has none. For hosts. */
  std::shared_ptr<Head> getTopFeedPriorityHead() const;

  /** Whether the feed priority list names that camera. For hosts. */
  bool isFeedPriorityAvailable(int camId) const;

  /** Whether another camera has the best view now. For hosts. */
  bool hasTopFeedPriorityCameraChanged(std::uint32_t camId) const;

  /** Person id; negative means invalid. */
  std::int32_t id = -1;
  std::unordered_map<std::uint32_t, std::shared_ptr<Head>> mCamIdAssocHeadMap;
  /** Cameras from best to worst view. */
  std::vector<std::uint32_t> feedPriorityList;
};

}  // namespace fyn::productionrules
