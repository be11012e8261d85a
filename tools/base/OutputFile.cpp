#include "tools/base/OutputFile.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>

namespace fyn::productionrules {

OutputFile::OutputFile(const std::string& path, const OutputRules& rules, std::ostream& standardOutput)
    : mName(path), mStream(&standardOutput) {
  if (path == "-") {
    mName = "standard output";
  } else {
    mStream = &mFile.emplace(path, rules).stream();
  }
}

void OutputFile::putInPlace() {
  if (mFile) {
    mFile->putInPlace();
  }
}

void OutputFile::finish() {
  if (mFile ? !mFile->finish() : !mStream->flush()) {
    throw std::runtime_error(mName + ": cannot be written");
  }
  putInPlace();
}

void writeJsonFile(const nlohmann::ordered_json& document, const std::string& path, const OutputRules& rules,
                   std::ostream& standardOutput) {
  if (!path.empty()) {
    OutputFile output(path, rules, standardOutput);
    output.stream() << document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
    output.finish();
  }
}

}  // namespace fyn::productionrules
