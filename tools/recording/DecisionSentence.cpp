#include "tools/recording/DecisionSentence.h"

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

// What set the wait, by the name that users know.
std::string waitName(const LayoutDecision& decision) {
  return decision.key.empty() ? decision.timer : decision.key;
}

std::string waitingText(const LayoutDecision& decision) {
  return secondsText(decision.waitMs) + (decision.timer.empty() ? "" : " (" + waitName(decision) + ")");
}

std::string waitText(const LayoutDecision& decision) {
  if (decision.timer.empty()) {
    return "at once";
  }
  return "after " + secondsText(decision.waitedMs) + " (" + waitName(decision) + " " +
         std::to_string(decision.waitMs) + " ms)";
}

std::string typesText(const LayoutDecision& decision) {
  if (decision.from == decision.to) {
    return layoutToText(decision.to);
  }
  return std::string(layoutToText(decision.from)) + " -> " + layoutToText(decision.to);
}

// What made the layout a different one, and in which of several frames.
std::string differenceText(const LayoutDecision& decision) {
  const char* const text = layoutDifferenceText(decision.difference);
  if (decision.difference == LayoutDifference::FirstPicture) {
    return text;
  }
  return std::string("the difference is ") + text +
         (decision.frameIndex >= 0 ? " of frame " + std::to_string(decision.frameIndex) : "");
}

std::string whyText(const LayoutDecision& decision) {
  const std::string reason = reasonText(decision);
  return differenceText(decision) + (reason.empty() ? "" : " (" + reason + ")");
}

// The sentence behind its title.
std::string restText(const LayoutDecision& decision) {
  switch (decision.kind) {
    case DecisionKind::Pending:
      return " " + waitingText(decision) + ", " + whyText(decision);
    case DecisionKind::Dropped:
      return " " + waitText(decision) + ", " + reasonText(decision);
    case DecisionKind::Adopted:
      return ", " + whyText(decision) + ", " + waitText(decision);
    case DecisionKind::ReframeWait:
      return " " + waitingText(decision) + ", " + positionText(decision.headPosition);
    case DecisionKind::ReframeCancelled:
      return ", the subject came back " + waitText(decision);
    case DecisionKind::Reframed:
      return std::string(", ") + positionText(decision.headPosition) + std::string(", ") + waitText(decision);
    case DecisionKind::FeedPriority:
      return ", " + waitText(decision);
    case DecisionKind::Secondary:
      return ", " + typesText(decision);
    case DecisionKind::Reset:
      return std::string(", was ") + layoutToText(decision.from);
  }
  return {};
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

std::string decisionTitle(const LayoutDecision& decision) {
  const std::string frame = "frame " + std::to_string(decision.frameIndex);
  switch (decision.kind) {
    case DecisionKind::Pending:
      return typesText(decision) + " waits";
    case DecisionKind::Dropped:
      return layoutToText(decision.to) + std::string(" dropped");
    case DecisionKind::Adopted:
      return "new picture " + typesText(decision);
    case DecisionKind::ReframeWait:
      return frame + " waits";
    case DecisionKind::ReframeCancelled:
      return frame + " stays";
    case DecisionKind::Reframed:
      return frame + " (" + layoutToText(decision.to) + ") framed anew";
    case DecisionKind::FeedPriority:
      return frame + " shown by a better camera";
    case DecisionKind::Secondary:
      return "picture from the primary device";
    case DecisionKind::Reset:
      return "layouts forgotten";
  }
  return {};
}

std::string decisionSentence(const LayoutDecision& decision) {
  const std::string stream =
      decision.streamId > 0 ? "stream " + std::to_string(decision.streamId) + ": " : "";
  return stream + decisionTitle(decision) + restText(decision);
}

}  // namespace fyn::productionrules
