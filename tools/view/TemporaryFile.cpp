#include "tools/view/TemporaryFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace fyn::productionrules {

namespace {

[[noreturn]] void failed(const char* what) {
  throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

int namelessFile() {
  std::string name = (std::filesystem::temp_directory_path() / "prb-view-XXXXXX").string();
  const int file = mkostemp(name.data(), O_CLOEXEC);
  if (file < 0) {
    failed("no temporary file can be made");
  }
  unlink(name.c_str());
  return file;
}

}  // namespace

TemporaryFile::TemporaryFile() : mFile(namelessFile()) {}

TemporaryFile::~TemporaryFile() {
  close(mFile);
}

void TemporaryFile::append(const std::string& text) {
  std::size_t written = 0;
  while (written < text.size()) {
    const ssize_t count = pwrite(mFile, text.data() + written, text.size() - written,
                                 mSize + static_cast<std::int64_t>(written));
    if (count < 0 && errno != EINTR) {
      failed("the temporary file cannot be written");
    }
    written += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  }
  mSize += static_cast<std::int64_t>(text.size());
}

std::string TemporaryFile::read(std::int64_t offset, std::size_t most) const {
  std::string text(most, '\0');
  const ssize_t count = pread(mFile, text.data(), text.size(), offset);
  text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  return text;
}

}  // namespace fyn::productionrules
