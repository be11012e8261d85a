#include "tools/recording/EventParser.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "tools/recording/CompactHandler.h"
#include "tools/recording/RecordingNames.h"
#include "tools/recording/TruthHandler.h"

namespace fyn::productionrules {

namespace {

/** The keys of a line. The order is that of kKeyNames. */
enum class Key { Time, Topic, Payload, Property, Config, Provider, Truth, Recorded };
constexpr std::array kKeyNames{"t",      "topic",    "payload", "property",
                               "config", "provider", "truth",   "recorded"};
constexpr std::size_t kKeys = kKeyNames.size();

/**
 * Takes a line's JSON events. A payload is written out as it is read; nothing of it is kept as a document, so
 * a payload may be large and deeply nested.
 */
class LineHandler final : public nlohmann::json_sax<nlohmann::json> {
 public:
  bool null() override { return isInside() ? mInside->null() : scalar("null"); }
  bool boolean(bool value) override {
    return isInside() ? mInside->boolean(value) : scalar(value ? "true" : "false");
  }
  bool number_integer(number_integer_t value) override {
    return isInside() ? mInside->number_integer(value) : integer(value);
  }
  bool number_unsigned(number_unsigned_t value) override {
    if (isInside()) {
      return mInside->number_unsigned(value);
    }
    return value <= static_cast<std::uint64_t>(kLatestTime)
               ? integer(static_cast<std::int64_t>(value))
               : fail("\"t\" is later than a year after the start, 31536000000 ms; is it the time of day?");
  }
  bool number_float(number_float_t value, const string_t& text) override {
    return isInside() ? mInside->number_float(value, text) : scalar(text);
  }
  bool string(string_t& value) override;
  bool binary(binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*size*/) override { return open('{'); }
  bool end_object() override { return close('}'); }
  bool start_array(std::size_t /*size*/) override { return open('['); }
  bool end_array() override { return close(']'); }
  bool key(string_t& name) override;
  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const nlohmann::json::exception& /*error*/) override {
    return fail("not valid JSON at column " + std::to_string(position));
  }

  /** Moves what was read into `event`; a fault when the keys do not make an event. */
  void finish(RecordingEvent& event);

  std::optional<std::string> fault() const { return mFault ? mFault : mTruth.fault(); }

 private:
  bool fail(std::string text) {
    if (!mFault) {
      mFault = std::move(text);
    }
    return false;
  }

  bool has(Key key) const { return mSeen.at(static_cast<std::size_t>(key)); }
  bool isInside() const { return mInside != nullptr; }
  json_sax* handlerOf(char bracket);
  bool integer(std::int64_t value);
  bool scalar(const std::string& text);
  bool open(char bracket);
  bool close(char bracket);
  std::string wrongKind(const std::string& found) const;

