#include "tools/replay/ImageSizeHint.h"

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string_view>

#include "model/FynCamerasConfig.h"
#include "platform/PubSub.h"
#include "platform/Topics.h"
#include "tools/recording/DecisionSentence.h"

namespace fyn::productionrules {

namespace {

using nlohmann::json;

/** Heads stay where they are for longer than a second. */
constexpr std::uint64_t kEvery = 15;

std::int64_t edge(const json& box, const char* name) {
  const auto found = box.find(name);
  return found != box.end() && found->is_number() ? found->get<std::int64_t>() : 0;
}

/** Cheaper than to take a result apart, of which nearly all have nothing to tell. */
bool hasEdgeBeyond(const std::string& result, std::string_view name, std::int64_t limit) {
  for (std::size_t at = result.find(name); at != std::string::npos; at = result.find(name, at)) {
    at += name.size();
    if (std::strtoll(result.c_str() + at, nullptr, 10) > limit) {
      return true;
    }
  }
  return false;
}

}  // namespace

void ImageSizeHint::look(const RecordingEvent& event) {
  const auto* const message = std::get_if<BusMessage>(&event.what);
  if (message == nullptr || !mText.empty()) {
    return;
  }
  if (com::quil::pubsub::topicCovers(topics::kCameraParametersHead, message->topic)) {
    const std::size_t length = topics::kCameraParametersHead.size();
    mKnown.insert(message->topic.size() > length + 1
                      ? std::strtol(message->topic.c_str() + length + 1, nullptr, 10)
                      : 0);
  } else if (message->topic == topics::kVisionResult && mResults++ % kEvery == 0) {
    lookAtHeads(event, message->payload);
  }
}

void ImageSizeHint::lookAtHeads(const RecordingEvent& event, const std::string& result) {
  const Dimension assumed = getCameraLensModelDimension(-1);
  if (!hasEdgeBeyond(result, R"("right":)", assumed.width) &&
      !hasEdgeBeyond(result, R"("bottom":)", assumed.height)) {
    return;
  }
  try {
    const json document = json::parse(result);
    for (const json& person : document.at("heads")) {
      for (const json& head : person.at("associatedHeads")) {
        const std::int64_t camera = head.value("fynCamId", std::int64_t{0});
        const json& box = head.at("bbox");
        if (mKnown.count(camera) == 0 &&
            (edge(box, "right") > assumed.width || edge(box, "bottom") > assumed.height)) {
          mText = "no camera document tells the image size of camera " + std::to_string(camera) + ", so " +
                  std::to_string(assumed.width) + " x " + std::to_string(assumed.height) +
                  " is assumed, but at " + clockText(event.t) + " a head reaches to " +
                  std::to_string(edge(box, "right")) + ", " + std::to_string(edge(box, "bottom")) +
                  "; put its /cameraParameters/head" + (camera == 0 ? "" : "/" + std::to_string(camera)) +
                  " before the first vision result";
          return;
        }
      }
    }
  } catch (const json::exception&) {
    // The service says what is wrong with it.
  }
}

}  // namespace fyn::productionrules
