#include "tools/recording/CompactText.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace fyn::productionrules {

namespace {

/** Feeds a whole document to a CompactText. */
class CompactHandler final : public nlohmann::json_sax<nlohmann::json> {
 public:
  explicit CompactHandler(std::string& out) : mText(out) {}

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
  CompactText mText;
};

bool isPlain(char c) {
  return static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\' && c > 0;
}

}  // namespace

void CompactText::real(double value) {
  scalar(nlohmann::json(value).dump());
}

void CompactText::string(const std::string& value) {
  comma();
  appendJsonString(mOut, value);
  mNeedsComma = true;
}

void CompactText::key(const std::string& name) {
  comma();
  appendJsonString(mOut, name);
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

void CompactText::comma() {
  if (mNeedsComma) {
    mOut += ',';
  }
}

void CompactText::scalar(std::string_view text) {
  comma();
  mOut += text;
  mNeedsComma = true;
}

void appendJsonString(std::string& out, const std::string& text) {
  if (std::all_of(text.begin(), text.end(), isPlain)) {
    out.append(1, '"').append(text).append(1, '"');
    return;
  }
  out += nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string payloadAsJson(const std::string& payload) {
  std::string json;
  const std::size_t first = payload.find_first_not_of(" \t\r\n");
  if (first != std::string::npos && (payload[first] == '{' || payload[first] == '[')) {
    json.reserve(payload.size());
    CompactHandler handler(json);
    if (nlohmann::json::sax_parse(payload, &handler)) {
      return json;
    }
    json.clear();
  }
  appendJsonString(json, payload);
  return json;
}

}  // namespace fyn::productionrules
