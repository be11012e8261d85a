#include "tools/video/vision/NetDetector.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "model/Geometry.h"
#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

using nlohmann::json;

constexpr int kRow = 7;
constexpr int kLargestSide = 4096;

std::string besideModel(const std::string& name, const std::string& file) {
  return name.empty() ? name : (std::filesystem::path(file).parent_path() / name).string();
}

NetModel modelOf(const json& document, const std::string& path) {
  NetModel model;
  model.network = besideModel(document.at("network").get<std::string>(), path);
  model.config = besideModel(document.value("config", ""), path);
  model.size = {document.value("width", 300), document.value("height", 300)};
  model.scale = document.value("scale", 1.0);
  const std::vector<double> mean = document.value("mean", std::vector<double>(3, 0.0));
  model.wanted = document.value("class", 1);
  model.threshold = document.value("threshold", 0.5);
  const std::string finds = document.value("finds", "heads");
  if (model.size.width < 1 || model.size.height < 1 || model.size.width > kLargestSide ||
      model.size.height > kLargestSide || mean.size() != 3 || (finds != "heads" && finds != "bodies")) {
    throw UsageError(path + ": the size, \"mean\" or \"finds\" cannot be used");
  }
  model.mean = {mean[0], mean[1], mean[2]};
  model.findsBodies = finds == "bodies";
  return model;
}

}  // namespace

NetModel readNetModel(const std::string& path) {
  std::ifstream file(path);
  if (!file) {
    throw UsageError(path + ": cannot be read");
  }
  try {
    return modelOf(json::parse(file), path);
  } catch (const json::exception& fault) {
    throw UsageError(path + ": " + fault.what());
  }
}

NetDetector::NetDetector(NetModel model) : mModel(std::move(model)) {
  try {
    mNet = cv::dnn::readNet(mModel.network, mModel.config);
  } catch (const cv::Exception& fault) {
    throw UsageError(mModel.network + ": cannot be read as a network: " + fault.err);
  }
}

std::vector<Detection> NetDetector::detect(const cv::Mat& picture, std::size_t /*camera*/,
                                           std::int64_t /*frame*/) {
  mNet.setInput(cv::dnn::blobFromImage(picture, mModel.scale, mModel.size, mModel.mean));
  return detectionsOf(mNet.forward(), mModel);
}

std::vector<Detection> detectionsOf(const cv::Mat& output, const NetModel& model) {
  std::vector<Detection> found;
  if (output.empty() || output.type() != CV_32F || !output.isContinuous() || output.total() % kRow != 0) {
    throw std::runtime_error("the network's output is not a list of boxes");
  }
  const auto* row = output.ptr<float>();
  for (std::size_t left = output.total(); left >= kRow; left -= kRow, row += kRow) {
    const double certainty = row[2];
    const cv::Rect2d whole(0, 0, kOutputSize.width, kOutputSize.height);
    const cv::Rect2d box(row[3] * whole.width, row[4] * whole.height, (row[5] - row[3]) * whole.width,
                         (row[6] - row[4]) * whole.height);
    const bool isBox = std::isfinite(box.x) && std::isfinite(box.y) && box.width > 0 && box.height > 0 &&
                       !(box & whole).empty();
    if (std::lround(row[1]) == model.wanted && certainty >= model.threshold && isBox) {
      Detection detection;
      detection.box = model.findsBodies ? headOfBody(box & whole) : box & whole;
      detection.score = std::min(certainty, 1.0);
      found.push_back(detection);
    }
  }
  return found;
}

}  // namespace fyn::productionrules::video
