#include "service/DecisionDocument.h"

#include <nlohmann/json.hpp>

namespace fyn::productionrules {

namespace {

template <typename Value>
void addUnless(nlohmann::ordered_json& document, const char* key, const Value& value, const Value& nothing) {
  if (value != nothing) {
    document[key] = value;
  }
}

void addType(nlohmann::ordered_json& document, const char* key, FramingType type) {
  if (type != FramingType::NONE) {
    document[key] = framingTypeName(type);
  }
}

std::string textOf(const nlohmann::json& document, const char* key) {
  return document.value(key, std::string());
}

// An integer member, `absent` without it. A fraction is refused as a text is: it may lie outside of the type.
template <typename Number>
Number numberOf(const nlohmann::json& document, const char* key, Number absent) {
  const auto member = document.find(key);
  return member == document.end()
             ? absent
             : static_cast<Number>(member->get_ref<const nlohmann::json::number_integer_t&>());
}

// The value up to `last` that has a member's text.
template <typename Enum, typename Text>
std::optional<Enum> valueOf(const std::string& member, Enum last, Text text) {
  for (int i = 0; i <= static_cast<int>(last); ++i) {
    if (member == text(static_cast<Enum>(i))) {
      return static_cast<Enum>(i);
    }
  }
  return std::nullopt;
}

FramingType typeOf(const nlohmann::json& document, const char* key) {
  return valueOf(textOf(document, key), FramingType::NONE, framingTypeName).value_or(FramingType::NONE);
}

std::optional<LayoutDecision> read(const nlohmann::json& document) {
  const auto kind = valueOf(textOf(document, "kind"), DecisionKind::Reset, decisionKindText);
  if (!kind) {
    return std::nullopt;
  }
  LayoutDecision decision;
  decision.kind = *kind;
  decision.streamId = numberOf(document, "streamid", 0);
  decision.from = typeOf(document, "from");
  decision.to = typeOf(document, "to");
  decision.difference =
      valueOf(textOf(document, "difference"), LayoutDifference::People, layoutDifferenceText)
          .value_or(LayoutDifference::None);
  decision.reason = textOf(document, "reason");
  decision.timer = textOf(document, "timer");
  decision.key = textOf(document, "key");
  decision.waitMs = numberOf(document, "waitMs", 0U);
  decision.waitedMs = numberOf(document, "waitedMs", 0U);
  decision.frameIndex = numberOf(document, "frameindex", -1);
  decision.headPosition = valueOf(textOf(document, "headPosition"), HeadPosition::CENTER, headPositionText)
                              .value_or(HeadPosition::CENTER);
  return decision;
}

}  // namespace

std::string decisionDocument(std::uint32_t ticks, const LayoutDecision& decision) {
  nlohmann::ordered_json document{
      {"t", ticks}, {"streamid", decision.streamId}, {"kind", decisionKindText(decision.kind)}};
  addType(document, "from", decision.from);
  addType(document, "to", decision.to);
  if (decision.difference != LayoutDifference::None) {
    document["difference"] = layoutDifferenceText(decision.difference);
  }
  addUnless(document, "reason", reasonText(decision), std::string());
  addUnless(document, "timer", decision.timer, std::string());
  addUnless(document, "key", decision.key, std::string());
  if (!decision.timer.empty() || decision.waitMs != 0) {
    document["waitMs"] = decision.waitMs;
    document["waitedMs"] = decision.waitedMs;
  }
  addUnless(document, "frameindex", decision.frameIndex, -1);
  if (decision.headPosition != HeadPosition::CENTER) {
    document["headPosition"] = headPositionText(decision.headPosition);
  }
  return document.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::optional<LayoutDecision> readDecision(const std::string& text) {
  try {
    return read(nlohmann::json::parse(text));
  } catch (const nlohmann::json::exception&) {
    return std::nullopt;
  }
}

}  // namespace fyn::productionrules
