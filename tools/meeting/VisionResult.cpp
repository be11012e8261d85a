#include "tools/meeting/VisionResult.h"

#include "model/Head.h"
#include "platform/Topics.h"
#include "tools/recording/CompactText.h"

namespace fyn::productionrules {

namespace {

/** Writes members of objects. */
class Members {
 public:
  explicit Members(CompactText& text) : mText(text) {}

  void number(const char* key, std::int64_t value) const {
    mText.key(key);
    mText.integer(value);
  }
  void number(const char* key, const std::optional<int>& value) const {
    if (value) {
      number(key, *value);
    }
  }
  void flag(const char* key, bool value) const {
    mText.key(key);
    mText.boolean(value);
  }
  void text(const char* key, const std::string& value) const {
    mText.key(key);
    mText.string(value);
  }
  void rectangle(const char* key, const Rect& value) const {
    mText.key(key);
    mText.open('{');
    number("left", std::int64_t{value.left});
    number("top", std::int64_t{value.top});
    number("right", std::int64_t{value.right});
    number("bottom", std::int64_t{value.bottom});
    mText.close('}');
  }

 private:
  CompactText& mText;
};

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
  const Members members(text);
  text.open('{');
  members.number("id", std::int64_t{person.id});
  members.flag("isSpeaker", head.speaking);
  members.rectangle("bbox", head.box);
  if (head.selectionBox) {
    members.rectangle("ssb", *head.selectionBox);
  }
  members.number("yaw", head.yaw);
  members.number("pitch", head.pitch);
  members.number("qfactor", rankOfView(head, image));
  members.number("score", head.score);
  members.number("camId", std::int64_t{head.camera});
  text.close('}');
}

BusMessage imageSizeMessage(std::size_t camera, const Dimension& image) {
  BusMessage message{"/cameraParameters/head/" + std::to_string(camera), ""};
  CompactText text(message.payload);
  const Members members(text);
  text.open('{');
  members.number("imageWidth", std::int64_t{image.width});
  members.number("imageHeight", std::int64_t{image.height});
  text.close('}');
  return message;
}

BusMessage cameraListMessage(std::size_t count) {
  BusMessage message{"/cameras", ""};
  CompactText text(message.payload);
  const Members members(text);
  text.open('[');
  for (std::size_t camera = 0; camera < count; ++camera) {
    text.open('{');
    members.flag("isAttached", true);
    text.key("ids");
    text.open('{');
    members.number("fynCamId", static_cast<std::int64_t>(camera));
    members.text("moduleId", "");
    members.text("uid", "camera-" + std::to_string(camera));
    members.number("componentId", std::int64_t{0});
    members.text("cameraLensModel", "Quil Lumen K5");
    text.close('}');
    text.key("caps");
    text.open('{');
    members.flag("hasIcd", true);
    members.flag("hasProductionRules", true);
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
  const Members members(text);
  text.open('{');
  members.number("timestamp", result.t);
  members.number("frameNumber", result.frameNumber);
  text.key("heads");
  text.open('[');
  for (const SeenPerson& person : result.persons) {
    text.open('{');
    members.number("fynId", std::int64_t{person.id});
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

std::vector<BusMessage> cameraMessages(const std::vector<MeetingCamera>& cameras) {
  std::vector<BusMessage> messages{{"/camera", R"({"fynCamId":0})"}, cameraListMessage(cameras.size())};
  for (std::size_t camera = 0; camera < cameras.size(); ++camera) {
    messages.push_back(imageSizeMessage(camera, cameras[camera].image));
  }
  return messages;
}

}  // namespace fyn::productionrules
