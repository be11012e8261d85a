#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "model/Geometry.h"

namespace fyn::productionrules {

/**
 * Writes JSON values as compact text, event by event as the JSON library's SAX parser reports them: no
 * document is built, so neither size nor depth of nesting matters, and keys keep their order. Bytes that are
 * not UTF-8 become U+FFFD.
 */
class CompactText {
 public:
  explicit CompactText(std::string& out) : mOut(out) {}

  void null() { json("null"); }
  void boolean(bool value) { json(value ? "true" : "false"); }
  void integer(std::int64_t value) { json(std::to_string(value)); }
  void integer(std::uint64_t value) { json(std::to_string(value)); }
  void real(double value);
  void string(std::string_view value);
  void key(std::string_view name);
  void open(char bracket);
  void close(char bracket);

  /** A value that is JSON already. */
  void json(std::string_view text);

  /** A truth value, an integer, a text or a box under its key; an optional without a value is left out. */
  template <typename Value>
  void member(std::string_view name, const Value& value) {
    key(name);
    if constexpr (std::is_same_v<Value, bool>) {
      boolean(value);
    } else if constexpr (std::is_integral_v<Value>) {
      integer(std::int64_t{value});
    } else {
      string(value);
    }
  }
  template <typename Value>
  void member(std::string_view name, const std::optional<Value>& value) {
    if (value) {
      member(name, *value);
    }
  }
  void member(std::string_view name, const Rect& box);

 private:
  void comma();

  std::string& mOut;
  bool mNeedsComma = false;
};

/** The line, without its newline, that tells of time `t` (milliseconds) what `writeMembers(CompactText&)`
 * adds to it. */
template <typename WriteMembers>
std::string lineOfTime(std::int64_t t, WriteMembers&& writeMembers) {
  std::string line;
  CompactText text(line);
  text.open('{');
  text.member("t", t);
  writeMembers(text);
  text.close('}');
  return line;
}

}  // namespace fyn::productionrules
