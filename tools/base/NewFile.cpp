#include "tools/base/NewFile.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>

#include "tools/base/FileFault.h"

namespace fyn::productionrules {

namespace {
namespace fs = std::filesystem;
}

NewFile::NewFile(const std::string& path, const OutputRules& rules) : mPlace(path) {
  rules.check(path);
  std::error_code fault;
  const fs::file_status there = fs::status(path, fault);
  if (!fs::exists(there) || fs::is_regular_file(there)) {
    const fs::path whole = fs::weakly_canonical(path, fault);
    mPlace = fault ? path : whole.string();
    mBeside = mPlace + '.' + std::to_string(getpid()) + ".part";
  }
  errno = 0;
  mFile.open(mBeside.empty() ? mPlace : mBeside, std::ios::binary | std::ios::trunc);
  if (!mFile) {
    mBeside.clear();
    cannotOpen(path, "writing");
  }
  if (fs::is_regular_file(there)) {
    fs::permissions(mBeside, there.permissions(), fault);
  }
  mStream.rdbuf(mFile.rdbuf());
  if (const Packing packing = packingOfName(path); packing != Packing::None) {
    mPacking = std::make_unique<PackingBuffer>(mFile, packing);
    mStream.rdbuf(mPacking.get());
  }
}

NewFile::~NewFile() {
  mStream.rdbuf(nullptr);
  mPacking.reset();
  if (!mBeside.empty()) {
    std::error_code ignored;
    fs::remove(mBeside, ignored);
  }
}

bool NewFile::finish() {
  const bool isGood = static_cast<bool>(mStream.flush());
  mStream.rdbuf(mFile.rdbuf());
  mPacking.reset();
  mFile.close();
  return isGood && mFile;
}

void NewFile::putInPlace() {
  if (mBeside.empty()) {
    return;
  }
  std::error_code fault;
  fs::rename(mBeside, mPlace, fault);
  if (fault) {
    throw std::runtime_error(mPlace + ": cannot be replaced: " + fault.message());
  }
  mBeside.clear();
}

void requireWritable(const std::string& path, const OutputRules& rules) {
  if (!path.empty() && path != "-") {
    const NewFile trial(path, rules);
  }
}

}  // namespace fyn::productionrules
