#include "model/Frame.h"

#include "model/Arithmetic.h"
#include "model/JsonNumber.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "FramingUtil";

std::set<std::int64_t> readIds(const nlohmann::json& document) {
  if (!document.is_array()) {
    // Raises the library's own error for the wrong kind.
    return document.get<std::set<std::int64_t>>();
  }
  std::set<std::int64_t> ids;
  for (const nlohmann::json& id : document) {
    ids.insert(fields::toInt64(id));
  }
  return ids;
}

// One coordinate of a picture that is `from` pixels wide or high, in one of `to` pixels; 0 when `from` is 0.
std::int32_t scaled(std::int32_t coordinate, std::int32_t to, std::int32_t from) {
  return wrapDiv(wrapMul(coordinate, to), from);
}

}  // namespace

void Frame::from_json(const nlohmann::json& document, int destWidth, int destHeight) {
  frameIndex = fields::toInt32(document.at("frameindex"));
  if (const auto* const type = fields::findMember(document, "frameType")) {
    productionrules::from_json(*type, frameType);
  }
  if (const auto* const shape = fields::findMember(document, "frameLayout")) {
    productionrules::from_json(*shape, frameLayout);
  }
  fynCamId = fields::toUint32(document.at("fynCamId"));
  const std::set<std::int64_t> ids = readIds(document.at("heads"));
  heads.insert(ids.begin(), ids.end());
  fynHeads.insert(ids.begin(), ids.end());

  const nlohmann::json& view = document.at("source");
  source.left = fields::toInt32(view.at("xoffset"));
  source.top = fields::toInt32(view.at("yoffset"));
  source.right = wrapAdd(source.left, fields::toInt32(view.at("width")));
  source.bottom = wrapAdd(source.top, fields::toInt32(view.at("height")));

  const nlohmann::json& place = document.at("dest");
  const std::int32_t x = fields::toInt32(place.at("xoffset"));
  const std::int32_t y = fields::toInt32(place.at("yoffset"));
  const std::int32_t width = fields::toInt32(place.at("width"));
  const std::int32_t height = fields::toInt32(place.at("height"));
  dest.left = scaled(x, kOutputSize.width, destWidth);
  dest.top = scaled(y, kOutputSize.height, destHeight);
  dest.right = scaled(wrapAdd(x, width), kOutputSize.width, destWidth);
  dest.bottom = scaled(wrapAdd(y, height), kOutputSize.height, destHeight);

  const nlohmann::json& image = document.at("srcRef");
  srcRef.width = fields::toInt32(image.at("width"));
  srcRef.height = fields::toInt32(image.at("height"));
  PRB_LOGD(kTag, "%s srcRef [%d %d] dest [%d %d] position %d %d %d %d", "from_json", srcRef.width,
           srcRef.height, width, height, dest.left, dest.top, dest.right, dest.bottom);
}

}  // namespace fyn::productionrules
