#pragma once

#include <string>

#include "tools/replay/Replay.h"
#include "tools/view/EngineLines.h"

namespace fyn::productionrules {

/**
 * Writes a replay as lines for the viewer page, in the order of time: each event of the recording, then what
 * the service does on it, then its waits and frames.
 */
class ReplayLines final : public ReplayObserver {
 public:
  /** `start` is the line time of the recording's time 0, in milliseconds. `sink` must outlive this. */
  explicit ReplayLines(LineSink& sink, std::int64_t start = 0);

  /** The replay that is observed; set before its first event. */
  void watch(Replay& replay) { mReplay = &replay; }

  /** To be told every decision of the replayed service. */
  DecisionListener& decisions() { return mEngine; }

  /** Replays the next event. */
  void handle(const RecordingEvent& event);

  /** Replays what still waits for a first message. */
  void finish();

  /** Something that a person should know, in words. */
  void notice(const std::string& words) { mSink.put(noticeLine(now(), words)); }

  void onPublish(const std::string& topic, const std::string& payload) override;

  /** The time of the next line. */
  std::int64_t now();

 private:
  bool isOfTheDevice(const RecordingEvent& event);

  LineSink& mSink;
  const std::int64_t mStart;
  std::int64_t mLast;
  Replay* mReplay = nullptr;
  EngineLines mEngine;
  bool mSaidWhatIsLeftOut = false;
};

}  // namespace fyn::productionrules
