#include "model/FynCamInfo.h"

#include <array>

#include "model/JsonNumber.h"

namespace fyn::productionrules {

namespace {

struct LensModel {
  const char* name;
  Dimension imageSize;
};

constexpr std::array<LensModel, 2> kLensModels{
    {{"Quil Lumen K5", {1280, 720}}, {"Quil Lumen R6", {3192, 512}}}};

Dimension imageSizeOf(const std::string& lensModel) {
  for (const LensModel& model : kLensModels) {
    if (lensModel == model.name) {
      return model.imageSize;
    }
  }
  return kDefaultImageSize;
}

void read(const nlohmann::json& document, const char* key, std::int32_t& field) {
  if (const auto* const value = fields::findMember(document, key)) {
    field = fields::toInt32(*value);
  }
}

void read(const nlohmann::json& document, const char* key, std::string& field) {
  if (const auto* const value = fields::findMember(document, key)) {
    field = value->get<std::string>();
  }
}

void read(const nlohmann::json& document, const char* key, bool& field) {
  if (const auto* const value = fields::findMember(document, key)) {
    field = value->get<bool>();
  }
}

const char* boolText(bool value) {
  return value ? "true" : "false";
}

}  // namespace

void FynIds::from_json(const nlohmann::json& document) {
  read(document, "fynCamId", fynCamId);
  read(document, "moduleId", moduleId);
  read(document, "uid", uid);
  read(document, "componentId", componentId);
  read(document, "cameraLensModel", cameraLensModel);
  lensModelDimension = imageSizeOf(cameraLensModel);
}

std::string FynIds::str() const {
  return R"({"fynCamId":)" + std::to_string(fynCamId) + R"(,"moduleId":")" + moduleId + R"(","uid":")" + uid +
         R"(","componentId":)" + std::to_string(componentId) + R"(,"lensModel":")" + cameraLensModel +
         R"(","lensModelDimension":[)" + lensModelDimension.str() + "]}";
}

void FynCaps::from_json(const nlohmann::json& document) {
  read(document, "hasIcd", hasIcd);
  read(document, "hasProductionRules", hasProductionRules);
}

std::string FynCaps::str() const {
  return std::string(R"({"hasIcd":)") + boolText(hasIcd) + R"(,"hasProductionRules":)" +
         boolText(hasProductionRules) + "}";
}

void FynCamInfo::from_json(const nlohmann::json& document) {
  read(document, "isAttached", isAttached);
  if (const auto* const value = fields::findMember(document, "ids")) {
    ids.from_json(*value);
  }
  if (const auto* const value = fields::findMember(document, "caps")) {
    caps.from_json(*value);
  }
}

std::string FynCamInfo::str() const {
  return std::string(R"({"isAttached":)") + boolText(isAttached) + R"(,"ids":)" + ids.str() + R"(,"caps":)" +
         caps.str() + "}";
}

void FynCameras::from_json(const nlohmann::json& document) {
  reserve(size() + document.size());
  for (const nlohmann::json& element : document) {
    FynCamInfo camera;
    camera.from_json(element);
    push_back(std::move(camera));
  }
}

}  // namespace fyn::productionrules
