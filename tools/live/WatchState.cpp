#include "tools/live/WatchState.h"

#include <nlohmann/json.hpp>

#include "platform/StderrLog.h"
#include "platform/Topics.h"
#include "service/DecisionDocument.h"
#include "tools/recording/DecisionSentence.h"

namespace fyn::productionrules {

namespace {

using nlohmann::json;

std::string rectangle(const json& box) {
  return box.at("width").dump() + "x" + box.at("height").dump() + " at " + box.at("xoffset").dump() + "," +
         box.at("yoffset").dump();
}

/** A text as a person reads it; a message may carry anything. */
std::string printable(const json& text) {
  std::string result = text.is_string() ? text.get<std::string>() : text.dump();
  for (char& c : result) {
    c = static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
  }
  return result;
}

std::string seconds(const json& milliseconds) {
  const auto ms = milliseconds.get<std::int64_t>();
  return std::to_string(ms / 1000) + '.' + std::to_string(ms / 100 % 10) + " s";
}

void appendWaits(const json& half, const char* title, std::vector<std::string>& waits) {
  for (const json& layout : half.at("layouts")) {
    waits.push_back(title + printable(layout.at("layoutType")) + ": " + seconds(layout.at("layoutTimer")));
    for (const json& frame : layout.at("frames")) {
      waits.push_back("  frame " + frame.at("frameindex").dump() + ' ' + printable(frame.at("headPosition")) +
                      ": " + seconds(frame.at("frameTimer")));
    }
  }
}

void appendSection(std::string& screen, const char* title, const std::vector<std::string>& lines) {
  screen.append(title).append("\n");
  for (const std::string& line : lines) {
    screen.append("  ").append(line).append("\n");
  }
}

}  // namespace

std::vector<std::string> WatchState::topics() {
  std::vector<std::string> wanted;
  for (const std::string_view topic : {topics::kScene, topics::kTimerDebug, topics::kVisionResult,
                                       topics::kPeopleCount, topics::kTrackingMode, topics::kDecisions}) {
    wanted.emplace_back(topic);
  }
  return wanted;
}

void WatchState::addLine(const std::string& text) {
  mLines.push_back(localTimeText(mClock->wallMs()) + ' ' + text);
}

void WatchState::onMessage(const std::string& topic, const std::string& message) {
  const MutexLock lock(mMutex);
  ++mMessages[topic];
  if (topic == topics::kTrackingMode) {
    mMode = printable(message);
    addLine("mode " + mMode);
    return;
  }
  if (topic == topics::kDecisions) {
    readReason(message);
    return;
  }
  try {
    const json document = json::parse(message);
    if (topic == topics::kScene) {
      readScene(document);
    } else if (topic == topics::kTimerDebug) {
      readTimers(document);
    } else if (topic == topics::kVisionResult) {
      readVision(document);
    } else if (topic == topics::kPeopleCount) {
      readPeopleCount(document);
    }
  } catch (const json::exception&) {
    ++mUnreadable;
  }
}

void WatchState::readReason(const std::string& message) {
  const std::optional<LayoutDecision> decision = readDecision(message);
  if (!decision) {
    ++mUnreadable;
    return;
  }
  const std::string sentence = printable(decisionSentence(*decision));
  addLine("why " + sentence);
  if (changesPicture(decision->kind)) {
    mWhy = sentence;
  }
}

void WatchState::readScene(const json& document) {
  std::vector<std::string> frames;
  std::string line = "picture";
  std::string mode = mMode;
  for (const json& stream : document.at("streams")) {
    mode = stream.contains("TrackingMode") ? printable(stream.at("TrackingMode")) : mode;
    const std::string layout =
        printable(stream.at("layoutType")) + " by " + printable(stream.at("animation"));
    frames.push_back("stream " + stream.at("streamid").dump() + ": " + layout);
    line += " " + layout + ",";
    for (const json& entry : stream.at("scene")) {
      if (entry.contains("source")) {
        frames.push_back("  camera " + entry.at("cameraid").dump() + ' ' + rectangle(entry.at("source")) +
                         " to " + rectangle(entry.at("dest")));
        line += " camera " + entry.at("cameraid").dump() + ' ' + rectangle(entry.at("source"));
      }
    }
  }
  mMode = mode;
  mFrames = std::move(frames);
  addLine(line);
}

void WatchState::readTimers(const json& document) {
  std::vector<std::string> waits;
  appendWaits(document.at("currentLayout"), "shown ", waits);
  appendWaits(document.at("nextLayout"), "pending ", waits);
  mWaits = std::move(waits);
}

void WatchState::readVision(const json& document) {
  std::size_t speaking = 0;
  const json& heads = document.at("heads");
  for (const json& person : heads) {
    for (const json& head : person.value("associatedHeads", json::array())) {
      if (head.value("isSpeaker", false)) {
        ++speaking;
        break;
      }
    }
  }
  mPeople = std::to_string(heads.size()) + " in view, " + std::to_string(speaking) + " speaking";
}

void WatchState::readPeopleCount(const json& document) {
  addLine("people " + document.at("face_count").dump());
}

std::string WatchState::screen(std::int64_t elapsedMs) {
  const MutexLock lock(mMutex);
  std::string text = "Mode    " + mMode + "\nPeople  " + mPeople + "\n";
  appendSection(text, "Picture", mFrames);
  text += "Why     " + mWhy + "\n";
  appendSection(text, "Waits", mWaits);
  std::vector<std::string> rates;
  for (auto& [topic, count] : mMessages) {
    const std::uint64_t perSecond = elapsedMs > 0
                                        ? (count * 1000 + static_cast<std::uint64_t>(elapsedMs) / 2) /
                                              static_cast<std::uint64_t>(elapsedMs)
                                        : 0;
    rates.push_back(topic + "  " + std::to_string(perSecond) + " a second");
    count = 0;
  }
  appendSection(text, "Messages", rates);
  if (mUnreadable != 0) {
    text += std::to_string(mUnreadable) + " messages could not be read\n";
  }
  mLines.clear();
  return text;
}

std::vector<std::string> WatchState::takeLines() {
  const MutexLock lock(mMutex);
  return std::exchange(mLines, {});
}

}  // namespace fyn::productionrules
