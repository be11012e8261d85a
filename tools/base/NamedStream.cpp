#include "tools/base/NamedStream.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "tools/base/UsageError.h"

namespace fyn::productionrules {

namespace {

[[noreturn]] void cannotOpen(const std::string& path, const char* purpose) {
  const bool isFolder = std::filesystem::is_directory(path);
  throw UsageError(path + ": cannot be opened for " + purpose + ": " +
                   std::strerror(isFolder ? EISDIR : errno));
}

}  // namespace

InputFile::InputFile(const std::string& path, std::istream& standardInput) {
  if (path == "-") {
    mName = "standard input";
    mStream = &standardInput;
    return;
  }
  mName = path;
  mStream = &mFile;
  errno = 0;
  mFile.open(path, std::ios::binary);
  std::error_code error;
  if (!mFile || std::filesystem::is_directory(path, error)) {
    cannotOpen(path, "reading");
  }
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  mSize = error ? 0 : size;
}

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
