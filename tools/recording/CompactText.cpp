#include "tools/recording/CompactText.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace fyn::productionrules {

namespace {

bool isPlain(char c) {
  return static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\' && c > 0;
}

}  // namespace

void CompactText::real(double value) {
  json(nlohmann::json(value).dump());
}

void CompactText::string(std::string_view value) {
  if (std::all_of(value.begin(), value.end(), isPlain)) {
    comma();
    mOut.append(1, '"').append(value).append(1, '"');
    mNeedsComma = true;
  } else {
    json(nlohmann::json(value).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
  }
}

void CompactText::key(std::string_view name) {
  string(name);
  mOut += ':';
  mNeedsComma = false;
}

void CompactText::open(char bracket) {
  comma();
  mOut += bracket;
  mNeedsComma = false;
}

void CompactText::close(char bracket) {
  mOut += bracket;
  mNeedsComma = true;
}

void CompactText::json(std::string_view text) {
  comma();
  mOut += text;
  mNeedsComma = true;
}

void CompactText::member(std::string_view name, const Rect& box) {
  key(name);
  open('{');
  member("left", box.left);
  member("top", box.top);
  member("right", box.right);
  member("bottom", box.bottom);
  close('}');
}

void CompactText::comma() {
  if (mNeedsComma) {
    mOut += ',';
  }
}

}  // namespace fyn::productionrules
