#pragma once

#include <string_view>
#include <vector>

namespace fyn::productionrules {

/** A file of the viewer page, as it is built into the program. */
struct PageFile {
  /** Its name, such as "viewer.js". */
  std::string_view name;
  std::string_view content;
};

/** All of them. The build makes this function from viewer/page. */
const std::vector<PageFile>& pageFiles();

}  // namespace fyn::productionrules
