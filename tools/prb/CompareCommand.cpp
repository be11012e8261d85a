#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/base/OutputFile.h"
#include "tools/base/ShellWord.h"
#include "tools/prb/Commands.h"
#include "tools/report/Comparison.h"
#include "tools/report/MetricTable.h"
#include "tools/settings/KeyValueTexts.h"

namespace fyn::productionrules {

namespace {

struct CompareArguments {
  std::string a;
  std::string b;
  std::vector<std::string> recordings;
  std::vector<std::string> properties;
  std::string json;
  OutputRules rules;
};

std::string signedText(const Metric& metric, double value) {
  return (value > 0 ? "+" : "") + metricText(metric, value);
}

void writeTable(const std::vector<MetricComparison>& comparisons, std::size_t recordings,
                PrbContext& context) {
  TextTable table({"Metric", "Unit", "A", "B", "B - A", "95% interval", "Verdict"});
  for (const MetricComparison& row : comparisons) {
    const Metric& metric = *row.metric;
    std::string difference = "-";
    std::string interval = "-";
    if (row.difference) {
      difference = signedText(metric, row.difference->mean);
      interval = signedText(metric, row.difference->low) + " .. " + signedText(metric, row.difference->high);
    } else if (row.a && row.b) {
      difference = signedText(metric, *row.b - *row.a);
    }
    table.add({metric.label, metric.unit, metricText(metric, row.a), metricText(metric, row.b), difference,
               interval, verdictText(row.verdict)});
  }
  table.write(context.out);
  if (recordings == 1) {
    context.out << "\nOne recording has no spread, so no interval is possible: give two or more.\n";
    return;
  }
  context.out << "\nA and B: all " << recordings
              << " recordings together. B - A: mean of the differences per recording, and the interval that\n"
                 "a bootstrap over the recordings gives it. A difference whose interval contains 0 is not "
                 "larger than the\nspread between recordings.\n";
}

nlohmann::ordered_json optionalJson(const std::optional<double>& value) {
  return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json(nullptr);
}

nlohmann::ordered_json comparisonAsJson(const CompareArguments& arguments,
                                        const std::vector<MetricComparison>& comparisons) {
  nlohmann::ordered_json document{
      {"a", arguments.a}, {"b", arguments.b}, {"recordings", arguments.recordings}};
  for (const MetricComparison& row : comparisons) {
    nlohmann::ordered_json& entry = document["metrics"][row.metric->name];
    entry = {{"a", optionalJson(row.a)}, {"b", optionalJson(row.b)}, {"pairs", row.pairs}};
    if (row.difference) {
      entry["difference"] = row.difference->mean;
      entry["interval"] = {row.difference->low, row.difference->high};
      entry["verdict"] = verdictText(row.verdict);
    }
  }
  return document;
}

void runCompare(CompareArguments& arguments, PrbContext& context) {
  if (std::count(arguments.recordings.begin(), arguments.recordings.end(), "-") > 0) {
    throw UsageError("every recording is replayed twice, so none can come from standard input");
  }
  arguments.rules.inputs = arguments.recordings;
  arguments.rules.inputs.insert(arguments.rules.inputs.end(), {arguments.a, arguments.b});
  requireWritable(arguments.json, arguments.rules);
  const KeyValues properties = keyValues(arguments.properties);
  const auto results = measureRecordings(arguments.recordings,
                                         {{readConfiguration(arguments.a, context.err), properties},
                                          {readConfiguration(arguments.b, context.err), properties}},
                                         context);
  const std::vector<MetricComparison> comparisons = compareMeasurements(results[0], results[1]);
  if (arguments.json != "-") {
    writeTable(comparisons, arguments.recordings.size(), context);
    context.out << "\nMeasured against " << measuredAgainst(overall(results[0]))
                << ".\nSee both side by side: prb view " << shellWord(arguments.recordings.front())
                << settingsWords({arguments.a, arguments.b}, arguments.properties) << '\n';
  }
  writeJsonFile(comparisonAsJson(arguments, comparisons), arguments.json, arguments.rules, context.out);
}

}  // namespace

void addCompareCommand(CLI::App& command, PrbContext& context) {
  const auto arguments = std::make_shared<CompareArguments>();
  command.add_option("A.conf", arguments->a, "Configuration file A")->type_name("")->required();
  command.add_option("B.conf", arguments->b, "Configuration file B")->type_name("")->required();
  command.add_option("recordings", arguments->recordings, "The recordings to measure with both")
      ->type_name("RECORDING")
      ->required();
  addPropertyOption(command, arguments->properties);
  command
      .add_option("--json", arguments->json,
                  "Write the figures as JSON; - for standard output, without the table")
      ->type_name("FILE");
  addForceOption(command, arguments->rules);
  command.footer(
      "Measures the same recordings with two configurations and says which differences are larger than the "
      "spread\nbetween recordings.\n"
      "\n"
      "Examples:\n"
      "  prb compare default.conf quick.conf meetings/*.jsonl\n"
      "  prb compare a.conf b.conf one.jsonl two.jsonl --json differences.json");
  command.callback([arguments, &context] { runCompare(*arguments, context); });
}

}  // namespace fyn::productionrules
