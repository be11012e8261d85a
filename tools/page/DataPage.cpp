#include "tools/page/DataPage.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>

#include "tools/page/PageFiles.h"

namespace fyn::productionrules {

namespace {

// Where the built page has an empty element for its data.
constexpr std::string_view kDataElement = "<script id=\"data\" type=\"application/json\">";

}  // namespace

void writeDataPage(std::ostream& out, const nlohmann::ordered_json& data) {
  const std::string_view page = pageFile("report.html");
  const std::size_t element = page.find(kDataElement);
  if (element == std::string_view::npos) {
    throw std::logic_error("the built page has no place for its data");
  }
  const std::size_t place = element + kDataElement.size();
  out << page.substr(0, place);
  // No text of the data can end the element or begin a comment in it.
  for (const char c : data.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace)) {
    if (c == '<') {
      out << "\\u003c";
    } else {
      out << c;
    }
  }
  out << page.substr(place);
}

}  // namespace fyn::productionrules
