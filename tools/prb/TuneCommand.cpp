#include <CLI/CLI.hpp>
#include <memory>

#include "tools/prb/Commands.h"
#include "tools/settings/KeyValueTexts.h"
#include "tools/tune/TuneRun.h"

namespace fyn::productionrules {

namespace {

void addSearchOptions(CLI::App& command, TuneArguments& arguments) {
  command.add_option("recordings", arguments.recordings, "The recordings to measure")->type_name("RECORDING");
  command
      .add_option("--key", arguments.keys,
                  "A key of the configuration and the values to try; without STEP five of them; repeatable")
      ->type_name("KEY=FROM..TO[:STEP]")
      ->allow_extra_args(false);
  command
      .add_option("--goal", arguments.goal,
                  "What is to be as small as possible: metrics, numbers, + - * and parentheses")
      ->type_name("EXPR");
  command.add_option("--random", arguments.random, "Try N combinations at random instead of all")
      ->type_name("N")
      ->check(CLI::Range(1, 1000000));
  command.add_option("--seed", arguments.seed, "Seed of --random")->type_name("S")->capture_default_str();
  command
      .add_option("--config", arguments.config,
                  "Configuration file with all other keys; without it their defaults")
      ->type_name("FILE");
  addPropertyOption(command, arguments.properties);
}

void addRunOptions(CLI::App& command, TuneArguments& arguments) {
  command.add_option("--workers", arguments.workers, "Threads at a time; 0 for one per processor")
      ->type_name("N")
      ->check(CLI::Range(0, 1024))
      ->capture_default_str();
  command
      .add_option("--results", arguments.results,
                  "Keeps what is measured; a search that was interrupted goes on from it")
      ->type_name("FILE")
      ->capture_default_str();
  command.add_option("--html", arguments.html, "Write a page with the trade-offs as plots")
      ->type_name("FILE");
  command
      .add_option("--configs", arguments.configurations,
                  "Write the best trade-offs as configuration files into this folder")
      ->type_name("FOLDER");
  command
      .add_option("--jobs-out", arguments.jobsOut,
                  "Do nothing but write the replays that are missing, one command per line")
      ->type_name("FILE");
  command
      .add_option("--job", arguments.job,
                  "Do one job of --jobs-out: print the result line of these values for each recording")
      ->type_name("'KEY=VALUE ...'");
  addForceOption(command, arguments.rules);
  command.add_flag("--list-metrics", arguments.listMetrics, "Print the metrics that a goal may name");
}

}  // namespace

void addTuneCommand(CLI::App& command, PrbContext& context) {
  const auto arguments = std::make_shared<TuneArguments>();
  addSearchOptions(command, *arguments);
  addRunOptions(command, *arguments);
  command.footer(
      "Replays recordings with many configurations and shows the best trade-offs between a calm picture, a "
      "fast one\nand one that shows everybody.\n"
      "\n"
      "Examples:\n"
      "  prb tune meeting.jsonl --key persist.fdtimers.groupframe.outside=0..4000:1000 --html front.html\n"
      "  prb tune *.jsonl --key KEY1=0..8000 --key KEY2=0..8000 --random 50 --goal 'latency_s + "
      "changes_per_minute'\n"
      "  prb tune *.jsonl --key KEY=0..8000 --jobs-out jobs.txt && parallel < jobs.txt >> tune.jsonl");
  command.callback([arguments, &context] { runTune(*arguments, context); });
}

}  // namespace fyn::productionrules
