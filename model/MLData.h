#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "model/FynHead.h"

namespace fyn::productionrules {

/** One vision result: the persons seen in one video frame. */
class MLData {
 public:
  /** Reads a vision document. Invalid persons are logged and dropped; wrong JSON types raise the JSON
   * library's errors. */
  void from_json(const nlohmann::json& document);

  const std::vector<std::shared_ptr<FynHead>>& getHeads() const { return heads; }

  /** The persons whose first head speaks, in order. For hosts. */
  std::vector<std::shared_ptr<FynHead>> getSpeakers() const;

  /** For hosts that make a vision result themselves. */
  void setHeads(const std::vector<std::shared_ptr<FynHead>>& newHeads);

  /** Sorts the persons by their place in camera `camId`, left to right; persons it does not see come last, by
   * camera. For hosts; the engines sort whom they show. */
  void sortFynHeads(int camId);

  /** Same persons with equal heads, and the same frame number and time. */
  bool equals(const MLData& other) const;

  /** "timestamp: 1, headcount:2" */
  std::string str() const;

  /** Time of the vision frame, as its pipeline counts it. */
  std::int64_t timestamp = 0;
  std::vector<std::shared_ptr<FynHead>> heads;
  std::int64_t frameNumber = 0;
};

}  // namespace fyn::productionrules
