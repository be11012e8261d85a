#include "tools/meeting/VisionResult.h"

#include "model/Head.h"
#include "platform/Topics.h"
#include "tools/recording/CompactText.h"

namespace fyn::productionrules {

namespace {

/** The rank of a view, by the service's own rule. */
std::int64_t rankOfView(const SeenHead& seen, const Dimension& image) {
  Head head;
  head.yaw = static_cast<float>(seen.yaw.value_or(static_cast<int>(head.yaw)));
  head.imageQuality =
      static_cast<float>(seen.box.bottom - seen.box.top) / static_cast<float>(image.height) * 100.0F;
  head.calculateQfactor();
  return head.qfactor;
}

void writeHead(CompactText& text, const SeenPerson& person, const SeenHead& head, const Dimension& image) {
  text.open('{');
  text.member("id", person.id);
  text.member("isSpeaker", head.speaking);
  text.member("bbox", head.box);
  text.member("ssb", head.selectionBox);
  text.member("yaw", head.yaw);
  text.member("pitch", head.pitch);
  text.member("qfactor", rankOfView(head, image));
  text.member("score", head.score);
  text.member("camId", head.camera);
  text.close('}');
}

BusMessage imageSizeMessage(std::size_t camera, const Dimension& image) {
  BusMessage message{"/cameraParameters/head/" + std::to_string(camera), ""};
  CompactText text(message.payload);
  text.open('{');
  text.member("imageWidth", image.width);
  text.member("imageHeight", image.height);
  text.close('}');
  return message;
}

BusMessage cameraListMessage(std::size_t count) {
  BusMessage message{"/cameras", ""};
  CompactText text(message.payload);
  text.open('[');
  for (std::size_t camera = 0; camera < count; ++camera) {
    text.open('{');
    text.member("isAttached", true);
    text.key("ids");
    text.open('{');
    text.member("fynCamId", static_cast<std::int64_t>(camera));
    text.member("moduleId", "");
    text.member("uid", "camera-" + std::to_string(camera));
    text.member("componentId", 0);
    text.member("cameraLensModel", "Quil Lumen K5");
    text.close('}');
    text.key("caps");
    text.open('{');
    text.member("hasIcd", true);
    text.member("hasProductionRules", true);
    text.close('}');
    text.close('}');
  }
  text.close(']');
  return message;
}

}  // namespace

BusMessage visionMessage(const VisionResult& result, const std::vector<MeetingCamera>& cameras) {
  BusMessage message{std::string(topics::kVisionResult), ""};
  CompactText text(message.payload);
  text.open('{');
  text.member("timestamp", result.t);
  text.member("frameNumber", result.frameNumber);
  text.key("heads");
  text.open('[');
  for (const SeenPerson& person : result.persons) {
    text.open('{');
    text.member("fynId", person.id);
    text.key("associatedHeads");
    text.open('[');
    for (const SeenHead& head : person.heads) {
      writeHead(text, person, head, cameras.at(static_cast<std::size_t>(head.camera)).image);
    }
    text.close(']');
    text.close('}');
  }
  text.close(']');
  text.close('}');
  return message;
}

Truth truthOf(const VisionResult& result) {
  Truth truth;
  for (const SeenPerson& person : result.persons) {
    for (const SeenHead& head : person.heads) {
      truth.heads.push_back({person.id, head.camera, head.box, head.speaking});
    }
  }
  return truth;
}

std::vector<BusMessage> cameraMessages(const std::vector<MeetingCamera>& cameras) {
  std::vector<BusMessage> messages{{"/camera", R"({"fynCamId":0})"}, cameraListMessage(cameras.size())};
  for (std::size_t camera = 0; camera < cameras.size(); ++camera) {
    messages.push_back(imageSizeMessage(camera, cameras[camera].image));
  }
  return messages;
}

}  // namespace fyn::productionrules
