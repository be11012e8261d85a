#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/base/OutputFile.h"
#include "tools/prb/Commands.h"
#include "tools/settings/KeyValueTexts.h"
#include "tools/why/MomentTime.h"
#include "tools/why/WhyText.h"

namespace fyn::productionrules {

namespace {

struct WhyArguments {
  std::string recording;
  std::string at;
  std::optional<std::int64_t> person;
  bool change = false;
  std::string config;
  std::vector<std::string> properties;
  std::string json;
  OutputRules rules;
};

WhyQuestion questionOf(const WhyArguments& arguments, PrbContext& context) {
  WhyQuestion question;
  question.recording = arguments.recording;
  question.t = momentOf(arguments.at);
  question.setup = {readConfiguration(arguments.config, context.err), keyValues(arguments.properties)};
  if (arguments.person) {
    question.about = WhyAbout::Person;
    question.person = *arguments.person;
  } else if (arguments.change) {
    question.about = WhyAbout::Change;
  }
  return question;
}

void runWhy(WhyArguments& arguments, PrbContext& context) {
  if (arguments.recording == "-") {
    throw UsageError("the recording is replayed many times, so it cannot come from standard input");
  }
  arguments.rules.inputs = {arguments.recording, arguments.config};
  requireWritable(arguments.json, arguments.rules);
  const WhyAnswer answer = answerWhy(questionOf(arguments, context), context);
  if (arguments.json != "-") {
    writeWhy(context.out, answer);
  }
  writeJsonFile(whyAsJson(answer), arguments.json, arguments.rules, context.out);
}

}  // namespace

void addWhyCommand(CLI::App& command, PrbContext& context) {
  const auto arguments = std::make_shared<WhyArguments>();
  command.add_option("recording", arguments->recording, "The recording to ask about")
      ->type_name("RECORDING")
      ->required();
  command.add_option("--at", arguments->at, "The moment, as 02:05.133 or in seconds")
      ->type_name("TIME")
      ->required();
  CLI::Option* const person =
      command
          .add_option("--person", arguments->person, "Ask about this person, by the id in the vision results")
          ->type_name("ID");
  command
      .add_flag("--change", arguments->change, "Ask about the change of the picture nearest to the moment")
      ->excludes(person);
  addSettingsOptions(command, arguments->config, arguments->properties);
  command
      .add_option("--json", arguments->json,
                  "Write the answer as JSON; - for standard output, without the words")
      ->type_name("FILE");
  addForceOption(command, arguments->rules);
  command.footer(
      "Says what the picture showed at a moment, what held another one back, and the smallest change of a "
      "single\nkey that would have helped, with its price. Without --person and --change: why the picture "
      "changed, when it\ndid so within a second, else who was missing. The recording is replayed some "
      "hundred times.\n"
      "\n"
      "Examples:\n"
      "  prb why meeting.jsonl --at 02:05 --person 3\n"
      "  prb why meeting.jsonl --at 125.1 --change --property vendor.talkertracking.flag=4");
  command.callback([arguments, &context] { runWhy(*arguments, context); });
}

}  // namespace fyn::productionrules
