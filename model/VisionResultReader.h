#pragma once

#include <memory>
#include <string>

#include "model/FastVisionReader.h"

namespace fyn::productionrules {

class MLData;

/** Reads the texts of vision results: the usual ones fast, all others by way of a JSON document. */
class VisionResultReader {
 public:
  VisionResultReader() = default;
  virtual ~VisionResultReader() = default;
  VisionResultReader(const VisionResultReader&) = delete;
  VisionResultReader& operator=(const VisionResultReader&) = delete;

  /** The result, which nobody changes from then on; raises the JSON library's errors for what is no JSON or
   * has wrong types. */
  virtual std::shared_ptr<MLData> read(const std::string& text);

 private:
  FastVisionReader mFast;
};

}  // namespace fyn::productionrules
