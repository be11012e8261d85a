#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "model/FynCamInfo.h"

namespace fyn::productionrules {

/** The cameras of the room and which of them is this device's own. One per service state, touched only from
 * the dispatch thread. */
class FynCamerasConfig {
 public:
  /** Says in the log that it is made. */
  FynCamerasConfig();

  /** The one in force, made on first use. */
  static const FynCamerasConfig& get();
  static FynCamerasConfig& getMutable();

  /** More than any room has. What came once is kept, so ids without end would slow every result. */
  static constexpr std::size_t kMostCameras = 64;

  /** Whether there is room for one more camera beside `known` others; when not, that is said once. */
  bool hasRoom(std::size_t known);

  /** Takes a record under its id, in place of one that is there; ignored without room. */
  void take(const FynCamInfo& camera);

  /** Replaces the map by the attached cameras of a list, as far as there is room; of two with one id the
   * first stays. */
  void update(const FynCameras& cameras);

  /** Image size in pixels. A camera that is not listed has 1280 x 720 when its id is 0 or -1, else 0 x 0. */
  Dimension getCameraLensModelDimension(int camId) const;

  /** Makes a record for a camera that is not listed (not attached, all else default); ignored without room.
   */
  void setCameraLensModelDimension(int camId, const Dimension& dimension);

  /** Whether any camera of the map is a 360-degree one, by its lens model. */
  bool isSecondary360Camera() const;

  /** The camera type of the "/camera" document; nothing while it is unknown. */
  std::optional<std::int32_t> getCameraType() const { return cameraType; }

  std::string str() const;

  std::map<std::int32_t, FynCamInfo> fynCamInfoMap;
  /** This device's own camera; -1 before anything sets it. */
  std::int32_t fynCamId = -1;
  /** The camera that wins ties of the feed priority; -1 before anything sets it. */
  std::int32_t forCamId = -1;
  std::optional<std::int32_t> cameraType;

 private:
  bool isKnownOrFits(std::int32_t camId);

  bool mIsFullSaid = false;
};

/** Image size in pixels of a camera; 1280 x 720 for -1 and for a camera that is not listed. */
Dimension getCameraLensModelDimension(int camId);

}  // namespace fyn::productionrules
