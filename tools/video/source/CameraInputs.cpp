#include "tools/video/source/CameraInputs.h"

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

using nlohmann::json;

std::string besideFile(const std::string& input, const std::string& file) {
  const std::filesystem::path path(input);
  return path.is_absolute() ? input : (std::filesystem::path(file).parent_path() / path).string();
}

CameraInput cameraOf(const json& entry, const std::string& file) {
  CameraInput camera;
  camera.input = besideFile(entry.at("input").get<std::string>(), file);
  camera.from = entry.at("from").get<double>();
  camera.to = entry.at("to").get<double>();
  if (!(camera.from < camera.to)) {
    throw UsageError(file + ": \"from\" of " + camera.input + " must be less than \"to\"");
  }
  return camera;
}

}  // namespace

std::vector<CameraInput> readCalibration(const std::string& path) {
  std::ifstream file(path);
  if (!file) {
    throw UsageError(path + ": cannot be read");
  }
  try {
    std::vector<CameraInput> cameras;
    const json document = json::parse(file);
    for (const json& entry : document.at("cameras")) {
      cameras.push_back(cameraOf(entry, path));
    }
    if (cameras.empty()) {
      throw UsageError(path + ": names no camera");
    }
    return cameras;
  } catch (const json::exception& fault) {
    throw UsageError(path + ": " + fault.what());
  }
}

std::vector<CameraInput> cameraInputs(const std::vector<std::string>& inputs,
                                      const std::string& calibration) {
  if (inputs.empty() == calibration.empty()) {
    throw UsageError("name either the inputs or a calibration file");
  }
  if (!calibration.empty()) {
    return readCalibration(calibration);
  }
  std::vector<CameraInput> cameras;
  for (const std::string& input : inputs) {
    const auto place = static_cast<double>(cameras.size());
    cameras.push_back({input, place, place + 1});
  }
  return cameras;
}

}  // namespace fyn::productionrules::video
