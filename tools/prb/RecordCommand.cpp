#include <CLI/CLI.hpp>
#include <chrono>
#include <thread>

#include "platform/Ticks.h"
#include "platform/Topics.h"
#include "tools/base/StopSignals.h"
#include "tools/live/LiveBus.h"
#include "tools/live/Recorder.h"
#include "tools/prb/Commands.h"

namespace fyn::productionrules {

namespace {

/** What a replay of the service needs. */
constexpr std::array kInputTopics{topics::kVisionResult,  topics::kCameraParameters, topics::kCamera,
                                  topics::kCameras,       topics::kCameraMoved,      topics::kControl,
                                  topics::kSecondaryScene};
/** What the service decides. */
constexpr std::array kOutputTopics{topics::kScene, topics::kDebugScene, topics::kTimerDebug,
                                   topics::kPeopleCount, topics::kDecisions};

/** What was published before the end may still be on its way. */
constexpr std::chrono::milliseconds kOnTheWay{200};

/** After so long without a message it is said that none came. */
constexpr std::int64_t kSilenceMs = 3000;

constexpr std::uint64_t kMegabyte = 1'000'000;

struct RecordOptions {
  PlatformOptions platform;
  RecorderOptions recorder;
  std::uint64_t maxMegabytes = 0;
  int seconds = 0;
  std::vector<std::string> topics;
  bool outputs = false;
};

std::vector<std::string> wantedTopics(const RecordOptions& options) {
  std::vector<std::string> wanted = options.topics;
  if (wanted.empty()) {
    wanted.assign(kInputTopics.begin(), kInputTopics.end());
  }
  if (options.outputs) {
    wanted.insert(wanted.end(), kOutputTopics.begin(), kOutputTopics.end());
  }
  return wanted;
}

std::int64_t nowMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

void runRecord(RecordOptions& options, PrbContext& context) {
  for (const std::string& topic : options.topics) {
    if (topic.empty() || topic.front() != '/') {
      throw UsageError("a topic begins with '/', not '" + topic + "'");
    }
  }
  StopSignals stop;
  options.recorder.maxBytes = options.maxMegabytes * kMegabyte;
  const std::int64_t start = nowMs();
  // Made before the bus, so that it outlives the deliveries.
  Recorder recorder(options.recorder, nowMs);
  {
    LiveBus bus(options.platform);
    for (const std::string& topic : wantedTopics(options)) {
      bus.client().subscribe(topic, recorder);
    }
    bus.waitUntilReady();
    context.err << "recording to " << options.recorder.path << "; end with Ctrl-C\n" << std::flush;
    bool isSilenceSaid = false;
    while (!stop.waitFor(std::chrono::milliseconds(200)) && !recorder.hasFailed()) {
      if (!isSilenceSaid && recorder.messages() == 0 && nowMs() - start >= kSilenceMs) {
        isSilenceSaid = true;
        context.err << "nothing has come within 3 s; is " << options.platform.bus
                    << " the bus and room of the service, and does its vision pipeline run?\n"
                    << std::flush;
      }
      if (options.seconds != 0 && nowMs() - start >= std::int64_t{options.seconds} * 1000) {
        break;
      }
    }
    std::this_thread::sleep_for(kOnTheWay);
  }
  recorder.finish();
  if (recorder.messages() == 0) {
    throw std::runtime_error("nothing came on " + options.platform.bus + ", so " + options.recorder.path +
                             " was not written");
  }
  context.err << recorder.messages() << " messages recorded\n";
}

}  // namespace

void addRecordCommand(CLI::App& command, PrbContext& context) {
  const auto options = std::make_shared<RecordOptions>();
  command.add_option("-o,--output", options->recorder.path, "The recording to write")
      ->type_name("RECORDING")
      ->required();
  CLI::Option* const maxSize =
      command
          .add_option("--max-size", options->maxMegabytes,
                      "Begin a new file when one has this many megabytes; 0 for no limit")
          ->type_name("MB")
          ->check(CLI::Range(0, 1'000'000))
          ->capture_default_str();
  command
      .add_option("--files", options->recorder.maxFiles,
                  "Files to keep: RECORDING, RECORDING.1 (older) ...; those before are deleted. 0 for all")
      ->type_name("N")
      ->check(CLI::Range(0, 1000))
      ->capture_default_str()
      ->needs(maxSize);
  command.add_option("--seconds", options->seconds, "End after this time; 0 for until a signal comes")
      ->type_name("S")
      ->check(CLI::Range(0, 31'536'000))
      ->capture_default_str();
  command
      .add_option("--topic", options->topics,
                  "Record this topic and those beneath it, instead of all that the service reads")
      ->type_name("TOPIC")
      ->allow_extra_args(false);
  command.add_flag("--outputs", options->outputs, "Record what the service publishes too");
  addForceOption(command, options->recorder.rules);
  addPlatformOptions(command, options->platform, true);
  command.footer(
      "Examples:\n"
      "  prb record --bus mqtt://localhost -o room.jsonl\n"
      "  prb record --bus mqtt://localhost/room-12 -o room.jsonl --max-size 100 --files 5");
  command.callback([options, &context] { runRecord(*options, context); });
}

}  // namespace fyn::productionrules
