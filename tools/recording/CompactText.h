#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace fyn::productionrules {

/**
 * Writes JSON values as compact text, event by event as the JSON library's SAX parser reports them: no
 * document is built, so neither size nor depth of nesting matters, and keys keep their order.
 */
class CompactText {
 public:
  explicit CompactText(std::string& out) : mOut(out) {}

  void null() { scalar("null"); }
  void boolean(bool value) { scalar(value ? "true" : "false"); }
  void integer(std::int64_t value) { scalar(std::to_string(value)); }
  void integer(std::uint64_t value) { scalar(std::to_string(value)); }
  void real(double value);
  void string(const std::string& value);
  void key(const std::string& name);
  void open(char bracket);
  void close(char bracket);

 private:
  void comma();
  void scalar(std::string_view text);

  std::string& mOut;
  bool mNeedsComma = false;
};

/** Appends `text` to `out` as a JSON string. Bytes that are not UTF-8 become U+FFFD. */
void appendJsonString(std::string& out, const std::string& text);

/** A bus payload as it stands in a recording: compact JSON when it is an object or array, else a JSON string.
 */
std::string payloadAsJson(const std::string& payload);

}  // namespace fyn::productionrules
