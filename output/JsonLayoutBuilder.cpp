#include "output/JsonLayoutBuilder.h"

#include "model/Arithmetic.h"
#include "model/FynCamerasConfig.h"
#include "output/LayoutTimers.h"
#include "output/OrderedObject.h"
#include "output/StreamObject.h"
#include "platform/Ticks.h"

namespace fyn::productionrules {

namespace {

JsonText area(const Rect& rect) {
  return OrderedObject(4)
      .add("xoffset", rect.left)
      .add("yoffset", rect.top)
      .add("width", wrapSub(rect.right, rect.left))
      .add("height", wrapSub(rect.bottom, rect.top))
      .take();
}

// The keys that every scene entry has; `further` is the number of keys to come.
OrderedObject sceneEntry(const Rect& source, const Rect& dest, int camId, std::int32_t frameIndex,
                         const Dimension& imageSize, std::size_t further) {
  OrderedObject entry(6 + further);
  entry.add("cameraid", camId)
      .add("fynCamId", camId)
      .add("srcRef", OrderedObject(2).add("width", imageSize.width).add("height", imageSize.height).take())
      .add("source", area(source))
      .add("dest", area(dest))
      .add("frameindex", frameIndex);
  return entry;
}

int cameraOf(const Frame& frame) {
  return static_cast<std::int32_t>(frame.fynCamId);
}

Dimension imageSizeOf(const Frame& frame) {
  return frame.srcRef == Dimension{} ? getCameraLensModelDimension(cameraOf(frame)) : frame.srcRef;
}

// An entry from which another device can make the frame again.
JsonText sharedEntry(const Frame& frame) {
  return sceneEntry(frame.source, frame.dest, cameraOf(frame), frame.frameIndex, imageSizeOf(frame), 3)
      .add("frameType", framingTypeName(frame.frameType))
      .add("frameLayout", frameLayoutName(frame.frameLayout))
      .add("heads", frame.fynHeads)
      .take();
}

// All numbers 0 and the type NONE: as a frame is at the beginning.
Frame blankFrame(int camId) {
  Frame frame;
  frame.fynCamId = static_cast<std::uint32_t>(camId);
  return frame;
}

std::vector<JsonText> emptyScene(const Layout& layout, bool debug) {
  std::vector<JsonText> entries;
  entries.reserve(layout.frames.size() * (debug ? 2 : 1) + 1);
  return entries;
}

std::string uidOf(int camId) {
  const auto& cameras = FynCamerasConfig::get().fynCamInfoMap;
  const auto camera = cameras.find(camId);
  return camera != cameras.end() ? camera->second.ids.uid : std::string();
}

std::string documentOf(const std::vector<JsonText>& streams) {
  return OrderedObject(2).add("version", 1).add("streams", streams).take().text;
}

}  // namespace

std::string JsonLayoutBuilder::generateMultiStreamLayout(const std::vector<Layout>& layouts,
                                                         const std::uint32_t& sceneCounter, FramingMode mode,
                                                         bool debug) const {
  const SceneDocument document{sceneCounter, getWallTs64()};
  std::vector<JsonText> streams;
  streams.reserve(layouts.size());
  for (const Layout& layout : layouts) {
    std::vector<JsonText> scene = emptyScene(layout, debug);
    for (const Frame& frame : layout.frames) {
      generateJsonSceneFor(frame.source, frame.dest, cameraOf(frame), frame.frameIndex, imageSizeOf(frame),
                           scene);
      if (debug) {
        generateJsonSceneForDebugBounds(frame.detectionBoundary, scene);
      }
    }
    if (layout.frames.empty()) {
      generateBlankJsonScene(FynCamerasConfig::get().fynCamId, scene);
    }
    streams.push_back(streamObject(document, layout, streams.size(), mode, scene));
  }
  return documentOf(streams);
}

std::string JsonLayoutBuilder::generateMultiStreamLayoutPrimary(const std::vector<Layout>& layouts,
                                                                const std::uint32_t& sceneCounter,
                                                                FramingMode mode, int ownCamId,
                                                                bool debug) const {
  const SceneDocument document{sceneCounter, getWallTs64()};
  const std::string uid = uidOf(ownCamId);
  std::vector<JsonText> streams;
  streams.reserve(layouts.size());
  for (const Layout& layout : layouts) {
    std::vector<JsonText> scene = emptyScene(layout, debug);
    for (const Frame& frame : layout.frames) {
      generateJsonSceneForPrimary(frame, scene);
      if (debug) {
        generateJsonSceneForDebugBounds(frame.detectionBoundary, scene);
      }
    }
    if (layout.frames.empty()) {
      generateJsonSceneForPrimary(blankFrame(ownCamId), scene);
    }
    streams.push_back(primaryStreamObject(document, layout, streams.size(), mode, uid, scene));
  }
  return documentOf(streams);
}

std::string JsonLayoutBuilder::generateSecondaryLayout(const std::vector<Layout>& layouts,
                                                       const std::uint32_t& sceneCounter, int camId,
                                                       const std::string& uid, bool /*debug*/) const {
  const SceneDocument document{sceneCounter, getWallTs64()};
  std::vector<JsonText> streams;
  streams.reserve(layouts.size());
  for (const Layout& layout : layouts) {
    std::vector<JsonText> scene = emptyScene(layout, false);
    for (const Frame& frame : layout.frames) {
      if (cameraOf(frame) == camId) {
        generateJsonSceneForSecondary(frame, scene);
      }
    }
    if (scene.empty()) {
      generateJsonSceneForSecondary(blankFrame(camId), scene);
    }
    streams.push_back(secondaryStreamObject(document, layout, streams.size(), uid, scene));
  }
  return documentOf(streams);
}

void JsonLayoutBuilder::generateJsonSceneFor(const Rect& source, const Rect& dest, int camId,
                                             std::int32_t frameIndex,
                                             const std::optional<Dimension>& imageSize,
                                             std::vector<JsonText>& target) const {
  const Dimension size = imageSize ? *imageSize : getCameraLensModelDimension(camId);
  target.push_back(sceneEntry(source, dest, camId, frameIndex, size, 0).take());
}

void JsonLayoutBuilder::generateJsonSceneForPrimary(const Frame& frame, std::vector<JsonText>& target) const {
  target.push_back(sharedEntry(frame));
}

void JsonLayoutBuilder::generateJsonSceneForSecondary(const Frame& frame,
                                                      std::vector<JsonText>& target) const {
  target.push_back(sharedEntry(frame));
}

void JsonLayoutBuilder::generateJsonSceneForDebugBounds(const Rect& bounds,
                                                        std::vector<JsonText>& target) const {
  target.push_back(OrderedObject(1).add("debugBounds", area(bounds)).take());
}

void JsonLayoutBuilder::generateBlankJsonScene(int camId, std::vector<JsonText>& target) const {
  generateJsonSceneFor(Rect{}, Rect{}, camId, 0, std::nullopt, target);
}

std::string JsonLayoutBuilder::generateLayout(const std::vector<std::pair<Rect, Rect>>& views,
                                              const std::string& animation, std::int64_t frameNumber,
                                              std::int64_t adjustmentFrame) const {
  const int camId = FynCamerasConfig::get().fynCamId;
  std::vector<JsonText> scene;
  std::int32_t frameIndex = 0;
  for (const auto& [source, dest] : views) {
    generateJsonSceneFor(source, dest, camId, frameIndex++, std::nullopt, scene);
  }
  return OrderedObject(5)
      .add("frameNumber", frameNumber)
      .add("adjustmentFrame", adjustmentFrame)
      .add("animation", animation)
      .add("timestamp", getWallTs64())
      .add("scene", scene)
      .take()
      .text;
}

std::string JsonLayoutBuilder::generateDebugTimerInfo(
    const std::vector<std::shared_ptr<Layout>>& finalLayouts,
    const std::vector<std::shared_ptr<Layout>>& nextLayouts) const {
  const std::uint32_t tick = GetTicks();
  OrderedObject document(2);
  updateLayoutTimers(finalLayouts, document, tick, kCurrentLayoutKey);
  updateLayoutTimers(nextLayouts, document, tick, kNextLayoutKey);
  return document.take().text;
}

std::string JsonLayoutBuilder::generatePeopleCountJson(unsigned faceCount,
                                                       unsigned smallestFaceHeight) const {
  return OrderedObject(2)
      .add("face_count", faceCount)
      .add("smallestFaceHeight", smallestFaceHeight)
      .take()
      .text;
}

}  // namespace fyn::productionrules
