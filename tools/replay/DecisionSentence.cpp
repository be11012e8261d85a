#include "tools/replay/DecisionSentence.h"

#include <array>
#include <cstdio>

namespace fyn::productionrules {

namespace {

// What a frame's subject did, in words.
const char* positionText(HeadPosition position) {
  static constexpr std::array<const char*, 9> kTexts{"the head is on the edge of the frame",
                                                     "the head is off the centre",
                                                     "the head is outside the frame",
                                                     "the head has left",
                                                     "the group has moved closer together",
                                                     "somebody has left the group",
                                                     "a head of the group is on the edge of the frame",
                                                     "a head of the group is outside the frame",
                                                     "the head is in the centre"};
  const auto index = static_cast<std::size_t>(position);
  return index < kTexts.size() ? kTexts[index] : "";
}

std::string secondsText(std::uint32_t milliseconds) {
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), "%.1f s", milliseconds / 1000.0);
  return text.data();
}

std::string waitText(const LayoutDecision& decision) {
  if (*decision.timer == '\0') {
    return "at once";
  }
  return "after " + secondsText(decision.waitedMs) + " (" + decision.timer + " " +
         std::to_string(decision.waitMs) + " ms)";
}

std::string typesText(const LayoutDecision& decision) {
  if (decision.from == decision.to) {
    return layoutToText(decision.to);
  }
  return std::string(layoutToText(decision.from)) + " -> " + layoutToText(decision.to);
}

std::string peopleText(unsigned persons) {
  return persons == 1 ? "1 person" : std::to_string(persons) + " people";
}

// The engine's own rule, where it named one.
std::string ruleText(const LayoutDecision& decision) {
  return *decision.reason != '\0' ? std::string(" (") + decision.reason + ")" : "";
}

std::string differenceText(const LayoutDecision& decision) {
  switch (decision.difference) {
    case LayoutDifference::None:
    case LayoutDifference::FirstPicture:
    case LayoutDifference::NoSwitchNeeded:
      return layoutDifferenceText(decision.difference);
    default:
      return std::string("the difference is ") + layoutDifferenceText(decision.difference);
  }
}

std::string whyText(const LayoutDecision& decision) {
  return differenceText(decision) + ruleText(decision);
}

}  // namespace

std::string clockText(std::int64_t milliseconds) {
  std::array<char, 48> text{};
  std::snprintf(
      text.data(), text.size(), "%02lld:%02lld.%03lld", static_cast<long long>(milliseconds / 60000),
      static_cast<long long>(milliseconds / 1000 % 60), static_cast<long long>(milliseconds % 1000));
  return text.data();
}

bool changesPicture(DecisionKind kind) {
  switch (kind) {
    case DecisionKind::Adopted:
    case DecisionKind::Reframed:
    case DecisionKind::FeedPriority:
    case DecisionKind::Secondary:
      return true;
    default:
      return false;
  }
}

std::string decisionSentence(const LayoutDecision& decision, unsigned persons) {
  const std::string stream =
      decision.streamId > 0 ? "stream " + std::to_string(decision.streamId) + ": " : "";
  const std::string frame = "frame " + std::to_string(decision.frameIndex);
  switch (decision.kind) {
    case DecisionKind::Pending:
      return stream + typesText(decision) + " waits " + secondsText(decision.waitMs) + ", " +
             whyText(decision);
    case DecisionKind::Dropped:
      return stream + layoutToText(decision.to) + " dropped " + waitText(decision) + ", " +
             (decision.difference == LayoutDifference::NoSwitchNeeded ? differenceText(decision)
                                                                      : "the scene went back") +
             ruleText(decision);
    case DecisionKind::Adopted:
      return stream + "new picture " + typesText(decision) + " for " + peopleText(persons) + ", " +
             whyText(decision) + ", " + waitText(decision);
    case DecisionKind::ReframeWait:
      return stream + frame + " waits " + secondsText(decision.waitMs) + ", " +
             positionText(decision.headPosition);
    case DecisionKind::ReframeCancelled:
      return stream + frame + " stays, the subject came back " + waitText(decision);
    case DecisionKind::Reframed:
      return stream + frame + " (" + layoutToText(decision.to) + ") framed anew, " +
             positionText(decision.headPosition) + ", " + waitText(decision);
    case DecisionKind::FeedPriority:
      return stream + frame + " shown by a better camera, " + waitText(decision);
    case DecisionKind::Secondary:
      return stream + "picture from the primary device, " + typesText(decision);
    case DecisionKind::Reset:
      return stream + "layouts forgotten, was " + layoutToText(decision.from);
  }
  return {};
}

}  // namespace fyn::productionrules
