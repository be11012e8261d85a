#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace fyn::productionrules {

/**
 * Runs a program and gives its exit status: what it returns, 2 for what its user can mend (UsageError), 1 for
 * any other fault. `tell` is given the fault's text.
 */
int exitStatusOf(const std::function<int()>& program, const std::function<void(const std::string&)>& tell);

/** Reads the options that `app` declares and runs the program; a fault goes to standard error as "NAME:
 * FAULT". */
int runProgram(const std::string& name, CLI::App& app, int argc, char** argv,
               const std::function<void()>& program);

}  // namespace fyn::productionrules
