#include "tools/report/MeasureRecordings.h"

#include <algorithm>
#include <deque>
#include <ostream>
#include <sstream>
#include <thread>

#include "config/ConfigKeys.h"
#include "platform/ServiceStateScope.h"
#include "platform/Topics.h"
#include "tools/base/InputFile.h"
#include "tools/base/ProgressBar.h"
#include "tools/base/UsageError.h"
#include "tools/recording/RecordingReader.h"
#include "tools/replay/ImageSizeHint.h"
#include "tools/replay/SharedVisionResults.h"
#include "tools/report/FramingMeter.h"

namespace fyn::productionrules {

namespace {

KeyValues unusualSettings(const PrConfig& config) {
  KeyValues settings;
  for (const ConfigKey& key : kConfigKeys) {
    const std::int32_t value = configValue(config, key);
    if (value != configValue(PrConfig::DEFAULT, key)) {
      settings.emplace_back(key.key, std::to_string(value));
    }
  }
  return settings;
}

/** One setup while a recording is measured with it. */
class Measuring {
 public:
  Measuring(const MeasuredSetup& setup, const std::shared_ptr<VisionResultReader>& results)
      : mMeter(setup.stream), mReplay(optionsFor(setup, results), mMeter) {}

  void handle(const RecordingEvent& event) { mMeter.handle(mReplay, event); }

  void finish(MeasuredRecording& measured) {
    mMeter.finish(mReplay);
    measured.measurement = mMeter.measurement();
    measured.printed = mPrinted.str();
    if (ProductionRuleIPCService* const service = mReplay.service()) {
      const ServiceStateScope scope(mReplay.state());
      measured.mode = framingModeToString(service->trackingMode().getTrackingMode());
      measured.settings = unusualSettings(PrConfig::get());
    }
  }

 private:
  ReplayOptions optionsFor(const MeasuredSetup& setup, const std::shared_ptr<VisionResultReader>& results) {
    ReplayOptions options;
    options.configuration = setup.configuration;
    options.properties = setup.properties;
    options.dumpPath = "/dev/null";
    options.standardOutput = &mPrinted;
    options.decisions = &mMeter;
    options.visionResults = results;
    return options;
  }

  std::ostringstream mPrinted;
  FramingMeter mMeter;
  Replay mReplay;
};

// Ctrl-C loses what is under way, and the bar stands still meanwhile.
constexpr std::size_t kMostAtOnce = 16;

}  // namespace

std::size_t setupsAtOnce(std::size_t recordings, std::size_t setups, unsigned workers) {
  // So many tasks that no thread is idle for long at the end.
  constexpr std::size_t kTasksPerThread = 4;
  const std::size_t threads = workers > 0 ? workers : std::max(1U, std::thread::hardware_concurrency());
  return std::clamp<std::size_t>(recordings * setups / (kTasksPerThread * threads), 1, kMostAtOnce);
}

std::vector<MeasuredRecording> measureRecording(const std::string& path,
                                                const std::vector<MeasuredSetup>& setups,
                                                std::istream& standardInput, const GivenUp& isGivenUp) {
  InputFile input(path, standardInput);
  const auto results = std::make_shared<SharedVisionResults>();
  std::deque<Measuring> measuring;
  for (const MeasuredSetup& setup : setups) {
    measuring.emplace_back(setup, results);
  }
  RecordingReader reader(input.stream(), input.name());
  RecordingEvent event;
  ImageSizeHint sizes;
  while (!isGivenUp() && reader.next(event)) {
    sizes.look(event);
    for (Measuring& each : measuring) {
      each.handle(event);
    }
  }
  std::vector<MeasuredRecording> measured(setups.size());
  for (std::size_t setup = 0; setup < setups.size(); ++setup) {
    measured[setup].name = path == "-" ? "standard input" : path;
    measured[setup].sizeHint = sizes.text();
    measuring[setup].finish(measured[setup]);
  }
  return measured;
}

std::vector<std::vector<MeasuredRecording>> measureRecordings(const std::vector<std::string>& paths,
                                                              const std::vector<MeasuredSetup>& setups,
                                                              PrbContext& context) {
  std::vector<std::vector<MeasuredRecording>> results(setups.size(),
                                                      std::vector<MeasuredRecording>(paths.size()));
  const std::size_t atOnce = setupsAtOnce(paths.size(), setups.size(), 0);
  const std::size_t parts = (setups.size() + atOnce - 1) / atOnce;
  ProgressBar progress(context.err, context.errIsTerminal, "measure", parts * paths.size());
  std::size_t finished = 0;
  const auto task = [&](std::size_t index, const GivenUp& isGivenUp) {
    const std::size_t path = index % paths.size();
    const std::size_t first = index / paths.size() * atOnce;
    const std::size_t behind = std::min(first + atOnce, setups.size());
    std::vector<MeasuredRecording> measured =
        measureRecording(paths[path],
                         {setups.begin() + static_cast<std::ptrdiff_t>(first),
                          setups.begin() + static_cast<std::ptrdiff_t>(behind)},
                         context.in, isGivenUp);
    for (std::size_t setup = first; setup < behind; ++setup) {
      results[setup][path] = std::move(measured[setup - first]);
    }
  };
  runInWorkers(parts * paths.size(), task, [&](std::size_t /*index*/) { progress.update(++finished); });
  for (const std::vector<MeasuredRecording>& ofSetup : results) {
    for (const MeasuredRecording& recording : ofSetup) {
      context.err << recording.printed;
    }
  }
  for (const MeasuredRecording& recording : results.front()) {
    noteWithoutResults(recording.name, recording.measurement, context);
    if (!recording.sizeHint.empty()) {
      context.err << recording.name << ": " << recording.sizeHint << '\n';
    }
  }
  return results;
}

bool noteWithoutResults(const std::string& name, const Measurement& measured, PrbContext& context) {
  if (measured.visionResults != 0) {
    return false;
  }
  context.err << name << ": holds no vision results (" << topics::kVisionResult << "), nothing to measure\n";
  return true;
}

Measurement overall(const std::vector<MeasuredRecording>& recordings) {
  Measurement sum;
  for (const MeasuredRecording& recording : recordings) {
    sum.merge(recording.measurement);
  }
  return sum;
}

void checkRecordingNames(const std::vector<std::string>& paths) {
  if (std::count(paths.begin(), paths.end(), "-") > 1) {
    throw UsageError("standard input (-) can be measured only once");
  }
}

}  // namespace fyn::productionrules
