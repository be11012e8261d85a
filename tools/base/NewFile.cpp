#include "tools/base/NewFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>

#include "tools/base/FileFault.h"

namespace fyn::productionrules {

namespace {

namespace fs = std::filesystem;

/** By which a file without a name can be opened and named. */
std::string pathOf(int descriptor) {
  return "/proc/self/fd/" + std::to_string(descriptor);
}

}  // namespace

NewFile::NewFile(const std::string& path, const OutputRules& rules) : mPlace(path) {
  rules.check(path);
  std::error_code fault;
  const fs::file_status there = fs::status(path, fault);
  if (!fs::exists(there) || fs::is_regular_file(there)) {
    const fs::path whole = fs::weakly_canonical(path, fault);
    mPlace = fault ? path : whole.string();
    mBeside = mPlace + '.' + std::to_string(getpid()) + ".part";
    mUnnamed = ::open(fs::absolute(mPlace).parent_path().c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
  }
  const std::string written = mUnnamed >= 0 ? pathOf(mUnnamed) : mBeside.empty() ? mPlace : mBeside;
  errno = 0;
  mFile.open(written, std::ios::binary | std::ios::trunc);
  if (!mFile) {
    if (mUnnamed >= 0) {
      ::close(mUnnamed);
    }
    cannotOpen(path, "writing");
  }
  if (fs::is_regular_file(there)) {
    fs::permissions(written, there.permissions(), fault);
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
  if (mUnnamed >= 0) {
    ::close(mUnnamed);
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
  if (mUnnamed >= 0 &&
      linkat(AT_FDCWD, pathOf(mUnnamed).c_str(), AT_FDCWD, mBeside.c_str(), AT_SYMLINK_FOLLOW) != 0) {
    fault.assign(errno, std::generic_category());
  } else {
    fs::rename(mBeside, mPlace, fault);
  }
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
