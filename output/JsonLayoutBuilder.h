#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model/Layout.h"
#include "output/OrderedObject.h"

namespace fyn::productionrules {

/**
 * Builds the documents that leave the service, compact and with their keys in a fixed order. It has no state:
 * the scene counter is its owner's and is only written out. Texts that are not UTF-8 go out with U+FFFD in
 * the place of what is wrong.
 */
class JsonLayoutBuilder {
 public:
  /** The scenes of a device that sends no layouts to other cameras. */
  std::string generateMultiStreamLayout(const std::vector<Layout>& layouts, const std::uint32_t& sceneCounter,
                                        FramingMode mode, bool debug) const;

  /** The scenes of a primary device, whose own camera is `ownCamId`. */
  std::string generateMultiStreamLayoutPrimary(const std::vector<Layout>& layouts,
                                               const std::uint32_t& sceneCounter, FramingMode mode,
                                               int ownCamId, bool debug) const;

  /** What the device of camera `camId` is to show: of every layout the frames that are cut from that camera.
   * `uid` names the camera. There are no debug-bounds entries. */
  std::string generateSecondaryLayout(const std::vector<Layout>& layouts, const std::uint32_t& sceneCounter,
                                      int camId, const std::string& uid, bool debug) const;

  /** Appends one scene entry. Without an image size it is that of the camera's lens model. */
  void generateJsonSceneFor(const Rect& source, const Rect& dest, int camId, std::int32_t frameIndex,
                            const std::optional<Dimension>& imageSize, std::vector<JsonText>& target) const;

  /** Appends the scene entry of a frame with what another device needs to read the frame back. */
  void generateJsonSceneForPrimary(const Frame& frame, std::vector<JsonText>& target) const;
  void generateJsonSceneForSecondary(const Frame& frame, std::vector<JsonText>& target) const;

  /** Appends an entry that shows a boundary, in camera pixels, for debugging. */
  void generateJsonSceneForDebugBounds(const Rect& bounds, std::vector<JsonText>& target) const;

  /** Appends an entry that shows nothing, for a stream that has no frame. */
  void generateBlankJsonScene(int camId, std::vector<JsonText>& target) const;

  /** One scene of the own camera, from pairs of what to show (camera pixels) and where (output picture).
   * For hosts. */
  std::string generateLayout(const std::vector<std::pair<Rect, Rect>>& views, const std::string& animation,
                             std::int64_t frameNumber, std::int64_t adjustmentFrame) const;

  /** The timers of the layouts on air and of the pending ones, milliseconds that remain now. */
  std::string generateDebugTimerInfo(const std::vector<std::shared_ptr<Layout>>& finalLayouts,
                                     const std::vector<std::shared_ptr<Layout>>& nextLayouts) const;

  /** `smallestFaceHeight` in camera pixels. */
  std::string generatePeopleCountJson(unsigned faceCount, unsigned smallestFaceHeight) const;
};

}  // namespace fyn::productionrules
