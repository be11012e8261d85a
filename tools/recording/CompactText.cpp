#include "tools/recording/CompactText.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace fyn::productionrules {

namespace {

/** Feeds a whole document to a CompactText. */
class CompactHandler final : public nlohmann::json_sax<nlohmann::json> {
 public:
  explicit CompactHandler(CompactText& text) : mText(text) {}

  bool null() override { return mText.null(), true; }
  bool boolean(bool value) override { return mText.boolean(value), true; }
  bool number_integer(number_integer_t value) override { return mText.integer(value), true; }
  bool number_unsigned(number_unsigned_t value) override { return mText.integer(value), true; }
  bool number_float(number_float_t value, const string_t& /*text*/) override {
    return mText.real(value), true;
  }
  bool string(string_t& value) override { return mText.string(value), true; }
  bool binary(binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*size*/) override { return mText.open('{'), true; }
  bool key(string_t& name) override { return mText.key(name), true; }
  bool end_object() override { return mText.close('}'), true; }
  bool start_array(std::size_t /*size*/) override { return mText.open('['), true; }
  bool end_array() override { return mText.close(']'), true; }
  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const nlohmann::json::exception& /*error*/) override {
    return false;
  }

 private:
  CompactText& mText;
};

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

void CompactText::payload(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first != std::string::npos && (text[first] == '{' || text[first] == '[')) {
    const std::size_t start = mOut.size();
    const bool neededComma = mNeedsComma;
    mOut.reserve(start + text.size());
    CompactHandler handler(*this);
    if (nlohmann::json::sax_parse(text, &handler)) {
      return;
    }
    mOut.resize(start);
    mNeedsComma = neededComma;
  }
  string(text);
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
