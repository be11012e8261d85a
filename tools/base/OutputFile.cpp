#include "tools/base/OutputFile.h"

#include <cerrno>
#include <filesystem>
#include <iostream>

#include "tools/base/FileFault.h"

namespace fyn::productionrules {

void requireWritable(const std::string& path) {
  if (path.empty() || path == "-") {
    return;
  }
  std::error_code ignored;
  const bool wasThere = std::filesystem::exists(path, ignored);
  errno = 0;
  if (!std::ofstream(path, std::ios::binary | std::ios::app)) {
    cannotOpen(path, "writing");
  }
  if (!wasThere) {
    std::filesystem::remove(path, ignored);
  }
}

OutputFile::OutputFile(const std::string& path, std::ostream& standardOutput) {
  if (path == "-") {
    mName = "standard output";
    mStream = &standardOutput;
    return;
  }
  mName = path;
  mStream = &mFile;
  errno = 0;
  mFile.open(path, std::ios::binary | std::ios::trunc);
  if (!mFile) {
    cannotOpen(path, "writing");
  }
}

void OutputFile::finish() {
  mStream->flush();
  if (!*mStream) {
    throw std::runtime_error(mName + ": cannot be written");
  }
}

}  // namespace fyn::productionrules
