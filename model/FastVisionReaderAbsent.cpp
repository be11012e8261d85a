// Stands in for FastVisionReader.cpp on a build without simdjson.
#include "model/FastVisionReader.h"
#include "model/MLData.h"

namespace fyn::productionrules {

struct FastVisionReader::Parser {};

FastVisionReader::FastVisionReader() = default;
FastVisionReader::~FastVisionReader() = default;

std::shared_ptr<MLData> FastVisionReader::read(const std::string& /*text*/) {
  return nullptr;
}

bool FastVisionReader::isBuilt() {
  return false;
}

}  // namespace fyn::productionrules
