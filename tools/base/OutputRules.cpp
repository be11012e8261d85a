#include "tools/base/OutputRules.h"

#include <CLI/CLI.hpp>
#include <filesystem>

#include "tools/base/UsageError.h"

namespace fyn::productionrules {

namespace {

namespace fs = std::filesystem;

bool isSameFile(const std::string& a, const std::string& b) {
  std::error_code fault;
  if (fs::equivalent(a, b, fault)) {
    return true;
  }
  const fs::path wholeA = fs::weakly_canonical(a, fault);
  return !fault && wholeA == fs::weakly_canonical(b, fault) && !fault;
}

}  // namespace

bool isStoredFile(const std::string& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored);
}

void OutputRules::check(const std::string& path) const {
  if (path.empty() || path == "-") {
    return;
  }
  std::error_code ignored;
  const bool isDevice = fs::exists(path, ignored) && !isStoredFile(path);
  for (const std::string& input : inputs) {
    if (!input.empty() && !isDevice && isSameFile(path, input == "-" ? "/dev/stdin" : input)) {
      throw UsageError(path + " is read by this command, so it cannot be written too; name another file");
    }
  }
  if (isStoredFile(path) && !mayReplace) {
    throw UsageError(path + " is there already; name another file, or replace it with --force");
  }
}

void addForceOption(CLI::App& command, OutputRules& rules) {
  command.add_flag("--force", rules.mayReplace, "Replace files that are there already");
}

}  // namespace fyn::productionrules
