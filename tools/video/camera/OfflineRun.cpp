#include "tools/video/camera/OfflineRun.h"

#include <cmath>
#include <iostream>
#include <nlohmann/json.hpp>

#include "platform/Topics.h"
#include "tools/base/InputFile.h"
#include "tools/base/UsageError.h"
#include "tools/recording/RecordingReader.h"

namespace fyn::productionrules::video {

namespace {

using nlohmann::json;

// Later than any scene: with the last frame every scene counts that begins with it.
constexpr std::int64_t kNoFrameMs = 1000;

bool isWished(StopSignals& stop) {
  return stop.waitFor(std::chrono::nanoseconds(0));
}

void addScenes(const std::string& path, Player& player) {
  InputFile file(path, std::cin);
  std::string line;
  for (std::int64_t number = 1; std::getline(file.stream(), line); ++number) {
    try {
      const json effect = json::parse(line);
      // Published whether or not the replay had a provider.
      if (effect.value("topic", "") == topics::kScene) {
        player.addScene(effect.at("payload").dump(), effect.at("t").get<std::int64_t>());
      }
    } catch (const json::exception& fault) {
      throw UsageError(file.name() + ":" + std::to_string(number) + ": " + fault.what());
    }
  }
}

/** Shows the frames of the recording's vision results. */
void showRecorded(const std::string& path, Player& player, StopSignals& stop) {
  InputFile file(path, std::cin);
  RecordingReader reader(file.stream(), file.name());
  RecordingEvent event;
  std::optional<VisionFrame> waiting;
  while (reader.next(event)) {
    const auto* const message = std::get_if<BusMessage>(&event.what);
    if (message == nullptr || message->topic != topics::kVisionResult) {
      continue;
    }
    VisionFrame frame = parseVisionFrame(message->payload);
    frame.time.timestampMs = event.t;
    if (waiting && (isWished(stop) || !player.show(*waiting, event.t))) {
      return;
    }
    waiting = std::move(frame);
  }
  if (waiting) {
    player.show(*waiting, waiting->time.timestampMs + kNoFrameMs);
  }
}

/** Shows the frames of the video itself. */
void showAll(Player& player, StopSignals& stop) {
  const double interval = 1000.0 / player.rate();
  const auto timeOf = [interval](std::int64_t number) {
    return std::llround(interval * static_cast<double>(number - 1));
  };
  VisionFrame frame;
  do {
    ++frame.time.number;
    frame.time.timestampMs = timeOf(frame.time.number);
  } while (!isWished(stop) && player.show(frame, timeOf(frame.time.number + 1)));
}

}  // namespace

void playOffline(const std::string& effects, const std::string& vision, Player& player, StopSignals& stop) {
  addScenes(effects, player);
  if (vision.empty()) {
    showAll(player, stop);
  } else {
    showRecorded(vision, player, stop);
  }
}

}  // namespace fyn::productionrules::video
