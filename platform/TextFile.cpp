#include "platform/TextFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>

namespace fyn::productionrules {

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// What is left of a file, at most `limit` bytes of it; nothing when reading fails, as that of a folder does.
std::optional<std::string> rest(std::FILE& file, std::size_t limit) {
  std::string text;
  std::array<char, 4096> part;
  while (const std::size_t length =
             std::fread(part.data(), 1, std::min(part.size(), limit - text.size()), &file)) {
    text.append(part.data(), length);
  }
  return std::ferror(&file) == 0 ? std::optional(text) : std::nullopt;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\v\f";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace

std::optional<std::string> readTextFile(const std::string& path) {
  const File file(std::fopen(path.c_str(), "rb"), std::fclose);
  return file ? rest(*file, std::numeric_limits<std::size_t>::max()) : std::nullopt;
}

std::optional<std::string> readRegularFile(const std::string& path) {
  const auto refuse = [&path](const char* reason) {
    return std::runtime_error(path + " is not read: " + reason);
  };
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) {
    if (errno == ENOENT || errno == ENOTDIR) {
      return std::nullopt;
    }
    throw refuse(std::strerror(errno));
  }
  const File file(fdopen(descriptor, "rb"), std::fclose);
  struct stat status {};
  if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
    throw refuse("it is not a regular file");
  }
  // What the file says about its size need not be true.
  std::optional<std::string> text = rest(*file, kLargestRegularFile + 1);
  if (!text) {
    throw refuse(std::strerror(errno));
  }
  if (text->size() > kLargestRegularFile) {
    throw refuse("it is larger than 1 MB");
  }
  return text;
}

void forEachConfigLine(
    std::string_view text,
    const std::function<void(std::string_view key, std::string_view value, int line)>& visit) {
  int number = 0;
  while (!text.empty()) {
    ++number;
    const std::size_t end = text.find('\n');
    const std::string_view line = trimmed(text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    const std::size_t equals = line.find('=');
    if (line.empty() || line.front() == '#' || equals == std::string_view::npos) {
      continue;
    }
    visit(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)), number);
  }
}

}  // namespace fyn::productionrules
