#include <CLI/CLI.hpp>
#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <thread>

#include "platform/ServiceState.h"
#include "platform/Topics.h"
#include "tools/base/StopSignals.h"
#include "tools/live/LiveBus.h"
#include "tools/live/Recorder.h"
#include "tools/prb/Commands.h"
#include "tools/prb/ServiceSettings.h"

namespace fyn::productionrules {

namespace {

/** What a replay of the service needs. Retained documents come in this order: like the service, it must know
 * a camera before it is told its size. */
constexpr std::array kInputTopics{topics::kCamera,        topics::kCameras,          topics::kCameraMoved,
                                  topics::kControl,       topics::kCameraParameters, topics::kVisionResult,
                                  topics::kSecondaryScene};
/** What the service decides. */
constexpr std::array kOutputTopics{
    topics::kScene,     topics::kDebugScene,     topics::kTimerDebug,        topics::kPeopleCount,
    topics::kDecisions, topics::kForwardMessage, topics::kControlPassThrough};

/** What was published before the end may still be on its way. */
constexpr std::chrono::milliseconds kOnTheWay{200};

/** After so long without a message it is said that none came. */
constexpr std::int64_t kSilenceMs = 3000;

/** So much is lost at the most when the machine fails. */
constexpr std::int64_t kFlushMs = 5000;

constexpr std::uint64_t kMegabyte = 1'000'000;

struct RecordOptions {
  PlatformOptions platform;
  RecorderOptions recorder;
  std::uint64_t maxMegabytes = 0;
  int seconds = 0;
  std::vector<std::string> topics;
  bool outputs = false;
  std::string config;
};

/** Passes on what the service publishes from the moment on that all is recorded: what a broker has retained
 * is from before. */
class OutputGate final : public com::quil::pubsub::IPubSubListener {
 public:
  explicit OutputGate(Recorder& recorder) : mRecorder(recorder) {}

  void open() { mIsOpen = true; }

  void onMessage(const std::string& topic, const std::string& message) override {
    if (mIsOpen) {
      mRecorder.onMessage(topic, message);
    }
  }

