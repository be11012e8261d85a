#include "tools/video/vision/ChosenDetector.h"

#include <filesystem>
#include <fstream>

#include "platform/VisionSettings.h"
#include "tools/base/UsageError.h"
#include "tools/video/vision/CascadeDetector.h"
#include "tools/video/vision/FaceNetDetector.h"
#include "tools/video/vision/HogDetector.h"
#include "tools/video/vision/NetDetector.h"
#include "tools/video/vision/ScriptedDetector.h"

namespace fyn::productionrules::video {

namespace {

/** What serves when nobody has chosen. */
std::unique_ptr<PersonDetector> usualDetector(const std::string& network) {
  if (std::filesystem::exists(network)) {
    return std::make_unique<FaceNetDetector>(network);
  }
  PRB_LOGW("prb-vision",
           "%s is not there, so only people whose whole body is in view are found; tools/setup/fetch.sh "
           "model fetches it",
           network.c_str());
  return std::make_unique<HogDetector>();
}

}  // namespace

std::unique_ptr<PersonDetector> makeDetector(const VisionArguments& arguments) {
  if (!arguments.script.empty()) {
    std::ifstream script(arguments.script);
    if (!script) {
      throw UsageError(arguments.script + ": cannot be read");
    }
    return std::make_unique<ScriptedDetector>(script, arguments.script);
  }
  if (!arguments.model.empty()) {
    return std::make_unique<NetDetector>(readNetModel(arguments.model));
  }
  if (arguments.detector == "faces") {
    return std::make_unique<CascadeDetector>(arguments.cascades);
  }
  if (arguments.detector == "bodies") {
    return std::make_unique<HogDetector>();
  }
  const std::string network = arguments.models + "/faces.onnx";
  if (arguments.detector == "rooms") {
    return std::make_unique<FaceNetDetector>(network);
  }
  return usualDetector(network);
}

}  // namespace fyn::productionrules::video
