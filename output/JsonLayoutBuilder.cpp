#include "output/JsonLayoutBuilder.h"

#include "model/Arithmetic.h"
#include "model/FynCamerasConfig.h"
#include "output/LayoutTimers.h"
#include "output/OrderedObject.h"
#include "output/StreamObject.h"
#include "platform/Ticks.h"

namespace fyn::productionrules {

namespace {

using nlohmann::ordered_json;

// A camera names itself in any bytes; what is no UTF-8 must not stop a scene.
std::string textOf(const ordered_json& document) {
  return document.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

ordered_json area(const Rect& rect) {
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
ordered_json sharedEntry(const Frame& frame) {
  return sceneEntry(frame.source, frame.dest, cameraOf(frame), frame.frameIndex, imageSizeOf(frame), 3)
      .add("frameType", framingTypeName(frame.frameType))
      .add("frameLayout", frameLayoutName(frame.frameLayout))
      .add("heads", ordered_json(frame.fynHeads))
      .take();
}

// All numbers 0 and the type NONE: as a frame is at the beginning.
Frame blankFrame(int camId) {
  Frame frame;
  frame.fynCamId = static_cast<std::uint32_t>(camId);
  return frame;
}

ordered_json emptyScene(const Layout& layout, bool debug) {
  ordered_json::array_t entries;
  entries.reserve(layout.frames.size() * (debug ? 2 : 1) + 1);
  return entries;
}

std::string uidOf(int camId) {
  const auto& cameras = FynCamerasConfig::get().fynCamInfoMap;
  const auto camera = cameras.find(camId);
  return camera != cameras.end() ? camera->second.ids.uid : std::string();
}

std::string documentOf(ordered_json::array_t&& streams) {
  return textOf(OrderedObject(2).add("version", 1).add("streams", std::move(streams)).take());
}

}  // namespace

std::string JsonLayoutBuilder::generateMultiStreamLayout(const std::vector<Layout>& layouts,
                                                         const std::uint32_t& sceneCounter, FramingMode mode,
                                                         bool debug) const {
  const SceneDocument document{sceneCounter, getWallTs64()};
  ordered_json::array_t streams;
  streams.reserve(layouts.size());
  for (const Layout& layout : layouts) {
    ordered_json scene = emptyScene(layout, debug);
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
    streams.push_back(streamObject(document, layout, streams.size(), mode, std::move(scene)));
  }
  return documentOf(std::move(streams));
}

std::string JsonLayoutBuilder::generateMultiStreamLayoutPrimary(const std::vector<Layout>& layouts,
                                                                const std::uint32_t& sceneCounter,
                                                                FramingMode mode, int ownCamId,
                                                                bool debug) const {
  const SceneDocument document{sceneCounter, getWallTs64()};
  const std::string uid = uidOf(ownCamId);
  ordered_json::array_t streams;
  streams.reserve(layouts.size());
  for (const Layout& layout : layouts) {
    ordered_json scene = emptyScene(layout, debug);
    for (const Frame& frame : layout.frames) {
      generateJsonSceneForPrimary(frame, scene);
      if (debug) {
        generateJsonSceneForDebugBounds(frame.detectionBoundary, scene);
      }
    }
    if (layout.frames.empty()) {
      generateJsonSceneForPrimary(blankFrame(ownCamId), scene);
    }
    streams.push_back(primaryStreamObject(document, layout, streams.size(), mode, uid, std::move(scene)));
  }
  return documentOf(std::move(streams));
}

std::string JsonLayoutBuilder::generateSecondaryLayout(const std::vector<Layout>& layouts,
                                                       const std::uint32_t& sceneCounter, int camId,
                                                       const std::string& uid, bool /*debug*/) const {
  const SceneDocument document{sceneCounter, getWallTs64()};
  ordered_json::array_t streams;
  streams.reserve(layouts.size());
  for (const Layout& layout : layouts) {
    ordered_json scene = emptyScene(layout, false);
    for (const Frame& frame : layout.frames) {
      if (cameraOf(frame) == camId) {
        generateJsonSceneForSecondary(frame, scene);
      }
    }
    if (scene.empty()) {
      generateJsonSceneForSecondary(blankFrame(camId), scene);
    }
    streams.push_back(secondaryStreamObject(document, layout, streams.size(), uid, std::move(scene)));
  }
  return documentOf(std::move(streams));
}

void JsonLayoutBuilder::generateJsonSceneFor(const Rect& source, const Rect& dest, int camId,
                                             std::int32_t frameIndex,
                                             const std::optional<Dimension>& imageSize,
                                             ordered_json& target) const {
  const Dimension size = imageSize ? *imageSize : getCameraLensModelDimension(camId);
  target.push_back(sceneEntry(source, dest, camId, frameIndex, size, 0).take());
}

void JsonLayoutBuilder::generateJsonSceneForPrimary(const Frame& frame, ordered_json& target) const {
  target.push_back(sharedEntry(frame));
}

void JsonLayoutBuilder::generateJsonSceneForSecondary(const Frame& frame, ordered_json& target) const {
  target.push_back(sharedEntry(frame));
}

void JsonLayoutBuilder::generateJsonSceneForDebugBounds(const Rect& bounds, ordered_json& target) const {
  target.push_back(OrderedObject(1).add("debugBounds", area(bounds)).take());
}

void JsonLayoutBuilder::generateBlankJsonScene(int camId, ordered_json& target) const {
  generateJsonSceneFor(Rect{}, Rect{}, camId, 0, std::nullopt, target);
}

std::string JsonLayoutBuilder::generateLayout(const std::vector<std::pair<Rect, Rect>>& views,
                                              const std::string& animation, std::int64_t frameNumber,
                                              std::int64_t adjustmentFrame) const {
  const int camId = FynCamerasConfig::get().fynCamId;
  ordered_json scene = ordered_json::array();
  std::int32_t frameIndex = 0;
  for (const auto& [source, dest] : views) {
    generateJsonSceneFor(source, dest, camId, frameIndex++, std::nullopt, scene);
  }
  return textOf(OrderedObject(5)
                    .add("frameNumber", frameNumber)
                    .add("adjustmentFrame", adjustmentFrame)
                    .add("animation", animation)
                    .add("timestamp", getWallTs64())
                    .add("scene", std::move(scene))
                    .take());
}

std::string JsonLayoutBuilder::generateDebugTimerInfo(
    const std::vector<std::shared_ptr<Layout>>& finalLayouts,
    const std::vector<std::shared_ptr<Layout>>& nextLayouts) const {
  const std::uint32_t tick = GetTicks();
  ordered_json document;
  updateLayoutTimers(finalLayouts, document, tick, kCurrentLayoutKey);
  updateLayoutTimers(nextLayouts, document, tick, kNextLayoutKey);
  return textOf(document);
}

std::string JsonLayoutBuilder::generatePeopleCountJson(unsigned faceCount,
                                                       unsigned smallestFaceHeight) const {
  return textOf(
      OrderedObject(2).add("face_count", faceCount).add("smallestFaceHeight", smallestFaceHeight).take());
}

}  // namespace fyn::productionrules
