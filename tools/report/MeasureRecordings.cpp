#include "tools/report/MeasureRecordings.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

#include "platform/Topics.h"
#include "tools/base/NamedStream.h"
#include "tools/base/ProgressBar.h"
#include "tools/base/UsageError.h"
#include "tools/base/WorkerPool.h"
#include "tools/recording/RecordingReader.h"
#include "tools/report/FramingMeter.h"

namespace fyn::productionrules {

Measurement measureRecording(const std::string& path, const MeasuredSetup& setup,
                             std::istream& standardInput) {
  InputFile input(path, standardInput);
  FramingMeter meter(setup.stream);
  ReplayOptions options;
  options.configuration = setup.configuration;
  options.properties = setup.properties;
  options.dumpPath = "/dev/null";
  options.standardOutput = &std::cerr;
  options.decisions = &meter;
  Replay replay(options, meter);
  RecordingReader reader(input.stream(), input.name());
  RecordingEvent event;
  while (reader.next(event)) {
    meter.handle(replay, event);
  }
  meter.finish(replay);
  return meter.measurement();
}

std::vector<std::vector<MeasuredRecording>> measureRecordings(const std::vector<std::string>& paths,
                                                              const std::vector<MeasuredSetup>& setups,
                                                              PrbContext& context) {
  std::vector<std::vector<MeasuredRecording>> results(setups.size());
  for (std::vector<MeasuredRecording>& ofSetup : results) {
    for (const std::string& path : paths) {
      ofSetup.push_back({path == "-" ? "standard input" : path, {}});
    }
  }
  ProgressBar progress(context.err, context.errIsTerminal, "measure", setups.size() * paths.size());
  std::size_t finished = 0;
  const auto task = [&](std::size_t index) {
    const Measurement measured =
        measureRecording(paths[index % paths.size()], setups[index / paths.size()], context.in);
    return measurementAsJson(measured, MeasurementParts::FiguresAndTimeLine).dump();
  };
  const auto done = [&](std::size_t index, const std::string& text) {
    results[index / paths.size()][index % paths.size()].measurement =
        measurementOf(nlohmann::json::parse(text));
    progress.update(++finished);
  };
  runInWorkers(setups.size() * paths.size(), task, done);
  for (const MeasuredRecording& recording : results.front()) {
    noteWithoutResults(recording.name, recording.measurement, context);
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
