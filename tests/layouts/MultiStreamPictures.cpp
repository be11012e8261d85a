#include "tests/layouts/MultiStreamPictures.h"

#include <sstream>

namespace fyn::productionrules::testing {

Scene peopleAt(const std::string& places) {
  constexpr int kUsualHeight = 300;
  Scene result = scene();
  std::istringstream words(places);
  for (std::string word; words >> word;) {
    std::istringstream place(word);
    char mark = 0;
    int id = 0;
    int x = 0;
    int y = kUsualHeight;
    place >> id >> mark >> x;
    if (place >> mark) {
      place >> y;
    }
    result.person(id).at(x, y);
  }
  return result;
}

std::string streamPictures(const BaseLayout& engine) {
  std::ostringstream text;
  for (const std::shared_ptr<Layout>& layout : engine.getFinalLayoutPtrs()) {
    if (layout == nullptr || layout->streamId == 0) {
      continue;
    }
    text << (text.tellp() > 0 ? ", " : "") << layout->streamId << ' ' << layoutToText(layout->layoutType);
    if (layout->layoutType == FramingType::GROUP) {
      continue;
    }
    const char* separator = " [";
    for (const Frame& frame : layout->frames) {
      for (const std::int64_t id : frame.fynHeads) {
        text << separator << id;
        separator = " ";
      }
    }
    text << (*separator == ' ' && separator[1] == '[' ? " []" : "]");
  }
  return text.str();
}

}  // namespace fyn::productionrules::testing
