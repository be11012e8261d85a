#include "tools/recording/MessageLine.h"

#include <simdjson.h>

#include <array>
#include <charconv>
#include <nlohmann/json.hpp>
#include <string_view>
#include <system_error>

#include "tools/recording/EventParser.h"

namespace fyn::productionrules {

namespace {

bool skip(std::string_view& text, std::string_view wanted) {
  if (text.substr(0, wanted.size()) != wanted) {
    return false;
  }
  text.remove_prefix(wanted.size());
  return true;
}

// The text up to `end`, which is taken off too.
std::string_view takeUntil(std::string_view& text, char end) {
  const std::size_t length = text.find(end);
  const std::string_view taken = text.substr(0, length);
  text.remove_prefix(length == std::string_view::npos ? text.size() : length + 1);
  return taken;
}

bool isPartOfNumber(char c) {
  return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
}

// Whether the JSON library would write the number with these characters.
bool isCompactNumber(std::string_view number) {
  if (number.find_first_of(".eE") == std::string_view::npos) {
    return number != "-0";
  }
  double value = 0;
  std::array<char, 64> written{};
  const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
  const char* const end = nlohmann::detail::to_chars(written.data(), written.data() + written.size(), value);
  return read.ec == std::errc() &&
         number == std::string_view(written.data(), static_cast<std::size_t>(end - written.data()));
}

// Whether valid JSON is what the JSON library would write of it.
bool isCompact(std::string_view json) {
  for (std::size_t place = 0; place < json.size(); ++place) {
    const char c = json[place];
    if (c == '"') {
      place = json.find_first_of("\"\\", place + 1);
      if (json[place] == '\\') {
        return false;
      }
    } else if (isPartOfNumber(c) && c != 'e') {
      const std::size_t from = place;
      while (isPartOfNumber(json[place + 1])) {
        ++place;
      }
      if (!isCompactNumber(json.substr(from, place + 1 - from))) {
        return false;
      }
    } else if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
      return false;
    }
  }
  return true;
}

}  // namespace

struct MessageLine::Parser {
  simdjson::dom::parser parser;
};

MessageLine::MessageLine() : mParser(std::make_unique<Parser>()) {}

MessageLine::~MessageLine() = default;

bool MessageLine::read(const std::string& line, RecordingEvent& event) {
  constexpr std::size_t kMembers = 3;
  std::string_view rest = line;
  if (!skip(rest, R"({"t":)")) {
    return false;
  }
  takeUntil(rest, ',');
  if (!skip(rest, R"("topic":")")) {
    return false;
  }
  const std::string_view topic = takeUntil(rest, '"');
  if (topic.empty() || topic.front() != '/' || topic.find('\\') != std::string_view::npos ||
      !skip(rest, R"(,"payload":)") || rest.empty() || (rest.front() != '{' && rest.front() != '[') ||
      rest.back() != '}') {
    return false;
  }
  rest.remove_suffix(1);
  std::int64_t t = -1;
  simdjson::dom::object document;
  if (mParser->parser.parse(line).get(document) != simdjson::SUCCESS || document.size() != kMembers ||
      document.begin().value().get(t) != simdjson::SUCCESS || t < 0 || t > kLatestTime || !isCompact(rest)) {
    return false;
  }
  event.t = t;
  event.what = BusMessage{std::string(topic), std::string(rest)};
  return true;
}

}  // namespace fyn::productionrules
