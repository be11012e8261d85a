#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace fyn::productionrules {

/** Reads a whole text file; nothing when it is missing or unreadable. */
using TextFileReader = std::function<std::optional<std::string>(const std::string& path)>;

/** Reads `path` from the file system. */
std::optional<std::string> readTextFile(const std::string& path);

/**
 * Walks the `key=value` lines of a configuration text and calls `visit(key, value, line)`, line from 1.
 * Blanks around key and value are trimmed; empty lines, lines that begin with '#' and lines without '=' are
 * skipped.
 */
void forEachConfigLine(
    std::string_view text,
    const std::function<void(std::string_view key, std::string_view value, int line)>& visit);

}  // namespace fyn::productionrules
