#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "tools/recording/RecordingEvent.h"

namespace fyn::productionrules {

/** Reads the array of a "truth" line. A call that returns false leaves a fault. */
class TruthHandler final : public nlohmann::json_sax<nlohmann::json> {
 public:
  /** What is wrong with the value; nothing when it is whole. */
  const std::optional<std::string>& fault() const { return mFault; }

  std::vector<TrueHead> takeHeads() { return std::move(mHeads); }

  bool null() override { return wrongKind("null"); }
  bool boolean(bool value) override;
  bool number_integer(number_integer_t value) override;
  bool number_unsigned(number_unsigned_t value) override;
  bool number_float(number_float_t /*value*/, const string_t& text) override { return wrongKind(text); }
  bool string(string_t& /*value*/) override { return wrongKind("a text"); }
  bool binary(binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t size) override;
  bool key(string_t& name) override;
  bool end_object() override;
  bool start_array(std::size_t size) override;
  bool end_array() override;
  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const nlohmann::json::exception& /*error*/) override {
    return false;
  }

 private:
  static constexpr std::size_t kMembers = 8;

  bool fail(std::string fault);
  bool wrongKind(const std::string& found);
  bool isComplete(std::size_t first, std::size_t behind);
  void addHead();

  /** 0 before the array, 1 in it, 2 in an entry, 3 in its box. */
  int mDepth = 0;
  /** The member whose value comes next. */
  std::size_t mMember = 0;
  std::array<bool, kMembers> mSeen{};
  std::array<std::int32_t, kMembers> mValues{};
  std::vector<TrueHead> mHeads;
  std::optional<std::string> mFault;
};

}  // namespace fyn::productionrules
