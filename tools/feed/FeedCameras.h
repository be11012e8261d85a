#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>

#include "model/Geometry.h"

namespace fyn::productionrules {

/** What camera documents have told of the cameras of a room. */
class FeedCameras {
 public:
  /** The schema file of a camera topic's documents, such as "camera.json"; "" for any other topic. */
  static std::string schemaOf(const std::string& topic);

  /** Takes a document of such a topic that has no fault by its schema. */
  void take(const std::string& topic, const nlohmann::json& document);

  /** Whether documents have told which cameras there are. */
  bool areTold() const { return !mTold.empty(); }
  bool isTold(std::int32_t camera) const { return mTold.count(camera) != 0; }

  /** In pixels; the size that the service takes where none is told. */
  Dimension imageSize(std::int32_t camera) const;
  bool isSizeTold(std::int32_t camera) const { return mSizes.count(camera) != 0; }

 private:
  std::int32_t mOwn = 0;
  std::set<std::int32_t> mTold;
  std::map<std::int32_t, Dimension> mSizes;
};

}  // namespace fyn::productionrules
