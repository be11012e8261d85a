#pragma once

#include <nlohmann/json.hpp>

#include "tools/recording/CompactText.h"

namespace fyn::productionrules {

/** Writes a JSON value that is being read to a CompactText. */
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

}  // namespace fyn::productionrules
