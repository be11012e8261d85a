#include "tools/report/MeasureRecordings.h"

#include <algorithm>
#include <ostream>
#include <sstream>

#include "config/ConfigKeys.h"
#include "platform/ServiceStateScope.h"
#include "platform/Topics.h"
#include "tools/base/InputFile.h"
#include "tools/base/ProgressBar.h"
#include "tools/base/UsageError.h"
#include "tools/recording/RecordingReader.h"
#include "tools/replay/ImageSizeHint.h"
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

}  // namespace

MeasuredRecording measureRecording(const std::string& path, const MeasuredSetup& setup,
                                   std::istream& standardInput, const GivenUp& isGivenUp) {
  InputFile input(path, standardInput);
  FramingMeter meter(setup.stream);
  std::ostringstream printed;
  ReplayOptions options;
  options.configuration = setup.configuration;
  options.properties = setup.properties;
  options.dumpPath = "/dev/null";
  options.standardOutput = &printed;
  options.decisions = &meter;
  Replay replay(options, meter);
  RecordingReader reader(input.stream(), input.name());
  RecordingEvent event;
  ImageSizeHint sizes;
  while (!isGivenUp() && reader.next(event)) {
    sizes.look(event);
    meter.handle(replay, event);
  }
  meter.finish(replay);
  MeasuredRecording measured{path == "-" ? "standard input" : path, meter.measurement(), printed.str(),
                             sizes.text()};
  if (ProductionRuleIPCService* const service = replay.service()) {
    const ServiceStateScope scope(replay.state());
    measured.mode = framingModeToString(service->framingMode());
    measured.settings = unusualSettings(PrConfig::get());
  }
  return measured;
}

std::vector<std::vector<MeasuredRecording>> measureRecordings(const std::vector<std::string>& paths,
                                                              const std::vector<MeasuredSetup>& setups,
                                                              PrbContext& context) {
  const std::size_t each = paths.size();
  std::vector<std::vector<MeasuredRecording>> results(setups.size(), std::vector<MeasuredRecording>(each));
  ProgressBar progress(context.err, context.errIsTerminal, "measure", setups.size() * each);
  std::size_t finished = 0;
  const auto task = [&](std::size_t index, const GivenUp& isGivenUp) {
    results[index / each][index % each] =
        measureRecording(paths[index % each], setups[index / each], context.in, isGivenUp);
  };
  runInWorkers(setups.size() * each, task, [&](std::size_t /*index*/) { progress.update(++finished); });
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
