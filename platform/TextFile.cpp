#include "platform/TextFile.h"

#include <array>
#include <cstdio>
#include <memory>

namespace fyn::productionrules {

namespace {

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
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (!file) {
    return std::nullopt;
  }
  std::string text;
  std::array<char, 4096> part;
  while (const std::size_t length = std::fread(part.data(), 1, part.size(), file.get())) {
    text.append(part.data(), length);
  }
  // A folder can be opened, but not read.
  return std::ferror(file.get()) == 0 ? std::optional(text) : std::nullopt;
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
