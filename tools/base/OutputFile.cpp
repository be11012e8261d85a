#include "tools/base/OutputFile.h"

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

}  // namespace fyn::productionrules
