#include "tools/base/InputFile.h"

#include <cerrno>
#include <filesystem>
#include <iostream>

#include "tools/base/FileFault.h"

namespace fyn::productionrules {

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

}  // namespace fyn::productionrules
