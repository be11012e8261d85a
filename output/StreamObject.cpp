#include "output/StreamObject.h"

#include "output/LayoutTimers.h"

namespace fyn::productionrules {

namespace {

constexpr std::size_t kMostKeys = 17;

void addNumbers(OrderedObject& stream, const SceneDocument& document, const Layout& layout) {
  stream.add("streamid", layout.streamId)
      .add("isVirtualCamera", isVirtualCameraText(layout))
      .add("frameNumber", layout.frameNumber)
      .add("sceneNumber", document.sceneNumber);
}

void addMode(OrderedObject& stream, const Layout& layout, FramingMode mode) {
  stream.add("adjustmentFrame", layout.reframeFrameNumber).add("TrackingMode", framingModeToString(mode));
}

void addLayoutType(OrderedObject& stream, const Layout& layout) {
  stream.add("layoutType", layoutToText(layout.layoutType));
}

void addTransition(OrderedObject& stream, const SceneDocument& document, const Layout& layout) {
  stream.add("animation", layout.animation)
      .add("duration", layout.duration)
      .add("timestamp", document.timestamp)
      .add("destRef",
           OrderedObject(2).add("height", kOutputSize.height).add("width", kOutputSize.width).take())
      .add("facecount", layout.faceCount);
}

void addScene(OrderedObject& stream, const Layout& layout, std::size_t position,
              const std::vector<JsonText>& scene) {
  stream.add("activespeaker", layout.activeSpeaker).add("relativepos", position).add("scene", scene);
}

}  // namespace

JsonText streamObject(const SceneDocument& document, const Layout& layout, std::size_t position,
                      FramingMode mode, const std::vector<JsonText>& scene) {
  OrderedObject stream(kMostKeys);
  addNumbers(stream, document, layout);
  addMode(stream, layout, mode);
  addLayoutType(stream, layout);
  addTransition(stream, document, layout);
  addScene(stream, layout, position, scene);
  return stream.take();
}

JsonText primaryStreamObject(const SceneDocument& document, const Layout& layout, std::size_t position,
                             FramingMode mode, const std::string& uid, const std::vector<JsonText>& scene) {
  OrderedObject stream(kMostKeys);
  addNumbers(stream, document, layout);
  addMode(stream, layout, mode);
  stream.add("uid", uid);
  addTransition(stream, document, layout);
  addLayoutType(stream, layout);
  addScene(stream, layout, position, scene);
  return stream.take();
}

JsonText secondaryStreamObject(const SceneDocument& document, const Layout& layout, std::size_t position,
                               const std::string& uid, const std::vector<JsonText>& scene) {
  OrderedObject stream(kMostKeys);
  addNumbers(stream, document, layout);
  stream.add("uid", uid);
  addLayoutType(stream, layout);
  addTransition(stream, document, layout);
  addScene(stream, layout, position, scene);
  stream.add("nextLayout", layoutToText(layout.nextLayoutType));
  return stream.take();
}

}  // namespace fyn::productionrules
