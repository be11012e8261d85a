#include "layouts/cycle/LayoutDecision.h"

#include <algorithm>
#include <array>

namespace fyn::productionrules {

namespace {

template <std::size_t N, typename Enum>
const char* textOf(const std::array<const char*, N>& texts, Enum value) {
  const auto index = static_cast<std::size_t>(value);
  return index < N ? texts[index] : "";
}

}  // namespace

const char* decisionKindText(DecisionKind kind) {
  static constexpr std::array<const char*, 9> kTexts{"pending",      "dropped",          "adopted",
                                                     "reframeWait",  "reframeCancelled", "reframed",
                                                     "feedPriority", "secondary",        "reset"};
  return textOf(kTexts, kind);
}

const char* layoutDifferenceText(LayoutDifference difference) {
  static constexpr std::array<const char*, 8> kTexts{"nothing",
                                                     "there was no picture yet",
                                                     "the kind of layout",
                                                     "the number of frames",
                                                     "the tiles",
                                                     "the people",
                                                     "the camera",
                                                     "no switch is needed"};
  return textOf(kTexts, difference);
}

LayoutDifference findLayoutDifference(const Layout* current, const Layout& candidate) {
  if (current == nullptr) {
    return LayoutDifference::FirstPicture;
  }
  if (current->layoutType != candidate.layoutType) {
    return LayoutDifference::LayoutType;
  }
  if (current->frames.size() != candidate.frames.size()) {
    return LayoutDifference::FrameCount;
  }
  const auto differs = [&](auto isDifferent) {
    return !std::equal(current->frames.begin(), current->frames.end(), candidate.frames.begin(),
                       [&](const Frame& a, const Frame& b) { return !isDifferent(a, b); });
  };
  if (differs([](const Frame& a, const Frame& b) { return a.dest != b.dest; })) {
    return LayoutDifference::Placement;
  }
  if (differs([](const Frame& a, const Frame& b) { return a.heads != b.heads; })) {
    return LayoutDifference::People;
  }
  if (differs([](const Frame& a, const Frame& b) { return a.fynCamId != b.fynCamId; })) {
    return LayoutDifference::Camera;
  }
  return LayoutDifference::People;
}

}  // namespace fyn::productionrules
