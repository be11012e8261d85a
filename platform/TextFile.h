#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace fyn::productionrules {

/** Reads a whole text file; nothing when it is missing. May raise std::runtime_error, which says why one that
 * is there cannot be read. */
using TextFileReader = std::function<std::optional<std::string>(const std::string& path)>;

/** Reads `path` from the file system, whatever it is: waits for the writer of a pipe. Nothing when it cannot
 * be read. */
std::optional<std::string> readTextFile(const std::string& path);

/**
 * Reads `path` without waiting for anybody: only a regular file of at most `kLargestRegularFile` bytes.
 * Raises std::runtime_error for any other that is there (a pipe, a device, a folder, a larger or unreadable
 * file).
 */
std::optional<std::string> readRegularFile(const std::string& path);

constexpr std::size_t kLargestRegularFile = 1 << 20;

/**
 * Walks the `key=value` lines of a configuration text and calls `visit(key, value, line)`, line from 1.
 * Blanks around key and value are trimmed; empty lines, lines that begin with '#' and lines without '=' are
 * skipped.
 */
void forEachConfigLine(
    std::string_view text,
    const std::function<void(std::string_view key, std::string_view value, int line)>& visit);

}  // namespace fyn::productionrules
