#include "tools/base/ProgramRun.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "tools/base/UsageError.h"

namespace fyn::productionrules {

namespace {

constexpr int kFailure = 1;
constexpr int kWrongUsage = 2;

}  // namespace

int exitStatusOf(const std::function<int()>& program, const std::function<void(const std::string&)>& tell) {
  try {
    return program();
  } catch (const UsageError& error) {
    tell(error.what());
    return kWrongUsage;
  } catch (const std::exception& error) {
    tell(error.what());
    return kFailure;
  }
}

int runProgram(const std::string& name, CLI::App& app, int argc, char** argv,
               const std::function<void()>& program) {
  const auto parseAndRun = [&] {
    try {
      app.parse(argc, argv);
    } catch (const CLI::Success& wanted) {
      return app.exit(wanted);
    } catch (const CLI::ParseError& fault) {
      throw UsageError(std::string(fault.what()) + " (--help shows the options)");
    }
    program();
    return 0;
  };
  return exitStatusOf(parseAndRun,
                      [&name](const std::string& fault) { std::cerr << name << ": " << fault << '\n'; });
}

}  // namespace fyn::productionrules
