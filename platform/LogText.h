#pragma once

#include <string>
#include <string_view>

namespace fyn::productionrules {

/** Bytes of a log text that `cleanLogText` keeps. */
constexpr std::size_t kLongestLogText = 2048;

/**
 * A log text as one line that a terminal shows and does not obey, for every sink whose reader could be
 * deceived: newlines at the end are left out, other control characters and bytes that are no UTF-8 stand as
 * `\n`, `\t`,
 * `\x1b`, and of a text that would be longer than `kLongestLogText` bytes the rest is left out, with a note
 * of the length of the whole.
 */
std::string cleanLogText(std::string_view text);

}  // namespace fyn::productionrules
