#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "model/Geometry.h"

namespace fyn::productionrules {

/** What identifies a camera. */
struct FynIds {
  std::int32_t fynCamId = 0;
  std::string moduleId;
  std::string uid;
  std::int32_t componentId = 0;
  std::string cameraLensModel;
  /** Image size in pixels, from the lens model. */
  Dimension lensModelDimension = kDefaultImageSize;

  void from_json(const nlohmann::json& document);
  std::string str() const;
};

/** What a camera can do. */
struct FynCaps {
  bool hasIcd = false;
  bool hasProductionRules = false;

  void from_json(const nlohmann::json& document);
  std::string str() const;
};

/** One camera of the camera list. */
struct FynCamInfo {
  bool isAttached = false;
  FynIds ids;
  FynCaps caps;

  void from_json(const nlohmann::json& document);
  std::string str() const;
};

/** The camera list, in document order. */
class FynCameras : public std::vector<FynCamInfo> {
 public:
  /** Appends one camera per element; absent keys keep their defaults. */
  void from_json(const nlohmann::json& document);
};

}  // namespace fyn::productionrules