  /** Objects and arrays that are open; 1 inside the line's own object. */
  std::size_t mDepth = 0;
  Key mKey = Key::Time;
  std::array<bool, kKeys> mSeen{};
  std::int64_t mTime = 0;
  std::string mTopic;
  std::string mPayload;
  CompactText mText{mPayload};
  CompactHandler mCompact{mText};
  TruthHandler mTruth;
  /** Takes what stands inside of a value that has a form of its own; null elsewhere. */
  json_sax* mInside = nullptr;
  KeyValues mValues;
  ProviderChange mProvider = ProviderChange::Up;
  std::optional<std::string> mFault;
};

std::string inQuotes(const std::string& text) {
  return '"' + text.substr(0, 60) + '"';
}

bool LineHandler::key(string_t& name) {
  if (isInside()) {
    return mInside->key(name);
  }
  if (mDepth == 2) {
    mValues.emplace_back(name, "");
    return true;
  }
  const auto found = std::find(kKeyNames.begin(), kKeyNames.end(), name);
  if (found == kKeyNames.end()) {
    return fail("unknown key " + inQuotes(name));
  }
  mKey = static_cast<Key>(found - kKeyNames.begin());
  bool& seen = mSeen.at(static_cast<std::size_t>(mKey));
  if (seen) {
    return fail("key " + inQuotes(name) + " stands twice");
  }
  return seen = true;
}

bool LineHandler::string(string_t& value) {
  if (isInside()) {
    return mInside->string(value);
  }
  if (mDepth == 2) {
    mValues.back().second = std::move(value);
    return true;
  }
  if (mDepth == 1 && mKey == Key::Payload) {
    mPayload = std::move(value);
    return true;
  }
  if (mDepth == 1 && mKey == Key::Topic) {
    mTopic = std::move(value);
    return !mTopic.empty() && mTopic.front() == '/' ? true : fail("a topic must begin with \"/\"");
  }
  if (mDepth == 1 && mKey == Key::Provider) {
    const std::optional<ProviderChange> change = providerChangeOf(value);
    mProvider = change.value_or(ProviderChange::Up);
    return change ? true
                  : fail("\"provider\" must be \"up\", \"announced\", \"down\" or \"fail\", not " +
                         inQuotes(value));
  }
  return fail(wrongKind("a text"));
}

bool LineHandler::integer(std::int64_t value) {
  if (mDepth != 1 || mKey != Key::Time) {
    return fail(wrongKind("a number"));
  }
  mTime = value;
  return value >= 0 ? true : fail("\"t\" is negative");
}

bool LineHandler::scalar(const std::string& text) {
  return fail(wrongKind(text));
}

nlohmann::json_sax<nlohmann::json>* LineHandler::handlerOf(char bracket) {
  if (mKey == Key::Payload || (mKey == Key::Recorded && bracket == '{')) {
    return &mCompact;
  }
  return mKey == Key::Truth && bracket == '[' ? &mTruth : nullptr;
}

bool LineHandler::open(char bracket) {
  if (mDepth == 1) {
    mInside = handlerOf(bracket);
  }
  if (isInside()) {
    ++mDepth;
    return bracket == '{' ? mInside->start_object(0) : mInside->start_array(0);
  }
  if (bracket == '{' && (mDepth == 0 || (mDepth == 1 && (mKey == Key::Property || mKey == Key::Config)))) {
    ++mDepth;
    return true;
  }
  return fail(wrongKind(bracket == '{' ? "an object" : "an array"));
}

bool LineHandler::close(char bracket) {
  const bool goesOn = !isInside() || (bracket == '}' ? mInside->end_object() : mInside->end_array());
  if (--mDepth == 1) {
    mInside = nullptr;
  }
  return goesOn;
}

std::string LineHandler::wrongKind(const std::string& found) const {
  if (mDepth == 0) {
    return "a line must be a JSON object, not " + found;
  }
  if (mDepth == 2) {
    return "the value of " + inQuotes(mValues.back().first) + " must be a text, not " + found;
  }
  constexpr std::array<const char*, kKeys> kWanted{"an integer", "a text",    "an object, an array or a text",
                                                   "an object",  "an object", "a text",
                                                   "an array",   "an object"};
  const auto key = static_cast<std::size_t>(mKey);
  return std::string("\"") + kKeyNames.at(key) + "\" must be " + kWanted.at(key) + ", not " + found;
}

void LineHandler::finish(RecordingEvent& event) {
  if (!has(Key::Time)) {
    fail("\"t\" is missing");
  } else if (has(Key::Topic) != has(Key::Payload)) {
    fail(has(Key::Topic) ? "\"payload\" is missing" : "\"topic\" is missing");
  } else if (has(Key::Topic) + has(Key::Property) + has(Key::Config) + has(Key::Provider) + has(Key::Truth) +
                 has(Key::Recorded) >
             1) {
    fail("two kinds of event in one line");
  }
  event.t = mTime;
  if (has(Key::Topic)) {
    event.what = BusMessage{std::move(mTopic), std::move(mPayload)};
  } else if (has(Key::Property)) {
    event.what = SetProperties{std::move(mValues)};
  } else if (has(Key::Config)) {
    event.what = ReplaceConfig{std::move(mValues)};
  } else if (has(Key::Provider)) {
    event.what = mProvider;
  } else if (has(Key::Truth)) {
    event.what = Truth{mTruth.takeHeads()};
  } else if (has(Key::Recorded)) {
    event.what = RecordedBy{std::move(mPayload)};
  } else {
    event.what = TimePasses{};
  }
}

}  // namespace

std::optional<std::string> parseRecordingLine(const std::string& line, RecordingEvent& event) {
  LineHandler handler;
  if (nlohmann::json::sax_parse(line, &handler)) {
    handler.finish(event);
  }
  return handler.fault();
}

}  // namespace fyn::productionrules
