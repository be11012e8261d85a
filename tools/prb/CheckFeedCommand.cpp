#include <CLI/CLI.hpp>
#include <chrono>

#include "platform/Mutex.h"
#include "tools/base/InputFile.h"
#include "tools/base/StopSignals.h"
#include "tools/base/StoppableInput.h"
#include "tools/feed/FeedReport.h"
#include "tools/live/LiveBus.h"
#include "tools/prb/Commands.h"
#include "tools/recording/RecordingReader.h"

namespace fyn::productionrules {

namespace {

constexpr int kFeedHasFaults = 1;

struct CheckFeedOptions {
  std::string recording;
  PlatformOptions platform;
  int seconds = 10;
};

/** Hands to a check what comes from the threads of a bus. */
class ArrivingFeed final : public com::quil::pubsub::IPubSubListener {
 public:
  void onMessage(const std::string& topic, const std::string& message) override {
    const MutexLock lock(mMutex);
    if (mCheck != nullptr) {
      mCheck->take(msOf(std::chrono::steady_clock::now() - mStart), topic, message);
    }
  }

  /** The check of all that has come; nothing is taken any more. */
  std::unique_ptr<FeedCheck> end() {
    const MutexLock lock(mMutex);
    return std::move(mCheck);
  }

 private:
  template <typename Duration>
  static std::int64_t msOf(Duration duration) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(duration).count();
  }

  const std::chrono::steady_clock::time_point mStart = std::chrono::steady_clock::now();
  Mutex mMutex;
  std::unique_ptr<FeedCheck> mCheck PR_GUARDED_BY(mMutex) =
      std::make_unique<FeedCheck>(msOf(std::chrono::system_clock::now().time_since_epoch()));
};

void tell(FeedCheck& check, const std::string& name, PrbContext& context) {
  check.finish();
  context.out << feedReport(check, name);
  context.status = check.faults().kinds().empty() ? 0 : kFeedHasFaults;
}

void checkRecording(const CheckFeedOptions& options, PrbContext& context) {
  StopSignals stop;
  StoppableInput standardInput(context.in, stop);
  InputFile input(options.recording, standardInput.stream());
  RecordingReader reader(input.stream(), input.name());
  FeedCheck check(0);
  for (RecordingEvent event; reader.next(event);) {
    if (const auto* const message = std::get_if<BusMessage>(&event.what)) {
      check.take(event.t, message->topic, message->payload);
    }
  }
  tell(check, input.name(), context);
}

void checkBus(const CheckFeedOptions& options, PrbContext& context) {
  StopSignals stop;
  // Made before the bus, so that it outlives the deliveries.
  ArrivingFeed feed;
  LiveBus bus(options.platform);
  for (const std::string& topic : FeedCheck::topics()) {
    bus.client().subscribe(topic, feed);
  }
  bus.waitUntilReady(stop);
  context.err << "watching " << options.platform.bus << " for " << options.seconds << " s\n" << std::flush;
  stop.waitFor(std::chrono::seconds(options.seconds));
  tell(*feed.end(), options.platform.bus, context);
}

}  // namespace

void addCheckFeedCommand(CLI::App& command, PrbContext& context) {
  const auto options = std::make_shared<CheckFeedOptions>();
  CLI::Option* const recording =
      command
          .add_option("recording", options->recording,
                      "Check the feed of this recording; '-' is standard input. Without one: that of --bus")
          ->type_name("RECORDING");
  command.add_option("--seconds", options->seconds, "Watch the bus for this time")
      ->type_name("S")
      ->check(CLI::Range(1, 86'400))
      ->capture_default_str()
      ->excludes(recording);
  addBusOptions(command, options->platform);
  recording->excludes(command.get_option("--bus"));
  command.footer(
      "For who connects a vision pipeline: says what is missing, mistyped, outside of the image, late or out "
      "of order\n"
      "in what it sends, which cameras no document names, how noisy the detector is, and what settings fit. "
      "Exit\n"
      "status 0 when the feed is fine, 1 when it is not. Publish the camera documents while it watches: a "
      "bus does\n"
      "not keep them.\n"
      "\n"
      "Examples:\n"
      "  prb check-feed --bus mqtt://localhost/room-12 --seconds 60\n"
      "  prb check-feed meeting.jsonl");
  command.callback([options, &context] {
    if (options->recording.empty()) {
      checkBus(*options, context);
    } else {
      checkRecording(*options, context);
    }
  });
}

}  // namespace fyn::productionrules
