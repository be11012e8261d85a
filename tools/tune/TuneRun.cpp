#include "tools/tune/TuneRun.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <ostream>

#include "tools/base/OutputFile.h"
#include "tools/base/ProgressBar.h"
#include "tools/base/ShellWord.h"
#include "tools/base/StopSignals.h"
#include "tools/report/MetricTable.h"
#include "tools/report/Metrics.h"
#include "tools/settings/KeyValueTexts.h"
#include "tools/tune/GoalExpression.h"
#include "tools/tune/TuneOutcome.h"
#include "tools/tune/TuneResults.h"

namespace fyn::productionrules {

namespace {

// What a shell reports for a program that Ctrl-C has ended.
constexpr int kInterrupted = 130;

MeasuredSetup setupOf(const TuneArguments& arguments) {
  return {readFaultlessConfiguration(arguments.config), keyValues(arguments.properties)};
}

/** Jobs on one recording. */
using Batch = std::vector<TuneJob>;

/** Only the figures that are the same whenever the jobs are done. */
std::vector<MeasuredRecording> measureBatch(const Batch& batch, const MeasuredSetup& base,
                                            PrbContext& context, const GivenUp& isGivenUp) {
  std::vector<MeasuredSetup> setups(batch.size(), base);
  for (std::size_t i = 0; i < batch.size(); ++i) {
    setups[i].configuration = configurationWith(base.configuration.value_or(""), batch[i].candidate);
  }
  std::vector<MeasuredRecording> measured =
      measureRecording(batch.front().recording.path, setups, context.in, isGivenUp);
  for (MeasuredRecording& each : measured) {
    each.measurement.decisionTime = {};
    each.measurement.timeLine = {};
  }
  return measured;
}

/** One command per job, for whatever runs commands on many machines. */
void writeJobs(const TuneArguments& arguments, const std::vector<TuneJob>& jobs, PrbContext& context) {
  OutputFile output(arguments.jobsOut, arguments.rules, context.out);
  for (const TuneJob& job : jobs) {
    output.stream() << "prb tune " << shellWord(job.recording.path) << " --job "
                    << shellWord(candidateText(job.candidate))
                    << settingsWords({arguments.config}, arguments.properties) << '\n';
  }
  output.finish();
}

std::vector<Candidate> candidatesOf(const TuneArguments& arguments) {
  if (arguments.keys.empty()) {
    throw UsageError("--key is required: which keys to tune, and over which values");
  }
  std::vector<KeyRange> ranges;
  for (const std::string& key : arguments.keys) {
    ranges.push_back(parseKeyRange(key));
  }
  return arguments.random > 0 ? randomOf(ranges, arguments.random, arguments.seed) : gridOf(ranges);
}

std::vector<TuneRecording> recordingsOf(const TuneArguments& arguments) {
  std::vector<TuneRecording> recordings;
  std::transform(arguments.recordings.begin(), arguments.recordings.end(), std::back_inserter(recordings),
                 tuneRecording);
  return recordings;
}

/** Recording by recording. */
std::vector<TuneJob> missingJobs(const std::vector<TuneRecording>& recordings,
                                 const std::vector<Candidate>& candidates, const TuneResults& results) {
  std::vector<TuneJob> jobs;
  for (const TuneRecording& recording : recordings) {
    for (const Candidate& candidate : candidates) {
      if (results.find({candidate, recording}) == nullptr) {
        jobs.push_back({candidate, recording});
      }
    }
  }
  return jobs;
}

/** Jobs that follow each other on one recording are done together. */
std::vector<Batch> batchesOf(const std::vector<TuneJob>& jobs, std::size_t most) {
  std::vector<Batch> batches;
  for (const TuneJob& job : jobs) {
    if (batches.empty() || batches.back().size() == most ||
        batches.back().front().recording.path != job.recording.path) {
      batches.emplace_back();
    }
    batches.back().push_back(job);
  }
  return batches;
}

/** False when Ctrl-C has ended it early. */
bool runJobs(const TuneArguments& arguments, const std::vector<TuneJob>& jobs, TuneResults& results,
             PrbContext& context) {
  const MeasuredSetup setup = setupOf(arguments);
  StopSignals stop;
  ProgressBar progress(context.err, context.errIsTerminal, "tune", jobs.size());
  std::size_t done = 0;
  WorkerOptions options;
  options.workers = arguments.workers;
  options.isInterrupted = [&stop] { return stop.waitFor(std::chrono::nanoseconds(0)); };
  const std::vector<Batch> batches = batchesOf(jobs, setupsAtOnce(1, jobs.size(), arguments.workers));
  std::vector<std::vector<MeasuredRecording>> measured(batches.size());
  return runInWorkers(
      batches.size(),
      [&](std::size_t index, const GivenUp& isGivenUp) {
        measured[index] = measureBatch(batches[index], setup, context, isGivenUp);
      },
      [&](std::size_t index) {
        const std::vector<MeasuredRecording> ended = std::move(measured[index]);
        for (std::size_t i = 0; i < ended.size(); ++i) {
          context.err << ended[i].printed;
          results.add(batches[index][i], ended[i].measurement);
        }
        progress.update(done += ended.size());
      },
      options);
}

/** Nothing can be found out on recordings in which nothing is seen. */
void checkContent(const std::vector<TuneRecording>& recordings, const Candidate& candidate,
                  const TuneResults& results, PrbContext& context) {
  std::size_t empty = 0;
  for (const TuneRecording& recording : recordings) {
    if (noteWithoutResults(recording.path, *results.find({candidate, recording}), context)) {
      ++empty;
    }
  }
  if (empty == recordings.size()) {
    throw UsageError("there is nothing to tune on");
  }
}

std::vector<TunedCandidate> tunedOf(const std::vector<TuneRecording>& recordings,
                                    const std::vector<Candidate>& candidates, const TuneResults& results,
                                    const std::optional<GoalExpression>& goal) {
  std::vector<TunedCandidate> tuned;
  for (const Candidate& candidate : candidates) {
    Measurement sum;
    for (const TuneRecording& recording : recordings) {
      sum.merge(*results.find({candidate, recording}));
    }
    if (const std::optional<TradeOff> tradeOff = tradeOffOf(sum)) {
      tuned.push_back({candidate, sum, *tradeOff, goal ? goal->value(sum) : std::nullopt});
    }
  }
  return tuned;
}

void writeOutcome(const TuneArguments& arguments, const TuneOutcome& outcome, PrbContext& context) {
  writeTuneTable(context.out, outcome);
  if (!arguments.html.empty()) {
    OutputFile page(arguments.html, arguments.rules, context.out);
    writeTunePage(page.stream(), outcome, arguments.goal);
    page.finish();
  }
  if (!arguments.configurations.empty()) {
    writeConfigurations(arguments.configurations, arguments.rules,
                        readFaultlessConfiguration(arguments.config).value_or(""), outcome);
  }
}

void listMetrics(PrbContext& context) {
  TextTable table({"Name", "Unit", "Meaning"});
  for (const Metric& metric : metrics()) {
    table.add({metric.name, metric.unit, metric.label});
  }
  table.write(context.out);
}

void runJob(const TuneArguments& arguments, PrbContext& context) {
  const Candidate candidate = parseCandidate(arguments.job);
  const MeasuredSetup setup = setupOf(arguments);
  for (const TuneRecording& recording : recordingsOf(arguments)) {
    const TuneJob job{candidate, recording};
    const MeasuredRecording measured = measureBatch({job}, setup, context, [] { return false; }).front();
    context.err << measured.printed;
    context.out << tuneResultLine(job, setupFingerprint(setup), measured.measurement) << '\n';
  }
}

void search(const TuneArguments& arguments, PrbContext& context) {
  const std::vector<Candidate> candidates = candidatesOf(arguments);
  std::optional<GoalExpression> goal;
  if (!arguments.goal.empty()) {
    goal.emplace(arguments.goal);
  }
  requireWritable(arguments.html, arguments.rules);
  if (!arguments.configurations.empty()) {
    const std::filesystem::path folder(arguments.configurations);
    for (const char* const name : {"front-1.conf", "best.conf"}) {
      arguments.rules.check((folder / name).string());
    }
  }
  const std::vector<TuneRecording> recordings = recordingsOf(arguments);
  TuneResults results(arguments.results, setupFingerprint(setupOf(arguments)));
  const std::vector<TuneJob> jobs = missingJobs(recordings, candidates, results);
  if (!arguments.jobsOut.empty()) {
    writeJobs(arguments, jobs, context);
    return;
  }
  if (!runJobs(arguments, jobs, results, context)) {
    context.err << "prb tune: interrupted; " << missingJobs(recordings, candidates, results).size()
                << " replays are left, the same command goes on with them\n";
    context.status = kInterrupted;
    return;
  }
  checkContent(recordings, candidates.front(), results, context);
  std::vector<TunedCandidate> tuned = tunedOf(recordings, candidates, results, goal);
  if (const std::size_t left = candidates.size() - tuned.size(); left > 0) {
    context.err << "prb tune: " << left << " of " << candidates.size()
                << " configurations are left out: they show no picture, or a distorted one\n";
  }
  const std::vector<std::string> idle = keysWithoutEffect(tuned);
  for (const std::string& key : idle) {
    context.err << "prb tune: no value of " << key
                << " changed anything on these recordings, so it is left out\n";
  }
  writeOutcome(arguments, TuneOutcome(withoutKeys(tuned, idle)), context);
}

}  // namespace

void runTune(TuneArguments& arguments, PrbContext& context) {
  if (arguments.listMetrics) {
    listMetrics(context);
    return;
  }
  if (arguments.recordings.empty()) {
    throw UsageError("RECORDING is required");
  }
  if (std::count(arguments.recordings.begin(), arguments.recordings.end(), "-") > 0) {
    throw UsageError("every recording is replayed many times, so none can come from standard input");
  }
  arguments.rules.inputs = arguments.recordings;
  arguments.rules.inputs.push_back(arguments.config);
  if (!arguments.job.empty()) {
    runJob(arguments, context);
  } else {
    search(arguments, context);
  }
}

}  // namespace fyn::productionrules
