#include "tests/replay/ReadableEffects.h"

#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "platform/StderrLog.h"

namespace fyn::productionrules::testing {

namespace {

using nlohmann::ordered_json;

std::string number(const ordered_json& value) {
  return value.dump();
}

/** The text that `key` holds, before it a blank; nothing when there is none. */
std::string word(const ordered_json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() ? " " + found->get<std::string>() : "";
}

std::string box(const ordered_json& rect) {
  return "(" + number(rect["xoffset"]) + "," + number(rect["yoffset"]) + " " + number(rect["width"]) + "x" +
         number(rect["height"]) + ")";
}

std::string frameText(const ordered_json& entry) {
  if (const auto bounds = entry.find("debugBounds"); bounds != entry.end()) {
    return "  bounds " + box(*bounds);
  }
  std::string text = "  f" + number(entry["frameindex"]) + word(entry, "frameType") + " cam " +
                     number(entry["cameraid"]) + " " + box(entry["source"]) + " -> " + box(entry["dest"]);
  if (const auto heads = entry.find("heads"); heads != entry.end()) {
    text += " heads " + heads->dump();
  }
  return text;
}

std::string sceneText(const ordered_json& scene) {
  std::string text;
  for (const ordered_json& stream : scene["streams"]) {
    if (!text.empty()) {
      text += "\n     ";
    }
    if (stream["streamid"] != 0) {
      text += " stream " + number(stream["streamid"]);
    }
    text += " scene " + number(stream["sceneNumber"]) + word(stream, "TrackingMode") +
            word(stream, "layoutType") + word(stream, "animation") + " " + number(stream["duration"]) +
            " ms, faces " + number(stream["facecount"]);
    if (const auto uid = stream.find("uid"); uid != stream.end()) {
      text += " uid '" + uid->get<std::string>() + "'";
    }
    for (const ordered_json& entry : stream["scene"]) {
      text += frameText(entry);
    }
  }
  return text;
}

std::string timersText(const ordered_json& document) {
  const bool ofSeveralStreams = document["currentLayout"]["layouts"].size() > 1;
  std::string text;
  for (const auto& [half, value] : document.items()) {
    text += (ofSeveralStreams ? "\n      " : " ") + half + ":";
    for (const ordered_json& layout : value["layouts"]) {
      if (const ordered_json& frames = layout["frames"]; !frames.empty() && frames[0]["stream"] != 0) {
        text += "\n      stream " + number(frames[0]["stream"]);
      }
      text += word(layout, "layoutType") + " " + number(layout["layoutTimer"]) + " ms";
      for (const ordered_json& frame : layout["frames"]) {
        text += " f" + number(frame["frameindex"]) + word(frame, "headPosition") + " " +
                number(frame["frameTimer"]) + " ms";
      }
    }
  }
  return text;
}

std::string payloadText(const std::string& payload) {
  const ordered_json document = ordered_json::parse(payload, nullptr, false);
  if (document.is_object() && document.contains("streams")) {
    return sceneText(document);
  }
  if (document.is_object() && document.contains("currentLayout")) {
    return timersText(document);
  }
  return " " + payload;
}

std::string decisionText(const LayoutDecision& decision) {
  std::string text = decisionKindText(decision.kind);
  if (decision.streamId != 0) {
    text += " stream " + std::to_string(decision.streamId);
  }
  text += std::string(" ") + layoutToText(decision.from) + " -> " + layoutToText(decision.to);
  if (decision.difference != LayoutDifference::None) {
    text += std::string(", ") + layoutDifferenceText(decision.difference);
  }
  if (decision.frameIndex >= 0) {
    text += ", frame " + std::to_string(decision.frameIndex);
  }
  if (decision.headPosition != HeadPosition::CENTER) {
    text += std::string(" ") + headPositionText(decision.headPosition);
  }
  if (!decision.reason.empty()) {
    text += ", " + decision.reason;
  }
  if (!decision.timer.empty()) {
    text += ", " + (decision.key.empty() ? decision.timer : decision.key) + " " +
            std::to_string(decision.configuredMs) +
            (decision.reductionMs != 0 ? " - " + std::to_string(decision.reductionMs) : "") + ": waited " +
            std::to_string(decision.waitedMs) + " of " + std::to_string(decision.waitMs) + " ms";
  }
  if (!decision.people.empty()) {
    text += ", shows";
    for (const std::int64_t person : decision.people) {
      text += " " + std::to_string(person);
    }
  }
  return text;
}

}  // namespace

void ReadableEffects::line(const std::string& text) {
  std::array<char, 32> seconds{};
  std::snprintf(seconds.data(), seconds.size(), "%.3f ", static_cast<double>(mNow()) / 1000.0);
  mText.append(seconds.data()).append(text).append("\n");
}

void ReadableEffects::call(const char* name, const std::string& topic) {
  // One line for calls in a row.
  const std::size_t last = mText.empty() ? 0 : mText.rfind('\n', mText.size() - 2) + 1;
  if (mText.compare(last, std::string::npos, mCalls) == 0 && !mCalls.empty() && mCallName == name) {
    mText.insert(mText.size() - 1, " " + topic);
  } else {
    line(std::string(name) + " " + topic);
  }
  mCallName = name;
  mCalls = mText.substr(mText.rfind('\n', mText.size() - 2) + 1);
}

void ReadableEffects::onPublish(const std::string& topic, const std::string& payload) {
  line(topic + payloadText(payload));
}

void ReadableEffects::onScene(const std::string& json, bool delivered) {
  const std::string text = payloadText(json);
  line("provider" + text.substr(0, text.find(' ', text.find("scene") + 6)) + (delivered ? "" : " FAILED"));
}

void ReadableEffects::onSubscribe(const std::string& topic) {
  call("subscribe", topic);
}

void ReadableEffects::onAdvertise(const std::string& topic) {
  call("advertise", topic);
}

void ReadableEffects::onLog(LogPriority priority, const char* tag, const char* text) {
  line(std::string(1, logPriorityLetter(priority)) + " " + tag + ": " + text);
}

void ReadableEffects::onDecision(const LayoutDecision& decision) {
  line("  decision: " + decisionText(decision));
}

}  // namespace fyn::productionrules::testing
