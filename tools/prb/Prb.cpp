#include "tools/prb/Prb.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "tools/base/ProgramRun.h"
#include "tools/prb/UnknownWord.h"

namespace fyn::productionrules {

namespace {

void addSubcommands(CLI::App& app, PrbContext& context) {
  for (const Subcommand& row : subcommands()) {
    row.add(*app.add_subcommand(row.name, row.summary), context);
  }
}

/** The innermost command that the arguments name, and how a user types it: "prb config check". */
std::pair<const CLI::App*, std::string> chosenCommand(const CLI::App& app) {
  std::pair<const CLI::App*, std::string> chosen{&app, app.get_name()};
  while (!chosen.first->get_subcommands().empty()) {
    chosen.first = chosen.first->get_subcommands().back();
    chosen.second += ' ' + chosen.first->get_name();
  }
  return chosen;
}

std::string commandLine(const CLI::App& app) {
  return chosenCommand(app).second;
}

/** `command` is the one that was chosen; what it does not know may have been left to one above it. */
std::string describe(const CLI::ParseError& error, const CLI::App& command, const CLI::App& root) {
  const std::vector<std::string> unknown = root.remaining(true);
  if (unknown.empty()) {
    return error.what();
  }
  if (unknown.front().rfind('-', 0) == 0) {
    return unknownOption(command, unknown.front());
  }
  return command.get_subcommands({}).empty() ? error.what() : unknownCommand(command, unknown.front());
}

void printError(const PrbContext& context, const std::string& command, std::string message) {
  std::replace(message.begin(), message.end(), '\n', ' ');
  context.err << command << ": " << message << '\n';
}

int parseAndRun(CLI::App& app, const std::vector<std::string>& arguments, PrbContext& context) {
  if (arguments.empty()) {
    context.err << app.help();
    return 2;
  }
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::CallForVersion& request) {
    context.out << request.what() << '\n';
  } catch (const CLI::Success& request) {
    app.exit(request, context.out, context.err);
  } catch (const CLI::ParseError& error) {
    const auto [command, name] = chosenCommand(app);
    throw UsageError(describe(error, *command, app) + " (see '" + name + " --help')");
  }
  return context.status;
}

}  // namespace

int runPrb(const std::vector<std::string>& arguments, PrbContext& context) {
  CLI::App app("Records, replays, makes and inspects what the production-rules service sees and decides.",
               "prb");
  app.set_version_flag("--version", "prb " PR_VERSION);
  app.require_subcommand(1);
  app.footer(
      "Examples:\n"
      "  prb simulate --seed 1 -o meeting.jsonl    make a meeting of ten minutes\n"
      "  prb replay meeting.jsonl -o scenes.jsonl  what the service decides on it\n"
      "  prb config check /etc/fyn.conf            find mistakes in a configuration file\n"
      "'prb help COMMAND' explains a command.");
  addSubcommands(app, context);
  return exitStatusOf(
      [&] {
        const int status = parseAndRun(app, arguments, context);
        if (!context.out.flush()) {
          throw std::runtime_error("standard output cannot be written");
        }
        return status;
      },
      [&](const std::string& fault) { printError(context, commandLine(app), fault); });
}

}  // namespace fyn::productionrules
