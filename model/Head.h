#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "model/Geometry.h"

namespace fyn::productionrules {

/** One person's head as one camera sees it. */
class Head {
 public:
  virtual ~Head() = default;

  /** Reads the keys that are present; the JSON library's errors on wrong types. */
  void from_json(const nlohmann::json& document);

  /** Same id, speaking state and box; nothing else counts. */
  bool equals(const Head& other) const;

  /** JSON text for logs and the debug dump. */
  std::string str() const;

  /** Sets `imageQuality`: head height as a percentage of the image height of the camera `fynCamId`. For
   * hosts. */
  void calculatImageQuality();

  /** Sets `qfactor`: rank of the view from yaw and image quality; 0 when the yaw is not a number. For hosts
   * and tools; a vision result brings its own. */
  void calculateQfactor();

  /** Id of the head within its camera. */
  std::int64_t id = -1;
  bool isSpeaker = false;
  /** Camera pixels. */
  Rect bbox;
  /** Selection box for speaker framing, camera pixels; zero when there is none. */
  Rect ssb;
  /** Per cent of the image height. */
  float imageQuality = 1.0F;
  /** Degrees of head turn. */
  float yaw = 10.0F;
  /** Degrees of head tilt. */
  std::int32_t pitch = 45;
  /** Rank of the view; smaller is better. */
  std::uint32_t qfactor = 1;
  double score = 0;
  std::int32_t camId = -1;
  std::int32_t fynCamId = -1;
  std::vector<std::int32_t> subsetSpeakers;
  std::vector<std::int32_t> proximityGroup;
  std::vector<std::int32_t> explicitGroup;
  std::vector<std::int32_t> extendedGroup;
};

/** Makes a new head and reads it. */
void from_json(const nlohmann::json& document, std::shared_ptr<Head>& head);

}  // namespace fyn::productionrules
