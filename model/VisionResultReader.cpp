#include "model/VisionResultReader.h"

#include <nlohmann/json.hpp>

#include "model/MLData.h"

namespace fyn::productionrules {

std::shared_ptr<MLData> VisionResultReader::read(const std::string& text) {
  std::shared_ptr<MLData> result = mFast.read(text);
  if (result == nullptr) {
    result = std::make_shared<MLData>();
    result->from_json(nlohmann::json::parse(text));
  }
  return result;
}

}  // namespace fyn::productionrules
