#pragma once

#include <string>

namespace fyn::productionrules {

/** `text` with the characters that mean something in HTML and SVG replaced. */
std::string escaped(const std::string& text);

/** A whole page around `body`: style for light and dark, colours that people with any colour vision tell
 * apart (c1 to c4, Okabe and Ito's palette). */
std::string htmlPage(const std::string& title, const std::string& body);

}  // namespace fyn::productionrules
