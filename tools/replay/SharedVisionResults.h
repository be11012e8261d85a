#pragma once

#include <memory>
#include <string>

#include "model/MLData.h"
#include "model/VisionResultReader.h"

namespace fyn::productionrules {

/** Takes each text apart once, for the services of several replays that are handed it one after the other, on
 * one thread. */
class SharedVisionResults final : public VisionResultReader {
 public:
  std::shared_ptr<MLData> read(const std::string& text) override {
    if (mResult == nullptr || text != mText) {
      mResult = VisionResultReader::read(text);
      mText = text;
    }
    return mResult;
  }

 private:
  std::string mText;
  std::shared_ptr<MLData> mResult;
};

}  // namespace fyn::productionrules
