#include "tools/base/InputFile.h"

#include <cerrno>
#include <filesystem>
#include <utility>

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
  stream();
}

std::istream& InputFile::stream() {
  if (!std::exchange(mIsBegun, true)) {
    unpack();
  }
  return *mStream;
}

void InputFile::unpack() {
  const Packing packing = packingOfBeginning(mStream->peek());
  // A text of no bytes is no fault.
  mStream->clear();
  if (packing != Packing::None) {
    mUnpacking = std::make_unique<UnpackingBuffer>(*mStream, packing);
    mUnpacked.rdbuf(mUnpacking.get());
    mStream = &mUnpacked;
    mSize = 0;
  }
}

}  // namespace fyn::productionrules