 private:
  Recorder& mRecorder;
  std::atomic<bool> mIsOpen{false};
};

std::vector<std::string> inputTopics(const RecordOptions& options) {
  return options.topics.empty() ? std::vector<std::string>(kInputTopics.begin(), kInputTopics.end())
                                : options.topics;
}

/** Reads the settings again at each call, as events that put a replay into them. */
std::function<std::vector<RecordingEvent>()> settingsEvents(const SettingsOfThisMachine& settings) {
  return [settings, seen = std::set<std::string>()]() mutable {
    ServiceSettings now = settings.read();
    for (const auto& [key, value] : now.properties) {
      seen.erase(key);
    }
    // A recording can only set a property; an empty one counts as not set.
    for (const std::string& gone : seen) {
      now.properties.emplace_back(gone, "");
    }
    for (const auto& [key, value] : now.properties) {
      seen.insert(key);
    }
    return std::vector<RecordingEvent>{{0, SetProperties{std::move(now.properties)}},
                                       {0, ReplaceConfig{std::move(now.configuration)}}};
  };
}

/** What a replay needs beside the messages, and what of it this recorder cannot know. */
void tellOfSettings(RecordOptions& options, PrbContext& context) {
  const std::string& bus = options.platform.bus;
  const std::string& properties = options.platform.properties;
  nlohmann::ordered_json by{{"by", std::string("prb ") + PR_VERSION},
                            {"startedAt", ServiceState::current().clock().wallMs()},
                            {"bus", bus},
                            {"properties", properties.empty() ? "of this machine" : properties}};
  if (properties.empty() && options.config.empty() && !isBusOfThisMachine(bus)) {
    by["properties"] = nullptr;
    context.err
        << "the service of " << bus
        << " may be on another machine, so the recording does not tell its properties and its configuration, "
           "and a replay runs without them; record there, or name copies with --properties and --config\n";
  } else {
    const SettingsOfThisMachine settings(options.config);
    by["configuration"] = settings.configurationName();
    options.recorder.settings = settingsEvents(settings);
    context.err << "the recording begins with " << settings.read().properties.size()
                << " properties and the configuration of this machine (" << settings.configurationName()
                << ")\n";
  }
  options.recorder.recordedBy = by.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

/** Until somebody ends it, its time is over or the file takes no more. */
void recordUntilTheEnd(const RecordOptions& options, std::int64_t start, Recorder& recorder,
                       StopSignals& stop, PrbContext& context) {
  std::int64_t flushed = start;
  bool isSilenceSaid = false;
  while (!stop.waitFor(std::chrono::milliseconds(200)) && !recorder.hasFailed()) {
    const std::int64_t now = liveTimeMs();
    if (now - flushed >= kFlushMs) {
      flushed = now;
      recorder.flush();
    }
    if (!isSilenceSaid && recorder.messages() == 0 && now - start >= kSilenceMs) {
      isSilenceSaid = true;
      context.err << "nothing has come within 3 s; is " << options.platform.bus
                  << " the bus and room of the service, and does its vision pipeline run?\n"
                  << std::flush;
    }
    if (options.seconds != 0 && now - start >= std::int64_t{options.seconds} * 1000) {
      return;
    }
  }
}

void runRecord(RecordOptions& options, PrbContext& context) {
  for (const std::string& topic : options.topics) {
    if (topic.empty() || topic.front() != '/') {
      throw UsageError("a topic begins with '/', not '" + topic + "'");
    }
  }
  requireWritable(options.recorder.path, options.recorder.rules);
  StopSignals stop;
  options.recorder.maxBytes = options.maxMegabytes * kMegabyte;
  const std::int64_t start = liveTimeMs();
  // The deliveries end before what they reach goes.
  std::optional<Recorder> recorder;
  std::optional<OutputGate> outputs;
  {
    LiveBus bus(options.platform);
    tellOfSettings(options, context);
    recorder.emplace(options.recorder, liveTimeMs);
    outputs.emplace(*recorder);
    if (options.outputs) {
      for (const std::string_view topic : kOutputTopics) {
        bus.client().subscribe(std::string(topic), *outputs);
      }
      bus.waitUntilReady(stop);
      std::this_thread::sleep_for(kOnTheWay);
    }
    outputs->open();
    for (const std::string& topic : inputTopics(options)) {
      bus.client().subscribe(topic, *recorder);
    }
    bus.waitUntilReady(stop);
    context.err << "recording to " << options.recorder.path << "; end with Ctrl-C\n" << std::flush;
    recordUntilTheEnd(options, start, *recorder, stop, context);
    std::this_thread::sleep_for(kOnTheWay);
  }
  recorder->finish();
  if (recorder->messages() == 0) {
    throw std::runtime_error("nothing came on " + options.platform.bus + ", so " + options.recorder.path +
                             " was not written");
  }
  context.err << recorder->messages() << " messages recorded\n";
  if (!recorder->knowsCameras()) {
    context.err << "no camera document has come, so a replay takes every image for 1280 x 720; let the "
                   "vision pipeline send /camera, /cameras and /cameraParameters/head while it is recorded\n";
  }
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
  command
      .add_option("--config", options->config,
                  "Configuration file of the service; without it that of this machine, when the bus is here")
      ->type_name("FILE");
  command.add_flag("--outputs", options->outputs,
                   "Record what the service publishes too, for prb replay --check");
  addForceOption(command, options->recorder.rules);
  addBusOptions(command, options->platform);
  addPropertiesOption(command, options->platform);
  command.footer(
      "Examples:\n"
      "  prb record --bus mqtt://localhost -o room.jsonl\n"
      "  prb record --bus mqtt://localhost/room-12 -o room.jsonl --max-size 100 --files 5");
  command.callback([options, &context] { runRecord(*options, context); });
}

}  // namespace fyn::productionrules
