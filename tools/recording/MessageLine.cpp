#include "tools/recording/MessageLine.h"

#include <simdjson.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>

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

// Whether the JSON library would write the number, which is no integer, with these characters.
bool isCompactFraction(std::string_view number) {
  double value = 0;
  std::array<char, 64> written{};
  const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
  const char* const end = nlohmann::detail::to_chars(written.data(), written.data() + written.size(), value);
  return read.ec == std::errc() &&
         number == std::string_view(written.data(), static_cast<std::size_t>(end - written.data()));
}

// What isCompact looks at; all else stands for itself.
enum class Sign : std::uint8_t { Other, Quote, Number, Space };

constexpr std::array<Sign, 256> kSigns = [] {
  std::array<Sign, 256> signs{};
  signs['"'] = Sign::Quote;
  for (const char c : {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', '-'}) {
    signs[static_cast<unsigned char>(c)] = Sign::Number;
  }
  for (const char c : {' ', '\t', '\r', '\n'}) {
    signs[static_cast<unsigned char>(c)] = Sign::Space;
  }
  return signs;
}();

// Both begin at `place` and leave it at their last character. A whole line is looked at so, character by
// character: what is short is not worth a search.
bool passText(std::string_view json, std::size_t& place) {
  while (json[++place] != '"') {
    if (json[place] == '\\') {
      return false;
    }
  }
  return true;
}

bool passNumber(std::string_view json, std::size_t& place) {
  const std::size_t from = place;
  bool isInteger = true;
  while (isPartOfNumber(json[place + 1])) {
    ++place;
    isInteger = isInteger && json[place] >= '0' && json[place] <= '9';
  }
  const std::string_view number = json.substr(from, place + 1 - from);
  return isInteger ? number != "-0" : isCompactFraction(number);
}

// Whether valid JSON is what the JSON library would write of it.
bool isCompact(std::string_view json) {
  for (std::size_t place = 0; place < json.size(); ++place) {
    switch (kSigns[static_cast<unsigned char>(json[place])]) {
      case Sign::Quote:
        if (!passText(json, place)) {
          return false;
        }
        break;
      case Sign::Number:
        if (!passNumber(json, place)) {
          return false;
        }
        break;
      case Sign::Space:
        return false;
      case Sign::Other:
        break;
    }
  }
  return true;
}

using simdjson::dom::array;
using simdjson::dom::element;
using simdjson::dom::object;

/** Reads the members of an object that stand in the order in which they are written, and no others. */
class Members {
 public:
  explicit Members(element value) {
    object members;
    mIsUsual = value.get(members) == simdjson::SUCCESS;
    if (mIsUsual) {
      mNext = members.begin();
      mEnd = members.end();
    }
  }

  template <typename Value>
  Members& read(std::string_view name, Value& value) {
    mIsUsual = mIsUsual && mNext != mEnd && mNext.key() == name && take(mNext.value(), value);
    if (mIsUsual) {
      ++mNext;
    }
    return *this;
  }

  bool areAll() const { return mIsUsual && !(mNext != mEnd); }

 private:
  template <typename Value>
  static bool take(element member, Value& value) {
    return member.get(value) == simdjson::SUCCESS;
  }
  static bool take(element member, std::int32_t& value) {
    std::int64_t wide = 0;
    using Limits = std::numeric_limits<std::int32_t>;
    if (member.get(wide) != simdjson::SUCCESS || wide < Limits::min() || wide > Limits::max()) {
      return false;
    }
    value = static_cast<std::int32_t>(wide);
    return true;
  }
  static bool take(element member, Rect& box) {
    return Members(member)
        .read("left", box.left)
        .read("top", box.top)
        .read("right", box.right)
        .read("bottom", box.bottom)
        .areAll();
  }

  bool mIsUsual = false;
  object::iterator mNext;
  object::iterator mEnd;
};

// Few people: each is compared with those before.
bool isSecond(const std::vector<TrueHead>& heads) {
  return std::any_of(heads.begin(), heads.end() - 1, [&](const TrueHead& head) {
    return head.id == heads.back().id && head.fynCamId == heads.back().fynCamId;
  });
}

bool readTruth(element line, RecordingEvent& event) {
  std::int64_t t = -1;
  array entries;
  if (!Members(line).read("t", t).read("truth", entries).areAll() || t < 0 || t > kLatestTime) {
    return false;
  }
  Truth truth;
  truth.heads.reserve(entries.size());
  for (const element entry : entries) {
    TrueHead& head = truth.heads.emplace_back();
    const bool isUsual = Members(entry)
                             .read("id", head.id)
                             .read("fynCamId", head.fynCamId)
                             .read("bbox", head.bbox)
                             .read("speaks", head.speaks)
                             .areAll();
    if (!isUsual || head.id < 0 || head.fynCamId < 0 || isSecond(truth.heads)) {
      return false;
    }
  }
  event.t = t;
  event.what = std::move(truth);
  return true;
}

// `rest` is the line from its topic on.
bool readMessage(element line, std::string_view rest, RecordingEvent& event) {
  constexpr std::size_t kMembers = 3;
  const std::string_view topic = takeUntil(rest, '"');
  if (topic.empty() || topic.front() != '/' || topic.find('\\') != std::string_view::npos ||
      !skip(rest, R"(,"payload":)") || rest.empty() || (rest.front() != '{' && rest.front() != '[') ||
      rest.back() != '}') {
    return false;
  }
  rest.remove_suffix(1);
  std::int64_t t = -1;
  object members;
  if (line.get(members) != simdjson::SUCCESS || members.size() != kMembers ||
      members.begin().value().get(t) != simdjson::SUCCESS || t < 0 || t > kLatestTime || !isCompact(rest)) {
    return false;
  }
  event.t = t;
  event.what = BusMessage{std::string(topic), std::string(rest)};
  return true;
}

}  // namespace

struct MessageLine::Parser {
  simdjson::dom::parser parser;
};

MessageLine::MessageLine() : mParser(std::make_unique<Parser>()) {}

MessageLine::~MessageLine() = default;

bool MessageLine::read(const std::string& line, RecordingEvent& event) {
  std::string_view rest = line;
  if (!skip(rest, R"({"t":)")) {
    return false;
  }
  takeUntil(rest, ',');
  const bool isMessage = skip(rest, R"("topic":")");
  element document;
  if ((!isMessage && !skip(rest, R"("truth":)")) ||
      mParser->parser.parse(line).get(document) != simdjson::SUCCESS) {
    return false;
  }
  return isMessage ? readMessage(document, rest, event) : readTruth(document, event);
}

}  // namespace fyn::productionrules
